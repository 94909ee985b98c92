#include "exchange/icalwrapper.h"

#include <QHash>

#include "store/jetdate.h"

namespace tarvel::exchange::ical {

void quietErrors() {
    static const bool done = [] {
        icalerror_set_errors_are_fatal(0);
        return true;
    }();
    (void)done;
}

namespace {

// The file's lines unfolded, each with the line it starts on.
QList<std::pair<QString, int>> logicalLines(const QString& text) {
    QList<std::pair<QString, int>> lines;
    int lineNo = 0;
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n) {
        qsizetype end = i;
        while (end < n && text[end] != QLatin1Char('\n') && text[end] != QLatin1Char('\r')) ++end;
        const QString line = text.mid(i, end - i);
        ++lineNo;
        if (end < n && text[end] == QLatin1Char('\r') && end + 1 < n &&
            text[end + 1] == QLatin1Char('\n'))
            ++end;
        i = end + 1;
        if (!line.isEmpty() && (line[0] == QLatin1Char(' ') || line[0] == QLatin1Char('\t')) &&
            !lines.isEmpty()) {
            lines.last().first += line.mid(1);
            continue;
        }
        // Blank lines between objects are a common slip of writers, not content.
        if (line.trimmed().isEmpty()) continue;
        lines.append({line, lineNo});
    }
    return lines;
}

bool begins(const QString& line, const char* kind) {
    const QString head = line.section(QLatin1Char(':'), 0, 0).trimmed();
    return head.compare(QLatin1String("BEGIN"), Qt::CaseInsensitive) == 0 &&
           line.section(QLatin1Char(':'), 1)
                   .trimmed()
                   .compare(QLatin1String(kind), Qt::CaseInsensitive) == 0;
}

}  // namespace

std::vector<TopLevel> parseFile(const QString& text, QList<int>* eventLines) {
    quietErrors();
    std::vector<TopLevel> result;
    ParserPtr parser(icalparser_new());
    int topLine = 0;
    bool inside = false;
    for (const auto& [line, lineNo] : logicalLines(text)) {
        if (!inside) topLine = lineNo;
        if (eventLines && (begins(line, "VEVENT") || begins(line, "VTODO"))) *eventLines << lineNo;
        QByteArray utf8 = line.toUtf8();
        inside = true;
        if (icalcomponent* done = icalparser_add_line(parser.get(), utf8.data())) {
            result.push_back({ComponentPtr(done), topLine, false});
            inside = false;
        } else if (icalparser_get_state(parser.get()) == ICALPARSER_SUCCESS ||
                   icalparser_get_state(parser.get()) == ICALPARSER_ERROR) {
            // A line outside any object: nothing was begun.
            inside = false;
        }
    }
    // An object whose END never came still counts for what it holds.
    // The parser keeps owning what icalparser_clean() returns (it frees it
    // with itself), so the caller gets a copy.
    if (icalcomponent* rest = icalparser_clean(parser.get()))
        result.push_back({ComponentPtr(icalcomponent_new_clone(rest)), topLine, true});
    return result;
}

QList<icalcomponent*> eventsAndTodos(icalcomponent* top) {
    QList<icalcomponent*> found;
    const icalcomponent_kind kind = icalcomponent_isa(top);
    if (kind == ICAL_VEVENT_COMPONENT || kind == ICAL_VTODO_COMPONENT) return {top};
    for (icalcomponent* c = icalcomponent_get_first_component(top, ICAL_ANY_COMPONENT); c;
         c = icalcomponent_get_next_component(top, ICAL_ANY_COMPONENT)) {
        const icalcomponent_kind k = icalcomponent_isa(c);
        if (k == ICAL_VEVENT_COMPONENT || k == ICAL_VTODO_COMPONENT)
            found << c;
        else if (k == ICAL_VCALENDAR_COMPONENT || k == ICAL_XROOT_COMPONENT)
            found << eventsAndTodos(c);
    }
    return found;
}

QString text(icalcomponent* c, icalproperty_kind kind) {
    icalproperty* p = icalcomponent_get_first_property(c, kind);
    if (!p) return QString();
    const char* value = icalproperty_get_value_as_string(p);
    if (kind == ICAL_SUMMARY_PROPERTY || kind == ICAL_DESCRIPTION_PROPERTY ||
        kind == ICAL_LOCATION_PROPERTY) {
        icalvalue* v = icalproperty_get_value(p);
        if (v && icalvalue_isa(v) == ICAL_TEXT_VALUE) value = icalvalue_get_text(v);
    }
    return value ? QString::fromUtf8(value) : QString();
}

QStringList texts(icalcomponent* c, icalproperty_kind kind) {
    QStringList all;
    for (icalproperty* p = icalcomponent_get_first_property(c, kind); p;
         p = icalcomponent_get_next_property(c, kind)) {
        icalvalue* v = icalproperty_get_value(p);
        const char* value = v && icalvalue_isa(v) == ICAL_TEXT_VALUE
                                ? icalvalue_get_text(v)
                                : icalproperty_get_value_as_string(p);
        if (!value) continue;
        for (const QString& part : QString::fromUtf8(value).split(QLatin1Char(',')))
            if (!part.trimmed().isEmpty()) all << part.trimmed();
    }
    return all;
}

icaltimezone* zoneOf(icalcomponent* c, icalproperty* p) {
    icalparameter* param = icalproperty_get_first_parameter(p, ICAL_TZID_PARAMETER);
    const char* tzid = param ? icalparameter_get_tzid(param) : nullptr;
    if (!tzid || !*tzid) return nullptr;
    icalcomponent* root = c;
    while (icalcomponent_get_parent(root)) root = icalcomponent_get_parent(root);
    if (icalcomponent_isa(root) == ICAL_VCALENDAR_COMPONENT)
        if (icaltimezone* own = icalcomponent_get_timezone(root, tzid)) return own;
    if (icaltimezone* known = icaltimezone_get_builtin_timezone_from_tzid(tzid)) return known;
    return icaltimezone_get_builtin_timezone(tzid);
}

icaltimetype zoned(icaltimetype t, icaltimezone* zone) {
    if (!t.is_date && !icaltime_is_utc(t) && zone) t.zone = zone;
    return t;
}

namespace {

// The machine's offset from UTC at an instant. Zones change their offset
// only on a quarter hour, so one lookup serves each quarter hour: a series
// of thousands of occurrences would otherwise ask the system for each.
int localOffsetAt(qint64 secondsSinceEpoch) {
    static thread_local QHash<qint64, int> offsets;
    const qint64 quarter =
        secondsSinceEpoch >= 0 ? secondsSinceEpoch / 900 : (secondsSinceEpoch - 899) / 900;
    const auto it = offsets.constFind(quarter);
    if (it != offsets.cend()) return *it;
    const int offset = QDateTime::fromSecsSinceEpoch(quarter * 900, Qt::LocalTime).offsetFromUtc();
    offsets.insert(quarter, offset);
    return offset;
}

}  // namespace

QDateTime localTime(const icaltimetype& t) {
    if (icaltime_is_null_time(t) || !icaltime_is_valid_time(t)) return QDateTime();
    const QDate day(t.year, t.month, t.day);
    if (t.is_date) return jetdate::naive(day);
    if (!icaltime_is_utc(t) && !t.zone)
        return jetdate::naive(day, QTime(t.hour, t.minute, t.second));
    const time_t seconds =
        icaltime_as_timet_with_zone(t, icaltime_is_utc(t) ? icaltimezone_get_utc_timezone()
                                                          : const_cast<icaltimezone*>(t.zone));
    return jetdate::naive(QDate(1970, 1, 1), QTime(0, 0))
        .addSecs(qint64(seconds) + localOffsetAt(qint64(seconds)));
}

icaltimetype floatingTime(const QDateTime& local, bool dateOnly) {
    icaltimetype t = icaltime_null_time();
    t.year = local.date().year();
    t.month = local.date().month();
    t.day = local.date().day();
    t.is_date = dateOnly ? 1 : 0;
    if (!dateOnly) {
        t.hour = local.time().hour();
        t.minute = local.time().minute();
        t.second = local.time().second();
    }
    return t;
}

QByteArray serialise(icalcomponent* c) {
    char* text = icalcomponent_as_ical_string_r(c);
    const QByteArray out(text ? text : "");
    icalmemory_free_buffer(text);
    return out;
}

}  // namespace tarvel::exchange::ical
