#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace tarvel::exchange {

// Writes one sheet of an Excel workbook (.xlsx): a header row of captions,
// then a row per addRow. Text is written as text (never as a formula), dates
// and times as date cells with a date format, numbers as numbers. The
// workbook is written under a temporary name and takes `path` only when
// finish() succeeds, so a failed export leaves nothing half written there.
class XlsxTable {
public:
    XlsxTable(const QString& path, const QStringList& captions);
    ~XlsxTable();
    XlsxTable(const XlsxTable&) = delete;
    XlsxTable& operator=(const XlsxTable&) = delete;

    bool addRow(const QVariantList& cells);
    // Closes the workbook and puts it in place; false with the reason.
    bool finish(QString* error);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

// Whether a file name asks for an Excel workbook rather than CSV text.
bool isXlsxName(const QString& path);

}  // namespace tarvel::exchange
