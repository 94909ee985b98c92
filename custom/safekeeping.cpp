#include "custom/safekeeping.h"

#include <algorithm>
#include <optional>

#include "custom/settingrow.h"

namespace tarvel {

namespace {
const QString kBackup = QStringLiteral("backup");
const QString kBin = QStringLiteral("bin");

QString read(const QString& section, const QString& key) {
    return settingrow::read(section, key).value_or(QString()).trimmed();
}

std::optional<int> readNumber(const QString& section, const QString& key) {
    bool ok = false;
    const int value = read(section, key).toInt(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

bool store(const QString& section, const QString& key, const QString& value, QString* error) {
    QString why;
    if (settingrow::write(section, key, key, value, &why)) return true;
    if (error) *error = why;
    return false;
}
}  // namespace

Safekeeping Safekeeping::load() {
    Safekeeping k;
    k.backupFolder = read(kBackup, QStringLiteral("folder"));
    const std::optional<int> limit = readNumber(kBackup, QStringLiteral("limit_mb"));
    k.backupLimitMb = limit && *limit > 0 ? *limit : kDefaultLimitMb;
    // A negative count, as 0, keeps entries until the bin is emptied.
    k.binDays = std::max(0, readNumber(kBin, QStringLiteral("days")).value_or(kDefaultBinDays));
    return k;
}

bool Safekeeping::save(QString* error) const {
    return store(kBackup, QStringLiteral("folder"), backupFolder.trimmed(), error) &&
           store(kBackup, QStringLiteral("limit_mb"), QString::number(backupLimitMb), error) &&
           store(kBin, QStringLiteral("days"), QString::number(binDays), error);
}

}  // namespace tarvel
