#pragma once

#include <QRect>
#include <QWidget>

namespace tarvel {

// Where the `index`-th of several small windows opened at once goes: stepped
// down and left from the top right corner of `available` (a screen's work
// area), each wholly inside it however large the stack grows.
QRect cascadedInside(const QRect& available, const QSize& size, int index);

// Moves a top-level window to its place in the cascade on the screen that
// shows `anchor` (or the primary screen when it shows nowhere).
void placeOnScreen(QWidget* window, const QWidget* anchor, int index);

}  // namespace tarvel
