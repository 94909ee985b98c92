#include "exchange/backup.h"

#include <QDir>
#include <QFileInfo>

#include "custom/softwaresetting.h"
#include "exchange/filetools.h"
#include "exchange/lastaction.h"
#include "exchange/recyclebin.h"
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
    const QDir scratch(scratchFolderOf(n.live));
    n.plainCopy = scratch.filePath(QStringLiteral("tmp.mdb"));
    n.compacted = scratch.filePath(ymdhm(moment) + QStringLiteral(".tmp"));
    n.offered = dir.filePath(QStringLiteral("Tarvel数据备份文件") + ymd(moment.date()) +
                             QStringLiteral(".tbk"));
    n.safetyCopy =
        dir.filePath(QStringLiteral("tmpbackup") + ymdhm(moment) + QStringLiteral(".tbk"));
    n.restoreCopy = scratch.filePath(QStringLiteral("temp.tbk"));
    return n;
}

Outcome backupFile(const QString& live, const QString& target, const QDateTime& moment,
                   const Progress& progress) {
    BackupNames n = BackupNames::at(QFileInfo(live).absolutePath(), moment);
    n.live = QFileInfo(live).absoluteFilePath();
    if (QFileInfo(target) == QFileInfo(n.live))
        return Outcome::failure(QStringLiteral("备份没有完成：不能备份到数据文件本身"));
    const QString scratch = scratchFolderOf(n.live);
    Leftovers leftovers{{n.plainCopy, n.compacted}};
    QString error;
    auto failed = [&] { return Outcome::from(QStringLiteral("备份没有完成："), error); };
    {
        // A read transaction on a connection of its own: the file is settled
        // (a crash's unfinished transaction rolled back) and no writer commits
        // while its bytes are copied.
        auto reader = Handle::open(n.live, QLatin1String(schema::kDatabasePassword), false, &error);
        if (!reader ||
            !reader->exec(QStringLiteral("BEGIN; SELECT count(*) FROM sqlite_master;"), &error))
            return failed();
        const bool copied =
            copyFile(n.live, n.plainCopy, stepProgress(progress, 0, 30), &error, scratch);
        reader->exec(QStringLiteral("COMMIT"), nullptr);
        reader->close();
        if (!copied) return failed();
    }
    // The recycle bin stays in the live file only; the compaction works on a
    // copy, never on the live file.
    if (!recyclebin::clearFile(n.plainCopy, &error) ||
        !compactDataFile(n.plainCopy, n.compacted, stepProgress(progress, 30, 70), &error,
                         scratch) ||
        !copyFile(n.compacted, target, stepProgress(progress, 70, 100), &error, scratch))
        return failed();
    return Outcome{true, false, QFileInfo(target).absoluteFilePath(), {}};
}

Outcome backupTo(const QString& chosen, const Progress& progress) {
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString target = QFileInfo(chosen.trimmed()).absoluteFilePath();
    const Outcome out = backupFile(liveDataFile(), target, Clock::now(), progress);
    if (out.ok) recordBackupDate();
    return out;
}

Outcome restoreFrom(const QString& chosen, const Progress& progress) {
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString source = QFileInfo(chosen.trimmed()).absoluteFilePath();
    const BackupNames n = BackupNames::at(dataFolder(), Clock::now());
    QString error;
    if (!checkDataFile(source, &error))
        return Outcome::failure(QStringLiteral("不能恢复该文件，当前数据没有改动：") + error);
    closeAllHandles();
    // What Ctrl+Z pointed at belongs to the file being replaced.
    LastAction::instance().forget();
    // Through a symbolic link, the file it points to is replaced and the link stays.
    const QFileInfo liveInfo(n.live);
    const QString replaced = liveInfo.isSymLink() && !liveInfo.canonicalFilePath().isEmpty()
                                 ? liveInfo.canonicalFilePath()
                                 : n.live;
    Leftovers leftovers{{n.restoreCopy}};
    // The safety copy exists before anything is replaced; the live file is
    // swapped by one rename, so it is always either the old or the new file.
    if (!settleDataFile(n.live, &error) ||
        !copyFile(n.live, n.safetyCopy, stepProgress(progress, 0, 45), &error) ||
        !copyFile(source, n.restoreCopy, stepProgress(progress, 45, 90), &error)) {
        return Outcome::from(kUnchanged, error);
    }
    if (progress && !progress(95)) return Outcome::cancel();
    if (!replaceFile(n.restoreCopy, replaced, &error)) return Outcome::failure(kUnchanged + error);
    if (progress) progress(100);
    return Outcome{true, false, n.safetyCopy, {}};
}

}  // namespace tarvel::exchange
