#pragma once

#include "views/common/dialogs.h"

namespace tarvel {

// What the user wants when the account name of a linked contact was changed.
enum class AccountRename { Rename, NewAccount, Cancel };

// Asks whether the changed name renames the contact's account or makes a
// new account for the contact (Yes, No, Cancel).
AccountRename askAccountRename(Dialogs& dialogs);

}  // namespace tarvel
