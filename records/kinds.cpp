#include "records/kinds.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>

namespace tarvel {

namespace {

// The kinds a record's related panel shows, in tab order and in the order of
// the stored interface layout.
struct PanelOrder {
    qint16 code;
    std::array<qint16, 4> tabs;
    std::array<qint16, 4> layout;
};

const PanelOrder& panelOrder(qint16 code) {
    using namespace kind;
    static const PanelOrder orders[] = {
        {Opportunity, {Contact, Account, Task, Document}, {Task, Contact, Account, Document}},
        {Account, {Contact, Opportunity, Task, Document}, {Task, Contact, Opportunity, Document}},
        {Contact, {Contact, Opportunity, Task, Document}, {Task, Contact, Opportunity, Document}},
        {Task, {Contact, Opportunity, Task, Document}, {Opportunity, Contact, Account, Document}},
        {Document, {Contact, Account, Opportunity, Task}, {Opportunity, Account, Contact, Task}}};
    for (const PanelOrder& o : orders)
        if (o.code == code) return o;
    return orders[4];
}

}  // namespace

QList<qint16> RecordKindInfo::panelKinds() const {
    const auto& tabs = panelOrder(code).tabs;
    return {tabs.begin(), tabs.end()};
}

QList<qint16> RecordKindInfo::layoutPanels() const {
    const auto& layout = panelOrder(code).layout;
    return {layout.begin(), layout.end()};
}

const QList<RecordKindInfo>& recordKinds() {
    static const QList<RecordKindInfo> kinds = {
        {kind::Opportunity,
         0,
         "opp",
         "opp",
         "opportunities",
         "opp_id",
         "opp_check",
         "opportunities",
         "opportunity",
         "项目机会",
         "项目机会",
         "opp_subject",
         page::OpportunityList,
         page::OpportunityDetail,
         "form_opp_all",
         "form_opp_detail",
         "form_opp_related",
         "g_OppID",
         "txt_opp_name",
         "opp_recent_contact_date",
         "UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id="},
        {kind::Account,
         1,
         "acc",
         "acc",
         "accounts",
         "acc_id",
         "acc_check",
         "accounts",
         "account",
         "客户单位",
         "客户单位",
         "acc_name",
         page::AccountList,
         page::AccountDetail,
         "form_acc_all",
         "form_acc_detail",
         "form_acc_related",
         "g_AccID",
         "txt_acc_name",
         "acc_recent_contact_date",
         "UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= "},
        {kind::Contact,
         2,
         "con",
         "con",
         "contacts",
         "con_id",
         "con_check",
         "que_contacts_accounts",
         "contact",
         "联系人",
         "联系人",
         "con_lastname",
         page::ContactList,
         page::ContactDetail,
         "form_con_all",
         "form_con_detail",
         "form_con_related",
         "g_ConID",
         "txt_con_name",
         "con_recent_contact_date",
         "UPDATE contacts SET con_recent_contact_date=now WHERE con_id="},
        {kind::Task,
         3,
         "tas",
         "sch",
         "tasks",
         "tas_id",
         "tas_check",
         "tasks",
         "schedule",
         "日程安排",
         "任务",
         "tas_subject",
         page::Task,
         page::TaskDetail,
         "form_tas_all",
         "form_sch_detail",
         "form_sch_related",
         "g_TasID",
         "txt_sch_subject",
         "tas_date",
         "UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id="},
        {kind::Document,
         4,
         "doc",
         "doc",
         "documents",
         "doc_id",
         "doc_check",
         "documents",
         "document",
         "文档附件",
         "文档",
         "doc_name",
         page::DocumentList,
         page::DocumentDetail,
         "form_doc_all",
         "form_doc_detail",
         "form_doc_related",
         "g_DocID",
         "txt_doc_name",
         "doc_recentedit_date",
         "UPDATE documents SET doc_recentedit_date=now WHERE doc_id="},
    };
    return kinds;
}

namespace {
template <typename Test>
const RecordKindInfo* findKind(Test test) {
    for (const RecordKindInfo& k : recordKinds())
        if (test(k)) return &k;
    return nullptr;
}
}  // namespace

QString recordCondition(qint16 code, qint64 id) {
    const RecordKindInfo* k = kindByCode(code);
    return k ? QStringLiteral("WHERE %1=%2").arg(QLatin1String(k->key)).arg(id) : QString();
}

qint64 recordOfCondition(const QString& condition) {
    static const QRegularExpression keyed(QStringLiteral("_id\\s*=\\s*(-?\\d+)"));
    const QRegularExpressionMatch match = keyed.match(condition);
    return match.hasMatch() ? std::max<qint64>(0, match.captured(1).toLongLong()) : 0;
}

const RecordKindInfo* kindByCode(qint16 code) {
    return findKind([&](const RecordKindInfo& k) { return k.code == code; });
}

const RecordKindInfo* kindByPrefix(const QString& prefixOrTable) {
    return findKind([&](const RecordKindInfo& k) {
        return prefixOrTable.compare(QLatin1String(k.prefix), Qt::CaseInsensitive) == 0 ||
               prefixOrTable.compare(QLatin1String(k.table), Qt::CaseInsensitive) == 0;
    });
}

const RecordKindInfo* kindByListNumber(int number) {
    return findKind([&](const RecordKindInfo& k) { return k.listNumber == number; });
}

const RecordKindInfo* kindByPage(qint16 code) {
    return findKind([&](const RecordKindInfo& k) { return k.listPage == code; });
}

const RecordKindInfo* kindByPanelForm(const QString& formName) {
    return findKind(
        [&](const RecordKindInfo& k) { return formName == QLatin1String(k.panelForm); });
}

}  // namespace tarvel
