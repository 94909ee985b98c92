#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace tarvel::dialect {

struct Translation {
    QString sql;    // the statement in the engine's own dialect
    QString error;  // non-empty when the text cannot be translated or its values do not fit
    // The value of each ? of `sql`, in order. The caller's own ? marks take the
    // values it bound; numbers compared with a column are passed the same way, so
    // statements that differ only in an id share one prepared statement.
    QList<QVariant> parameters;
};

// Translates a statement of the program's dialect (DELETE * FROM, #dates#, now,
// date, true/false, NOT on yes/no columns, & and Mod in the original order of
// evaluation, table-qualified names over the contacts-with-account query, ...)
// into the engine's dialect. `bound` holds the values of the statement's own ?
// marks, in order; a mark without a value, or a value without a mark, is an
// error. Results are cached.
Translation translate(const QString& statement, const QList<QVariant>& bound = {});

// Translation without the cache and without parameters (for tests and for the cache itself).
Translation translateUncached(const QString& statement);

// SQL function names that the access layer registers on every connection.
inline constexpr const char* kNowFunction = "tv_now";
inline constexpr const char* kDateFunction = "tv_date";
inline constexpr const char* kTimeFunction = "tv_time";

}  // namespace tarvel::dialect
