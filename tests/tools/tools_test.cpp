#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTextStream>

#include "store/faulttext.h"
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

ShellRun shell(const QStringList& args, const QString& folder, QString in = QString()) {
    QString out, err;
    QTextStream inStream(&in), outStream(&out), errStream(&err);
    const int code = runSqlShell(args, folder, inStream, outStream, errStream);
    outStream.flush();
    errStream.flush();
    return {code, out, err};
}

}  // namespace

TEST(DataFile, IsEncryptedAndShipsItsRows) {
    tarvel::testing::TempDataFile file;
    QFile raw(file.path());
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    EXPECT_FALSE(raw.read(16).startsWith("SQLite format 3"));
    QString error;
    EXPECT_FALSE(Handle::open(file.path(), "wrong", false, &error));
    EXPECT_FALSE(error.isEmpty());

    // Twenty related panels, three separators, probabilities 0 to 100, more than two visible
    // columns in each of the five lists, every settings section.
    const std::pair<const char*, int> shipped[] = {
        {"SELECT COUNT(*) FROM interface WHERE object_type=2", 20},
        {"SELECT COUNT(*) FROM interface WHERE object_name LIKE 'sepline%'", 3},
        {"SELECT COUNT(*) FROM options WHERE opt_object='opp' AND opt_name='probability'", 11},
        {"SELECT COUNT(*) FROM (SELECT fie_type FROM fields WHERE fie_visible<>0 AND fie_type "
         "BETWEEN 1 AND 5 GROUP BY fie_type HAVING COUNT(*) > 2)",
         5},
        {"SELECT COUNT(DISTINCT set_type) FROM setting WHERE set_type IN ('login', 'personal', "
         "'software', 'mail', 'ads', 'website', 'model_pp')",
         7},
    };
    tarveldatabase db;
    for (const auto& [sql, expected] : shipped) {
        RecordsetPtr rs = db.GetReadRs(sql);
        EXPECT_EQ(rs && !rs->Eof() ? rs->value(0).toInt() : -1, expected) << sql;
    }
    EXPECT_FALSE(datafile::create(file.path(), &error));  // never overwrites
}

TEST(SqlShell, PrintsRowsChangesAndErrors) {
    tarvel::testing::TempDataFile file;
    ShellRun r =
        shell({"--db", file.path(), "-c",
               "INSERT INTO tasks (tas_subject, tas_date, tas_outlay) VALUES ('会议', "
               "#2024-2-29#, 12.5)",
               "-c", "SELECT tas_id, tas_subject, tas_date, tas_outlay, tas_time FROM tasks"},
              QString());
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out,
              "OK 1\ntas_id\ttas_subject\ttas_date\ttas_outlay\ttas_time\n"
              "1\t会议\t2024-02-29 00:00:00\t12.5\tNULL\n");

    // Statements from standard input, in the folder's default file; the first error stops.
    r = shell({}, file.folder(),
              "DELETE * FROM tasks\nSELECT nonsense FROM tasks\nDELETE * FROM tasks\n");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "OK 1\n");
    EXPECT_TRUE(r.err.startsWith("error: ")) << r.err.toStdString();

    const QString created = QDir(file.folder()).filePath("new.tvg");
    EXPECT_EQ(shell({"--create", created}, QString()).code, 0);
    EXPECT_EQ(shell({"--create", created}, QString()).code, 1);
}

TEST(SqlShell, TellsFaultsInThePlainWordsOfTheProgram) {
    tarvel::testing::TempDataFile file;
    // A good file in a folder deeper than the engine opens.
    QString deep = file.folder();
    while (deep.toUtf8().size() <= kLongestDataPath) deep += "/" + QString(60, QChar(u'深'));
    ASSERT_TRUE(QDir().mkpath(deep));
    const QString live = QDir(deep).filePath("mydata3.tvg");
    ASSERT_TRUE(QFile::copy(file.path(), live));
    ShellRun r = shell({"--db", live, "-c", "SELECT 1"}, QString());
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains(plainOpenFault(QString(), live))) << r.err.toStdString();
}
