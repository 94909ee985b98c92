#pragma once
// Every table of the test's data file, row by row with its row number, so a
// test can tell that an undo left the file exactly as it was before.
#include <sqlite3.h>

#include <QMap>
#include <QStringList>

#include "store/connectionstring.h"
#include "store/sqlitehandle.h"

namespace tarvel::testsupport {

// Table -> its rows in row-number order, each "rowid: value|value|...", the
// values as SQL literals (quote()), so 0, '0', '' and NULL stay apart.
// `skip` names tables the caller does not compare.
inline QMap<QString, QStringList> wholeTables(const QStringList& skip = {}) {
    QMap<QString, QStringList> out;
    const auto h = acquireHandle(globalConnectionString(), nullptr);
    if (!h) qFatal("the data file cannot be opened");
    auto each = [&](const QString& sql, const std::function<void(sqlite3_stmt*)>& row) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(h->db(), sql.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK)
            qFatal("%s: %s", qPrintable(sql), sqlite3_errmsg(h->db()));
        while (sqlite3_step(stmt) == SQLITE_ROW) row(stmt);
        sqlite3_finalize(stmt);
    };
    QStringList tables;
    each(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE "
                        "'sqlite_%' ORDER BY name"),
         [&](sqlite3_stmt* s) {
             tables << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 0)));
         });
    for (const QString& table : std::as_const(tables)) {
        if (skip.contains(table)) continue;
        QStringList columns;
        each(QStringLiteral("PRAGMA table_info(\"%1\")").arg(table), [&](sqlite3_stmt* s) {
            columns << QStringLiteral("quote(\"%1\")")
                           .arg(QString::fromUtf8(
                               reinterpret_cast<const char*>(sqlite3_column_text(s, 1))));
        });
        QStringList& rows = out[table];
        each(QStringLiteral("SELECT rowid, %1 FROM \"%2\" ORDER BY rowid")
                 .arg(columns.join(QLatin1Char(',')), table),
             [&](sqlite3_stmt* s) {
                 QStringList values;
                 for (int i = 1; i < sqlite3_column_count(s); ++i)
                     values << QString::fromUtf8(
                         reinterpret_cast<const char*>(sqlite3_column_text(s, i)));
                 rows << QStringLiteral("%1: %2")
                             .arg(sqlite3_column_int64(s, 0))
                             .arg(values.join(QLatin1Char('|')));
             });
    }
    return out;
}

// The rows that differ between two readings: "-table row" gone, "+table row"
// new. Empty when the file is as it was.
inline QStringList changedRows(const QMap<QString, QStringList>& before,
                               const QMap<QString, QStringList>& after) {
    QStringList out;
    QStringList tables = before.keys() + after.keys();
    tables.removeDuplicates();
    for (const QString& t : std::as_const(tables)) {
        const QStringList a = before.value(t), b = after.value(t);
        for (const QString& row : a)
            if (!b.contains(row)) out << QStringLiteral("-%1 %2").arg(t, row);
        for (const QString& row : b)
            if (!a.contains(row)) out << QStringLiteral("+%1 %2").arg(t, row);
    }
    return out;
}

// What changed in the test's data file since `before`.
inline QStringList changedSince(const QMap<QString, QStringList>& before) {
    return changedRows(before, wholeTables());
}

}  // namespace tarvel::testsupport
