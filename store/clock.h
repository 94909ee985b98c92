#pragma once

#include <QDateTime>
#include <functional>

namespace tarvel {

// The one source of "now" for the program and for `now`/`date`/`time` in SQL,
// so tests can set today and step past midnight.
class Clock {
public:
    static QDateTime now();
    static QDate today() { return now().date(); }
    static QTime time() { return now().time(); }

    // Tests: pin the clock to a fixed moment (invalid = follow the system clock).
    static void setFixed(const QDateTime& moment);
    static void advance(qint64 seconds);
    static void reset() { setFixed(QDateTime()); }
};

}  // namespace tarvel
