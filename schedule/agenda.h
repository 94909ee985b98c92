#pragma once

#include <QDate>
#include <QStringList>

namespace tarvel {

// Every occurrence of a task from `from` to `to`, one line each, as
// "YYYY-MM-DD HH:MM subject" ("YYYY-MM-DD subject" for a task without a
// time), day by day in the order the calendar lists them. Read through the
// calendar's own reading of a span, so a script sees what the month view
// shows. False with the reason in `error` when the data file cannot be read.
bool agendaLines(const QDate& from, const QDate& to, QStringList* lines, QString* error);

}  // namespace tarvel
