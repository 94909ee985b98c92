#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

#include "records/account.h"

namespace tarvel {

// One row of `contacts` (a person) and the organisation it belongs to. The
// record pattern of every record class: empty-recordset insert, whole-row
// update, link deletion apart from row deletion, and operations that return
// their success flag and append "<operation>出错，原因可能是<reason>" to ErrMsg.
class Contact : public RecordRow<Contact> {
public:
    TARVEL_PROPERTY(int, ID, id_)
    TARVEL_PROPERTY(QString, LastName, lastName_)
    TARVEL_PROPERTY(QString, FirstName, firstName_)
    TARVEL_PROPERTY(QString, NickName, nickName_)
    TARVEL_PROPERTY(QString, Title, title_)
    TARVEL_PROPERTY(QString, DepartmentTitle, departmentTitle_)
    TARVEL_PROPERTY(QString, Description, description_)
    TARVEL_PROPERTY(QString, Telephone, telephone_)
    TARVEL_PROPERTY(QString, Telephone2, telephone2_)
    TARVEL_PROPERTY(QString, Telephone3, telephone3_)
    TARVEL_PROPERTY(QString, Mobile, mobile_)
    TARVEL_PROPERTY(QString, Mobile2, mobile2_)
    TARVEL_PROPERTY(QString, Mobile3, mobile3_)
    TARVEL_PROPERTY(QString, Fax, fax_)
    TARVEL_PROPERTY(QString, Fax2, fax2_)
    TARVEL_PROPERTY(QString, Fax3, fax3_)
    TARVEL_PROPERTY(QString, EMail, email_)
    TARVEL_PROPERTY(QString, EMail2, email2_)
    TARVEL_PROPERTY(QString, EMail3, email3_)
    TARVEL_PROPERTY(QString, FamilyAddress, familyAddress_)
    TARVEL_PROPERTY(QString, FamilyPostcode, familyPostcode_)
    TARVEL_PROPERTY(QString, IM, im_)
    TARVEL_PROPERTY(QString, IM2, im2_)
    TARVEL_PROPERTY(QString, IM3, im3_)
    TARVEL_PROPERTY(QString, Website, website_)
    TARVEL_PROPERTY(QString, Province, province_)
    TARVEL_PROPERTY(QString, Important, important_)
    TARVEL_PROPERTY(QString, Relation, relation_)
    TARVEL_PROPERTY(QDateTime, CreateDate, createDate_)
    TARVEL_PROPERTY(QDateTime, RCDate, rcDate_)
    // 1900-1-1 stands for an unknown birthday.
    TARVEL_PROPERTY(QDateTime, Birthday, birthday_)
    TARVEL_PROPERTY(qint16, iPrivate, private_)
    TARVEL_PROPERTY(QString, Tag, tag_)
    // The organisation the contact belongs to (through accounts_contacts).
    tarvel::Account& Account() { return account_; }
    const tarvel::Account& Account() const { return account_; }
    void setAccount(const tarvel::Account& value) { account_ = value; }
    // The contact's role in the record whose panel shows it (GetByIdEx).
    TARVEL_PROPERTY(QString, PartInOpp, partInOpp_)

    // GetById, then the role (kind 1) or the contact-to-contact relation (kind 3).
    bool GetByIdEx(int otherId, qint16 relationKind);
    // The largest con_id; null on an empty table or a failure.
    QVariant GetMaxId();
    // Fills the properties and Account from the current row of any recordset
    // over que_contacts_accounts.
    void LoadRow(const Recordset& rs);

    // Links to any kind; `text` is the role (kind 1) or the relation (kind 3).
    // Kind 2 moves the contact: a contact has at most one account.
    using RecordRow::AddRelative;

    bool CalcByOpportunity();
    bool CalcByImportant() { return count("CalcByImportant"); }
    bool CalcByAccType() { return count("CalcByAccType"); }
    bool CalcByRelation() { return count("CalcByRelation"); }
    bool CalcByIndustry() { return count("CalcByIndustry"); }
    bool CalcByProvince() { return count("CalcByProvince"); }
    bool CalcByTag() { return count("CalcByTag"); }
    bool CalcByAccount() { return count("CalcByAccount"); }

    // Panel operations over oForm / oAdodc. The panel's own record key is the
    // form property panel::RecordId.
    bool ShowContact(int contactId, bool load);
    bool SetQuery(int otherId);
    bool AddContact();
    bool ChangeContact(int contactId);
    bool AddToList();
    // Writes the edited contact back (grid row or table), moves it to another
    // account when the account differs from the form's OldAccountID, links it
    // to the panel's record and positions the grid on it. With
    // `renameAccount` an account that stays the same gets the typed name and
    // address (the "only change the account" answer of the panel's question).
    bool UpdateIndex(int contactId, bool renameAccount);
    bool InitContact(int contactId, bool load);

    // Columns, properties and the panel's controls (txt_con_name, ...).
    static const RecordDescription<Contact>& description();
    static const RecordLinks& links();
    // The grouped and tag counts of the CalcBy... operations.
    static const std::vector<CategoryCount>& counts();

private:
    bool readQuickEdit();
    bool storeAndLinkAccount();
    bool updateAccount(bool rename);
    bool linkToPanelRecord();

    int id_ = 0;
    QString firstName_, lastName_, nickName_, title_, description_, departmentTitle_;
    QString telephone_, telephone2_, telephone3_, mobile_, mobile2_, mobile3_;
    QString fax_, fax2_, fax3_, email_, email2_, email3_;
    QString familyAddress_, familyPostcode_, im_, im2_, im3_;
    QString website_, province_, important_, relation_;
    QDateTime createDate_, rcDate_, birthday_;
    qint16 private_ = 0;
    QString tag_;
    tarvel::Account account_;
    QString partInOpp_;
};

}  // namespace tarvel
