#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/icalwrapper.h"

namespace tarvel {
class Task;
}

namespace tarvel::exchange {

// The schedule as an iCalendar file, written by libical. Each task is one
// component with UID "tarvel-task-<id>@tarvel" (stable across exports), its
// date and time as floating local time, its cycle as an RRULE giving exactly
// the days the task occurs on (BYMONTHDAY/BYMONTH pin the day, so months and
// years without it are skipped, never rolled; UNTIL is the close date, none
// for an open end), its reminder as a VALARM, its tag as CATEGORIES. A done
// task is a VTODO marked COMPLETED, the rest VEVENTs.
struct ICalendarExport {
    bool ok = false;
    int exported = 0;
    // Tasks that occur on no day (a close date before the start, an unknown
    // cycle): nothing to put in a calendar.
    QStringList skipped;
    QString ErrMsg;
};

// Writes the tasks (all, or those ticked in the task list) to `path`. The
// file appears only when complete; a failure leaves what was there before.
ICalendarExport exportTasksToICalendar(const QString& path, bool tickedOnly);

// Builds the calendar text one task at a time.
class CalendarWriter {
public:
    // `stamp`: every component's DTSTAMP (local wall time).
    explicit CalendarWriter(const QDateTime& stamp);
    // False (nothing written) for a task that occurs on no day.
    bool add(const Task& task);
    QByteArray finish();

private:
    QByteArray text_, tail_;
    icaltimetype stamp_;
};

}  // namespace tarvel::exchange
