#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

#include "custom/safekeeping.h"

namespace tarvel::exchange {

// Where automatic backups go and how much room they may take, from the
// safekeeping settings.
struct AutoBackupPlace {
    QString folder;
    qint64 limitBytes = 0;
};
constexpr qint64 kDefaultBackupLimit = qint64(Safekeeping::kDefaultLimitMb) * 1024 * 1024;
AutoBackupPlace autoBackupPlace(const QString& live);

// One automatic backup: its file, when it was made, its size and the records
// of each kind it holds (caption and count; empty when unknown).
struct AutoBackupEntry {
    QString path;
    QDateTime made;
    qint64 bytes = 0;
    QList<QPair<QString, int>> records;
    QString recordsText() const;  // "联系人 12，单位 3，…"
};

// The file name of an automatic backup made at `moment`, and back.
QString autoBackupName(const QDateTime& moment);
QDateTime autoBackupMoment(const QString& fileName);

// The automatic backups in `folder`, newest first. Files of other names, and
// the staging files of an unfinished run, are not backups.
QList<AutoBackupEntry> listAutoBackups(const QString& folder);

// Which of `newestFirst` go: all but the newest of each of the 7 latest days,
// 4 latest weeks and 12 latest months that have backups, then the oldest of
// the rest until they fit in `limitBytes`. The newest backup always stays.
QStringList backupsToRemove(const QList<AutoBackupEntry>& newestFirst, qint64 limitBytes);

// Applies backupsToRemove to the backups in `folder`: deletes them and forgets
// what was recorded about them. Returns the files deleted.
QStringList rotateAutoBackups(const QString& folder, qint64 limitBytes);

// Whether a backup is due: at start when none was made on `today`; at close
// when the data file changed since the newest backup was taken from it.
bool backupDueAtStart(const QString& folder, const QDate& today);
bool backupDueAtClose(const QString& live, const QString& folder);

struct AutoBackupJob {
    QString live;
    AutoBackupPlace place;
    QDateTime moment;
    // Called with the written backup before it is checked (fault injection).
    std::function<void(const QString& written)> afterWriting;
};

struct AutoBackupResult {
    bool ok = false;
    QString path;     // the new backup, empty when none was kept
    QString message;  // for the user when something went wrong, else empty
    QStringList removed;
};

// Makes, checks and rotates one automatic backup. Reads no global state and
// opens its own connections, so it may run on any thread.
AutoBackupResult runAutoBackup(const AutoBackupJob& job);

// Runs automatic backups on a thread of their own, one at a time.
class AutoBackupRunner : public QObject {
    Q_OBJECT
public:
    explicit AutoBackupRunner(QObject* parent = nullptr);
    ~AutoBackupRunner() override;
    // False when a backup is already running.
    bool start(const AutoBackupJob& job);
    bool isRunning() const;
    // Waits until the running backup (if any) is finished.
    void wait();
    AutoBackupResult lastResult() const { return last_; }

signals:
    void finished(const tarvel::exchange::AutoBackupResult& result);

private:
    class QThread* thread_ = nullptr;
    AutoBackupResult last_;
};

}  // namespace tarvel::exchange
