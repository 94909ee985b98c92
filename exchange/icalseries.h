#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

#include "exchange/icalwrapper.h"

namespace tarvel::exchange {

// The occurrences of one VEVENT or VTODO in local time, as libical expands
// its RRULEs, RDATEs and EXDATEs.
struct ExpandedSeries {
    QList<QDateTime> starts;  // local naive starts, sorted, no repeats
    bool allDay = false;
    int extraDays = 0;     // further days each occurrence covers (multi-day events)
    bool goesOn = false;   // a rule without COUNT or UNTIL
    bool tooMany = false;  // stopped at the most occurrences one series may give
    QDate horizon;         // an endless series: the last day taken as it is
    QString problem;       // why the event cannot be imported; empty when it can
};

// `today`: the day of a to-do without any date. `replaced`: local starts of occurrences that
// another component (same UID, a RECURRENCE-ID) replaces.
ExpandedSeries expandSeries(icalcomponent* c, const QDate& today, const QList<QDateTime>& replaced);

// The start that decides a component's day: DTSTART of an event, DUE (else
// DTSTART) of a to-do, zoned.
icaltimetype anchorOf(icalcomponent* c);

// The RECURRENCE-ID of a component as a local start (invalid when none).
QDateTime recurrenceIdOf(icalcomponent* c);

}  // namespace tarvel::exchange
