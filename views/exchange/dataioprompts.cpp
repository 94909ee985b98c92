#include "views/exchange/dataioprompts.h"

#include "views/exchange/csvpreview.h"

namespace tarvel {

bool DialogDataIoPrompts::confirmCsvImport(exchange::CsvImportPlan* plan) {
    CsvPreview preview(plan, parent_);
    return preview.exec() == QDialog::Accepted;
}

}  // namespace tarvel
