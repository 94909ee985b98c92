#pragma once

#include <QDateTime>
#include <QString>

#include "records/recorddescription.h"

namespace tarvel {

// One row of `tasks`: a schedule entry on a date, optionally at a time and
// optionally recurring (Cycle and CloseDate; see schedule/recurrence.h),
// with an outlay, importance, tag, type, flags and a description.
//
// Follows the record pattern of the other record classes: every operation
// returns its success flag and never throws; a failure appends
// "<operation>出错，原因可能是<reason>" to ErrMsg (oldest first, joined by
// " ; "), which callers clear. oForm and oAdodc are borrowed.
//
// Dates are naive date-times: TaskDate and CloseDate carry midnight,
// TaskTime the time of day on 1899-12-30 (what the data file stores for
// time-only values). The flags are 1 (set) or 0.
//
// Screens use it as follows:
//  - schedule detail / task panel section: ShowTask(id) (id 0 for a new
//    task), then on save AddTask() + the form's Cycle/CloseDate/Again +
//    Add() + AddToList(), or ChangeTask() + Update() / UpdateIndex(); a
//    follow-up from the next-schedule fields: AddNextTask() + Add() +
//    AddToList();
//  - related panels of the other records: SetQuery() fills the task grid
//    `dgrid_sch` and the digest;
//  - deleting: Delete() then DeleteRelation().
class Task : public RecordRow<Task> {
public:
    TARVEL_PROPERTY(int, ID, id_)
    TARVEL_PROPERTY(QString, Subject, subject_)
    TARVEL_PROPERTY(QDateTime, TaskDate, taskDate_)
    TARVEL_PROPERTY(QDateTime, TaskTime, taskTime_)
    TARVEL_PROPERTY(QString, TaskType, taskType_)
    TARVEL_PROPERTY(QString, Important, important_)
    TARVEL_PROPERTY(QString, Tag, tag_)
    TARVEL_PROPERTY(Currency, Outlay, outlay_)
    TARVEL_PROPERTY(qint16, iPrivate, private_)
    TARVEL_PROPERTY(qint16, Remind, remind_)
    TARVEL_PROPERTY(qint16, Closed, closed_)
    // 1: remind again on every day the task occurs (see schedule/reminders.h).
    TARVEL_PROPERTY(qint16, Again, again_)
    TARVEL_PROPERTY(qint16, Cycle, cycle_)
    TARVEL_PROPERTY(QDateTime, CloseDate, closeDate_)
    TARVEL_PROPERTY(QDateTime, CreateDate, createDate_)
    TARVEL_PROPERTY(QDateTime, RCDate, rcDate_)
    TARVEL_PROPERTY(QString, Description, description_)
    TARVEL_PROPERTY(QDateTime, Task_last_remind_date, lastRemindDate_)

    // Stores a new row; tas_create_date is today and tas_recent_contact_date
    // now (both also kept in the properties), tas_last_remind_date stays
    // empty. ID receives the database's key.
    bool Add();

    // The outlay of the rows stored on `day` (occurrences of recurring tasks
    // on later days are not counted); 0 for a day without rows or on failure.
    Currency GetOutlayAtDay(const QDate& day);

    // Form operations. Control names: txt_sch_subject, DT_sch_date,
    // cbo_sch_time, txt_sch_outlay, rtxt_sch_memo, chk_sch_remind,
    // chk_sch_completed, chk_sch_private, cbo_sch_importance, cbo_sch_tag,
    // Cbo_sch_type, and the next-schedule fields chk_sch_nextdate,
    // DT_sch_nextdate, cbo_sch_nexttime. Check boxes hold -1/0, date pickers
    // a QDate. A control is disabled through the form property
    // "<control>.Enabled" = false.

    // id 0: a new task for today at the current time (on a related panel its
    // subject is the panel record's kind label, ":" and the record's name);
    // otherwise loads task id.
    bool InitTask(int taskId);
    // InitTask, then writes the task onto oForm, resets the next-schedule
    // fields (unticked, today, the current time; date and time disabled) and
    // sets the form's g_TasID.
    bool ShowTask(int taskId);
    // Read the form for a new task / for the loaded task. Subject is cut to
    // 255 characters, importance and type to 50, tag to 255; an outlay that
    // is no number counts as 0; a time that is no time fails. Cycle,
    // CloseDate and Again are the form's to set.
    bool AddTask();
    bool ChangeTask();
    // A follow-up task from the next-schedule fields: same subject, the next
    // date and time, no outlay, open, no type, importance or tag.
    bool AddNextTask();
    // After AddTask (or Add): stores the task if it has no key yet, links it
    // to the records the form shows, sets g_TasID, refreshes the task grid
    // and positions it on the task. On a related panel the link is to the
    // panel's record; on any other form to each g_OppID, g_AccID, g_ConID,
    // g_DocID whose iShowOpp, iShowAcc, iShowCon, iShowDoc flag is set.
    bool AddToList();
    // After ChangeTask: writes the task into its row of the grid (which
    // stores it); a task the grid does not hold, or a grid without every
    // stored column, is stored with Update as well.
    bool UpdateIndex();
    // The tasks linked to the record of the related panel oForm (its
    // RecordID, or `otherId`), newest first, into the grid `dgrid_sch`, with
    // the digest of the same tasks in the form's `rtxt_sch_digest`.
    bool SetQuery();
    bool SetQuery(int otherId);
    QString Digest() const { return digest_; }

    // Columns, properties and the schedule form's controls (txt_sch_subject, ...).
    static const RecordDescription<Task>& description();
    // Kinds 1, 2, 3 and 5; AddRelative leaves an existing link as it is and
    // with kind 4 only stamps the task; DeleteRelative stamps nothing.
    static const RecordLinks& links();

private:
    bool readForm(bool newTask);
    // TaskDate and TaskTime from a date picker and a time box; fails, changing
    // nothing, when either holds no date or time.
    bool readWhen(const char* dateControl, const char* timeControl);
    // 1 when the check box is ticked, else 0.
    qint16 ticked(const char* control) const;
    bool linkToShownRecords();
    // The name of the record of a panel of kind `recordKind` (any but the task).
    bool panelRecordName(qint16 recordKind, int recordId, QString& name) const;

    int id_ = 0;
    QString subject_;
    QDateTime taskDate_, taskTime_;
    QString taskType_, important_, tag_;
    Currency outlay_;
    qint16 private_ = 0, remind_ = 0, closed_ = 0, again_ = 0, cycle_ = 0;
    QDateTime closeDate_, createDate_, rcDate_;
    QString description_;
    QDateTime lastRemindDate_;
    QString digest_;
};

}  // namespace tarvel
