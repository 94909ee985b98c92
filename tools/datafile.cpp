#include "tools/datafile.h"

#include <sqlite3.h>

#include <QFile>

#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/sqlvalue.h"
#include "tools/seed_rows.h"

namespace tarvel::datafile {

namespace {

bool insertRow(Handle& handle, const QString& table, const QStringList& columns,
               const QVariantList& values, QString* error) {
    QStringList marks;
    for (qsizetype i = 0; i < columns.size(); ++i) marks << QStringLiteral("?");
    const QString sql =
        QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)")
            .arg(table, columns.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    sqlite3_stmt* stmt = handle.prepare(sql, error);
    if (!stmt) return false;
    StatementLease lease(stmt);
    for (int i = 0; i < values.size(); ++i) sqlvalue::bind(stmt, i + 1, values[i]);
    if (sqlite3_step(stmt) != SQLITE_DONE) {
        if (error) *error = handle.lastError();
        return false;
    }
    return true;
}

bool fill(Handle& handle, QString* error) {
    for (const QString& statement : schema::creationStatements())
        if (!handle.exec(statement, error)) return false;
    for (const auto& r : seed::fieldRows())
        if (!insertRow(handle, QStringLiteral("fields"),
                       {QStringLiteral("fie_type"), QStringLiteral("fie_name"),
                        QStringLiteral("fie_description"), QStringLiteral("fie_index"),
                        QStringLiteral("fie_visible"), QStringLiteral("fie_width")},
                       {r.type, r.name, r.description, r.index, r.visible, r.width}, error))
            return false;
    for (const auto& r : seed::interfaceRows())
        if (!insertRow(
                handle, QStringLiteral("interface"),
                {QStringLiteral("app_type"), QStringLiteral("object_type"),
                 QStringLiteral("object_name"), QStringLiteral("object_description"),
                 QStringLiteral("object_visible"), QStringLiteral("object_index"),
                 QStringLiteral("object_edittype")},
                {r.appType, r.objectType, r.name, r.description, r.visible, r.index, r.editType},
                error))
            return false;
    for (const auto& r : seed::optionRows())
        if (!insertRow(handle, QStringLiteral("options"),
                       {QStringLiteral("opt_object"), QStringLiteral("opt_name"),
                        QStringLiteral("opt_description"), QStringLiteral("opt_count")},
                       {r.object, r.name, r.description, r.count}, error))
            return false;
    for (const auto& r : seed::settingRows())
        if (!insertRow(handle, QStringLiteral("setting"),
                       {QStringLiteral("set_type"), QStringLiteral("set_key"),
                        QStringLiteral("set_name"), QStringLiteral("set_value"),
                        QStringLiteral("set_description"), QStringLiteral("set_visible")},
                       {r.type, r.key, r.name, r.value, r.description, r.visible}, error))
            return false;
    for (const auto& t : seed::legacyOptionTables())
        for (const QString& entry : t.entries)
            if (!insertRow(handle, t.table, {t.descriptionColumn, t.countColumn}, {entry, 0},
                           error))
                return false;
    return true;
}

}  // namespace

bool create(const QString& path, QString* error) {
    auto handle = Handle::open(path, QLatin1String(schema::kDatabasePassword), true, error);
    if (!handle) return false;
    const bool ok = handle->exec(QStringLiteral("BEGIN"), error) && fill(*handle, error) &&
                    handle->exec(QStringLiteral("COMMIT"), error);
    handle->close();
    if (!ok) QFile::remove(path);  // never leave a half-built file behind
    return ok;
}

}  // namespace tarvel::datafile
