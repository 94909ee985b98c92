#pragma once

#include <QMap>
#include <QString>

#include "exchange/importsession.h"
#include "exchange/progress.h"

namespace tarvel::exchange {

// What a report import added: record table -> rows.
using ImportSummary = QMap<QString, int>;

// The summary in words, one kind after another ("联系人 3，单位 1，...").
QString describe(const ImportSummary& summary);

// What the import of a report or data file offers in its file dialog: report
// files, data files and backups of another installation or an earlier copy.
inline QString mergeFilter() {
    return QStringLiteral(
        "Tarvel报表和数据文件(*.tvr3 *.tvg *.tbk)|*.tvr3;*.tvg;*.tbk|Tarvel3.0报告文件(*.tvr3)|"
        "*.tvr3|Tarvel数据文件(*.tvg)|*.tvg|Tarvel备份文件(*.tbk)|*.tbk");
}

// Merges the report file, data file or backup `path` into the live data file
// in one transaction: every incoming record gets a new key (old and new
// recorded in the id translation tables, emptied first) and every link row
// whose two records arrived is re-created with the new keys. A record already
// there (see mergeKeys, or alike in every column) is matched instead: it keeps
// its key, its empty fields take the incoming values, and its links are added
// where missing. Columns the other file lacks stay empty, tables it lacks are
// skipped. Incoming records arrive unticked. `tally` counts added, updated and skipped records.
Outcome importReport(const QString& path, ImportSummary* summary = nullptr,
                     const Progress& progress = {}, ImportTally* tally = nullptr);

}  // namespace tarvel::exchange
