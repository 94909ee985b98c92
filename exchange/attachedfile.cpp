#include "exchange/attachedfile.h"

#include <sqlite3.h>

#include <QSet>

#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/sqlvalue.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

// Values as the file stores them: dates stay in their fixed text form, so that
// they are copied and compared as they are.
const QString kAsStored = QStringLiteral("TEXT");

}  // namespace

AttachedFile::AttachedFile(const QString& path, const QString& schemaName) : schema_(schemaName) {
    live_ = acquireHandle(globalConnectionString(), &error_);
    if (!live_) return;
    attached_ = live_->exec(
        QStringLiteral("ATTACH DATABASE '%1' AS %2 KEY '%3'")
            .arg(tarveldatabase::SafeSql(path), schema_, QLatin1String(schema::kDatabasePassword)),
        &error_);
}

AttachedFile::~AttachedFile() {
    for (void* stmt : std::as_const(prepared_)) sqlite3_finalize(static_cast<sqlite3_stmt*>(stmt));
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
        for (int i = 0, n = sqlite3_column_count(stmt); i < n; ++i)
            row << sqlvalue::read(stmt, i, kAsStored);
        out->append(row);
    }
    if (rc != SQLITE_DONE) *error = QString::fromUtf8(sqlite3_errmsg(handle.db()));
    sqlite3_finalize(stmt);
    return rc == SQLITE_DONE;
}

bool AttachedFile::run(const QString& sql, const QVariantList& values, QString* error) const {
    if (!live_) return (*error = error_, false);
    auto* stmt = static_cast<sqlite3_stmt*>(prepared_.value(sql));
    if (!stmt) {
        if (sqlite3_prepare_v2(live_->db(), sql.toUtf8().constData(), -1, &stmt, nullptr) !=
            SQLITE_OK) {
            *error = QString::fromUtf8(sqlite3_errmsg(live_->db()));
            sqlite3_finalize(stmt);
            return false;
        }
        prepared_.insert(sql, stmt);
    }
    for (int i = 0; i < values.size(); ++i) sqlvalue::bind(stmt, i + 1, values[i]);
    const bool ok = sqlite3_step(stmt) == SQLITE_DONE;
    if (!ok) *error = QString::fromUtf8(sqlite3_errmsg(live_->db()));
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    return ok;
}

bool readFileTables(const QString& path, QSet<QString>* tables, bool* intact) {
    QString why;
    auto handle = Handle::open(path, QLatin1String(schema::kDatabasePassword), false, &why);
    if (!handle) return false;
    QList<QVariantList> rows, check;
    bool read = queryRows(
        *handle, QStringLiteral("SELECT name FROM sqlite_master WHERE type='table'"), &rows, &why);
    if (read && intact)
        *intact = queryRows(*handle, QStringLiteral("PRAGMA integrity_check"), &check, &why) &&
                  check.size() == 1 && check.front().value(0).toString() == QLatin1String("ok");
    handle->close();
    tables->clear();
    for (const QVariantList& r : std::as_const(rows)) tables->insert(r.value(0).toString());
    return read && !tables->isEmpty();
}

}  // namespace tarvel::exchange
