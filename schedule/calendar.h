#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>

#include "records/currency.h"

namespace tarvel {

// One occurrence of a task on a calendar day.
struct CalendarEntry {
    int id = 0;
    QDate day;
    QTime time;  // invalid when the task has none
    QString subject;
    bool done = false;
    bool remind = false;
    bool recurring = false;
};

// The tasks that occur on each day of a span of days, as the day, week and
// month views show them. A recurring task stays one row: the span's
// candidates are read in one query and each day keeps those that occur on it
// by the same rule the task-date condition applies in the database. The
// day's outlay is that of the rows stored on it, as Task::GetOutlayAtDay
// counts it.
class ScheduleCalendar {
public:
    // `filter`: further terms on `tasks` ("tas_closed=0", ...) that every
    // task shown must meet; empty for all. False (with ErrMsg) when the data
    // file could not be read; the days then show nothing.
    bool load(const QDate& first, const QDate& last, const QString& filter = QString());

    QDate first() const { return first_; }
    QDate last() const { return last_; }
    // Sorted by time; tasks without a time first. Empty outside the span.
    QList<CalendarEntry> entriesOn(const QDate& day) const;
    Currency outlayOn(const QDate& day) const;

    // The query load() runs for the span.
    static QString spanQuery(const QDate& first, const QDate& last, const QString& filter);

    QString ErrMsg() const { return errMsg_; }

private:
    QDate first_, last_;
    qint64 index(const QDate& day) const;
    // One slot per day of the span.
    QList<QList<CalendarEntry>> entries_;
    QList<qint64> outlay_;  // currency units
    QString errMsg_;
};

// The first day shown by a month view: the Sunday on or before the 1st.
QDate monthViewStart(const QDate& anyDayOfMonth);
// The Sunday on or before `day`: the first day of its week view.
QDate weekStart(const QDate& day);

}  // namespace tarvel
