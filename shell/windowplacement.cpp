#include "shell/windowplacement.h"

#include <QStringList>
#include <algorithm>

namespace tarvel {

namespace {
constexpr int kMargin = 16;     // from the screen's edges
constexpr int kTitleBar = 32;   // the frame the window system adds above
constexpr int kStackStep = 28;  // between stacked windows
// The least a restored window keeps, so it is never a sliver.
constexpr int kMinWidth = 640;
constexpr int kMinHeight = 480;
// The share of the screen an un-maximised first window takes.
constexpr double kFirstShare = 0.9;

qint64 overlap(const QRect& a, const QRect& b) {
    const QRect both = a.intersected(b);
    return both.isEmpty() ? 0 : qint64(both.width()) * both.height();
}

// `rect` made to fit `area` (below the title bar) and moved inside it.
QRect fitInto(const QRect& rect, const QRect& screen) {
    const QRect area = screen.adjusted(0, kTitleBar, 0, 0);
    const QSize least = QSize(kMinWidth, kMinHeight).boundedTo(area.size());
    const QSize size = rect.size().expandedTo(least).boundedTo(area.size());
    const int x = std::clamp(rect.x(), area.left(), area.right() + 1 - size.width());
    const int y = std::clamp(rect.y(), area.top(), area.bottom() + 1 - size.height());
    return QRect(QPoint(x, y), size);
}

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

WindowPlace restoredPlace(const std::optional<WindowPlace>& saved, const QList<QRect>& screens,
                          const QRect& primary) {
    if (!saved || !saved->rect.isValid()) {
        const QSize size(int(primary.width() * kFirstShare), int(primary.height() * kFirstShare));
        QRect first(QPoint(), size);
        first.moveCenter(primary.center());
        return {fitInto(first, primary), true};
    }
    QRect screen = primary;
    qint64 best = 0;
    for (const QRect& s : screens)
        if (const qint64 o = overlap(saved->rect, s); o > best) {
            best = o;
            screen = s;
        }
    return {fitInto(saved->rect, screen), saved->maximised};
}

QString placeText(const WindowPlace& place) {
    const QRect& r = place.rect;
    return QStringLiteral("%1,%2,%3,%4,%5")
        .arg(r.x())
        .arg(r.y())
        .arg(r.width())
        .arg(r.height())
        .arg(place.maximised ? 1 : 0);
}

std::optional<WindowPlace> placeOfText(const QString& text) {
    const QStringList parts = text.trimmed().split(QLatin1Char(','));
    if (parts.size() != 5) return std::nullopt;
    int n[5];
    for (int i = 0; i < 5; ++i) {
        bool ok = false;
        n[i] = parts[i].trimmed().toInt(&ok);
        if (!ok) return std::nullopt;
    }
    if (n[2] <= 0 || n[3] <= 0 || (n[4] != 0 && n[4] != 1)) return std::nullopt;
    return WindowPlace{QRect(n[0], n[1], n[2], n[3]), n[4] == 1};
}

}  // namespace tarvel
