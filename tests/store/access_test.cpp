#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <optional>

#include "store/connectionstring.h"
#include "store/encode.h"
#include "store/jetdate.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

// Readable failure output for texts.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << s.toStdString();
}

using namespace tarvel;

namespace {

// Account 1 with contact 1 (张, unticked, born 1980-2-29); contact 2 (李, ticked) alone.
class Access : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* sql :
             {"INSERT INTO accounts (acc_name, acc_industry) VALUES ('甲公司', 'IT')",
              "INSERT INTO contacts (con_lastname, con_check, con_birthday) VALUES ('张', 0, "
              "#1980-2-29#)",
              "INSERT INTO contacts (con_lastname, con_check) VALUES ('李', -1)",
              "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)"}) {
            db.Execute(QString::fromUtf8(sql));
            ASSERT_EQ(db.ErrMsg().toStdString(), "") << sql;
        }
    }
    // The first row's values as text, joined by '|'.
    QString row(const QString& sql) {
        RecordsetPtr rs = db.GetReadRs(sql);
        QStringList out;
        for (int i = 0; rs && !rs->Eof() && i < rs->FieldCount(); ++i)
            out << rs->value(i).toString();
        return rs && !rs->Eof() ? out.join('|') : QStringLiteral("<none>");
    }
    tarvel::testing::TempDataFile file;
    tarveldatabase db;
};

}  // namespace

TEST_F(Access, CursorWalksLikeAStaticCursor) {
    RecordsetPtr rs = db.GetReadRs("SELECT con_id, con_lastname FROM contacts ORDER BY con_id");
    ASSERT_EQ(rs->State(), adStateOpen);
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_FALSE(rs->Bof());
    EXPECT_EQ(rs->Fields("CON_LASTNAME").Value().toString(), QStringLiteral("张"));
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(1).Value().toString(), QStringLiteral("李"));
    EXPECT_FALSE(rs->Eof());
    rs->MoveNext();
    EXPECT_TRUE(rs->Eof());
    EXPECT_FALSE(rs->MoveNext());  // past the end is an error, not a crash
    rs->MovePrevious();
    EXPECT_EQ(rs->value(0).toInt(), 2);
    rs->MoveFirst();
    rs->MovePrevious();
    EXPECT_TRUE(rs->Bof());
    rs->MoveLast();
    EXPECT_EQ(rs->value(0).toInt(), 2);

    RecordsetPtr empty = db.GetReadRs("SELECT * FROM contacts WHERE con_id=0");
    EXPECT_TRUE(empty->Eof() && empty->Bof());
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_GT(empty->FieldCount(), 30);
}

TEST_F(Access, AddNewNumbersTheKeyAndReadsItBack) {
    RecordsetPtr rs = db.GetWriteRs("SELECT * FROM contacts WHERE con_id=0");
    ASSERT_TRUE(rs->AddNew());
    rs->Fields("con_id") = 0;  // 0 or less: let the engine number it
    rs->Fields("con_lastname") = QStringLiteral("O'Brien");
    rs->Fields("con_create_date") = QDate(2026, 1, 2);
    rs->Fields("con_birthday") = QStringLiteral("1900-1-1");  // a date given as text
    rs->Fields("con_check") = true;
    ASSERT_TRUE(rs->Update()) << rs->ErrorDescription().toStdString();
    EXPECT_EQ(rs->value("con_id").toInt(), 3);
    rs->MovePrevious();
    rs->MoveNext();
    EXPECT_EQ(rs->value("con_id").toInt(), 3);
    EXPECT_EQ(row("SELECT con_lastname, con_check, con_create_date, con_birthday FROM contacts "
                  "WHERE con_id=3"),
              "O'Brien|-1|2026-01-02T00:00:00.000Z|1900-01-01T00:00:00.000Z");

    // Keys are never reused, even after the newest row is deleted.
    db.Execute("DELETE * FROM contacts WHERE con_id=3");
    RecordsetPtr again = db.GetWriteRs("SELECT * FROM contacts WHERE con_id=0");
    again->AddNew();
    again->Fields("con_lastname") = QStringLiteral("王");
    ASSERT_TRUE(again->Update());
    EXPECT_EQ(again->value("con_id").toInt(), 4);
}

TEST_F(Access, EditsThroughTheStoredQueryGoToContacts) {
    RecordsetPtr rs = db.GetWriteRs("SELECT * FROM que_contacts_accounts WHERE con_id=1");
    ASSERT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->value("acc_name").toString(), QStringLiteral("甲公司"));
    rs->Fields("con_lastname") = QStringLiteral("张三");
    rs->Fields("con_check") = -1;
    ASSERT_TRUE(rs->Update()) << rs->ErrorDescription().toStdString();
    EXPECT_EQ(row("SELECT con_lastname, con_check, acc_name FROM contacts, accounts WHERE "
                  "con_id=1 AND acc_id=1"),
              "张三|-1|甲公司");
}

TEST_F(Access, DeleteFindAndReadOnly) {
    RecordsetPtr rs = db.GetWriteRs("SELECT * FROM accounts_contacts");
    ASSERT_TRUE(rs->Find("con_id=1"));
    ASSERT_FALSE(rs->Eof());
    ASSERT_TRUE(rs->Delete());  // a link row has no key: found by its values
    EXPECT_EQ(rs->RecordCount(), 0);
    EXPECT_EQ(row("SELECT COUNT(*) FROM accounts_contacts"), "0");

    RecordsetPtr people = db.GetReadRs("SELECT * FROM contacts ORDER BY con_id");
    people->Find(QStringLiteral("con_lastname='李'"));
    EXPECT_EQ(people->value("con_id").toInt(), 2);
    people->MoveFirst();
    people->Find("con_id=9");
    EXPECT_TRUE(people->Eof());
    people->MoveFirst();
    EXPECT_FALSE(people->setValue(1, "x"));  // read-only
    EXPECT_FALSE(people->ErrorDescription().isEmpty());
}

TEST_F(Access, FailuresAreQuietAndCollected) {
    EXPECT_EQ(db.GetReadRs(QString()), nullptr);
    EXPECT_EQ(db.GetWriteRs(QString()), nullptr);
    RecordsetPtr bad = db.GetReadRs("SELEC * FROM contacts");
    ASSERT_NE(bad, nullptr);
    EXPECT_EQ(bad->State(), adStateClosed);
    db.Execute("UPDATE nowhere SET x=1");
    const QStringList errors = db.ErrMsg().split(" ; ");
    ASSERT_EQ(errors.size(), 2);
    EXPECT_TRUE(errors[0].contains("nowhere"));  // newest first
    // The yes/no rule is enforced by the file itself.
    tarveldatabase other;
    other.Execute("UPDATE contacts SET con_check=1");
    EXPECT_FALSE(other.ErrMsg().isEmpty());
}

TEST_F(Access, TraceKeepsTheCallersText) {
    trace::clear();
    trace::setEnabled(true);
    db.Execute("DELETE * FROM accounts_contacts WHERE acc_id=1");
    db.GetReadRs("SELECT * FROM tasks WHERE tas_date=#2026-5-4#");
    trace::setEnabled(false);
    EXPECT_EQ(trace::statements(), QStringList({"DELETE * FROM accounts_contacts WHERE acc_id=1",
                                                "SELECT * FROM tasks WHERE tas_date=#2026-5-4#"}));
}

TEST_F(Access, ClosingEveryHandleLetsTheFileBeReplaced) {
    RecordsetPtr kept = db.GetReadRs("SELECT con_lastname FROM contacts");
    closeAllHandles();
    EXPECT_EQ(kept->RecordCount(), 2);  // rows stay readable after their handle is gone
    ASSERT_TRUE(QFile::remove(file.path()));
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), file.path()));
    EXPECT_EQ(row("SELECT COUNT(*) FROM contacts"), "0");
}

TEST(ConnectionString, BuiltAndParsed) {
    const QString folder = QDir::toNativeSeparators("/opt/tarvel;v3");
    // The password read back opens every test's data file; the folder may hold a ';'.
    const ConnectionInfo info = parseConnectionString(buildConnectionString(folder));
    ASSERT_TRUE(info.valid);
    EXPECT_EQ(info.dataSource, folder + QDir::separator() + "mydata3.tvg");
    EXPECT_FALSE(parseConnectionString("Provider=x;Data Source= /a").valid);
}

TEST(SafeSqlAndEncode, QuotesAndDigests) {
    tarveldatabase db;
    db.setStrSql("O'Brien's ''");
    EXPECT_EQ(db.SafeSql(), "O''Brien''s ''''");
    EXPECT_EQ(encode().MD5(QString()), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(encode().MD5("abcdef"), "e80b5017098950fc58aad83c8c14978e");
    EXPECT_EQ(encode().MD5(QStringLiteral("密码")),
              "a8105204604a0b11e916f3879aae3b0b");  // over UTF-8 bytes
}

TEST(DataFileCheck, OnlyATarvelFileOpensAndNoneIsTouched) {
    // Missing, empty and junk files are each reported as such and left as they were.
    const struct {
        const char* name;
        std::optional<QByteArray> content;
        const char* message;
    } cases[] = {{"missing", std::nullopt, "数据文件不存在"},
                 {"empty", QByteArray(), "不是 Tarvel 数据文件"},
                 {"junk", QByteArray(4096, 'x'), "不是 Tarvel 数据文件"}};
    for (const auto& c : cases) {
        QTemporaryDir dir;
        const QString path = dir.filePath("mydata3.tvg");
        if (c.content) {
            QFile f(path);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(*c.content);
        }
        setGlobalConnectionString(buildConnectionString(dir.path()));
        tarveldatabase db;
        EXPECT_EQ(db.GetReadRs("SELECT * FROM setting")->State(), adStateClosed) << c.name;
        EXPECT_TRUE(db.ErrMsg().contains(QString::fromUtf8(c.message)))
            << c.name << ": " << db.ErrMsg().toStdString();
        EXPECT_EQ(QFile::exists(path), c.content.has_value()) << c.name;
        EXPECT_EQ(QFileInfo(path).size(), c.content ? c.content->size() : 0) << c.name;
    }
    setGlobalConnectionString(QString());
}

TEST_F(Access, FieldNamesResolveInOnePlace) {
    RecordsetPtr rs = db.GetReadRs(
        "SELECT c.con_id, c.con_lastname AS [t.nick], c.con_nickname AS [u.nick], "
        "c.con_lastname AS LastName, a.acc_name, 1 AS Two, 2 AS two FROM contacts c "
        "LEFT JOIN accounts_contacts l ON l.con_id = c.con_id "
        "LEFT JOIN accounts a ON a.acc_id = l.acc_id");
    ASSERT_EQ(rs->State(), adStateOpen) << db.ErrMsg().toStdString();
    const std::pair<const char*, int> names[] = {
        {"con_id", 0},                 // exact
        {"CON_ID", 0},                 // any case
        {"two", 6},                    // exact wins over an earlier name in another case
        {"TWO", 5},                    // else the first in any case
        {"nick", 1},                   // bare name of a qualified column, the first one
        {"U.NICK", 2},                 // the qualified name itself
        {"lastname", 3},               // a name in any case wins over a bare name
        {"contacts.con_lastname", 1},  // base table and column, the first one
        {"accounts.acc_name", 4},      //
        {"accounts.con_id", -1},       // no such column in that table
        {"con_nickname", -1},          // renamed by the query
        {"", -1},
    };
    for (const auto& [name, index] : names) EXPECT_EQ(rs->fieldIndex(name), index) << name;
}

TEST_F(Access, AnEditOverTwoTablesWritesBothOrNeither) {
    const char* joined =
        "SELECT c.con_id, c.con_lastname, a.acc_id, a.acc_name FROM contacts c "
        "INNER JOIN accounts_contacts l ON l.con_id = c.con_id "
        "INNER JOIN accounts a ON a.acc_id = l.acc_id";
    RecordsetPtr rs = db.GetWriteRs(joined);
    ASSERT_EQ(rs->RecordCount(), 1);
    rs->Fields("con_lastname") = QStringLiteral("张三");
    rs->Fields("acc_name") = QStringLiteral("乙公司");
    ASSERT_TRUE(rs->Update()) << rs->ErrorDescription().toStdString();
    EXPECT_EQ(row("SELECT con_lastname FROM contacts WHERE con_id=1"), "张三");
    EXPECT_EQ(row("SELECT acc_name FROM accounts WHERE acc_id=1"), "乙公司");
    EXPECT_EQ(rs->value("acc_name").toString(), "乙公司");

    // The account goes away behind the recordset's back: the contact keeps its name too.
    db.Execute("DELETE * FROM accounts WHERE acc_id=1");
    rs->Fields("con_lastname") = QStringLiteral("张四");
    rs->Fields("acc_name") = QStringLiteral("丙公司");
    EXPECT_FALSE(rs->Update());
    EXPECT_FALSE(rs->ErrorDescription().isEmpty());
    EXPECT_EQ(row("SELECT con_lastname FROM contacts WHERE con_id=1"), "张三");
}

TEST_F(Access, RecordsAreReachedByPositionAcrossAddsAndDeletes) {
    db.Execute("INSERT INTO contacts (con_lastname) VALUES ('王')");
    RecordsetPtr rs = db.GetWriteRs("SELECT con_id, con_lastname FROM contacts ORDER BY con_id");
    ASSERT_EQ(rs->RecordCount(), 3);
    rs->MoveNext();
    ASSERT_TRUE(rs->Delete());  // 李
    ASSERT_TRUE(rs->AddNew());
    rs->Fields("con_lastname") = QStringLiteral("赵");
    ASSERT_TRUE(rs->Update());
    EXPECT_EQ(rs->AbsolutePosition(), 3);
    const char* expected[] = {"张", "王", "赵"};
    for (int record = 0; record < 3; ++record)
        EXPECT_EQ(rs->valueAt(record, 1).toString(), QString::fromUtf8(expected[record]));
    EXPECT_TRUE(rs->valueAt(3, 1).isNull());
    EXPECT_TRUE(rs->valueAt(0, 2).isNull());
    ASSERT_TRUE(rs->setAbsolutePosition(2));
    EXPECT_EQ(rs->value(1).toString(), "王");
    EXPECT_EQ(rs->AbsolutePosition(), 2);
    EXPECT_FALSE(rs->setAbsolutePosition(4));
    EXPECT_EQ(rs->AbsolutePosition(), 2);
}

TEST(PageCache, HoldsTheWholeFileWithinBounds) {
    const std::pair<qint64, int> sizes[] = {
        {8 << 20, 16 * 1024}, {80 << 20, 100 * 1024}, {qint64(4) << 30, 256 * 1024}};
    for (const auto& [bytes, kib] : sizes) EXPECT_EQ(pageCacheKiB(bytes), kib) << bytes;
}

TEST_F(Access, EveryKindOfCellComesBackAsStored) {
    // Integers at the edges of the 32-bit range, reals, empty text apart from
    // null, bytes with a zero, text beyond ASCII; two rows, so that cells of the
    // second row are found past the first row's payloads.
    RecordsetPtr rs = db.GetReadRs(
        "SELECT 0 AS a, -1 AS b, 2147483647 AS c, -2147483648 AS d, 2147483648 AS e, "
        "-9223372036854775807 AS f, 1.5 AS g, '' AS h, NULL AS i, x'00ff' AS j, '张三é' AS k "
        "UNION ALL SELECT 1, 2, 3, 4, 5, 6, -0.25, 'x', 'y', x'', NULL");
    ASSERT_EQ(rs->RecordCount(), 2) << db.ErrMsg().toStdString();
    const QVariant first[] = {0,
                              -1,
                              2147483647,
                              -2147483647 - 1,
                              qlonglong(2147483648LL),
                              qlonglong(-9223372036854775807LL),
                              1.5,
                              QString(""),
                              QVariant(),
                              QByteArray("\0\xff", 2),
                              QStringLiteral("张三é")};
    const QVariant second[] = {
        1, 2, 3, 4, 5, 6, -0.25, QString("x"), QString("y"), QByteArray(), QVariant()};
    for (int i = 0; i < 11; ++i) {
        for (const auto& [record, expected] : {std::pair{0, first[i]}, std::pair{1, second[i]}}) {
            const QVariant got = rs->valueAt(record, i);
            EXPECT_EQ(got, expected) << "record " << record << " column " << i;
            EXPECT_EQ(got.isNull(), expected.isNull()) << "record " << record << " column " << i;
        }
    }
    // A date in its stored form comes back as a date; other text stays text.
    RecordsetPtr dates = db.GetReadRs("SELECT '2024-03-05 09:30:00', '2024-3-5 9:30'");
    EXPECT_EQ(dates->value(0), QVariant(jetdate::naive(QDate(2024, 3, 5), QTime(9, 30))));
    EXPECT_EQ(dates->value(1), QVariant(QStringLiteral("2024-3-5 9:30")));
}
