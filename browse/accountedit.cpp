#include "browse/accountedit.h"

#include "records/contact.h"

namespace tarvel {

AccountQuestion accountQuestion(const AccountEdit& edit) {
    if (edit.typedName.trimmed().isEmpty())
        return edit.otherFilled ? AccountQuestion::DropAccountData : AccountQuestion::None;
    if (edit.linkedAccount == 0 || edit.typedName == edit.shownName) return AccountQuestion::None;
    return AccountQuestion::RenameOrNew;
}

bool storeContactAccount(Contact& contact, int accountId, bool newAccount,
                         const std::function<void(Account&)>& fill) {
    Account& account = contact.Account();
    account = Account();
    account.setID(newAccount ? 0 : accountId);
    if (!newAccount && !account.GetById()) return false;
    fill(account);
    account.setRCDate(recordvalue::now());
    if (account.ID() == 0) {
        account.setCreateDate(recordvalue::today());
        if (!account.Add()) return false;
    } else if (!account.Update()) {
        return false;
    }
    return contact.AddRelative(kind::Account, account.ID());
}

}  // namespace tarvel
