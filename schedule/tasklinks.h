#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace tarvel {

class Task;

// A record linked to a task, or one that could be: its key and how the
// task's related panel names it.
struct LinkedRecord {
    int id = 0;
    QString caption;
};

// The records of one kind (kind::Opportunity, Account, Contact, Document)
// linked to a task, and the search for records to link: the queries behind
// the task's related panel (sch_opp, sch_con, sch_acc, sch_doc). Linking and
// unlinking go through Task::AddRelative and DeleteRelative.
class TaskLinks {
public:
    // Nullopt (with ErrMsg) when the data file could not be read.
    std::optional<QList<LinkedRecord>> linked(qint16 recordKind, int taskId);
    // Records whose name contains `text` (all for an empty text), by name.
    std::optional<QList<LinkedRecord>> search(qint16 recordKind, const QString& text);
    // Links `next` to every record linked to task `fromId` (the task a
    // repeated task follows); false (with ErrMsg, or the task's) on failure.
    // Runs inside the caller's transaction.
    bool copyLinks(int fromId, Task& next);
    // The account of a contact; 0 when it has none or cannot be read.
    int accountOfContact(int contactId);
    QString ErrMsg() const { return errMsg_; }

private:
    std::optional<QList<LinkedRecord>> read(qint16 recordKind, const QString& where);
    QString errMsg_;
};

}  // namespace tarvel
