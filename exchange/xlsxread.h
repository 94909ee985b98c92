#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/csv.h"

namespace tarvel::exchange {

// The rows of one sheet of an Excel workbook (.xlsx) as text, each with its
// row number: shared and inline strings (rich text runs joined), numbers
// (whole numbers without a decimal point), booleans as TRUE/FALSE and cells
// with a date format as yyyy-MM-dd (with the time when there is one), in the
// workbook's 1900 or 1904 date system. Empty rows are left out; missing cells
// read as empty. `sheet` names the sheet, empty for the first. False with the
// reason in `error` when the file is not a workbook that can be read.
bool readXlsx(const QString& path, const QString& sheet, QList<CsvRow>* rows, QString* error);

// The names of the workbook's sheets in their order (empty when unreadable).
QStringList xlsxSheetNames(const QString& path);

}  // namespace tarvel::exchange
