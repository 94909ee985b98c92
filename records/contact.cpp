#include "records/contact.h"

#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
QString num(int id) {
    return QString::number(id);
}
QString quoted(const QString& text) {
    return tarveldatabase::SafeSql(text);
}

// The text columns in the order Add writes them; the dates, the privacy flag
// and the tag follow them.
constexpr const char* kTextColumns[27] = {"con_firstname",
                                          "con_lastname",
                                          "con_nickname",
                                          "con_title",
                                          "con_description",
                                          "con_department_title",
                                          "con_telephone",
                                          "con_telephone2",
                                          "con_telephone3",
                                          "con_mobile",
                                          "con_mobile2",
                                          "con_mobile3",
                                          "con_fax",
                                          "con_fax2",
                                          "con_fax3",
                                          "con_email",
                                          "con_email2",
                                          "con_email3",
                                          "con_address_family",
                                          "con_postcode_family",
                                          "con_im",
                                          "con_im2",
                                          "con_im3",
                                          "con_website",
                                          "con_province",
                                          "con_important",
                                          "con_relation"};
}  // namespace

using recordvalue::leftChars;

std::array<std::pair<const char*, QString*>, 27> Contact::textColumns() {
    QString* const members[27] = {
        &firstName_,       &lastName_,     &nickName_,     &title_,         &description_,
        &departmentTitle_, &telephone_[0], &telephone_[1], &telephone_[2],  &mobile_[0],
        &mobile_[1],       &mobile_[2],    &fax_[0],       &fax_[1],        &fax_[2],
        &email_[0],        &email_[1],     &email_[2],     &familyAddress_, &familyPostcode_,
        &im_[0],           &im_[1],        &im_[2],        &website_,       &province_,
        &important_,       &relation_};
    std::array<std::pair<const char*, QString*>, 27> columns;
    for (int i = 0; i < 27; ++i) columns[i] = {kTextColumns[i], members[i]};
    return columns;
}

bool Contact::Add() {
    return guarded("Add", [&] {
        RecordsetPtr rs = openWritable(QStringLiteral("SELECT * FROM contacts WHERE con_id=0"));
        check(*rs, rs->AddNew());
        for (const auto& [column, value] : textColumns()) setField(*rs, column, *value);
        setField(*rs, "con_create_date", recordvalue::field(createDate_));
        setField(*rs, "con_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "con_birthday", recordvalue::field(birthday_));
        setField(*rs, "con_private", private_);
        setField(*rs, "con_tag", tag_);
        storeNewRow(*rs);
        id_ = recordvalue::int32(columnValue(*rs, "con_id"));
    });
}

bool Contact::Update() {
    return guarded("Update", [&] {
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM contacts WHERE con_id=") + num(id_));
        for (const auto& [column, value] : textColumns()) setField(*rs, column, *value);
        setField(*rs, "con_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "con_birthday", recordvalue::field(birthday_));
        setField(*rs, "con_private", private_);
        setField(*rs, "con_tag", tag_);
        check(*rs, rs->Update());
    });
}

bool Contact::Delete() {
    return guarded("Delete", [&] {
        execute(QStringLiteral("DELETE * FROM contacts WHERE con_id=") + num(id_));
    });
}

bool Contact::DeleteRelation() {
    return guarded("DeleteRelation", [&] {
        const QString me = num(id_);
        execute(QStringLiteral("DELETE * FROM accounts_contacts WHERE con_id=") + me);
        execute(QStringLiteral("DELETE * FROM opportunities_contacts WHERE con_id=") + me);
        execute(QStringLiteral("DELETE * FROM contacts_contacts WHERE con_id1=") + me +
                QStringLiteral(" OR  con_id2=") + me);
        execute(QStringLiteral("DELETE * FROM contacts_tasks WHERE con_id=") + me);
        execute(QStringLiteral("DELETE * FROM contacts_documents WHERE con_id=") + me);
    });
}

bool Contact::GetById() {
    return guarded("GetById", [&] {
        RecordsetPtr rs =
            read(QStringLiteral("SELECT * FROM que_contacts_accounts WHERE con_id=") + num(id_));
        if (!rs->Eof()) LoadRow(*rs);
    });
}

void Contact::LoadRow(const Recordset& rs) {
    // The text columns first, in textColumns() order, then the rest.
    enum {
        kCreate = 27,
        kRecent,
        kBirthday,
        kPrivate,
        kTag,
        kId,
        kAccId,
        kAccName,
        kAccWebsite,
        kAccAddress,
        kAccPostcode
    };
    static const ColumnSlots columns = [] {
        QStringList names;
        for (const char* column : kTextColumns) names << QLatin1String(column);
        names << QStringLiteral("con_create_date") << QStringLiteral("con_recent_contact_date")
              << QStringLiteral("con_birthday") << QStringLiteral("con_private")
              << QStringLiteral("con_tag") << QStringLiteral("con_id") << QStringLiteral("acc_id")
              << QStringLiteral("acc_name") << QStringLiteral("acc_website")
              << QStringLiteral("acc_address") << QStringLiteral("acc_postcode");
        return ColumnSlots(names);
    }();
    using recordvalue::text;
    const QVector<QVariant> v = columns.read(rs);
    int i = 0;
    for (const auto& column : textColumns()) *column.second = text(v[i++]);
    id_ = recordvalue::int32(v[kId]);
    createDate_ = recordvalue::dateTime(v[kCreate]);
    rcDate_ = recordvalue::dateTime(v[kRecent]);
    birthday_ = recordvalue::dateTime(v[kBirthday]);
    private_ = recordvalue::int16(v[kPrivate]);
    tag_ = text(v[kTag]);
    account_.setID(recordvalue::int32(v[kAccId]));
    account_.setAccName(text(v[kAccName]));
    account_.setWebsite(text(v[kAccWebsite]));
    account_.setAddress(text(v[kAccAddress]));
    account_.setPostcode(text(v[kAccPostcode]));
}

bool Contact::GetByIdEx(int otherId, qint16 relationKind) {
    return guarded("GetByIdEx", [&] {
        if (id_ == 0) return;
        if (!GetById()) failLogged();
        const QString me = num(id_), other = num(otherId);
        if (relationKind == kind::Opportunity) {
            RecordsetPtr rs =
                read(QStringLiteral("SELECT * FROM opportunities_contacts WHERE con_id=") + me +
                     QStringLiteral(" AND opp_id=") + other);
            partInOpp_.clear();
            if (!rs->Eof())
                partInOpp_ = recordvalue::text(rs->value(QStringLiteral("con_part_in_opp")));
        } else if (relationKind == kind::Contact) {
            // The pair is unordered, so either column may hold this contact. The
            // missing blank before AND is how the statement has always read.
            RecordsetPtr rs =
                read(QStringLiteral(
                         "SELECT * FROM  contacts_contacts  WHERE (contacts_contacts.con_id1=") +
                     me + QStringLiteral("AND contacts_contacts.con_id2= ") + other +
                     QStringLiteral(") OR (contacts_contacts.con_id1=") + other +
                     QStringLiteral("AND contacts_contacts.con_id2= ") + me + QLatin1Char(')'));
            partInOpp_.clear();
            if (!rs->Eof())
                partInOpp_ = recordvalue::text(rs->value(QStringLiteral("con_relation")));
        }
    });
}

QVariant Contact::GetMaxId() {
    QVariant result;
    guarded("GetMaxId",
            [&] { result = read(QStringLiteral("SELECT MAX(con_id) FROM contacts"))->value(0); });
    return result;
}

bool Contact::AddRelative(qint16 relationKind, int otherId, const QString& text) {
    return guarded("AddRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        execute(stampStatement(kind::Contact, id_));
        QString sql;
        switch (relationKind) {
            case kind::Opportunity:
                if (hasRows(QStringLiteral("SELECT * FROM opportunities_contacts WHERE con_id=") +
                            me + QStringLiteral(" AND opp_id=") + other))
                    sql = QStringLiteral("UPDATE opportunities_contacts SET con_part_in_opp = '") +
                          quoted(text) + QStringLiteral("' WHERE con_id=") + me +
                          QStringLiteral(" AND opp_id=") + other;
                else
                    sql = QStringLiteral(
                              "INSERT INTO opportunities_contacts(con_id,opp_id,"
                              "con_part_in_opp) VALUES(") +
                          me + QLatin1Char(',') + other + QStringLiteral(",'") + quoted(text) +
                          QStringLiteral("')");
                execute(stampStatement(kind::Opportunity, otherId));
                break;
            case kind::Account:
                // One account per contact: joining another one leaves the old one.
                if (hasRows(QStringLiteral("SELECT * FROM   accounts_contacts  WHERE  con_id = ") +
                            me))
                    execute(QStringLiteral("DELETE * FROM accounts_contacts WHERE con_id=") + me);
                execute(stampStatement(kind::Account, otherId));
                sql = QStringLiteral("INSERT INTO accounts_contacts(con_id,acc_id) VALUES(") + me +
                      QLatin1Char(',') + other + QLatin1Char(')');
                break;
            case kind::Contact: {
                const QString pair = QStringLiteral("(con_id1=") + me +
                                     QStringLiteral(" AND con_id2=") + other +
                                     QStringLiteral(") OR (con_id2=") + me +
                                     QStringLiteral(" AND con_id1=") + other + QLatin1Char(')');
                if (hasRows(QStringLiteral("SELECT * FROM contacts_contacts WHERE ") + pair))
                    sql = QStringLiteral("UPDATE contacts_contacts SET con_relation = '") +
                          quoted(text) + QStringLiteral("' WHERE ") + pair;
                else
                    sql = QStringLiteral(
                              "INSERT INTO contacts_contacts(con_id1,con_id2,"
                              "con_relation) VALUES(") +
                          me + QLatin1Char(',') + other + QStringLiteral(",'") + quoted(text) +
                          QStringLiteral("')");
                execute(stampStatement(kind::Contact, otherId));
                break;
            }
            case kind::Task:
                if (!hasRows(QStringLiteral("SELECT * FROM contacts_tasks WHERE con_id=") + me +
                             QStringLiteral(" AND tas_id=") + other))
                    sql = QStringLiteral("INSERT INTO contacts_tasks (con_id,tas_id) VALUES(") +
                          me + QLatin1Char(',') + other + QLatin1Char(')');
                execute(stampStatement(kind::Task, otherId));
                break;
            case kind::Document:
                if (!hasRows(QStringLiteral("SELECT * FROM contacts_documents WHERE con_id=") + me +
                             QStringLiteral(" AND doc_id=") + other))
                    sql = QStringLiteral("INSERT INTO contacts_documents (con_id,doc_id) VALUES(") +
                          me + QLatin1Char(',') + other + QLatin1Char(')');
                execute(stampStatement(kind::Document, otherId));
                break;
            default:
                break;
        }
        executeLink(sql);
        if (relationKind == kind::Account)
            read(QStringLiteral("SELECT * FROM   accounts_contacts "));
    });
}

void Contact::logAndExecute(const QString& sql) {
    appendText(sql);
    execute(sql);
}

bool Contact::DeleteRelative(qint16 relationKind, int otherId) {
    return guarded("DeleteRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        logAndExecute(stampStatement(kind::Contact, id_));
        QString sql;
        switch (relationKind) {
            case kind::Opportunity:
                sql = QStringLiteral("DELETE * FROM opportunities_contacts WHERE con_id=") + me +
                      QStringLiteral(" AND opp_id=") + other;
                break;
            case kind::Account:
                // Every account link of the contact, whatever the other id.
                sql = QStringLiteral("DELETE * FROM accounts_contacts WHERE con_id=") + me;
                break;
            case kind::Contact:
                sql = QStringLiteral("DELETE * FROM contacts_contacts WHERE (con_id1=") + me +
                      QStringLiteral(" AND con_id2=") + other + QStringLiteral(") OR (con_id2=") +
                      me + QStringLiteral(" AND con_id1=") + other + QLatin1Char(')');
                break;
            case kind::Task:
                sql = QStringLiteral("DELETE * FROM contacts_tasks WHERE con_id=") + me +
                      QStringLiteral(" AND tas_id=") + other;
                break;
            case kind::Document:
                sql = QStringLiteral("DELETE * FROM contacts_documents WHERE con_id=") + me +
                      QStringLiteral(" AND doc_id=") + other;
                break;
            default:
                return;
        }
        logAndExecute(stampStatement(relationKind, otherId));
        appendText(sql);
        executeLink(sql);
        if (relationKind == kind::Account)
            read(QStringLiteral("SELECT * FROM   accounts_contacts  WHERE  con_id = ") + me);
    });
}

bool Contact::CalcByOpportunity() {
    return guarded("CalcByOpportunity", [&] {
        participationCounts(
            QStringLiteral("SELECT COUNT(*) AS con_count FROM contacts WHERE con_id IN (SELECT "
                           "DISTINCT con_id FROM opportunities_contacts)"),
            QStringLiteral("SELECT COUNT(*) AS con_count FROM contacts WHERE con_id NOT IN "
                           "(SELECT DISTINCT con_id FROM opportunities_contacts)"),
            "con_count");
    });
}

bool Contact::CalcByImportant() {
    return guarded("CalcByImportant", [&] {
        groupedCounts(QStringLiteral("SELECT first(contacts.con_important) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From contacts "
                                     "GROUP BY contacts.con_important "),
                      "con_option");
    });
}

bool Contact::CalcByAccType() {
    return guarded("CalcByAccType", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_type) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From "
                                     "que_contacts_accounts GROUP BY accounts.acc_type"),
                      "con_option");
    });
}

bool Contact::CalcByRelation() {
    return guarded("CalcByRelation", [&] {
        groupedCounts(QStringLiteral("SELECT first(contacts.con_relation) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From contacts "
                                     "GROUP BY contacts.con_relation "),
                      "con_option");
    });
}

bool Contact::CalcByIndustry() {
    return guarded("CalcByIndustry", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_industry) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From "
                                     "que_contacts_accounts GROUP BY accounts.acc_industry"),
                      "con_option");
    });
}

bool Contact::CalcByProvince() {
    return guarded("CalcByProvince", [&] {
        groupedCounts(QStringLiteral("SELECT first(contacts.con_province) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From contacts "
                                     "GROUP BY contacts.con_province "),
                      "con_option");
    });
}

bool Contact::CalcByTag() {
    return guarded("CalcByTag", [&] {
        tagCounts("con", QStringLiteral("SELECT count(contacts.con_id) AS option_count FROM "
                                        "contacts WHERE  con_tag LIKE '%"));
    });
}

bool Contact::CalcByAccount() {
    return guarded("CalcByAccount", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_name) AS con_option, "
                                     "count(contacts.con_id) AS option_count  From "
                                     "que_contacts_accounts GROUP BY accounts.acc_id "),
                      "con_option");
    });
}

bool Contact::InitContact(int contactId, bool load) {
    return guarded("InitContact", [&] {
        if (!load) return;
        id_ = contactId;
        const QString name = panelName();
        const int record = oForm() ? panelRecordId() : 0;
        // Where the panel shows the contact's role or relation, load it with the row.
        bool ok;
        if (name == QLatin1String(panel::Opportunity) && record != 0)
            ok = GetByIdEx(record, kind::Opportunity);
        else if (name == QLatin1String(panel::Contact) && record != 0)
            ok = GetByIdEx(record, kind::Contact);
        else
            ok = GetById();
        if (!ok) failLogged();
        if (name == QLatin1String(panel::Account)) {
            // The account panel's own account, with all its fields.
            if (record != 0) account_.setID(record);
            const QString before = account_.ErrMsg();
            if (!account_.GetById()) failFrom(account_, before);
        }
    });
}

bool Contact::ShowContact(int contactId, bool load) {
    return guarded("ShowContact", [&] {
        if (!InitContact(contactId, load)) failLogged();
        setNameBox("txt_con_name", "bCantChgFlag_ConName", lastName_);
        setFormValue("txt_con_nickname", nickName_);
        setNameBox("txt_con_account", "bCantChgFlag_AccName", account_.AccName());
        setFormValue("txt_con_title", departmentTitle_);
        setFormValue("txt_con_accaddr", account_.Address());
        setFormValue("txt_con_tel", telephone_[0]);
        setFormValue("txt_con_mobile", mobile_[0]);
        setFormValue("txt_con_email", email_[0]);
        setFormValue("txt_con_fax", fax_[0]);
        setFormValue("txt_con_part", partInOpp_);
        setFormValue("rtxt_con_memo", description_);
        setFormProperty("g_ConID", contactId);
        setFormProperty("OldAccountID", account_.ID());
        setFormValue(
            "rtxt_con_sch",
            taskDigest(QStringLiteral("SELECT tas_date,tas_time,tas_tag,tas_subject,"
                                      "tas_description FROM tasks WHERE tas_id IN (SELECT "
                                      "tas_id FROM contacts_tasks WHERE con_id=") +
                       num(id_) + QStringLiteral(") ORDER BY tas_date DESC,tas_time DESC")));
    });
}

bool Contact::SetQuery(int otherId) {
    return guarded("SetQuery", [&] {
        static const QStringList columns = {QStringLiteral("con_id"),
                                            QStringLiteral("con_lastname"),
                                            QStringLiteral("con_nickname"),
                                            QStringLiteral("acc_name"),
                                            QStringLiteral("con_department_title"),
                                            QStringLiteral("acc_address"),
                                            QStringLiteral("con_telephone"),
                                            QStringLiteral("con_mobile"),
                                            QStringLiteral("con_email"),
                                            QStringLiteral("con_fax"),
                                            QStringLiteral("con_description"),
                                            QStringLiteral("con_create_date"),
                                            QStringLiteral("con_recent_contact_date"),
                                            QStringLiteral("con_birthday"),
                                            QStringLiteral("con_private")};
        const QString other = num(otherId);
        const QString name = panelName();
        const QString select =
            QStringLiteral("SELECT ") + columns.join(QLatin1Char(',')) + QLatin1Char(' ');
        QString source;
        if (name == QLatin1String(panel::Opportunity)) {
            source = select +
                     QStringLiteral(
                         " FROM  que_contacts_accounts  WHERE con_id IN (SELECT con_id "
                         "FROM opportunities_contacts WHERE opp_id=") +
                     other + QLatin1Char(')');
        } else if (name == QLatin1String(panel::Account)) {
            source = select +
                     QStringLiteral(
                         " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id "
                         "FROM accounts_contacts WHERE acc_id=") +
                     other + QLatin1Char(')');
        } else if (name == QLatin1String(panel::Contact)) {
            // Related in either direction, never the contact itself.
            const QString prefix = QStringLiteral("que_contacts_accounts.");
            source = QStringLiteral("SELECT ") + prefix + columns.join(QLatin1Char(',') + prefix) +
                     QStringLiteral(
                         "  FROM que_contacts_accounts INNER JOIN contacts_contacts  ON "
                         "(que_contacts_accounts.con_id =contacts_contacts.con_id1) OR "
                         "(que_contacts_accounts.con_id=contacts_contacts.con_id2) WHERE "
                         "que_contacts_accounts.con_id <>") +
                     other + QStringLiteral(" AND (contacts_contacts.con_id2=") + other +
                     QStringLiteral(" OR contacts_contacts.con_id1=") + other + QLatin1Char(')');
        } else if (name == QLatin1String(panel::Task)) {
            source = select +
                     QStringLiteral(
                         " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id "
                         "FROM contacts_tasks WHERE tas_id=") +
                     other + QLatin1Char(')');
        } else if (name == QLatin1String(panel::Document)) {
            source = select +
                     QStringLiteral(
                         " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id "
                         "FROM contacts_documents WHERE doc_id=") +
                     other + QLatin1Char(')');
        } else {
            return;
        }
        showInGrid(
            source, "dgrid_con",
            {QStringLiteral("联系人名称"), QStringLiteral("昵称"), QStringLiteral("单位名称"),
             QStringLiteral("部门职务"), QStringLiteral("单位地址"), QStringLiteral("电话"),
             QStringLiteral("手机"), QStringLiteral("电子邮件"), QStringLiteral("传真"),
             QStringLiteral("简介"), QStringLiteral("创建日期"), QStringLiteral("最近联系日期"),
             QStringLiteral("生日"), QStringLiteral("私有")});
    });
}

void Contact::readQuickEdit() {
    lastName_ = leftChars(formText("txt_con_name"), 50);
    nickName_ = leftChars(formText("txt_con_nickname"), 50);
    departmentTitle_ = leftChars(formText("txt_con_title"), 50);
    telephone_[0] = leftChars(formText("txt_con_tel"), 50);
    mobile_[0] = leftChars(formText("txt_con_mobile"), 50);
    email_[0] = leftChars(formText("txt_con_email"), 50);
    fax_[0] = leftChars(formText("txt_con_fax"), 50);
    partInOpp_ = leftChars(formText("txt_con_part"), 50);
    account_.setAccName(leftChars(formText("txt_con_account"), 50));
    account_.setAddress(leftChars(formText("txt_con_accaddr"), 255));
    description_ = formText("rtxt_con_memo");
}

bool Contact::AddContact() {
    return guarded("AddContact", [&] {
        readQuickEdit();
        createDate_ = recordvalue::today();
        birthday_ = jetdate::naive(QDate(1900, 1, 1));
        rcDate_ = recordvalue::now();
    });
}

bool Contact::ChangeContact(int contactId) {
    return guarded("ChangeContact", [&] {
        id_ = contactId;
        readQuickEdit();
        rcDate_ = recordvalue::now();
    });
}

// Stores a typed account that has no key yet and ties the contact to it.
void Contact::storeAndLinkAccount() {
    if (account_.ID() == 0) {
        account_.setCreateDate(recordvalue::today());
        account_.setRCDate(recordvalue::now());
        const QString before = account_.ErrMsg();
        if (!account_.Add()) failFrom(account_, before);
    }
    if (!AddRelative(kind::Account, account_.ID())) failLogged();
}

QString Contact::accountRoleIn(int opportunityId) {
    RecordsetPtr rs =
        read(QStringLiteral("SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=") +
             num(account_.ID()) + QStringLiteral(" AND opp_id=") + num(opportunityId));
    return rs->Eof() ? QString() : recordvalue::text(rs->value(0));
}

// Links the contact to the panel's record and, on the panels of records that
// accounts link to, the contact's account to the same record.
void Contact::linkToPanelRecord() {
    const QString name = panelName();
    const int record = panelRecordId();
    qint16 linkKind = 0;
    bool withAccount = true;
    if (name == QLatin1String(panel::Opportunity)) {
        linkKind = kind::Opportunity;
    } else if (name == QLatin1String(panel::Contact)) {
        linkKind = kind::Contact;
        withAccount = false;
    } else if (name == QLatin1String(panel::Task)) {
        linkKind = kind::Task;
    } else if (name == QLatin1String(panel::Document)) {
        linkKind = kind::Document;
    } else {
        return;  // the account panel's link is the contact's account itself
    }
    if (!AddRelative(linkKind, record, partInOpp_)) failLogged();
    if (!withAccount || account_.ID() == 0) return;
    // Linking the account must not wipe the role it may already have in the deal.
    const QString role = linkKind == kind::Opportunity ? accountRoleIn(record) : QString();
    const QString before = account_.ErrMsg();
    if (!account_.AddRelative(linkKind, record, role)) failFrom(account_, before);
}

bool Contact::AddToList() {
    return guarded("AddToList", [&] {
        setPanelFlags();
        Recordset& rs = gridRows();
        check(rs, rs.AddNew());
        setField(rs, "con_lastname", lastName_);
        setField(rs, "con_nickname", nickName_);
        setField(rs, "con_description", description_);
        setField(rs, "con_department_title", departmentTitle_);
        setField(rs, "con_telephone", telephone_[0]);
        setField(rs, "con_mobile", mobile_[0]);
        setField(rs, "con_fax", fax_[0]);
        setField(rs, "con_email", email_[0]);
        setField(rs, "con_create_date", recordvalue::field(createDate_));
        setField(rs, "con_recent_contact_date", recordvalue::field(rcDate_));
        setField(rs, "con_birthday", recordvalue::field(birthday_));
        setField(rs, "con_private", private_);
        storeNewRow(rs);
        id_ = recordvalue::int32(columnValue(rs, "con_id"));
        setFormProperty("g_ConID", id_);
        // On an account's panel the new contact joins that account rather than
        // a new one of the same name; its link is the account link itself.
        const bool accountPanel = panelName() == QLatin1String(panel::Account);
        if (accountPanel && account_.ID() == 0) account_.setID(panelRecordId());
        if (accountPanel || !account_.AccName().isEmpty()) storeAndLinkAccount();
        linkToPanelRecord();
    });
}

bool Contact::UpdateIndex(int contactId, bool renameAccount) {
    return guarded("UpdateIndex", [&] {
        if (gridRowHolds("con_id", contactId)) {
            Recordset& rs = gridRows();
            setField(rs, "con_lastname", lastName_);
            setField(rs, "con_nickname", nickName_);
            setField(rs, "con_description", description_);
            setField(rs, "con_department_title", departmentTitle_);
            setField(rs, "con_telephone", telephone_[0]);
            setField(rs, "con_mobile", mobile_[0]);
            setField(rs, "con_fax", fax_[0]);
            setField(rs, "con_email", email_[0]);
            setField(rs, "con_recent_contact_date", recordvalue::field(rcDate_));
            setField(rs, "con_private", private_);
            check(rs, rs.Update());
        } else if (!Update()) {
            failLogged();
        }
        if (!account_.AccName().isEmpty()) {
            const int shown = recordvalue::int32(form().property(QStringLiteral("OldAccountID")));
            if (account_.ID() != shown) {
                if (!DeleteRelative(kind::Account, shown)) failLogged();
                storeAndLinkAccount();
                setFormProperty("OldAccountID", account_.ID());
            } else if (renameAccount && account_.ID() != 0) {
                // Rename in place: the account keeps every field the panel does not show.
                tarvel::Account stored;
                stored.setID(account_.ID());
                if (!stored.GetById()) failFrom(stored, QString());
                stored.setAccName(account_.AccName());
                stored.setAddress(account_.Address());
                stored.setRCDate(recordvalue::now());
                if (!stored.Update()) failFrom(stored, QString());
            }
        }
        linkToPanelRecord();
        setPanelFlags();
        if (!SetQuery(panelRecordId())) failLogged();
        Recordset& rs = gridRows();
        findKey(rs, "con_id", contactId);
    });
}

}  // namespace tarvel
