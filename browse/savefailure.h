#pragma once

#include <QString>

namespace tarvel {

// What a screen tells the user when the data file refused a write: what was
// not saved, the file's path, and what usually causes it (a read-only file
// or folder, a full disk).
QString saveFailedText(const QString& what);

}  // namespace tarvel
