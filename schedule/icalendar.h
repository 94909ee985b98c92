#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel {

class Task;

// iCalendar (RFC 5545) exchange of the schedule, for calendar programs and
// phones. Each task is one VEVENT (UID "tarvel-task-<id>@tarvel", stable
// across exports) with its date and time as local "floating" time, its
// recurrence as an RRULE that yields exactly the days the task occurs on
// (BYMONTHDAY and BYMONTH pin the day, so a monthly task from the 31st skips
// shorter months and a yearly one from 29 February non-leap years; UNTIL is
// the close date, inclusive), its reminder as a VALARM at its start, and its
// description. Text is UTF-8 with lines folded at 75 octets.

struct ICalendarExport {
    bool ok = false;
    int exported = 0;
    // Tasks that occur on no day (a close date before the start, an unknown
    // cycle): nothing to put in a calendar.
    QStringList skipped;
    QString ErrMsg;
};

// Writes the tasks (all, or those ticked in the task list: tas_check) to
// `path`. The file appears only when complete; a failure leaves what was
// there before.
ICalendarExport exportTasksToICalendar(const QString& path, bool tickedOnly);

// The calendar text of some tasks; `stamp` is the DTSTAMP of every event.
// Tasks that never occur are left out and named in `skipped` when given.
QByteArray iCalendarText(const QList<Task>& tasks, const QDateTime& stamp,
                         QStringList* skipped = nullptr);

struct ICalendarImport {
    bool ok = false;
    int imported = 0;
    // Events whose recurrence the schedule cannot hold, imported as their
    // first occurrence: "subject: reason".
    QStringList simplified;
    // Events without a start date, not imported.
    QStringList skipped;
    QString ErrMsg;
    // What the user is told afterwards, in Chinese.
    QString summary() const;
};

// Reads the VEVENTs of an iCalendar file into new tasks, all in one
// transaction: on any failure nothing is imported. Kept: daily, weekly,
// monthly on the start's day of month and yearly recurrences every period
// with UNTIL or COUNT. Anything else (intervals, several days, exceptions,
// no end) becomes the first occurrence and is reported. Times in UTC are
// turned into local time; times with a TZID are taken as the wall-clock time
// they name.
ICalendarImport importTasksFromICalendar(const QString& path);
ICalendarImport importTasksFromICalendarText(const QByteArray& text);

}  // namespace tarvel
