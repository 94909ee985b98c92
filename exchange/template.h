#pragma once

#include <QString>
#include <QStringList>

#include "exchange/progress.h"

namespace tarvel::exchange {

// A template file carries one installation's customisation to another: the
// list columns (`fields`), the layout in use (`interface`, app_type 0) and the
// option lists (`options` and the older per-kind tables), never a record. It
// is a data file of the same form and password as a backup.

// The filter of both template file dialogs, as QFileDialog takes it.
inline QString templateDialogFilter() {
    return QStringLiteral("Tarvel模板文件 (*.tvm3)");
}

// The tables a template holds.
QStringList templateTables();

// Writes the live file's customisation to `chosen` (a new file, written under
// a temporary name and renamed into place). An empty name does nothing.
Outcome saveTemplate(const QString& chosen);

// What loading the template `path` would change, a line each (captions,
// columns shown, option lists); fails with a message, naming what is missing,
// when the file is not a template.
Outcome describeTemplate(const QString& path, QStringList* changes);

// Replaces the layout, the list columns and the option lists with the
// template's, in one transaction. Options the records already use stay in
// their lists (`kept` tells how many were added back), so that no record shows
// a value its list does not offer. Callers then reload the list columns
// (loadProgramFieldSettings) and rebuild the screens.
Outcome loadTemplate(const QString& path, int* kept = nullptr);

}  // namespace tarvel::exchange
