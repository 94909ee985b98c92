#include <QFileInfo>

#include "exchange/reportexport.h"
#include "exchange/reportimport.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

class Report : public ExchangeFixture {
protected:
    Report() {
        fillSample();
        // An unticked deal whose task only it links: neither goes with a deals report.
        run("INSERT INTO opportunities (opp_subject, opp_private, opp_check) VALUES ('小单', 0, "
            "false)");
        run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (3, 2)");
        completeProfile();
    }
};

const char* kNames[] = {
    "SELECT acc_name FROM accounts ORDER BY acc_name",
    "SELECT con_lastname FROM contacts ORDER BY con_lastname",
    "SELECT opp_subject FROM opportunities ORDER BY opp_subject",
    "SELECT tas_subject FROM tasks ORDER BY tas_subject",
    "SELECT doc_name FROM documents ORDER BY doc_name",
};

// Counts the links of the report's own kind (key prefix) that name a record
// missing from its table.
QString danglingLinks(const QString& prefix) {
    const char* const links[][4] = {{"accounts_contacts", "acc_id", "con_id", "con_id"},
                                    {"opportunities_contacts", "opp_id", "con_id", "con_id"},
                                    {"opportunities_accounts", "opp_id", "acc_id", "acc_id"},
                                    {"contacts_tasks", "con_id", "tas_id", "tas_id"},
                                    {"contacts_documents", "con_id", "doc_id", "doc_id"},
                                    {"accounts_tasks", "acc_id", "tas_id", "tas_id"},
                                    {"accounts_documents", "acc_id", "doc_id", "doc_id"},
                                    {"opportunities_tasks", "opp_id", "tas_id", "tas_id"},
                                    {"opportunities_documents", "opp_id", "doc_id", "doc_id"},
                                    {"tasks_documents", "tas_id", "doc_id", "doc_id"},
                                    {"contacts_contacts", "con_id1", "con_id2", "con_id"}};
    const QHash<QString, QString> tableOf = {{"acc", "accounts"},
                                             {"con", "contacts"},
                                             {"opp", "opportunities"},
                                             {"tas", "tasks"},
                                             {"doc", "documents"}};
    QStringList counts;
    for (const auto& l : links) {
        const QString a = l[1], b = l[2], key = l[3];
        if (!a.startsWith(prefix) && !b.startsWith(prefix)) continue;
        const QString ta = tableOf[a.left(3)], tb = tableOf[b.left(3)];
        const QString keyA = a.startsWith("con_id") ? QString("con_id") : a;
        counts << QString(
                      "(SELECT COUNT(*) FROM %1 WHERE %2 NOT IN (SELECT %3 FROM %4) OR %5 NOT "
                      "IN (SELECT %6 FROM %7))")
                      .arg(l[0], a, keyA, ta, b, key, tb);
    }
    return "SELECT " + counts.join(" + ");
}

}  // namespace

TEST_F(Report, CarriesTheTickedRecordsWithTheirLinksAndNoPrivateOne) {
    const struct {
        int kind;
        QString prefix;
        QStringList accounts, contacts, opportunities, tasks, documents;
    } cases[] = {
        {1, "opp", {"甲公司"}, {"张三"}, {"大单"}, {}, {}},
        {2, "acc", {"甲公司"}, {"张三", "赵六"}, {"大单"}, {}, {}},
        // 李四 travels as the related contact of 张三; 王五 is private.
        {3, "con", {"甲公司"}, {"张三", "李四"}, {"大单"}, {"拜访"}, {"合同"}},
        {4, "tas", {}, {"张三"}, {}, {"拜访"}, {}},
    };
    for (const auto& c : cases) {
        const QString target = inFolder(QString("r%1.tvr3").arg(c.kind));
        const Outcome out = exportReport(c.kind, target);
        ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
        const QStringList* expected[] = {&c.accounts, &c.contacts, &c.opportunities, &c.tasks,
                                         &c.documents};
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(sqlcipherRows(target, kNames[i]), *expected[i]) << c.kind << " " << kNames[i];
        // No link is left naming a record the report does not carry.
        EXPECT_EQ(sqlcipherRows(target, danglingLinks(c.prefix)), QStringList{"0"}) << c.kind;
        EXPECT_FALSE(QFileInfo::exists(inFolder("tdb.tmp")));
    }
    EXPECT_EQ(rows("contacts"), 4) << "the live file is only read";
}

TEST_F(Report, RefusesWithoutACompleteProfile) {
    ASSERT_TRUE((UserProfile{"王经理", "", "经理", "w@example.cn"}).save());
    const Outcome out = exportReport(3, inFolder("p.tvr3"));
    EXPECT_FALSE(out.ok);
    EXPECT_FALSE(profileProblem().isEmpty());
    EXPECT_EQ(out.ErrMsg, profileProblem());
    EXPECT_FALSE(QFileInfo::exists(inFolder("p.tvr3")));
}

TEST_F(Report, ProposedName) {
    EXPECT_EQ(proposedReportName("/p", "王经理", QDate(2026, 8, 5)),
              "/p/王经理2026-8-5 - 日志报告文件.tvr3");
}

TEST_F(Report, ImportIntoAnotherFileRenumbersAndRelinks) {
    const QString report = inFolder("contacts.tvr3");
    ASSERT_TRUE(exportReport(3, report).ok);
    {
        tarvel::testing::TempDataFile other;  // the colleague's file, with a record of its own
        run("INSERT INTO contacts (con_lastname) VALUES ('本地')");
        run("INSERT INTO upgrade_contacts (old_con_id, new_con_id) VALUES (99, 99)");
        ImportSummary summary;
        const Outcome out = importReport(report, &summary);
        ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
        EXPECT_EQ(describe(summary), "客户单位 1，联系人 2，项目机会 1，日程安排 1，文档附件 1");
        // The incoming contacts got keys after the local one.
        EXPECT_EQ(
            column(
                "SELECT old_con_id & '>' & new_con_id FROM upgrade_contacts ORDER BY old_con_id"),
            QStringList({"1>2", "2>3"}));
        const QStringList links = {
            "SELECT con_lastname & '|' & acc_name FROM que_contacts_accounts WHERE acc_name IS "
            "NOT NULL",
            "SELECT c1.con_lastname & '|' & c2.con_lastname & '|' & r.con_relation FROM "
            "contacts_contacts r, contacts c1, contacts c2 WHERE c1.con_id = r.con_id1 AND "
            "c2.con_id = r.con_id2",
            "SELECT c.con_lastname & '|' & o.opp_subject & '|' & r.con_part_in_opp FROM "
            "opportunities_contacts r, contacts c, opportunities o WHERE c.con_id = r.con_id AND "
            "o.opp_id = r.opp_id",
            "SELECT a.acc_name & '|' & o.opp_subject & '|' & r.acc_part_in_opp FROM "
            "opportunities_accounts r, accounts a, opportunities o WHERE a.acc_id = r.acc_id AND "
            "o.opp_id = r.opp_id",
            "SELECT c.con_lastname & '|' & t.tas_subject FROM contacts_tasks r, contacts c, tasks "
            "t "
            "WHERE c.con_id = r.con_id AND t.tas_id = r.tas_id",
            "SELECT c.con_lastname & '|' & d.doc_name FROM contacts_documents r, contacts c, "
            "documents d WHERE c.con_id = r.con_id AND d.doc_id = r.doc_id",
        };
        const QStringList expected[] = {{"张三|甲公司"},      {"张三|李四|同事"},
                                        {"张三|大单|决策人"}, {"甲公司|大单|买方"},
                                        {"张三|拜访"},        {"张三|合同"}};
        for (int i = 0; i < links.size(); ++i) EXPECT_EQ(column(links[i]), expected[i]) << i;
        EXPECT_EQ(rows("contacts WHERE con_private <> 0 OR con_check <> 0"), 0);
        // A second import finds every record again (张三 by name and account,
        // 李四 alike in every column): nothing doubles, not even a link.
        ASSERT_TRUE(importReport(report, &summary).ok);
        EXPECT_EQ(rows("contacts"), 3);
        EXPECT_EQ(rows("accounts"), 1);
        EXPECT_EQ(rows("upgrade_contacts"), 2);
        EXPECT_EQ(rows("contacts_contacts"), 1);
        // Once 李四 differs in a column, nothing but a bare name is left to
        // know it by, and it comes again under a further new key.
        run("UPDATE contacts SET con_nickname='小李' WHERE con_lastname='李四'");
        ASSERT_TRUE(importReport(report, &summary).ok);
        EXPECT_EQ(rows("contacts"), 4);
        EXPECT_EQ(rows("contacts_contacts"), 2);
    }
}

TEST_F(Report, ImportOfABrokenFileChangesNothing) {
    QFile junk(inFolder("junk.tvr3"));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    const Outcome out = importReport(junk.fileName());
    EXPECT_FALSE(out.ok);
    EXPECT_TRUE(out.ErrMsg.startsWith("导入Tarvel报表没有完成，当前数据没有改动"))
        << out.ErrMsg.toStdString();
    EXPECT_EQ(rows("contacts"), 4);
}
