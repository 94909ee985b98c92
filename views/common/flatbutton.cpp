#include "views/common/flatbutton.h"

namespace tarvel {

QPushButton* flatButton(const QString& name, const QString& text, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

}  // namespace tarvel
