#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel::exchange {

// A value in double quotes, embedded double quotes doubled.
QString csvField(const QString& value);
// One line of values separated by ",", ending in CR LF.
QString csvLine(const QStringList& values);

// A record of a CSV text and the line it starts on (1-based).
struct CsvRow {
    int line = 0;
    QStringList fields;
};
// Splits CSV text (quoted fields may hold commas, quotes and line breaks);
// blank lines are skipped.
QList<CsvRow> parseCsv(const QString& text);

}  // namespace tarvel::exchange
