#include "records/opportunity.h"

#include <cmath>

namespace tarvel {

const RecordDescription<Opportunity>& Opportunity::description() {
    using O = Opportunity;
    static const RecordDescription<Opportunity> d{
        "opportunities",
        "opp_id",
        "opportunities",
        "-1",  // rather than "0": both select nothing
        "g_OppID",
        "txt_opp_name",
        "bCantChgFlag_OppName",
        {{"opp_id", "ID", &O::id_},
         {"opp_subject", "Subject", &O::subject_, "txt_opp_name", 255, {1, 1, 1, 1}},
         {"opp_die_date", "DieDate", &O::dieDate_, "dt_opp_enddate", 0, {4, 3, 2, 2}},
         {"opp_estimate_sale", "ESale", &O::eSale_, "txt_opp_revenue", 0, {6, 5, 3, 3}},
         {"opp_sale", "Sale", &O::sale_, "txt_opp_revenue2", 0, {7, 6, 4, 4}},
         {"opp_description", "Description", &O::description_, "rtxt_opp_memo", 0, {2, 2, 12, 11}},
         {"opp_succeed_probability",
          "Probability",
          &O::probability_,
          "cbo_opp_probability",
          0,
          {11, 10, 7, 5}},
         {"opp_type", "OppType", &O::oppType_, "cbo_opp_type", 50, {12, 11, 5, 6}},
         {"opp_phase", "Phase", &O::phase_, "cbo_opp_stage", 50, {9, 8, 6, 7}},
         {"opp_important", "Important", &O::important_, "cbo_opp_importance", 50, {8, 7, 8, 8}},
         {"opp_tag", "Tag", &O::tag_, "txt_opp_tag", 255, {15, 14, 13, 12}},
         {"opp_create_date", "CreateDate", &O::createDate_, nullptr, 0, {3, 0, 9, 0}},
         {"opp_recent_contact_date", "RCDate", &O::rcDate_, nullptr, 0, {5, 4, 10, 9}},
         {"opp_private", "iPrivate", &O::private_, nullptr, 0, {10, 9, 11, 10}},
         {"opp_industry", "Industry", &O::industry_, nullptr, 0, {13, 12, 0, 0}},
         {"opp_province", "Province", &O::province_, nullptr, 0, {14, 13, 0, 0}}}};
    return d;
}

const RecordLinks& Opportunity::links() {
    // No role from this side; removing a link stamps neither record.
    static const RecordLinks l{
        kind::Opportunity,
        {{kind::Account, "SELECT  * FROM opportunities_accounts WHERE opp_id = %1 AND acc_id= %2",
          "INSERT INTO opportunities_accounts(opp_id,acc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM opportunities_accounts WHERE opp_id=%1 AND acc_id=%2"},
         {kind::Contact, "SELECT * FROM opportunities_contacts WHERE opp_id = %1 AND con_id= %2",
          "INSERT INTO opportunities_contacts(opp_id,con_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM opportunities_contacts WHERE opp_id=%1 AND con_id=%2"},
         {kind::Task, "SELECT * FROM opportunities_tasks WHERE opp_id = %1 AND tas_id= %2",
          "INSERT INTO opportunities_tasks(opp_id,tas_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM opportunities_tasks WHERE opp_id=%1 AND tas_id=%2"},
         {kind::Document, "SELECT * FROM opportunities_documents WHERE opp_id = %1 AND doc_id= %2",
          "INSERT INTO opportunities_documents(opp_id,doc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM opportunities_documents WHERE opp_id=%1 AND doc_id=%2"}},
        {"DELETE * FROM opportunities_accounts WHERE opp_id=%1",
         "DELETE * FROM opportunities_contacts WHERE opp_id=%1",
         "DELETE * FROM opportunities_tasks WHERE opp_id=%1",
         "DELETE * FROM opportunities_documents WHERE opp_id=%1"}};
    return l;
}

const std::vector<CategoryCount>& Opportunity::counts() {
    static const std::vector<CategoryCount> c{
        {"CalcByImportant", "opportunities.opp_important",
         "opportunities GROUP BY opportunities.opp_important"},
        {"CalcByOppType", "opportunities.opp_type",
         "opportunities GROUP BY opportunities.opp_type"},
        {"CalcByOppTag", nullptr, nullptr},
        {"CalcByPhase", "opportunities.opp_phase",
         "opportunities GROUP BY opportunities.opp_phase ORDER BY opportunities.opp_phase"},
        {"CalcByIndustry", "opportunities.opp_industry",
         "opportunities GROUP BY opportunities.opp_industry"},
        {"CalcByProvince", "opportunities.opp_province",
         "opportunities GROUP BY opportunities.opp_province"}};
    return c;
}

bool Opportunity::CalcByProbability() {
    RecordsetPtr values =
        read(QStringLiteral("SELECT opt_description FROM options WHERE opt_object= 'opp'  AND  "
                            "opt_name='probability'  "));
    if (!values) return report("CalcByProbability", false);
    const int rows = values->RecordCount();
    QVariantList desc(rows + 1), counts(rows + 1);
    for (int i = 0; !values->Eof(); ++i, values->MoveNext()) {
        const QString value = recordvalue::text(values->value(0)).trimmed();
        desc[i] = value;
        // The value is compared as a number, unquoted, so only a whole number
        // goes into the statement ("inf" or "nan" would pass as a double and
        // break it); any other text cannot match a deal.
        bool whole = false;
        value.toLongLong(&whole);
        counts[i] = 0;
        if (!whole) continue;
        RecordsetPtr count = read(QStringLiteral("SELECT count(opportunities.opp_id) AS "
                                                 "option_count FROM opportunities WHERE  "
                                                 "opp_succeed_probability =") +
                                  value);
        if (!count) return report("CalcByProbability", false);
        counts[i] = recordvalue::int32(count->value(QStringLiteral("option_count")));
    }
    setArrDesc(desc);
    setArrValue(counts);
    return true;
}

bool Opportunity::InitOpportunity(int opportunityId, bool load) {
    return loadForPanel("InitOpportunity", opportunityId, load);
}

bool Opportunity::ShowOpportunity(int opportunityId, bool load) {
    if (!InitOpportunity(opportunityId, load) || !needForm())
        return report("ShowOpportunity", false);
    showControls(*this, description());
    setFormValue("dt_opp_enddate", dieDate_.isValid() ? QVariant(dieDate_.date()) : QVariant());
    setFormValue("txt_opp_revenue", eSale_.toString());
    setFormValue("txt_opp_revenue2", sale_.toString());
    setFormValue("cbo_opp_probability", QString::number(probability_) + QLatin1Char('%'));
    setFormProperty("g_OppID", opportunityId);
    return report("ShowOpportunity",
                  showTaskDigest("rtxt_opp_sch",
                                 "  FROM tasks  WHERE tas_id IN (SELECT tas_id FROM "
                                 "opportunities_tasks WHERE opp_id=",
                                 id_));
}

bool Opportunity::SetQuery(int otherId) {
    return report(
        "SetQuery",
        showRelated(
            QStringLiteral(
                "SELECT opp_id,opp_subject,opp_die_date,opp_estimate_sale,opp_sale,"
                "opp_succeed_probability,opp_type,opp_phase,opp_important,opp_tag,opp_description,"
                "opp_create_date,opp_recent_contact_date,opp_private  FROM opportunities  WHERE "
                "opp_id IN (SELECT opp_id FROM "),
            {{kind::Account, "opportunities_accounts WHERE acc_id="},
             {kind::Contact, "opportunities_contacts WHERE con_id="},
             {kind::Task, "opportunities_tasks WHERE tas_id="},
             {kind::Document, "opportunities_documents WHERE doc_id="}},
            otherId, "dgrid_opp",
            "项目机会,预计结束日期,预计金额,实际金额,成功概率,类型,阶段,重要性,标签,简介,创建日期,"
            "最近联系日期,私有"));
}

// The texts through the description; the date, the amounts and the
// probability have readers of their own, and refuse what is no date or number.
bool Opportunity::readQuickEdit() {
    if (!readControls(*this, description())) return false;
    const QDateTime day =
        recordvalue::dateTime(oForm()->controlValue(QStringLiteral("dt_opp_enddate")));
    dieDate_ = day.isValid() ? jetdate::naive(day.date()) : QDateTime();
    auto amount = [&](const char* control, Currency& into) {
        const auto value = Currency::parse(formText(control));
        if (value) into = *value;
        return value || fail(QStringLiteral("“%1”不是有效的金额").arg(formText(control)));
    };
    if (!amount("txt_opp_revenue", eSale_) || !amount("txt_opp_revenue2", sale_)) return false;
    const auto probability = parseProbability(formText("cbo_opp_probability"));
    if (!probability) return fail(probabilityRule());
    probability_ = *probability;
    return true;
}

std::optional<qint16> Opportunity::parseProbability(QString text) {
    text = text.trimmed();
    // The lists and pages show "80%".
    if (text.endsWith(QLatin1Char('%'))) text.chop(1);
    text = text.trimmed();
    if (text.isEmpty()) return qint16(0);
    bool whole = false;
    const int value = text.toInt(&whole);
    if (!whole || value < 0 || value > 100) return std::nullopt;
    return qint16(value);
}

bool Opportunity::AddOpportunity() {
    if (!readQuickEdit()) return report("AddOpportunity", false);
    createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
    private_ = 0;
    return true;
}

bool Opportunity::ChangeOpportunity(int opportunityId) {
    id_ = opportunityId;
    if (!readQuickEdit()) return report("ChangeOpportunity", false);
    rcDate_ = recordvalue::now();
    private_ = 0;
    return true;
}

}  // namespace tarvel
