#include "exchange/recordmerge.h"

#include <QSet>
#include <algorithm>

#include "exchange/boundsql.h"
#include "exchange/tables.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const QString kFailed = QStringLiteral("合并没有完成，数据没有改动：");

const RecordKindInfo* mergeableKind(qint16 code) {
    return code == kind::Contact || code == kind::Account ? kindByCode(code) : nullptr;
}

QString column(const RecordKindInfo& k, const char* suffix) {
    return QLatin1String(k.prefix) + QLatin1Char('_') + QLatin1String(suffix);
}

// The columns the merge works out itself rather than letting the user choose.
bool workedOut(const RecordKindInfo& k, const QString& name) {
    return name == QLatin1String(k.key) || name == QLatin1String(k.tick) ||
           name == column(k, "create_date") || name == column(k, "recent_contact_date");
}

Outcome readRecords(Handle& h, const RecordKindInfo& k, const QList<qint64>& keys,
                    QList<MergeRecord>* records, QStringList* choosable) {
    QHash<qint64, MergeRecord> byKey;
    QStringList names;
    QString error;
    const bool ok = runBound(h,
                             QStringLiteral("SELECT * FROM %1 WHERE %2 IN (%3)")
                                 .arg(QLatin1String(k.table), QLatin1String(k.key), keyList(keys)),
                             {}, &error, [&](sqlite3_stmt* s) {
                                 if (names.isEmpty())
                                     for (int i = 0; i < sqlite3_column_count(s); ++i)
                                         names << QString::fromUtf8(sqlite3_column_name(s, i));
                                 MergeRecord r;
                                 for (int i = 0; i < names.size(); ++i)
                                     r.values.insert(names.at(i), columnValue(s, i));
                                 r.key = r.values.value(QLatin1String(k.key)).toLongLong();
                                 byKey.insert(r.key, r);
                             });
    if (!ok) return Outcome::failure(error);
    if (k.code == kind::Contact &&
        !runBound(h,
                  QStringLiteral("SELECT l.con_id, a.acc_id, a.acc_name FROM accounts a JOIN "
                                 "accounts_contacts l ON l.acc_id = a.acc_id WHERE l.con_id IN "
                                 "(%1) ORDER BY a.acc_id DESC")
                      .arg(keyList(keys)),
                  {}, &error, [&](sqlite3_stmt* s) {
                      // Descending, so the lowest account (the one lists show) is left.
                      if (auto it = byKey.find(sqlite3_column_int64(s, 0)); it != byKey.end()) {
                          it->accountId = sqlite3_column_int64(s, 1);
                          it->accountName = columnValue(s, 2).toString();
                      }
                  }))
        return Outcome::failure(error);
    records->clear();
    for (qint64 key : keys) {
        if (!byKey.contains(key))
            return Outcome::failure(
                QStringLiteral("要合并的%1已不存在（编号 %2）").arg(k.captionText()).arg(key));
        *records << byKey.value(key);
    }
    if (choosable) {
        choosable->clear();
        for (const QString& n : std::as_const(names))
            if (!workedOut(k, n)) *choosable << n;
    }
    return Outcome{true, false, {}, {}};
}

// One link row as read, with the order in which it claims its pair.
struct LinkRow {
    qint64 rowid = 0, first = 0, second = 0;
    QVariant extra;
    int rank = 0;  // 0: a row of the kept record, then the others in order
};

class Merger {
public:
    Merger(Handle& h, const RecordKindInfo& k, const MergeRequest& r)
        : h_(h), k_(k), r_(r), table_(QLatin1String(k.table)) {
        all_ = QList<qint64>{r.kept} + r.others;
    }

    bool run(MergeResult* result, QString* error) {
        QList<MergeRecord> records;
        QStringList choosable;
        if (const Outcome o = readRecords(h_, k_, all_, &records, &choosable); !o.ok)
            return (*error = o.ErrMsg, false);
        for (const MergeRecord& rec : std::as_const(records))
            removed_ << MergedAwayRow{table_, rec.values};
        if (!writeFields(records, choosable, error)) return false;
        qint64 account = 0;
        if (k_.code == kind::Contact && !chooseAccount(&account, error)) return false;
        for (const LinkTable& l : linkTables())
            if ((l.firstTable == table_ || l.secondTable == table_) &&
                !moveLinks(l, account, error))
                return false;
        if (!moveIdentities(error)) return false;
        // The one place where what the merge removes leaves the data file.
        if (r_.keepRemovedRows && !r_.keepRemovedRows(removed_, error)) return false;
        if (!runBound(h_,
                      QStringLiteral("DELETE FROM %1 WHERE %2 IN (%3)")
                          .arg(table_, QLatin1String(k_.key), keyList(r_.others)),
                      {}, error))
            return false;
        if (result) *result = result_;
        return true;
    }

private:
    bool writeFields(const QList<MergeRecord>& records, const QStringList& choosable,
                     QString* error) {
        QHash<QString, qint64> choice = defaultChoice(choosable, records);
        for (auto it = r_.fieldFrom.cbegin(); it != r_.fieldFrom.cend(); ++it) {
            if (!choosable.contains(it.key()))
                return (*error = QStringLiteral("没有可以选择的字段 %1").arg(it.key()), false);
            if (!all_.contains(it.value()))
                return (*error = QStringLiteral("字段 %1 选择的记录不在合并之列").arg(it.key()),
                        false);
            choice.insert(it.key(), it.value());
        }
        QHash<qint64, const MergeRecord*> byKey;
        for (const MergeRecord& rec : records) byKey.insert(rec.key, &rec);
        QStringList sets;
        QVariantList values;
        for (const QString& c : choosable) {
            sets << c + QStringLiteral("=?");
            values << byKey.value(choice.value(c))->values.value(c);
        }
        // Dates are stored as fixed-width text, so text order is time order.
        QVariant created, recent;
        const QString createdColumn = column(k_, "create_date"),
                      recentColumn = column(k_, "recent_contact_date");
        for (const MergeRecord& rec : records) {
            const QVariant c = rec.values.value(createdColumn), m = rec.values.value(recentColumn);
            if (!c.isNull() && (created.isNull() || c.toString() < created.toString())) created = c;
            if (!m.isNull() && (recent.isNull() || m.toString() > recent.toString())) recent = m;
        }
        sets << createdColumn + QStringLiteral("=?") << recentColumn + QStringLiteral("=?");
        values << created << recent << r_.kept;
        return runBound(h_,
                        QStringLiteral("UPDATE %1 SET %2 WHERE %3=?")
                            .arg(table_, sets.join(QStringLiteral(", ")), QLatin1String(k_.key)),
                        values, error);
    }

    // The account the merged contact keeps: the chosen record's, else the
    // kept record's, else the first of the others that has one (0: none).
    bool chooseAccount(qint64* account, QString* error) {
        QHash<qint64, qint64> accountOf;
        if (!runBound(h_,
                      QStringLiteral("SELECT con_id, MIN(acc_id) FROM accounts_contacts WHERE "
                                     "con_id IN (%1) GROUP BY con_id")
                          .arg(keyList(all_)),
                      {}, error, [&](sqlite3_stmt* s) {
                          accountOf.insert(sqlite3_column_int64(s, 0), sqlite3_column_int64(s, 1));
                      }))
            return false;
        if (r_.accountFrom) {
            if (!all_.contains(r_.accountFrom))
                return (*error = QStringLiteral("选择保留单位的联系人不在合并之列"), false);
            *account = accountOf.value(r_.accountFrom);
            return true;
        }
        for (qint64 key : all_)
            if ((*account = accountOf.value(key))) break;
        return true;
    }

    bool readLinks(const LinkTable& l, QList<LinkRow>* rows, QString* error) {
        QStringList where;
        if (l.firstTable == table_)
            where << l.first + QStringLiteral(" IN (%1)").arg(keyList(all_));
        if (l.secondTable == table_)
            where << l.second + QStringLiteral(" IN (%1)").arg(keyList(all_));
        const QString extra = l.extra.isEmpty() ? QStringLiteral("NULL") : l.extra;
        return runBound(
            h_,
            QStringLiteral("SELECT rowid, %1, %2, %3 FROM %4 WHERE %5")
                .arg(l.first, l.second, extra, l.name, where.join(QStringLiteral(" OR "))),
            {}, error, [&](sqlite3_stmt* s) {
                LinkRow row{sqlite3_column_int64(s, 0), sqlite3_column_int64(s, 1),
                            sqlite3_column_int64(s, 2), columnValue(s, 3)};
                row.rank = rankOf(l, row);
                *rows << row;
            });
    }

    int rankOf(const LinkTable& l, const LinkRow& row) const {
        int rank = int(all_.size());
        for (const auto& [tableName, id] :
             {std::pair(l.firstTable, row.first), std::pair(l.secondTable, row.second)})
            if (tableName == table_ && all_.contains(id))
                rank = std::min(rank, int(all_.indexOf(id)));
        return rank;
    }

    MergedAwayRow snapshot(const LinkTable& l, const LinkRow& row) const {
        MergedAwayRow out{l.name, {{l.first, row.first}, {l.second, row.second}}};
        if (!l.extra.isEmpty()) out.values.insert(l.extra, row.extra);
        return out;
    }

    bool drop(const LinkTable& l, const LinkRow& row, QString* error) {
        removed_ << snapshot(l, row);
        ++result_.linksDropped;
        return runBound(h_, QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(l.name), {row.rowid},
                        error);
    }

    bool moveLinks(const LinkTable& l, qint64 account, QString* error) {
        QList<LinkRow> rows;
        if (!readLinks(l, &rows, error)) return false;
        std::stable_sort(rows.begin(), rows.end(), [](const LinkRow& a, const LinkRow& b) {
            return a.rank != b.rank ? a.rank < b.rank : a.rowid < b.rowid;
        });
        const bool bothSides = l.firstTable == table_ && l.secondTable == table_;
        // The contact's one account: every other account link goes.
        const bool accountRule =
            k_.code == kind::Contact && l.name == QLatin1String("accounts_contacts");
        QHash<std::pair<qint64, qint64>, qsizetype> claimed;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            LinkRow& row = rows[i];
            auto mapped = [&](const QString& side, qint64 id) {
                return side == table_ && all_.contains(id) ? r_.kept : id;
            };
            const qint64 first = mapped(l.firstTable, row.first),
                         second = mapped(l.secondTable, row.second);
            if ((bothSides && first == second) || (accountRule && row.first != account)) {
                if (!drop(l, row, error)) return false;
                continue;
            }
            // A relation between two contacts is one, whichever way it was made.
            const auto pair = bothSides
                                  ? std::pair(std::min(first, second), std::max(first, second))
                                  : std::pair(first, second);
            if (const auto it = claimed.constFind(pair); it != claimed.cend()) {
                LinkRow& owner = rows[*it];
                if (!l.extra.isEmpty() && isUnfilled(owner.extra) && !isUnfilled(row.extra)) {
                    removed_ << snapshot(l, owner);
                    if (!runBound(
                            h_,
                            QStringLiteral("UPDATE %1 SET %2=? WHERE rowid=?").arg(l.name, l.extra),
                            {row.extra, owner.rowid}, error))
                        return false;
                    owner.extra = row.extra;
                }
                if (!drop(l, row, error)) return false;
                continue;
            }
            claimed.insert(pair, i);
            if (first == row.first && second == row.second) continue;
            removed_ << snapshot(l, row);
            ++result_.linksMoved;
            if (!runBound(h_,
                          QStringLiteral("UPDATE %1 SET %2=?, %3=? WHERE rowid=?")
                              .arg(l.name, l.first, l.second),
                          {first, second, row.rowid}, error))
                return false;
        }
        return true;
    }

    // Ids the others had in other programs, and the translation of keys of
    // earlier imports, now name the kept record, so a later import finds it.
    bool moveIdentities(QString* error) {
        const QString others = keyList(r_.others);
        bool hasExternal = false;
        if (!runBound(h_,
                      QStringLiteral("SELECT 1 FROM sqlite_master WHERE type='table' AND "
                                     "name='external_ids'"),
                      {}, error, [&](sqlite3_stmt*) { hasExternal = true; }))
            return false;
        if (hasExternal &&
            !runBound(h_,
                      QStringLiteral("UPDATE external_ids SET ext_key=? WHERE ext_table=? AND "
                                     "ext_key IN (%1)")
                          .arg(others),
                      {r_.kept, table_}, error))
            return false;
        return runBound(h_,
                        QStringLiteral("UPDATE %1 SET %2=? WHERE %2 IN (%3)")
                            .arg(k_.upgradeTable(), k_.newKey(), others),
                        {r_.kept}, error);
    }

    Handle& h_;
    const RecordKindInfo& k_;
    const MergeRequest& r_;
    const QString table_;
    QList<qint64> all_;  // the kept record, then the others
    QList<MergedAwayRow> removed_;
    MergeResult result_;
};

}  // namespace

bool isUnfilled(const QVariant& value) {
    if (value.isNull()) return true;
    const QString text = value.toString().trimmed();
    return text.isEmpty() || text.startsWith(QLatin1String("1900-01-01"));
}

QHash<QString, qint64> defaultChoice(const QStringList& choosable,
                                     const QList<MergeRecord>& records) {
    QHash<QString, qint64> choice;
    if (records.isEmpty()) return choice;
    for (const QString& c : choosable) {
        choice.insert(c, records.first().key);
        for (const MergeRecord& r : records)
            if (!isUnfilled(r.values.value(c))) {
                choice.insert(c, r.key);
                break;
            }
    }
    return choice;
}

Outcome readMergeRecords(qint16 kindCode, const QList<qint64>& keys, QList<MergeRecord>* records,
                         QStringList* choosable) {
    const RecordKindInfo* k = mergeableKind(kindCode);
    if (!k) return Outcome::failure(QStringLiteral("只能合并联系人或单位"));
    QString error;
    const auto h = acquireHandle(globalConnectionString(), &error);
    if (!h) return Outcome::failure(QStringLiteral("无法打开数据文件：") + error);
    return readRecords(*h, *k, keys, records, choosable);
}

Outcome mergeRecords(const MergeRequest& request, MergeResult* result) {
    const RecordKindInfo* k = mergeableKind(request.kindCode);
    if (!k) return Outcome::failure(kFailed + QStringLiteral("只能合并联系人或单位"));
    QSet<qint64> distinct(request.others.cbegin(), request.others.cend());
    if (request.others.isEmpty() || distinct.size() != request.others.size() ||
        distinct.contains(request.kept))
        return Outcome::failure(kFailed +
                                QStringLiteral("请选择一条保留的记录和至少一条不同的记录"));
    QString error;
    const auto h = acquireHandle(globalConnectionString(), &error);
    if (!h) return Outcome::failure(kFailed + error);
    Transaction transaction(h);
    if (!transaction.isActive()) return Outcome::failure(kFailed + transaction.error());
    Merger merger(*h, *k, request);
    if (!merger.run(result, &error)) return Outcome::failure(kFailed + error);
    if (!transaction.commit()) return Outcome::failure(kFailed + transaction.error());
    return Outcome{true, false, {}, {}};
}

}  // namespace tarvel::exchange
