#pragma once
// The main window as screen tests drive it: no tray, no update request, no
// timer of its own (ticks come from the test), message boxes from the test.
#include <memory>

#include "shell/mainwindow.h"

namespace tarvel::testsupport {

// `o` carries what a test sets besides, such as the undo offer's timer.
inline std::unique_ptr<TarvelMain> quietMain(std::shared_ptr<Messages> dialogs,
                                             MainWindowOptions o = {}) {
    o.trayAvailable = [] { return false; };
    o.checkForUpdate = false;
    o.dialogs = std::move(dialogs);
    auto main = std::make_unique<TarvelMain>(o);
    main->Timer1()->stop();
    main->show();
    return main;
}

}  // namespace tarvel::testsupport
