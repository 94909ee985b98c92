#pragma once

#include <QString>

namespace tarvel::dialect {

struct Translation {
    QString sql;    // the statement in the engine's own dialect
    QString error;  // non-empty when the text cannot be translated (a bad date literal)
};

// Translates a statement of the program's dialect (DELETE * FROM, #dates#, now,
// date, true/false, NOT on yes/no columns, table-qualified names over the
// contacts-with-account query, ...) into the engine's dialect. Results are cached.
Translation translate(const QString& statement);

// Translation without the cache (for tests and for the cache itself).
Translation translateUncached(const QString& statement);

// SQL function names that the access layer registers on every connection.
inline constexpr const char* kNowFunction = "tv_now";
inline constexpr const char* kDateFunction = "tv_date";
inline constexpr const char* kTimeFunction = "tv_time";

}  // namespace tarvel::dialect
