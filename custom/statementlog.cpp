#include "custom/statementlog.h"

#include "store/tarveldatabase.h"

namespace tarvel {

void appendErrMsg(QString& log, const QString& entry) {
    log = log.isEmpty() ? entry : log + QStringLiteral(" ; ") + entry;
}

bool executeLogged(QString& log, const QString& sql) {
    appendErrMsg(log, sql);
    tarveldatabase db;
    db.Execute(sql);
    if (db.ErrMsg().isEmpty()) return true;
    appendErrMsg(log, db.ErrMsg());
    return false;
}

RecordsetPtr readLogged(QString& log, const QString& sql) {
    appendErrMsg(log, sql);
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (rs && rs->State() == adStateOpen) return rs;
    appendErrMsg(log, db.ErrMsg());
    return nullptr;
}

}  // namespace tarvel
