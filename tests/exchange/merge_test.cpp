// Merging a whole data file or backup of another installation: an older file
// with fewer columns and tables comes in, records already there are matched,
// a second merge doubles nothing, and links come with the new keys.

#include "exchange/backup.h"
#include "exchange/importsession.h"
#include "exchange/lastaction.h"
#include "exchange/reportimport.h"
#include "exchange/tables.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/support/wholetables.h"

using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

// Who is linked to whom, by name, on either file.
const char* const kLinks[] = {
    "SELECT a.acc_name || '|' || c.con_lastname FROM accounts_contacts l JOIN accounts a ON "
    "a.acc_id = l.acc_id JOIN contacts c ON c.con_id = l.con_id",
    "SELECT c1.con_lastname || '|' || c2.con_lastname || '|' || l.con_relation FROM "
    "contacts_contacts l JOIN contacts c1 ON c1.con_id = l.con_id1 JOIN contacts c2 ON c2.con_id "
    "= l.con_id2",
    "SELECT o.opp_subject || '|' || a.acc_name || '|' || l.acc_part_in_opp FROM "
    "opportunities_accounts l JOIN opportunities o ON o.opp_id = l.opp_id JOIN accounts a ON "
    "a.acc_id = l.acc_id",
    "SELECT c.con_lastname || '|' || t.tas_subject FROM contacts_tasks l JOIN contacts c ON "
    "c.con_id = l.con_id JOIN tasks t ON t.tas_id = l.tas_id",
};

}  // namespace

class Merge : public ExchangeFixture {
protected:
    // Another installation's file, written by the sqlcipher program: its keys
    // start at 1 as this file's do.
    QString otherFile() {
        const QString path = inFolder("同事.tvg");
        EXPECT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), path));
        const QStringList out = sqlcipherRows(
            path,
            "INSERT INTO accounts (acc_id, acc_name, acc_industry) VALUES (1, '甲公司', '制造'), "
            "(2, '丙公司', NULL);"
            "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_email, con_nickname, "
            "con_create_date) VALUES "
            "(1, '张三', '+86 138 0000 0001', NULL, '小张', '2025-01-02 08:00:00'), "
            "(2, '李四', NULL, 'LI@EXAMPLE.CN', NULL, '2025-01-03 08:00:00'), "
            "(3, '王五', NULL, NULL, NULL, '2025-01-04 08:00:00'), "
            "(4, '张三', '13900000009', NULL, NULL, '2025-01-05 08:00:00');"
            "INSERT INTO opportunities (opp_id, opp_subject, opp_create_date) VALUES (1, '大单', "
            "'2025-02-01 10:00:00');"
            "INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_create_date) VALUES "
            "(1, '拜访', '2025-03-01 00:00:00', '1899-12-30 09:30:00', '2025-02-20 10:00:00');"
            "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1), (2, 3), (1, 4);"
            "INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (1, 2, '同事');"
            "INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (1, 2, "
            "'买方');"
            "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 1);"
            "SELECT COUNT(*) FROM contacts");
        EXPECT_EQ(out, QStringList({"4"}));
        return path;
    }

    // An earlier layout: contacts without most columns, no documents and no
    // id translation tables at all.
    void makeOlder(const QString& path) {
        const QStringList out = sqlcipherRows(
            path,
            "CREATE TABLE c_old (con_id INTEGER PRIMARY KEY AUTOINCREMENT, con_lastname TEXT, "
            "con_mobile TEXT, con_email TEXT, con_create_date TEXT);"
            "INSERT INTO c_old SELECT con_id, con_lastname, con_mobile, con_email, "
            "con_create_date FROM contacts;"
            "DROP VIEW que_contacts_accounts; DROP TABLE contacts;"
            "ALTER TABLE c_old RENAME TO contacts;"
            "DROP TABLE documents; DROP TABLE contacts_documents; DROP TABLE tasks_documents;"
            "DROP TABLE upgrade_contacts; DROP TABLE upgrade_accounts; DROP TABLE setting;"
            "SELECT COUNT(*) FROM contacts");
        ASSERT_EQ(out, QStringList({"4"}));
    }

    // What this file holds already: a contact and an account the other file
    // also has, and a document of its own.
    void fillLocal() {
        run("INSERT INTO accounts (acc_name) VALUES ('甲公司')");
        run("INSERT INTO contacts (con_lastname, con_mobile, con_create_date) VALUES ('张三', "
            "'13800000001', #2024-6-1#)");
        run("INSERT INTO contacts (con_lastname, con_email, con_create_date) VALUES ('李四', "
            "'li@example.cn', #2024-6-2#)");
        run("INSERT INTO documents (doc_name, doc_path) VALUES ('合同', '/tmp/合同.pdf')");
    }

    // The data tables, without the import's journal and id translation.
    QMap<QString, QStringList> dataTables() {
        QStringList working{"import_journal", "import_changes", "external_ids"};
        for (const RecordTable& t : recordTables()) working << t.upgrade;
        return tarvel::testsupport::wholeTables(working);
    }

    QStringList links(const QString& path = QString()) {
        QStringList all;
        for (const char* sql : kLinks) {
            QStringList rows = path.isEmpty() ? column(sql) : sqlcipherRows(path, sql);
            rows.sort();
            all << rows << QStringLiteral("--");
        }
        return all;
    }
};

TEST_F(Merge, AnOlderFileWithFewerColumnsAndTablesComesIn) {
    fillLocal();
    const QString other = otherFile();
    makeOlder(other);
    ImportSummary summary;
    ImportTally tally;
    const Outcome out = importReport(other, &summary, {}, &tally);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    // 张三 (mobile written another way), 李四 (e-mail in another case) and 甲公司
    // are there already; the second 张三 has another mobile and comes in.
    EXPECT_EQ(summary.value("accounts"), 1);
    EXPECT_EQ(summary.value("contacts"), 2);
    EXPECT_EQ(summary.value("opportunities"), 1);
    EXPECT_EQ(summary.value("tasks"), 1);
    EXPECT_EQ(summary.value("documents"), 0);
    EXPECT_EQ(tally.added, 5);
    EXPECT_EQ(tally.updated + tally.skipped, 3);
    // A column the older file lacks stays empty; the local record keeps its own.
    EXPECT_EQ(rows("contacts WHERE con_nickname IS NOT NULL"), 0);
    EXPECT_EQ(column("SELECT con_mobile FROM contacts WHERE con_lastname='张三' ORDER BY con_id"),
              QStringList({"13800000001", "13900000009"}));
    EXPECT_EQ(column("SELECT doc_name FROM documents"), QStringList({"合同"}));
    // The links the older file still has arrive between the right records.
    const QStringList got = links();
    for (const char* link :
         {"丙公司|王五", "甲公司|张三", "张三|李四|同事", "大单|丙公司|买方", "王五|拜访"})
        EXPECT_TRUE(got.contains(QString::fromUtf8(link))) << link;
}

TEST_F(Merge, ASecondMergeDoublesNothingAndLinksKeepTheirNewKeys) {
    fillLocal();
    const QString other = otherFile();
    ASSERT_TRUE(importReport(other).ok);
    const QStringList wanted = links(other);
    // Every link of the other file is here by name; the keys are this file's.
    const QStringList got = links();
    for (const QString& row : wanted) EXPECT_TRUE(got.contains(row)) << row.toStdString();
    EXPECT_EQ(
        column("SELECT old_con_id || '>' || new_con_id FROM upgrade_contacts WHERE "
               "old_con_id = 3"),
        QStringList(
            {"3>" + column("SELECT con_id FROM contacts WHERE con_lastname='王五'").value(0)}));
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_tasks l JOIN tasks t ON t.tas_id = l.tas_id "
                    "JOIN contacts c ON c.con_id = l.con_id WHERE c.con_lastname='王五'"),
              1);

    const auto before = dataTables();
    ImportTally tally;
    const Outcome again = importReport(other, nullptr, {}, &tally);
    ASSERT_TRUE(again.ok) << again.ErrMsg.toStdString();
    EXPECT_EQ(tally.summary(), "新增 0，更新 0，跳过 8");
    EXPECT_EQ(tarvel::testsupport::changedRows(before, dataTables()), QStringList());
}

TEST_F(Merge, AMatchedRecordTakesOnlyWhatItLacks) {
    fillLocal();
    run("UPDATE accounts SET acc_industry='服务' WHERE acc_name='甲公司'");
    run("INSERT INTO accounts (acc_name) VALUES ('丙公司')");
    ImportTally tally;
    ASSERT_TRUE(importReport(otherFile(), nullptr, {}, &tally).ok);
    // 甲公司 keeps its industry; 张三 takes the nickname it had none of.
    EXPECT_EQ(column("SELECT acc_industry FROM accounts WHERE acc_name='甲公司'"),
              QStringList({"服务"}));
    EXPECT_EQ(column("SELECT con_nickname FROM contacts WHERE con_mobile='13800000001'"),
              QStringList({"小张"}));
    EXPECT_EQ(rows("accounts"), 2);
    EXPECT_EQ(tally.updated, 1);
}

TEST_F(Merge, IsTakenBackLikeAnImport) {
    fillLocal();
    const auto before = dataTables();
    ASSERT_TRUE(importReport(otherFile()).ok);
    ASSERT_NE(dataTables(), before);
    // Ctrl+Z takes it back: added records and their links go, filled fields
    // are emptied again, and links made between records already here go too.
    QString done;
    ASSERT_TRUE(LastAction::instance().undo(&done).ok) << done.toStdString();
    EXPECT_EQ(tarvel::testsupport::changedRows(before, dataTables()), QStringList());
}

TEST_F(Merge, ABackupOfThisFileMergesBackWithoutDoubling) {
    fillLocal();
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
    const QString backup = inFolder("早先.tbk");
    ASSERT_TRUE(backupTo(backup).ok);
    // An e-mail filled in since stays.
    run("UPDATE contacts SET con_email='zhang@example.cn' WHERE con_lastname='张三'");
    const auto before = dataTables();
    ASSERT_TRUE(importReport(backup).ok);
    EXPECT_EQ(tarvel::testsupport::changedRows(before, dataTables()), QStringList());
}

TEST_F(Merge, AFileWithoutRecordTablesIsRefused) {
    const QString path = inFolder("settings-only.tvg");
    ASSERT_EQ(sqlcipherRows(path, "CREATE TABLE setting (set_type TEXT); SELECT 1"),
              QStringList({"1"}));
    fillLocal();
    const Outcome out = importReport(path);
    EXPECT_FALSE(out.ok);
    EXPECT_TRUE(out.ErrMsg.startsWith("导入Tarvel报表没有完成，当前数据没有改动"));
    EXPECT_EQ(rows("contacts"), 2);
}
