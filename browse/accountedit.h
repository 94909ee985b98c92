#pragma once

#include <QString>

namespace tarvel {

// The account boxes of a contact being saved, on its page or on a panel.
struct AccountEdit {
    QString typedName;         // the account name box
    bool otherFilled = false;  // another account box (address, postcode, website) holds text
    int linkedAccount = 0;     // the account the contact was shown with and still has; 0: none
    QString shownName;         // that account's name as shown
};

// What the save must ask before the account is stored: nothing, whether the
// typed account data may be dropped (no name), or whether a changed name
// renames the account or makes a new one.
enum class AccountQuestion { None, DropAccountData, RenameOrNew };
AccountQuestion accountQuestion(const AccountEdit& edit);

// Whether the save stores account data at all: not without a name.
inline bool storesAccount(const AccountEdit& edit) {
    return !edit.typedName.trimmed().isEmpty();
}

}  // namespace tarvel
