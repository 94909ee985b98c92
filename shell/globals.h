#pragma once

#include <QString>

#include "custom/softwaresetting.h"

namespace tarvel {

// Program-wide state that start-up sets and the main window and screens read.
struct AppGlobals {
    QString appPath;       // the program folder, trimmed
    QString appPathNoSep;  // the same less one trailing separator
    bool passed = false;   // a correct password, or a password chosen on first run
};

AppGlobals& appGlobals();

// The settings object, created on first use.
SoftwareSetting& softwareSetting();

// The trimmed value of a `setting` row; empty when the row or the file is missing
// (the settings class reads those as a single blank).
QString settingValue(const QString& type, const QString& key);

// Whether the data file named by the global connection string opens. When it
// does not, `where` receives the path it was looked for at and `missing` tells
// an absent file from one that cannot be read.
bool dataFileOpens(QString* where = nullptr, bool* missing = nullptr);

// The data file the global connection string names.
QString dataFilePath();

}  // namespace tarvel
