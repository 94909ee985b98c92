#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/csv.h"
#include "exchange/progress.h"

namespace tarvel::exchange {

// What a CSV file will bring, shown to the user before anything is stored:
// each header cell and the column it fills (empty: ignored), and the rows.
struct CsvImportPlan {
    QString kind;          // "contacts" or "accounts"
    QStringList header;    // the file's first row
    QStringList targets;   // per header cell: a column name, or empty
    QStringList captions;  // per header cell: the column's caption, or empty
    QList<CsvRow> rows;    // the data rows
    // The column that names a contact's account.
    static QString accountColumn() { return QStringLiteral("acc_name"); }
};

// Reads a CSV file of contacts or accounts (UTF-8 with or without a
// byte-order mark, or GB18030) and maps its header row to columns by caption
// or column name. False with the reason in `error`.
bool planCsvImport(const QString& path, const QString& kind, CsvImportPlan* plan, QString* error);

// Stores every row of the plan in one transaction: all rows or none. Rows
// that cannot be stored are reported by line number. `added` receives the
// number of records and accounts added.
Outcome importCsv(const CsvImportPlan& plan, int* added = nullptr, int* accountsAdded = nullptr,
                  const Progress& progress = {});

// Writes the ticked records of a kind, one line per record under a header of
// the list's captions, as UTF-8 with a byte-order mark.
Outcome exportCsv(const QString& kind, const QString& path, const Progress& progress = {});

}  // namespace tarvel::exchange
