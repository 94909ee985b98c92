#include "schedule/calendar.h"

#include <algorithm>

#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel {

namespace {

// The days from `first` to `last` on which a task occurs, by the rule of
// occursOn() (and so of the task-date condition), stepping from one
// occurrence to the next instead of testing every day: a month view of many
// recurring tasks would otherwise test each of them on each of its days.
template <typename Occurs>
void forEachOccurrence(const QDateTime& taskDate, qint16 cycleValue, const QDateTime& close,
                       const QDate& first, const QDate& last, Occurs&& occurs) {
    if (!taskDate.isValid()) return;
    const QDate start = taskDate.date();
    if (cycleValue == cycle::Once) {
        if (start >= first && start <= last && occursOn(taskDate, cycleValue, close, start))
            occurs(start);
        return;
    }
    if (!close.isValid()) return;
    // A start later than midnight misses its own day: the day is compared as
    // its midnight. A close date counts on its day whatever its time.
    const QDate from = std::max(first, taskDate.time() == QTime(0, 0) ? start : start.addDays(1));
    const QDate to = std::min(last, close.date());
    if (from > to) return;
    switch (cycleValue) {
        case cycle::Daily:
            for (QDate d = from; d <= to; d = d.addDays(1)) occurs(d);
            break;
        case cycle::Weekly: {
            const qint64 offset = (7 - (from.toJulianDay() - start.toJulianDay()) % 7) % 7;
            for (QDate d = from.addDays(offset); d <= to; d = d.addDays(7)) occurs(d);
            break;
        }
        case cycle::Monthly:
        case cycle::Yearly:
            // Day numbers are matched, never rolled: a month without the day has none.
            for (QDate m(from.year(), from.month(), 1); m <= to; m = m.addMonths(1)) {
                if (cycleValue == cycle::Yearly && m.month() != start.month()) continue;
                const QDate d(m.year(), m.month(), start.day());
                if (d.isValid() && d.month() == m.month() && d >= from && d <= to) occurs(d);
            }
            break;
        default:
            break;
    }
}

}  // namespace

QString ScheduleCalendar::spanQuery(const QDate& first, const QDate& last, const QString& filter) {
    const QString from = jetdate::literal(first);
    const QString to = jetdate::literal(last);
    // Rows stored in the span (for the outlay, whatever they recur on) and the
    // recurring rows whose range meets it; which day each occurs on is sorted
    // out in memory.
    QString sql = QStringLiteral(
                      "SELECT tas_id, tas_date, tas_time, tas_subject, tas_closed, tas_remind, "
                      "tas_cycle, tas_closedate, tas_outlay FROM tasks WHERE ((tas_date >= ") +
                  from + QStringLiteral(" AND tas_date <= ") + to +
                  QStringLiteral(") OR (tas_cycle IN (1, 7, 30, 365) AND tas_date <= ") + to +
                  QStringLiteral(" AND tas_closedate >= ") + from + QStringLiteral("))");
    if (!filter.trimmed().isEmpty()) sql += QStringLiteral(" AND (") + filter + QLatin1Char(')');
    // In time order (tasks without a time first), so each day's list is too.
    return sql + QStringLiteral(" ORDER BY tas_time, tas_id");
}

bool ScheduleCalendar::load(const QDate& first, const QDate& last, const QString& filter) {
    first_ = first;
    last_ = last;
    const qint64 days = first.isValid() && last >= first ? first.daysTo(last) + 1 : 0;
    entries_ = QList<QList<CalendarEntry>>(days);
    outlay_ = QList<qint64>(days, 0);
    errMsg_.clear();
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(spanQuery(first, last, filter));
    if (!rs || !db.ErrMsg().isEmpty()) {
        errMsg_ = QStringLiteral("读取日程出错，原因可能是") + db.ErrMsg();
        return false;
    }
    for (; !rs->Eof(); rs->MoveNext()) {
        const QDateTime date = recordvalue::dateTime(rs->value(1));
        const QDateTime time = recordvalue::dateTime(rs->value(2));
        const qint16 cycleValue = recordvalue::int16(rs->value(6));
        const QDateTime close = recordvalue::dateTime(rs->value(7));
        if (date.isValid() && date.time() == QTime(0, 0) && index(date.date()) >= 0)
            outlay_[index(date.date())] += Currency::fromVariant(rs->value(8)).units();
        CalendarEntry e;
        e.id = recordvalue::int32(rs->value(0));
        e.time = time.isValid() ? time.time() : QTime();
        e.subject = recordvalue::text(rs->value(3));
        e.done = recordvalue::int16(rs->value(4)) != 0;
        e.remind = recordvalue::int16(rs->value(5)) == 1;
        e.recurring = cycleValue != cycle::Once;
        forEachOccurrence(date, cycleValue, close, first, last, [&](const QDate& d) {
            e.day = d;
            entries_[index(d)] << e;
        });
    }
    return true;
}

qint64 ScheduleCalendar::index(const QDate& day) const {
    if (!first_.isValid() || day < first_ || day > last_) return -1;
    return first_.daysTo(day);
}

QList<CalendarEntry> ScheduleCalendar::entriesOn(const QDate& day) const {
    const qint64 i = index(day);
    return i < 0 || i >= entries_.size() ? QList<CalendarEntry>() : entries_[i];
}

Currency ScheduleCalendar::outlayOn(const QDate& day) const {
    const qint64 i = index(day);
    return i < 0 || i >= outlay_.size() ? Currency() : Currency::fromUnits(outlay_[i]);
}
QDate weekStart(const QDate& day) {
    return day.addDays(-(day.dayOfWeek() % 7));
}

QDate monthViewStart(const QDate& anyDayOfMonth) {
    return weekStart(QDate(anyDayOfMonth.year(), anyDayOfMonth.month(), 1));
}

}  // namespace tarvel
