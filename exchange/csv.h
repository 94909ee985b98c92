#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel::exchange {

// A value in double quotes, embedded double quotes doubled; a value a
// spreadsheet would run as a formula is kept as text (see spreadsheetText).
QString csvField(const QString& value);
// A value beginning with = + - @, a tab or a carriage return gets a leading
// single quote, so that a spreadsheet shows it instead of running it.
QString spreadsheetText(const QString& value);
// One line of values separated by ",", ending in CR LF.
QString csvLine(const QStringList& values);

// A record of a CSV text and the line it starts on (1-based).
struct CsvRow {
    int line = 0;
    QStringList fields;
};
// The separator of a CSV text: the one of comma, semicolon and tab that occurs
// most often in its first line outside quotes (comma when none does).
QChar detectSeparator(const QString& text);
// Splits CSV text (quoted fields may hold separators, quotes and line breaks);
// blank lines are skipped.
QList<CsvRow> parseCsv(const QString& text, QChar separator = QLatin1Char(','));

}  // namespace tarvel::exchange
