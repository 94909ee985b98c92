#pragma once

#include <QDateTime>
#include <QString>

#include "records/currency.h"
#include "records/recordbase.h"

namespace tarvel {

// One row of `opportunities` (a sales deal). Follows the record pattern of
// Contact; links carry no role from this side, and removing a link stamps
// nothing.
class Opportunity : public RecordBase {
public:
    int ID() const { return id_; }
    void setID(int value) { id_ = value; }
    QString Subject() const { return subject_; }
    void setSubject(const QString& value) { subject_ = value; }
    QString Description() const { return description_; }
    void setDescription(const QString& value) { description_ = value; }
    QDateTime CreateDate() const { return createDate_; }
    void setCreateDate(const QDateTime& value) { createDate_ = value; }
    QDateTime DieDate() const { return dieDate_; }
    void setDieDate(const QDateTime& value) { dieDate_ = value; }
    QDateTime RCDate() const { return rcDate_; }
    void setRCDate(const QDateTime& value) { rcDate_ = value; }
    Currency ESale() const { return eSale_; }
    void setESale(Currency value) { eSale_ = value; }
    Currency Sale() const { return sale_; }
    void setSale(Currency value) { sale_ = value; }
    QString Important() const { return important_; }
    void setImportant(const QString& value) { important_ = value; }
    QString Phase() const { return phase_; }
    void setPhase(const QString& value) { phase_ = value; }
    qint16 iPrivate() const { return private_; }
    void setiPrivate(qint16 value) { private_ = value; }
    // Chance of success in percent.
    qint16 Probability() const { return probability_; }
    void setProbability(qint16 value) { probability_ = value; }
    QString OppType() const { return oppType_; }
    void setOppType(const QString& value) { oppType_ = value; }
    QString Industry() const { return industry_; }
    void setIndustry(const QString& value) { industry_ = value; }
    QString Province() const { return province_; }
    void setProvince(const QString& value) { province_ = value; }
    QString Tag() const { return tag_; }
    void setTag(const QString& value) { tag_ = value; }

    bool Add();
    bool Update();
    bool Delete();
    bool DeleteRelation();
    bool GetById();
    void LoadRow(const Recordset& rs);

    // Kinds 2, 3, 4, 5; an existing link is left as it is.
    bool AddRelative(qint16 relationKind, int otherId);
    bool DeleteRelative(qint16 relationKind, int otherId);

    bool CalcByImportant();
    bool CalcByOppType();
    bool CalcByOppTag();
    bool CalcByPhase();
    bool CalcByProbability();
    bool CalcByIndustry();
    bool CalcByProvince();

    // Panel operations over oForm / oAdodc.
    bool ShowOpportunity(int opportunityId, bool load);
    bool SetQuery(int otherId);
    bool AddOpportunity();
    bool AddToList();
    // Also makes the deal public: saving from a panel always clears the flag.
    bool ChangeOpportunity(int opportunityId);
    bool UpdateIndex(int opportunityId);
    bool InitOpportunity(int opportunityId, bool load);

private:
    void readQuickEdit();
    void linkToPanelRecord();

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
