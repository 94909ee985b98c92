#pragma once

#include <QString>

namespace tarvel::datafile {

// Builds a new, encrypted data file at `path` with every table, index and the
// stored query, and the customisation rows a new installation ships with.
// Refuses to overwrite an existing file.
bool create(const QString& path, QString* error);

}  // namespace tarvel::datafile
