#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tarvel {

// The entries of the option lists that records choose their classifying texts
// from (table `options`, one list per record kind and field).

// The 48 half-hour times of a day, "00:00" to "23:30".
QStringList timeFormatItems();
// The repeat cycles of a task, in their fixed order.
QStringList cycleTypeItems();

// What a combo box shows for (object, name): the built-in lists "time_format"
// and "cycle_type"; "Probability" in stored order with "%" appended (a null
// entry shows as "0%"); any other list sorted by text. Entries are trimmed, a
// null one is "". Nullopt when the list could not be read, so the caller can
// leave its control as it was.
std::optional<QStringList> optionComboItems(const QString& object, const QString& name);
// What a list box shows: always the sorted stored list, no built-in lists.
std::optional<QStringList> optionListItems(const QString& object, const QString& name);

}  // namespace tarvel
