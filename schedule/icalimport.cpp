#include <QFile>

#include "records/recordbase.h"
#include "schedule/icalendar.h"
#include "schedule/icaltext.h"
#include "schedule/recurrence.h"
#include "schedule/task.h"
#include "store/jetdate.h"
#include "store/transaction.h"

namespace tarvel {

namespace {

// One VEVENT as read, before it becomes a task.
struct Event {
    QString subject, description, category;
    QDateTime start;
    bool allDay = false;
    bool remind = false;
    bool isPrivate = false;
    QString rrule;
    bool exceptions = false;  // EXDATE or RDATE
};

// The local wall-clock time a DATE-TIME value stands for.
QDateTime localTime(const ical::ContentLine& line, bool* isDate = nullptr) {
    bool utc = false;
    QDateTime t = ical::parseDateTime(line.value, isDate, &utc);
    if (t.isValid() && utc) {
        t = QDateTime(t.date(), t.time(), Qt::UTC).toLocalTime();
        t = QDateTime(t.date(), t.time());
    }
    return t;
}

QList<Event> readEvents(const QByteArray& text) {
    QList<Event> events;
    Event* current = nullptr;
    int depth = 0;  // components inside the event (alarms)
    for (const ical::ContentLine& line : ical::contentLines(text)) {
        const QString value = line.value.trimmed();
        if (line.name == QLatin1String("BEGIN")) {
            if (value.compare(QLatin1String("VEVENT"), Qt::CaseInsensitive) == 0 && !current) {
                events << Event();
                current = &events.last();
                depth = 0;
            } else if (current) {
                ++depth;
                if (value.compare(QLatin1String("VALARM"), Qt::CaseInsensitive) == 0)
                    current->remind = true;
            }
            continue;
        }
        if (line.name == QLatin1String("END")) {
            if (current && depth == 0)
                current = nullptr;
            else if (current)
                --depth;
            continue;
        }
        if (!current || depth > 0) continue;
        if (line.name == QLatin1String("SUMMARY")) {
            current->subject = ical::unescapeText(line.value);
        } else if (line.name == QLatin1String("DESCRIPTION")) {
            current->description = ical::unescapeText(line.value);
        } else if (line.name == QLatin1String("CATEGORIES")) {
            current->category = ical::unescapeText(line.value.section(QLatin1Char(','), 0, 0));
        } else if (line.name == QLatin1String("CLASS")) {
            current->isPrivate = value.compare(QLatin1String("PUBLIC"), Qt::CaseInsensitive) != 0;
        } else if (line.name == QLatin1String("DTSTART")) {
            current->start = localTime(line, &current->allDay);
        } else if (line.name == QLatin1String("RRULE")) {
            current->rrule = value.toUpper();
        } else if (line.name == QLatin1String("EXDATE") || line.name == QLatin1String("RDATE")) {
            current->exceptions = true;
        }
    }
    return events;
}

// The cycle and close date of a rule the schedule can hold; otherwise the
// reason it cannot, in `why`.
bool representable(const Event& e, qint16* cycleValue, QDate* close, QString* why) {
    QHash<QString, QString> parts;
    for (const QString& part : e.rrule.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        parts.insert(part.section(QLatin1Char('='), 0, 0), part.section(QLatin1Char('='), 1));
    const QDate start = e.start.date();
    static const QHash<QString, qint16> cycles = {{QStringLiteral("DAILY"), cycle::Daily},
                                                  {QStringLiteral("WEEKLY"), cycle::Weekly},
                                                  {QStringLiteral("MONTHLY"), cycle::Monthly},
                                                  {QStringLiteral("YEARLY"), cycle::Yearly}};
    static const char* const weekdays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
    const QString freq = parts.take(QStringLiteral("FREQ"));
    if (!cycles.contains(freq)) return *why = QStringLiteral("重复周期不支持"), false;
    *cycleValue = cycles.value(freq);
    if (const QString interval = parts.take(QStringLiteral("INTERVAL"));
        !interval.isEmpty() && interval != QLatin1String("1"))
        return *why = QStringLiteral("间隔重复不支持"), false;
    parts.remove(QStringLiteral("WKST"));
    // Rule parts that only restate the start day are harmless.
    const auto restates = [&](const QString& key, const QString& same) {
        const QString v = parts.value(key);
        if (v.isEmpty() || v == same) {
            parts.remove(key);
            return true;
        }
        return false;
    };
    const bool sameDays =
        (freq != QLatin1String("WEEKLY") ||
         restates(QStringLiteral("BYDAY"), QLatin1String(weekdays[start.dayOfWeek() - 1]))) &&
        ((freq != QLatin1String("MONTHLY") && freq != QLatin1String("YEARLY")) ||
         restates(QStringLiteral("BYMONTHDAY"), QString::number(start.day()))) &&
        (freq != QLatin1String("YEARLY") ||
         restates(QStringLiteral("BYMONTH"), QString::number(start.month())));
    const QString until = parts.take(QStringLiteral("UNTIL"));
    const QString count = parts.take(QStringLiteral("COUNT"));
    if (!sameDays || !parts.isEmpty()) return *why = QStringLiteral("重复规则过于复杂"), false;
    if (e.exceptions) return *why = QStringLiteral("有例外日期"), false;
    if (!until.isEmpty()) {
        bool utc = false;
        QDateTime last = ical::parseDateTime(until, nullptr, &utc);
        if (!last.isValid()) return *why = QStringLiteral("结束日期无法识别"), false;
        if (utc) last = QDateTime(last.date(), last.time(), Qt::UTC).toLocalTime();
        // The last day counts only when its occurrence is not later than UNTIL.
        *close = last.time() >= e.start.time() || e.allDay ? last.date() : last.date().addDays(-1);
        return true;
    }
    if (!count.isEmpty()) {
        const int n = count.toInt();
        if (n < 1) return *why = QStringLiteral("重复次数无法识别"), false;
        const QDateTime first = jetdate::naive(start);
        const QDateTime open = jetdate::naive(QDate(9999, 12, 31));
        int seen = 0;
        const int lastYear = int(std::min<qint64>(9999, start.year() + 10LL * n + 10));
        for (QDate d = start; d.year() < lastYear; d = d.addDays(1))
            if (occursOn(first, *cycleValue, open, d) && ++seen == n) {
                *close = d;
                return true;
            }
        return *why = QStringLiteral("重复次数无法识别"), false;
    }
    return *why = QStringLiteral("没有结束日期"), false;
}

}  // namespace

QString ICalendarImport::summary() const {
    QString text = QStringLiteral("导入了%1项日程。").arg(imported);
    if (!simplified.isEmpty())
        text += QStringLiteral("\n以下%1项的重复方式无法保留，只导入了第一次：\n")
                    .arg(simplified.size()) +
                simplified.join(QLatin1Char('\n'));
    if (!skipped.isEmpty())
        text += QStringLiteral("\n以下%1项没有开始日期，没有导入：\n").arg(skipped.size()) +
                skipped.join(QLatin1Char('\n'));
    return text;
}

ICalendarImport importTasksFromICalendarText(const QByteArray& text) {
    ICalendarImport result;
    if (!text.contains("BEGIN:VCALENDAR")) {
        result.ErrMsg = QStringLiteral("这不是iCalendar日历文件。");
        return result;
    }
    Transaction transaction;
    if (!transaction.isActive()) {
        result.ErrMsg = transaction.error();
        return result;
    }
    for (const Event& e : readEvents(text)) {
        const QString name = e.subject.isEmpty() ? QStringLiteral("(无主题)") : e.subject;
        if (!e.start.isValid()) {
            result.skipped << name;
            continue;
        }
        Task task;
        task.setSubject(recordvalue::leftChars(e.subject, 255));
        task.setDescription(e.description);
        task.setTaskType(recordvalue::leftChars(e.category, 50));
        task.setTaskDate(jetdate::naive(e.start.date()));
        task.setTaskTime(e.allDay ? QDateTime()
                                  : jetdate::naive(jetdate::timeBaseDate(), e.start.time()));
        task.setRemind(e.remind ? 1 : 0);
        task.setiPrivate(e.isPrivate ? 1 : 0);
        task.setCloseDate(task.TaskDate());
        if (!e.rrule.isEmpty()) {
            qint16 cycleValue = cycle::Once;
            QDate close;
            QString why;
            if (representable(e, &cycleValue, &close, &why)) {
                task.setCycle(cycleValue);
                task.setCloseDate(jetdate::naive(close));
            } else {
                result.simplified << name + QStringLiteral("：") + why;
            }
        }
        if (!task.Add()) {
            result.ErrMsg = task.ErrMsg();
            result.imported = 0;
            result.simplified.clear();
            return result;  // the guard rolls every row back
        }
        ++result.imported;
    }
    if (!transaction.commit()) {
        result.ErrMsg = transaction.error();
        result.imported = 0;
        return result;
    }
    result.ok = true;
    return result;
}

ICalendarImport importTasksFromICalendar(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ICalendarImport result;
        result.ErrMsg = QStringLiteral("打不开文件，原因可能是") + file.errorString();
        return result;
    }
    return importTasksFromICalendarText(file.readAll());
}

}  // namespace tarvel
