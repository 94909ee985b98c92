#include "exchange/icalexport.h"

#include <QSaveFile>

#include "exchange/icalwrapper.h"
#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "schedule/task.h"
#include "store/clock.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

// The first day a task occurs on; invalid when it never does. A start with a
// time of day in its date begins on a later day, as the date condition has it.
QDate firstOccurrence(const Task& task) {
    const QDate start = task.TaskDate().date();
    if (!start.isValid()) return QDate();
    if (task.Cycle() == cycle::Once)
        return occursOn(task.TaskDate(), task.Cycle(), task.CloseDate(), start) ? start : QDate();
    const QDate close = task.CloseDate().date();
    // A yearly 29 February needs up to eight years to come round again.
    const QDate last = close.isValid() ? std::min(close, start.addYears(9)) : QDate();
    for (QDate d = start; last.isValid() && d <= last; d = d.addDays(1))
        if (occursOn(task.TaskDate(), task.Cycle(), task.CloseDate(), d)) return d;
    return QDate();
}

icalrecurrencetype ruleOf(const Task& task, const QDate& first, bool timed) {
    icalrecurrencetype r;
    icalrecurrencetype_clear(&r);
    switch (task.Cycle()) {
        case cycle::Daily:
            r.freq = ICAL_DAILY_RECURRENCE;
            break;
        case cycle::Weekly:
            r.freq = ICAL_WEEKLY_RECURRENCE;
            break;
        case cycle::Monthly:
            r.freq = ICAL_MONTHLY_RECURRENCE;
            r.by_month_day[0] = short(first.day());
            break;
        default:
            r.freq = ICAL_YEARLY_RECURRENCE;
            r.by_month[0] = short(first.month());
            r.by_month_day[0] = short(first.day());
            break;
    }
    r.interval = 1;
    // The close date is the last day that still counts, whatever the time.
    if (!isOpenEnded(task.CloseDate()))
        r.until = ical::floatingTime(QDateTime(task.CloseDate().date(), QTime(23, 59, 59)), !timed);
    return r;
}

icalcomponent* componentOf(const Task& task, const QDate& first, const icaltimetype& stamp) {
    const bool done = task.Closed() != 0;
    icalcomponent* c = done ? icalcomponent_new_vtodo() : icalcomponent_new_vevent();
    const QByteArray uid = QStringLiteral("tarvel-task-%1@tarvel").arg(task.ID()).toUtf8();
    icalcomponent_add_property(c, icalproperty_new_uid(uid.constData()));
    icalcomponent_add_property(c, icalproperty_new_dtstamp(stamp));
    const bool timed = task.TaskTime().isValid();
    const icaltimetype start =
        ical::floatingTime(QDateTime(first, timed ? task.TaskTime().time() : QTime(0, 0)), !timed);
    icalcomponent_add_property(c, icalproperty_new_dtstart(start));
    if (done) {
        icalcomponent_add_property(c, icalproperty_new_due(start));
        icalcomponent_add_property(c, icalproperty_new_status(ICAL_STATUS_COMPLETED));
        icalcomponent_add_property(c, icalproperty_new_percentcomplete(100));
    }
    if (task.Cycle() != cycle::Once)
        icalcomponent_add_property(c, icalproperty_new_rrule(ruleOf(task, first, timed)));
    const QByteArray subject = task.Subject().toUtf8();
    icalcomponent_add_property(c, icalproperty_new_summary(subject.constData()));
    if (!task.Description().isEmpty())
        icalcomponent_add_property(
            c, icalproperty_new_description(task.Description().toUtf8().constData()));
    if (!task.Tag().trimmed().isEmpty())
        icalcomponent_add_property(c, icalproperty_new_categories(task.Tag().toUtf8().constData()));
    if (task.iPrivate() == 1)
        icalcomponent_add_property(c, icalproperty_new_class(ICAL_CLASS_PRIVATE));
    if (task.Remind() == 1) {
        icalcomponent* alarm = icalcomponent_new_valarm();
        icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
        icalcomponent_add_property(alarm, icalproperty_new_description(subject.constData()));
        icaltriggertype trigger;
        trigger.time = icaltime_null_time();
        trigger.duration = icaldurationtype_null_duration();
        icalcomponent_add_property(alarm, icalproperty_new_trigger(trigger));
        icalcomponent_add_component(c, alarm);
    }
    return c;
}

}  // namespace

CalendarWriter::CalendarWriter(const QDateTime& stamp) {
    ical::quietErrors();
    ical::ComponentPtr calendar(icalcomponent_new_vcalendar());
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(),
                               icalproperty_new_prodid("-//Tarvel//Tarvel 3.1//ZH"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_calscale("GREGORIAN"));
    // Each component is written on its own, so a large schedule is never one
    // huge libical string.
    const QByteArray whole = ical::serialise(calendar.get());
    const qsizetype end = whole.lastIndexOf("END:VCALENDAR");
    text_ = whole.left(end);
    tail_ = whole.mid(end);
    // The program's clock is local wall time; DTSTAMP is UTC.
    const QDateTime utc = QDateTime(stamp.date(), stamp.time(), Qt::LocalTime).toUTC();
    stamp_ = ical::floatingTime(utc, false);
    stamp_.zone = icaltimezone_get_utc_timezone();
}

bool CalendarWriter::add(const Task& task) {
    const QDate first = firstOccurrence(task);
    if (!first.isValid()) return false;
    ical::ComponentPtr c(componentOf(task, first, stamp_));
    text_ += ical::serialise(c.get());
    return true;
}

QByteArray CalendarWriter::finish() {
    return text_ + tail_;
}

ICalendarExport exportTasksToICalendar(const QString& path, bool tickedOnly) {
    ICalendarExport result;
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT * FROM tasks") +
                     (tickedOnly ? QStringLiteral(" WHERE tas_check<>0") : QString()) +
                     QStringLiteral(" ORDER BY tas_date, tas_time"));
    if (!rs || !db.ErrMsg().isEmpty()) {
        result.ErrMsg = QStringLiteral("读取日程出错，原因可能是") + db.ErrMsg();
        return result;
    }
    CalendarWriter writer(Clock::now());
    int tasks = 0;
    for (Task task; !rs->Eof(); rs->MoveNext(), ++tasks) {
        task.LoadRow(*rs);
        if (!writer.add(task)) result.skipped << task.Subject();
    }
    const QByteArray text = writer.finish();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        result.ErrMsg = QStringLiteral("写入文件出错，原因可能是") + file.errorString();
        return result;
    }
    result.exported = int(tasks - result.skipped.size());
    result.ok = true;
    return result;
}

}  // namespace tarvel::exchange
