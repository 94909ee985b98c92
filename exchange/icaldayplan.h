#pragma once

#include <QDate>
#include <QList>

namespace tarvel::exchange {

// One task that occurs on some of a series' days: from `start` to `close`
// by `cycle` (the tas_cycle values), or once.
struct PlannedTask {
    QDate start;
    QDate close;
    qint16 cycle = 0;
    bool openEnded = false;  // goes on without end; `close` is then the last day seen
};

// The fewest tasks that together occur on exactly `days` (sorted, no
// repeats): each run of days that one cycle steps through becomes one task,
// the longest runs first; a day no run takes is a task of its own.
// `goesOn`: the series has no end; `beyond` then holds its days in the year
// after `horizon`, and the tasks that reach the horizon are left open when
// together they give exactly those days (otherwise the series stops at the
// horizon).
QList<PlannedTask> planTasks(const QList<QDate>& days, bool goesOn, const QDate& horizon,
                             const QList<QDate>& beyond);

// The next day a task of `cycle` occurs on after `day` when it started on
// `day` or a day of the same step (invalid for a one-off task).
QDate nextInCycle(qint16 cycle, const QDate& day);

}  // namespace tarvel::exchange
