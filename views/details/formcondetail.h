#pragma once

#include "views/details/formdetail.h"
#include "views/details/recordfields.h"

class QDateEdit;

namespace tarvel {

class Contact;
class NameSearch;

// form_con_detail: every field of a contact and of the account it belongs to.
// Saving stores the account too (after the two account questions) and links
// the contact to it.
class FormConDetail : public FormDetail {
    Q_OBJECT
public:
    explicit FormConDetail(QWidget* parent = nullptr);

    int accountId() const { return accountId_; }

protected:
    bool showFields(int id, QString* error) override;
    bool saveFields(int* id, QString* error) override;

private:
    QWidget* basicGroup();
    QWidget* contactGroup();
    QWidget* accountGroup();
    // Takes the account chosen in lst_account into the account fields.
    void takeAccount(int accountId);
    // The questions about the account before a save: false when the user
    // stops the save; `storeAccount` false when only the contact is saved.
    bool askAboutAccount(bool* storeAccount, bool* newAccount);

    std::vector<TextField> contactFields_;
    std::vector<TextField> accountFields_;
    QLineEdit* txtName_;
    QLineEdit* txtAccount_;
    QListWidget* lstContacts_;
    QListWidget* lstAccount_;
    QDateEdit* dtBirthday_;
    QCheckBox* chkPrivate_;
    NameSearch* nameSearch_;
    NameSearch* accountSearch_;
    int accountId_ = 0;
    QString accountName_;  // as stored, to see whether the user renamed it
};

}  // namespace tarvel
