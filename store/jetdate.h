#pragma once

#include <QDateTime>
#include <QString>
#include <QStringView>
#include <optional>

namespace tarvel::jetdate {

// Date/time values are naive: held as QDateTime in UTC so nothing shifts by
// daylight-saving rules, stored as fixed-width "YYYY-MM-DD HH:MM:SS" text.
QDateTime naive(const QDate& date, const QTime& time = QTime(0, 0));

// The day that carries time-only values.
inline QDate timeBaseDate() {
    return QDate(1899, 12, 30);
}

QString canonical(const QDateTime& value);
QString canonical(const QDate& value);
// Time of day on the time base date.
QString canonicalTime(const QTime& value);

// Parses the stored canonical form; nullopt when the text is not in it.
std::optional<QDateTime> fromCanonical(QStringView text);
// The same over the engine's UTF-8 bytes, without making a string first.
std::optional<QDateTime> fromCanonical(QLatin1String bytes);
bool isCanonical(QStringView text);

// Parses what the program writes between # signs: y-m-d, y/m/d, m/d/y (two- or
// four-digit year), each with an optional time (h:m[:s], optional AM/PM), or a
// time alone; blanks around the parts are ignored.
std::optional<QDateTime> parseLiteral(QStringView text);

// Accepts a QDateTime/QDate/QTime or a text in any form parseLiteral accepts.
std::optional<QDateTime> fromVariant(const class QVariant& value);

// The text the program puts between # signs for a date: "YYYY-MM-DD".
QString literalText(const QDate& date);
QString literalText(const QDateTime& value);
// The whole literal: "#YYYY-MM-DD#".
QString literal(const QDate& date);

// Weekday with Sunday = 1 .. Saturday = 7.
int weekdaySundayFirst(const QDate& date);

}  // namespace tarvel::jetdate
