#include "exchange/backup.h"

#include <QFile>
#include <QFileInfo>

#include "custom/softwaresetting.h"
#include "exchange/filetools.h"
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
        {QDateTime(QDate(2025, 12, 31), QTime(23, 59)), "2025-12-31-23-59.tmp",
         "Tarvel数据备份文件2025-12-31.tbk", "tmpbackup2025-12-31-23-59.tbk"},
        {QDateTime(QDate(2024, 1, 10), QTime(0, 0)), "2024-1-10-0-0.tmp",
         "Tarvel数据备份文件2024-1-10.tbk", "tmpbackup2024-1-10-0-0.tbk"},
    };
    for (const auto& c : cases) {
        const BackupNames n = BackupNames::at("/p", c.at);
        EXPECT_EQ(n.compacted, QString("/p/.tarvel-tmp/") + QString::fromUtf8(c.compacted));
        EXPECT_EQ(n.offered, QString("/p/") + QString::fromUtf8(c.offered));
        EXPECT_EQ(n.safetyCopy, QString("/p/") + QString::fromUtf8(c.safety));
        EXPECT_EQ(n.plainCopy, QString("/p/.tarvel-tmp/tmp.mdb"));
        EXPECT_EQ(n.restoreCopy, QString("/p/.tarvel-tmp/temp.tbk"));
        EXPECT_EQ(n.live, QString("/p/mydata3.tvg"));
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
    QFile text(inFolder("text.tbk"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not a database at all, but long enough to look like a page of one");
    text.close();
    QString error;
    {  // keyed with another password
        auto h = Handle::open(inFolder("otherkey.tbk"), "other", true, &error);
        ASSERT_TRUE(h && h->exec("CREATE TABLE contacts (con_id INTEGER)", &error));
    }
    {  // the right password, but not this program's tables
        auto h = Handle::open(inFolder("foreign.tbk"), schema::kDatabasePassword, true, &error);
        ASSERT_TRUE(h && h->exec("CREATE TABLE contacts (con_id INTEGER)", &error));
    }
    const QByteArray before = [&] {
        QFile f(file.path());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    for (const char* name : {"text.tbk", "otherkey.tbk", "foreign.tbk", "missing.tbk"}) {
        const Outcome out = restoreFrom(inFolder(name));
        EXPECT_FALSE(out.ok) << name;
        EXPECT_TRUE(out.ErrMsg.startsWith("不能恢复该文件，当前数据没有改动"))
            << out.ErrMsg.toStdString();
        QFile f(file.path());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        EXPECT_EQ(f.readAll(), before) << name;
    }
    EXPECT_EQ(rows("contacts"), 4);
    EXPECT_TRUE(QDir(file.folder()).entryList({"tmpbackup*"}).isEmpty());
}

TEST_F(Backup, CopiesNoHalfFinishedTransaction) {
    fillSample();
    run("INSERT INTO contacts (con_lastname, con_description) SELECT con_lastname & '再' & 1, "
        "'a long note to fill pages' FROM contacts");
    for (int i = 0; i < 8; ++i)
        run("INSERT INTO contacts (con_lastname, con_description) SELECT con_lastname, "
            "con_description "
            "FROM contacts");
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
