#pragma once

#include <QString>

#include "browse/shownrow.h"
#include "views/common/dialogs.h"

namespace tarvel {

enum class SaveAnswer {
    Save,       // overwrite (or nothing was found changed)
    SaveAsNew,  // the record went meanwhile: store the page's content as a new one
    Stop,       // keep the page's edits unsaved
};

// After a save stopped because `shown` found its record changed or deleted
// since it was shown, asks the user what to do; `noun` names the record
// ("联系人"). Save: what is stored now counts as shown, so the next attempt
// overwrites it. SaveAsNew: `shown` forgets the record.
SaveAnswer askBeforeOverwrite(Messages& dialogs, lists::ShownRow& shown, const QString& noun);

}  // namespace tarvel
