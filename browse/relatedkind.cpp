#include "browse/relatedkind.h"

#include "custom/appsettings.h"
#include "records/recordbase.h"

namespace tarvel {

const RelatedKind& relatedKind(qint16 k) {
    const RecordKindInfo* info = kindByCode(k);
    return info ? *info : *kindByCode(kind::Contact);
}

QList<qint16> relatedKindsOf(qint16 ownerKind) {
    return relatedKind(ownerKind).panelKinds();
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
