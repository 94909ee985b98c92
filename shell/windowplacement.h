#pragma once

#include <QRect>
#include <QSize>

namespace tarvel {

// Where a window that pops up by itself (a reminder) goes: the bottom-right
// corner of the screen's available area, each further one stacked up and to
// the left, and always wholly inside the area, room for its title bar
// included, wherever the main window happens to be.
QRect popupGeometry(const QSize& size, const QRect& available, int stackIndex);

}  // namespace tarvel
