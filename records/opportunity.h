#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

#include "records/recorddescription.h"

namespace tarvel {

// One row of `opportunities` (a sales deal). Follows the record pattern of
// Contact; links carry no role from this side, and removing a link stamps
// nothing.
class Opportunity : public RecordRow<Opportunity> {
public:
    // A success probability as people type it ("80", "80%", blank for 0):
    // a whole number from 0 to 100, or nothing when it is not one.
    static std::optional<qint16> parseProbability(QString text);
    static QString probabilityRule() {
        return QStringLiteral("成功概率必须是0到100之间的整数，请检查。");
    }
    TARVEL_PROPERTY(int, ID, id_)
    TARVEL_PROPERTY(QString, Subject, subject_)
    TARVEL_PROPERTY(QString, Description, description_)
    TARVEL_PROPERTY(QDateTime, CreateDate, createDate_)
    TARVEL_PROPERTY(QDateTime, DieDate, dieDate_)
    TARVEL_PROPERTY(QDateTime, RCDate, rcDate_)
    TARVEL_PROPERTY(Currency, ESale, eSale_)
    TARVEL_PROPERTY(Currency, Sale, sale_)
    TARVEL_PROPERTY(QString, Important, important_)
    TARVEL_PROPERTY(QString, Phase, phase_)
    TARVEL_PROPERTY(qint16, iPrivate, private_)
    // Chance of success in percent.
    TARVEL_PROPERTY(qint16, Probability, probability_)
    TARVEL_PROPERTY(QString, OppType, oppType_)
    TARVEL_PROPERTY(QString, Industry, industry_)
    TARVEL_PROPERTY(QString, Province, province_)
    TARVEL_PROPERTY(QString, Tag, tag_)

    bool CalcByImportant() { return count("CalcByImportant"); }
    bool CalcByOppType() { return count("CalcByOppType"); }
    bool CalcByOppTag() { return count("CalcByOppTag"); }
    bool CalcByPhase() { return count("CalcByPhase"); }
    bool CalcByProbability();
    bool CalcByIndustry() { return count("CalcByIndustry"); }
    bool CalcByProvince() { return count("CalcByProvince"); }

    // Panel operations over oForm / oAdodc.
    bool ShowOpportunity(int opportunityId, bool load);
    bool SetQuery(int otherId);
    bool AddOpportunity();
    // Also makes the deal public: saving from a panel always clears the flag.
    bool ChangeOpportunity(int opportunityId);
    bool InitOpportunity(int opportunityId, bool load);

    // Columns, properties and the panel's controls (txt_opp_name, ...).
    static const RecordDescription<Opportunity>& description();
    static const RecordLinks& links();
    // The grouped and tag counts of the CalcBy... operations.
    static const std::vector<CategoryCount>& counts();

private:
    bool readQuickEdit();

    int id_ = 0;
    QString subject_, description_;
    QDateTime createDate_, dieDate_, rcDate_;
    Currency eSale_, sale_;
    QString important_, phase_;
    qint16 private_ = 0;
    qint16 probability_ = 0;
    QString oppType_, industry_, province_, tag_;
};

}  // namespace tarvel
