#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"
#include "tools/datafile.h"
#include "tools/sqlshell.h"

using namespace tarvel;

namespace {

struct ShellRun {
    int code;
    QString out;
    QString err;
};

ShellRun shell(const QStringList& args, const QString& folder, const QString& input = QString()) {
    QString in = input, out, err;
    QTextStream inStream(&in), outStream(&out), errStream(&err);
    const int code = runSqlShell(args, folder, inStream, outStream, errStream);
    outStream.flush();
    errStream.flush();
    return {code, out, err};
}

int count(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    return rs && !rs->Eof() ? rs->value(0).toInt() : -1;
}

}  // namespace

TEST(DataFile, IsEncryptedAndShipsItsRows) {
    tarvel::testing::TempDataFile file;
    QFile raw(file.path());
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    EXPECT_FALSE(raw.read(16).startsWith("SQLite format 3"));
    QString error;
    EXPECT_FALSE(Handle::open(file.path(), QStringLiteral("wrong"), false, &error));
    EXPECT_FALSE(error.isEmpty());

    // Five modules, three separators and twenty related panels.
    EXPECT_EQ(count(QStringLiteral("SELECT COUNT(*) FROM interface WHERE object_type=2")), 20);
    EXPECT_EQ(
        count(QStringLiteral("SELECT COUNT(*) FROM interface WHERE object_name LIKE 'sepline%'")),
        3);
    EXPECT_EQ(
        count(QStringLiteral(
            "SELECT COUNT(*) FROM options WHERE opt_object='opp' AND opt_name='probability'")),
        11);
    for (int type = 1; type <= 5; ++type)
        EXPECT_GT(
            count(QStringLiteral("SELECT COUNT(*) FROM fields WHERE fie_type=%1 AND fie_visible<>0")
                      .arg(type)),
            2);
    const char* sections[] = {"login", "personal", "software", "mail",
                              "ads",   "website",  "model_pp"};
    for (const char* s : sections)
        EXPECT_GT(count(QStringLiteral("SELECT COUNT(*) FROM setting WHERE set_type='%1'")
                            .arg(QLatin1String(s))),
                  0)
            << s;
    EXPECT_FALSE(datafile::create(file.path(), &error));  // never overwrites
}

TEST(SqlShell, PrintsRowsChangesAndErrors) {
    tarvel::testing::TempDataFile file;
    const QString db = file.path();
    ShellRun r = shell(
        {QStringLiteral("--db"), db, QStringLiteral("-c"),
         QStringLiteral("INSERT INTO tasks (tas_subject, tas_date, tas_outlay) VALUES "
                        "('会议', #2024-2-29#, 12.5)"),
         QStringLiteral("-c"),
         QStringLiteral("SELECT tas_id, tas_subject, tas_date, tas_outlay, tas_time FROM tasks")},
        QString());
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("OK 1\ntas_id\ttas_subject\ttas_date\ttas_outlay\ttas_time\n"
                                    "1\t会议\t2024-02-29 00:00:00\t12.5\tNULL\n"));

    // Statements from standard input, in the folder's default file; the first error stops.
    r = shell(
        {}, file.folder(),
        QStringLiteral("DELETE * FROM tasks\nSELECT nonsense FROM tasks\nDELETE * FROM tasks\n"));
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, QStringLiteral("OK 1\n"));
    EXPECT_TRUE(r.err.startsWith(QStringLiteral("error: "))) << r.err.toStdString();

    QTemporaryDir dir;
    QFile junk(dir.filePath(QStringLiteral("mydata3.tvg")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    r = shell({QStringLiteral("-c"), QStringLiteral("SELECT 1")}, dir.path());
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("不是 Tarvel 数据文件")));

    const QString created = dir.filePath(QStringLiteral("new.tvg"));
    EXPECT_EQ(shell({QStringLiteral("--create"), created}, QString()).code, 0);
    EXPECT_EQ(shell({QStringLiteral("--create"), created}, QString()).code, 1);
}
