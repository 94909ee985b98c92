#pragma once

#include <QString>
#include <QStringList>

#include "exchange/progress.h"

namespace tarvel::exchange {

// The folder of the program's data file (from the global connection string).
QString dataFolder();
// The program's live data file.
QString liveDataFile();

// Copies `from` to `to`, overwriting it. The copy is written under a temporary
// name beside `to` and renamed into place, so `to` is never half written.
bool copyFile(const QString& from, const QString& to, const Progress& progress, QString* error);

// Replaces `to` with `from` by a rename within one file system.
bool replaceFile(const QString& from, const QString& to, QString* error);

// Compacts the data file `from` into a new file `to` keyed with the same
// password (sqlcipher_export). `to` appears only when complete.
bool compactDataFile(const QString& from, const QString& to, const Progress& progress,
                     QString* error);

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
