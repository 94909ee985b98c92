#include "exchange/attachedfile.h"

#include <sqlite3.h>

#include <QSet>

#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

AttachedFile::AttachedFile(const QString& path, const QString& schemaName) : schema_(schemaName) {
    live_ = acquireHandle(globalConnectionString(), &error_);
    if (!live_) return;
    attached_ = live_->exec(
        QStringLiteral("ATTACH DATABASE '%1' AS %2 KEY '%3'")
            .arg(tarveldatabase::SafeSql(path), schema_, QLatin1String(schema::kDatabasePassword)),
        &error_);
}

AttachedFile::~AttachedFile() {
    if (attached_) live_->exec(QStringLiteral("DETACH DATABASE %1").arg(schema_), nullptr);
}

QStringList AttachedFile::columns(const QString& table, bool live) const {
    QList<QVariantList> found;
    QString ignored;
    rows(QStringLiteral("PRAGMA %1.table_info(\"%2\")")
             .arg(live ? QStringLiteral("main") : schema_, table),
         &found, &ignored);
    QStringList names;
    for (const QVariantList& r : std::as_const(found)) names << r.value(1).toString();
    return names;
}

QStringList AttachedFile::sharedColumns(const QString& table) const {
    const QStringList incoming = columns(table);
    const QSet<QString> theirs(incoming.cbegin(), incoming.cend());
    QStringList shared;
    for (const QString& c : columns(table, true))
        if (theirs.contains(c)) shared << c;
    return shared;
}

QStringList AttachedFile::tables() const {
    QList<QVariantList> found;
    QString ignored;
    rows(QStringLiteral("SELECT name FROM %1.sqlite_master WHERE type='table'").arg(schema_),
         &found, &ignored);
    QStringList names;
    for (const QVariantList& r : std::as_const(found)) names << r.value(0).toString();
    return names;
}

QVariant AttachedFile::scalar(const QString& sql) const {
    QList<QVariantList> found;
    QString ignored;
    if (!rows(sql, &found, &ignored) || found.isEmpty()) return {};
    return found.front().value(0);
}

bool AttachedFile::rows(const QString& sql, QList<QVariantList>* out, QString* error) const {
    out->clear();
    if (!live_) return (*error = error_, false);
    return queryRows(*live_, sql, out, error);
}

bool queryRows(Handle& handle, const QString& sql, QList<QVariantList>* out, QString* error) {
    out->clear();
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(handle.db(), sql.toUtf8().constData(), -1, &stmt, nullptr) !=
        SQLITE_OK) {
        *error = QString::fromUtf8(sqlite3_errmsg(handle.db()));
        sqlite3_finalize(stmt);
        return false;
    }
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        QVariantList row;
        for (int i = 0, n = sqlite3_column_count(stmt); i < n; ++i) row << columnValue(stmt, i);
        out->append(row);
    }
    if (rc != SQLITE_DONE) *error = QString::fromUtf8(sqlite3_errmsg(handle.db()));
    sqlite3_finalize(stmt);
    return rc == SQLITE_DONE;
}

bool AttachedFile::run(const QString& sql, const QVariantList& values, QString* error) const {
    if (!live_) return (*error = error_, false);
    sqlite3_stmt* stmt = nullptr;
    bool ok =
        sqlite3_prepare_v2(live_->db(), sql.toUtf8().constData(), -1, &stmt, nullptr) == SQLITE_OK;
    for (int i = 0; ok && i < values.size(); ++i) bindValue(stmt, i + 1, values[i]);
    ok = ok && sqlite3_step(stmt) == SQLITE_DONE;
    if (!ok) *error = QString::fromUtf8(sqlite3_errmsg(live_->db()));
    sqlite3_finalize(stmt);
    return ok;
}

QVariant columnValue(void* statement, int index) {
    auto* stmt = static_cast<sqlite3_stmt*>(statement);
    switch (sqlite3_column_type(stmt, index)) {
        case SQLITE_INTEGER:
            return QVariant(qint64(sqlite3_column_int64(stmt, index)));
        case SQLITE_FLOAT:
            return QVariant(sqlite3_column_double(stmt, index));
        case SQLITE_TEXT:
            return QVariant(
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, index)),
                                  sqlite3_column_bytes(stmt, index)));
        case SQLITE_BLOB:
            return QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(stmt, index)),
                                       sqlite3_column_bytes(stmt, index)));
        default:
            return {};
    }
}

void bindValue(void* statement, int index, const QVariant& value) {
    auto* stmt = static_cast<sqlite3_stmt*>(statement);
    if (value.isNull()) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    switch (value.typeId()) {
        case QMetaType::LongLong:
        case QMetaType::Int:
        case QMetaType::Bool:
            sqlite3_bind_int64(stmt, index, value.toLongLong());
            break;
        case QMetaType::Double:
            sqlite3_bind_double(stmt, index, value.toDouble());
            break;
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            sqlite3_bind_blob(stmt, index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
            break;
        }
        default: {
            const QByteArray text = value.toString().toUtf8();
            sqlite3_bind_text(stmt, index, text.constData(), int(text.size()), SQLITE_TRANSIENT);
        }
    }
}

}  // namespace tarvel::exchange
