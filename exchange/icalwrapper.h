#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

extern "C" {
#include <libical/ical.h>
}

namespace tarvel::exchange::ical {

// libical hands out raw pointers that the caller must free; these own them.
struct ComponentFree {
    void operator()(icalcomponent* c) const { icalcomponent_free(c); }
};
using ComponentPtr = std::unique_ptr<icalcomponent, ComponentFree>;

struct ParserFree {
    void operator()(icalparser* p) const { icalparser_free(p); }
};
using ParserPtr = std::unique_ptr<icalparser, ParserFree>;

struct IteratorFree {
    void operator()(icalrecur_iterator* i) const { icalrecur_iterator_free(i); }
};
using IteratorPtr = std::unique_ptr<icalrecur_iterator, IteratorFree>;

// Makes libical report errors instead of aborting; call before any use.
void quietErrors();

// One top-level object of a file (a VCALENDAR, or a VEVENT/VTODO standing
// alone) and the line it begins on.
struct TopLevel {
    ComponentPtr component;
    int line = 0;
    bool unfinished = false;  // the file ended before its END line
};

// Everything a file holds, in file order. Lines are unfolded and every line
// end (CRLF, LF, a lone CR) is accepted. `eventLines` gets the line each
// VEVENT or VTODO begins on, in the order a depth-first walk meets them.
std::vector<TopLevel> parseFile(const QString& text, QList<int>* eventLines);

// The first child components of a kind, depth-first through VCALENDARs.
QList<icalcomponent*> eventsAndTodos(icalcomponent* top);

// A property's text (UTF-8), empty when absent.
QString text(icalcomponent* c, icalproperty_kind kind);
// Every value of a multi-valued text property (CATEGORIES on several lines
// or as a list).
QStringList texts(icalcomponent* c, icalproperty_kind kind);

// The zone of a date-time property: its TZID looked up in the file's own
// VTIMEZONEs first, then in libical's zones; null for UTC, floating values,
// dates and zones nobody knows.
icaltimezone* zoneOf(icalcomponent* c, icalproperty* p);
// The value with the zone it names attached.
icaltimetype zoned(icaltimetype t, icaltimezone* zone);

// A libical time as the naive local wall-clock time Tarvel keeps: UTC and
// zoned times become the machine's local time, floating ones stay as
// written; a DATE gives midnight.
QDateTime localTime(const icaltimetype& t);

// A local naive date-time as a floating libical value (a DATE when
// `dateOnly`).
icaltimetype floatingTime(const QDateTime& local, bool dateOnly);

// The component's text as libical writes it.
QByteArray serialise(icalcomponent* c);

}  // namespace tarvel::exchange::ical
