#pragma once

#include <QString>

#include "shell/windowplacement.h"

class QWidget;

namespace tarvel {

// The main window's place kept in the setting row ("window", "main") from
// one start to the next.

// Where the window opens: the kept place on the screens present now, or
// maximised on the primary screen the first time.
WindowPlace startingPlace();

// Keeps where `window` is now; false with the reason in `error`.
bool keepPlace(const QWidget& window, QString* error);

}  // namespace tarvel
