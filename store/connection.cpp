#include "store/connection.h"

#include <sqlite3.h>

#include "store/dialect.h"
#include "store/sqlitehandle.h"
#include "store/sqlvalue.h"

namespace tarvel {

bool Connection::Open(const QString& connectionString) {
    if (!connectionString.isEmpty()) ConnectionString = connectionString;
    handle_.reset();
    error_.clear();
    handle_ = acquireHandle(ConnectionString, &error_);
    return handle_ != nullptr;
}

void Connection::Close() {
    handle_.reset();
}

RecordsetPtr Connection::Execute(const QString& sql, qint64* recordsAffected,
                                 const QList<QVariant>& bound) {
    auto result = std::make_shared<Recordset>();
    if (recordsAffected) *recordsAffected = 0;
    error_.clear();
    if (!handle_ || !handle_->isOpen()) {
        error_ = QStringLiteral("连接未打开");
        return result;
    }
    const dialect::Translation t = dialect::translate(sql, bound);
    if (!t.error.isEmpty()) {
        error_ = t.error;
        return result;
    }
    sqlite3_stmt* stmt = handle_->prepare(t.sql, &error_);
    if (!stmt) return result;
    if (sqlite3_column_count(stmt) > 0) {
        // A row-returning statement: hand back its rows like a read-only open.
        if (!result->readStatement(sql, stmt, t.parameters, handle_, adLockReadOnly))
            error_ = result->ErrorDescription();
        return result;
    }
    StatementLease lease(stmt);
    for (int i = 0; i < t.parameters.size(); ++i) sqlvalue::bind(stmt, i + 1, t.parameters[i]);
    if (sqlite3_step(stmt) != SQLITE_DONE) {
        error_ = handle_->lastError();
        return result;
    }
    if (recordsAffected) *recordsAffected = sqlite3_changes(handle_->db());
    return result;
}

}  // namespace tarvel
