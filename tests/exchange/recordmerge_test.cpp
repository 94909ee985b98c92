// Merging duplicate contacts and accounts on a real data file.
#include "exchange/recordmerge.h"

#include "exchange/lastaction.h"
#include "exchange/mergeundo.h"
#include "exchange/recyclebin.h"
#include "exchange/tables.h"
#include "records/kinds.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/support/wholetables.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;

namespace {

class Merge : public ExchangeFixture {
protected:
    // Link rows that appear twice (contacts_contacts in either direction) and
    // link rows naming a record that is gone, over every link table.
    QStringList brokenLinks() {
        QStringList out;
        for (const LinkTable& l : linkTables()) {
            const QString pair = l.firstTable == l.secondTable
                                     ? QString("MIN(%1, %2), MAX(%1, %2)").arg(l.first, l.second)
                                     : QString("%1, %2").arg(l.first, l.second);
            for (const QString& r : column(QString("SELECT %1 || '/' || COUNT(*) FROM %2 GROUP BY "
                                                   "%1 HAVING COUNT(*) > 1")
                                               .arg(pair, l.name)))
                out << l.name + " twice: " + r;
            const RecordTable* a = recordTable(l.firstTable);
            const RecordTable* b = recordTable(l.secondTable);
            const int orphans =
                count(QString("SELECT COUNT(*) FROM %1 WHERE %2 NOT IN (SELECT %3 "
                              "FROM %4) OR %5 NOT IN (SELECT %6 FROM %7)")
                          .arg(l.name, l.first, a->key, a->name, l.second, b->key, b->name));
            if (orphans) out << l.name + QString(" orphans: %1").arg(orphans);
        }
        return out;
    }

    // Three 王伟 (1 kept, 2 and 3 merged into it) and their neighbours:
    // opportunities 1-3, tasks 1-3, documents 1-2, accounts 甲 and 乙,
    // contact 4 (李娜) related to each of them in both directions.
    void fillThreeContacts() {
        for (const char* sql : {
                 "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_title, "
                 "con_create_date, con_recent_contact_date, con_birthday) VALUES (1, '王伟', '', "
                 "'经理', '2025-03-01 00:00:00', '2026-01-05 00:00:00', '1900-01-01 00:00:00'), "
                 "(2, '王 伟', '13800138000', '', '2024-07-09 00:00:00', '2026-02-01 00:00:00', "
                 "'1985-04-03 00:00:00')",
                 "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_title, con_email, "
                 "con_create_date, con_recent_contact_date) VALUES (3, 'wang wei', "
                 "'+86 13800138000', '总监', 'ww@x.cn', '2025-01-01 00:00:00', NULL)",
                 "INSERT INTO contacts (con_id, con_lastname) VALUES (4, '李娜')",
                 "INSERT INTO accounts (acc_id, acc_name) VALUES (1, '甲公司'), (2, '乙公司')",
                 "INSERT INTO opportunities (opp_id, opp_subject) VALUES (1, '大单'), (2, '小单'), "
                 "(3, '续约')",
                 "INSERT INTO tasks (tas_id, tas_subject) VALUES (1, '拜访'), (2, '回访'), (3, "
                 "'报价')",
                 "INSERT INTO documents (doc_id, doc_name) VALUES (1, '合同'), (2, '报价单')",
                 // 2 and 3 have accounts, 1 none: the merged contact takes 2's.
                 "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 2), (1, 3)",
                 // Opportunity 1: kept 1 has a role, 2 another; opportunity 2: 1 without
                 // a role, 3 with one; opportunity 3 only 3's.
                 "INSERT INTO opportunities_contacts VALUES (1, 1, '决策人'), (1, 2, '联系人'), "
                 "(2, 1, ''), (2, 3, '技术把关'), (3, 3, '采购')",
                 "INSERT INTO contacts_tasks VALUES (1, 1), (2, 1), (2, 2), (3, 3)",
                 "INSERT INTO contacts_documents VALUES (2, 1), (3, 1), (3, 2)",
                 // 李娜 related to all three, made from either side; 2 and 3 related
                 // to each other (which merges away).
                 "INSERT INTO contacts_contacts VALUES (1, 4, '同事'), (4, 2, '朋友'), (3, 4, ''), "
                 "(2, 3, '本人')",
                 "INSERT INTO external_ids (ext_source, ext_id, ext_table, ext_key) VALUES "
                 "('vcard', 'uid-3', 'contacts', 3)",
             })
            run(QString::fromUtf8(sql));
    }
};

}  // namespace

TEST_F(Merge, ThreeContactsBecomeOneWithEveryLinkOnceAndNoOrphans) {
    fillThreeContacts();
    QList<MergedAwayRow> handed;
    MergeRequest request;
    request.kindCode = kind::Contact;
    request.kept = 1;
    request.others = {2, 3};
    request.fieldFrom.insert("con_title", 3);
    request.keepRemovedRows = [&](const QList<MergedAwayRow>& rows, QString*) {
        handed = rows;
        return true;
    };
    MergeResult result;
    const Outcome o = mergeRecords(request, &result);
    ASSERT_TRUE(o.ok) << o.ErrMsg.toStdString();

    EXPECT_EQ(brokenLinks(), QStringList());
    EXPECT_EQ(column("SELECT con_id FROM contacts ORDER BY con_id"), QStringList({"1", "4"}));
    // Fields: the kept name, the first filled mobile and birthday, the chosen
    // title, the earliest creation and latest recent-contact date.
    EXPECT_EQ(column("SELECT con_lastname || '|' || con_mobile || '|' || con_title || '|' || "
                     "con_email || '|' || con_birthday || '|' || con_create_date || '|' || "
                     "con_recent_contact_date FROM contacts WHERE con_id=1"),
              QStringList({"王伟|13800138000|总监|ww@x.cn|1985-04-03 00:00:00|2024-07-09 00:00:00|"
                           "2026-02-01 00:00:00"}));
    EXPECT_EQ(column("SELECT opp_id || ':' || con_part_in_opp FROM opportunities_contacts "
                     "WHERE con_id=1 ORDER BY opp_id"),
              QStringList({"1:决策人", "2:技术把关", "3:采购"}));
    EXPECT_EQ(column("SELECT tas_id FROM contacts_tasks WHERE con_id=1 ORDER BY tas_id"),
              QStringList({"1", "2", "3"}));
    EXPECT_EQ(column("SELECT doc_id FROM contacts_documents WHERE con_id=1 ORDER BY doc_id"),
              QStringList({"1", "2"}));
    EXPECT_EQ(column("SELECT con_id1 || '-' || con_id2 || ':' || con_relation FROM "
                     "contacts_contacts"),
              QStringList({"1-4:同事"}));
    EXPECT_EQ(column("SELECT acc_id FROM accounts_contacts WHERE con_id=1"), QStringList({"2"}));
    EXPECT_EQ(column("SELECT ext_key FROM external_ids"), QStringList({"1"}));

    // What goes to the bin: every record as it was, and each link row touched.
    QStringList tables;
    for (const MergedAwayRow& r : handed)
        if (r.table == "contacts")
            tables << r.values.value("con_id").toString() + r.values.value("con_title").toString();
    EXPECT_EQ(tables, QStringList({"1经理", "2", "3总监"}));
    int linkRows = 0;
    for (const MergedAwayRow& r : handed) linkRows += r.table != "contacts";
    EXPECT_EQ(linkRows, result.linksMoved + result.linksDropped +
                            1 /* opportunity 2's empty role before it was filled */);
    EXPECT_GT(result.linksDropped, 0);
}

TEST_F(Merge, AccountsKeepRolesAndEachContactKeepsOneAccount) {
    fillSample();  // accounts 1 and 2; contact 1 belongs to both
    run("INSERT INTO opportunities_accounts VALUES (1, 2, '卖方'), (2, 2, '')");
    run("INSERT INTO accounts_tasks VALUES (2, 2)");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 2)");
    run("UPDATE accounts SET acc_telephone='010-1234' WHERE acc_id=2");
    ASSERT_TRUE(mergeRecords({kind::Account, 1, {2}, {}, 0, {}}).ok);
    EXPECT_EQ(brokenLinks(), QStringList());
    EXPECT_EQ(column("SELECT acc_name || '|' || acc_telephone FROM accounts"),
              QStringList({"甲公司|010-1234"}));
    EXPECT_EQ(column("SELECT opp_id || ':' || acc_part_in_opp FROM opportunities_accounts "
                     "ORDER BY opp_id"),
              QStringList({"1:买方", "2:买方"}));
    EXPECT_EQ(column("SELECT con_id FROM accounts_contacts ORDER BY con_id"),
              QStringList({"1", "2", "4"}));
    EXPECT_EQ(column("SELECT acc_id || '-' || tas_id FROM accounts_tasks"), QStringList({"1-2"}));
}

TEST_F(Merge, RefusedOrStoppedMergesChangeNothing) {
    fillThreeContacts();
    const auto before = testsupport::wholeTables();
    auto refuse = [](const QList<MergedAwayRow>&, QString* error) {
        *error = QStringLiteral("回收站已满");
        return false;
    };
    const struct {
        const char* what;
        MergeRequest request;
        const char* message;
        const char* refusedStatement = nullptr;  // a trigger makes it fail
    } cases[] = {
        {"no others", {kind::Contact, 1, {}, {}, 0, {}}, "至少一条"},
        {"kept among the others", {kind::Contact, 1, {1, 2}, {}, 0, {}}, "至少一条"},
        {"a task", {kind::Task, 1, {2}, {}, 0, {}}, "只能合并"},
        {"a record that is gone", {kind::Contact, 1, {2, 99}, {}, 0, {}}, "已不存在"},
        {"an unknown field", {kind::Contact, 1, {2}, {{"con_id", 2}}, 0, {}}, "con_id"},
        {"a field from outside", {kind::Contact, 1, {2}, {{"con_title", 4}}, 0, {}}, "不在"},
        {"the bin refuses", {kind::Contact, 1, {2, 3}, {}, 0, refuse}, "回收站已满"},
        // Its last statement fails after every link has moved.
        {"the delete fails", {kind::Contact, 1, {2, 3}, {}, 0, {}}, "拒绝", "DELETE ON contacts"},
    };
    for (const auto& c : cases) {
        if (c.refusedStatement)
            run(QString("CREATE TRIGGER refuse BEFORE %1 BEGIN SELECT RAISE(ABORT, '拒绝'); END")
                    .arg(c.refusedStatement));
        const Outcome o = mergeRecords(c.request);
        EXPECT_FALSE(o.ok) << c.what;
        EXPECT_TRUE(o.ErrMsg.contains(QString::fromUtf8(c.message)))
            << c.what << ": " << o.ErrMsg.toStdString();
        EXPECT_EQ(testsupport::changedSince(before), QStringList()) << c.what;
    }
}

TEST_F(Merge, UndoPutsEveryTableBackAsItWasBeforeTheMerge) {
    fillThreeContacts();
    // An id of an earlier import naming a contact merged away moves too.
    run("INSERT INTO upgrade_contacts (old_con_id, new_con_id) VALUES (70, 2)");
    LastAction::instance().forget();
    const auto before = testsupport::wholeTables();
    MergeRequest request{kind::Contact, 1, {2, 3}, {{"con_title", 3}}, 3, {}};
    const Outcome merged = mergeKeepingImage(request, nullptr);
    ASSERT_TRUE(merged.ok) << merged.ErrMsg.toStdString();
    EXPECT_EQ(column("SELECT bin_key FROM bin_entries ORDER BY bin_key"), QStringList({"2", "3"}));
    EXPECT_EQ(LastAction::instance().caption(), "已把 3 条联系人记录合并为一条。");

    QString done;
    const Outcome undone = LastAction::instance().undo(&done);
    ASSERT_TRUE(undone.ok) << undone.ErrMsg.toStdString();
    EXPECT_TRUE(done.startsWith("已撤销合并")) << done.toStdString();
    // Records with their keys, the kept one's fields and dates, every link
    // row in its place, moved ids, and an empty bin.
    EXPECT_EQ(testsupport::changedSince(before), QStringList());
    // Only once: a merge stays valid by itself, so only the undo withdraws it.
    EXPECT_EQ(LastAction::instance().caption(), "");
    ASSERT_TRUE(LastAction::instance().undo(&done).ok);
    EXPECT_EQ(done, "没有可以撤销的操作。");
}

TEST_F(Merge, UndoIsRefusedWhenTheMergedRecordsChangedSince) {
    const struct {
        const char* what;
        const char* change;
    } cases[] = {
        {"the kept record edited", "UPDATE contacts SET con_title='主管' WHERE con_id=1"},
        {"a link added to it", "INSERT INTO contacts_tasks VALUES (1, 2)"},
        {"a moved link removed", "DELETE FROM opportunities_contacts WHERE opp_id=3"},
        {"a merged record restored from the bin", nullptr},
    };
    for (const auto& c : cases) {
        tarvel::testing::TempDataFile fresh;  // each case on a file of its own
        fillThreeContacts();
        ASSERT_TRUE(mergeKeepingImage({kind::Contact, 1, {2, 3}, {}, 0, {}}, nullptr).ok);
        if (c.change) {
            run(QString::fromUtf8(c.change));
        } else {
            QStringList lost;
            QString error;
            ASSERT_TRUE(recyclebin::restore(
                {scalar("SELECT MIN(bin_id) FROM bin_entries").toLongLong()}, &lost, &error));
        }
        const auto changed = testsupport::wholeTables();
        QString done;
        const Outcome o = LastAction::instance().undo(&done);
        EXPECT_FALSE(o.ok) << c.what;
        EXPECT_TRUE(o.ErrMsg.startsWith("合并没有撤销，数据没有改动：")) << o.ErrMsg.toStdString();
        EXPECT_EQ(testsupport::changedSince(changed), QStringList()) << c.what;
    }
}

TEST(MergeChoice, FilledFieldsArePreferredKeptFirst) {
    const QList<MergeRecord> records = {
        {7, {{"a", "甲"}, {"b", ""}, {"c", QVariant()}, {"d", "1900-01-01 00:00:00"}, {"e", " "}}},
        {3, {{"a", "乙"}, {"b", "x"}, {"c", QVariant()}, {"d", "1990-05-06 00:00:00"}, {"e", ""}}},
        {5, {{"a", "丙"}, {"b", "y"}, {"c", "z"}, {"d", "1991-01-01 00:00:00"}, {"e", ""}}},
    };
    const QHash<QString, qint64> choice = defaultChoice({"a", "b", "c", "d", "e"}, records);
    // a: the kept one's own value; b, c: the first filled other, in the order
    // given; d: the birthday that means none is empty; e: nothing filled, the kept one.
    EXPECT_EQ(choice, (QHash<QString, qint64>{{"a", 7}, {"b", 3}, {"c", 5}, {"d", 3}, {"e", 7}}));
}
