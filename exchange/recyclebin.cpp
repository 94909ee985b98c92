#include "exchange/recyclebin.h"

#include <sqlite3.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <functional>

#include "custom/safekeeping.h"
#include "exchange/lastaction.h"
#include "exchange/tables.h"
#include "records/kinds.h"
#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/jetdate.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/transaction.h"

namespace tarvel::exchange::recyclebin {

namespace {

const QString kRowid = QStringLiteral("rowid");

bool fail(QString* error, const QString& text) {
    if (error) *error = text;
    return false;
}

void bindValue(sqlite3_stmt* stmt, int parameter, const QVariant& v) {
    if (v.isNull()) {
        sqlite3_bind_null(stmt, parameter);
        return;
    }
    switch (v.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
            sqlite3_bind_int64(stmt, parameter, v.toLongLong());
            return;
        case QMetaType::Double:
            sqlite3_bind_double(stmt, parameter, v.toDouble());
            return;
        case QMetaType::QByteArray: {
            const QByteArray data = v.toByteArray();
            sqlite3_bind_blob(stmt, parameter, data.constData(), int(data.size()),
                              SQLITE_TRANSIENT);
            return;
        }
        default: {
            const QByteArray text = v.toString().toUtf8();
            sqlite3_bind_text(stmt, parameter, text.constData(), int(text.size()),
                              SQLITE_TRANSIENT);
        }
    }
}

// A value as the engine holds it, with its storage class kept.
QVariant cellOf(sqlite3_stmt* stmt, int i) {
    switch (sqlite3_column_type(stmt, i)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
            return QVariant::fromValue<qint64>(sqlite3_column_int64(stmt, i));
        case SQLITE_FLOAT:
            return sqlite3_column_double(stmt, i);
        case SQLITE_BLOB:
            return QByteArray(static_cast<const char*>(sqlite3_column_blob(stmt, i)),
                              sqlite3_column_bytes(stmt, i));
        default:
            return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, i)),
                                     sqlite3_column_bytes(stmt, i));
    }
}

using EachRow = std::function<void(sqlite3_stmt*)>;

// Runs one statement with `values` bound in order, calling `each` per row.
bool run(Handle& h, const QString& sql, const QVariantList& values, QString* error,
         const EachRow& each = {}) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(h.db(), sql.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return fail(error, QString::fromUtf8(sqlite3_errmsg(h.db())));
    }
    for (int i = 0; i < values.size(); ++i) bindValue(stmt, i + 1, values[i]);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
        if (each) each(stmt);
    const bool ok = rc == SQLITE_DONE;
    if (!ok) fail(error, QString::fromUtf8(sqlite3_errmsg(h.db())));
    sqlite3_finalize(stmt);
    return ok;
}

// Columns of a row as JSON: text as a string, null as null, and numbers and
// blobs tagged ({"i":"12"}, {"r":1.5}, {"b":base64}) so that each comes back
// in the storage class it had: a date stays text, 0 stays apart from "" and null.
QJsonObject rowToJson(sqlite3_stmt* stmt) {
    QJsonObject row;
    for (int i = 0, n = sqlite3_column_count(stmt); i < n; ++i) {
        const QString name = QString::fromUtf8(sqlite3_column_name(stmt, i));
        const QVariant v = cellOf(stmt, i);
        if (v.isNull())
            row.insert(name, QJsonValue::Null);
        else if (v.typeId() == QMetaType::LongLong)
            row.insert(name, QJsonObject{{QStringLiteral("i"), QString::number(v.toLongLong())}});
        else if (v.typeId() == QMetaType::Double)
            row.insert(name, QJsonObject{{QStringLiteral("r"), v.toDouble()}});
        else if (v.typeId() == QMetaType::QByteArray)
            row.insert(name, QJsonObject{{QStringLiteral("b"),
                                          QString::fromLatin1(v.toByteArray().toBase64())}});
        else
            row.insert(name, v.toString());
    }
    return row;
}

QVariant valueOf(const QJsonValue& j) {
    if (j.isNull()) return {};
    if (j.isString()) return j.toString();
    const QJsonObject o = j.toObject();
    if (o.contains(QStringLiteral("i")))
        return QVariant::fromValue<qint64>(o.value(QStringLiteral("i")).toString().toLongLong());
    if (o.contains(QStringLiteral("r"))) return o.value(QStringLiteral("r")).toDouble();
    return QByteArray::fromBase64(o.value(QStringLiteral("b")).toString().toLatin1());
}

QString quoted(const QString& name) {
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

// Inserts a kept row into its table with the columns it had.
bool insertRow(Handle& h, const QString& table, const QJsonObject& row, QString* error) {
    QStringList names, marks;
    QVariantList values;
    for (auto it = row.begin(); it != row.end(); ++it) {
        names << quoted(it.key());
        marks << QStringLiteral("?");
        values << valueOf(it.value());
    }
    return run(h,
               QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                   .arg(quoted(table), names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))),
               values, error);
}

std::shared_ptr<Handle> live(QString* error) {
    QString why;
    auto h = acquireHandle(globalConnectionString(), &why);
    if (!h) fail(error, QStringLiteral("无法打开数据文件：") + why);
    return h;
}

// A data file of an earlier build gets the bin's tables on first use.
bool ensureTables(Handle& h, QString* error) {
    for (const QString& statement : schema::laterTableStatements())
        if (!h.exec(statement, error)) return false;
    return true;
}

QString recordName(const RecordKindInfo& k, const QJsonObject& row) {
    QString name = row.value(QLatin1String(k.nameColumn)).toString();
    if (k.code == kind::Contact) name += row.value(QStringLiteral("con_firstname")).toString();
    return name.trimmed();
}

bool exists(Handle& h, const QString& table, qint64 key, bool* found, QString* error) {
    const RecordTable* t = recordTable(table);
    *found = false;
    if (!t) return true;
    return run(h,
               QStringLiteral("SELECT 1 FROM %1 WHERE %2=?").arg(quoted(t->name), quoted(t->key)),
               {key}, error, [&](sqlite3_stmt*) { *found = true; });
}

// "客户“甲公司”" for a record, named from the bin when it lies there.
QString described(Handle& h, const QString& table, qint64 key) {
    const RecordKindInfo* k = recordKind(table);
    QString name;
    QString ignored;
    if (k)
        run(h,
            QStringLiteral("SELECT bin_name FROM bin_entries WHERE bin_kind=? AND bin_key=? "
                           "ORDER BY bin_id DESC LIMIT 1"),
            {int(k->code), key}, &ignored,
            [&](sqlite3_stmt* s) { name = cellOf(s, 0).toString(); });
    const QString noun = k ? QString::fromUtf8(k->noun) : table;
    return name.isEmpty() ? QStringLiteral("%1（编号%2）").arg(noun).arg(key)
                          : QStringLiteral("%1“%2”").arg(noun, name);
}

struct KeptRow {
    qint64 entry;
    QString table;
    QJsonObject row;
};

bool keptRows(Handle& h, const QList<qint64>& entryIds, QList<KeptRow>* rows, QString* error) {
    for (qint64 entry : entryIds)
        if (!run(h,
                 QStringLiteral(
                     "SELECT bin_table, bin_row FROM bin_rows WHERE bin_entry=? ORDER BY rowid"),
                 {entry}, error, [&](sqlite3_stmt* s) {
                     rows->append(
                         {entry, cellOf(s, 0).toString(),
                          QJsonDocument::fromJson(cellOf(s, 1).toString().toUtf8()).object()});
                 }))
            return false;
    return true;
}

bool removeEntries(Handle& h, const QList<qint64>& entryIds, QString* error) {
    for (qint64 entry : entryIds)
        if (!run(h, QStringLiteral("DELETE FROM bin_rows WHERE bin_entry=?"), {entry}, error) ||
            !run(h, QStringLiteral("DELETE FROM bin_entries WHERE bin_id=?"), {entry}, error))
            return false;
    return true;
}

// Puts a kept link row back when both ends exist and it is not there already;
// otherwise `lost` names it when an end is missing.
bool restoreLink(Handle& h, const LinkTable& link, const QJsonObject& row, QStringList* lost,
                 QString* error) {
    const qint64 first = valueOf(row.value(link.first)).toLongLong();
    const qint64 second = valueOf(row.value(link.second)).toLongLong();
    bool firstThere = false, secondThere = false;
    if (!exists(h, link.firstTable, first, &firstThere, error) ||
        !exists(h, link.secondTable, second, &secondThere, error))
        return false;
    if (!firstThere || !secondThere) {
        QString words =
            QStringLiteral("%1与%2的关联")
                .arg(described(h, link.firstTable, first), described(h, link.secondTable, second));
        const QString role = link.extra.isEmpty() ? QString() : row.value(link.extra).toString();
        if (!role.isEmpty()) words += QStringLiteral("（%1）").arg(role);
        if (lost) lost->append(words);
        return true;
    }
    bool already = false;
    if (!run(h,
             QStringLiteral("SELECT 1 FROM %1 WHERE %2=? AND %3=?")
                 .arg(quoted(link.name), quoted(link.first), quoted(link.second)),
             {first, second}, error, [&](sqlite3_stmt*) { already = true; }))
        return false;
    if (already) return true;
    QJsonObject placed = row;
    bool taken = false;
    if (placed.contains(kRowid) &&
        !run(h, QStringLiteral("SELECT 1 FROM %1 WHERE rowid=?").arg(quoted(link.name)),
             {valueOf(placed.value(kRowid))}, error, [&](sqlite3_stmt*) { taken = true; }))
        return false;
    // A place taken since by another link: the row goes at the end.
    if (taken) placed.remove(kRowid);
    return insertRow(h, link.name, placed, error);
}

const LinkTable* linkTable(const QString& name) {
    for (const LinkTable& l : linkTables())
        if (l.name == name) return &l;
    return nullptr;
}

bool dropEntries(const QString& where, const QVariantList& values, QString* error, int* removed) {
    auto h = live(error);
    if (!h) return false;
    Transaction transaction;
    if (!transaction.isActive()) return fail(error, transaction.error());
    QList<qint64> ids;
    if (!ensureTables(*h, error) ||
        !run(*h, QStringLiteral("SELECT bin_id FROM bin_entries ") + where, values, error,
             [&](sqlite3_stmt* s) { ids << sqlite3_column_int64(s, 0); }) ||
        !removeEntries(*h, ids, error))
        return false;
    if (!transaction.commit()) return fail(error, transaction.error());
    if (removed) *removed = int(ids.size());
    return true;
}

}  // namespace

qint64 newBatch(QString* error) {
    auto h = live(error);
    qint64 batch = 0;
    if (!h || !ensureTables(*h, error) ||
        !run(*h, QStringLiteral("SELECT COALESCE(MAX(bin_batch), 0) + 1 FROM bin_entries"), {},
             error, [&](sqlite3_stmt* s) { batch = sqlite3_column_int64(s, 0); }))
        return 0;
    return batch;
}

bool keep(qint16 code, qint64 key, qint64 batch, QString* error) {
    const RecordKindInfo* k = kindByCode(code);
    if (!k) return fail(error, QStringLiteral("没有这种记录"));
    auto h = live(error);
    if (!h || !ensureTables(*h, error)) return false;
    const QString table = QLatin1String(k->table);
    QList<QJsonObject> own;
    if (!run(*h, QStringLiteral("SELECT * FROM %1 WHERE %2=?").arg(quoted(table), k->key), {key},
             error, [&](sqlite3_stmt* s) { own << rowToJson(s); }))
        return false;
    // Nothing to keep: the delete removes nothing either.
    if (own.isEmpty()) return true;
    QList<KeptRow> rows{{0, table, own.front()}};
    for (const LinkTable& link : linkTables()) {
        QStringList ends;
        if (link.firstTable == table) ends << quoted(link.first) + QStringLiteral("=?1");
        if (link.secondTable == table) ends << quoted(link.second) + QStringLiteral("=?1");
        if (ends.isEmpty()) continue;
        if (!run(*h,
                 // The row number too, so the link comes back in its place.
                 QStringLiteral("SELECT rowid, * FROM %1 WHERE %2 ORDER BY rowid")
                     .arg(quoted(link.name), ends.join(QStringLiteral(" OR "))),
                 {key}, error, [&](sqlite3_stmt* s) {
                     rows.append({0, link.name, rowToJson(s)});
                 }))
            return false;
    }
    if (!run(*h,
             QStringLiteral("INSERT INTO bin_entries (bin_deleted, bin_kind, bin_key, bin_name, "
                            "bin_batch) VALUES (?, ?, ?, ?, ?)"),
             {jetdate::canonical(Clock::now()), int(code), key, recordName(*k, own.front()), batch},
             error))
        return false;
    const qint64 entry = sqlite3_last_insert_rowid(h->db());
    for (const KeptRow& r : std::as_const(rows))
        if (!run(*h,
                 QStringLiteral("INSERT INTO bin_rows (bin_entry, bin_table, bin_row) VALUES (?, "
                                "?, ?)"),
                 {entry, r.table,
                  QString::fromUtf8(QJsonDocument(r.row).toJson(QJsonDocument::Compact))},
                 error))
            return false;
    LastAction::instance().noteDelete(batch);
    return true;
}

QList<BinEntry> entries(const QString& search, QString* error) {
    QList<BinEntry> found;
    auto h = live(error);
    if (!h || !ensureTables(*h, error)) return found;
    const QString wanted = search.trimmed();
    run(*h,
        QStringLiteral("SELECT bin_id, bin_deleted, bin_kind, bin_key, bin_name, bin_batch FROM "
                       "bin_entries ORDER BY bin_deleted DESC, bin_id DESC"),
        {}, error, [&](sqlite3_stmt* s) {
            BinEntry e{sqlite3_column_int64(s, 0),
                       jetdate::fromCanonical(cellOf(s, 1).toString()).value_or(QDateTime()),
                       qint16(sqlite3_column_int(s, 2)),
                       sqlite3_column_int64(s, 3),
                       cellOf(s, 4).toString(),
                       sqlite3_column_int64(s, 5)};
            const RecordKindInfo* k = kindByCode(e.kind);
            const QString caption = k ? k->captionText() : QString();
            if (wanted.isEmpty() || e.name.contains(wanted, Qt::CaseInsensitive) ||
                caption.contains(wanted, Qt::CaseInsensitive))
                found << e;
        });
    return found;
}

QList<qint64> batchOf(qint64 entry, QString* error) {
    QList<qint64> ids;
    auto h = live(error);
    if (!h || !ensureTables(*h, error)) return ids;
    run(*h,
        QStringLiteral("SELECT bin_id FROM bin_entries WHERE bin_batch = (SELECT bin_batch FROM "
                       "bin_entries WHERE bin_id=?) ORDER BY bin_id"),
        {entry}, error, [&](sqlite3_stmt* s) { ids << sqlite3_column_int64(s, 0); });
    return ids;
}

bool restore(const QList<qint64>& entryIds, QStringList* lostLinks, QString* error) {
    auto h = live(error);
    if (!h) return false;
    Transaction transaction;
    if (!transaction.isActive()) return fail(error, transaction.error());
    QList<KeptRow> rows;
    if (!ensureTables(*h, error) || !keptRows(*h, entryIds, &rows, error)) return false;
    QStringList lost;
    // Records first, so that links between records restored together come back.
    for (const KeptRow& r : std::as_const(rows)) {
        const RecordTable* t = recordTable(r.table);
        if (!t) continue;
        const qint64 key = valueOf(r.row.value(t->key)).toLongLong();
        bool taken = false;
        if (!exists(*h, r.table, key, &taken, error)) return false;
        if (taken)
            return fail(error, QStringLiteral("无法恢复%1：这个编号已被另一条记录使用")
                                   .arg(described(*h, r.table, key)));
        if (!insertRow(*h, r.table, r.row, error)) return false;
    }
    for (const KeptRow& r : std::as_const(rows)) {
        const LinkTable* link = linkTable(r.table);
        if (link && !restoreLink(*h, *link, r.row, &lost, error)) return false;
    }
    if (!removeEntries(*h, entryIds, error)) return false;
    if (!transaction.commit()) return fail(error, transaction.error());
    if (lostLinks) *lostLinks = lost;
    LastAction::instance().recheck();
    return true;
}

bool purge(const QList<qint64>& entryIds, QString* error) {
    auto h = live(error);
    if (!h) return false;
    Transaction transaction;
    if (!transaction.isActive()) return fail(error, transaction.error());
    if (!removeEntries(*h, entryIds, error)) return false;
    return transaction.commit() || fail(error, transaction.error());
}

bool empty(QString* error) {
    return dropEntries(QString(), {}, error, nullptr);
}

int keepDays() {
    return Safekeeping::load().binDays;
}

bool expire(QString* error, int* removed) {
    if (removed) *removed = 0;
    const int days = keepDays();
    if (days <= 0) return true;
    return dropEntries(QStringLiteral("WHERE bin_deleted < ?"),
                       {jetdate::canonical(Clock::now().addDays(-days))}, error, removed);
}

bool clearFile(const QString& path, QString* error) {
    QString why;
    auto h = Handle::open(path, QLatin1String(schema::kDatabasePassword), false, &why);
    if (!h) return fail(error, why);
    bool present = false;
    if (!run(*h, QStringLiteral("SELECT 1 FROM sqlite_master WHERE name='bin_entries'"), {}, error,
             [&](sqlite3_stmt*) { present = true; }))
        return false;
    const bool ok =
        !present ||
        h->exec(QStringLiteral("DELETE FROM bin_rows; DELETE FROM bin_entries;"), error);
    h->close();
    return ok;
}

}  // namespace tarvel::exchange::recyclebin
