#pragma once

#include <QObject>
#include <QString>

#include "browse/listkind.h"
#include "browse/liststore.h"
#include "browse/searchindex.h"
#include "store/datacontrol.h"

namespace tarvel {
class RecordsetModel;
}

namespace tarvel::lists {

// The rows of a list condition in the list's order and the current one: what
// the list screen shows in its grid and what the detail page of the kind
// steps through, deletes from and puts a saved record back into. A search
// condition is answered in memory from every record's rows when they are
// held. A failed read is reported through readFailed(); the rows and the
// condition then stay as they were.
class ListRows : public QObject {
    Q_OBJECT
public:
    explicit ListRows(const ListKind& kind, QObject* parent = nullptr);

    const ListKind& kind() const { return kind_; }
    QString condition() const { return condition_; }
    // The grid's rows over the recordset read.
    RecordsetModel* model() const { return model_; }
    DataControl& dataControl() { return adodc_; }

    // The order rows take when their condition brings none (the sort the user
    // chose last time), before the kind's own default order.
    void setDefaultOrder(const QString& order) { defaultOrder_ = order; }
    // Reads the rows of `condition`; the current row is the first.
    bool show(const QString& condition);
    // Narrows every record's rows, when held, to those the search for `text`
    // selects and takes `condition` as the list's; false (nothing changed)
    // when they are not held or cannot be searched.
    bool showSearch(const QString& text, const QString& condition);
    // After a save or an import: the rows of the condition read again, the
    // current row on record `key` when it is among them, else the first.
    bool reread(qint64 key = 0);
    // Deletes record `key` and its links in one transaction, then reads the
    // rows again with the current row where it was (the row that took the
    // deleted one's place, or the last). False with ErrMsg when the delete
    // failed; the rows are read again all the same.
    bool remove(qint64 key);
    // Reads the search columns of every record unless held; false when the
    // rows are not every record's or cannot be told apart by their key.
    bool prepareSearch();

    int count() const;
    // The key of a row; 0 out of range.
    qint64 keyAt(int row) const;
    // The row of a key; -1 when it is not among the rows.
    int rowOf(qint64 key) const;
    // -1 when no row is current.
    int current() const { return current_; }
    qint64 currentKey() const { return keyAt(current_); }
    // Makes `row` current (-1: none); false, and nothing changed, out of range.
    bool setCurrent(int row);
    // Stepping; each stays within the rows, false when there are none.
    bool moveFirst();
    bool movePrevious();
    bool moveNext();
    bool moveLast();

    // Why the last read or delete failed.
    QString ErrMsg() const { return errMsg_; }

signals:
    // A recordset was read: the grid's columns may have changed.
    void rowsRead();
    // The records changed (a save, an import, a delete): counts are stale.
    void recordsChanged();
    void readFailed(const QString& error);
    void currentChanged(int row);

private:
    bool readRows(const QString& condition);
    bool filterRows(const QString& text);
    bool moveWithin(int row);

    const ListKind& kind_;
    ListStore store_;
    DataControl adodc_;
    RecordsetModel* model_;
    QString condition_;
    QString defaultOrder_;
    int keyColumn_ = -1;
    int current_ = -1;
    // The rows hold every record (condition "") and can be searched in memory.
    bool allRowsRead_ = false;
    SearchIndex searchIndex_;
    QString filterText_;  // the search shown from memory; empty for all rows
    QString errMsg_;
};

}  // namespace tarvel::lists
