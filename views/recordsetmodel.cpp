#include "views/recordsetmodel.h"

namespace tarvel {

void RecordsetModel::setRecordset(RecordsetPtr recordset) {
    recordset_ = std::move(recordset);
    reload();
}

void RecordsetModel::reload() {
    beginResetModel();
    rows_.clear();
    names_.clear();
    Recordset* rs = recordset_.get();
    if (rs && rs->State() == adStateOpen) {
        for (int c = 0; c < rs->FieldCount(); ++c) names_ << rs->fieldName(c);
        const bool atEof = rs->Eof() && !rs->Bof();
        const int position = rs->AbsolutePosition();
        if (rs->RecordCount() > 0) {
            rs->MoveFirst();
            for (; !rs->Eof(); rs->MoveNext()) {
                QVector<QVariant> row(names_.size());
                for (int c = 0; c < names_.size(); ++c) row[c] = rs->value(c);
                rows_.append(row);
            }
            // Back to where the recordset stood; the loop left it at EOF.
            if (position > 0) {
                moveTo(position - 1);
            } else if (!atEof) {
                rs->MoveFirst();
                rs->MovePrevious();
            }
        }
    }
    endResetModel();
}

void RecordsetModel::setCaption(int column, const QString& caption) {
    captions_.insert(column, caption);
    emit headerDataChanged(Qt::Horizontal, column, column);
}

int RecordsetModel::currentRow() const {
    return recordset_ ? recordset_->AbsolutePosition() - 1 : -1;
}

bool RecordsetModel::moveTo(int row) {
    if (!recordset_ || row < 0 || row >= recordset_->RecordCount()) return false;
    if (currentRow() == row) return true;
    recordset_->MoveFirst();
    for (int i = 0; i < row; ++i) recordset_->MoveNext();
    return true;
}

int RecordsetModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(rows_.size());
}

int RecordsetModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(names_.size());
}

QVariant RecordsetModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return QVariant();
    if (role != Qt::DisplayRole && role != Qt::EditRole) return QVariant();
    return rows_[index.row()][index.column()];
}

QVariant RecordsetModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return QVariant();
    if (orientation == Qt::Vertical) return section + 1;
    if (section < 0 || section >= names_.size()) return QVariant();
    return captions_.value(section, names_[section]);
}

}  // namespace tarvel
