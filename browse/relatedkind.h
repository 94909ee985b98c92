#pragma once

#include <QList>
#include <QString>

#include "records/kinds.h"

namespace tarvel {

// What a related panel needs to know of a kind of record (the word that
// names its controls, its tab's caption, the form property of the record its
// section shows, the box that must not stay empty) is its row of the kind
// table; an unknown code reads as contacts.
using RelatedKind = RecordKindInfo;
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
