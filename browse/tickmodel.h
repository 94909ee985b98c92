#pragma once

#include <QHash>
#include <QIdentityProxyModel>
#include <functional>

namespace tarvel::lists {

// The list grid's model over the recordset model: the first column is the
// record's tick as a check box, dates read as yyyy-MM-dd (with HH:mm where
// they hold a time). A tick is written through `writer` first and shown only
// when it was stored.
class TickModel : public QIdentityProxyModel {
    Q_OBJECT
public:
    using Writer = std::function<bool(qint64 id, bool ticked)>;
    explicit TickModel(QObject* parent = nullptr);

    void setWriter(Writer writer) { writer_ = std::move(writer); }
    // The column that holds the record key.
    void setKeyColumn(int column) { keyColumn_ = column; }
    qint64 idAt(int row) const;
    bool isTicked(int row) const;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    Writer writer_;
    int keyColumn_ = -1;
    // Ticks written since the rows were read; dropped when they are read again.
    QHash<int, bool> written_;
};

}  // namespace tarvel::lists
