#pragma once

namespace tarvel {

// The five detail modules that can hold an edit not yet saved. The detail
// screens set their flag while an edit is pending; the main window and the
// lists ask before leaving such an edit.
enum class UnsavedModule { Contact, Account, Opportunity, Task, Document };

void setUnsaved(UnsavedModule module, bool value);
bool isUnsaved(UnsavedModule module);
bool anyUnsaved();
void clearUnsaved();

}  // namespace tarvel
