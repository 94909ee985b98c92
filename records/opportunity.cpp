#include "records/opportunity.h"

#include <cmath>

#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
QString num(int id) {
    return QString::number(id);
}

}  // namespace

using recordvalue::leftChars;

bool Opportunity::Add() {
    return guarded("Add", [&] {
        // "-1" rather than "0": both select nothing.
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM opportunities WHERE opp_id=-1"));
        check(*rs, rs->AddNew());
        setField(*rs, "opp_subject", subject_);
        setField(*rs, "opp_description", description_);
        setField(*rs, "opp_create_date", recordvalue::field(createDate_));
        setField(*rs, "opp_die_date", recordvalue::field(dieDate_));
        setField(*rs, "opp_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "opp_estimate_sale", eSale_.toVariant());
        setField(*rs, "opp_sale", sale_.toVariant());
        setField(*rs, "opp_important", important_);
        setField(*rs, "opp_phase", phase_);
        setField(*rs, "opp_private", private_);
        setField(*rs, "opp_succeed_probability", probability_);
        setField(*rs, "opp_type", oppType_);
        setField(*rs, "opp_industry", industry_);
        setField(*rs, "opp_province", province_);
        setField(*rs, "opp_tag", tag_);
        storeNewRow(*rs);
        id_ = recordvalue::int32(columnValue(*rs, "opp_id"));
    });
}

bool Opportunity::Update() {
    return guarded("Update", [&] {
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM opportunities WHERE opp_id=") + num(id_));
        setField(*rs, "opp_subject", subject_);
        setField(*rs, "opp_description", description_);
        setField(*rs, "opp_die_date", recordvalue::field(dieDate_));
        setField(*rs, "opp_recent_contact_date", recordvalue::field(rcDate_));
        setField(*rs, "opp_estimate_sale", eSale_.toVariant());
        setField(*rs, "opp_sale", sale_.toVariant());
        setField(*rs, "opp_important", important_);
        setField(*rs, "opp_phase", phase_);
        setField(*rs, "opp_private", private_);
        setField(*rs, "opp_succeed_probability", probability_);
        setField(*rs, "opp_type", oppType_);
        setField(*rs, "opp_industry", industry_);
        setField(*rs, "opp_province", province_);
        setField(*rs, "opp_tag", tag_);
        check(*rs, rs->Update());
    });
}

bool Opportunity::Delete() {
    return guarded("Delete", [&] {
        execute(QStringLiteral("DELETE * FROM opportunities WHERE opp_id=") + num(id_));
    });
}

bool Opportunity::DeleteRelation() {
    return guarded("DeleteRelation", [&] {
        const QString me = num(id_);
        execute(QStringLiteral("DELETE * FROM opportunities_accounts WHERE opp_id=") + me);
        execute(QStringLiteral("DELETE * FROM opportunities_contacts WHERE opp_id=") + me);
        execute(QStringLiteral("DELETE * FROM opportunities_tasks WHERE opp_id=") + me);
        execute(QStringLiteral("DELETE * FROM opportunities_documents WHERE opp_id=") + me);
    });
}

bool Opportunity::GetById() {
    return guarded("GetById", [&] {
        RecordsetPtr rs =
            read(QStringLiteral("SELECT * FROM opportunities WHERE opp_id=") + num(id_));
        if (!rs->Eof()) LoadRow(*rs);
    });
}

void Opportunity::LoadRow(const Recordset& rs) {
    static const ColumnSlots columns(
        {QStringLiteral("opp_id"), QStringLiteral("opp_subject"), QStringLiteral("opp_description"),
         QStringLiteral("opp_create_date"), QStringLiteral("opp_die_date"),
         QStringLiteral("opp_recent_contact_date"), QStringLiteral("opp_estimate_sale"),
         QStringLiteral("opp_sale"), QStringLiteral("opp_important"), QStringLiteral("opp_phase"),
         QStringLiteral("opp_private"), QStringLiteral("opp_succeed_probability"),
         QStringLiteral("opp_type"), QStringLiteral("opp_industry"), QStringLiteral("opp_province"),
         QStringLiteral("opp_tag")});
    using recordvalue::text;
    const QVector<QVariant> v = columns.read(rs);
    id_ = recordvalue::int32(v[0]);
    subject_ = text(v[1]);
    description_ = text(v[2]);
    createDate_ = recordvalue::dateTime(v[3]);
    dieDate_ = recordvalue::dateTime(v[4]);
    rcDate_ = recordvalue::dateTime(v[5]);
    eSale_ = Currency::fromVariant(v[6]);
    sale_ = Currency::fromVariant(v[7]);
    important_ = text(v[8]);
    phase_ = text(v[9]);
    private_ = recordvalue::int16(v[10]);
    probability_ = recordvalue::int16(v[11]);
    oppType_ = text(v[12]);
    industry_ = text(v[13]);
    province_ = text(v[14]);
    tag_ = text(v[15]);
}

bool Opportunity::AddRelative(qint16 relationKind, int otherId) {
    return guarded("AddRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        execute(stampStatement(kind::Opportunity, id_));
        const char* table = nullptr;
        const char* column = nullptr;
        const char* probe = " * FROM ";
        switch (relationKind) {
            case kind::Account:
                table = "opportunities_accounts";
                column = "acc_id";
                probe = "  * FROM ";  // the account probe has always had two blanks
                break;
            case kind::Contact:
                table = "opportunities_contacts";
                column = "con_id";
                break;
            case kind::Task:
                table = "opportunities_tasks";
                column = "tas_id";
                break;
            case kind::Document:
                table = "opportunities_documents";
                column = "doc_id";
                break;
            default:
                return;
        }
        const QString t = QLatin1String(table), c = QLatin1String(column);
        QString sql;
        if (!hasRows(QStringLiteral("SELECT") + QLatin1String(probe) + t +
                     QStringLiteral(" WHERE opp_id = ") + me + QStringLiteral(" AND ") + c +
                     QStringLiteral("= ") + other))
            sql = QStringLiteral("INSERT INTO ") + t + QStringLiteral("(opp_id,") + c +
                  QStringLiteral(") VALUES(") + me + QLatin1Char(',') + other + QLatin1Char(')');
        execute(stampStatement(relationKind, otherId));
        executeLink(sql);
    });
}

bool Opportunity::DeleteRelative(qint16 relationKind, int otherId) {
    return guarded("DeleteRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const char* target = nullptr;
        switch (relationKind) {
            case kind::Account:
                target = "opportunities_accounts WHERE opp_id=%1 AND acc_id=%2";
                break;
            case kind::Contact:
                target = "opportunities_contacts WHERE opp_id=%1 AND con_id=%2";
                break;
            case kind::Task:
                target = "opportunities_tasks WHERE opp_id=%1 AND tas_id=%2";
                break;
            case kind::Document:
                target = "opportunities_documents WHERE opp_id=%1 AND doc_id=%2";
                break;
            default:
                return;
        }
        // Removing a link stamps neither record.
        executeLink(QStringLiteral("DELETE * FROM ") +
                    QString::fromLatin1(target).arg(num(id_), num(otherId)));
    });
}

bool Opportunity::CalcByImportant() {
    return guarded("CalcByImportant", [&] {
        groupedCounts(QStringLiteral("SELECT first(opportunities.opp_important) AS opp_option, "
                                     "count(opportunities.opp_id) AS option_count  From "
                                     "opportunities GROUP BY opportunities.opp_important"),
                      "opp_option");
    });
}

bool Opportunity::CalcByOppType() {
    return guarded("CalcByOppType", [&] {
        groupedCounts(QStringLiteral("SELECT first(opportunities.opp_type) AS opp_option, "
                                     "count(opportunities.opp_id) AS option_count  From "
                                     "opportunities GROUP BY opportunities.opp_type"),
                      "opp_option");
    });
}

bool Opportunity::CalcByOppTag() {
    return guarded("CalcByOppTag", [&] {
        tagCounts("opp", QStringLiteral("SELECT count(opportunities.opp_id) AS option_count FROM "
                                        "opportunities WHERE  opp_tag LIKE '%"));
    });
}

bool Opportunity::CalcByPhase() {
    return guarded("CalcByPhase", [&] {
        groupedCounts(QStringLiteral("SELECT first(opportunities.opp_phase) AS opp_option, "
                                     "count(opportunities.opp_id) AS option_count  From "
                                     "opportunities GROUP BY opportunities.opp_phase ORDER BY "
                                     "opportunities.opp_phase"),
                      "opp_option");
    });
}

bool Opportunity::CalcByProbability() {
    return guarded("CalcByProbability", [&] {
        RecordsetPtr values =
            read(QStringLiteral("SELECT opt_description FROM options WHERE opt_object= 'opp'  AND  "
                                "opt_name='probability'  "));
        const int rows = values->RecordCount();
        QVariantList desc(rows + 1), counts(rows + 1);
        for (int i = 0; !values->Eof(); ++i, values->MoveNext()) {
            const QString value = recordvalue::text(values->value(0)).trimmed();
            desc[i] = value;
            // The value is compared as a number, unquoted; a text that is no
            // number cannot match any deal and is never put into the statement.
            bool isNumber = false;
            value.toDouble(&isNumber);
            counts[i] = isNumber ? recordvalue::int32(
                                       read(QStringLiteral("SELECT count(opportunities.opp_id) AS "
                                                           "option_count FROM opportunities "
                                                           "WHERE  opp_succeed_probability =") +
                                            value)
                                           ->value(QStringLiteral("option_count")))
                                 : 0;
        }
        setArrDesc(desc);
        setArrValue(counts);
    });
}

bool Opportunity::CalcByIndustry() {
    return guarded("CalcByIndustry", [&] {
        groupedCounts(QStringLiteral("SELECT first(opportunities.opp_industry) AS opp_option, "
                                     "count(opportunities.opp_id) AS option_count  From "
                                     "opportunities GROUP BY opportunities.opp_industry"),
                      "opp_option");
    });
}

bool Opportunity::CalcByProvince() {
    return guarded("CalcByProvince", [&] {
        groupedCounts(QStringLiteral("SELECT first(opportunities.opp_province) AS opp_option, "
                                     "count(opportunities.opp_id) AS option_count  From "
                                     "opportunities GROUP BY opportunities.opp_province"),
                      "opp_option");
    });
}

bool Opportunity::InitOpportunity(int opportunityId, bool load) {
    return guarded("InitOpportunity", [&] {
        if (!load) return;
        id_ = opportunityId;
        if (!GetById()) failLogged();
    });
}

bool Opportunity::ShowOpportunity(int opportunityId, bool load) {
    return guarded("ShowOpportunity", [&] {
        if (!InitOpportunity(opportunityId, load)) failLogged();
        setNameBox("txt_opp_name", "bCantChgFlag_OppName", subject_);
        setFormValue("dt_opp_enddate", dieDate_.isValid() ? QVariant(dieDate_.date()) : QVariant());
        setFormValue("txt_opp_revenue", eSale_.toString());
        setFormValue("txt_opp_revenue2", sale_.toString());
        setFormValue("rtxt_opp_memo", description_);
        setFormValue("cbo_opp_probability", QString::number(probability_) + QLatin1Char('%'));
        setFormValue("cbo_opp_type", oppType_);
        setFormValue("cbo_opp_stage", phase_);
        setFormValue("cbo_opp_importance", important_);
        setFormValue("txt_opp_tag", tag_);
        setFormProperty("g_OppID", opportunityId);
        setFormValue(
            "rtxt_opp_sch",
            taskDigest(QStringLiteral("SELECT tas_date,tas_time,tas_tag,tas_subject,"
                                      "tas_description  FROM tasks  WHERE tas_id IN "
                                      "(SELECT tas_id FROM opportunities_tasks WHERE "
                                      "opp_id=") +
                       num(id_) + QStringLiteral(") ORDER BY tas_date DESC,tas_time DESC")));
    });
}

bool Opportunity::SetQuery(int otherId) {
    return guarded("SetQuery", [&] {
        const QString name = panelName();
        const char* link = nullptr;
        if (name == QLatin1String(panel::Account))
            link = "opportunities_accounts WHERE acc_id=";
        else if (name == QLatin1String(panel::Contact))
            link = "opportunities_contacts WHERE con_id=";
        else if (name == QLatin1String(panel::Task))
            link = "opportunities_tasks WHERE tas_id=";
        else if (name == QLatin1String(panel::Document))
            link = "opportunities_documents WHERE doc_id=";
        else
            return;
        showInGrid(
            QStringLiteral(
                "SELECT opp_id,opp_subject,opp_die_date,opp_estimate_sale,opp_sale,"
                "opp_succeed_probability,opp_type,opp_phase,opp_important,opp_tag,opp_description,"
                "opp_create_date,opp_recent_contact_date,opp_private  FROM opportunities  WHERE "
                "opp_id IN (SELECT opp_id FROM ") +
                QLatin1String(link) + num(otherId) + QLatin1Char(')'),
            "dgrid_opp",
            {QStringLiteral("项目机会"), QStringLiteral("预计结束日期"), QStringLiteral("预计金额"),
             QStringLiteral("实际金额"), QStringLiteral("成功概率"), QStringLiteral("类型"),
             QStringLiteral("阶段"), QStringLiteral("重要性"), QStringLiteral("标签"),
             QStringLiteral("简介"), QStringLiteral("创建日期"), QStringLiteral("最近联系日期"),
             QStringLiteral("私有")});
    });
}

void Opportunity::readQuickEdit() {
    subject_ = leftChars(formText("txt_opp_name"), 255);
    const QVariant end = form().controlValue(QStringLiteral("dt_opp_enddate"));
    const QDateTime day = recordvalue::dateTime(end);
    dieDate_ = day.isValid() ? jetdate::naive(day.date()) : QDateTime();
    const QString revenue = formText("txt_opp_revenue");
    const auto estimate = Currency::parse(revenue);
    if (!estimate) fail(QStringLiteral("“%1”不是有效的金额").arg(revenue));
    eSale_ = *estimate;
    const QString revenue2 = formText("txt_opp_revenue2");
    const auto realised = Currency::parse(revenue2);
    if (!realised) fail(QStringLiteral("“%1”不是有效的金额").arg(revenue2));
    sale_ = *realised;
    description_ = formText("rtxt_opp_memo");
    oppType_ = leftChars(formText("cbo_opp_type"), 50);
    phase_ = leftChars(formText("cbo_opp_stage"), 50);
    important_ = leftChars(formText("cbo_opp_importance"), 50);
    // The list shows "80%": the last character is the percent sign.
    QString probability = formText("cbo_opp_probability");
    probability_ = 0;
    if (!probability.isEmpty()) {
        probability.chop(1);
        bool ok = false;
        const double value = probability.trimmed().toDouble(&ok);
        if (!ok || std::fabs(value) > 32767)
            fail(QStringLiteral("“%1”不是有效的成功概率").arg(formText("cbo_opp_probability")));
        probability_ = qint16(std::lround(value));
    }
    tag_ = leftChars(formText("txt_opp_tag"), 255);
}

bool Opportunity::AddOpportunity() {
    return guarded("AddOpportunity", [&] {
        readQuickEdit();
        createDate_ = recordvalue::today();
        rcDate_ = recordvalue::now();
        private_ = 0;
    });
}

bool Opportunity::ChangeOpportunity(int opportunityId) {
    return guarded("ChangeOpportunity", [&] {
        id_ = opportunityId;
        readQuickEdit();
        rcDate_ = recordvalue::now();
        private_ = 0;
    });
}

void Opportunity::linkToPanelRecord() {
    const qint16 panelKind = panel::kindOf(panelName());
    if (panelKind == 0 || panelKind == kind::Opportunity) return;
    if (!AddRelative(panelKind, panelRecordId())) failLogged();
}

bool Opportunity::AddToList() {
    return guarded("AddToList", [&] {
        setPanelFlags();
        Recordset& rs = gridRows();
        check(rs, rs.AddNew());
        setField(rs, "opp_subject", subject_);
        setField(rs, "opp_die_date", recordvalue::field(dieDate_));
        setField(rs, "opp_estimate_sale", eSale_.toVariant());
        setField(rs, "opp_sale", sale_.toVariant());
        setField(rs, "opp_type", oppType_);
        setField(rs, "opp_phase", phase_);
        setField(rs, "opp_succeed_probability", probability_);
        setField(rs, "opp_important", important_);
        setField(rs, "opp_create_date", recordvalue::field(createDate_));
        setField(rs, "opp_recent_contact_date", recordvalue::field(rcDate_));
        setField(rs, "opp_private", private_);
        setField(rs, "opp_description", description_);
        setField(rs, "opp_tag", tag_);
        storeNewRow(rs);
        id_ = recordvalue::int32(columnValue(rs, "opp_id"));
        setFormProperty("g_OppID", id_);
        linkToPanelRecord();
    });
}

bool Opportunity::UpdateIndex(int opportunityId) {
    return guarded("UpdateIndex", [&] {
        if (gridRowHolds("opp_id", opportunityId)) {
            Recordset& rs = gridRows();
            setField(rs, "opp_subject", subject_);
            setField(rs, "opp_die_date", recordvalue::field(dieDate_));
            setField(rs, "opp_estimate_sale", eSale_.toVariant());
            setField(rs, "opp_sale", sale_.toVariant());
            setField(rs, "opp_succeed_probability", probability_);
            setField(rs, "opp_type", oppType_);
            setField(rs, "opp_phase", phase_);
            setField(rs, "opp_important", important_);
            setField(rs, "opp_recent_contact_date", recordvalue::field(rcDate_));
            setField(rs, "opp_private", private_);
            setField(rs, "opp_description", description_);
            setField(rs, "opp_tag", tag_);
            check(rs, rs.Update());
        } else if (!Update()) {
            failLogged();
        }
        linkToPanelRecord();
        setPanelFlags();
        if (!SetQuery(panelRecordId())) failLogged();
        Recordset& rs = gridRows();
        findKey(rs, "opp_id", opportunityId);
    });
}

}  // namespace tarvel
