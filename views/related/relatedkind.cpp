#include "views/related/relatedkind.h"

#include "custom/appsettings.h"
#include "records/recordbase.h"

namespace tarvel {

const RelatedKind& relatedKind(qint16 k) {
    static const RelatedKind kinds[] = {
        {kind::Opportunity, "opp", "项目机会", "g_OppID", "txt_opp_name"},
        {kind::Account, "acc", "客户单位", "g_AccID", "txt_acc_name"},
        {kind::Contact, "con", "联系人", "g_ConID", "txt_con_name"},
        {kind::Task, "sch", "日程安排", "g_TasID", "txt_sch_subject"},
        {kind::Document, "doc", "文档附件", "g_DocID", "txt_doc_name"},
    };
    const int i = k >= kind::Opportunity && k <= kind::Document ? k - 1 : kind::Contact - 1;
    return kinds[i];
}

QList<qint16> relatedKindsOf(qint16 ownerKind) {
    switch (ownerKind) {
        case kind::Opportunity:
            return {kind::Contact, kind::Account, kind::Task, kind::Document};
        case kind::Document:
            return {kind::Contact, kind::Account, kind::Opportunity, kind::Task};
        default:  // contacts and accounts
            return {kind::Contact, kind::Opportunity, kind::Task, kind::Document};
    }
}

QList<PanelTab> readPanelLayout(qint16 ownerKind) {
    AppSettings layout;
    // An unreadable layout leaves the built-in tabs: the panel still works.
    layout.GetRelationInfo(0, ownerKind);
    const QString owner = QLatin1String(relatedKind(ownerKind).word);
    QList<PanelTab> tabs;
    for (qint16 k : relatedKindsOf(ownerKind)) {
        const RelatedKind& rk = relatedKind(k);
        PanelTab tab;
        tab.kind = k;
        tab.caption = QString::fromUtf8(rk.caption);
        if (const int i = layout.FindIndex(owner + QLatin1Char('_') + QLatin1String(rk.word));
            i > 0) {
            const AppSetting& e = layout.Item(i);
            if (!e.ObjDesc().trimmed().isEmpty()) tab.caption = e.ObjDesc().trimmed();
            tab.visible = e.ObjVisible() != 0;
            tab.editable = e.ObjEditType() != 0;
        }
        tabs << tab;
    }
    return tabs;
}

}  // namespace tarvel
