#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace tarvel::exchange {

// The columns of `table` that mergeKeys reads.
QStringList mergeKeyColumns(const QString& table);

// The keys under which a record merged in from another data file finds one
// already there: the same kind and the same whole name, and for contacts the
// same mobile or e-mail (as every import compares them) or the same account,
// for accounts the name alone, for opportunities the same account, for tasks
// the same day and time, for documents the same file; and for every kind but
// accounts the same moment of creation, which a copy keeps. No name, no key.
QStringList mergeKeys(const QString& table, const QHash<QString, QVariant>& columns,
                      const QString& accountName);

// Empty as the screens see it: no value, blanks, or the birthday that means none.
bool isEmptyStoredValue(const QVariant& value);

}  // namespace tarvel::exchange
