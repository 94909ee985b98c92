// Taking the last import back.
#include <QSet>

#include "exchange/importjournal.h"
#include "exchange/importsession.h"
#include "exchange/lastaction.h"
#include "exchange/tables.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

using Ref = std::pair<QString, qint64>;  // table, key

// Journals name tables; every table they name is a record kind's.
QString keyOf(const QString& table) {
    const RecordKind* k = recordKind(table);
    return k ? QLatin1String(k->key) : table.left(3) + QStringLiteral("_id");
}

// The record's name for the user: its caption and name, or its key.
QString recordName(const Ref& r) {
    const RecordKind* k = recordKind(r.first);
    QString name;
    if (k) {
        tarveldatabase db;
        const auto rs = db.GetReadRs(QStringLiteral("SELECT %1 FROM %2 WHERE %3=%4")
                                         .arg(QLatin1String(k->nameColumn), r.first, keyOf(r.first))
                                         .arg(r.second));
        name = rs && !rs->Eof() ? rs->value(0).toString() : QString();
    }
    return QStringLiteral("%1「%2」")
        .arg(k ? k->captionText() : r.first, name.isEmpty() ? QString::number(r.second) : name);
}

struct Journal {
    qint64 id = 0;
    QString description;
    QList<ImportJournal::Entry> entries;
};

bool readJournal(Journal* j, QString* error) {
    if (!ImportJournal::ensureTables(error)) return false;
    tarveldatabase db;
    const auto head = db.GetReadRs(QStringLiteral(
        "SELECT ijn_id, ijn_date, ijn_file, ijn_summary FROM import_journal ORDER BY ijn_id DESC"));
    if (!head || head->State() != adStateOpen) return (*error = db.ErrMsg(), false);
    if (head->Eof()) return true;
    j->id = head->value(0).toLongLong();
    j->description = QStringLiteral("%1 从 %2 导入（%3）")
                         .arg(ImportJournal::text(head->value(1)).left(16),
                              head->value(2).toString(), head->value(3).toString());
    const auto rs =
        db.GetReadRs(QStringLiteral("SELECT ijc_table, ijc_key, ijc_column, ijc_old, ijc_new FROM "
                                    "import_changes WHERE ijc_import=%1")
                         .arg(j->id));
    if (!rs || rs->State() != adStateOpen) return (*error = db.ErrMsg(), false);
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof())
        j->entries << ImportJournal::expand(rs->value(0).toString(), rs->value(1).toLongLong(),
                                            rs->value(2).toString(), rs->value(3).toString(),
                                            rs->value(4).toString());
    return true;
}

bool execute(const QString& sql, QString* error) {
    tarveldatabase db;
    db.Execute(sql);
    return db.ErrMsg().isEmpty() || (*error = db.ErrMsg(), false);
}

// Removes records and every link row that names them, a few hundred at a time.
bool removeRecords(const QString& table, const QList<qint64>& keys, QString* error) {
    for (qsizetype from = 0; from < keys.size(); from += 500) {
        QStringList ids;
        for (qint64 k : keys.mid(from, 500)) ids << QString::number(k);
        const QString list = ids.join(QLatin1Char(','));
        for (const LinkTable& l : linkTables()) {
            QStringList where;
            if (l.firstTable == table) where << QStringLiteral("%1 IN (%2)").arg(l.first, list);
            if (l.secondTable == table) where << QStringLiteral("%1 IN (%2)").arg(l.second, list);
            if (!where.isEmpty() && !execute(QStringLiteral("DELETE FROM %1 WHERE %2")
                                                 .arg(l.name, where.join(QStringLiteral(" OR "))),
                                             error))
                return false;
        }
        if (!execute(
                QStringLiteral("DELETE FROM %1 WHERE %2 IN (%3)").arg(table, keyOf(table), list),
                error))
            return false;
    }
    return true;
}

}  // namespace

QString UndoImportResult::summary() const {
    QString text =
        QStringLiteral("已撤销上次导入：删除 %1 条记录，恢复 %2 个字段").arg(removed).arg(restored);
    if (!keptChanged.isEmpty())
        text += QStringLiteral("\n以下内容在导入后已被修改，保留未动：\n") +
                keptChanged.mid(0, 20).join(QLatin1Char('\n')) +
                (keptChanged.size() > 20 ? QStringLiteral("\n……共%1处").arg(keptChanged.size())
                                         : QString());
    return text;
}

QString lastImportDescription() {
    Journal j;
    QString error;
    return readJournal(&j, &error) ? j.description : QString();
}

Outcome undoLastImport(UndoImportResult* result) {
    const QString failed = QStringLiteral("撤销导入没有完成，当前数据没有改动：");
    Transaction transaction;
    if (!transaction.isActive()) return Outcome::failure(failed + transaction.error());
    Journal j;
    QString error;
    if (!readJournal(&j, &error)) return Outcome::failure(failed + error);
    if (!j.id) return Outcome::failure(QStringLiteral("没有可以撤销的导入"));
    UndoImportResult done;

    // Records the import added that are still as it left them.
    QHash<QString, QList<qint64>> added;
    QHash<QString, QHash<qint64, QString>> printed;
    QSet<Ref> addedSet, removable, linksOfImport;
    for (const auto& e : std::as_const(j.entries)) {
        if (e.column.isEmpty()) {
            added[e.table] << e.key;
            printed[e.table].insert(e.key, e.after);
            addedSet.insert({e.table, e.key});
        }
    }
    for (auto it = added.cbegin(); it != added.cend(); ++it) {
        QHash<qint64, QString> now;
        if (!ImportJournal::fingerprints(it.key(), it.value(), &now, &error))
            return Outcome::failure(failed + error);
        for (qint64 key : it.value()) {
            if (!now.contains(key)) continue;  // deleted by the user since
            if (now.value(key) == printed[it.key()].value(key))
                removable.insert({it.key(), key});
            else
                done.keptChanged << recordName({it.key(), key}) + QStringLiteral("：导入后已修改");
        }
    }
    // A link the user made since keeps both its records.
    QList<std::tuple<QString, qint64, qint64>> importLinks;
    for (const auto& e : std::as_const(j.entries))
        if (e.column == ImportJournal::linkColumn())
            importLinks << std::tuple(e.table, e.key, e.after.toLongLong());
    QSet<QString> importLinkRows;
    for (const auto& [t, a, b] : importLinks)
        importLinkRows.insert(t + QLatin1Char('/') + QString::number(a) + QLatin1Char('/') +
                              QString::number(b));
    for (const LinkTable& l : linkTables()) {
        if (!added.contains(l.firstTable) && !added.contains(l.secondTable)) continue;
        tarveldatabase db;
        const auto rs =
            db.GetReadRs(QStringLiteral("SELECT %1, %2 FROM %3").arg(l.first, l.second, l.name));
        if (!rs || rs->State() != adStateOpen) return Outcome::failure(failed + db.ErrMsg());
        for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
            const qint64 a = rs->value(0).toLongLong(), b = rs->value(1).toLongLong();
            if (importLinkRows.contains(l.name + QLatin1Char('/') + QString::number(a) +
                                        QLatin1Char('/') + QString::number(b)))
                continue;
            for (const Ref& r : {Ref{l.firstTable, a}, Ref{l.secondTable, b}}) {
                if (removable.remove(r))
                    done.keptChanged << recordName(r) + QStringLiteral("：导入后已关联其他记录");
            }
        }
    }
    // A record kept keeps the records the import linked it to.
    auto tableOf = [](const QString& linkName, bool first) {
        for (const LinkTable& l : linkTables())
            if (l.name == linkName) return first ? l.firstTable : l.secondTable;
        return QString();
    };
    for (bool changed = true; changed;) {
        changed = false;
        for (const auto& [t, a, b] : importLinks) {
            const Ref x{tableOf(t, true), a}, y{tableOf(t, false), b};
            for (const auto& [one, other] : {std::pair(x, y), std::pair(y, x)})
                if (removable.contains(one) && addedSet.contains(other) &&
                    !removable.contains(other) && removable.remove(one))
                    changed = true;
        }
    }
    QHash<QString, QList<qint64>> toRemove;
    for (const Ref& r : std::as_const(removable)) toRemove[r.first] << r.second;
    for (auto it = toRemove.cbegin(); it != toRemove.cend(); ++it) {
        if (!removeRecords(it.key(), it.value(), &error)) return Outcome::failure(failed + error);
        done.removed += int(it.value().size());
    }
    // Links the import made between records that stay.
    for (const auto& [t, a, b] : importLinks) {
        const Ref x{tableOf(t, true), a}, y{tableOf(t, false), b};
        if (addedSet.contains(x) || addedSet.contains(y)) continue;
        for (const LinkTable& l : linkTables())
            if (l.name == t && !execute(QStringLiteral("DELETE FROM %1 WHERE %2=%3 AND %4=%5")
                                            .arg(l.name, l.first)
                                            .arg(a)
                                            .arg(l.second)
                                            .arg(b),
                                        &error))
                return Outcome::failure(failed + error);
    }
    // Fields the import filled or changed, where they still hold its value.
    QHash<Ref, QList<const ImportJournal::Entry*>> changes;
    for (const auto& e : std::as_const(j.entries))
        if (!e.column.isEmpty() && e.column != ImportJournal::linkColumn())
            changes[{e.table, e.key}] << &e;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        tarveldatabase db;
        const auto rs = db.GetWriteRs(QStringLiteral("SELECT * FROM %1 WHERE %2=%3")
                                          .arg(it.key().first, keyOf(it.key().first))
                                          .arg(it.key().second));
        if (!rs || rs->State() != adStateOpen) return Outcome::failure(failed + db.ErrMsg());
        if (rs->Eof()) continue;
        int restored = 0;
        for (const ImportJournal::Entry* e : it.value()) {
            const int index = rs->fieldIndex(e->column);
            if (index < 0) continue;
            const QVariant now = rs->value(index);
            if (ImportJournal::text(now) != e->after) {
                done.keptChanged << recordName(it.key()) +
                                        QStringLiteral("的“%1”：导入后已修改").arg(e->column);
                continue;
            }
            QVariant before;
            if (!e->before.isEmpty())
                before =
                    now.typeId() == QMetaType::QDateTime
                        ? QVariant(
                              jetdate::fromCanonical(QStringView(e->before)).value_or(QDateTime()))
                        : QVariant(e->before);
            if (!rs->setValue(index, before))
                return Outcome::failure(failed + rs->ErrorDescription());
            ++restored;
        }
        if (restored && !rs->Update()) return Outcome::failure(failed + rs->ErrorDescription());
        done.restored += restored;
    }
    for (const QString& statement :
         {QStringLiteral("DELETE FROM external_ids WHERE ext_import=%1").arg(j.id),
          QStringLiteral("DELETE FROM import_changes WHERE ijc_import=%1").arg(j.id),
          QStringLiteral("DELETE FROM import_journal WHERE ijn_id=%1").arg(j.id)})
        if (!execute(statement, &error)) return Outcome::failure(failed + error);
    if (!transaction.commit()) return Outcome::failure(failed + transaction.error());
    LastAction::instance().recheck();
    if (result) *result = done;
    return Outcome{true, false, {}, {}};
}

}  // namespace tarvel::exchange
