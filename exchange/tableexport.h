#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "exchange/progress.h"
#include "store/recordset.h"

namespace tarvel::exchange {

// One column of an exported table: the field and its list caption.
struct ExportColumn {
    QString name;
    QString caption;
};
// A kind's list fields with their captions, from the stored list fields;
// only those the list shows when `visibleOnly`.
QList<ExportColumn> exportColumns(qint16 kindCode, bool visibleOnly);

// A value as grids and exported tables write it: dates as yyyy-MM-dd (with
// the time when it has one), the open end of a series in words, amounts as
// written (never in exponent form).
QString cellText(const QVariant& value);

// Text after a record's columns (the sums of the expense table).
using RowTail = std::function<QString(const Recordset& row)>;

// A CSV file in UTF-8 with a byte-order mark: the captions as its first line,
// then one line per row; an Excel workbook with the same rows when `path`
// ends in .xlsx (dates as dates, numbers as numbers). Written to a temporary
// file that takes the name only when complete, so a failed or cancelled
// export leaves nothing under it.
bool writeTable(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
                const QString& headerTail, const RowTail& tail, const Progress& progress,
                QString* error);

// One UTF-8 HTML page: each row as a table of caption and value.
bool writeHtml(const QString& path, const QString& title, const QList<ExportColumn>& columns,
               Recordset& rows, const Progress& progress, QString* error);

// The ticked records of a kind ("contacts") with every list field, as a CSV
// file or an .xlsx workbook.
Outcome exportTicked(const QString& kind, const QString& path, const Progress& progress = {});

}  // namespace tarvel::exchange
