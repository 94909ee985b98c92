#pragma once

#include <QList>
#include <QWidget>

class QLabel;

namespace tarvel {

// The quick-edit fields of one related kind, under the control names the
// record classes read and write (txt_con_name, cbo_opp_stage, ...), each
// with its buddy label. Name boxes with a search get a list of matches
// below them (lst_contacts, lst_accounts, lst_opportunities), hidden until
// there is something to choose.
struct QuickEdit {
    QWidget* box = nullptr;
    QList<QWidget*> inputs;  // in tab order
    QLabel* note = nullptr;  // says which box is full (see FieldLimit)
};

// `ownerKind` names the role field: a contact's relation on a contact's
// panel, its part in the deal elsewhere.
QuickEdit buildQuickEdit(qint16 kind, qint16 ownerKind, QWidget* parent);

}  // namespace tarvel
