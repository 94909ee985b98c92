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

// main(): the whole program.
int runTarvel(int argc, char* argv[]);

}  // namespace tarvel
