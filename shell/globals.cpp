#include "shell/globals.h"

#include <QFileInfo>
#include <memory>

#include "store/connectionstring.h"
#include "store/tarveldatabase.h"

namespace tarvel {

AppGlobals& appGlobals() {
    static AppGlobals globals;
    return globals;
}

SoftwareSetting& softwareSetting() {
    static std::unique_ptr<SoftwareSetting> setting;
    if (!setting) setting = std::make_unique<SoftwareSetting>();
    return *setting;
}

QString settingValue(const QString& type, const QString& key) {
    SoftwareSetting& s = softwareSetting();
    s.GetValue(type, key);
    return s.Set_Value().trimmed();
}

QString dataFilePath() {
    return parseConnectionString(globalConnectionString()).dataSource;
}

bool dataFileOpens(QString* where, bool* missing) {
    tarveldatabase db;
    db.OpenConnection();
    if (db.oConn() && db.oConn()->State() == adStateOpen) return true;
    const QString path = dataFilePath();
    if (where) *where = path;
    if (missing) *missing = !QFileInfo(path).isFile();
    return false;
}

}  // namespace tarvel
