#include "schedule/calendar.h"

#include <algorithm>

#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel {

QString ScheduleCalendar::spanQuery(const QDate& first, const QDate& last, const QString& filter) {
    const QString from = QLatin1Char('#') + jetdate::literalText(first) + QLatin1Char('#');
    const QString to = QLatin1Char('#') + jetdate::literalText(last) + QLatin1Char('#');
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
    return sql;
}

bool ScheduleCalendar::load(const QDate& first, const QDate& last, const QString& filter) {
    first_ = first;
    last_ = last;
    entries_.clear();
    outlay_.clear();
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
        if (date.isValid() && date.time() == QTime(0, 0) && date.date() >= first &&
            date.date() <= last) {
            Currency& sum = outlay_[date.date()];
            sum = Currency::fromUnits(sum.units() + Currency::fromVariant(rs->value(8)).units());
        }
        CalendarEntry e;
        e.id = recordvalue::int32(rs->value(0));
        e.time = time.isValid() ? time.time() : QTime();
        e.subject = recordvalue::text(rs->value(3));
        e.done = recordvalue::int16(rs->value(4)) != 0;
        e.remind = recordvalue::int16(rs->value(5)) == 1;
        e.recurring = cycleValue != cycle::Once;
        // A one-off row occurs on its own day only; a recurring one is tested
        // day by day over the part of the span its range covers.
        const QDate from = std::max(first, date.date());
        const QDate to = cycleValue == cycle::Once
                             ? date.date()
                             : std::min(last, close.isValid() ? close.date() : QDate());
        if (!date.isValid() || !to.isValid()) continue;
        for (QDate d = from; d <= to; d = d.addDays(1)) {
            if (!occursOn(date, cycleValue, close, d)) continue;
            e.day = d;
            entries_[d] << e;
        }
    }
    for (auto it = entries_.begin(); it != entries_.end(); ++it)
        std::stable_sort(it->begin(), it->end(),
                         [](const CalendarEntry& a, const CalendarEntry& b) {
                             if (a.time.isValid() != b.time.isValid()) return !a.time.isValid();
                             return a.time < b.time;
                         });
    return true;
}

QDate weekStart(const QDate& day) {
    return day.addDays(-(day.dayOfWeek() % 7));
}

QDate monthViewStart(const QDate& anyDayOfMonth) {
    return weekStart(QDate(anyDayOfMonth.year(), anyDayOfMonth.month(), 1));
}

}  // namespace tarvel
