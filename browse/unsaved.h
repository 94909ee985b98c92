#pragma once

#include <QString>

namespace tarvel {

// The five detail modules that can hold an edit not yet saved. The detail
// screens set their flag while an edit is pending; the main window and the
// lists ask before leaving such an edit.
enum class UnsavedModule { Contact, Account, Opportunity, Task, Document };

void setUnsaved(UnsavedModule module, bool value);
bool isUnsaved(UnsavedModule module);
bool anyUnsaved();
void clearUnsaved();

// The question before an unsaved edit is left.
inline QString unsavedQuestion() {
    return QStringLiteral("您输入的信息未保存，\n是否取消当前修改？");
}

}  // namespace tarvel
