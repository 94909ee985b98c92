#pragma once

#include <QByteArray>
#include <QDialog>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace tarvel {

class TarvelMain;

// The folder the program works in: --data-dir DIR (or --data-dir=DIR), else
// TARVEL_HOME, else the executable's folder.
QString programFolder(const QStringList& arguments, const QString& tarvelHome,
                      const QString& executableFolder);

// Steps 1 and 2 of start-up: keeps the folder trimmed as the application path,
// drops one trailing separator for the path without it, and sets the global
// connection string to the data file there. No check that the file exists.
void setApplicationPath(const QString& folder);

// Step 4: the first-run window when the agreement was never accepted
// (set_visible "0"); the login window otherwise, a missing file included.
bool needsFirstRun();

// The start routine from step 3 on. `runModal` shows a dialog modally and
// returns when it is closed (tests answer it instead). Returns the main window,
// not yet shown, or null when the program is to end.
using ModalRunner = std::function<void(QDialog&)>;
std::unique_ptr<TarvelMain> startUp(const ModalRunner& runModal);

// main(): the whole program, with the hidden --screenshot PREFIX option that
// saves the start windows and the main window as PREFIX_init.png,
// PREFIX_init_password.png, PREFIX_login.png and PREFIX_main.png, the settings
// window in the main window as PREFIX_setting_main.png and alone, page by
// page, as PREFIX_setting_<page>.png, the options editor as PREFIX_option.png,
// and the schedule's screens over today's data: the home page, the schedule
// module page, the statistics page and a reminder window as
// PREFIX_sch_home.png, PREFIX_sch_module.png, PREFIX_sch_stat.png and
// PREFIX_sch_remind.png.
int runTarvel(int argc, char* argv[]);

}  // namespace tarvel
