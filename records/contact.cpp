#include "records/contact.h"

#include "store/jetdate.h"

namespace tarvel {

namespace {
QString num(int id) {
    return QString::number(id);
}
}  // namespace

using recordvalue::leftChars;

const RecordDescription<Contact>& Contact::description() {
    using C = Contact;
    static const RecordDescription<Contact> d{
        "contacts",
        "con_id",
        "que_contacts_accounts",
        "0",
        "g_ConID",
        "txt_con_name",
        "bCantChgFlag_ConName",
        {{"con_id", "ID", &C::id_},
         {"con_firstname", "FirstName", &C::firstName_, nullptr, 0, {1, 1, 0, 0}},
         {"con_lastname", "LastName", &C::lastName_, "txt_con_name", 50, {2, 2, 1, 1}},
         {"con_nickname", "NickName", &C::nickName_, "txt_con_nickname", 50, {3, 3, 2, 2}},
         {"con_title", "Title", &C::title_, nullptr, 0, {4, 4, 0, 0}},
         {"con_description", "Description", &C::description_, "rtxt_con_memo", 0, {5, 5, 3, 3}},
         {"con_department_title",
          "DepartmentTitle",
          &C::departmentTitle_,
          "txt_con_title",
          50,
          {6, 6, 4, 4}},
         {"con_telephone", "Telephone", &C::telephone_, "txt_con_tel", 50, {7, 7, 5, 5}},
         {"con_telephone2", "Telephone2", &C::telephone2_, nullptr, 0, {8, 8, 0, 0}},
         {"con_telephone3", "Telephone3", &C::telephone3_, nullptr, 0, {9, 9, 0, 0}},
         {"con_mobile", "Mobile", &C::mobile_, "txt_con_mobile", 50, {10, 10, 6, 6}},
         {"con_mobile2", "Mobile2", &C::mobile2_, nullptr, 0, {11, 11, 0, 0}},
         {"con_mobile3", "Mobile3", &C::mobile3_, nullptr, 0, {12, 12, 0, 0}},
         {"con_fax", "Fax", &C::fax_, "txt_con_fax", 50, {13, 13, 7, 7}},
         {"con_fax2", "Fax2", &C::fax2_, nullptr, 0, {14, 14, 0, 0}},
         {"con_fax3", "Fax3", &C::fax3_, nullptr, 0, {15, 15, 0, 0}},
         {"con_email", "EMail", &C::email_, "txt_con_email", 50, {16, 16, 8, 8}},
         {"con_email2", "EMail2", &C::email2_, nullptr, 0, {17, 17, 0, 0}},
         {"con_email3", "EMail3", &C::email3_, nullptr, 0, {18, 18, 0, 0}},
         {"con_address_family", "FamilyAddress", &C::familyAddress_, nullptr, 0, {19, 19, 0, 0}},
         {"con_postcode_family", "FamilyPostcode", &C::familyPostcode_, nullptr, 0, {20, 20, 0, 0}},
         {"con_im", "IM", &C::im_, nullptr, 0, {21, 21, 0, 0}},
         {"con_im2", "IM2", &C::im2_, nullptr, 0, {22, 22, 0, 0}},
         {"con_im3", "IM3", &C::im3_, nullptr, 0, {23, 23, 0, 0}},
         {"con_website", "Website", &C::website_, nullptr, 0, {24, 24, 0, 0}},
         {"con_province", "Province", &C::province_, nullptr, 0, {25, 25, 0, 0}},
         {"con_important", "Important", &C::important_, nullptr, 0, {26, 26, 0, 0}},
         {"con_relation", "Relation", &C::relation_, nullptr, 0, {27, 27, 0, 0}},
         {"con_create_date", "CreateDate", &C::createDate_, nullptr, 0, {28, 0, 9, 0}},
         {"con_recent_contact_date", "RCDate", &C::rcDate_, nullptr, 0, {29, 28, 10, 9}},
         {"con_birthday", "Birthday", &C::birthday_, nullptr, 0, {30, 29, 11, 0}},
         {"con_private", "iPrivate", &C::private_, nullptr, 0, {31, 30, 12, 10}},
         {"con_tag", "Tag", &C::tag_, nullptr, 0, {32, 31, 0, 0}},
         {nullptr, "PartInOpp", &C::partInOpp_, "txt_con_part", 50}}};
    return d;
}

const RecordLinks& Contact::links() {
    static const RecordLinks l{
        kind::Contact,
        {{kind::Opportunity, "SELECT * FROM opportunities_contacts WHERE con_id=%1 AND opp_id=%2",
          "INSERT INTO opportunities_contacts(con_id,opp_id,con_part_in_opp) VALUES(%1,%2,'%3')",
          "UPDATE opportunities_contacts SET con_part_in_opp = '%3' WHERE con_id=%1 AND opp_id=%2",
          "DELETE * FROM opportunities_contacts WHERE con_id=%1 AND opp_id=%2"},
         // One account per contact: joining another one leaves the old one,
         // and removing takes every account link of the contact.
         {kind::Account, "SELECT * FROM   accounts_contacts  WHERE  con_id = %1",
          "INSERT INTO accounts_contacts(con_id,acc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM accounts_contacts WHERE con_id=%1", "SELECT * FROM   accounts_contacts ",
          "SELECT * FROM   accounts_contacts  WHERE  con_id = %1", true},
         // The pair is unordered, so either column may hold this contact.
         {kind::Contact,
          "SELECT * FROM contacts_contacts WHERE (con_id1=%1 AND con_id2=%2) OR (con_id2=%1 AND "
          "con_id1=%2)",
          "INSERT INTO contacts_contacts(con_id1,con_id2,con_relation) VALUES(%1,%2,'%3')",
          "UPDATE contacts_contacts SET con_relation = '%3' WHERE (con_id1=%1 AND con_id2=%2) OR "
          "(con_id2=%1 AND con_id1=%2)",
          "DELETE * FROM contacts_contacts WHERE (con_id1=%1 AND con_id2=%2) OR (con_id2=%1 AND "
          "con_id1=%2)"},
         {kind::Task, "SELECT * FROM contacts_tasks WHERE con_id=%1 AND tas_id=%2",
          "INSERT INTO contacts_tasks (con_id,tas_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM contacts_tasks WHERE con_id=%1 AND tas_id=%2"},
         {kind::Document, "SELECT * FROM contacts_documents WHERE con_id=%1 AND doc_id=%2",
          "INSERT INTO contacts_documents (con_id,doc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM contacts_documents WHERE con_id=%1 AND doc_id=%2"}},
        {"DELETE * FROM accounts_contacts WHERE con_id=%1",
         "DELETE * FROM opportunities_contacts WHERE con_id=%1",
         "DELETE * FROM contacts_contacts WHERE con_id1=%1 OR  con_id2=%1",
         "DELETE * FROM contacts_tasks WHERE con_id=%1",
         "DELETE * FROM contacts_documents WHERE con_id=%1"},
        true,
        true};
    return l;
}

const std::vector<CategoryCount>& Contact::counts() {
    static const std::vector<CategoryCount> c{
        {"CalcByImportant", "contacts.con_important", "contacts GROUP BY contacts.con_important "},
        {"CalcByAccType", "accounts.acc_type", "que_contacts_accounts GROUP BY accounts.acc_type"},
        {"CalcByRelation", "contacts.con_relation", "contacts GROUP BY contacts.con_relation "},
        {"CalcByIndustry", "accounts.acc_industry",
         "que_contacts_accounts GROUP BY accounts.acc_industry"},
        {"CalcByProvince", "contacts.con_province", "contacts GROUP BY contacts.con_province "},
        {"CalcByTag", nullptr, nullptr},
        {"CalcByAccount", "accounts.acc_name", "que_contacts_accounts GROUP BY accounts.acc_id "}};
    return c;
}

void Contact::LoadRow(const Recordset& rs) {
    description().load(*this, rs);
    // Of the account, the fields the stored query carries.
    static const QStringList names = {QStringLiteral("acc_id"), QStringLiteral("acc_name"),
                                      QStringLiteral("acc_website"), QStringLiteral("acc_address"),
                                      QStringLiteral("acc_postcode")};
    static const ColumnSlots accountSlots(names);
    static const auto columns = [] {
        std::vector<const RecordColumn<tarvel::Account>*> out;
        for (const QString& name : names)
            out.push_back(tarvel::Account::description().byColumn(name));
        return out;
    }();
    const QVector<QVariant> values = accountSlots.read(rs);
    for (size_t i = 0; i < columns.size(); ++i) columns[i]->set(account_, values[int(i)]);
}

bool Contact::GetByIdEx(int otherId, qint16 relationKind) {
    if (id_ == 0) return true;
    if (!GetById()) return report("GetByIdEx", false);
    const QString me = num(id_), other = num(otherId);
    if (relationKind == kind::Opportunity)
        return report(
            "GetByIdEx",
            readText(QStringLiteral("SELECT * FROM opportunities_contacts WHERE con_id=") + me +
                         QStringLiteral(" AND opp_id=") + other,
                     QStringLiteral("con_part_in_opp"), partInOpp_));
    if (relationKind != kind::Contact) return true;
    // Either column may hold this contact. The missing blank before AND is how
    // the statement has always read.
    return report("GetByIdEx", readText(QStringLiteral("SELECT * FROM  contacts_contacts  WHERE "
                                                       "(contacts_contacts.con_id1=%1AND "
                                                       "contacts_contacts.con_id2= %2) OR "
                                                       "(contacts_contacts.con_id1=%2AND "
                                                       "contacts_contacts.con_id2= %1)")
                                            .arg(me, other),
                                        QStringLiteral("con_relation"), partInOpp_));
}

QVariant Contact::GetMaxId() {
    const RecordsetPtr rs = read(QStringLiteral("SELECT MAX(con_id) FROM contacts"));
    report("GetMaxId", rs != nullptr);
    return rs ? rs->value(0) : QVariant();
}

bool Contact::CalcByOpportunity() {
    return report("CalcByOpportunity",
                  participationCounts(QStringLiteral("con"), QStringLiteral("contacts")));
}

bool Contact::InitContact(int contactId, bool load) {
    if (!load) return true;
    id_ = contactId;
    const qint16 panelKind = panel::kindOf(panelName());
    const int record = panelRecordId();
    // Where the panel shows the contact's role or relation, load it with the row.
    const bool withRole = panelKind == kind::Opportunity || panelKind == kind::Contact;
    if (!(withRole && record != 0 ? GetByIdEx(record, panelKind) : GetById()))
        return report("InitContact", false);
    if (panelKind != kind::Account) return true;
    // The account panel's own account, with all its fields.
    if (record != 0) account_.setID(record);
    return report("InitContact", account_.GetById() || failFrom(account_));
}

bool Contact::ShowContact(int contactId, bool load) {
    if (!InitContact(contactId, load) || !needForm()) return report("ShowContact", false);
    showControls(*this, description());
    setNameBox("txt_con_account", "bCantChgFlag_AccName", account_.AccName());
    setFormValue("txt_con_accaddr", account_.Address());
    setFormProperty("g_ConID", contactId);
    setFormProperty("OldAccountID", account_.ID());
    return report("ShowContact",
                  showTaskDigest("rtxt_con_sch",
                                 " FROM tasks WHERE tas_id IN (SELECT tas_id FROM contacts_tasks "
                                 "WHERE con_id=",
                                 id_));
}

bool Contact::SetQuery(int otherId) {
    static const QStringList columns =
        QStringLiteral(
            "con_id,con_lastname,con_nickname,acc_name,con_department_title,acc_address,"
            "con_telephone,con_mobile,con_email,con_fax,con_description,con_create_date,"
            "con_recent_contact_date,con_birthday,con_private")
            .split(QLatin1Char(','));
    const char* captions =
        "联系人名称,昵称,单位名称,部门职务,单位地址,电话,手机,电子邮件,传真,简介,创建日期,"
        "最近联系日期,生日,私有";
    const QString other = num(otherId);
    if (panel::kindOf(panelName()) == kind::Contact) {
        // Related in either direction, never the contact itself. Two IN
        // lists rather than a join on either column: each is one index
        // look-up, and a pair stored both ways is listed once.
        return report(
            "SetQuery",
            showInGrid(QStringLiteral("SELECT ") + columns.join(QLatin1Char(',')) +
                           QStringLiteral(" FROM que_contacts_accounts WHERE con_id <>") + other +
                           QStringLiteral(" AND  ( con_id IN (SELECT con_id1 FROM "
                                          "contacts_contacts WHERE con_id2= ") +
                           other +
                           QStringLiteral(") OR    con_id IN (SELECT con_id2 FROM "
                                          "contacts_contacts WHERE con_id1 = ") +
                           other + QStringLiteral("))"),
                       "dgrid_con", captions));
    }
    return report("SetQuery",
                  showRelated(QStringLiteral("SELECT ") + columns.join(QLatin1Char(',')) +
                                  QStringLiteral("  FROM"),
                              {{kind::Opportunity,
                                "  que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                                "opportunities_contacts WHERE opp_id="},
                               {kind::Account,
                                " que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                                "accounts_contacts WHERE acc_id="},
                               {kind::Task,
                                " que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                                "contacts_tasks WHERE tas_id="},
                               {kind::Document,
                                " que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                                "contacts_documents WHERE doc_id="}},
                              otherId, "dgrid_con", captions));
}

bool Contact::readQuickEdit() {
    if (!readControls(*this, description())) return false;
    account_.setAccName(leftChars(formText("txt_con_account"), 50));
    account_.setAddress(leftChars(formText("txt_con_accaddr"), 255));
    return true;
}

bool Contact::AddContact() {
    if (!readQuickEdit()) return report("AddContact", false);
    createDate_ = recordvalue::today();
    birthday_ = jetdate::naive(QDate(1900, 1, 1));
    rcDate_ = recordvalue::now();
    return true;
}

bool Contact::ChangeContact(int contactId) {
    id_ = contactId;
    if (!readQuickEdit()) return report("ChangeContact", false);
    rcDate_ = recordvalue::now();
    return true;
}

// Stores a typed account that has no key yet and ties the contact to it.
bool Contact::storeAndLinkAccount() {
    if (account_.ID() == 0) {
        account_.setCreateDate(recordvalue::today());
        account_.setRCDate(recordvalue::now());
        if (!account_.Add()) return failFrom(account_);
    }
    return AddRelative(kind::Account, account_.ID());
}

// Links the contact to the panel's record and, on the panels of records that
// accounts link to, the contact's account to the same record.
bool Contact::linkToPanelRecord() {
    const qint16 linkKind = panel::kindOf(panelName());
    // The account panel's link is the contact's account itself.
    if (linkKind == 0 || linkKind == kind::Account) return true;
    const int record = panelRecordId();
    if (!AddRelative(linkKind, record, partInOpp_)) return false;
    if (linkKind == kind::Contact || account_.ID() == 0) return true;
    // Linking the account must not wipe the role it may already have in the deal.
    QString role;
    if (linkKind == kind::Opportunity &&
        !readText(
            QStringLiteral("SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=") +
                num(account_.ID()) + QStringLiteral(" AND opp_id=") + num(record),
            QStringLiteral("acc_part_in_opp"), role))
        return false;
    return account_.AddRelative(linkKind, record, role) || failFrom(account_);
}

bool Contact::AddToList() {
    if (!addListRow(*this, description())) return report("AddToList", false);
    // On an account's panel the new contact joins that account rather than
    // a new one of the same name; its link is the account link itself.
    const bool accountPanel = panel::kindOf(panelName()) == kind::Account;
    if (accountPanel && account_.ID() == 0) account_.setID(panelRecordId());
    const bool withAccount = accountPanel || !account_.AccName().isEmpty();
    return report("AddToList", (!withAccount || storeAndLinkAccount()) && linkToPanelRecord());
}

// The account typed on the panel: another one moves the contact; the same one
// is renamed in place when asked, keeping every field the panel does not show.
bool Contact::updateAccount(bool rename) {
    if (!needForm()) return false;
    const int shown = recordvalue::int32(formProperty("OldAccountID"));
    // A contact without an account that was given a name gets a new one.
    if (account_.ID() != shown || account_.ID() == 0) {
        if ((shown != 0 && !DeleteRelative(kind::Account, shown)) || !storeAndLinkAccount())
            return false;
        setFormProperty("OldAccountID", account_.ID());
        return true;
    }
    if (!rename || account_.ID() == 0) return true;
    tarvel::Account stored;
    stored.setID(account_.ID());
    if (!stored.GetById()) return failFrom(stored);
    stored.setAccName(account_.AccName());
    stored.setAddress(account_.Address());
    stored.setRCDate(recordvalue::now());
    return stored.Update() || failFrom(stored);
}

bool Contact::UpdateIndex(int contactId, bool renameAccount) {
    return report("UpdateIndex",
                  updateListRow(*this, description(), contactId) &&
                      (account_.AccName().isEmpty() || updateAccount(renameAccount)) &&
                      linkToPanelRecord() &&
                      showAgain([&](int id) { return SetQuery(id); }, "con_id", contactId));
}

}  // namespace tarvel
