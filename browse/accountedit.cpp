#include "browse/accountedit.h"

namespace tarvel {

AccountQuestion accountQuestion(const AccountEdit& edit) {
    if (edit.typedName.trimmed().isEmpty())
        return edit.otherFilled ? AccountQuestion::DropAccountData : AccountQuestion::None;
    if (edit.linkedAccount == 0 || edit.typedName == edit.shownName) return AccountQuestion::None;
    return AccountQuestion::RenameOrNew;
}

}  // namespace tarvel
