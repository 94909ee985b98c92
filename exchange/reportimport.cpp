#include "exchange/reportimport.h"

#include <QFileInfo>
#include <QSet>

#include "exchange/attachedfile.h"
#include "exchange/importjournal.h"
#include "exchange/lastaction.h"
#include "exchange/recordmatch.h"
#include "exchange/tables.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const QString kSchema = QStringLiteral("tvreport");

// Whether `path` is a data file of this program that can be merged: it opens
// with the password, passes the engine's check and holds a record table. An
// older file may lack tables and columns.
bool checkMergeSource(const QString& path, QString* error) {
    if (!QFileInfo(path).isFile())
        return (*error = QStringLiteral("找不到文件 %1").arg(path), false);
    QSet<QString> tables;
    bool intact = false;
    const bool opened = readFileTables(path, &tables, &intact);
    bool records = false;
    for (const RecordTable& t : recordTables()) records = records || tables.contains(t.name);
    if (!opened || !records)
        return (*error = QStringLiteral("%1 不是Tarvel报表或数据文件，或密码不符").arg(path),
                false);
    if (!intact) return (*error = QStringLiteral("%1 已损坏").arg(path), false);
    return true;
}

// Each record's account name, by the record's key, as one side's links give it
// (empty when that side lacks the tables).
QHash<qint64, QString> accountNames(const AttachedFile& file, const QString& schemaName,
                                    const QString& table) {
    QHash<qint64, QString> names;
    const LinkTable* link = nullptr;
    for (const LinkTable& l : linkTables())
        if ((l.firstTable == table && l.secondTable == QLatin1String("accounts")) ||
            (l.secondTable == table && l.firstTable == QLatin1String("accounts")))
            link = &l;
    if (!link || table == QLatin1String("accounts")) return names;
    const QString own = link->firstTable == table ? link->first : link->second;
    const QString account = link->firstTable == table ? link->second : link->first;
    QList<QVariantList> rows;
    QString ignored;
    file.rows(QStringLiteral("SELECT l.%1, a.acc_name FROM %2.%3 l JOIN %2.accounts a ON a.acc_id "
                             "= l.%4 ORDER BY a.acc_id")
                  .arg(own, schemaName, link->name, account),
              &rows, &ignored);
    for (const QVariantList& r : std::as_const(rows))
        if (!names.contains(r[0].toLongLong())) names.insert(r[0].toLongLong(), r[1].toString());
    return names;
}

QHash<QString, QVariant> byName(const QStringList& columns, const QVariantList& row, int from) {
    QHash<QString, QVariant> out;
    for (int i = 0; i < columns.size(); ++i) out.insert(columns[i], row.value(from + i));
    return out;
}

struct Merged {
    int added = 0, updated = 0, skipped = 0;
};

class RecordMerge {
public:
    RecordMerge(const AttachedFile& file, const RecordTable& t, ImportJournal& journal)
        : file_(file), t_(t), journal_(journal) {}

    bool run(Merged* merged, QString* error) {
        tarveldatabase db;
        db.Execute(QStringLiteral("DELETE * FROM ") + t_.upgrade);
        if (!db.ErrMsg().isEmpty()) return (*error = db.ErrMsg(), false);
        if (!file_.columns(t_.name).contains(t_.key)) return true;  // the file lacks the table
        cols_ = file_.sharedColumns(t_.name);
        cols_.removeAll(t_.key);
        cols_.removeAll(t_.key.left(4) + QStringLiteral("check"));
        if (!indexLocal(error)) return false;
        // New keys follow every key this file has ever given, so none is reused.
        const qint64 offset =
            qMax(file_.scalar(QStringLiteral("SELECT MAX(%1) FROM main.%2").arg(t_.key, t_.name))
                     .toLongLong(),
                 file_
                     .scalar(QStringLiteral("SELECT seq FROM main.sqlite_sequence WHERE name='%1'")
                                 .arg(t_.name))
                     .toLongLong()) -
            file_
                .scalar(QStringLiteral("SELECT MIN(%1) FROM %2.%3")
                            .arg(t_.key, file_.schema(), t_.name))
                .toLongLong() +
            1;
        QList<QVariantList> incoming;
        if (!file_.rows(
                QStringLiteral("SELECT %1%2 FROM %3.%4 ORDER BY %1")
                    .arg(t_.key,
                         cols_.isEmpty() ? QString()
                                         : QStringLiteral(", ") + cols_.join(QStringLiteral(", ")),
                         file_.schema(), t_.name),
                &incoming, error))
            return false;
        const QHash<qint64, QString> accounts = accountNames(file_, file_.schema(), t_.name);
        const QString map = QStringLiteral("INSERT INTO main.%1 (%2, %3) VALUES (?, ?)")
                                .arg(t_.upgrade, t_.oldKey, t_.newKey);
        for (const QVariantList& row : std::as_const(incoming)) {
            const qint64 old = row[0].toLongLong();
            const QHash<QString, QVariant> values = byName(cols_, row, 1);
            qint64 found = sameRow_.value(rowKey(row.mid(1)));
            for (const QString& k : mergeKeys(t_.name, values, accounts.value(old)))
                if (!found) found = local_.value(k);
            if (found) {
                bool changed = false;
                if (!fillEmpty(found, values, &changed, error)) return false;
                ++(changed ? merged->updated : merged->skipped);
            } else {
                ++merged->added;
                journal_.added(t_.name, old + offset);
            }
            if (!file_.run(map, {old, found ? found : old + offset}, error)) return false;
        }
        if (cols_.isEmpty() || merged->added == 0) return true;
        return file_.run(
            QStringLiteral("INSERT INTO main.%1 (%2, %3) SELECT u.%4, %5 FROM %6.%1 r JOIN "
                           "main.%7 u ON u.%8 = r.%2 WHERE u.%4 = r.%2 + %9")
                .arg(t_.name, t_.key, cols_.join(QStringLiteral(", ")), t_.newKey,
                     QStringLiteral("r.") + cols_.join(QStringLiteral(", r.")), file_.schema(),
                     t_.upgrade, t_.oldKey)
                .arg(offset),
            {}, error);
    }

private:
    // The records already there under every key they are found by, with
    // the values of the columns the incoming records bring.
    bool indexLocal(QString* error) {
        QStringList keyCols;
        for (const QString& c : mergeKeyColumns(t_.name))
            if (file_.columns(t_.name, true).contains(c)) keyCols << c;
        QList<QVariantList> rows;
        if (!file_.rows(QStringLiteral("SELECT %1 FROM main.%2")
                            .arg((QStringList{t_.key} + keyCols + cols_).join(QStringLiteral(", ")),
                                 t_.name),
                        &rows, error))
            return false;
        const QHash<qint64, QString> accounts =
            accountNames(file_, QStringLiteral("main"), t_.name);
        for (const QVariantList& r : std::as_const(rows)) {
            const qint64 id = r[0].toLongLong();
            for (const QString& k : mergeKeys(t_.name, byName(keyCols, r, 1), accounts.value(id)))
                if (!local_.contains(k)) local_.insert(k, id);
            localValues_.insert(id, r.mid(1 + keyCols.size()));
            if (!sameRow_.contains(rowKey(localValues_[id])))
                sameRow_.insert(rowKey(localValues_[id]), id);
        }
        return true;
    }

    // A record alike in every column the two files share is the same record,
    // however little it holds (an earlier copy of this file).
    static QString rowKey(const QVariantList& values) {
        QStringList texts;
        for (const QVariant& v : values)
            texts << (v.isNull() ? QStringLiteral("\x1Enull") : v.toString());
        return texts.join(QLatin1Char('\x1F'));
    }

    // The record already there takes the incoming values of its empty fields;
    // what the user entered stays.
    bool fillEmpty(qint64 id, const QHash<QString, QVariant>& values, bool* changed,
                   QString* error) {
        // Two incoming records may find the same one: the first fills a field.
        QVariantList& stored = localValues_[id];
        QStringList sets;
        QVariantList bound;
        for (int i = 0; i < cols_.size() && i < stored.size(); ++i) {
            const QVariant incoming = values.value(cols_[i]);
            if (isEmptyStoredValue(stored[i]) && !isEmptyStoredValue(incoming)) {
                journal_.changed(t_.name, id, cols_[i], stored[i], incoming);
                sets << cols_[i] + QStringLiteral(" = ?");
                bound << incoming;
                stored[i] = incoming;
            }
        }
        *changed = !sets.isEmpty();
        if (sets.isEmpty()) return true;
        bound << id;
        return file_.run(QStringLiteral("UPDATE main.%1 SET %2 WHERE %3 = ?")
                             .arg(t_.name, sets.join(QStringLiteral(", ")), t_.key),
                         bound, error);
    }

    const AttachedFile& file_;
    const RecordTable& t_;
    ImportJournal& journal_;
    QStringList cols_;
    QHash<QString, qint64> local_;
    QHash<qint64, QVariantList> localValues_;
    QHash<QString, qint64> sameRow_;
};

// Re-creates the link rows whose two records arrived, with their new keys; a
// link already there (matched records) is not doubled.
bool mergeLinks(const AttachedFile& file, const LinkTable& l, ImportJournal& journal,
                QString* error) {
    const QStringList theirs = file.columns(l.name);
    if (!theirs.contains(l.first) || !theirs.contains(l.second)) return true;
    const RecordTable* a = recordTable(l.firstTable);
    const RecordTable* b = recordTable(l.secondTable);
    const bool extra = !l.extra.isEmpty() && theirs.contains(l.extra);
    QString notThere = QStringLiteral(
                           "NOT EXISTS (SELECT 1 FROM main.%1 x WHERE x.%2 = ua.%3 AND x.%4 = "
                           "ub.%5)")
                           .arg(l.name, l.first, a->newKey, l.second, b->newKey);
    // A link between two contacts reads the same either way round.
    if (l.firstTable == l.secondTable)
        notThere += QStringLiteral(
                        " AND NOT EXISTS (SELECT 1 FROM main.%1 x WHERE x.%2 = ub.%3 AND x.%4 = "
                        "ua.%5)")
                        .arg(l.name, l.first, b->newKey, l.second, a->newKey);
    const QString from =
        QStringLiteral(" FROM %1.%2 r ").arg(file.schema(), l.name) +
        QStringLiteral("JOIN main.%1 ua ON ua.%2 = r.%3 JOIN main.%4 ub ON ub.%5 = r.%6 WHERE ")
            .arg(a->upgrade, a->oldKey, l.first, b->upgrade, b->oldKey, l.second) +
        notThere;
    // The links about to be made, so that taking the merge back removes them.
    QList<QVariantList> made;
    if (!file.rows(QStringLiteral("SELECT DISTINCT ua.%1, ub.%2").arg(a->newKey, b->newKey) + from,
                   &made, error))
        return false;
    for (const QVariantList& pair : std::as_const(made))
        journal.linked(l.name, pair.value(0).toLongLong(), pair.value(1).toLongLong());
    const QString sql =
        QStringLiteral("INSERT INTO main.%1 (%2, %3%4) SELECT DISTINCT ua.%5, ub.%6%7")
            .arg(l.name, l.first, l.second, extra ? QStringLiteral(", ") + l.extra : QString(),
                 a->newKey, b->newKey, extra ? QStringLiteral(", r.") + l.extra : QString()) +
        from;
    return file.run(sql, {}, error);
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

Outcome importReport(const QString& path, ImportSummary* summary, const Progress& progress,
                     ImportTally* tally) {
    const QString prefix = QStringLiteral("导入Tarvel报表没有完成，当前数据没有改动：");
    const QString source = QFileInfo(path.trimmed()).absoluteFilePath();
    QString error;
    if (!checkMergeSource(source, &error)) return Outcome::failure(prefix + error);
    AttachedFile file(source, kSchema);
    if (!file.isOpen()) return Outcome::failure(prefix + file.error());
    ImportSummary added;
    ImportTally counted;
    ImportJournal journal;
    bool ok = false;
    bool stopped = false;
    {
        Transaction transaction;
        ok = transaction.isActive();
        if (!ok) error = transaction.error();
        ok = ok && ImportJournal::ensureTables(&error) &&
             journal.begin(QStringLiteral("report"), source, &error);
        int step = 0;
        const int steps = int(recordTables().size() + linkTables().size());
        for (const RecordTable& t : recordTables()) {
            if (!ok) break;
            Merged merged;
            ok = RecordMerge(file, t, journal).run(&merged, &error);
            added[t.name] = merged.added;
            counted.added += merged.added;
            counted.updated += merged.updated;
            counted.skipped += merged.skipped;
            stopped = ok && progress && !progress(++step * 100 / steps);
            ok = ok && !stopped;
        }
        for (const LinkTable& l : linkTables()) {
            if (!ok) break;
            ok = mergeLinks(file, l, journal, &error);
            stopped = ok && progress && !progress(++step * 100 / steps);
            ok = ok && !stopped;
        }
        ok = ok && journal.finish(counted.summary(), &error);
        if (ok && !transaction.commit()) {
            ok = false;
            error = transaction.error();
        }
    }
    if (stopped) return Outcome::cancel();
    if (!ok) return Outcome::failure(prefix + error);
    // Taken back like any import; one that changed nothing leaves the action
    // before it to be taken back.
    if (journal.size() > 0) LastAction::instance().noteImport(journal.id(), counted.summary());
    if (summary) *summary = added;
    if (tally) *tally = counted;
    return Outcome{true, false, source, {}};
}

}  // namespace tarvel::exchange
