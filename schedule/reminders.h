#pragma once

#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include "schedule/messages.h"
#include "schedule/task.h"

namespace tarvel {

// Reminders. A task with tas_remind = 1 is announced on each day it occurs,
// at its time, by the reminder window (form_sch_remind). tas_again = 1 makes
// the reminder come back on every such day; otherwise dismissing it ends it.

// The due rule of one of today's tasks. A null remind or again counts as 0.
// A repeating reminder is due only when it was last dismissed on another day;
// one never dismissed (no tas_last_remind_date) is not due, as the rule has
// always been.
bool reminderDue(const QVariant& remind, const QVariant& again, const QVariant& lastRemindDate,
                 const QDate& today);

// The home page's query of the tasks occurring on `day`.
QString todayTasksQuery(const QDate& day);

// One of today's tasks on the home page.
struct TodayTask {
    enum class State {
        Waiting,  // not due, or due and its time has not come
        Showing,  // its reminder window is open
        Handled,  // dismissed: never fires again this day
    };
    int id = 0;
    QString subject;
    QTime time;        // invalid when the task has no time
    QString timeText;  // "hh:mm"
    bool done = false;
    bool due = false;  // the due rule when the list was read
    QDateTime fireAt;  // when a due entry fires: today at its time, or the snoozed time
    bool snoozed = false;
    State state = State::Waiting;
    QDateTime handledAt;
};

// A contact whose birthday is on the list's day (1900-1-1, the unknown
// birthday, never is).
struct TodayBirthday {
    int contactId = 0;
    QString name;
    QDate birthday;
};

// The model of the home page's list of today: the tasks occurring today with
// their due flags and firing times, and today's birthdays. The main window's
// timer calls fire() with the current time and opens a reminder window for
// each entry returned. No widgets: screens show tasks() and birthdays().
class TodayList {
public:
    // Reads the tasks occurring on `day` (sorted by time) and the birthdays
    // on it. Read again on the same day, entries keep what happened to them
    // (dismissed, snoozed, showing); a new day starts afresh. False (with
    // ErrMsg) when the data file could not be read.
    bool load(const QDate& day);
    bool load();  // today, by the program's clock
    QDate day() const { return day_; }
    const QList<TodayTask>& tasks() const { return tasks_; }
    const QList<TodayBirthday>& birthdays() const { return birthdays_; }
    const TodayTask* task(int taskId) const;

    // The due entries whose firing time has come by `now` and that are
    // neither dismissed nor showing; they are showing from now on, so each
    // fires once until snoozed. On a new day the list is read afresh first.
    QList<TodayTask> fire(const QDateTime& now);

    // From the reminder window: dismissed at `at`, so it never fires again
    // this day; snoozed, so it fires again at `at`. A window closed without
    // either leaves its entry showing: it does not fire again that day.
    void handled(int taskId, const QDateTime& at);
    void snoozed(int taskId, const QDateTime& at);

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }

private:
    TodayTask* find(int taskId);

    QDate day_;
    QList<TodayTask> tasks_;
    QList<TodayBirthday> birthdays_;
    QString errMsg_;
};

// The model of the reminder window form_sch_remind for one task: its fields,
// dismiss, snooze and open-task. The screen creates one per window it opens
// for an entry that TodayList::fire() returned.
class Reminder {
public:
    Reminder(int taskId, TodayList& list, Messages& messages);

    // Loads the task (Task::GetById).
    bool load();
    const Task& task() const { return task_; }
    // The read-only fields: txt_subject, txt_time ("hh:mm"), txt_type,
    // txt_important, txt_tag, txt_description. Every key press in them is
    // discarded by the screen.
    QString fieldText(const QString& control) const;
    void fill(Form& form) const;
    // txt_delay takes the digits 0 to 9 and nothing else (not even backspace).
    static bool acceptsDelayKey(QChar key);
    static QString defaultDelay() { return QStringLiteral("10"); }

    // `now` is the program's clock (Clock::now()) at the click.
    // cmd_cancel: a repeating reminder is stamped as dismissed today, a
    // one-time one is switched off for good; the list records the entry as
    // handled either way. False (with ErrMsg) when the statement failed.
    bool dismiss(const QDateTime& now);
    // cmd_delay: accepted when the minutes do not carry past 23:59 today; the
    // entry then fires again at now + minutes and the window closes. A longer
    // delay is refused with a message and the window stays open.
    bool snooze(const QString& delayText, const QDateTime& now);
    // cmd_opentask: the task list filter that shows this one task.
    QString openTaskFilter() const;

    QString ErrMsg() const { return errMsg_; }

private:
    int taskId_;
    TodayList& list_;
    Messages& messages_;
    Task task_;
    QString errMsg_;
};

}  // namespace tarvel
