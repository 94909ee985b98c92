#pragma once

#include <QPushButton>

namespace tarvel {

// A button drawn as a link (where the original had a clickable label): flat,
// with the pointing hand.
QPushButton* flatButton(const QString& name, const QString& text, QWidget* parent);

}  // namespace tarvel
