#pragma once

#include <QString>
#include <optional>

namespace tarvel::settingrow {

// One row of the `setting` table that the program keeps for itself (the
// window's place, a list's sort, an import's column choice), added when
// first written. SoftwareSetting, by contrast, only changes the rows a data
// file ships with.

// The row's value; nothing when there is no row or it cannot be read.
std::optional<QString> read(const QString& section, const QString& key);

// Writes the value, adding the row (named `name`, not shown in the settings)
// when it is missing. False with the reason in `error`.
bool write(const QString& section, const QString& key, const QString& name, const QString& value,
           QString* error);

}  // namespace tarvel::settingrow
