#include "browse/tickmodel.h"

#include <QDateTime>
#include <QLocale>

#include "exchange/tableexport.h"

namespace tarvel::lists {

TickModel::TickModel(QObject* parent) : QIdentityProxyModel(parent) {
    connect(this, &QAbstractItemModel::modelReset, this, [this] { written_.clear(); });
}

qint64 TickModel::idAt(int row) const {
    if (keyColumn_ < 0) return 0;
    return QIdentityProxyModel::data(index(row, keyColumn_), Qt::EditRole).toLongLong();
}

bool TickModel::isTicked(int row) const {
    if (auto it = written_.constFind(row); it != written_.cend()) return *it;
    const QVariant v = QIdentityProxyModel::data(index(row, 0), Qt::EditRole);
    return v.toBool() || v.toInt() != 0;
}

QVariant TickModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return QVariant();
    if (index.column() == 0) {
        if (role == Qt::CheckStateRole) return isTicked(index.row()) ? Qt::Checked : Qt::Unchecked;
        if (role == Qt::DisplayRole) return QVariant();
        if (role == Qt::EditRole) return isTicked(index.row());
        // A screen reader names the tick, which has no text of its own.
        if (role == Qt::AccessibleTextRole)
            return isTicked(index.row()) ? QStringLiteral("已选") : QStringLiteral("未选");
    }
    if (role == Qt::DisplayRole)
        return exchange::cellText(QIdentityProxyModel::data(index, Qt::EditRole));
    if (role == Qt::TextAlignmentRole) {
        const int type = QIdentityProxyModel::data(index, Qt::EditRole).typeId();
        if (type == QMetaType::Double || type == QMetaType::LongLong || type == QMetaType::Int)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return QIdentityProxyModel::data(index, role);
}

bool TickModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.column() != 0 || role != Qt::CheckStateRole || !writer_)
        return false;
    const bool ticked = value.toInt() == Qt::Checked;
    if (!writer_(idAt(index.row()), ticked)) return false;
    written_.insert(index.row(), ticked);
    emit dataChanged(index, index, {Qt::CheckStateRole, Qt::EditRole, Qt::AccessibleTextRole});
    return true;
}

Qt::ItemFlags TickModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QIdentityProxyModel::flags(index);
    if (index.isValid() && index.column() == 0) f |= Qt::ItemIsUserCheckable;
    return f & ~Qt::ItemIsEditable;
}

}  // namespace tarvel::lists
