#include "exchange/icalimport.h"

#include <QCryptographicHash>
#include <QFile>
#include <QHash>
#include <QMap>

#include "exchange/icaldayplan.h"
#include "exchange/icalseries.h"
#include "exchange/icalwrapper.h"
#include "exchange/recordwriter.h"
#include "exchange/textdecode.h"
#include "records/columnlimit.h"
#include "schedule/recurrence.h"
#include "store/clock.h"
#include "store/jetdate.h"

namespace tarvel::exchange {

namespace {

const int kSubjectLength = columnlimit::width(QStringLiteral("tas_subject"));
const int kTagLength = columnlimit::width(QStringLiteral("tas_tag"));

// One VEVENT or VTODO as found, with the line it begins on.
struct Found {
    icalcomponent* component = nullptr;
    int line = 0;
    QString uid;
    QDateTime recurrenceId;
};

QString subjectOf(icalcomponent* c) {
    const QString s = ical::text(c, ICAL_SUMMARY_PROPERTY).trimmed();
    return s.isEmpty() ? QStringLiteral("(无主题)") : s;
}

QString where(const Found& f) {
    return f.line > 0 ? QStringLiteral("第%1行「%2」").arg(f.line).arg(subjectOf(f.component))
                      : QStringLiteral("「%1」").arg(subjectOf(f.component));
}

bool isDone(icalcomponent* c) {
    if (icalcomponent_isa(c) != ICAL_VTODO_COMPONENT) return false;
    if (icalproperty* p = icalcomponent_get_first_property(c, ICAL_STATUS_PROPERTY))
        if (icalproperty_get_status(p) == ICAL_STATUS_COMPLETED) return true;
    if (icalproperty* p = icalcomponent_get_first_property(c, ICAL_PERCENTCOMPLETE_PROPERTY))
        if (icalproperty_get_percentcomplete(p) >= 100) return true;
    return icalcomponent_get_first_property(c, ICAL_COMPLETED_PROPERTY) != nullptr;
}

bool isPrivate(icalcomponent* c) {
    icalproperty* p = icalcomponent_get_first_property(c, ICAL_CLASS_PROPERTY);
    return p && icalproperty_get_class(p) != ICAL_CLASS_PUBLIC &&
           icalproperty_get_class(p) != ICAL_CLASS_NONE;
}

// An event without UID still needs an id that a second import recognises:
// its whole text but the stamp of when it was written.
QString idOf(icalcomponent* c) {
    const QString uid = ical::text(c, ICAL_UID_PROPERTY).trimmed();
    if (!uid.isEmpty()) return uid;
    ical::ComponentPtr copy(icalcomponent_new_clone(c));
    while (icalproperty* p = icalcomponent_get_first_property(copy.get(), ICAL_DTSTAMP_PROPERTY)) {
        icalcomponent_remove_property(copy.get(), p);
        icalproperty_free(p);
    }
    return QStringLiteral("nouid-") +
           QString::fromLatin1(
               QCryptographicHash::hash(ical::serialise(copy.get()), QCryptographicHash::Sha1)
                   .toHex());
}

QString cycleName(qint16 c) {
    switch (c) {
        case cycle::Daily:
            return QStringLiteral("每天重复");
        case cycle::Weekly:
            return QStringLiteral("每周重复");
        case cycle::Monthly:
            return QStringLiteral("每月重复");
        case cycle::Yearly:
            return QStringLiteral("每年重复");
        default:
            return QStringLiteral("单次");
    }
}

// "拆为7项日程：5项每周重复，2项单次".
QString whatBecameOf(const QList<PlannedTask>& tasks) {
    QMap<qint16, int> counts;
    for (const PlannedTask& t : tasks) ++counts[t.cycle];
    QStringList parts;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        parts << QStringLiteral("%1项%2").arg(it.value()).arg(cycleName(it.key()));
    return QStringLiteral("拆为%1项日程（%2）")
        .arg(tasks.size())
        .arg(parts.join(QStringLiteral("，")));
}

// The columns every task of a component shares.
QHash<QString, QVariant> sharedColumns(icalcomponent* c, QStringList* notes, const QString& name) {
    QHash<QString, QVariant> row;
    QString subject = ical::text(c, ICAL_SUMMARY_PROPERTY).trimmed();
    QStringList memo;
    if (columnlimit::exceeds(subject, kSubjectLength)) {
        memo << QStringLiteral("主题：") + subject;
        *notes
            << QStringLiteral("%1：主题超过%2个字，全文保留在备注中").arg(name).arg(kSubjectLength);
        subject = columnlimit::cut(subject, kSubjectLength);
    }
    row.insert(QStringLiteral("tas_subject"), subject);
    if (const QString d = ical::text(c, ICAL_DESCRIPTION_PROPERTY); !d.trimmed().isEmpty())
        memo << d;
    if (const QString l = ical::text(c, ICAL_LOCATION_PROPERTY); !l.trimmed().isEmpty())
        memo << QStringLiteral("地点：") + l;
    row.insert(QStringLiteral("tas_description"), memo.join(QLatin1Char('\n')));
    QString tag = ical::texts(c, ICAL_CATEGORIES_PROPERTY).join(QLatin1Char(','));
    if (columnlimit::exceeds(tag, kTagLength)) {
        *notes << QStringLiteral("%1：分类超过%2个字，全文保留在备注中").arg(name).arg(kTagLength);
        row[QStringLiteral("tas_description")] =
            row.value(QStringLiteral("tas_description")).toString() + QStringLiteral("\n分类：") +
            tag;
        tag = columnlimit::cut(tag, kTagLength);
    }
    row.insert(QStringLiteral("tas_tag"), tag);
    row.insert(QStringLiteral("tas_remind"),
               icalcomponent_get_first_component(c, ICAL_VALARM_COMPONENT) ? 1 : 0);
    row.insert(QStringLiteral("tas_closed"), isDone(c) ? 1 : 0);
    row.insert(QStringLiteral("tas_private"), isPrivate(c) ? 1 : 0);
    row.insert(QStringLiteral("tas_again"), 0);
    return row;
}

class Importer {
public:
    Importer(ImportSession& session, ICalendarImport& result)
        : session_(session), result_(result), today_(Clock::today()) {}

    // False when the session failed: the import stops.
    bool put(const Found& f, const QList<QDateTime>& replaced, const QString& externalId) {
        const ExpandedSeries s = expandSeries(f.component, today_, replaced);
        if (!s.problem.isEmpty()) {
            result_.leftOut << where(f) + QStringLiteral("：") + s.problem;
            return true;
        }
        if (s.starts.isEmpty()) return true;  // every occurrence excluded or replaced
        // Occurrences by their local time (all-day ones have none), each on
        // every day it covers.
        QMap<QTime, QList<QDate>> days, beyond;
        for (const QDateTime& start : s.starts) {
            const QTime time = s.allDay ? QTime() : start.time();
            for (int k = 0; k <= s.extraDays; ++k) {
                const QDate d = start.date().addDays(k);
                (s.goesOn && d > s.horizon ? beyond : days)[time] << d;
            }
        }
        QList<std::pair<QTime, PlannedTask>> planned;
        bool cut = false;
        for (auto it = days.begin(); it != days.end(); ++it) {
            QList<QDate>& list = it.value();
            std::sort(list.begin(), list.end());
            list.erase(std::unique(list.begin(), list.end()), list.end());
            QList<QDate> next = beyond.value(it.key());
            std::sort(next.begin(), next.end());
            next.erase(std::unique(next.begin(), next.end()), next.end());
            const QList<PlannedTask> tasks = planTasks(list, s.goesOn, s.horizon, next);
            bool open = false;
            for (const PlannedTask& t : tasks) {
                planned.append({it.key(), t});
                open = open || t.openEnded;
            }
            cut = cut || (s.goesOn && !open);
        }
        const QString name = where(f);
        QHash<QString, QVariant> row = sharedColumns(f.component, &result_.notes, name);
        if (planned.size() > 1) {
            QList<PlannedTask> tasks;
            for (const auto& p : planned) tasks << p.second;
            result_.notes << name + QStringLiteral("：") + whatBecameOf(tasks);
        }
        if (cut)
            result_.notes << name + QStringLiteral("：没有结束日期，重复方式无法保留，导入到%1为止")
                                        .arg(s.horizon.toString(QStringLiteral("yyyy-M-d")));
        if (s.tooMany)
            result_.notes
                << name + QStringLiteral("：重复次数过多，只导入了前%1次").arg(s.starts.size());
        for (qsizetype i = 0; i < planned.size(); ++i) {
            const auto& [time, t] = planned[i];
            row.insert(QStringLiteral("tas_date"), jetdate::naive(t.start));
            row.insert(QStringLiteral("tas_time"),
                       time.isValid() ? QVariant(jetdate::naive(jetdate::timeBaseDate(), time))
                                      : QVariant());
            row.insert(QStringLiteral("tas_cycle"), t.cycle);
            row.insert(QStringLiteral("tas_closedate"),
                       jetdate::naive(t.openEnded ? openEndDate() : t.close));
            IncomingRecord record;
            record.columns = row;
            record.externalId =
                planned.size() > 1 ? externalId + QStringLiteral("#%1").arg(i + 1) : externalId;
            QString error;
            if (!session_.put(record, &error)) {
                result_.ErrMsg = importFailed() + error;
                return false;
            }
        }
        return true;
    }

private:
    ImportSession& session_;
    ICalendarImport& result_;
    QDate today_;
};

}  // namespace

QString ICalendarImport::summary() const {
    QString text = tally.summary();
    if (!tally.cuts.isEmpty()) text += QLatin1Char('\n') + tally.cutLines();
    if (!notes.isEmpty()) text += QLatin1Char('\n') + notes.join(QLatin1Char('\n'));
    if (!leftOut.isEmpty())
        text += QStringLiteral("\n以下%1项没有导入：\n").arg(leftOut.size()) +
                leftOut.join(QLatin1Char('\n'));
    if (!textProblem.isEmpty()) text += QLatin1Char('\n') + textProblem;
    return text;
}

ICalendarImport importICalendarBytes(const QByteArray& bytes, const QString& file) {
    ICalendarImport result;
    // iCalendar is UTF-8; a file that is not is read in the encoding its bytes show.
    const DecodedText decoded = decodeText(bytes);
    result.textProblem = decoded.problem();
    QList<int> lines;
    const std::vector<ical::TopLevel> tops = ical::parseFile(decoded.text, &lines);
    QList<Found> found;
    for (const ical::TopLevel& top : tops)
        for (icalcomponent* c : ical::eventsAndTodos(top.component.get())) {
            Found f;
            f.component = c;
            f.line = found.size() < lines.size() ? lines[found.size()] : top.line;
            found << f;
        }
    for (const ical::TopLevel& top : tops)
        if (top.unfinished)
            result.notes << QStringLiteral(
                                "第%1行开始的日历没有结尾（缺少END行），导入了读到的部分")
                                .arg(top.line);
    if (found.isEmpty()) {
        bool calendar = false;
        for (const ical::TopLevel& top : tops)
            calendar =
                calendar || icalcomponent_isa(top.component.get()) == ICAL_VCALENDAR_COMPONENT;
        if (!calendar) {
            result.ErrMsg = QStringLiteral(
                "这不是iCalendar日历文件：文件里没有BEGIN:VCALENDAR、BEGIN:VEVENT或BEGIN:VTODO。");
            return result;
        }
    }
    if (found.isEmpty()) result.notes << QStringLiteral("文件里没有日程（VEVENT或VTODO）");
    // Series with their moved occurrences, by UID.
    QHash<QString, QList<QDateTime>> replacedOf;
    for (Found& f : found) {
        f.uid = idOf(f.component);
        f.recurrenceId = recurrenceIdOf(f.component);
        if (f.recurrenceId.isValid()) replacedOf[f.uid] << f.recurrenceId;
    }
    ImportSession session(QStringLiteral("tasks"), QStringLiteral("ics"), file, OnMatch::Overwrite);
    if (!session.isOpen()) {
        result.ErrMsg = importFailed() + session.ErrMsg();
        return result;
    }
    Importer importer(session, result);
    for (const Found& f : found) {
        const bool moved = f.recurrenceId.isValid();
        const QString id = moved ? f.uid + QStringLiteral(";RECURRENCE-ID=") +
                                       f.recurrenceId.toString(QStringLiteral("yyyyMMdd'T'HHmmss"))
                                 : f.uid;
        if (!importer.put(f, moved ? QList<QDateTime>() : replacedOf.value(f.uid), id))
            return result;
    }
    if (!found.isEmpty() && result.leftOut.size() == found.size()) {
        result.ErrMsg =
            QStringLiteral("文件里的日程都无法导入：\n") + result.leftOut.join(QLatin1Char('\n'));
        return result;
    }
    QString error;
    if (!session.commit(&error)) {
        result.ErrMsg = importFailed() + error;
        return result;
    }
    result.tally = session.tally();
    result.ok = true;
    return result;
}

ICalendarImport importICalendarFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ICalendarImport result;
        result.ErrMsg = QStringLiteral("打不开文件，原因可能是") + file.errorString();
        return result;
    }
    return importICalendarBytes(file.readAll(), path);
}

}  // namespace tarvel::exchange
