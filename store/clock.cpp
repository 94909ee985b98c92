#include "store/clock.h"

#include <QTimeZone>

namespace tarvel {

namespace {
QDateTime& fixedMoment() {
    static QDateTime moment;
    return moment;
}
}  // namespace

QDateTime Clock::now() {
    const QDateTime& fixed = fixedMoment();
    if (fixed.isValid()) return fixed;
    // Naive local time: strip the zone so arithmetic never shifts by daylight saving.
    const QDateTime local = QDateTime::currentDateTime();
    const QTime t = local.time();
    return QDateTime(local.date(), QTime(t.hour(), t.minute(), t.second()), Qt::UTC);
}

void Clock::setFixed(const QDateTime& moment) {
    fixedMoment() = moment;
}

void Clock::advance(qint64 seconds) {
    fixedMoment() = now().addSecs(seconds);
}

}  // namespace tarvel
