#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace tarvel::dialect {

struct Translation {
    QString sql;    // the statement in the engine's own dialect
    QString error;  // non-empty when the text cannot be translated (a bad date literal)
    // Values for the ? marks of `sql`, in order: numbers compared with a column
    // are passed as parameters so statements that differ only in an id share
    // one prepared statement.
    QList<QVariant> parameters;
};

// Translates a statement of the program's dialect (DELETE * FROM, #dates#, now,
// date, true/false, NOT on yes/no columns, table-qualified names over the
// contacts-with-account query, ...) into the engine's dialect. Results are cached.
Translation translate(const QString& statement);

// Translation without the cache and without parameters (for tests and for the cache itself).
Translation translateUncached(const QString& statement);

// SQL function names that the access layer registers on every connection.
inline constexpr const char* kNowFunction = "tv_now";
inline constexpr const char* kDateFunction = "tv_date";
inline constexpr const char* kTimeFunction = "tv_time";

}  // namespace tarvel::dialect
