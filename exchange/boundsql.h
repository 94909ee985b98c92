#pragma once

#include <sqlite3.h>

#include <QString>
#include <QVariant>
#include <functional>

namespace tarvel {
class Handle;
}

namespace tarvel::exchange {

// One statement in the engine's own SQL, run on an open data file with
// `values` bound to its ? marks in order; `row` is called on each result row.
// False with the engine's message when it fails.
bool runBound(Handle& handle, const QString& sql, const QVariantList& values, QString* error,
              const std::function<void(sqlite3_stmt*)>& row = {});

// A result column as the engine holds it: whole number, real, text or null.
QVariant columnValue(sqlite3_stmt* stmt, int index);

// "1,2,3" for an IN list of keys (numbers only, so nothing of the user's).
QString keyList(const QList<qint64>& keys);

}  // namespace tarvel::exchange
