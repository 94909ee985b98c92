#pragma once

#include <QList>
#include <QString>

namespace tarvel {

// What a related panel needs to know of a kind of record: the word that
// names its controls (txt_con_..., dgrid_con), the caption of its tab and
// its name when the interface layout gives none, and the form property
// that holds the record its section shows.
struct RelatedKind {
    qint16 kind;          // relation kind code
    const char* word;     // "con", "acc", "opp", "sch", "doc"
    const char* caption;  // "联系人"
    const char* shownId;  // the form property of the record in its section: "g_ConID"
    const char* nameBox;  // the section's box that must not stay empty: "txt_con_name"
};

const RelatedKind& relatedKind(qint16 kind);
// The kinds a record's panel shows, in tab order.
QList<qint16> relatedKindsOf(qint16 ownerKind);

// One tab of a panel as the interface layout has it (object_type 2 rows
// named owner + "_" + kind, e.g. "con_opp").
struct PanelTab {
    qint16 kind = 0;
    QString caption;
    bool visible = true;
    bool editable = true;
};

// The tabs of the owner's panel; the built-in captions, shown and editable,
// where the layout has no row (or cannot be read).
QList<PanelTab> readPanelLayout(qint16 ownerKind);

}  // namespace tarvel
