#include "exchange/reportimport.h"

#include <sqlite3.h>

#include <QFileInfo>
#include <QSet>

#include "exchange/filetools.h"
#include "exchange/tables.h"
#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const char* kSchema = "tvreport";

qint64 scalar(Handle& handle, const QString& sql) {
    sqlite3_stmt* stmt = nullptr;
    qint64 value = 0;
    if (sqlite3_prepare_v2(handle.db(), sql.toUtf8().constData(), -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        value = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    return value;
}

QStringList columnsOf(Handle& handle, const QString& schemaName, const QString& table) {
    QStringList names;
    sqlite3_stmt* stmt = nullptr;
    const QString sql = QStringLiteral("PRAGMA %1.table_info(\"%2\")").arg(schemaName, table);
    if (sqlite3_prepare_v2(handle.db(), sql.toUtf8().constData(), -1, &stmt, nullptr) ==
        SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW)
            names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
    }
    sqlite3_finalize(stmt);
    return names;
}

// The columns both files have, less the key; the tick is not carried over.
QStringList sharedColumns(Handle& handle, const RecordTable& t) {
    const QStringList incoming = columnsOf(handle, QLatin1String(kSchema), t.name);
    const QSet<QString> theirs(incoming.cbegin(), incoming.cend());
    const QString check = t.key.left(4) + QStringLiteral("check");
    QStringList shared;
    for (const QString& c : columnsOf(handle, QStringLiteral("main"), t.name))
        if (theirs.contains(c) && c != t.key && c != check) shared << c;
    return shared;
}

bool mergeRecords(Handle& live, const RecordTable& t, int* added, QString* error) {
    tarveldatabase db;
    db.Execute(QStringLiteral("DELETE * FROM ") + t.upgrade);
    if (!db.ErrMsg().isEmpty()) return (*error = db.ErrMsg(), false);
    // New keys follow every key this file has ever given, so none is reused.
    const qint64 offset =
        qMax(scalar(live, QStringLiteral("SELECT MAX(%1) FROM main.%2").arg(t.key, t.name)),
             scalar(live, QStringLiteral("SELECT seq FROM main.sqlite_sequence WHERE name='%1'")
                              .arg(t.name))) -
        scalar(live, QStringLiteral("SELECT MIN(%1) FROM %2.%3")
                         .arg(t.key, QLatin1String(kSchema), t.name)) +
        1;
    const QStringList cols = sharedColumns(live, t);
    const QString mapping =
        QStringLiteral("INSERT INTO main.%1 (%2, %3) SELECT %4, %4 + %5 FROM %6.%7")
            .arg(t.upgrade, t.oldKey, t.newKey, t.key)
            .arg(offset)
            .arg(QLatin1String(kSchema), t.name);
    const QString rows = QStringLiteral(
                             "INSERT INTO main.%1 (%2, %3) SELECT u.%4, %5 FROM %6.%1 r "
                             "JOIN main.%7 u ON u.%8 = r.%2")
                             .arg(t.name, t.key, cols.join(QStringLiteral(", ")), t.newKey,
                                  QStringLiteral("r.") + cols.join(QStringLiteral(", r.")),
                                  QLatin1String(kSchema), t.upgrade, t.oldKey);
    if (!live.exec(mapping, error) || !live.exec(rows, error)) return false;
    *added = sqlite3_changes(live.db());
    return true;
}

bool mergeLinks(Handle& live, const LinkTable& l, QString* error) {
    const RecordTable* a = recordTable(l.firstTable);
    const RecordTable* b = recordTable(l.secondTable);
    const QString extra = l.extra.isEmpty() ? QString() : QStringLiteral(", ") + l.extra;
    const QString sql =
        QStringLiteral(
            "INSERT INTO main.%1 (%2, %3%4) SELECT ua.%5, ub.%6%7 FROM %8.%1 r "
            "JOIN main.%9 ua ON ua.%10 = r.%2 ")
            .arg(l.name, l.first, l.second, extra, a->newKey, b->newKey,
                 l.extra.isEmpty() ? QString() : QStringLiteral(", r.") + l.extra,
                 QLatin1String(kSchema), a->upgrade)
            .arg(a->oldKey) +
        QStringLiteral("JOIN main.%1 ub ON ub.%2 = r.%3").arg(b->upgrade, b->oldKey, l.second);
    return live.exec(sql, error);
}

}  // namespace

QString describe(const ImportSummary& summary) {
    QStringList parts;
    for (const RecordTable& t : recordTables())
        parts << QStringLiteral("%1 %2")
                     .arg(recordKind(t.name)->captionText())
                     .arg(summary.value(t.name));
    return parts.join(QStringLiteral("，"));
}

Outcome importReport(const QString& path, ImportSummary* summary, const Progress& progress) {
    const QString prefix = QStringLiteral("导入Tarvel报表没有完成，当前数据没有改动：");
    const QString source = QFileInfo(path.trimmed()).absoluteFilePath();
    QString error;
    if (!checkDataFile(source, &error)) return Outcome::failure(prefix + error);
    auto live = acquireHandle(globalConnectionString(), &error);
    if (!live) return Outcome::failure(prefix + error);
    // A file can be attached only outside a transaction.
    if (!live->exec(QStringLiteral("ATTACH DATABASE '%1' AS %2 KEY '%3'")
                        .arg(tarveldatabase::SafeSql(source), QLatin1String(kSchema),
                             QLatin1String(schema::kDatabasePassword)),
                    &error))
        return Outcome::failure(prefix + error);
    ImportSummary added;
    bool ok = false;
    bool stopped = false;
    {
        Transaction transaction;
        ok = transaction.isActive();
        if (!ok) error = transaction.error();
        int step = 0;
        const int steps = int(recordTables().size() + linkTables().size());
        for (const RecordTable& t : recordTables()) {
            if (!ok) break;
            ok = mergeRecords(*live, t, &added[t.name], &error);
            stopped = ok && progress && !progress(++step * 100 / steps);
            ok = ok && !stopped;
        }
        for (const LinkTable& l : linkTables()) {
            if (!ok) break;
            ok = mergeLinks(*live, l, &error);
            stopped = ok && progress && !progress(++step * 100 / steps);
            ok = ok && !stopped;
        }
        if (ok && !transaction.commit()) {
            ok = false;
            error = transaction.error();
        }
    }
    live->exec(QStringLiteral("DETACH DATABASE %1").arg(QLatin1String(kSchema)), nullptr);
    if (stopped) return Outcome::cancel();
    if (!ok) return Outcome::failure(prefix + error);
    if (summary) *summary = added;
    return Outcome{true, false, source, {}};
}

}  // namespace tarvel::exchange
