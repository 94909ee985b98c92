#pragma once

#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"

namespace tarvel {

// "保存为模板…": asks for a file and writes the customisation into it.
void saveTemplateFlow(Messages& dialogs, FileDialogs& files);

// "载入模板…": asks for a template, shows what it will change and, on OK,
// loads it and reloads the program's list columns. True when it was loaded:
// the caller then brings every open screen up to date.
bool loadTemplateFlow(Messages& dialogs, FileDialogs& files);

}  // namespace tarvel
