#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>
#include <functional>

#include "exchange/progress.h"

namespace tarvel::exchange {

// One row as it stood before a merge changed or removed it.
struct MergedAwayRow {
    QString table;
    QHash<QString, QVariant> values;  // column -> value as stored
};

// The records of one kind as a merge shows them side by side.
struct MergeRecord {
    qint64 key = 0;
    QHash<QString, QVariant> values;  // column -> value as stored
    // Contacts: the account it belongs to (0 and empty: none).
    qint64 accountId = 0;
    QString accountName;
};

struct MergeRequest {
    qint16 kindCode = 0;  // kind::Contact or kind::Account
    qint64 kept = 0;
    QList<qint64> others;
    // Column -> the record whose value the merged record takes. Columns not
    // named take the default: the kept record's value when filled, else the
    // first filled one of the others in their order.
    QHash<QString, qint64> fieldFrom;
    // Contacts: the record whose account stays (a contact has at most one);
    // 0: the kept record's, else the first of the others that has one.
    qint64 accountFrom = 0;
    // Called once inside the merge's transaction with every row the merge is
    // about to remove or rewrite, as it stood; false (with a message) stops
    // the merge and leaves everything as it was.
    std::function<bool(const QList<MergedAwayRow>&, QString* error)> keepRemovedRows;
};

struct MergeResult {
    int linksMoved = 0;    // link rows now naming the kept record instead
    int linksDropped = 0;  // link rows the kept record already had
};

// Merges the others into the kept record in one transaction: the chosen
// fields, the earliest creation date and the latest recent-contact date, every
// link and role of the others moved onto it (a link it already has is not
// doubled; its role stays unless empty), then the others deleted.
Outcome mergeRecords(const MergeRequest& request, MergeResult* result = nullptr);

// The records' stored rows, in the order of `keys`; fails when one is missing.
// `choosable` receives the columns a merge lets the user choose, in table
// order: all but the key, the tick and the two dates it works out itself.
Outcome readMergeRecords(qint16 kindCode, const QList<qint64>& keys, QList<MergeRecord>* records,
                         QStringList* choosable = nullptr);

// Column -> the record whose value the default choice takes (`records` start
// with the kept one).
QHash<QString, qint64> defaultChoice(const QStringList& choosable,
                                     const QList<MergeRecord>& records);

// A value a merge treats as not filled: null, blanks, or the birthday that
// means none.
bool isUnfilled(const QVariant& value);

}  // namespace tarvel::exchange
