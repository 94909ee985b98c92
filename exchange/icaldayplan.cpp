#include "exchange/icaldayplan.h"

#include <QSet>
#include <algorithm>

#include "schedule/recurrence.h"

namespace tarvel::exchange {

QDate nextInCycle(qint16 cycleValue, const QDate& day) {
    switch (cycleValue) {
        case cycle::Daily:
            return day.addDays(1);
        case cycle::Weekly:
            return day.addDays(7);
        case cycle::Monthly:
            // The next month that has the day: a task from the 31st skips shorter months.
            for (int m = 1; m <= 12; ++m) {
                const QDate first = QDate(day.year(), day.month(), 1).addMonths(m);
                const QDate d(first.year(), first.month(), day.day());
                if (d.isValid()) return d;
            }
            return QDate();
        case cycle::Yearly:
            for (int y = 1; y <= 8; ++y) {
                const QDate d(day.year() + y, day.month(), day.day());
                if (d.isValid()) return d;
            }
            return QDate();
        default:
            return QDate();
    }
}

namespace {

constexpr qint16 kCycles[] = {cycle::Daily, cycle::Weekly, cycle::Monthly, cycle::Yearly};

QList<QDate> chainFrom(const QDate& start, qint16 cycleValue, const QSet<qint64>& open) {
    QList<QDate> chain{start};
    for (QDate d = nextInCycle(cycleValue, start); d.isValid() && open.contains(d.toJulianDay());
         d = nextInCycle(cycleValue, d))
        chain << d;
    return chain;
}

}  // namespace

QList<PlannedTask> planTasks(const QList<QDate>& days, bool goesOn, const QDate& horizon,
                             const QList<QDate>& beyond) {
    QSet<qint64> open;
    for (const QDate& d : days) open.insert(d.toJulianDay());
    QList<PlannedTask> tasks;
    for (const QDate& day : days) {
        if (!open.contains(day.toJulianDay())) continue;
        QList<QDate> best{day};
        qint16 bestCycle = cycle::Once;
        for (qint16 c : kCycles) {
            QList<QDate> chain = chainFrom(day, c, open);
            if (chain.size() > best.size()) {
                best = std::move(chain);
                bestCycle = c;
            }
        }
        for (const QDate& d : best) open.remove(d.toJulianDay());
        tasks << PlannedTask{best.first(), best.last(), bestCycle, false};
    }
    if (!goesOn) return tasks;
    // The runs that reach the horizon go on when, together, they give the
    // series' next year exactly.
    QSet<qint64> wanted, given;
    for (const QDate& d : beyond) wanted.insert(d.toJulianDay());
    const QDate until = horizon.addYears(1);
    QList<qsizetype> reaching;
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        const PlannedTask& t = tasks[i];
        if (t.cycle == cycle::Once) continue;
        QDate d = nextInCycle(t.cycle, t.close);
        if (!d.isValid() || d <= horizon) continue;
        reaching << i;
        for (; d.isValid() && d <= until; d = nextInCycle(t.cycle, d))
            given.insert(d.toJulianDay());
    }
    if (reaching.isEmpty() || given != wanted) return tasks;
    for (qsizetype i : reaching) tasks[i].openEnded = true;
    return tasks;
}

}  // namespace tarvel::exchange
