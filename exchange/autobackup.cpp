#include "exchange/autobackup.h"

#include <sqlite3.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <QThread>

#include "custom/safekeeping.h"
#include "exchange/backup.h"
#include "exchange/filetools.h"
#include "exchange/tables.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

const QString kPrefix = QStringLiteral("Tarvel自动备份");
const QString kSuffix = QStringLiteral(".tbk");
const QString kMomentForm = QStringLiteral("yyyy-MM-dd-HHmmss");
// What each backup holds and the state of the data file it was taken from.
const QString kIndexName = QStringLiteral(".tarvel-backups.json");

QJsonObject readIndex(const QString& folder) {
    QFile f(QDir(folder).filePath(kIndexName));
    if (!f.open(QIODevice::ReadOnly)) return {};
    return QJsonDocument::fromJson(f.readAll()).object();
}

void writeIndex(const QString& folder, const QJsonObject& index) {
    QSaveFile f(QDir(folder).filePath(kIndexName));
    if (f.open(QIODevice::WriteOnly)) {
        f.write(QJsonDocument(index).toJson(QJsonDocument::Compact));
        f.commit();
    }
}

// The state of a file that tells whether it changed: size and modification time.
QJsonObject fileState(const QString& path) {
    const QFileInfo info(path);
    return {{QStringLiteral("size"), double(info.size())},
            {QStringLiteral("mtime"), double(info.lastModified().toMSecsSinceEpoch())}};
}

// Rows of each record kind in a data file, on a connection of its own.
QJsonObject countRecords(const QString& path) {
    QString error;
    auto h = Handle::open(path, QLatin1String(schema::kDatabasePassword), false, &error);
    QJsonObject counts;
    if (!h) return counts;
    for (const RecordKind& k : recordKinds()) {
        sqlite3_stmt* stmt = nullptr;
        const QByteArray sql = QByteArray("SELECT count(*) FROM ") + k.table;
        if (sqlite3_prepare_v2(h->db(), sql.constData(), -1, &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW)
            counts.insert(QLatin1String(k.table), sqlite3_column_int(stmt, 0));
        sqlite3_finalize(stmt);
    }
    h->close();
    return counts;
}

QList<QPair<QString, int>> recordsFrom(const QJsonObject& counts) {
    QList<QPair<QString, int>> records;
    for (const RecordKind& k : recordKinds())
        if (const QString table = QLatin1String(k.table); counts.contains(table))
            records.append({k.captionText(), counts.value(table).toInt()});
    return records;
}

// Staging files of a run killed on a file system other than the scratch folder's.
void removeStagingFiles(const QString& folder) {
    QDir dir(folder);
    for (const QString& name :
         dir.entryList({QStringLiteral(".tarvel-*.part*")}, QDir::Files | QDir::Hidden))
        dir.remove(name);
}

}  // namespace

QString AutoBackupEntry::recordsText() const {
    QStringList parts;
    for (const auto& [caption, count] : records)
        parts << QStringLiteral("%1 %2").arg(caption).arg(count);
    return parts.join(QStringLiteral("，"));
}

AutoBackupPlace autoBackupPlace(const QString& live) {
    AutoBackupPlace place;
    const Safekeeping settings = Safekeeping::load();
    const QString folder = settings.backupFolder;
    // A relative folder is taken from the data file's folder.
    const QDir beside(QFileInfo(live).absolutePath());
    place.folder = QDir::cleanPath(
        beside.absoluteFilePath(folder.isEmpty() ? QStringLiteral("backups") : folder));
    place.limitBytes = qint64(settings.backupLimitMb) * 1024 * 1024;
    return place;
}

QString autoBackupName(const QDateTime& moment) {
    return kPrefix + moment.toString(kMomentForm) + kSuffix;
}

QDateTime autoBackupMoment(const QString& fileName) {
    if (!fileName.startsWith(kPrefix) || !fileName.endsWith(kSuffix)) return {};
    const QString stamp =
        fileName.mid(kPrefix.size(), fileName.size() - kPrefix.size() - kSuffix.size());
    return QDateTime::fromString(stamp, kMomentForm);
}

QList<AutoBackupEntry> listAutoBackups(const QString& folder) {
    QList<AutoBackupEntry> entries;
    const QDir dir(folder);
    const QJsonObject index = readIndex(folder);
    for (const QFileInfo& info :
         dir.entryInfoList({kPrefix + QLatin1Char('*') + kSuffix}, QDir::Files)) {
        const QDateTime made = autoBackupMoment(info.fileName());
        if (!made.isValid()) continue;
        const QJsonObject about = index.value(info.fileName()).toObject();
        entries.append({info.absoluteFilePath(), made, info.size(),
                        recordsFrom(about.value(QStringLiteral("records")).toObject())});
    }
    std::sort(entries.begin(), entries.end(),
              [](const AutoBackupEntry& a, const AutoBackupEntry& b) { return a.made > b.made; });
    return entries;
}

QStringList backupsToRemove(const QList<AutoBackupEntry>& newestFirst, qint64 limitBytes) {
    // The newest backup of each of the latest periods that have backups.
    QSet<QString> kept;
    auto keepLatest = [&](int periods, auto periodOf) {
        QSet<qint64> seen;
        for (const AutoBackupEntry& e : newestFirst) {
            const qint64 period = periodOf(e.made.date());
            if (seen.contains(period)) continue;
            if (seen.size() == periods) break;
            seen.insert(period);
            kept.insert(e.path);
        }
    };
    keepLatest(7, [](const QDate& d) { return d.toJulianDay(); });
    keepLatest(4, [](const QDate& d) {
        int year = 0;
        const int week = d.weekNumber(&year);
        return qint64(year) * 100 + week;
    });
    keepLatest(12, [](const QDate& d) { return qint64(d.year()) * 100 + d.month(); });
    // Past the limit the oldest go first: what stays is the newest run that
    // fits, and the newest backup even when it alone does not.
    QStringList removed;
    qint64 total = 0;
    bool full = false;
    for (qsizetype i = 0; i < newestFirst.size(); ++i) {
        const AutoBackupEntry& e = newestFirst[i];
        if (!kept.contains(e.path)) {
            removed << e.path;
            continue;
        }
        total += e.bytes;
        full = full || (i > 0 && total > limitBytes);
        if (full) removed << e.path;
    }
    return removed;
}

QStringList rotateAutoBackups(const QString& folder, qint64 limitBytes) {
    const QStringList removed = backupsToRemove(listAutoBackups(folder), limitBytes);
    QJsonObject index = readIndex(folder);
    for (const QString& old : removed) {
        removeFile(old);
        index.remove(QFileInfo(old).fileName());
    }
    // Entries of files that are gone (removed by hand) are dropped as well.
    for (const QString& name : index.keys())
        if (!QFileInfo::exists(QDir(folder).filePath(name))) index.remove(name);
    writeIndex(folder, index);
    return removed;
}

bool backupDueAtStart(const QString& folder, const QDate& today) {
    const QList<AutoBackupEntry> entries = listAutoBackups(folder);
    return entries.isEmpty() || entries.first().made.date() != today;
}

bool backupDueAtClose(const QString& live, const QString& folder) {
    const QList<AutoBackupEntry> entries = listAutoBackups(folder);
    if (entries.isEmpty()) return true;
    const QJsonObject about =
        readIndex(folder).value(QFileInfo(entries.first().path).fileName()).toObject();
    return about.value(QStringLiteral("source")).toObject() != fileState(live);
}

AutoBackupResult runAutoBackup(const AutoBackupJob& job) {
    AutoBackupResult result;
    const QString folder = job.place.folder;
    if (!QDir().mkpath(folder)) {
        result.message =
            QStringLiteral("自动备份没有完成：无法建立备份文件夹 %1。请检查该位置是否可写。")
                .arg(QDir::toNativeSeparators(folder));
        return result;
    }
    removeStagingFiles(folder);
    const QString target = QDir(folder).filePath(autoBackupName(job.moment));
    const QJsonObject source = fileState(job.live);
    const Outcome written = backupFile(job.live, target, job.moment);
    if (!written.ok) {
        result.message = QStringLiteral("自动") + written.ErrMsg;
        return result;
    }
    if (job.afterWriting) job.afterWriting(target);
    // A backup is kept only when it opens with the password and is whole.
    QString why;
    if (!checkDataFile(target, &why)) {
        removeFile(target);
        result.message = QStringLiteral(
                             "自动备份没有通过检验，已经删除，当前数据没有改动。原因：%1。"
                             "请检查磁盘后在“数据交换”中手动备份一次。")
                             .arg(why);
        return result;
    }
    QJsonObject index = readIndex(folder);
    index.insert(QFileInfo(target).fileName(),
                 QJsonObject{{QStringLiteral("records"), countRecords(target)},
                             {QStringLiteral("source"), source}});
    writeIndex(folder, index);
    result.removed = rotateAutoBackups(folder, job.place.limitBytes);
    result.ok = true;
    result.path = target;
    return result;
}

AutoBackupRunner::AutoBackupRunner(QObject* parent) : QObject(parent) {
    qRegisterMetaType<tarvel::exchange::AutoBackupResult>();
}

AutoBackupRunner::~AutoBackupRunner() {
    wait();
    delete thread_;
}

bool AutoBackupRunner::start(const AutoBackupJob& job) {
    if (isRunning()) return false;
    delete thread_;
    thread_ = QThread::create([this, job] {
        // Read by others only after wait() or in finished().
        last_ = runAutoBackup(job);
        QMetaObject::invokeMethod(
            this, [this, result = last_] { emit finished(result); }, Qt::QueuedConnection);
    });
    thread_->start(QThread::LowPriority);
    return true;
}

bool AutoBackupRunner::isRunning() const {
    return thread_ && thread_->isRunning();
}

void AutoBackupRunner::wait() {
    if (thread_) thread_->wait();
}

}  // namespace tarvel::exchange
