#include "exchange/backup.h"

#include <QDir>
#include <QFileInfo>

#include "custom/softwaresetting.h"
#include "exchange/filetools.h"
#include "store/clock.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

const QString kUnchanged = QStringLiteral("恢复没有完成，当前数据没有改动：");

QString ymd(const QDate& d) {
    return QStringLiteral("%1-%2-%3").arg(d.year()).arg(d.month()).arg(d.day());
}

QString ymdhm(const QDateTime& t) {
    return ymd(t.date()) + QStringLiteral("-%1-%2").arg(t.time().hour()).arg(t.time().minute());
}

void recordBackupDate() {
    SoftwareSetting row;
    row.GetValue(QStringLiteral("software"), QStringLiteral("backupdate"));
    SoftwareSetting().WriteValue(
        QStringLiteral("software"), QStringLiteral("backupdate"), row.Set_Name(), row.Set_Visible(),
        Clock::today().toString(QStringLiteral("yyyy-M-d")), row.Set_Description());
}

}  // namespace

BackupNames BackupNames::at(const QString& folder, const QDateTime& moment) {
    const QDir dir(folder);
    BackupNames n;
    n.live = dir.filePath(QLatin1String(schema::kDataFileName));
    n.plainCopy = dir.filePath(QStringLiteral("tmp.mdb"));
    n.compacted = dir.filePath(ymdhm(moment) + QStringLiteral(".tmp"));
    n.offered = dir.filePath(QStringLiteral("Tarvel数据备份文件") + ymd(moment.date()) +
                             QStringLiteral(".tbk"));
    n.safetyCopy =
        dir.filePath(QStringLiteral("tmpbackup") + ymdhm(moment) + QStringLiteral(".tbk"));
    n.restoreCopy = dir.filePath(QStringLiteral("temp.tbk"));
    return n;
}

Outcome backupTo(const QString& chosen, const Progress& progress) {
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString target = QFileInfo(chosen.trimmed()).absoluteFilePath();
    const BackupNames n = BackupNames::at(dataFolder(), Clock::now());
    if (QFileInfo(target) == QFileInfo(n.live))
        return Outcome::failure(QStringLiteral("备份没有完成：不能备份到数据文件本身"));
    Leftovers leftovers{{n.plainCopy, n.compacted}};
    QString error;
    // The compaction works on a copy, never on the live file.
    if (!settleDataFile(n.live, &error) ||
        !copyFile(n.live, n.plainCopy, stepProgress(progress, 0, 30), &error) ||
        !compactDataFile(n.plainCopy, n.compacted, stepProgress(progress, 30, 70), &error) ||
        !copyFile(n.compacted, target, stepProgress(progress, 70, 100), &error)) {
        return Outcome::from(QStringLiteral("备份没有完成："), error);
    }
    recordBackupDate();
    return Outcome{true, false, target, {}};
}

Outcome restoreFrom(const QString& chosen, const Progress& progress) {
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString source = QFileInfo(chosen.trimmed()).absoluteFilePath();
    const BackupNames n = BackupNames::at(dataFolder(), Clock::now());
    QString error;
    if (!checkDataFile(source, &error))
        return Outcome::failure(QStringLiteral("不能恢复该文件，当前数据没有改动：") + error);
    closeAllHandles();
    Leftovers leftovers{{n.restoreCopy}};
    // The safety copy exists before anything is replaced; the live file is
    // swapped by one rename, so it is always either the old or the new file.
    if (!settleDataFile(n.live, &error) ||
        !copyFile(n.live, n.safetyCopy, stepProgress(progress, 0, 45), &error) ||
        !copyFile(source, n.restoreCopy, stepProgress(progress, 45, 90), &error)) {
        return Outcome::from(kUnchanged, error);
    }
    if (progress && !progress(95)) return Outcome::cancel();
    if (!replaceFile(n.restoreCopy, n.live, &error)) return Outcome::failure(kUnchanged + error);
    if (progress) progress(100);
    return Outcome{true, false, n.safetyCopy, {}};
}

}  // namespace tarvel::exchange
