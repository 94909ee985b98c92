#include "records/account.h"

namespace tarvel {

const RecordDescription<Account>& Account::description() {
    // Add, Update, AddToList and UpdateIndex each write in their own order;
    // the controls come in the order the panel is filled.
    static const RecordDescription<Account> d{
        "accounts",
        "acc_id",
        "accounts",
        "0",
        "g_AccID",
        "txt_acc_name",
        "bCantChgFlag_AccName",
        {{"acc_id", "ID", &Account::id_},
         {"acc_name", "AccName", &Account::accName_, "txt_acc_name", 50, {1, 1, 1, 1}},
         {"acc_telephone", "Telephone", &Account::telephone_, "txt_acc_tel", 50, {12, 11, 2, 2}},
         {"acc_fax", "Fax", &Account::fax_, "txt_acc_fax", 50, {13, 12, 3, 3}},
         {"acc_website", "Website", &Account::website_, "txt_acc_web", 50, {14, 13, 4, 4}},
         {"acc_address", "Address", &Account::address_, "txt_acc_address", 255, {9, 3, 5, 5}},
         {"acc_industry", "Industry", &Account::industry_, "cbo_acc_industry", 50, {7, 7, 6, 6}},
         {"acc_province", "Province", &Account::province_, "cbo_acc_region", 50, {11, 10, 7, 7}},
         {"acc_type", "AccType", &Account::accType_, "cbo_acc_type", 50, {6, 6, 8, 8}},
         {nullptr, "PartInOpp", &Account::partInOpp_, "txt_acc_part", 50},
         {"acc_description",
          "Description",
          &Account::description_,
          "rtxt_acc_memo",
          0,
          {2, 4, 12, 10}},
         {"acc_create_date", "CreateDate", &Account::createDate_, nullptr, 0, {3, 0, 9, 0}},
         {"acc_recent_contact_date", "RCDate", &Account::rcDate_, nullptr, 0, {4, 2, 10, 9}},
         {"acc_important", "Important", &Account::important_, nullptr, 0, {5, 5, 0, 0}},
         {"acc_relation", "Relation", &Account::relation_, nullptr, 0, {8, 8, 0, 0}},
         {"acc_postcode", "Postcode", &Account::postcode_, nullptr, 0, {10, 9, 0, 0}},
         {"acc_private", "iPrivate", &Account::private_, nullptr, 0, {15, 14, 11, 0}},
         {"acc_tag", "Tag", &Account::tag_, nullptr, 0, {16, 15, 0, 0}}}};
    return d;
}

const RecordLinks& Account::links() {
    // Kinds 2 and 3 are tied from the contact's side only: kind 3 can just be removed.
    static const RecordLinks l{
        kind::Account,
        {{kind::Opportunity,
          "SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=%1 AND opp_id=%2",
          "INSERT INTO opportunities_accounts(acc_id,opp_id,acc_part_in_opp) VALUES(%1,%2, '%3')",
          "UPDATE opportunities_accounts SET acc_part_in_opp = '%3' WHERE acc_id=%1 AND opp_id=%2",
          "DELETE * FROM opportunities_accounts WHERE acc_id=%1 AND opp_id=%2"},
         {kind::Contact, nullptr, nullptr, nullptr,
          "DELETE * FROM accounts_contacts WHERE acc_id=%1 AND con_id=%2"},
         {kind::Task, "SELECT * FROM accounts_tasks WHERE acc_id=%1 and tas_id=%2",
          "INSERT INTO accounts_tasks (acc_id, tas_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM accounts_tasks WHERE acc_id=%1 AND tas_id=%2"},
         {kind::Document, "SELECT * FROM accounts_documents WHERE acc_id=%1 and doc_id=%2",
          "INSERT INTO accounts_documents (acc_id, doc_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM accounts_documents WHERE acc_id=%1 AND doc_id=%2"}},
        {"DELETE * FROM accounts_contacts WHERE acc_id=%1",
         "DELETE * FROM opportunities_accounts WHERE acc_id=%1",
         "DELETE * FROM accounts_tasks WHERE acc_id=%1",
         "DELETE * FROM accounts_documents WHERE acc_id=%1"},
        true};
    return l;
}

const std::vector<CategoryCount>& Account::counts() {
    static const std::vector<CategoryCount> c{
        {"CalcByImportant", "accounts.acc_important", "accounts GROUP BY accounts.acc_important "},
        {"CalcByAccType", "accounts.acc_type", "accounts GROUP BY accounts.acc_type "},
        {"CalcByRelation", "accounts.acc_relation", "accounts GROUP BY accounts.acc_relation "},
        {"CalcByTag", nullptr, nullptr},
        {"CalcByIndustry", "accounts.acc_industry", "accounts GROUP BY accounts.acc_industry "},
        {"CalcByProvince", "accounts.acc_province", "accounts  GROUP BY accounts.acc_province "}};
    return c;
}

bool Account::Add() {
    // The account reads its new row once more; the read changes nothing.
    return report("Add", addRow(*this, description()) &&
                             read(description().select("accounts", QString::number(id_))));
}

bool Account::GetByIdEx(int otherId, qint16 relationKind) {
    if (id_ == 0) return true;
    if (!GetById()) return report("GetByIdEx", false);
    if (relationKind != kind::Opportunity) return true;
    return report("GetByIdEx",
                  readText(QStringLiteral("SELECT * FROM opportunities_accounts WHERE acc_id=") +
                               QString::number(id_) + QStringLiteral(" AND opp_id=") +
                               QString::number(otherId),
                           QStringLiteral("acc_part_in_opp"), partInOpp_));
}

bool Account::CalcByOpportunity() {
    return report("CalcByOpportunity",
                  participationCounts(QStringLiteral("acc"), QStringLiteral("accounts")));
}

bool Account::InitAccount(int accountId, bool load) {
    if (!load) return true;
    if (!needForm()) return report("InitAccount", false);
    id_ = accountId;
    // On an opportunity's panel the account's role in that deal is shown too.
    const int record = panelRecordId();
    const bool ok = panelName() == QLatin1String(panel::formName(kind::Opportunity)) && record != 0
                        ? GetByIdEx(record, kind::Opportunity)
                        : GetById();
    return report("InitAccount", ok);
}

bool Account::ShowAccount(int accountId, bool load) {
    if (!InitAccount(accountId, load) || !needForm()) return report("ShowAccount", false);
    showControls(*this, description());
    setFormProperty("g_AccID", accountId);
    return report("ShowAccount",
                  showTaskDigest("rtxt_acc_sch",
                                 "  FROM  tasks  WHERE tas_id IN (SELECT tas_id FROM "
                                 "accounts_tasks WHERE acc_id=",
                                 id_));
}

bool Account::SetQuery(int otherId) {
    // A contact's account shows in the contact's own fields.
    return report(
        "SetQuery",
        showRelated(
            QStringLiteral("SELECT acc_id,acc_name,acc_telephone,acc_fax,acc_website,"
                           "acc_type,acc_industry,acc_province,acc_address,acc_description,"
                           "acc_create_date,acc_recent_contact_date,acc_private  FROM "
                           "accounts  WHERE acc_id IN (SELECT acc_id FROM "),
            {{kind::Opportunity, "opportunities_accounts WHERE opp_id="},
             {kind::Task, "accounts_tasks WHERE tas_id="},
             {kind::Document, "accounts_documents WHERE doc_id="}},
            otherId, "dgrid_acc",
            "客户/单位名称,电话,传真,网址,类型,行业,地区,地址,简介,创建日期,最近联系日期,私有"));
}

bool Account::AddAccount() {
    if (!readControls(*this, description())) return report("AddAccount", false);
    createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
    private_ = 0;
    return true;
}

bool Account::ChangeAccount(int accountId) {
    id_ = accountId;
    if (!readControls(*this, description())) return report("ChangeAccount", false);
    rcDate_ = recordvalue::now();
    return true;
}

bool Account::linkToPanelRecord() {
    const qint16 panelKind = panel::kindOf(panelName());
    if (panelKind != kind::Opportunity && panelKind != kind::Task && panelKind != kind::Document)
        return true;
    return AddRelative(panelKind, panelRecordId(),
                       panelKind == kind::Opportunity ? partInOpp_ : QString());
}

}  // namespace tarvel
