#pragma once

#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <ctime>

#include "schedule/agenda.h"

// Comparing what Tarvel makes of a calendar with what python3-icalendar and
// dateutil expand from the same file (tests/exchange/ical_days.py).
namespace ical_test {

// The tests run in New York time (daylight saving on other dates than the
// events' own European and Asian zones), and so does the python they start.
inline const bool kInNewYork = [] {
    qputenv("TZ", "America/New_York");
    tzset();
    return true;
}();

// Debian's interpreter holds Debian's modules, whatever else is on PATH.
inline QString systemPython() {
    return QStringLiteral("/usr/bin/python3");
}

inline bool pythonReady() {
    QProcess p;
    p.start(systemPython(), {QStringLiteral("-c"), QStringLiteral("import icalendar, dateutil")});
    return p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// The occurrences the file gives from `from` to `to`, sorted; empty with
// `ok` false when python could not read the file.
inline QStringList pythonDays(const QString& path, const QDate& from, const QDate& to,
                              bool* ok = nullptr) {
    QProcess p;
    p.start(systemPython(), {QStringLiteral(TARVEL_ICAL_DAYS), path, from.toString(Qt::ISODate),
                             to.toString(Qt::ISODate)});
    const bool done = p.waitForFinished(120000) && p.exitCode() == 0;
    if (ok) *ok = done;
    if (!done) return {};
    QStringList lines =
        QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

// What `tarvel-io agenda` prints for the span, sorted, a subject's line
// breaks as blanks.
inline QStringList agenda(const QDate& from, const QDate& to) {
    QStringList lines;
    QString error;
    if (!tarvel::agendaLines(from, to, &lines, &error)) return {QStringLiteral("error: ") + error};
    for (QString& l : lines)
        l.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    lines.sort();
    return lines;
}

// Samples whose days python3-icalendar and dateutil cannot give: other
// calendar scales (RSCALE), vCalendar 1.0 rules, and zones only the file
// defines (a Cyrillic TZID, Evolution's "/softwarestudio.org/..." TZIDs),
// which python3-icalendar takes as floating time.
inline bool comparable(const QString& path) {
    static const char* const notComparable[] = {"rfc_7529", "vcal10", "tzid_8bit", "eds_event"};
    const QString name = QFileInfo(path).fileName();
    for (const char* n : notComparable)
        if (name.contains(QLatin1String(n))) return false;
    return true;
}

}  // namespace ical_test
