#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QList>
#include <QTableWidget>

#include "exchange/csvimport.h"

namespace tarvel {

// Before a table import: a choice per column of the file of the field it
// fills ("不导入" for none), offered from the known layouts or the user's
// earlier choice, above the first rows; 导入/取消. On 导入 the plan takes the
// choices (and is checked again).
class CsvPreview : public QDialog {
    Q_OBJECT
public:
    explicit CsvPreview(exchange::CsvImportPlan* plan, QWidget* parent = nullptr);
    QTableWidget* table() const { return table_; }
    // The choice for each column of the file, in order.
    const QList<QComboBox*>& choices() const { return choices_; }
    void accept() override;

private:
    void showChoice(int column);

    exchange::CsvImportPlan* plan_;
    QTableWidget* table_;
    QList<QComboBox*> choices_;
};

}  // namespace tarvel
