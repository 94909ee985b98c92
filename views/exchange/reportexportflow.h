#pragma once

#include <QString>

#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"

namespace tarvel {

// ExportReport(kind) as a list or the data exchange page runs it: the profile
// check, the save dialog with the proposed name, the overwrite question (the
// program's own: `files` must not ask), the
// export with progress, then page 42. Returns the chosen path, or an empty
// string when nothing was written (the reason of a failure already shown).
QString ExportReport(int kind, QWidget* parent, Messages& dialogs, FileDialogs& files,
                     const PageSwitch& pageSwitch);

// The lists' bulk operation "导出到Tarvel报表": the export, then the e-mail
// question on success or the failure notice. True when a file was written.
bool exportReportFromList(int kind, QWidget* parent, Messages& dialogs, FileDialogs& files,
                          const PageSwitch& pageSwitch);

}  // namespace tarvel
