#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "browse/listkind.h"
#include "store/recordset.h"

namespace tarvel::lists {

struct ExportColumn {
    QString name;
    QString caption;
};
// The kind's list fields with captions; only those the list shows when
// `visibleOnly`.
QList<ExportColumn> exportColumns(const ListKind& kind, bool visibleOnly);

// Told after each record; false cancels the export.
using ExportProgress = std::function<bool(int done, int total)>;
// Text after a record's quoted columns (the sums of the expense table).
using RowTail = std::function<QString(const Recordset& row)>;

// A CSV file in UTF-8 with a byte-order mark: the captions as its first line,
// then one line per row; an Excel workbook with the same rows when `path`
// ends in .xlsx (dates as dates, numbers as numbers). Written to a temporary file that takes the
// name only when complete, so a failed or cancelled export leaves nothing under it.
bool writeCsv(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
              const QString& headerTail, const RowTail& tail, const ExportProgress& progress,
              QString* error);

// One UTF-8 HTML page: each row as a table of caption and value.
bool writeHtml(const QString& path, const QString& title, const QList<ExportColumn>& columns,
               Recordset& rows, const ExportProgress& progress, QString* error);

}  // namespace tarvel::lists
