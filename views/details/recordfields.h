#pragma once

#include <QString>
#include <QWidget>
#include <vector>

class QLabel;

#include "records/columnlimit.h"
#include "records/recorddescription.h"

namespace tarvel {

// The text a detail page's control holds: line edits, combos and memo boxes.
QString controlText(const QWidget* control);
void setControlText(QWidget* control, const QString& text);
// Holds the text box `control` to `width` characters as the user types,
// saying so in `note` (see FieldLimit).
void limitField(QWidget* control, int width, QLabel* note);

// A text property of a record shown in a control.
struct TextField {
    QWidget* control;
    const char* property;
};

template <typename Record>
void showTextFields(const Record& record, const std::vector<TextField>& fields) {
    for (const TextField& f : fields)
        if (const auto* c = Record::description().byProperty(QLatin1String(f.property)))
            setControlText(f.control, c->get(record).toString());
}

template <typename Record>
void limitTextFields(const std::vector<TextField>& fields, QLabel* note) {
    for (const TextField& f : fields)
        if (const auto* c = Record::description().byProperty(QLatin1String(f.property)))
            limitField(f.control, c->widthLimit(), note);
}

template <typename Record>
void readTextFields(Record& record, const std::vector<TextField>& fields) {
    for (const TextField& f : fields) {
        const auto* c = Record::description().byProperty(QLatin1String(f.property));
        if (!c) continue;
        c->set(record, columnlimit::cut(controlText(f.control), c->widthLimit()));
    }
}

}  // namespace tarvel
