#include "exchange/backup.h"

#include <QFileInfo>

#include "custom/softwaresetting.h"
#include "exchange/filetools.h"
#include "exchange/reportexport.h"
#include "store/sqlitehandle.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

class Backup : public ExchangeFixture {
protected:
    // Temporary files of backup and restore left in the program folder or
    // in its scratch folder.
    QStringList leftovers() {
        return QDir(file.folder())
                   .entryList({"*.tmp", "*.mdb", "temp.tbk", "*.part"}, QDir::Files) +
               QDir(inFolder(".tarvel-tmp")).entryList(QDir::Files | QDir::Hidden);
    }
    QString backupSetting() {
        SoftwareSetting s;
        s.GetValue("software", "backupdate");
        return s.Set_Value();
    }
};

}  // namespace

TEST(BackupNames, NumbersWithoutLeadingZeros) {
    const struct {
        QDateTime at;
        const char *compacted, *offered, *safety;
    } cases[] = {
        {QDateTime(QDate(2026, 8, 5), QTime(9, 7)), "2026-8-5-9-7.tmp",
         "Tarvel数据备份文件2026-8-5.tbk", "tmpbackup2026-8-5-9-7.tbk"},
        {QDateTime(QDate(2024, 1, 10), QTime(0, 0)), "2024-1-10-0-0.tmp",
         "Tarvel数据备份文件2024-1-10.tbk", "tmpbackup2024-1-10-0-0.tbk"},
    };
    for (const auto& c : cases) {
        const BackupNames n = BackupNames::at("/p", c.at);
        EXPECT_EQ(n.compacted, QString("/p/.tarvel-tmp/") + QString::fromUtf8(c.compacted));
        EXPECT_EQ(n.offered, QString("/p/") + QString::fromUtf8(c.offered));
        EXPECT_EQ(n.safetyCopy, QString("/p/") + QString::fromUtf8(c.safety));
    }
}

TEST_F(Backup, WritesACompactedFileThatOpensWithThePassword) {
    fillSample();
    QDir(file.folder()).mkdir("备份");
    const QString target = inFolder("备份/周一's.tbk");
    QList<int> steps;
    const Outcome out = backupTo(target, [&](int p) { return steps << p, true; });
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    EXPECT_EQ(out.path, target);
    EXPECT_EQ(sqlcipherRows(target, "SELECT con_lastname FROM contacts ORDER BY con_id"),
              QStringList({"张三", "李四", "王五", "赵六"}));
    EXPECT_EQ(sqlcipherRows(target, "PRAGMA integrity_check"), QStringList{"ok"});
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(",").toStdString();
    EXPECT_EQ(backupSetting(), "2026-8-5");
    ASSERT_FALSE(steps.isEmpty());
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_EQ(steps.last(), 100);
}

TEST_F(Backup, BlankNameChangesNothing) {
    EXPECT_TRUE(backupTo("  ").ok);
    EXPECT_TRUE(restoreFrom("").ok);
    EXPECT_EQ(backupSetting().trimmed(), "");
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(Backup, CancellingLeavesNoFileUnderTheChosenName) {
    const QString target = inFolder("x.tbk");
    for (int stopAt : {10, 50, 90}) {
        const Outcome out = backupTo(target, [&](int p) { return p < stopAt; });
        EXPECT_TRUE(out.cancelled) << stopAt;
        EXPECT_FALSE(QFileInfo::exists(target)) << stopAt;
        EXPECT_TRUE(leftovers().isEmpty()) << stopAt;
    }
}

TEST_F(Backup, RestorePutsTheBackupBackAndKeepsASafetyCopy) {
    fillSample();
    const QString target = inFolder("b.tbk");
    ASSERT_TRUE(backupTo(target).ok);
    run("DELETE * FROM contacts WHERE con_id > 1");
    run("INSERT INTO contacts (con_lastname) VALUES ('新人')");
    const Outcome out = restoreFrom(target);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    EXPECT_EQ(out.path, inFolder("tmpbackup2026-8-5-9-7.tbk"));
    // The program's own handles reopen on the restored file.
    EXPECT_EQ(column("SELECT con_lastname FROM contacts ORDER BY con_id"),
              QStringList({"张三", "李四", "王五", "赵六"}));
    EXPECT_EQ(sqlcipherRows(out.path, "SELECT con_lastname FROM contacts ORDER BY con_id"),
              QStringList({"张三", "新人"}));
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(Backup, RestoreRefusesFilesThatAreNotItsDataFiles) {
    fillSample();
    exchange_test::writeBytes(inFolder("text.tbk"),
                              "not a database at all, but long enough to look like a page of one");
    QString error;
    {  // keyed with another password
        auto h = Handle::open(inFolder("otherkey.tbk"), "other", true, &error);
        ASSERT_TRUE(h && h->exec("CREATE TABLE contacts (con_id INTEGER)", &error));
    }
    // The right password, but not this program's tables.
    ASSERT_EQ(
        sqlcipherRows(inFolder("foreign.tbk"), "CREATE TABLE contacts (con_id INTEGER); SELECT 1"),
        QStringList({"1"}));
    const QByteArray before = exchange_test::fileBytes(file.path());
    for (const char* name : {"text.tbk", "otherkey.tbk", "foreign.tbk", "missing.tbk"}) {
        const Outcome out = restoreFrom(inFolder(name));
        EXPECT_FALSE(out.ok) << name;
        EXPECT_TRUE(out.ErrMsg.startsWith("不能恢复该文件，当前数据没有改动"))
            << out.ErrMsg.toStdString();
        EXPECT_EQ(exchange_test::fileBytes(file.path()), before) << name;
    }
    EXPECT_EQ(rows("contacts"), 4);
    EXPECT_TRUE(QDir(file.folder()).entryList({"tmpbackup*"}).isEmpty());
}

TEST_F(Backup, CopiesNoHalfFinishedTransaction) {
    fillSample();
    run("UPDATE contacts SET con_description='a long note to fill pages'");
    for (int i = 0; i < 9; ++i)
        run("INSERT INTO contacts (con_lastname, con_description) SELECT con_lastname, "
            "con_description FROM contacts");
    const int contacts = rows("contacts");
    closeAllHandles();
    // Another program dies in the middle of a large delete: its changes are
    // partly in the file, the old pages in the journal beside it.
    QProcess other;
    other.start("sqlcipher", {"-batch", file.path()});
    other.write(QString("PRAGMA key='%1';\nPRAGMA cache_size=2;\nBEGIN;\nDELETE FROM "
                        "contacts;\nSELECT 'ready';\n")
                    .arg(schema::kDatabasePassword)
                    .toUtf8());
    ASSERT_TRUE(other.waitForReadyRead(30000));
    other.kill();
    other.waitForFinished();
    ASSERT_TRUE(QFileInfo::exists(file.path() + "-journal"));
    const QString target = inFolder("b.tbk");
    ASSERT_TRUE(backupTo(target).ok);
    EXPECT_EQ(sqlcipherRows(target, "SELECT COUNT(*) FROM contacts"),
              QStringList{QString::number(contacts)});
    EXPECT_EQ(sqlcipherRows(target, "PRAGMA integrity_check"), QStringList{"ok"});
}

TEST_F(Backup, RestoreThroughASymbolicLinkReplacesTheFileItPointsTo) {
    fillSample();
    const QString backup = inFolder("b.tbk");
    ASSERT_TRUE(backupTo(backup).ok);
    run("INSERT INTO contacts (con_lastname) VALUES ('后来')");
    closeAllHandles();
    // The data file lives elsewhere; the program folder holds a link to it.
    QDir(file.folder()).mkdir("真实位置");
    const QString real = inFolder("真实位置/mydata3.tvg");
    ASSERT_TRUE(QFile::rename(file.path(), real));
    ASSERT_TRUE(QFile::link(real, file.path()));
    const Outcome out = restoreFrom(backup);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    EXPECT_TRUE(QFileInfo(file.path()).isSymLink());
    EXPECT_EQ(QFileInfo(file.path()).symLinkTarget(), real);
    EXPECT_EQ(sqlcipherRows(real, "SELECT COUNT(*) FROM contacts"), QStringList{"4"});
    // The safety copy holds what the real file held.
    EXPECT_EQ(sqlcipherRows(out.path, "SELECT COUNT(*) FROM contacts"), QStringList{"5"});
    EXPECT_TRUE(
        QDir(inFolder("真实位置/.tarvel-tmp")).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST_F(Backup, NamesAtTheFileNameLimitWork) {
    fillSample();
    completeProfile();
    // 251 bytes with the extension: three-byte characters and ASCII.
    const struct {
        const char* extension;
        std::function<Outcome(const QString&)> write;
    } cases[] = {
        {".tbk", [](const QString& to) { return backupTo(to); }},
        {".tvr3", [](const QString& to) { return exportReport(3, to); }},
    };
    for (const auto& c : cases) {
        QString name = QString(80, QChar(u'报'));
        while (name.toUtf8().size() + int(strlen(c.extension)) < 251) name += 'a';
        name += c.extension;
        const Outcome out = c.write(inFolder(name));
        ASSERT_TRUE(out.ok) << c.extension << out.ErrMsg.toStdString();
        EXPECT_EQ(sqlcipherRows(inFolder(name), "PRAGMA integrity_check"), QStringList{"ok"});
    }
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(",").toStdString();
}

TEST_F(Backup, WhatAKilledRunLeftIsRemovedAtTheNextStart) {
    fillSample();
    const QString scratch = scratchFolderOf(file.path());
    ASSERT_TRUE(QDir().mkpath(scratch));
    for (const char* name : {"tmp.mdb", "2026-8-5-9-7.tmp", ".tarvel-Ab12Cd.part",
                             ".tarvel-Ab12Cd.part-journal", "tdb.tmp", "temp.tbk"})
        exchange_test::writeBytes(QDir(scratch).filePath(name), QByteArray(4096, 'x'));
    cleanScratchFolder(file.path());
    EXPECT_EQ(QDir(scratch).entryList(QDir::Files | QDir::Hidden), QStringList());
    // The data file and the user's own files are left alone.
    EXPECT_EQ(rows("contacts"), 4);
}
