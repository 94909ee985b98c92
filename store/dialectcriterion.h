#pragma once

#include <QString>
#include <QVariant>

namespace tarvel::dialect {

// One condition of a recordset search: "column op value".
struct Criterion {
    QString column;  // "col" or "table.col"
    QString op;      // = <> < > <= >= or LIKE (upper case)
    QVariant value;  // a number, a text or a date
};

// Reads "column op value" with a number, 'text' or #date# as the value; false
// with a message when the text is no such condition.
bool parseCriterion(const QString& text, Criterion& out, QString& error);

}  // namespace tarvel::dialect
