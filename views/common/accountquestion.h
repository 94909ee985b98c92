#pragma once

#include "browse/accountedit.h"
#include "views/common/dialogs.h"

namespace tarvel {

// The user's answers to the account questions of a contact's save.
struct AccountAnswer {
    bool proceed = true;      // false: the save stops (the user wants to fix the name)
    bool store = true;        // the account data is stored
    bool rename = false;      // the linked account takes the typed name
    bool newAccount = false;  // a new account is made and the contact moves to it
};

// Asks what accountQuestion() says must be asked. `dropQuestion` is the
// screen's own wording of the question about dropping the account data.
AccountAnswer askAccountQuestions(Messages& dialogs, const AccountEdit& edit,
                                  const QString& dropQuestion);

}  // namespace tarvel
