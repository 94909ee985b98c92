#pragma once

#include <QString>
#include <functional>

namespace tarvel {

class Account;
class Contact;

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

// Stores the account typed with a contact and links the contact to it: the
// shown account `accountId` is read whole first (its update rewrites every
// column) and rewritten, or a new one is made when `newAccount` or none is
// shown. `fill` puts the typed account fields in. The recent-contact date is
// now, a new account's creation today. False with the reason in the
// contact's Account().ErrMsg().
bool storeContactAccount(Contact& contact, int accountId, bool newAccount,
                         const std::function<void(Account&)>& fill);

}  // namespace tarvel
