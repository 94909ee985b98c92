#include "store/tarveldatabase.h"

#include <algorithm>

#include "store/connectionstring.h"
#include "store/sqlvalue.h"
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
    oCommand_->Parameters = arrParam_;
    trace::record(name);
    // A stored query runs by its name; the parameters are bound to the ? marks
    // in order, never spliced into the text.
    QString sql = name.trimmed();
    if (std::none_of(sql.cbegin(), sql.cend(), [](QChar c) { return c.isSpace(); }))
        sql = QStringLiteral("SELECT * FROM ") + sql;
    QList<QVariant> values;
    for (const ProcParam& p : std::as_const(oCommand_->Parameters)) {
        QVariant stored;
        sqlvalue::toStorage(p.value, QString(), stored, nullptr);
        values << stored;
    }
    if (oConn_->State() != adStateOpen) return std::make_shared<Recordset>();
    RecordsetPtr result = oConn_->Execute(sql, nullptr, values);
    addError(oConn_->ErrorDescription());
    return result;
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
