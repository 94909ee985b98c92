#include "views/common/buttons.h"

namespace tarvel {

QPushButton* namedButton(QWidget* parent, const QString& name, const QString& text) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    return button;
}

QPushButton* dialogButton(QWidget* parent, const QString& name, const QString& text) {
    QPushButton* button = namedButton(parent, name, text);
    button->setAutoDefault(false);
    return button;
}

QPushButton* flatButton(const QString& name, const QString& text, QWidget* parent) {
    QPushButton* button = namedButton(parent, name, text);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

}  // namespace tarvel
