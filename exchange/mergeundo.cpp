#include "exchange/mergeundo.h"

#include <algorithm>

#include "exchange/boundsql.h"
#include "exchange/lastaction.h"
#include "exchange/recyclebin.h"
#include "exchange/tables.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const QString kUndoFailed = QStringLiteral("合并没有撤销，数据没有改动：");

// The rows of one table a merge may touch, named by numbers only.
struct Slice {
    QString table;
    QString where;
};

QString quoted(const QString& name) {
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

bool readSlice(Handle& h, const Slice& s, QList<StoredRow>* rows, QString* error) {
    return runBound(h, QStringLiteral("SELECT rowid, * FROM %1 WHERE %2").arg(s.table, s.where), {},
                    error, [&](sqlite3_stmt* stmt) {
                        StoredRow row{s.table, sqlite3_column_int64(stmt, 0), {}};
                        // Column 0 is the row number, which a key column may repeat.
                        for (int i = 1; i < sqlite3_column_count(stmt); ++i)
                            row.values.insert(QString::fromUtf8(sqlite3_column_name(stmt, i)),
                                              columnValue(stmt, i));
                        rows->append(row);
                    });
}

bool readSlices(Handle& h, const QList<Slice>& slices, QList<StoredRow>* rows, QString* error) {
    for (const Slice& s : slices)
        if (!readSlice(h, s, rows, error)) return false;
    return true;
}

bool tableExists(Handle& h, const QString& table, bool* found, QString* error) {
    *found = false;
    return runBound(h, QStringLiteral("SELECT 1 FROM sqlite_master WHERE type='table' AND name=?"),
                    {table}, error, [&](sqlite3_stmt*) { *found = true; });
}

QString rowidList(const QList<StoredRow>& rows, const QString& table) {
    QList<qint64> ids;
    for (const StoredRow& r : rows)
        if (r.table == table) ids << r.rowid;
    return ids.isEmpty() ? QStringLiteral("NULL") : keyList(ids);
}

// The kept record's row and every link row naming one of the merged records.
QList<Slice> recordSlices(const RecordKindInfo& k, qint64 kept, const QList<qint64>& all) {
    const QString table = QLatin1String(k.table);
    QList<Slice> slices{{table, QStringLiteral("%1=%2").arg(QLatin1String(k.key)).arg(kept)}};
    for (const LinkTable& l : linkTables()) {
        QStringList where;
        if (l.firstTable == table) where << l.first + QStringLiteral(" IN (%1)").arg(keyList(all));
        if (l.secondTable == table)
            where << l.second + QStringLiteral(" IN (%1)").arg(keyList(all));
        if (!where.isEmpty()) slices << Slice{l.name, where.join(QStringLiteral(" OR "))};
    }
    return slices;
}

// Rows that name the records merged away by id of another program or of an
// earlier import: the merge points them at the kept record. Found before the
// merge, then followed by their row numbers.
bool identityRows(Handle& h, const RecordKindInfo& k, const QList<qint64>& others,
                  QList<StoredRow>* rows, QString* error) {
    const QString table = QLatin1String(k.table);
    bool hasExternal = false;
    if (!tableExists(h, QStringLiteral("external_ids"), &hasExternal, error)) return false;
    // The table name comes from the kind table, never from the user.
    if (hasExternal &&
        !readSlice(
            h,
            {QStringLiteral("external_ids"),
             QStringLiteral("ext_table='%1' AND ext_key IN (%2)").arg(table, keyList(others))},
            rows, error))
        return false;
    return readSlice(
        h, {k.upgradeTable(), k.newKey() + QStringLiteral(" IN (%1)").arg(keyList(others))}, rows,
        error);
}

QList<Slice> identitySlices(const RecordKindInfo& k, const QList<StoredRow>& before) {
    QList<Slice> slices;
    for (const QString& table : {QStringLiteral("external_ids"), k.upgradeTable()}) {
        const QString ids = rowidList(before, table);
        if (ids != QLatin1String("NULL"))
            slices << Slice{table, QStringLiteral("rowid IN (%1)").arg(ids)};
    }
    return slices;
}

QList<Slice> allSlices(const RecordKindInfo& k, const MergeImage& image) {
    return recordSlices(k, image.kept, QList<qint64>{image.kept} + image.others) +
           identitySlices(k, image.before);
}

QList<StoredRow> sorted(QList<StoredRow> rows) {
    std::sort(rows.begin(), rows.end(), [](const StoredRow& a, const StoredRow& b) {
        return a.table != b.table ? a.table < b.table : a.rowid < b.rowid;
    });
    return rows;
}

bool insertWithRowid(Handle& h, const StoredRow& row, QString* error) {
    QStringList names{QStringLiteral("rowid")}, marks{QStringLiteral("?")};
    QVariantList values{row.rowid};
    for (auto it = row.values.cbegin(); it != row.values.cend(); ++it) {
        names << quoted(it.key());
        marks << QStringLiteral("?");
        values << it.value();
    }
    return runBound(
        h,
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(quoted(row.table), names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))),
        values, error);
}

bool rewriteRecord(Handle& h, const RecordKindInfo& k, const StoredRow& row, QString* error) {
    QStringList sets;
    QVariantList values;
    for (auto it = row.values.cbegin(); it != row.values.cend(); ++it) {
        if (it.key() == QLatin1String(k.key)) continue;
        sets << quoted(it.key()) + QStringLiteral("=?");
        values << it.value();
    }
    values << row.values.value(QLatin1String(k.key));
    return runBound(h,
                    QStringLiteral("UPDATE %1 SET %2 WHERE %3=?")
                        .arg(quoted(row.table), sets.join(QLatin1Char(',')), QLatin1String(k.key)),
                    values, error);
}

// The bin entries of the merge's batch, when they are exactly the records
// merged away.
bool binEntries(Handle& h, const MergeImage& image, QList<qint64>* ids, QString* error) {
    QList<qint64> keys;
    if (!runBound(h, QStringLiteral("SELECT bin_id, bin_key FROM bin_entries WHERE bin_batch=?"),
                  {image.batch}, error, [&](sqlite3_stmt* s) {
                      *ids << sqlite3_column_int64(s, 0);
                      keys << sqlite3_column_int64(s, 1);
                  }))
        return false;
    QList<qint64> wanted = image.others;
    std::sort(keys.begin(), keys.end());
    std::sort(wanted.begin(), wanted.end());
    return keys == wanted ||
           (*error = QStringLiteral("合并掉的记录已不在回收站里（可能已经恢复或清除）"), false);
}

}  // namespace

Outcome mergeKeepingImage(const MergeRequest& request, MergeImage* image, MergeResult* result) {
    const RecordKindInfo* k = kindByCode(request.kindCode);
    if (!k) return mergeRecords(request, result);
    QString error;
    const auto h = acquireHandle(globalConnectionString(), &error);
    if (!h) return Outcome::failure(QStringLiteral("合并没有完成，数据没有改动：") + error);
    // The images and the merge are read and written as one.
    Transaction transaction(h);
    if (!transaction.isActive())
        return Outcome::failure(QStringLiteral("合并没有完成，数据没有改动：") +
                                transaction.error());
    MergeImage taken{request.kindCode, request.kept, request.others, 0, {}, {}};
    const QList<qint64> all = QList<qint64>{request.kept} + request.others;
    if (!readSlices(*h, recordSlices(*k, request.kept, all), &taken.before, &error) ||
        !identityRows(*h, *k, request.others, &taken.before, &error))
        return Outcome::failure(QStringLiteral("合并没有完成，数据没有改动：") + error);

    MergeRequest r = request;
    r.keepRemovedRows = [&request, &taken](const QList<MergedAwayRow>& rows, QString* why) {
        // The records merged away go to the recycle bin, as any other delete.
        taken.batch = recyclebin::newBatch(why);
        if (taken.batch == 0) return false;
        for (qint64 other : request.others)
            if (!recyclebin::keep(request.kindCode, other, taken.batch, why)) return false;
        return !request.keepRemovedRows || request.keepRemovedRows(rows, why);
    };
    const Outcome merged = mergeRecords(r, result);
    if (!merged.ok) return merged;
    if (!readSlices(*h, allSlices(*k, taken), &taken.after, &error))
        return Outcome::failure(QStringLiteral("合并没有完成，数据没有改动：") + error);
    if (!transaction.commit())
        return Outcome::failure(QStringLiteral("合并没有完成，数据没有改动：") +
                                transaction.error());
    LastAction::instance().noteMerge(taken);
    if (image) *image = taken;
    return merged;
}

Outcome undoMerge(const MergeImage& image) {
    const RecordKindInfo* k = kindByCode(image.kindCode);
    if (!k || image.others.isEmpty())
        return Outcome::failure(kUndoFailed + QStringLiteral("没有合并"));
    QString error;
    const auto h = acquireHandle(globalConnectionString(), &error);
    if (!h) return Outcome::failure(kUndoFailed + error);
    Transaction transaction(h);
    if (!transaction.isActive()) return Outcome::failure(kUndoFailed + transaction.error());
    QList<StoredRow> now;
    if (!readSlices(*h, allSlices(*k, image), &now, &error))
        return Outcome::failure(kUndoFailed + error);
    // Taking the merge back over later edits would throw those edits away.
    if (sorted(now) != sorted(image.after))
        return Outcome::failure(kUndoFailed +
                                QStringLiteral("合并后这些记录或它们的关联又被修改过"));
    QList<qint64> entries;
    QStringList lost;
    if (!binEntries(*h, image, &entries, &error)) return Outcome::failure(kUndoFailed + error);
    const QString recordTable = QLatin1String(k->table);
    for (const StoredRow& row : image.after) {
        if (row.table == recordTable) continue;
        if (!runBound(*h, QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(quoted(row.table)),
                      {row.rowid}, &error))
            return Outcome::failure(kUndoFailed + error);
    }
    for (const StoredRow& row : image.before) {
        const bool ok = row.table == recordTable ? rewriteRecord(*h, *k, row, &error)
                                                 : insertWithRowid(*h, row, &error);
        if (!ok) return Outcome::failure(kUndoFailed + error);
    }
    // The links are back first, so the bin's restore finds them there.
    if (!recyclebin::restore(entries, &lost, &error)) return Outcome::failure(kUndoFailed + error);
    if (!transaction.commit()) return Outcome::failure(kUndoFailed + transaction.error());
    return Outcome{true, false, {}, {}};
}

}  // namespace tarvel::exchange
