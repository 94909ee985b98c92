#pragma once

#include <QString>
#include <QStringList>

namespace tarvel::lists {

// The sort the user last chose on a list (by a click on a column's header),
// kept per list in the setting row ("list_sort", "form_con_all") so that the
// list opens sorted the same way at the next start.

// " ORDER BY <column> ASC" or " ... DESC" as kept for `list`; empty when none
// is kept, or when the kept column is not among `columns` (the list's fields
// changed since) or is a memo.
QString keptOrder(const QString& list, const QStringList& columns);

// Keeps `order` (" ORDER BY <column> ASC|DESC") for `list`; false with the
// reason in `error`, also for an order of another form.
bool keepOrder(const QString& list, const QString& order, QString* error);

// `condition` sorted by `order` when it brings no order of its own.
QString withOrder(const QString& condition, const QString& order);

}  // namespace tarvel::lists
