#include "exchange/importdate.h"

#include <QRegularExpression>
#include <cmath>

namespace tarvel::exchange {

namespace {

// Dates programs write for "no date": every digit zero, or the first day of
// their calendars (Outlook's 1601, Excel's 1900 serial 0, Tarvel's own 1900).
bool isPlaceholder(const QString& text, const QDate& date) {
    static const QRegularExpression zeros(QStringLiteral("^[0:/.\\-\\s]+$"));
    if (zeros.match(text).hasMatch()) return true;
    return date == QDate(1601, 1, 1) || date == QDate(1900, 1, 1) || date == QDate(1899, 12, 30) ||
           date == QDate(1899, 12, 31);
}

int twoDigitYear(int year) {
    // Birthdays: "80" is 1980, "05" is 2005.
    return year >= 100 ? year : (year > 30 ? 1900 + year : 2000 + year);
}

}  // namespace

QDate excelSerialDate(double serial, bool date1904) {
    if (date1904) return QDate(1904, 1, 1).addDays(qint64(std::floor(serial)));
    // The 1900 system counts a 29 February 1900 that never was.
    const qint64 day = qint64(std::floor(serial));
    return QDate(1899, 12, 31).addDays(day < 60 ? day : day - 1);
}

DateCell readDateCell(const QString& raw, QDate* date) {
    const QString text = raw.trimmed();
    *date = QDate();
    if (text.isEmpty()) return DateCell::Empty;
    static const QRegularExpression ymd(QStringLiteral(
        "^(\\d{4})\\s*[-/.年]\\s*(\\d{1,2})\\s*[-/.月]\\s*(\\d{1,2})\\s*日?"
        "(?:[ T]\\d{1,2}:\\d{2}(?::\\d{2})?(?:\\.\\d+)?(?:Z|[+-]\\d{2}:?\\d{2})?)?$"));
    static const QRegularExpression mdy(QStringLiteral(
        "^(\\d{1,2})\\s*([/"
        ".-])\\s*(\\d{1,2})\\s*\\2\\s*(\\d{2}|\\d{4})(?:\\s+\\d{1,2}:\\d{2}(?::\\d{2})?"
        "(?:\\s*[AaPp][Mm])?)?$"));
    static const QRegularExpression serial(QStringLiteral("^\\d{1,6}(?:\\.\\d+)?$"));
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    static const QRegularExpression noYear(QStringLiteral("^--(\\d{2})-?(\\d{2})$"));
    if (const auto m = noYear.match(text); m.hasMatch()) {
        *date = QDate(2000, m.captured(1).toInt(), m.captured(2).toInt());
        return date->isValid() ? DateCell::NoYear : DateCell::Bad;
    }
    QDate d;
    if (const auto m = ymd.match(text); m.hasMatch()) {
        d = QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    } else if (const auto m2 = mdy.match(text); m2.hasMatch()) {
        const int a = m2.captured(1).toInt(), b = m2.captured(3).toInt();
        const int year = twoDigitYear(m2.captured(4).toInt());
        // "." is the European day.month.year; "/" and "-" are month/day as
        // Outlook and Google write them, unless the first number cannot be a month.
        const bool dayFirst = m2.captured(2) == QStringLiteral(".") || a > 12;
        d = dayFirst ? QDate(year, b, a) : QDate(year, a, b);
    } else if (const auto m3 = compact.match(text); m3.hasMatch()) {
        d = QDate(m3.captured(1).toInt(), m3.captured(2).toInt(), m3.captured(3).toInt());
    } else if (serial.match(text).hasMatch()) {
        const double n = text.toDouble();
        if (n < 1) return DateCell::Empty;
        // A small number is a day or a month, not a date (serial 1000 is 1902).
        if (n < 1000) return DateCell::Bad;
        d = excelSerialDate(n, false);
    } else {
        static const QRegularExpression zeros(QStringLiteral("^[0:/.\\-\\s]+$"));
        return zeros.match(text).hasMatch() ? DateCell::Empty : DateCell::Bad;
    }
    if (isPlaceholder(text, d)) return DateCell::Empty;
    if (!d.isValid()) return DateCell::Bad;
    *date = d;
    return DateCell::Date;
}

}  // namespace tarvel::exchange
