#include "records/account.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
QString num(int id) {
    return QString::number(id);
}
QString quoted(const QString& text) {
    return tarveldatabase::SafeSql(text);
}
}  // namespace

using recordvalue::leftChars;

bool Account::Add() {
    return guarded("Add", [&] {
        RecordsetPtr rs = openWritable(QStringLiteral("SELECT * FROM accounts WHERE acc_id=0"));
        check(*rs, rs->AddNew());
        setField(*rs, "acc_name", accName_);
        setField(*rs, "acc_description", description_);
        setField(*rs, "acc_create_date", recordvalue::field(createDate_));
        setField(*rs, "acc_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "acc_important", important_);
        setField(*rs, "acc_type", accType_);
        setField(*rs, "acc_industry", industry_);
        setField(*rs, "acc_relation", relation_);
        setField(*rs, "acc_address", address_);
        setField(*rs, "acc_postcode", postcode_);
        setField(*rs, "acc_province", province_);
        setField(*rs, "acc_telephone", telephone_);
        setField(*rs, "acc_fax", fax_);
        setField(*rs, "acc_website", website_);
        setField(*rs, "acc_private", private_);
        setField(*rs, "acc_tag", tag_);
        storeNewRow(*rs);
        id_ = recordvalue::int32(columnValue(*rs, "acc_id"));
        // The account reads its new row once more; the read changes nothing.
        RecordsetPtr again =
            read(QStringLiteral("SELECT * FROM accounts WHERE acc_id=") + num(id_));
        if (!again->Eof()) again->MoveFirst();
    });
}

bool Account::Update() {
    return guarded("Update", [&] {
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM accounts WHERE acc_id=") + num(id_));
        setField(*rs, "acc_name", accName_);
        setField(*rs, "acc_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "acc_address", address_);
        setField(*rs, "acc_description", description_);
        setField(*rs, "acc_important", important_);
        setField(*rs, "acc_type", accType_);
        setField(*rs, "acc_industry", industry_);
        setField(*rs, "acc_relation", relation_);
        setField(*rs, "acc_postcode", postcode_);
        setField(*rs, "acc_province", province_);
        setField(*rs, "acc_telephone", telephone_);
        setField(*rs, "acc_fax", fax_);
        setField(*rs, "acc_website", website_);
        setField(*rs, "acc_private", private_);
        setField(*rs, "acc_tag", tag_);
        check(*rs, rs->Update());
    });
}

bool Account::Delete() {
    return guarded("Delete", [&] {
        execute(QStringLiteral("DELETE * FROM accounts WHERE acc_id=") + num(id_));
    });
}

bool Account::DeleteRelation() {
    return guarded("DeleteRelation", [&] {
        execute(QStringLiteral("DELETE * FROM accounts_contacts WHERE acc_id=") + num(id_));
        execute(QStringLiteral("DELETE * FROM opportunities_accounts WHERE acc_id=") + num(id_));
        execute(QStringLiteral("DELETE * FROM accounts_tasks WHERE acc_id=") + num(id_));
        execute(QStringLiteral("DELETE * FROM accounts_documents WHERE acc_id=") + num(id_));
    });
}

bool Account::GetById() {
    return guarded("GetById", [&] {
        RecordsetPtr rs = read(QStringLiteral("SELECT * FROM accounts WHERE acc_id=") + num(id_));
        if (!rs->Eof()) LoadRow(*rs);
    });
}

void Account::LoadRow(const Recordset& rs) {
    static const ColumnSlots columns(
        {QStringLiteral("acc_id"), QStringLiteral("acc_name"), QStringLiteral("acc_description"),
         QStringLiteral("acc_create_date"), QStringLiteral("acc_recent_contact_date"),
         QStringLiteral("acc_important"), QStringLiteral("acc_type"),
         QStringLiteral("acc_industry"), QStringLiteral("acc_relation"),
         QStringLiteral("acc_address"), QStringLiteral("acc_postcode"),
         QStringLiteral("acc_province"), QStringLiteral("acc_telephone"), QStringLiteral("acc_fax"),
         QStringLiteral("acc_website"), QStringLiteral("acc_private"), QStringLiteral("acc_tag")});
    using recordvalue::text;
    const QVector<QVariant> v = columns.read(rs);
    id_ = recordvalue::int32(v[0]);
    accName_ = text(v[1]);
    description_ = text(v[2]);
    createDate_ = recordvalue::dateTime(v[3]);
    rcDate_ = recordvalue::dateTime(v[4]);
    important_ = text(v[5]);
    accType_ = text(v[6]);
    industry_ = text(v[7]);
    relation_ = text(v[8]);
    address_ = text(v[9]);
    postcode_ = text(v[10]);
    province_ = text(v[11]);
    telephone_ = text(v[12]);
    fax_ = text(v[13]);
    website_ = text(v[14]);
    private_ = recordvalue::int16(v[15]);
    tag_ = text(v[16]);
}

bool Account::GetByIdEx(int otherId, qint16 relationKind) {
    return guarded("GetByIdEx", [&] {
        if (id_ == 0) return;
        if (!GetById()) failLogged();
        if (relationKind != kind::Opportunity) return;
        RecordsetPtr rs =
            read(QStringLiteral("SELECT * FROM opportunities_accounts WHERE acc_id=") + num(id_) +
                 QStringLiteral(" AND opp_id=") + num(otherId));
        partInOpp_.clear();
        if (!rs->Eof())
            partInOpp_ = recordvalue::text(rs->value(QStringLiteral("acc_part_in_opp")));
    });
}

bool Account::AddRelative(qint16 relationKind, int otherId, const QString& text) {
    return guarded("AddRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        execute(stampStatement(kind::Account, id_));
        QString sql;
        switch (relationKind) {
            case kind::Opportunity:
                if (hasRows(QStringLiteral("SELECT acc_part_in_opp FROM opportunities_accounts "
                                           "WHERE acc_id=") +
                            me + QStringLiteral(" AND opp_id=") + other))
                    sql = QStringLiteral("UPDATE opportunities_accounts SET acc_part_in_opp = '") +
                          quoted(text) + QStringLiteral("' WHERE acc_id=") + me +
                          QStringLiteral(" AND opp_id=") + other;
                else
                    sql = QStringLiteral(
                              "INSERT INTO opportunities_accounts(acc_id,opp_id,"
                              "acc_part_in_opp) VALUES(") +
                          me + QLatin1Char(',') + other + QStringLiteral(", '") + quoted(text) +
                          QStringLiteral("')");
                execute(stampStatement(kind::Opportunity, otherId));
                break;
            case kind::Task:
                if (!hasRows(QStringLiteral("SELECT * FROM accounts_tasks WHERE acc_id=") + me +
                             QStringLiteral(" and tas_id=") + other))
                    sql = QStringLiteral("INSERT INTO accounts_tasks (acc_id, tas_id) VALUES ( ") +
                          me + QLatin1Char(',') + other + QLatin1Char(')');
                execute(stampStatement(kind::Task, otherId));
                break;
            case kind::Document:
                if (!hasRows(QStringLiteral("SELECT * FROM accounts_documents WHERE acc_id=") + me +
                             QStringLiteral(" and doc_id=") + other))
                    sql = QStringLiteral(
                              "INSERT INTO accounts_documents (acc_id, doc_id) VALUES ( ") +
                          me + QLatin1Char(',') + other + QLatin1Char(')');
                execute(stampStatement(kind::Document, otherId));
                break;
            default:
                break;
        }
        executeLink(sql);
    });
}

bool Account::DeleteRelative(qint16 relationKind, int otherId) {
    return guarded("DeleteRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        execute(stampStatement(kind::Account, id_));
        QString sql;
        switch (relationKind) {
            case kind::Opportunity:
                sql = QStringLiteral("DELETE * FROM opportunities_accounts WHERE acc_id=") + me +
                      QStringLiteral(" AND opp_id=") + other;
                break;
            case kind::Contact:
                sql = QStringLiteral("DELETE * FROM accounts_contacts WHERE acc_id=") + me +
                      QStringLiteral(" AND con_id=") + other;
                break;
            case kind::Task:
                sql = QStringLiteral("DELETE * FROM accounts_tasks WHERE acc_id=") + me +
                      QStringLiteral(" AND tas_id=") + other;
                break;
            case kind::Document:
                sql = QStringLiteral("DELETE * FROM accounts_documents WHERE acc_id=") + me +
                      QStringLiteral(" AND doc_id=") + other;
                break;
            default:
                return;
        }
        execute(stampStatement(relationKind, otherId));
        executeLink(sql);
    });
}

bool Account::CalcByOpportunity() {
    return guarded("CalcByOpportunity", [&] {
        participationCounts(
            QStringLiteral("SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id IN (SELECT "
                           "DISTINCT acc_id FROM opportunities_accounts)"),
            QStringLiteral("SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id NOT IN "
                           "(SELECT DISTINCT acc_id FROM opportunities_accounts)"),
            "acc_count");
    });
}

bool Account::CalcByImportant() {
    return guarded("CalcByImportant", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_important) AS acc_option, "
                                     "count(accounts.acc_id) AS option_count  From accounts "
                                     "GROUP BY accounts.acc_important "),
                      "acc_option");
    });
}

bool Account::CalcByAccType() {
    return guarded("CalcByAccType", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_type) AS acc_option, "
                                     "count(accounts.acc_id) AS option_count  From accounts "
                                     "GROUP BY accounts.acc_type "),
                      "acc_option");
    });
}

bool Account::CalcByRelation() {
    return guarded("CalcByRelation", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_relation) AS acc_option, "
                                     "count(accounts.acc_id) AS option_count  From accounts "
                                     "GROUP BY accounts.acc_relation "),
                      "acc_option");
    });
}

bool Account::CalcByTag() {
    return guarded("CalcByTag", [&] {
        tagCounts("acc", QStringLiteral("SELECT count(accounts.acc_id) AS option_count FROM "
                                        "accounts WHERE  acc_tag LIKE '%"));
    });
}

bool Account::CalcByIndustry() {
    return guarded("CalcByIndustry", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_industry) AS acc_option, "
                                     "count(accounts.acc_id) AS option_count  From accounts "
                                     "GROUP BY accounts.acc_industry "),
                      "acc_option");
    });
}

bool Account::CalcByProvince() {
    return guarded("CalcByProvince", [&] {
        groupedCounts(QStringLiteral("SELECT first(accounts.acc_province) AS acc_option, "
                                     "count(accounts.acc_id) AS option_count  From accounts "
                                     " GROUP BY accounts.acc_province "),
                      "acc_option");
    });
}

bool Account::InitAccount(int accountId, bool load) {
    return guarded("InitAccount", [&] {
        if (!load) return;
        id_ = accountId;
        // On an opportunity's panel the account's role in that deal is shown too.
        const int record = panelRecordId();
        const bool ok = panelName() == QLatin1String(panel::Opportunity) && record != 0
                            ? GetByIdEx(record, kind::Opportunity)
                            : GetById();
        if (!ok) failLogged();
    });
}

bool Account::ShowAccount(int accountId, bool load) {
    return guarded("ShowAccount", [&] {
        if (!InitAccount(accountId, load)) failLogged();
        setNameBox("txt_acc_name", "bCantChgFlag_AccName", accName_);
        setFormValue("txt_acc_tel", telephone_);
        setFormValue("txt_acc_fax", fax_);
        setFormValue("txt_acc_web", website_);
        setFormValue("txt_acc_address", address_);
        setFormValue("cbo_acc_industry", industry_);
        setFormValue("cbo_acc_region", province_);
        setFormValue("cbo_acc_type", accType_);
        setFormValue("txt_acc_part", partInOpp_);
        setFormValue("rtxt_acc_memo", description_);
        setFormProperty("g_AccID", accountId);
        setFormValue(
            "rtxt_acc_sch",
            taskDigest(QStringLiteral("SELECT tas_date,tas_time,tas_tag,tas_subject,"
                                      "tas_description  FROM  tasks  WHERE tas_id IN "
                                      "(SELECT tas_id FROM accounts_tasks WHERE acc_id=") +
                       num(id_) + QStringLiteral(") ORDER BY tas_date DESC,tas_time DESC")));
    });
}

bool Account::SetQuery(int otherId) {
    return guarded("SetQuery", [&] {
        const QString name = panelName();
        QString where;
        if (name == QLatin1String(panel::Opportunity))
            where = QStringLiteral(
                " WHERE acc_id IN (SELECT acc_id FROM opportunities_accounts "
                "WHERE opp_id=");
        else if (name == QLatin1String(panel::Task))
            where = QStringLiteral(
                " WHERE acc_id IN (SELECT acc_id FROM accounts_tasks WHERE "
                "tas_id=");
        else if (name == QLatin1String(panel::Document))
            where = QStringLiteral(
                " WHERE acc_id IN (SELECT acc_id FROM accounts_documents "
                "WHERE doc_id=");
        else
            return;  // a contact's account shows in the contact's own fields
        showInGrid(
            QStringLiteral("SELECT acc_id,acc_name,acc_telephone,acc_fax,acc_website,"
                           "acc_type,acc_industry,acc_province,acc_address,acc_description,"
                           "acc_create_date,acc_recent_contact_date,acc_private  FROM "
                           "accounts ") +
                where + num(otherId) + QLatin1Char(')'),
            "dgrid_acc",
            {QStringLiteral("客户/单位名称"), QStringLiteral("电话"), QStringLiteral("传真"),
             QStringLiteral("网址"), QStringLiteral("类型"), QStringLiteral("行业"),
             QStringLiteral("地区"), QStringLiteral("地址"), QStringLiteral("简介"),
             QStringLiteral("创建日期"), QStringLiteral("最近联系日期"), QStringLiteral("私有")});
    });
}

void Account::readQuickEdit() {
    accName_ = leftChars(formText("txt_acc_name"), 50);
    telephone_ = leftChars(formText("txt_acc_tel"), 50);
    fax_ = leftChars(formText("txt_acc_fax"), 50);
    website_ = leftChars(formText("txt_acc_web"), 50);
    address_ = leftChars(formText("txt_acc_address"), 255);
    description_ = formText("rtxt_acc_memo");
    industry_ = leftChars(formText("cbo_acc_industry"), 50);
    province_ = leftChars(formText("cbo_acc_region"), 50);
    accType_ = leftChars(formText("cbo_acc_type"), 50);
    partInOpp_ = leftChars(formText("txt_acc_part"), 50);
}

bool Account::AddAccount() {
    return guarded("AddAccount", [&] {
        readQuickEdit();
        createDate_ = recordvalue::today();
        rcDate_ = recordvalue::now();
        private_ = 0;
    });
}

bool Account::ChangeAccount(int accountId) {
    return guarded("ChangeAccount", [&] {
        id_ = accountId;
        readQuickEdit();
        rcDate_ = recordvalue::now();
    });
}

void Account::linkToPanelRecord() {
    const QString name = panelName();
    const int record = panelRecordId();
    bool ok = true;
    if (name == QLatin1String(panel::Opportunity))
        ok = AddRelative(kind::Opportunity, record, partInOpp_);
    else if (name == QLatin1String(panel::Task))
        ok = AddRelative(kind::Task, record);
    else if (name == QLatin1String(panel::Document))
        ok = AddRelative(kind::Document, record);
    if (!ok) failLogged();
}

bool Account::AddToList() {
    return guarded("AddToList", [&] {
        setPanelFlags();
        Recordset& rs = gridRows();
        check(rs, rs.AddNew());
        setField(rs, "acc_name", accName_);
        setField(rs, "acc_telephone", telephone_);
        setField(rs, "acc_fax", fax_);
        setField(rs, "acc_website", website_);
        setField(rs, "acc_address", address_);
        setField(rs, "acc_industry", industry_);
        setField(rs, "acc_province", province_);
        setField(rs, "acc_type", accType_);
        setField(rs, "acc_create_date", recordvalue::field(createDate_));
        setField(rs, "acc_recent_contact_date", recordvalue::field(rcDate_));
        setField(rs, "acc_private", private_);
        setField(rs, "acc_description", description_);
        storeNewRow(rs);
        id_ = recordvalue::int32(columnValue(rs, "acc_id"));
        setFormProperty("g_AccID", id_);
        linkToPanelRecord();
    });
}

bool Account::UpdateIndex(int accountId) {
    return guarded("UpdateIndex", [&] {
        if (gridRowHolds("acc_id", accountId)) {
            Recordset& rs = gridRows();
            setField(rs, "acc_name", accName_);
            setField(rs, "acc_telephone", telephone_);
            setField(rs, "acc_fax", fax_);
            setField(rs, "acc_website", website_);
            setField(rs, "acc_address", address_);
            setField(rs, "acc_industry", industry_);
            setField(rs, "acc_province", province_);
            setField(rs, "acc_type", accType_);
            setField(rs, "acc_recent_contact_date", recordvalue::field(rcDate_));
            setField(rs, "acc_description", description_);
            check(rs, rs.Update());
        } else if (!Update()) {
            failLogged();
        }
        linkToPanelRecord();
        setPanelFlags();
        if (!SetQuery(panelRecordId())) failLogged();
        Recordset& rs = gridRows();
        findKey(rs, "acc_id", accountId);
    });
}

}  // namespace tarvel
