#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/csv.h"
#include "exchange/importsession.h"
#include "exchange/progress.h"

namespace tarvel::exchange {

// A field a column of the file may fill: a column of the table or a part the
// record is put together from (see importlayout.h).
struct ImportTarget {
    QString key;
    QString caption;
};

// What a table file (CSV text or an Excel workbook) will bring, shown to the
// user before anything is stored.
struct CsvImportPlan {
    QString kind;  // "contacts" or "accounts"
    QString path;
    QStringList header;    // the file's first row
    QStringList targets;   // per header cell: a column, a part, or empty (not imported)
    QStringList captions;  // per header cell: the target's caption, or empty
    QList<CsvRow> rows;    // the data rows
    // Cells that cannot be read and rows that give no record, by row and
    // header; filled by planning and by retarget().
    QStringList problems;
    // Damaged bytes of a text file, named by line; empty when none.
    QString encodingProblem;
    // True when the targets are the user's earlier choice for this header row.
    bool remembered = false;
    // Every field a column may be set to fill, in the order offered.
    QList<ImportTarget> choices;
    // The column that names a contact's account.
    static QString accountColumn() { return QStringLiteral("acc_name"); }
};

// Reads a .csv/.txt file (encoding told from its bytes; comma, semicolon or
// tab) or an .xlsx workbook (its first sheet, or `sheet`) of contacts or
// accounts, and maps its header row to fields: by the user's earlier choice
// for the same header row, else by the known layouts of address books and
// spreadsheets, the list's captions and the column names. False with the
// reason in `error`.
bool planCsvImport(const QString& path, const QString& kind, CsvImportPlan* plan, QString* error,
                   const QString& sheet = {});

// Sets what each column fills (one target per header cell) and checks the
// rows again.
void retarget(CsvImportPlan* plan, const QStringList& targets);

// Remembers the plan's targets for files with the same header row.
bool rememberTargets(const CsvImportPlan& plan, QString* error);

// What an import did.
struct CsvImportResult {
    ImportTally tally;
    QStringList problems;
    // The tally's summary and, when there were any, the problems.
    QString summary() const;
};

// Stores the rows through one ImportSession (one transaction). When the plan
// has problems nothing is stored unless `importRest`: then the rest of the
// file comes in and the problems are reported with it.
Outcome importCsv(const CsvImportPlan& plan, bool importRest, CsvImportResult* result = nullptr,
                  const Progress& progress = {});

}  // namespace tarvel::exchange
