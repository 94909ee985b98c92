#pragma once

#include <QDateTime>
#include <QString>

#include "records/recorddescription.h"

namespace tarvel {

// One row of `accounts` (an organisation). Every operation returns its success
// flag and appends "<operation>出错，原因可能是<reason>" to ErrMsg on failure.
class Account : public RecordRow<Account> {
public:
    TARVEL_PROPERTY(int, ID, id_)
    TARVEL_PROPERTY(QString, AccName, accName_)
    TARVEL_PROPERTY(QString, Description, description_)
    TARVEL_PROPERTY(QDateTime, CreateDate, createDate_)
    TARVEL_PROPERTY(QDateTime, RCDate, rcDate_)
    TARVEL_PROPERTY(QString, Important, important_)
    TARVEL_PROPERTY(QString, AccType, accType_)
    TARVEL_PROPERTY(QString, Industry, industry_)
    TARVEL_PROPERTY(QString, Relation, relation_)
    TARVEL_PROPERTY(QString, Address, address_)
    TARVEL_PROPERTY(QString, Postcode, postcode_)
    TARVEL_PROPERTY(QString, Province, province_)
    TARVEL_PROPERTY(QString, Telephone, telephone_)
    TARVEL_PROPERTY(QString, Fax, fax_)
    TARVEL_PROPERTY(QString, Website, website_)
    TARVEL_PROPERTY(qint16, iPrivate, private_)
    TARVEL_PROPERTY(QString, Tag, tag_)
    // The account's role in the opportunity whose panel shows it (GetByIdEx kind 1).
    TARVEL_PROPERTY(QString, PartInOpp, partInOpp_)
    // A running sale amount that callers keep; never stored by this class.
    TARVEL_PROPERTY(double, AddSale, addSale_)

    bool Add();
    bool GetByIdEx(int otherId, qint16 relationKind);

    // Links: kinds 1 (role = text), 4, 5. An account is tied to a contact only
    // from the contact's side, so kinds 2 and 3 only stamp this account.
    using RecordRow::AddRelative;

    bool CalcByOpportunity();
    bool CalcByImportant() { return count("CalcByImportant"); }
    bool CalcByAccType() { return count("CalcByAccType"); }
    bool CalcByRelation() { return count("CalcByRelation"); }
    bool CalcByTag() { return count("CalcByTag"); }
    bool CalcByIndustry() { return count("CalcByIndustry"); }
    bool CalcByProvince() { return count("CalcByProvince"); }

    // Panel operations over oForm / oAdodc.
    bool ShowAccount(int accountId, bool load);
    bool SetQuery(int otherId);
    bool AddAccount();
    bool ChangeAccount(int accountId);
    // With `load`: loads the account (and on an opportunity panel its role).
    bool InitAccount(int accountId, bool load);

    // Columns, properties and the panel's controls (txt_acc_name, ...).
    static const RecordDescription<Account>& description();
    static const RecordLinks& links();
    // The grouped and tag counts of the CalcBy... operations.
    static const std::vector<CategoryCount>& counts();

private:
    friend class RecordRow<Account>;
    bool linkToPanelRecord();

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
