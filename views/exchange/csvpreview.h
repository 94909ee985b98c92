#pragma once

#include <QDialog>
#include <QTableWidget>

#include "exchange/csvimport.h"

namespace tarvel {

// Before a CSV import: each column of the file with the field it fills
// ("不导入" when none) above the first rows, and 导入/取消.
class CsvPreview : public QDialog {
    Q_OBJECT
public:
    explicit CsvPreview(const exchange::CsvImportPlan& plan, QWidget* parent = nullptr);
    QTableWidget* table() const { return table_; }

private:
    QTableWidget* table_;
};

}  // namespace tarvel
