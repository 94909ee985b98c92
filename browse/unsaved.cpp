#include "browse/unsaved.h"

namespace tarvel {

namespace {
bool flags[5] = {false, false, false, false, false};
}  // namespace

void setUnsaved(UnsavedModule module, bool value) {
    flags[int(module)] = value;
}

bool isUnsaved(UnsavedModule module) {
    return flags[int(module)];
}

bool anyUnsaved() {
    for (bool flag : flags)
        if (flag) return true;
    return false;
}

void clearUnsaved() {
    for (bool& flag : flags) flag = false;
}

}  // namespace tarvel
