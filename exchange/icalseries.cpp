#include "exchange/icalseries.h"

#include <algorithm>

namespace tarvel::exchange {

namespace {

// A series gives at most this many occurrences (FREQ=MINUTELY for years...).
constexpr int kMostOccurrences = 50000;

icaltimetype zonedValue(icalcomponent* c, icalproperty* p, icaltimetype t) {
    return ical::zoned(t, ical::zoneOf(c, p));
}

// libical marks what it could not read with X-LIC-ERROR; those naming a
// property that decides the days make the event unusable.
QString dateError(icalcomponent* c) {
    static const char* const deciding[] = {"DTSTART", "DTEND",  "DUE",           "RRULE",
                                           "RDATE",   "EXDATE", "RECURRENCE-ID", "DURATION"};
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_XLICERROR_PROPERTY); p;
         p = icalcomponent_get_next_property(c, ICAL_XLICERROR_PROPERTY)) {
        const QString text = QString::fromUtf8(icalproperty_get_xlicerror(p));
        for (const char* name : deciding)
            if (text.contains(QLatin1String(name), Qt::CaseInsensitive)) return text;
    }
    return QString();
}

}  // namespace

icaltimetype anchorOf(icalcomponent* c) {
    const bool todo = icalcomponent_isa(c) == ICAL_VTODO_COMPONENT;
    icalproperty* p = todo ? icalcomponent_get_first_property(c, ICAL_DUE_PROPERTY) : nullptr;
    if (p) return zonedValue(c, p, icalproperty_get_due(p));
    p = icalcomponent_get_first_property(c, ICAL_DTSTART_PROPERTY);
    return p ? zonedValue(c, p, icalproperty_get_dtstart(p)) : icaltime_null_time();
}

QDateTime recurrenceIdOf(icalcomponent* c) {
    icalproperty* p = icalcomponent_get_first_property(c, ICAL_RECURRENCEID_PROPERTY);
    return p ? ical::localTime(zonedValue(c, p, icalproperty_get_recurrenceid(p))) : QDateTime();
}

ExpandedSeries expandSeries(icalcomponent* c, const QDate& today,
                            const QList<QDateTime>& replaced) {
    ExpandedSeries s;
    if (const QString error = dateError(c); !error.isEmpty()) {
        s.problem = QStringLiteral("日期或重复规则无法识别（%1）").arg(error);
        return s;
    }
    const bool todo = icalcomponent_isa(c) == ICAL_VTODO_COMPONENT;
    icaltimetype start = anchorOf(c);
    if (icaltime_is_null_time(start)) {
        if (!todo) {
            s.problem = QStringLiteral("没有开始日期");
            return s;
        }
        // A to-do without dates is due on the day it arrives.
        start = ical::floatingTime(QDateTime(today, QTime(0, 0)), true);
    }
    s.allDay = start.is_date;
    const QDateTime first = ical::localTime(start);
    if (!first.isValid()) {
        s.problem = QStringLiteral("开始日期无法识别");
        return s;
    }
    // How many days one occurrence covers.
    if (!todo) {
        QDateTime end;
        if (icalproperty* p = icalcomponent_get_first_property(c, ICAL_DTEND_PROPERTY))
            end = ical::localTime(zonedValue(c, p, icalproperty_get_dtend(p)));
        else if (icalproperty* d = icalcomponent_get_first_property(c, ICAL_DURATION_PROPERTY))
            end = first.addSecs(icaldurationtype_as_int(icalproperty_get_duration(d)));
        if (end.isValid() && end > first)
            s.extraDays = int(s.allDay ? std::max<qint64>(0, first.daysTo(end) - 1)
                                       : first.date().daysTo(end.addSecs(-1).date()));
    }
    QList<QDateTime> starts{first};
    // An endless series is read two years past the later of today and its
    // start, and a year more to tell how it goes on.
    s.horizon = std::max(first.date(), today).addYears(2);
    const QDate beyondEnd = s.horizon.addYears(1);
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_RRULE_PROPERTY); p;
         p = icalcomponent_get_next_property(c, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype rule = icalproperty_get_rrule(p);
        if (rule.freq == ICAL_NO_RECURRENCE) {
            s.problem = QStringLiteral("重复规则无法识别");
            return s;
        }
        const bool endless = rule.count == 0 && icaltime_is_null_time(rule.until);
        s.goesOn = s.goesOn || endless;
        ical::IteratorPtr it(icalrecur_iterator_new(rule, start));
        if (!it) {
            s.problem = QStringLiteral("重复规则无法展开");
            return s;
        }
        for (icaltimetype t = icalrecur_iterator_next(it.get()); !icaltime_is_null_time(t);
             t = icalrecur_iterator_next(it.get())) {
            if (!t.zone && !icaltime_is_utc(t)) t.zone = start.zone;
            const QDateTime local = ical::localTime(t);
            if (!local.isValid() || (endless && local.date() > beyondEnd)) break;
            if (starts.size() >= kMostOccurrences) {
                s.tooMany = true;
                break;
            }
            starts << local;
        }
    }
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_RDATE_PROPERTY); p;
         p = icalcomponent_get_next_property(c, ICAL_RDATE_PROPERTY)) {
        const icaldatetimeperiodtype r = icalproperty_get_rdate(p);
        const icaltimetype t = icaltime_is_null_time(r.time) ? r.period.start : r.time;
        const QDateTime local = ical::localTime(zonedValue(c, p, t));
        if (local.isValid()) starts << local;
    }
    std::sort(starts.begin(), starts.end());
    starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
    // EXDATEs and replaced occurrences drop out; an EXDATE given as a date
    // drops every occurrence of that day.
    QList<QDateTime> gone = replaced;
    QList<QDate> goneDays;
    for (icalproperty* p = icalcomponent_get_first_property(c, ICAL_EXDATE_PROPERTY); p;
         p = icalcomponent_get_next_property(c, ICAL_EXDATE_PROPERTY)) {
        const icaltimetype t = zonedValue(c, p, icalproperty_get_exdate(p));
        if (t.is_date && !s.allDay)
            goneDays << QDate(t.year, t.month, t.day);
        else
            gone << ical::localTime(t);
    }
    starts.removeIf(
        [&](const QDateTime& d) { return gone.contains(d) || goneDays.contains(d.date()); });
    s.starts = starts;
    return s;
}

}  // namespace tarvel::exchange
