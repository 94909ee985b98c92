#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>
#include <optional>

namespace tarvel {

// Where a window that pops up by itself (a reminder) goes: the bottom-right
// corner of the screen's available area, each further one stacked up and to
// the left, and always wholly inside the area, room for its title bar
// included, wherever the main window happens to be.
QRect popupGeometry(const QSize& size, const QRect& available, int stackIndex);

// The main window's place: its normal (not maximised) geometry and whether
// it is maximised.
struct WindowPlace {
    QRect rect;
    bool maximised = false;
    bool operator==(const WindowPlace&) const = default;
};

// Where the main window opens. Without a saved place (the first start) it
// opens maximised on the primary screen, and un-maximising gives most of
// that screen. A saved place goes back to the screen it mostly lay on, or to
// the primary screen when that screen is gone; it is made to fit the screen's
// available area (smaller when the resolution was lowered) and moved wholly
// inside it, title bar included. `screens` are the available areas of the
// screens present; `primary` one of them.
WindowPlace restoredPlace(const std::optional<WindowPlace>& saved, const QList<QRect>& screens,
                          const QRect& primary);

// A place as the setting row keeps it: "x,y,width,height,max" (max 1 or 0),
// and back; nothing for a text that is not one.
QString placeText(const WindowPlace& place);
std::optional<WindowPlace> placeOfText(const QString& text);

}  // namespace tarvel
