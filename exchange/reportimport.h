#pragma once

#include <QMap>
#include <QString>

#include "exchange/progress.h"

namespace tarvel::exchange {

// What a report import added: record table -> rows.
using ImportSummary = QMap<QString, int>;

// The summary in words, one kind after another ("联系人 3，单位 1，...").
QString describe(const ImportSummary& summary);

// Merges the report file `path` into the live data file in one transaction:
// every incoming record gets a new key (old and new recorded in the id
// translation tables, emptied first) and every link row whose two records
// arrived is re-created with the new keys. Incoming records arrive unticked.
Outcome importReport(const QString& path, ImportSummary* summary = nullptr,
                     const Progress& progress = {});

}  // namespace tarvel::exchange
