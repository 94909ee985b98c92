#include "exchange/lastaction.h"

#include <QCoreApplication>
#include <QMap>
#include <QTimer>

#include "exchange/boundsql.h"
#include "exchange/importsession.h"
#include "exchange/recyclebin.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

const QString kNothing = QStringLiteral("没有可以撤销的操作。");

std::shared_ptr<Handle> live(QString* error) {
    return acquireHandle(globalConnectionString(), error);
}

// The entries of a bin batch and how many records of each kind they hold.
bool batchEntries(qint64 batch, QList<qint64>* ids, QMap<qint16, int>* kinds, QString* error) {
    const auto h = live(error);
    bool present = false;
    if (!h || !runBound(*h,
                        QStringLiteral("SELECT 1 FROM sqlite_master WHERE type='table' AND "
                                       "name='bin_entries'"),
                        {}, error, [&](sqlite3_stmt*) { present = true; }))
        return false;
    return !present ||
           runBound(*h,
                    QStringLiteral("SELECT bin_id, bin_kind FROM bin_entries WHERE bin_batch=? "
                                   "ORDER BY bin_id"),
                    {batch}, error, [&](sqlite3_stmt* s) {
                        *ids << sqlite3_column_int64(s, 0);
                        if (kinds) (*kinds)[qint16(sqlite3_column_int(s, 1))] += 1;
                    });
}

QString recordsText(const QMap<qint16, int>& kinds) {
    QStringList parts;
    for (auto it = kinds.cbegin(); it != kinds.cend(); ++it) {
        const RecordKindInfo* k = kindByCode(it.key());
        parts << QStringLiteral("%1 条%2记录")
                     .arg(it.value())
                     .arg(k ? QString::fromUtf8(k->noun) : QString());
    }
    return parts.join(QStringLiteral("、"));
}

qint64 latestImport(QString* error) {
    const auto h = live(error);
    qint64 id = 0;
    if (h)
        runBound(*h,
                 QStringLiteral("SELECT ijn_id FROM import_journal ORDER BY ijn_id DESC LIMIT 1"),
                 {}, error, [&](sqlite3_stmt* s) { id = sqlite3_column_int64(s, 0); });
    return id;
}

}  // namespace

LastAction& LastAction::instance() {
    static LastAction* action = new LastAction;
    return *action;
}

void LastAction::noteDelete(qint64 batch) {
    if (pending_ && *pending_ == batch) return;
    settle();
    pending_ = batch;
    // Read after the delete's transaction, when the event loop comes round.
    if (!settleQueued_ && QCoreApplication::instance()) {
        settleQueued_ = true;
        QTimer::singleShot(0, this, [this] {
            settleQueued_ = false;
            settle();
        });
    }
}

void LastAction::settle() {
    if (!pending_) return;
    const qint64 batch = *pending_;
    pending_.reset();
    QList<qint64> ids;
    QMap<qint16, int> kinds;
    QString error;
    if (!batchEntries(batch, &ids, &kinds, &error) || ids.isEmpty()) return;
    Action a;
    a.kind = Kind::Delete;
    a.batch = batch;
    a.entries = ids;
    a.records = recordsText(kinds);
    a.caption = QStringLiteral("已删除 %1。").arg(a.records);
    set(a);
}

void LastAction::noteMerge(const MergeImage& image) {
    // The merge's own bin batch is part of the merge, not a delete of its own.
    if (pending_ && *pending_ == image.batch) pending_.reset();
    settle();
    Action a;
    a.kind = Kind::Merge;
    a.batch = image.batch;
    a.merge = image;
    const RecordKindInfo* k = kindByCode(image.kindCode);
    a.caption = QStringLiteral("已把 %1 条%2记录合并为一条。")
                    .arg(image.others.size() + 1)
                    .arg(k ? QString::fromUtf8(k->noun) : QString());
    set(a);
}

void LastAction::noteImport(qint64 journalId, const QString& summary) {
    settle();
    Action a;
    a.kind = Kind::Import;
    a.journal = journalId;
    a.caption = QStringLiteral("已导入：%1。").arg(summary.section(QLatin1Char('\n'), 0, 0));
    set(a);
}

void LastAction::set(const Action& action) {
    current_ = action;
    current_->connection = globalConnectionString();
    emit recorded(current_->caption);
}

void LastAction::forget() {
    const bool had = current_.has_value();
    current_.reset();
    pending_.reset();
    if (had) emit withdrawn();
}

void LastAction::recheck() {
    QString ignored;
    if (current_ && !stillValid(*current_, &ignored)) {
        current_.reset();
        emit withdrawn();
    }
}

bool LastAction::stillValid(const Action& action, QString* why) {
    if (action.connection != globalConnectionString()) return false;
    switch (action.kind) {
        case Kind::Delete: {
            QList<qint64> ids;
            return batchEntries(action.batch, &ids, nullptr, why) && ids == action.entries;
        }
        case Kind::Merge:
            // undoMerge checks every row itself.
            return true;
        case Kind::Import:
            return latestImport(why) == action.journal;
    }
    return false;
}

QString LastAction::caption() {
    settle();
    QString ignored;
    return current_ && stillValid(*current_, &ignored) ? current_->caption : QString();
}

qint64 LastAction::pointer() {
    settle();
    if (!current_) return 0;
    return current_->kind == Kind::Import ? current_->journal : current_->batch;
}

Outcome LastAction::undo(QString* done) {
    settle();
    QString why;
    if (!current_ || !stillValid(*current_, &why)) {
        current_.reset();
        if (!why.isEmpty()) return Outcome::failure(QStringLiteral("无法撤销：") + why);
        if (done) *done = kNothing;
        return Outcome{true, false, {}, {}};
    }
    const Action action = *current_;
    current_.reset();
    switch (action.kind) {
        case Kind::Delete:
            return undoDelete(action, done);
        case Kind::Merge: {
            const Outcome o = undoMerge(action.merge);
            if (o.ok && done)
                *done = QStringLiteral("已撤销合并：%1条记录恢复原样。")
                            .arg(action.merge.others.size() + 1);
            return o;
        }
        case Kind::Import: {
            UndoImportResult result;
            const Outcome o = undoLastImport(&result);
            if (o.ok && done) {
                *done = result.summary().section(QLatin1Char('\n'), 0, 0) + QStringLiteral("。");
                if (!result.keptChanged.isEmpty())
                    *done += QStringLiteral("导入后又修改过的 %1 处保留未动。")
                                 .arg(result.keptChanged.size());
            }
            return o;
        }
    }
    return Outcome::failure(kNothing);
}

Outcome LastAction::undoDelete(const Action& action, QString* done) {
    QStringList lost;
    QString error;
    if (!recyclebin::restore(action.entries, &lost, &error))
        return Outcome::failure(QStringLiteral("删除没有撤销，数据没有改动：") + error);
    if (done) {
        *done = QStringLiteral("已撤销删除：恢复了 %1。").arg(action.records);
        if (!lost.isEmpty())
            *done += QStringLiteral("有 %1 个关联的另一端已不存在，没有恢复。").arg(lost.size());
    }
    return Outcome{true, false, {}, {}};
}

}  // namespace tarvel::exchange
