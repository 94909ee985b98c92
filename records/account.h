#pragma once

#include <QDateTime>
#include <QString>

#include "records/recordbase.h"

namespace tarvel {

// One row of `accounts` (an organisation). Every operation returns its success
// flag and appends "<operation>出错，原因可能是<reason>" to ErrMsg on failure.
class Account : public RecordBase {
public:
    int ID() const { return id_; }
    void setID(int value) { id_ = value; }
    QString AccName() const { return accName_; }
    void setAccName(const QString& value) { accName_ = value; }
    QString Description() const { return description_; }
    void setDescription(const QString& value) { description_ = value; }
    QDateTime CreateDate() const { return createDate_; }
    void setCreateDate(const QDateTime& value) { createDate_ = value; }
    QDateTime RCDate() const { return rcDate_; }
    void setRCDate(const QDateTime& value) { rcDate_ = value; }
    QString Important() const { return important_; }
    void setImportant(const QString& value) { important_ = value; }
    QString AccType() const { return accType_; }
    void setAccType(const QString& value) { accType_ = value; }
    QString Industry() const { return industry_; }
    void setIndustry(const QString& value) { industry_ = value; }
    QString Relation() const { return relation_; }
    void setRelation(const QString& value) { relation_ = value; }
    QString Address() const { return address_; }
    void setAddress(const QString& value) { address_ = value; }
    QString Postcode() const { return postcode_; }
    void setPostcode(const QString& value) { postcode_ = value; }
    QString Province() const { return province_; }
    void setProvince(const QString& value) { province_ = value; }
    QString Telephone() const { return telephone_; }
    void setTelephone(const QString& value) { telephone_ = value; }
    QString Fax() const { return fax_; }
    void setFax(const QString& value) { fax_ = value; }
    QString Website() const { return website_; }
    void setWebsite(const QString& value) { website_ = value; }
    qint16 iPrivate() const { return private_; }
    void setiPrivate(qint16 value) { private_ = value; }
    QString Tag() const { return tag_; }
    void setTag(const QString& value) { tag_ = value; }
    // The account's role in the opportunity whose panel shows it (GetByIdEx kind 1).
    QString PartInOpp() const { return partInOpp_; }
    void setPartInOpp(const QString& value) { partInOpp_ = value; }
    // A running sale amount that callers keep; never stored by this class.
    double AddSale() const { return addSale_; }
    void setAddSale(double value) { addSale_ = value; }

    bool Add();
    bool Update();
    bool Delete();
    bool DeleteRelation();
    bool GetById();
    bool GetByIdEx(int otherId, qint16 relationKind);
    // Fills the properties from the current row of any recordset over `accounts`.
    void LoadRow(const Recordset& rs);

    // Links: kinds 1 (role = text), 4, 5. An account is tied to a contact only
    // from the contact's side, so kinds 2 and 3 only stamp this account.
    bool AddRelative(qint16 relationKind, int otherId, const QString& text = QString());
    bool DeleteRelative(qint16 relationKind, int otherId);

    bool CalcByOpportunity();
    bool CalcByImportant();
    bool CalcByAccType();
    bool CalcByRelation();
    bool CalcByTag();
    bool CalcByIndustry();
    bool CalcByProvince();

    // Panel operations over oForm / oAdodc.
    bool ShowAccount(int accountId, bool load);
    bool SetQuery(int otherId);
    bool AddAccount();
    bool AddToList();
    bool ChangeAccount(int accountId);
    // Writes the edited account into the grid row (or the table), links it to
    // the panel's record again and positions the grid on it.
    bool UpdateIndex(int accountId);
    // With `load`: loads the account (and on an opportunity panel its role).
    bool InitAccount(int accountId, bool load);

private:
    void readQuickEdit();
    void linkToPanelRecord();

    int id_ = 0;
    QString accName_, description_;
    QDateTime createDate_, rcDate_;
    QString important_, accType_, industry_, relation_, address_, postcode_, province_;
    QString telephone_, fax_, website_;
    qint16 private_ = 0;
    QString tag_, partInOpp_;
    double addSale_ = 0;
};

}  // namespace tarvel
