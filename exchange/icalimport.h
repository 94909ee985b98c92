#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "exchange/importsession.h"

namespace tarvel::exchange {

// What an iCalendar import did, for the user.
struct ICalendarImport {
    bool ok = false;
    ImportTally tally;
    // What became of series the schedule holds otherwise than as one task,
    // and texts kept whole in the notes: one line each.
    QStringList notes;
    // Events left out, with the line they begin on and why.
    QStringList leftOut;
    // Damaged bytes in the file, in words (empty when none).
    QString textProblem;
    QString ErrMsg;
    QString summary() const;
};

// Reads every VEVENT and VTODO of an iCalendar file into tasks, through one
// import session (one transaction, undoable, recognising events imported
// before by UID and RECURRENCE-ID). Each event occurs on exactly the days
// its rules give, as the fewest tasks that can.
ICalendarImport importICalendarFile(const QString& path);
// The same for bytes read elsewhere; `file` names them in the journal.
ICalendarImport importICalendarBytes(const QByteArray& bytes, const QString& file);

}  // namespace tarvel::exchange
