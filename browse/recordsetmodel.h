#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>
#include <optional>
#include <vector>

#include "store/recordset.h"

namespace tarvel {

// Shows a recordset (a data control's, usually) in a grid. Cells are read from
// the recordset when the grid asks for them; the model keeps no copy. Its shape
// (rows, columns) is taken when it is (re)loaded: call reload() after rows were
// added or deleted. Grid rows and recordset rows are kept in step through
// currentRow()/moveTo().
class RecordsetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRecordset(RecordsetPtr recordset);
    RecordsetPtr recordset() const { return recordset_; }
    // Takes the recordset's shape again; the recordset keeps its position.
    void reload();

    // Shows only these recordset rows (ascending), so a search can narrow the
    // rows already read without copying them; reset() restores all rows.
    void setRowMap(std::vector<int> rows);
    void clearRowMap();
    bool hasRowMap() const { return map_.has_value(); }
    // The recordset row of a grid row.
    int recordsetRow(int row) const { return map_ ? (*map_)[size_t(row)] : row; }

    // A header caption other than the field name.
    void setCaption(int column, const QString& caption);

    // The recordset's current row as a grid row; -1 at BOF or EOF.
    int currentRow() const;
    // Makes a grid row the recordset's current row; false when out of range.
    bool moveTo(int row);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    RecordsetPtr recordset_;
    int rows_ = 0;
    std::optional<std::vector<int>> map_;
    QStringList names_;
    QHash<int, QString> captions_;
};

}  // namespace tarvel
