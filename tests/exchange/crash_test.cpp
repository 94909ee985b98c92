// Faults from outside: tarvel-io killed with SIGKILL at random moments of each
// operation, and run with too little room to write. Afterwards the data file
// opens, passes the integrity check and holds the state before or after the
// operation, never a mix.

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>

#include "exchange/autobackup.h"
#include "exchange/backup.h"
#include "exchange/csv.h"
#include "exchange/filetools.h"
#include "exchange/reportexport.h"
#include "exchange/textfile.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;

namespace {

constexpr int kKillsPerOperation = 9;

// Whether the file is whole, then counts that tell the states apart and the
// recorded backup date, as the sqlcipher program reads them.
QString fingerprint(const QString& path) {
    return exchange_test::sqlcipherRows(
               path,
               "PRAGMA integrity_check; SELECT COUNT(*) FROM contacts; SELECT COUNT(*) FROM "
               "accounts; SELECT COUNT(*) FROM accounts_contacts; SELECT COUNT(*) FROM "
               "contacts_tasks; SELECT set_value FROM setting WHERE set_type='software' AND "
               "set_key='backupdate'")
        .join(QLatin1Char(','));
}

struct Operation {
    const char* name;
    QStringList args;    // after "--db FILE"; file names relative to the inputs folder
    const char* writes;  // a file the operation writes, which must never be half there
};

class Crash : public ExchangeFixture {
protected:
    // Two thousand contacts with accounts and tasks, all ticked; a backup of
    // them, then two hundred more contacts, so a restore changes the counts.
    void prepareWorkload() {
        completeProfile();
        QString error;
        auto h = acquireHandle(file.connectionString(), &error);
        ASSERT_TRUE(h) << error.toStdString();
        const QString upTo2000 =
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) ";
        for (const QString& sql :
             {upTo2000 + "INSERT INTO accounts (acc_name, acc_check) SELECT '单位' || i, -1 FROM n "
                         "WHERE i<=500",
              upTo2000 + "INSERT INTO contacts (con_lastname, con_mobile, con_check) SELECT "
                         "'联系人' || i, '138' || i, -1 FROM n",
              upTo2000 + "INSERT INTO tasks (tas_subject, tas_check) SELECT '日程' || i, -1 FROM n",
              QString("INSERT INTO accounts_contacts (acc_id, con_id) SELECT (con_id % 500) + 1, "
                      "con_id FROM contacts"),
              QString("INSERT INTO contacts_tasks (con_id, tas_id) SELECT con_id, con_id FROM "
                      "contacts")})
            ASSERT_TRUE(h->exec(sql, &error)) << error.toStdString();
        QDir(file.folder()).mkdir("in");
        ASSERT_TRUE(backupTo(inFolder("in/b.tbk")).ok);
        ASSERT_TRUE(exportReport(3, inFolder("in/r.tvr3")).ok);
        // Renamed here, so that the report's records come in again (the file's
        // own records would be recognised and nothing added).
        for (const char* sql : {"UPDATE accounts SET acc_name = acc_name || '旧'",
                                "UPDATE contacts SET con_lastname = con_lastname || '旧'",
                                "UPDATE tasks SET tas_subject = tas_subject || '旧'"})
            ASSERT_TRUE(h->exec(QString::fromUtf8(sql), &error)) << error.toStdString();
        // Cards of people not yet there (the file's own contacts would be recognised).
        QString cards;
        for (int i = 0; i < 2000; ++i)
            cards += QString(
                         "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:名片%1\r\nTEL;TYPE=CELL:137%1\r\n"
                         "ORG:新单位%2\r\nUID:crash-%1\r\nEND:VCARD\r\n")
                         .arg(i)
                         .arg(i % 300);
        ASSERT_TRUE(writeTextFile(inFolder("in/v.vcf"), cards, false, &error));
        QString csv = csvLine({"姓名", "手机", "客户/单位名称"});
        for (int i = 0; i < 3000; ++i)
            csv += csvLine({QString("导入%1").arg(i), "139", QString("新单位%1").arg(i % 300)});
        ASSERT_TRUE(writeTextFile(inFolder("in/c.csv"), csv, true, &error));
        ASSERT_TRUE(h->exec(
            upTo2000 + "INSERT INTO contacts (con_lastname) SELECT '后来' || i FROM n WHERE i<=200",
            &error));
        closeAllHandles();
    }

    // A fresh copy of the prepared data file in its own folder.
    QString freshCopy(const QString& name) {
        const QString dir = inFolder(name);
        QDir().mkpath(dir);
        const QString live = QDir(dir).filePath(schema::kDataFileName);
        QFile::remove(live);
        EXPECT_TRUE(QFile::copy(file.path(), live));
        return live;
    }

    QStringList commandLine(const Operation& op, const QString& live) {
        QStringList args = {"--db", live};
        for (const QString& a : op.args) args << (a.contains('.') ? inFolder("in/" + a) : a);
        if (op.writes) args << QDir(QFileInfo(live).path()).filePath(op.writes);
        return args;
    }

    // A written file is absent or whole.
    void expectWholeOrAbsent(const QString& path, const QString& where) {
        if (!QFileInfo::exists(path)) return;
        QString error;
        EXPECT_TRUE(checkDataFile(path, &error)) << where.toStdString() << error.toStdString();
    }
};

const Operation kOperations[] = {
    {"backup", {"backup"}, "out.tbk"},
    {"restore", {"restore", "b.tbk"}, nullptr},
    {"export-report", {"export-report", "contacts"}, "out.tvr3"},
    {"import-report", {"import-report", "r.tvr3"}, nullptr},
    {"import-csv", {"import-csv", "contacts", "c.csv"}, nullptr},
    {"import-vcard", {"import-vcard", "v.vcf"}, nullptr},
    {"auto-backup", {"auto-backup"}, nullptr},
};

}  // namespace

TEST_F(Crash, KilledAtRandomMomentsLeavesTheStateBeforeOrAfter) {
    prepareWorkload();
    const QString before = fingerprint(file.path());
    ASSERT_TRUE(before.startsWith("ok,")) << before.toStdString();
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    int killedWorking = 0, runs = 0;
    for (const Operation& op : kOperations) {
        const bool automatic = QString(op.name) == "auto-backup";
        // The whole run once, for the state after it and how long it takes.
        const QString reference = freshCopy(QString("%1-done").arg(op.name));
        QElapsedTimer timer;
        timer.start();
        QProcess whole;
        whole.start(TARVEL_IO, commandLine(op, reference));
        ASSERT_TRUE(whole.waitForFinished(120000));
        ASSERT_EQ(whole.exitCode(), 0) << op.name << whole.readAllStandardError().toStdString();
        const qint64 duration = timer.elapsed();
        const QString after = fingerprint(reference);
        ASSERT_TRUE(after.startsWith("ok,")) << op.name << after.toStdString();
        // Imports and the restore change what the file holds.
        ASSERT_TRUE(op.writes || automatic || after != before) << op.name;

        QString live;
        for (int i = 0; i < kKillsPerOperation; ++i) {
            const QString where = QString("%1 kill %2 (seed %3)").arg(op.name).arg(i).arg(seed);
            live = freshCopy(QString("%1-%2").arg(op.name).arg(i));
            QProcess child;
            child.start(TARVEL_IO, commandLine(op, live));
            ASSERT_TRUE(child.waitForStarted());
            QThread::msleep(random.bounded(int(duration * 11 / 10) + 1));
            child.kill();  // SIGKILL
            child.waitForFinished();
            ++runs;
            // A run that had already finished proves nothing about a kill.
            if (child.exitStatus() == QProcess::CrashExit) ++killedWorking;
            const QString state = fingerprint(live);
            EXPECT_TRUE(state == before || state == after)
                << where.toStdString() << ": " << state.toStdString() << " is neither "
                << before.toStdString() << " nor " << after.toStdString();
            if (op.writes)
                expectWholeOrAbsent(QDir(QFileInfo(live).path()).filePath(op.writes), where);
            // Only whole automatic backups are listed.
            for (const AutoBackupEntry& e : listAutoBackups(autoBackupPlace(live).folder))
                expectWholeOrAbsent(e.path, where);
        }
        if (!automatic) continue;
        // The next automatic backup removes what the killed one left, and a
        // staging file as a kill at its end would leave.
        QDir().mkpath(scratchFolderOf(live));
        exchange_test::writeBytes(QDir(scratchFolderOf(live)).filePath(".tarvel-Ab12Cd.part"), "x");
        QProcess next;
        next.start(TARVEL_IO, commandLine(op, live));
        ASSERT_TRUE(next.waitForFinished(120000));
        EXPECT_EQ(next.exitCode(), 0) << next.readAllStandardError().toStdString();
        EXPECT_EQ(QDir(scratchFolderOf(live)).entryList(QDir::Files | QDir::Hidden), QStringList());
        EXPECT_EQ(QDir(autoBackupPlace(live).folder)
                      .entryList({".tarvel-*.part*"}, QDir::Files | QDir::Hidden),
                  QStringList());
    }
    // The kill moments spread over the whole run, so most land while it works.
    EXPECT_GE(killedWorking, runs / 2) << "seed " << seed;
}

TEST_F(Crash, AFullDiskGivesAClearMessageAndLeavesTheFileWhole) {
    prepareWorkload();
    const QString before = fingerprint(file.path());
    const qint64 blocks = QFileInfo(file.path()).size() / 1024;
    const struct {
        Operation op;
        qint64 limit;      // the largest file the child may write, in KiB
        const char* says;  // every piece, '|' between them
    } cases[] = {
        // A copy that cannot be written says what happened and what to do.
        {kOperations[0], blocks / 2, "备份没有完成|磁盘已满|腾出磁盘空间"},
        {kOperations[1], blocks / 2, "恢复没有完成，当前数据没有改动|磁盘已满|腾出磁盘空间"},
        {kOperations[2], blocks / 2, "导出Tarvel报表没有完成|磁盘已满|腾出磁盘空间"},
        {kOperations[3], blocks, "导入Tarvel报表没有完成，当前数据没有改动"},
        {kOperations[4], blocks, "导入没有完成，当前数据没有改动"},
    };
    for (const auto& c : cases) {
        const QString live = freshCopy(QString("full-%1").arg(c.op.name));
        // Writing past the limit then fails with EFBIG, as on a full disk,
        // instead of ending the process.
        QProcess child;
        child.start("bash", QStringList{"-c", "trap '' XFSZ; ulimit -f \"$0\"; exec \"$@\"",
                                        QString::number(c.limit), TARVEL_IO} +
                                commandLine(c.op, live));
        ASSERT_TRUE(child.waitForFinished(120000));
        const QString err = QString::fromUtf8(child.readAllStandardError());
        EXPECT_EQ(child.exitCode(), 1) << c.op.name << err.toStdString();
        for (const QString& piece : QString::fromUtf8(c.says).split('|'))
            EXPECT_TRUE(err.contains(piece)) << c.op.name << ": " << err.toStdString();
        EXPECT_EQ(fingerprint(live), before) << c.op.name;
        EXPECT_FALSE(c.op.writes &&
                     QFileInfo::exists(QDir(QFileInfo(live).path()).filePath(c.op.writes)));
        // No piece of the work is left in the scratch folder either.
        EXPECT_EQ(QDir(scratchFolderOf(live)).entryList(QDir::Files | QDir::Hidden), QStringList())
            << c.op.name;
    }
}
