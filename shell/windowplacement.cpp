#include "shell/windowplacement.h"

#include <algorithm>

namespace tarvel {

namespace {
constexpr int kMargin = 16;     // from the screen's edges
constexpr int kTitleBar = 32;   // the frame the window system adds above
constexpr int kStackStep = 28;  // between stacked windows
}  // namespace

QRect popupGeometry(const QSize& size, const QRect& available, int stackIndex) {
    const QRect area = available.adjusted(kMargin, kMargin + kTitleBar, -kMargin, -kMargin);
    const QSize fitted = size.boundedTo(area.size());
    // Many windows go round again from the corner rather than leave the area.
    const int fits =
        std::min(area.width() - fitted.width(), area.height() - fitted.height()) / kStackStep + 1;
    const int step = kStackStep * (std::max(0, stackIndex) % std::max(1, fits));
    return QRect(QPoint(area.right() - fitted.width() + 1 - step,
                        area.bottom() - fitted.height() + 1 - step),
                 fitted);
}

}  // namespace tarvel
