#include "store/readrows.h"

#include "store/tarveldatabase.h"

namespace tarvel {

void appendError(QString& log, const QString& text) {
    log = log.isEmpty() ? text : log + QStringLiteral(" ; ") + text;
}

RecordsetPtr readRows(const QString& sql, QString& log, const char* operation) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (rs && rs->State() == adStateOpen) return rs;
    const QString reason =
        rs && !rs->ErrorDescription().isEmpty() ? rs->ErrorDescription() : db.ErrMsg();
    appendError(log, QLatin1String(operation) + QStringLiteral("出错，原因可能是") + reason);
    return nullptr;
}

}  // namespace tarvel
