#pragma once

#include <QString>
#include <QWidget>
#include <vector>

#include "records/recorddescription.h"

namespace tarvel {

// The text a detail page's control holds: line edits, combos and memo boxes.
QString controlText(const QWidget* control);
void setControlText(QWidget* control, const QString& text);
// How many characters a control's text keeps when read: the column's width
// from the record description, else 50 for option combos and 255 for text
// boxes; a memo keeps everything (0).
int columnWidth(const QWidget* control, int describedCut);

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
void readTextFields(Record& record, const std::vector<TextField>& fields) {
    for (const TextField& f : fields) {
        const auto* c = Record::description().byProperty(QLatin1String(f.property));
        if (!c) continue;
        const int width = columnWidth(f.control, c->cut);
        const QString text = controlText(f.control);
        c->set(record, width > 0 ? text.left(width) : text);
    }
}

}  // namespace tarvel
