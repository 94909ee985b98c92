#include "browse/recordsetmodel.h"

#include <algorithm>

#include "schedule/recurrence.h"

namespace tarvel {

void RecordsetModel::setRecordset(RecordsetPtr recordset) {
    recordset_ = std::move(recordset);
    reload();
}

void RecordsetModel::setRowMap(std::vector<int> rows) {
    beginResetModel();
    map_ = std::move(rows);
    endResetModel();
}

void RecordsetModel::clearRowMap() {
    if (!map_) return;
    beginResetModel();
    map_.reset();
    endResetModel();
}

void RecordsetModel::reload() {
    beginResetModel();
    map_.reset();
    rows_ = 0;
    names_.clear();
    const Recordset* rs = recordset_.get();
    if (rs && rs->State() == adStateOpen) {
        for (int c = 0; c < rs->FieldCount(); ++c) names_ << rs->fieldName(c);
        rows_ = rs->RecordCount();
    }
    endResetModel();
}

void RecordsetModel::setCaption(int column, const QString& caption) {
    captions_.insert(column, caption);
    emit headerDataChanged(Qt::Horizontal, column, column);
}

int RecordsetModel::currentRow() const {
    const int row = recordset_ ? recordset_->AbsolutePosition() - 1 : -1;
    if (!map_ || row < 0) return row;
    const auto it = std::lower_bound(map_->cbegin(), map_->cend(), row);
    return it != map_->cend() && *it == row ? int(it - map_->cbegin()) : -1;
}

bool RecordsetModel::moveTo(int row) {
    if (!recordset_ || row < 0) return false;
    if (row >= (map_ ? int(map_->size()) : recordset_->RecordCount())) return false;
    const int record = recordsetRow(row);
    return recordset_->AbsolutePosition() == record + 1 ||
           recordset_->setAbsolutePosition(record + 1);
}

int RecordsetModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return map_ ? int(map_->size()) : rows_;
}

int RecordsetModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(names_.size());
}

QVariant RecordsetModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return QVariant();
    if ((role != Qt::DisplayRole && role != Qt::EditRole) || !recordset_) return QVariant();
    const QVariant value = recordset_->valueAt(recordsetRow(index.row()), index.column());
    // A recurring task's open end reads as words, not as the far date that holds it.
    if (role == Qt::DisplayRole && value.typeId() == QMetaType::QDateTime &&
        isOpenEnded(value.toDateTime()))
        return openEndedText();
    return value;
}

QVariant RecordsetModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return QVariant();
    if (orientation == Qt::Vertical) return section + 1;
    if (section < 0 || section >= names_.size()) return QVariant();
    return captions_.value(section, names_[section]);
}

}  // namespace tarvel
