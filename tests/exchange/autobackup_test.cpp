// Automatic backups: made and checked on connections of their own, rotated
// over a simulated year through the clock, kept within the size limit.
#include "exchange/autobackup.h"

#include <QSet>

#include "exchange/backup.h"
#include "exchange/filetools.h"
#include "exchange/tables.h"
#include "store/sqlitehandle.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

constexpr qint64 kNoLimit = qint64(1) << 40;

class AutoBackup : public ExchangeFixture {
protected:
    QString folder() const { return inFolder("backups"); }
    AutoBackupJob job() const { return {file.path(), {folder(), kNoLimit}, Clock::now(), {}}; }
    // A verified backup of the live file, made once, that the rotation tests
    // copy under each day's name.
    QString realBackup() {
        const QString seed = inFolder("seed.tbk");
        if (!QFileInfo::exists(seed)) {
            EXPECT_TRUE(backupTo(seed).ok);
        }
        return seed;
    }
    void placeBackupAt(const QDateTime& moment) {
        ASSERT_TRUE(QDir().mkpath(folder()));
        ASSERT_TRUE(QFile::copy(realBackup(), QDir(folder()).filePath(autoBackupName(moment))));
    }
    QList<QDate> keptDays() {
        QList<QDate> days;
        for (const AutoBackupEntry& e : listAutoBackups(folder())) days << e.made.date();
        return days;
    }
};

// What must stay of the backups made on `made` (oldest first): the latest
// of each of the 7 latest days, 4 latest weeks and 12 latest months.
QSet<QDate> mustStay(const QList<QDate>& made) {
    QSet<QDate> stay;
    auto latestOfPeriods = [&](int periods, auto samePeriod) {
        QList<QDate> firstOfPeriod;  // newest first, one date per period
        for (auto it = made.crbegin(); it != made.crend(); ++it) {
            if (!firstOfPeriod.isEmpty() && samePeriod(firstOfPeriod.last(), *it)) continue;
            if (firstOfPeriod.size() == periods) break;
            firstOfPeriod << *it;
        }
        for (const QDate& d : firstOfPeriod) stay.insert(d);
    };
    latestOfPeriods(7, [](QDate a, QDate b) { return a == b; });
    latestOfPeriods(4, [](QDate a, QDate b) {
        // Same ISO week: Mondays the same.
        return a.addDays(1 - a.dayOfWeek()) == b.addDays(1 - b.dayOfWeek());
    });
    latestOfPeriods(
        12, [](QDate a, QDate b) { return a.year() == b.year() && a.month() == b.month(); });
    return stay;
}

}  // namespace

TEST_F(AutoBackup, MakesACheckedBackupThatListsItsRecords) {
    fillSample();
    const AutoBackupPlace place = autoBackupPlace(file.path());
    EXPECT_EQ(place.folder, QDir(file.folder()).filePath("backups"));
    const AutoBackupResult r = runAutoBackup({file.path(), place, Clock::now(), {}});
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    // The sqlcipher program reads it with the password.
    EXPECT_EQ(sqlcipherRows(r.path, "PRAGMA integrity_check"), QStringList{"ok"});
    EXPECT_EQ(sqlcipherRows(r.path, "SELECT con_lastname FROM contacts ORDER BY con_id"),
              column("SELECT con_lastname FROM contacts ORDER BY con_id"));
    const QList<AutoBackupEntry> list = listAutoBackups(folder());
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list[0].path, r.path);
    const QString second = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    EXPECT_EQ(list[0].made.toString(second), Clock::now().toString(second));
    EXPECT_EQ(list[0].bytes, QFileInfo(r.path).size());
    QList<QPair<QString, int>> counted;  // every kind with its count in the live file
    for (const RecordKind& k : recordKinds()) counted.append({k.captionText(), rows(k.table)});
    EXPECT_EQ(list[0].records, counted);
    // Nothing of the work is left behind.
    EXPECT_TRUE(QDir(scratchFolderOf(file.path())).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_EQ(QDir(folder()).entryList({"*.part*"}, QDir::Files | QDir::Hidden), QStringList());
}

TEST_F(AutoBackup, TheSettingsMoveTheFolderAndSetTheLimit) {
    const QString elsewhere = inFolder("别处/备份");
    run(QString("INSERT INTO setting (set_type, set_key, set_value) VALUES ('backup', 'folder', "
                "'%1')")
            .arg(elsewhere));
    run("INSERT INTO setting (set_type, set_key, set_value) VALUES ('backup', 'limit_mb', '50')");
    const AutoBackupPlace place = autoBackupPlace(file.path());
    EXPECT_EQ(place.limitBytes, 50 * 1024 * 1024);
    const AutoBackupResult r = runAutoBackup({file.path(), place, Clock::now(), {}});
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(QFileInfo(r.path).absolutePath(), elsewhere);
}

TEST_F(AutoBackup, ABackupThatFailsTheCheckIsDeletedAndTold) {
    fillSample();
    closeAllHandles();
    const QByteArray before = exchange_test::fileBytes(file.path());
    const struct {
        const char* name;
        std::function<void(const QString&)> damage;
    } faults[] = {
        {"a flipped page",
         [](const QString& path) {
             QFile f(path);
             ASSERT_TRUE(f.open(QIODevice::ReadWrite));
             f.seek(f.size() / 2);
             f.write(QByteArray(64, '\xA5'));
         }},
        {"cut short",
         [](const QString& path) {
             QFile f(path);
             ASSERT_TRUE(f.resize(f.size() / 3));
         }},
    };
    for (const auto& fault : faults) {
        AutoBackupJob j = job();
        j.afterWriting = fault.damage;
        const AutoBackupResult r = runAutoBackup(j);
        EXPECT_FALSE(r.ok) << fault.name;
        EXPECT_TRUE(r.path.isEmpty()) << fault.name;
        EXPECT_TRUE(r.message.contains("自动备份没有通过检验，已经删除"))
            << r.message.toStdString();
        EXPECT_EQ(QDir(folder()).entryList({"*.tbk"}, QDir::Files), QStringList()) << fault.name;
        EXPECT_EQ(exchange_test::fileBytes(file.path()), before) << fault.name;
    }
    // Still due, since none was kept.
    EXPECT_TRUE(backupDueAtStart(folder(), Clock::today()));
}

TEST_F(AutoBackup, RotationOverAYearKeepsSevenDailyFourWeeklyTwelveMonthly) {
    fillSample();
    realBackup();
    Clock::setFixed(jetdate::naive(QDate(2026, 1, 1), QTime(8, 30)));
    QList<QDate> made;
    for (int day = 0; day < 400; ++day, Clock::advance(24 * 3600)) {
        const QDate today = Clock::today();
        // The program is not started on Sundays, nor in a holiday in August.
        if (today.dayOfWeek() == 7 || (today >= QDate(2026, 8, 3) && today < QDate(2026, 8, 17)))
            continue;
        ASSERT_TRUE(backupDueAtStart(folder(), today)) << today.toString().toStdString();
        placeBackupAt(Clock::now());
        made << today;
        EXPECT_FALSE(backupDueAtStart(folder(), today));
        rotateAutoBackups(folder(), kNoLimit);
        const QList<QDate> kept = keptDays();
        const QSet<QDate> expected = mustStay(made);
        EXPECT_EQ(QSet<QDate>(kept.begin(), kept.end()), expected)
            << today.toString(Qt::ISODate).toStdString();
        ASSERT_EQ(kept.size(), expected.size());  // each day once
    }
    // Listed newest first.
    const QList<QDate> kept = keptDays();
    EXPECT_TRUE(std::is_sorted(kept.rbegin(), kept.rend()));
}

TEST_F(AutoBackup, TheFolderStaysWithinTheLimitOldestFirst) {
    fillSample();
    const qint64 size = QFileInfo(realBackup()).size();
    const QDateTime start = Clock::now();
    for (int day = 0; day < 6; ++day) placeBackupAt(start.addDays(day));
    // Three and a half backups' room: the three newest stay.
    const QStringList removed = rotateAutoBackups(folder(), size * 7 / 2);
    EXPECT_EQ(removed.size(), 3);
    EXPECT_EQ(keptDays(), QList<QDate>({start.date().addDays(5), start.date().addDays(4),
                                        start.date().addDays(3)}));
    // Less room than one backup takes: the newest is never given up.
    rotateAutoBackups(folder(), size / 2);
    EXPECT_EQ(keptDays(), QList<QDate>({start.date().addDays(5)}));
}

TEST_F(AutoBackup, OtherFilesInTheFolderAreNoBackups) {
    placeBackupAt(Clock::now());
    for (const char* name : {"Tarvel自动备份2026-13-45-999999.tbk", "mine.tbk",
                             ".tarvel-AbC123.part", "Tarvel自动备份2026-08-05-090703.tbk.tmp"})
        exchange_test::writeBytes(QDir(folder()).filePath(QString::fromUtf8(name)), "x");
    EXPECT_EQ(listAutoBackups(folder()).size(), 1);
    rotateAutoBackups(folder(), 1);
    EXPECT_TRUE(QFileInfo::exists(QDir(folder()).filePath("mine.tbk")));
}

TEST_F(AutoBackup, RunsOnItsOwnThreadWhileTheProgramReads) {
    fillSample();
    AutoBackupRunner runner;
    ASSERT_TRUE(runner.start(job()));
    // The program's own connection goes on reading meanwhile.
    EXPECT_EQ(rows("contacts"), 4);
    runner.wait();
    EXPECT_FALSE(runner.isRunning());
    const AutoBackupResult r = runner.lastResult();
    ASSERT_TRUE(r.ok) << r.message.toStdString();
    EXPECT_EQ(sqlcipherRows(r.path, "SELECT COUNT(*) FROM contacts"), QStringList{"4"});
}
