#pragma once

#include <QPushButton>

namespace tarvel {

// A push button known by `name` to tests and screen readers.
QPushButton* namedButton(QWidget* parent, const QString& name, const QString& text);

// A button of a dialog that Enter does not press (Enter belongs to the
// dialog's input boxes there).
QPushButton* dialogButton(QWidget* parent, const QString& name, const QString& text);

// A button drawn as a link (where the original had a clickable label): flat,
// with the pointing hand.
QPushButton* flatButton(const QString& name, const QString& text, QWidget* parent);

}  // namespace tarvel
