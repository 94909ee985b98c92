#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel::exchange {

// One deleted record in the recycle bin.
struct BinEntry {
    qint64 id = 0;
    QDateTime deletedAt;
    qint16 kind = 0;   // relation kind code (kind::Contact, ...)
    qint64 key = 0;    // the record's key, given back on restore
    QString name;      // what the record was called, for the list
    qint64 batch = 0;  // the records deleted by one action share it
};

// Deleted records and every link row that named them, kept inside the data
// file so that a slip can be taken back. Every call works on the global data
// file and reports a failure in `error` (Chinese, for the user).
namespace recyclebin {

// A batch number no entry has yet: give it to keep() for every record one
// delete action removes.
qint64 newBatch(QString* error);

// Keeps record `key` of kind `code` and every link row naming it (roles
// included). Call it inside the delete's transaction, before its statements.
bool keep(qint16 code, qint64 key, qint64 batch, QString* error);

// Entries, newest first; `search` (when not blank) must appear in the name or
// the kind's caption.
QList<BinEntry> entries(const QString& search, QString* error);
// The entries that were deleted together with `entry` (itself included).
QList<qint64> batchOf(qint64 entry, QString* error);

// Puts the records of `entryIds` back with their keys, then every kept link
// whose two ends exist, and takes the entries out of the bin, all in one
// transaction. `lostLinks` receives, in words, each link that could not come
// back because its other end is gone.
bool restore(const QList<qint64>& entryIds, QStringList* lostLinks, QString* error);
// Removes entries for good.
bool purge(const QList<qint64>& entryIds, QString* error);
// Removes every entry.
bool empty(QString* error);
// Removes the entries deleted more than keepDays() days before the clock's
// now; `removed` receives how many went.
bool expire(QString* error, int* removed = nullptr);
// The setting bin/days (default 30); 0 or less keeps entries until emptied.
int keepDays();

// Empties the bin of a data file that is not the live one (a backup copy).
// A file without the bin's tables is left as it is.
bool clearFile(const QString& path, QString* error);

}  // namespace recyclebin

}  // namespace tarvel::exchange
