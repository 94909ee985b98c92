#pragma once

#include <QList>
#include <QString>

#include "browse/listkind.h"
#include "store/recordset.h"

namespace tarvel::lists {

// The sums of the expense and revenue table of one contact.
struct ContactSums {
    double outlay = 0;
    double sales = 0;
    double weighted = 0;
};

// The statements a list screen runs, over the program-wide list fields of
// its kind. Every operation reports: false (or a closed recordset) and the
// reason appended to ErrMsg.
class ListStore {
public:
    explicit ListStore(const ListKind& kind) : kind_(kind) {}

    // The select list: the tick column, the list fields, and the key when the
    // user's fields lack it (the screen needs it to address rows).
    QString columns() const;
    RecordsetPtr open(const QString& condition);
    // The key and the search columns of every record, for searching in memory.
    RecordsetPtr searchColumns();
    bool setTick(qint64 id, bool ticked);
    // SetChecks with apply true over the list's current condition.
    bool setChecks(int mode, const QString& condition);
    bool clearChecks();
    // The ticked rows with the list's columns, in the list's default order.
    RecordsetPtr ticked();
    QList<qint64> tickedIds();
    // Whether any record is ticked; false with ErrMsg set when unreadable.
    bool anyTicked();
    // Each record's Delete then DeleteRelation, one transaction per record,
    // so no record is left half deleted; stops at the first failure.
    bool deleteRecords(const QList<qint64>& ids);
    bool contactSums(qint64 contactId, ContactSums* sums);

    QString ErrMsg() const { return errMsg_; }

private:
    bool execute(const QString& sql);
    RecordsetPtr read(const QString& sql);
    void addError(const QString& text);

    const ListKind& kind_;
    QString errMsg_;
};

}  // namespace tarvel::lists
