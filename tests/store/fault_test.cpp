// Faults a user meets, told in plain words that say what happened and what to
// do: a damaged page, a read-only file or folder, a full disk. Each is made for
// real on a copy of a data file. (A folder path longer than the engine opens is
// told through the login window and tarvel-io, whose tests make one.)
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "store/connectionstring.h"
#include "store/faulttext.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

// What the user must read for each fault: what happened and what to do.
struct Told {
    const char* happened;
    const char* todo;
};
constexpr Told kDamaged{"数据文件已损坏", "备份恢复"};
constexpr Told kReadOnly{"只读", "复制到可以写入的位置"};
constexpr Told kFull{"磁盘已满", "腾出磁盘空间"};

::testing::AssertionResult says(const QString& text, const Told& told) {
    if (text.contains(QString::fromUtf8(told.happened)) &&
        text.contains(QString::fromUtf8(told.todo)))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "told: " << text.toStdString();
}

// A file system mounted for one test and unmounted after it. Mounting needs
// root (as in CI); elsewhere the test that needs it is skipped.
class Mount {
public:
    Mount(const QString& where, const QStringList& how) : where_(where) {
        QDir().mkpath(where);
        ok_ = ::geteuid() == 0 && QProcess::execute("mount", how + QStringList{where}) == 0;
    }
    ~Mount() {
        if (ok_) QProcess::execute("umount", {where_});
    }
    bool ok() const { return ok_; }

private:
    QString where_;
    bool ok_ = false;
};

// Fills the contacts table through the engine alone.
void addContacts(const QString& connectionString, int rows) {
    QString error;
    auto h = acquireHandle(connectionString, &error);
    ASSERT_TRUE(h) << error.toStdString();
    ASSERT_TRUE(
        h->exec(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM "
                               "n WHERE i<%1) INSERT INTO contacts (con_lastname, "
                               "con_description) SELECT '联系人' || i, hex(randomblob(200)) "
                               "FROM n")
                    .arg(rows),
                &error))
        << error.toStdString();
    closeAllHandles();
}

}  // namespace

TEST(PlainFault, EveryEngineFaultSaysWhatHappenedAndWhatToDo) {
    const struct {
        int code;
        Told told;
    } cases[] = {
        {SQLITE_CORRUPT, kDamaged},
        {SQLITE_NOTADB, kDamaged},
        {SQLITE_READONLY, kReadOnly},
        {SQLITE_FULL, kFull},
    };
    for (const auto& c : cases) {
        const QString engine = QString::fromUtf8(sqlite3_errstr(c.code));
        const QString plain = plainFault(engine);
        EXPECT_TRUE(says(plain, c.told)) << engine.toStdString();
        EXPECT_FALSE(plain.contains(engine)) << engine.toStdString();
    }
    // What the file system says when a copy fails.
    EXPECT_TRUE(says(plainWriteFault(QString::fromLocal8Bit(strerror(ENOSPC))), kFull));
    EXPECT_TRUE(says(plainWriteFault(QString::fromLocal8Bit(strerror(EROFS))), kReadOnly));
    EXPECT_TRUE(says(plainWriteFault(QStringLiteral("Unknown error")), kFull));
    // Other faults keep the engine's words; an unnamed one is no full disk elsewhere.
    for (const QString& other :
         {QString::fromUtf8(sqlite3_errstr(SQLITE_CONSTRAINT)), QStringLiteral("Unknown error"),
          QStringLiteral("no such table: contacts")})
        EXPECT_EQ(plainFault(other), other);
}

TEST(Faults, AFlippedPageIsCalledDamagedAndTheBackupOffered) {
    tarvel::testing::TempDataFile file;
    addContacts(file.connectionString(), 2000);
    {
        // Garbage over a page in the middle of the contacts.
        QFile f(file.path());
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        const qint64 page = 1024;
        f.seek((f.size() / page / 2) * page + 100);
        f.write(QByteArray(300, '\x5A'));
    }
    tarveldatabase db;
    db.GetReadRs(QStringLiteral("SELECT con_lastname, con_description FROM contacts"));
    EXPECT_TRUE(says(db.ErrMsg(), kDamaged));
    EXPECT_FALSE(db.ErrMsg().contains("malformed")) << db.ErrMsg().toStdString();
}

TEST(Faults, AReadOnlyFolderIsToldAtOpenAndAtAWrite) {
    tarvel::testing::TempDataFile file;
    const QString view = file.folder() + "-ro";
    // A read-only view of the folder: permission bits do not stop root.
    Mount bind(view, {"--bind", file.folder()});
    if (!bind.ok()) GTEST_SKIP() << "needs root to mount a read-only view of a folder";
    ASSERT_EQ(QProcess::execute("mount", {"-o", "remount,ro,bind", view}), 0);
    const QString live = QDir(view).filePath("mydata3.tvg");
    EXPECT_EQ(writeProblem(file.path()), QString());
    EXPECT_TRUE(says(writeProblem(live), kReadOnly));
    setGlobalConnectionString(connectionStringFor(live));
    tarveldatabase db;
    // It still reads...
    EXPECT_EQ(db.GetReadRs(QStringLiteral("SELECT COUNT(*) FROM contacts"))->value(0).toInt(), 0);
    // ...and a write says why it cannot be saved.
    db.Execute(QStringLiteral("INSERT INTO contacts (con_lastname) VALUES ('张三')"));
    EXPECT_TRUE(says(db.ErrMsg(), kReadOnly));
    EXPECT_FALSE(db.ErrMsg().contains("readonly")) << db.ErrMsg().toStdString();
    closeAllHandles();
}

TEST(Faults, AFullDiskSaysSoAndTheFileStaysWhole) {
    QTemporaryDir dir;
    const QString small = dir.filePath("small");
    Mount tmpfs(small, {"-t", "tmpfs", "-o", "size=320k", "tmpfs"});
    if (!tmpfs.ok()) GTEST_SKIP() << "needs root to mount a small file system";
    const QString live = QDir(small).filePath("mydata3.tvg");
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), live));
    setGlobalConnectionString(connectionStringFor(live));
    tarveldatabase db;
    db.Execute(
        QStringLiteral("INSERT INTO contacts (con_lastname, con_description) VALUES ('大', "
                       "hex(randomblob(300000)))"));
    EXPECT_TRUE(says(db.ErrMsg(), kFull));
    EXPECT_FALSE(db.ErrMsg().contains("full")) << db.ErrMsg().toStdString();
    closeAllHandles();
    // Opened afresh, it passes the engine's check.
    EXPECT_EQ(tarveldatabase().GetReadRs(QStringLiteral("PRAGMA integrity_check"))->value(0), "ok");
    closeAllHandles();
    setGlobalConnectionString(QString());
}
