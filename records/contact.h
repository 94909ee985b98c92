#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <array>
#include <utility>

#include "records/account.h"
#include "records/recordbase.h"

namespace tarvel {

// One row of `contacts` (a person) and the organisation it belongs to. The
// record pattern of every record class: empty-recordset insert, whole-row
// update, link deletion apart from row deletion, and operations that return
// their success flag and append "<operation>出错，原因可能是<reason>" to ErrMsg.
class Contact : public RecordBase {
public:
    int ID() const { return id_; }
    void setID(int value) { id_ = value; }
    QString LastName() const { return lastName_; }
    void setLastName(const QString& value) { lastName_ = value; }
    QString FirstName() const { return firstName_; }
    void setFirstName(const QString& value) { firstName_ = value; }
    QString NickName() const { return nickName_; }
    void setNickName(const QString& value) { nickName_ = value; }
    QString Title() const { return title_; }
    void setTitle(const QString& value) { title_ = value; }
    QString DepartmentTitle() const { return departmentTitle_; }
    void setDepartmentTitle(const QString& value) { departmentTitle_ = value; }
    QString Description() const { return description_; }
    void setDescription(const QString& value) { description_ = value; }
    QString Telephone() const { return telephone_[0]; }
    void setTelephone(const QString& value) { telephone_[0] = value; }
    QString Telephone2() const { return telephone_[1]; }
    void setTelephone2(const QString& value) { telephone_[1] = value; }
    QString Telephone3() const { return telephone_[2]; }
    void setTelephone3(const QString& value) { telephone_[2] = value; }
    QString Mobile() const { return mobile_[0]; }
    void setMobile(const QString& value) { mobile_[0] = value; }
    QString Mobile2() const { return mobile_[1]; }
    void setMobile2(const QString& value) { mobile_[1] = value; }
    QString Mobile3() const { return mobile_[2]; }
    void setMobile3(const QString& value) { mobile_[2] = value; }
    QString Fax() const { return fax_[0]; }
    void setFax(const QString& value) { fax_[0] = value; }
    QString Fax2() const { return fax_[1]; }
    void setFax2(const QString& value) { fax_[1] = value; }
    QString Fax3() const { return fax_[2]; }
    void setFax3(const QString& value) { fax_[2] = value; }
    QString EMail() const { return email_[0]; }
    void setEMail(const QString& value) { email_[0] = value; }
    QString EMail2() const { return email_[1]; }
    void setEMail2(const QString& value) { email_[1] = value; }
    QString EMail3() const { return email_[2]; }
    void setEMail3(const QString& value) { email_[2] = value; }
    QString FamilyAddress() const { return familyAddress_; }
    void setFamilyAddress(const QString& value) { familyAddress_ = value; }
    QString FamilyPostcode() const { return familyPostcode_; }
    void setFamilyPostcode(const QString& value) { familyPostcode_ = value; }
    QString IM() const { return im_[0]; }
    void setIM(const QString& value) { im_[0] = value; }
    QString IM2() const { return im_[1]; }
    void setIM2(const QString& value) { im_[1] = value; }
    QString IM3() const { return im_[2]; }
    void setIM3(const QString& value) { im_[2] = value; }
    QString Website() const { return website_; }
    void setWebsite(const QString& value) { website_ = value; }
    QString Province() const { return province_; }
    void setProvince(const QString& value) { province_ = value; }
    QString Important() const { return important_; }
    void setImportant(const QString& value) { important_ = value; }
    QString Relation() const { return relation_; }
    void setRelation(const QString& value) { relation_ = value; }
    QDateTime CreateDate() const { return createDate_; }
    void setCreateDate(const QDateTime& value) { createDate_ = value; }
    QDateTime RCDate() const { return rcDate_; }
    void setRCDate(const QDateTime& value) { rcDate_ = value; }
    // 1900-1-1 stands for an unknown birthday.
    QDateTime Birthday() const { return birthday_; }
    void setBirthday(const QDateTime& value) { birthday_ = value; }
    qint16 iPrivate() const { return private_; }
    void setiPrivate(qint16 value) { private_ = value; }
    QString Tag() const { return tag_; }
    void setTag(const QString& value) { tag_ = value; }
    // The organisation the contact belongs to (through accounts_contacts).
    tarvel::Account& Account() { return account_; }
    const tarvel::Account& Account() const { return account_; }
    void setAccount(const tarvel::Account& value) { account_ = value; }
    // The contact's role in the record whose panel shows it (GetByIdEx).
    QString PartInOpp() const { return partInOpp_; }
    void setPartInOpp(const QString& value) { partInOpp_ = value; }

    bool Add();
    // Rewrites every column but con_create_date.
    bool Update();
    // Removes the row only; DeleteRelation removes its links.
    bool Delete();
    bool DeleteRelation();
    // Loads the row and its account from que_contacts_accounts; a missing id
    // changes nothing and still succeeds.
    bool GetById();
    // GetById, then the role (kind 1) or the contact-to-contact relation (kind 3).
    bool GetByIdEx(int otherId, qint16 relationKind);
    // The largest con_id; null on an empty table or a failure.
    QVariant GetMaxId();
    // Fills the properties and Account from the current row of any recordset
    // over que_contacts_accounts.
    void LoadRow(const Recordset& rs);

    // Links to any kind; `text` is the role (kind 1) or the relation (kind 3).
    // Kind 2 moves the contact: a contact has at most one account.
    bool AddRelative(qint16 relationKind, int otherId, const QString& text = QString());
    // Also appends each statement it executes to ErrMsg before running it.
    bool DeleteRelative(qint16 relationKind, int otherId);

    bool CalcByOpportunity();
    bool CalcByImportant();
    bool CalcByAccType();
    bool CalcByRelation();
    bool CalcByIndustry();
    bool CalcByProvince();
    bool CalcByTag();
    bool CalcByAccount();

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

private:
    std::array<std::pair<const char*, QString*>, 27> textColumns();
    void readQuickEdit();
    void storeAndLinkAccount();
    QString accountRoleIn(int opportunityId);
    void linkToPanelRecord();
    void logAndExecute(const QString& sql);

    int id_ = 0;
    QString firstName_, lastName_, nickName_, title_, description_, departmentTitle_;
    QString telephone_[3], mobile_[3], fax_[3], email_[3];
    QString familyAddress_, familyPostcode_;
    QString im_[3];
    QString website_, province_, important_, relation_;
    QDateTime createDate_, rcDate_, birthday_;
    qint16 private_ = 0;
    QString tag_;
    tarvel::Account account_;
    QString partInOpp_;
};

}  // namespace tarvel
