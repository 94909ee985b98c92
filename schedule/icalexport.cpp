#include <QSaveFile>

#include "records/recordbase.h"
#include "schedule/icalendar.h"
#include "schedule/icaltext.h"
#include "schedule/recurrence.h"
#include "schedule/task.h"
#include "store/clock.h"
#include "store/tarveldatabase.h"

namespace tarvel {

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

QString rrule(const Task& task, const QDate& first, bool timed) {
    QString rule;
    switch (task.Cycle()) {
        case cycle::Daily:
            rule = QStringLiteral("FREQ=DAILY");
            break;
        case cycle::Weekly:
            rule = QStringLiteral("FREQ=WEEKLY");
            break;
        case cycle::Monthly:
            // Pinned to the day: months without it are skipped, never rolled back.
            rule = QStringLiteral("FREQ=MONTHLY;BYMONTHDAY=%1").arg(first.day());
            break;
        case cycle::Yearly:
            rule = QStringLiteral("FREQ=YEARLY;BYMONTH=%1;BYMONTHDAY=%2")
                       .arg(first.month())
                       .arg(first.day());
            break;
        default:
            return QString();
    }
    // The close date is the last day that still counts, whatever the time.
    const QDate close = task.CloseDate().date();
    return rule + QStringLiteral(";UNTIL=") +
           (timed ? ical::dateTimeText(QDateTime(close, QTime(23, 59, 59)))
                  : ical::dateText(close));
}

void appendEvent(QByteArray& out, const Task& task, const QDate& first, const QString& stamp) {
    auto line = [&out](const QString& text) { out += ical::foldedLine(text); };
    line(QStringLiteral("BEGIN:VEVENT"));
    line(QStringLiteral("UID:tarvel-task-%1@tarvel").arg(task.ID()));
    line(QStringLiteral("DTSTAMP:") + stamp);
    const bool timed = task.TaskTime().isValid();
    if (timed)
        line(QStringLiteral("DTSTART:") +
             ical::dateTimeText(QDateTime(first, task.TaskTime().time())));
    else
        line(QStringLiteral("DTSTART;VALUE=DATE:") + ical::dateText(first));
    if (task.Cycle() != cycle::Once) line(QStringLiteral("RRULE:") + rrule(task, first, timed));
    line(QStringLiteral("SUMMARY:") + ical::escapeText(task.Subject()));
    if (!task.Description().isEmpty())
        line(QStringLiteral("DESCRIPTION:") + ical::escapeText(task.Description()));
    if (!task.TaskType().isEmpty())
        line(QStringLiteral("CATEGORIES:") + ical::escapeText(task.TaskType()));
    if (task.iPrivate() == 1) line(QStringLiteral("CLASS:PRIVATE"));
    if (task.Remind() == 1) {
        line(QStringLiteral("BEGIN:VALARM"));
        line(QStringLiteral("ACTION:DISPLAY"));
        line(QStringLiteral("DESCRIPTION:") + ical::escapeText(task.Subject()));
        line(QStringLiteral("TRIGGER:PT0S"));
        line(QStringLiteral("END:VALARM"));
    }
    line(QStringLiteral("END:VEVENT"));
}

}  // namespace

QByteArray iCalendarText(const QList<Task>& tasks, const QDateTime& stamp, QStringList* skipped) {
    QByteArray out;
    out += ical::foldedLine(QStringLiteral("BEGIN:VCALENDAR"));
    out += ical::foldedLine(QStringLiteral("VERSION:2.0"));
    out += ical::foldedLine(QStringLiteral("PRODID:-//Tarvel//Tarvel 3.1//ZH"));
    out += ical::foldedLine(QStringLiteral("CALSCALE:GREGORIAN"));
    // The program's clock is local wall time; DTSTAMP is UTC.
    const QString stampText =
        ical::dateTimeText(QDateTime(stamp.date(), stamp.time()).toUTC()) + QLatin1Char('Z');
    for (const Task& task : tasks) {
        const QDate first = firstOccurrence(task);
        if (!first.isValid()) {
            if (skipped) *skipped << task.Subject();
            continue;
        }
        appendEvent(out, task, first, stampText);
    }
    out += ical::foldedLine(QStringLiteral("END:VCALENDAR"));
    return out;
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
    QList<Task> tasks;
    for (; !rs->Eof(); rs->MoveNext()) {
        Task task;
        task.LoadRow(*rs);
        tasks << task;
    }
    const QByteArray text = iCalendarText(tasks, Clock::now(), &result.skipped);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        result.ErrMsg = QStringLiteral("写入文件出错，原因可能是") + file.errorString();
        return result;
    }
    result.exported = int(tasks.size() - result.skipped.size());
    result.ok = true;
    return result;
}

}  // namespace tarvel
