#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include "exchange/progress.h"
#include "exchange/recordmerge.h"

namespace tarvel::exchange {

// One stored row with the engine's row number, so that it can be put back
// exactly where it stood.
struct StoredRow {
    QString table;
    qint64 rowid = 0;
    QHash<QString, QVariant> values;  // column -> value as stored
    bool operator==(const StoredRow&) const = default;
};

// What a merge touched, as it stood before and as the merge left it: the kept
// record's row, every link row naming one of the merged records, and the ids
// of other programs and of earlier imports that were moved onto the kept one.
// The records merged away lie in the recycle bin under `batch`.
struct MergeImage {
    qint16 kindCode = 0;
    qint64 kept = 0;
    QList<qint64> others;
    qint64 batch = 0;
    QList<StoredRow> before;
    QList<StoredRow> after;
};

// Merges as mergeRecords does, sends the records merged away to the recycle
// bin as one batch, and keeps in `image` what Ctrl+Z needs to take it back.
Outcome mergeKeepingImage(const MergeRequest& request, MergeImage* image,
                          MergeResult* result = nullptr);

// Takes a merge back in one transaction: the records merged away come back
// from the bin, the kept record's fields and dates and every link row are set
// to how they stood before. Refused, with nothing changed, when any of those
// rows has changed since the merge or the bin no longer holds the records.
Outcome undoMerge(const MergeImage& image);

}  // namespace tarvel::exchange
