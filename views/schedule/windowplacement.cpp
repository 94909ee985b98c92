#include "views/schedule/windowplacement.h"

#include <QGuiApplication>
#include <QScreen>

namespace tarvel {

QRect cascadedInside(const QRect& available, const QSize& size, int index) {
    constexpr int kMargin = 16;
    constexpr int kStep = 28;
    const QSize fitted = size.boundedTo(available.size());
    const int roomX = std::max(0, available.width() - fitted.width() - 2 * kMargin);
    const int roomY = std::max(0, available.height() - fitted.height() - 2 * kMargin);
    // Past the room there is, the cascade starts over at the corner.
    const int stepsX = roomX / kStep + 1, stepsY = roomY / kStep + 1;
    const int step = index % std::max(1, std::min(stepsX, stepsY));
    QRect r(QPoint(0, 0), fitted);
    r.moveTopRight(QPoint(available.right() - kMargin - step * kStep,
                          available.top() + kMargin + step * kStep));
    // A screen with no room for the margins still gets the whole window on it.
    if (r.bottom() > available.bottom()) r.moveBottom(available.bottom());
    if (r.left() < available.left()) r.moveLeft(available.left());
    if (r.top() < available.top()) r.moveTop(available.top());
    return r;
}

void placeOnScreen(QWidget* window, const QWidget* anchor, int index) {
    QScreen* screen = nullptr;
    if (anchor && anchor->isVisible())
        screen = QGuiApplication::screenAt(anchor->frameGeometry().center());
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (!screen) return;
    window->adjustSize();
    const QRect frame = window->frameGeometry();
    const QSize extra = frame.size() - window->size();  // title bar and borders
    const QRect place = cascadedInside(screen->availableGeometry(), frame.size(), index);
    window->resize(place.size() - extra);
    window->move(place.topLeft());
}

}  // namespace tarvel
