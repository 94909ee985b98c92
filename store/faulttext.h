#pragma once

#include <QString>

namespace tarvel {

// The one place where what the engine or the file system says about a fault is
// turned into words a user can act on: what happened and what to do. Texts it
// does not know are returned as they are.
QString plainFault(const QString& engineText);

// The same for a failed write of a file, where an unnamed error means a full disk.
QString plainWriteFault(const QString& text);

// The same for a fault met while opening `path`: a path longer than the engine
// can open is told as such, never as a damaged file.
QString plainOpenFault(const QString& engineText, const QString& path);

// The longest path, in bytes, of a data file the engine opens and writes: its
// paths may not pass 511 bytes, and the journal's name adds "-journal".
constexpr int kLongestDataPath = 511 - 8;
bool pathTooLong(const QString& path);

// Why the data file cannot be written to, in plain words; empty when the file
// and its folder are writable (the folder holds the engine's journal).
QString writeProblem(const QString& dataFile);

}  // namespace tarvel
