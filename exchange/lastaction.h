#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <optional>

#include "exchange/mergeundo.h"
#include "exchange/progress.h"

namespace tarvel::exchange {

// The last action of this session that Ctrl+Z can take back: a delete (one
// recycle-bin batch), a merge, or an import. It lives in memory only: it is
// this window's own slip that is offered back, and a restart may forget it.
// What it points at (the bin batch, the merge's rows, the import journal)
// lives in the data file and is checked again before anything is undone, so
// an undo never takes back anything but what its caption says.
class LastAction : public QObject {
    Q_OBJECT
public:
    static LastAction& instance();

    // The records of bin batch `batch` were just kept by a delete. Read once
    // the delete's transaction is over: a delete that was rolled back leaves
    // nothing to undo and the action before it stays.
    void noteDelete(qint64 batch);
    void noteMerge(const MergeImage& image);
    // The import whose journal row is `journalId` was committed.
    void noteImport(qint64 journalId, const QString& summary);
    // Nothing to undo any more (the data file was replaced).
    void forget();
    // Called after the bin or the import journal changed by other means (the
    // bin page's restore, 撤销导入): an action taken back there is dropped.
    void recheck();

    // What Ctrl+Z would take back ("已删除 3 条联系人记录。"), or empty.
    QString caption();
    // Takes the action back; `done` receives a line for the status bar. The
    // action is gone afterwards, whether it worked or not (a failure leaves
    // the data as it was and tells why).
    Outcome undo(QString* done);

    // Tests: the batch or journal row the action points at (0: none).
    qint64 pointer();

signals:
    // An action that can be undone was just done.
    void recorded(const QString& caption);
    // The action can no longer be undone (taken back elsewhere, or forgotten).
    void withdrawn();

private:
    enum class Kind { Delete, Merge, Import };
    struct Action {
        Kind kind = Kind::Delete;
        QString connection;
        QString caption;
        QString records;        // a delete's "3 条联系人记录"
        qint64 batch = 0;       // a delete's or a merge's bin batch
        QList<qint64> entries;  // a delete's bin entries
        qint64 journal = 0;     // an import's journal row
        MergeImage merge;
    };

    LastAction() = default;
    // A delete noted but not yet read from the bin becomes the action when
    // its entries are there.
    void settle();
    void set(const Action& action);
    bool stillValid(const Action& action, QString* why);
    Outcome undoDelete(const Action& action, QString* done);

    std::optional<Action> current_;
    std::optional<qint64> pending_;  // a delete's batch, not yet read
    bool settleQueued_ = false;
};

}  // namespace tarvel::exchange
