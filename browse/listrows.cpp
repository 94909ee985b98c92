#include "browse/listrows.h"

#include <QTimer>
#include <algorithm>

#include "browse/listsort.h"
#include "browse/listsql.h"
#include "browse/recordsetmodel.h"

namespace tarvel::lists {

namespace {

// The column of `key` in a recordset; the engine may name a joined column
// "table.column".
int columnOf(const Recordset& rs, const QString& key) {
    for (int c = 0; c < rs.FieldCount(); ++c) {
        const QString name = rs.fieldName(c);
        if (name.mid(name.lastIndexOf(QLatin1Char('.')) + 1) == key) return c;
    }
    return -1;
}

}  // namespace

ListRows::ListRows(const ListKind& kind, QObject* parent)
    : QObject(parent), kind_(kind), store_(kind), model_(new RecordsetModel(this)) {}

bool ListRows::show(const QString& condition) {
    const QString text = searchTextOf(kind_, condition);
    const bool search = !text.isEmpty() && searchCondition(kind_.number, text) == condition;
    if (!readRows(search ? QString() : condition)) return false;
    // Should the search columns be unreadable, the engine answers the search.
    if (search && !filterRows(text) && !readRows(condition)) return false;
    condition_ = condition;
    // A row is always at hand, so the screens have something to act on.
    setCurrent(count() > 0 ? 0 : -1);
    return true;
}

bool ListRows::showSearch(const QString& text, const QString& condition) {
    if (!allRowsRead_ || !filterRows(text)) return false;
    condition_ = condition;
    setCurrent(count() > 0 ? 0 : -1);
    return true;
}

bool ListRows::reread(qint64 key) {
    const bool ok = show(condition_);
    if (ok && key != 0) setCurrent(std::max(rowOf(key), 0));
    emit recordsChanged();
    return ok;
}

bool ListRows::remove(qint64 key) {
    const int row = current_;
    ListStore store(kind_);
    const bool ok = store.deleteRecords({key});
    if (!ok) errMsg_ = store.ErrMsg();
    if (reread()) setCurrent(std::min(std::max(row, 0), count() - 1));
    return ok;
}

bool ListRows::readRows(const QString& condition) {
    adodc_.RecordSource = listQuery(kind_, store_.columns(), withOrder(condition, defaultOrder_));
    if (!adodc_.Refresh()) {
        errMsg_ = adodc_.ErrorDescription();
        emit readFailed(errMsg_);
        return false;
    }
    // Rows read again may differ from those the search columns were read with.
    searchIndex_.clear();
    filterText_.clear();
    allRowsRead_ = condition.isEmpty();
    current_ = -1;
    model_->setRecordset(adodc_.Recordset);
    keyColumn_ = adodc_.Recordset ? columnOf(*adodc_.Recordset, kind_.key) : -1;
    emit rowsRead();
    // Searching is made ready once the grid has painted, before the first key.
    if (allRowsRead_) QTimer::singleShot(0, this, &ListRows::prepareSearch);
    return true;
}

bool ListRows::filterRows(const QString& text) {
    if (!allRowsRead_) return false;
    current_ = -1;
    if (text.isEmpty()) {
        model_->clearRowMap();
        filterText_.clear();
        return true;
    }
    if (!prepareSearch()) return false;
    // A longer text selects a subset of what its beginning selected.
    std::vector<int> rows;
    if (!filterText_.isEmpty() && text.startsWith(filterText_) && model_->hasRowMap()) {
        std::vector<int> shown(size_t(model_->rowCount()));
        for (int r = 0; r < int(shown.size()); ++r) shown[size_t(r)] = model_->recordsetRow(r);
        rows = searchIndex_.select(text, &shown);
    } else {
        rows = searchIndex_.select(text, nullptr);
    }
    model_->setRowMap(std::move(rows));
    filterText_ = text;
    return true;
}

bool ListRows::prepareSearch() {
    if (!allRowsRead_) return false;
    if (searchIndex_.isBuilt()) return true;
    const RecordsetPtr grid = model_->recordset();
    const RecordsetPtr columns = store_.searchColumns();
    if (columns && grid && searchIndex_.build(*columns, *grid, grid->fieldIndex(kind_.key)))
        return true;
    // Rows that cannot be told apart by their key (a contact under two
    // accounts): the engine answers each search until the rows are read again.
    allRowsRead_ = false;
    return false;
}

int ListRows::count() const {
    return model_->rowCount();
}

qint64 ListRows::keyAt(int row) const {
    const RecordsetPtr rs = model_->recordset();
    if (!rs || keyColumn_ < 0 || row < 0 || row >= count()) return 0;
    return rs->valueAt(model_->recordsetRow(row), keyColumn_).toLongLong();
}

int ListRows::rowOf(qint64 key) const {
    for (int row = 0; row < count(); ++row)
        if (keyAt(row) == key) return row;
    return -1;
}

bool ListRows::setCurrent(int row) {
    if (row < -1 || row >= count()) return false;
    if (row == current_) return true;
    current_ = row;
    emit currentChanged(row);
    return true;
}

bool ListRows::moveWithin(int row) {
    if (count() == 0) return false;
    return setCurrent(std::clamp(row, 0, count() - 1));
}

bool ListRows::moveFirst() {
    return moveWithin(0);
}

bool ListRows::movePrevious() {
    return moveWithin(current_ - 1);
}

bool ListRows::moveNext() {
    return moveWithin(current_ + 1);
}

bool ListRows::moveLast() {
    return moveWithin(count() - 1);
}

}  // namespace tarvel::lists
