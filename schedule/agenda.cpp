#include "schedule/agenda.h"

#include "schedule/calendar.h"

namespace tarvel {

bool agendaLines(const QDate& from, const QDate& to, QStringList* lines, QString* error) {
    ScheduleCalendar calendar;
    if (!calendar.load(from, to)) {
        *error = calendar.ErrMsg();
        return false;
    }
    for (QDate day = from; day <= to; day = day.addDays(1)) {
        const QString date = day.toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ');
        for (const CalendarEntry& e : calendar.entriesOn(day))
            *lines << date +
                          (e.time.isValid() ? e.time.toString(QStringLiteral("HH:mm "))
                                            : QString()) +
                          e.subject;
    }
    return true;
}

}  // namespace tarvel
