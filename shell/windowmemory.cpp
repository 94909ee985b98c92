#include "shell/windowmemory.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include "custom/settingrow.h"

namespace tarvel {

namespace {
const QString kSection = QStringLiteral("window");
const QString kKey = QStringLiteral("main");
}  // namespace

WindowPlace startingPlace() {
    QList<QRect> screens;
    for (const QScreen* s : QGuiApplication::screens()) screens << s->availableGeometry();
    const QScreen* primary = QGuiApplication::primaryScreen();
    const QRect primaryArea = primary ? primary->availableGeometry() : QRect(0, 0, 1024, 768);
    const std::optional<QString> kept = settingrow::read(kSection, kKey);
    return restoredPlace(kept ? placeOfText(*kept) : std::nullopt, screens, primaryArea);
}

bool keepPlace(const QWidget& window, QString* error) {
    // The normal geometry is what un-maximising returns to.
    const WindowPlace place{window.normalGeometry(), window.isMaximized()};
    return settingrow::write(kSection, kKey, QStringLiteral("主窗口的大小和位置"), placeText(place),
                             error);
}

}  // namespace tarvel
