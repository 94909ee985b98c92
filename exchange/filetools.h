#pragma once

#include <QString>
#include <QStringList>

#include "exchange/progress.h"

namespace tarvel::exchange {

// The folder of the program's data file (from the global connection string).
QString dataFolder();
// The program's live data file.
QString liveDataFile();

// The folder that holds the temporary files of work on the data file `live`:
// `.tarvel-tmp` beside the file the path resolves to. Whatever is in it belongs
// to an operation that did not finish, so a later start removes it.
QString scratchFolderOf(const QString& live);
// The scratch folder of the program's live data file.
QString scratchFolder();
// Removes what unfinished operations left in the scratch folder of `live`.
void cleanScratchFolder(const QString& live);

// A new, unused name for a file that will be renamed to `target`: in `scratch`
// when that lies on the same file system, else a short hidden name beside
// `target`, never a longer form of the target's own name.
QString stagingNameFor(const QString& target, const QString& scratch);

// Copies `from` to `to`, overwriting it. The copy is written under a staging
// name and renamed into place, so `to` is never half written.
bool copyFile(const QString& from, const QString& to, const Progress& progress, QString* error,
              const QString& scratch = scratchFolder());

// Replaces `to` with `from` by a rename within one file system.
bool replaceFile(const QString& from, const QString& to, QString* error);

// Compacts the data file `from` into a new file `to` keyed with the same
// password (sqlcipher_export). `to` appears only when complete.
bool compactDataFile(const QString& from, const QString& to, const Progress& progress,
                     QString* error, const QString& scratch = scratchFolder());

// Whether `path` opens with the database password, holds this program's tables
// and passes the engine's integrity check.
bool checkDataFile(const QString& path, QString* error);

// Opens and closes a data file, so that a transaction a crash left unfinished
// is rolled back before the file is copied as it lies on disk.
bool settleDataFile(const QString& path, QString* error);

// Removes a file if it is there; false only when it stays.
bool removeFile(const QString& path, QString* error = nullptr);

// Deletes the temporary files of an operation however it ends.
struct Leftovers {
    QStringList paths;
    ~Leftovers() {
        for (const QString& p : std::as_const(paths)) removeFile(p);
    }
};

}  // namespace tarvel::exchange
