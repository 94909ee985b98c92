#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

// The text layer of iCalendar files: escaping, folding and content lines.
namespace tarvel::ical {

// TEXT values: backslash, semicolon, comma and line breaks escaped.
QString escapeText(const QString& text);
QString unescapeText(const QString& text);

// One content line "NAME;PARAM=VALUE:value" folded to lines of at most 75
// octets (never inside a UTF-8 sequence), each ended by CRLF.
QByteArray foldedLine(const QString& line);

struct ContentLine {
    QString name;                    // upper case
    QHash<QString, QString> params;  // names upper case, quotes removed
    QString value;
};
// The content lines of a text: unfolded, blank lines dropped. Lines without a
// colon are ignored.
QList<ContentLine> contentLines(const QByteArray& text);

// "20240131" and "20240131T093000" (floating); "...Z" (UTC) in `utc`.
QString dateText(const QDate& date);
QString dateTimeText(const QDateTime& value);
// A DATE or DATE-TIME value; `isDate` tells which it was, `utc` whether it
// ended in Z. Invalid when it is neither.
QDateTime parseDateTime(const QString& value, bool* isDate = nullptr, bool* utc = nullptr);

}  // namespace tarvel::ical
