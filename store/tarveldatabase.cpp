#include "store/tarveldatabase.h"

#include "store/connectionstring.h"
#include "store/trace.h"

namespace tarvel {

tarveldatabase::tarveldatabase() = default;

void tarveldatabase::addError(const QString& text) {
    if (text.isEmpty()) return;
    errMsg_ = errMsg_.isEmpty() ? text : text + QStringLiteral(" ; ") + errMsg_;
}

void tarveldatabase::OpenConnection() {
    strConnString_ = globalConnectionString();
    // A fresh connection object every time; it shares the cached file handle.
    oConn_ = std::make_shared<Connection>();
    oConn_->ConnectionString = strConnString_;
    if (!oConn_->Open()) addError(oConn_->ErrorDescription());
}

RecordsetPtr tarveldatabase::openRecordset(const QString& sql, int lockType) {
    OpenConnection();
    if (!oConn_ || sql.isEmpty()) return nullptr;
    trace::record(sql);
    auto rs = std::make_shared<Recordset>();
    // A connection that failed to open has logged why; its recordset stays closed.
    if (oConn_->State() == adStateOpen && !rs->Open(sql, oConn_, adOpenStatic, lockType, -1))
        addError(rs->ErrorDescription());
    return rs;
}

RecordsetPtr tarveldatabase::GetWriteRs(const QString& sql) {
    return openRecordset(sql, adLockPessimistic);
}

RecordsetPtr tarveldatabase::GetReadRs(const QString& sql) {
    return openRecordset(sql, adLockReadOnly);
}

RecordsetPtr tarveldatabase::Execute(const QString& sql, qint64* recordsAffected) {
    if (recordsAffected) *recordsAffected = 0;
    OpenConnection();
    trace::record(sql);
    if (oConn_->State() != adStateOpen) return std::make_shared<Recordset>();
    RecordsetPtr result = oConn_->Execute(sql, recordsAffected);
    addError(oConn_->ErrorDescription());
    return result;
}

RecordsetPtr tarveldatabase::CallProc(const QString& name) {
    OpenConnection();
    oCommand_ = std::make_shared<Command>();
    oCommand_->ActiveConnection = oConn_;
    oCommand_->CommandText = name;
    for (const ProcParam& p : std::as_const(arrParam_)) oCommand_->Parameters.append(p);
    trace::record(name);
    // A stored query runs by its name; parameters fill its ? marks in order.
    QString sql = name.trimmed();
    if (!sql.contains(QLatin1Char(' '))) sql = QStringLiteral("SELECT * FROM ") + sql;
    for (const ProcParam& p : std::as_const(oCommand_->Parameters)) {
        const qsizetype mark = sql.indexOf(QLatin1Char('?'));
        if (mark < 0) break;
        QString literal;
        if (p.value.isNull()) {
            literal = QStringLiteral("NULL");
        } else if (p.value.typeId() == QMetaType::QString) {
            literal = QLatin1Char('\'') + SafeSql(p.value.toString()) + QLatin1Char('\'');
        } else {
            literal = p.value.toString();
        }
        sql.replace(mark, 1, literal);
    }
    auto rs = std::make_shared<Recordset>();
    if (oConn_->State() == adStateOpen && !rs->Open(sql, oConn_, adOpenStatic, adLockReadOnly))
        addError(rs->ErrorDescription());
    return rs;
}

QString tarveldatabase::SafeSql(const QString& text) {
    QString out = text;
    out.replace(QLatin1Char('\''), QLatin1String("''"));
    return out;
}

QString tarveldatabase::SafeSql() const {
    return SafeSql(strSql_);
}

}  // namespace tarvel
