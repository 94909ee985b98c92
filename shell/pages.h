#pragma once

#include <QString>

#include "views/common/page.h"

namespace tarvel {

// Where a page code lives: its window name, the toolbar key of its module and
// what its caption adds to the module's (null for the page the module's
// toolbar button opens). The codes are in views/common/page.h.
struct PageInfo {
    qint16 code;
    const char* formName;
    const char* moduleKey;
    const char* captionSuffix;
};
// Null for an unknown code.
const PageInfo* pageInfo(qint16 code);
// The list page a module's toolbar key opens; 0 for keys that are not pages.
qint16 pageForKey(const QString& key);

}  // namespace tarvel
