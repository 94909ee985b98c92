#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/encode.h"
#include "store/jetdate.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

class Access : public ::testing::Test {
protected:
    void SetUp() override {
        Clock::setFixed(jetdate::naive(QDate(2026, 5, 4), QTime(10, 30)));
        run("INSERT INTO accounts (acc_name, acc_industry) VALUES ('甲公司', 'IT')");
        run("INSERT INTO contacts (con_lastname, con_check, con_birthday) VALUES ('张', 0, "
            "#1980-2-29#)");
        run("INSERT INTO contacts (con_lastname, con_check) VALUES ('李', -1)");
        run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
    }
    void run(const char* sql) {
        tarveldatabase db;
        db.Execute(QString::fromUtf8(sql));
        ASSERT_TRUE(db.ErrMsg().isEmpty()) << sql << ": " << db.ErrMsg().toStdString();
    }
    QVariant scalar(const QString& sql) {
        tarveldatabase db;
        RecordsetPtr rs = db.GetReadRs(sql);
        return rs && !rs->Eof() ? rs->value(0) : QVariant(QStringLiteral("<none>"));
    }
    tarvel::testing::TempDataFile file;
};

}  // namespace

TEST_F(Access, CursorWalksLikeAStaticCursor) {
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT con_id, con_lastname FROM contacts ORDER BY con_id"));
    ASSERT_EQ(rs->State(), adStateOpen);
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_FALSE(rs->Bof());
    EXPECT_EQ(rs->Fields(QStringLiteral("CON_LASTNAME")).Value().toString(), QStringLiteral("张"));
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(1).Value().toString(), QStringLiteral("李"));
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

    RecordsetPtr empty = db.GetReadRs(QStringLiteral("SELECT * FROM contacts WHERE con_id=0"));
    EXPECT_TRUE(empty->Eof() && empty->Bof());
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_GT(empty->FieldCount(), 30);
}

TEST_F(Access, ValuesKeepNullApartFromEmptyAndTypeDates) {
    run("UPDATE contacts SET con_nickname='' WHERE con_id=1");
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral("SELECT * FROM contacts WHERE con_id=1"));
    EXPECT_TRUE(rs->value(QStringLiteral("con_title")).isNull());
    EXPECT_FALSE(rs->value(QStringLiteral("con_nickname")).isNull());
    EXPECT_EQ(rs->value(QStringLiteral("con_nickname")).toString(), QString());
    EXPECT_EQ(rs->value(QStringLiteral("con_birthday")).toDateTime().date(), QDate(1980, 2, 29));
    EXPECT_EQ(rs->value(QStringLiteral("con_check")).toInt(), 0);
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_check FROM contacts WHERE con_id=2")).toInt(), -1);
}

TEST_F(Access, AddNewNumbersTheKeyAndReadsItBack) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetWriteRs(QStringLiteral("SELECT * FROM contacts WHERE con_id=0"));
    ASSERT_TRUE(rs->AddNew());
    rs->Fields(QStringLiteral("con_id")) = 0;  // 0 or less: let the engine number it
    rs->Fields(QStringLiteral("con_lastname")) = QStringLiteral("O'Brien");
    rs->Fields(QStringLiteral("con_create_date")) = QDate(2026, 1, 2);
    rs->Fields(QStringLiteral("con_check")) = true;
    ASSERT_TRUE(rs->Update()) << rs->ErrorDescription().toStdString();
    EXPECT_EQ(rs->value(QStringLiteral("con_id")).toInt(), 3);
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_lastname FROM contacts WHERE con_id=3")).toString(),
              QStringLiteral("O'Brien"));
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_check FROM contacts WHERE con_id=3")).toInt(), -1);
    EXPECT_EQ(
        scalar(QStringLiteral("SELECT con_create_date FROM contacts WHERE con_id=3")).toDateTime(),
        jetdate::naive(QDate(2026, 1, 2)));

    // Keys are never reused, even after the newest row is deleted.
    run("DELETE * FROM contacts WHERE con_id=3");
    RecordsetPtr again = db.GetWriteRs(QStringLiteral("SELECT * FROM contacts WHERE con_id=0"));
    again->AddNew();
    again->Fields(QStringLiteral("con_lastname")) = QStringLiteral("王");
    ASSERT_TRUE(again->Update());
    EXPECT_EQ(again->value(QStringLiteral("con_id")).toInt(), 4);
}

TEST_F(Access, EditsThroughTheStoredQueryGoToContacts) {
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetWriteRs(QStringLiteral("SELECT * FROM que_contacts_accounts WHERE con_id=1"));
    ASSERT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->value(QStringLiteral("acc_name")).toString(), QStringLiteral("甲公司"));
    rs->Fields(QStringLiteral("con_lastname")) = QStringLiteral("张三");
    rs->Fields(QStringLiteral("con_check")) = -1;
    ASSERT_TRUE(rs->Update()) << rs->ErrorDescription().toStdString();
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_lastname FROM contacts WHERE con_id=1")).toString(),
              QStringLiteral("张三"));
    EXPECT_EQ(scalar(QStringLiteral("SELECT acc_name FROM accounts WHERE acc_id=1")).toString(),
              QStringLiteral("甲公司"));

    // A contact without an account has null account columns.
    RecordsetPtr lone =
        db.GetReadRs(QStringLiteral("SELECT * FROM que_contacts_accounts WHERE acc_name IS NULL"));
    ASSERT_EQ(lone->RecordCount(), 1);
    EXPECT_EQ(lone->value(QStringLiteral("con_id")).toInt(), 2);
    EXPECT_TRUE(lone->value(QStringLiteral("acc_id")).isNull());

    // The check toggle through the query flips contacts.con_check.
    db.Execute(
        QStringLiteral("UPDATE que_contacts_accounts SET con_check= NOT con_check WHERE con_id=2"));
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_check FROM contacts WHERE con_id=2")).toInt(), 0);
    db.Execute(
        QStringLiteral("UPDATE que_contacts_accounts SET con_check= NOT con_check WHERE con_id=2"));
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_check FROM contacts WHERE con_id=2")).toInt(), -1);
}

TEST_F(Access, DeleteFindAndReadOnly) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetWriteRs(QStringLiteral("SELECT * FROM accounts_contacts"));
    ASSERT_TRUE(rs->Find(QStringLiteral("con_id=1")));
    ASSERT_FALSE(rs->Eof());
    ASSERT_TRUE(rs->Delete());  // a link row has no key: found by its values
    EXPECT_EQ(rs->RecordCount(), 0);
    EXPECT_EQ(scalar(QStringLiteral("SELECT COUNT(*) FROM accounts_contacts")).toInt(), 0);

    RecordsetPtr people = db.GetReadRs(QStringLiteral("SELECT * FROM contacts ORDER BY con_id"));
    people->Find(QStringLiteral("con_lastname='李'"));
    EXPECT_EQ(people->value(QStringLiteral("con_id")).toInt(), 2);
    people->MoveFirst();
    people->Find(QStringLiteral("con_id=9"));
    EXPECT_TRUE(people->Eof());
    people->MoveFirst();
    EXPECT_FALSE(people->setValue(1, QStringLiteral("x")));  // read-only
    EXPECT_FALSE(people->ErrorDescription().isEmpty());
}

TEST_F(Access, FailuresAreQuietAndCollected) {
    tarveldatabase db;
    EXPECT_EQ(db.GetReadRs(QString()), nullptr);
    EXPECT_EQ(db.GetWriteRs(QString()), nullptr);
    RecordsetPtr bad = db.GetReadRs(QStringLiteral("SELEC * FROM contacts"));
    ASSERT_NE(bad, nullptr);
    EXPECT_EQ(bad->State(), adStateClosed);
    db.Execute(QStringLiteral("UPDATE nowhere SET x=1"));
    const QStringList errors = db.ErrMsg().split(QStringLiteral(" ; "));
    ASSERT_EQ(errors.size(), 2);
    EXPECT_TRUE(errors[0].contains(QStringLiteral("nowhere")));  // newest first
    // The yes/no rule is enforced by the file itself.
    tarveldatabase other;
    other.Execute(QStringLiteral("UPDATE contacts SET con_check=1"));
    EXPECT_FALSE(other.ErrMsg().isEmpty());
}

TEST_F(Access, NowAndDateFollowTheClock) {
    run("UPDATE contacts SET con_recent_contact_date=now WHERE con_id=1");
    EXPECT_EQ(scalar(QStringLiteral("SELECT con_recent_contact_date FROM contacts WHERE con_id=1"))
                  .toDateTime(),
              jetdate::naive(QDate(2026, 5, 4), QTime(10, 30)));
    Clock::advance(14 * 3600);  // past midnight
    EXPECT_EQ(scalar(QStringLiteral("SELECT date")).toDateTime(),
              jetdate::naive(QDate(2026, 5, 5)));
    EXPECT_EQ(
        scalar(QStringLiteral("SELECT WEEKDAY(#2026-5-3#), DAY(date), MONTH(date), YEAR(date)"))
            .toInt(),
        1);
}

TEST_F(Access, TraceKeepsTheCallersText) {
    trace::clear();
    trace::setEnabled(true);
    tarveldatabase db;
    db.Execute(QStringLiteral("DELETE * FROM accounts_contacts WHERE acc_id=1"));
    db.GetReadRs(QStringLiteral("SELECT * FROM tasks WHERE tas_date=#2026-5-4#"));
    trace::setEnabled(false);
    EXPECT_EQ(trace::statements(),
              QStringList({QStringLiteral("DELETE * FROM accounts_contacts WHERE acc_id=1"),
                           QStringLiteral("SELECT * FROM tasks WHERE tas_date=#2026-5-4#")}));
}

TEST_F(Access, ClosingEveryHandleLetsTheFileBeReplaced) {
    tarveldatabase db;
    RecordsetPtr kept = db.GetReadRs(QStringLiteral("SELECT con_lastname FROM contacts"));
    closeAllHandles();
    EXPECT_EQ(kept->RecordCount(), 2);  // rows stay readable after their handle is gone
    ASSERT_TRUE(QFile::remove(file.path()));
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), file.path()));
    EXPECT_EQ(scalar(QStringLiteral("SELECT COUNT(*) FROM contacts")).toInt(), 0);
}

TEST(ConnectionString, BuiltAndParsedWithTheNativeSeparator) {
    const QString folder = QDir::toNativeSeparators(QStringLiteral("/opt/tarvel;v3"));
    const QString cs = buildConnectionString(folder);
    EXPECT_TRUE(cs.startsWith(
        QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Password=\"\";Data Source= ")));
    EXPECT_TRUE(cs.endsWith(QStringLiteral(
        "mydata3.tvg;Persist Security Info=True;Jet OLEDB:Database Password=kt5_vamire4417_q_hx")));
    const ConnectionInfo info = parseConnectionString(cs);
    ASSERT_TRUE(info.valid);
    EXPECT_EQ(info.dataSource, folder + QDir::separator() + QStringLiteral("mydata3.tvg"));
    EXPECT_EQ(info.password, QStringLiteral("kt5_vamire4417_q_hx"));
    EXPECT_FALSE(parseConnectionString(QStringLiteral("Provider=x;Data Source= /a")).valid);
}

TEST(AccessWithoutFile, MissingFileIsReportedAndNeverCreated) {
    QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("nowhere"));
    setGlobalConnectionString(buildConnectionString(folder));
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral("SELECT * FROM setting"));
    EXPECT_EQ(rs->State(), adStateClosed);
    EXPECT_FALSE(db.ErrMsg().isEmpty());
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/mydata3.tvg")));
    setGlobalConnectionString(QString());
}

TEST(SafeSqlAndEncode, QuotesAndDigests) {
    tarveldatabase db;
    const struct {
        const char* in;
        const char* out;
    } quotes[] = {{"O'Brien's", "O''Brien''s"}, {"''", "''''"}, {"plain", "plain"}, {"", ""}};
    for (const auto& q : quotes) {
        db.setStrSql(QString::fromUtf8(q.in));
        EXPECT_EQ(db.SafeSql().toStdString(), q.out);
    }
    encode e;
    EXPECT_EQ(e.MD5(QString()), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(e.MD5(QStringLiteral("abcdef")), QStringLiteral("e80b5017098950fc58aad83c8c14978e"));
    EXPECT_EQ(e.MD5(QStringLiteral("密码")),
              QStringLiteral("a8105204604a0b11e916f3879aae3b0b"));  // over UTF-8 bytes
}
