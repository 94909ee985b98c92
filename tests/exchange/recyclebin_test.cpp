#include "exchange/recyclebin.h"

#include "browse/listkind.h"
#include "browse/liststore.h"
#include "exchange/backup.h"
#include "exchange/reportexport.h"
#include "exchange/tables.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/support/wholetables.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

class RecycleBin : public ExchangeFixture {
protected:
    // Deletes as the list's 删除选定记录 does.
    bool remove(qint16 code, const QList<qint64>& ids) {
        lists::ListStore store(*lists::listKindForRecord(code));
        const bool ok = store.deleteRecords(ids);
        EXPECT_TRUE(ok) << store.ErrMsg().toStdString();
        return ok;
    }
    QList<BinEntry> binEntries(const QString& search = {}) {
        QString error;
        const QList<BinEntry> found = recyclebin::entries(search, &error);
        EXPECT_TRUE(error.isEmpty()) << error.toStdString();
        return found;
    }
    QStringList restore(const QList<qint64>& ids) {
        QStringList lost;
        QString error;
        EXPECT_TRUE(recyclebin::restore(ids, &lost, &error)) << error.toStdString();
        return lost;
    }
    QStringList restoreBatchOf(qint64 entry) {
        QString error;
        const QList<qint64> ids = recyclebin::batchOf(entry, &error);
        EXPECT_TRUE(error.isEmpty()) << error.toStdString();
        return restore(ids);
    }
    // Link rows naming the record, at either end.
    int linksNaming(const RecordKindInfo& k, qint64 id) {
        int n = 0;
        for (const LinkTable& l : linkTables())
            for (const auto& [table, column] :
                 {std::pair(l.firstTable, l.first), std::pair(l.secondTable, l.second)})
                if (table == QLatin1String(k.table))
                    n += count(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2=%3")
                                   .arg(l.name, column)
                                   .arg(id));
        return n;
    }
};

}  // namespace

TEST_F(RecycleBin, DeleteThenRestoreGivesBackEveryRowAndLinkOfEachKind) {
    fillSample();
    // Values whose kind a careless copy would change: dates, amounts, blank
    // text beside null text.
    const struct {
        qint16 code;
        qint64 id;
        const char* extra;
        const char* name;
    } cases[] = {
        {kind::Contact, 1,
         "UPDATE contacts SET con_firstname='', con_nickname=NULL, "
         "con_recent_contact_date=#2025-1-2 3:04:05# WHERE con_id=1",
         "张三"},
        {kind::Account, 1, "UPDATE accounts SET acc_description='' WHERE acc_id=1", "甲公司"},
        {kind::Opportunity, 1,
         "UPDATE opportunities SET opp_estimate_sale=12345.6789, opp_succeed_probability=35 "
         "WHERE opp_id=1",
         "大单"},
        {kind::Task, 1, "UPDATE tasks SET tas_outlay=88.5, tas_date=#2026-7-1# WHERE tas_id=1",
         "拜访"},
        {kind::Document, 1, "UPDATE documents SET doc_name='合同' WHERE doc_id=1", "合同"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        run(QString::fromUtf8(c.extra));
        const RecordKindInfo& k = *kindByCode(c.code);
        const int links = linksNaming(k, c.id);
        ASSERT_GT(links, 0);
        const auto before = testsupport::wholeTables();
        ASSERT_TRUE(remove(c.code, {c.id}));
        EXPECT_EQ(linksNaming(k, c.id), 0);
        const QList<BinEntry> bin = binEntries();
        ASSERT_EQ(bin.size(), 1);
        EXPECT_EQ(
            std::tuple(bin.front().kind, bin.front().key, bin.front().name, bin.front().deletedAt),
            std::tuple(c.code, c.id, QString::fromUtf8(c.name), Clock::now()));
        EXPECT_EQ(count(QStringLiteral("SELECT COUNT(*) FROM bin_rows WHERE bin_entry=%1")
                            .arg(bin.front().id)),
                  links + 1);
        EXPECT_TRUE(restoreBatchOf(bin.front().id).isEmpty());
        EXPECT_EQ(testsupport::wholeTables(), before);  // the bin empty again
    }
}

TEST_F(RecycleBin, BulkDeleteOfTickedRowsIsOneGroupRestoredWhole) {
    fillSample();
    const auto before = testsupport::wholeTables();
    lists::ListStore store(*lists::listKindForRecord(kind::Contact));
    const QList<qint64> ticked = store.tickedIds();
    ASSERT_GE(ticked.size(), 2);
    ASSERT_TRUE(remove(kind::Contact, ticked));
    // A second delete is a group of its own.
    ASSERT_TRUE(remove(kind::Task, {2}));
    const QList<BinEntry> bin = binEntries();
    ASSERT_EQ(bin.size(), ticked.size() + 1);
    QString error;
    const QList<qint64> group = recyclebin::batchOf(bin.back().id, &error);
    EXPECT_EQ(group.size(), ticked.size());
    for (const BinEntry& e : bin)
        EXPECT_EQ(group.contains(e.id), e.kind == kind::Contact) << e.name.toStdString();
    // Ticked contacts 1 and 3 were related to each other: that link comes back too.
    EXPECT_TRUE(restore(group).isEmpty());
    EXPECT_EQ(binEntries().size(), 1);
    EXPECT_TRUE(restoreBatchOf(binEntries().front().id).isEmpty());
    EXPECT_EQ(testsupport::wholeTables(), before);
}

TEST_F(RecycleBin, LinksWhoseOtherEndIsGoneAreListedNotRestored) {
    fillSample();
    const auto before = testsupport::wholeTables();
    ASSERT_TRUE(remove(kind::Contact, {1}));
    ASSERT_TRUE(remove(kind::Account, {1}));
    run("DELETE * FROM documents WHERE doc_id=1");  // gone for good, never in the bin
    const QList<BinEntry> bin = binEntries(QStringLiteral("张"));
    ASSERT_EQ(bin.size(), 1);
    const QStringList lost = restore({bin.front().id});
    // Contact 1 was linked to account 1 (in the bin), to document 1 (gone).
    EXPECT_EQ(lost.size(), 2) << lost.join('\n').toStdString();
    EXPECT_TRUE(lost.join('\n').contains(QStringLiteral("客户单位“甲公司”")));
    EXPECT_TRUE(lost.join('\n').contains(QStringLiteral("文档（编号1）")));
    // Everything else of the contact is back: its other account, opportunity
    // with its role, both related contacts with their relation, its task.
    const auto after = testsupport::wholeTables();
    for (const QString& t :
         {QStringLiteral("contacts"), QStringLiteral("contacts_contacts"),
          QStringLiteral("opportunities_contacts"), QStringLiteral("contacts_tasks")})
        EXPECT_EQ(after[t], before[t]) << t.toStdString();
    EXPECT_EQ(column("SELECT acc_id FROM accounts_contacts WHERE con_id=1"), QStringList({"2"}));
}

TEST_F(RecycleBin, RestoreOntoATakenKeyChangesNothing) {
    fillSample();
    ASSERT_TRUE(remove(kind::Account, {2}));
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (2, '新公司')");
    const auto before = testsupport::wholeTables();
    QStringList lost;
    QString error;
    EXPECT_FALSE(recyclebin::restore({binEntries().front().id}, &lost, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("乙公司"))) << error.toStdString();
    EXPECT_EQ(testsupport::wholeTables(), before);  // the entry still in the bin
}

TEST_F(RecycleBin, EntriesExpireAfterTheDaysTheSettingKeeps) {
    fillSample();
    EXPECT_EQ(recyclebin::keepDays(), 30);  // a file without the setting
    const int keep = 3;
    run("INSERT INTO setting (set_type, set_key, set_value) VALUES ('bin', 'days', '3')");
    ASSERT_EQ(recyclebin::keepDays(), keep);
    QMap<qint64, QDateTime> deleted;  // task id -> when
    for (const qint64 id : {10, 11}) {
        run(QStringLiteral("INSERT INTO tasks (tas_id, tas_subject) VALUES (%1, '任务%1')")
                .arg(id));
        ASSERT_TRUE(remove(kind::Task, {id}));
        deleted[id] = Clock::now();
        Clock::advance(24 * 3600);
    }
    for (int day = 2; day <= keep + 3; ++day) {
        QString error;
        ASSERT_TRUE(recyclebin::expire(&error)) << error.toStdString();
        QList<qint64> expected;
        for (auto it = deleted.cbegin(); it != deleted.cend(); ++it)
            if (it.value().addDays(keep) >= Clock::now()) expected << it.key();
        QList<qint64> kept;
        for (const BinEntry& e : binEntries()) kept.prepend(e.key);
        EXPECT_EQ(kept, expected) << "day " << day;
        Clock::advance(24 * 3600);
    }
    EXPECT_TRUE(binEntries().isEmpty());
}

TEST_F(RecycleBin, BackupsAndReportsCarryNoDeletedRecords) {
    fillSample();
    completeProfile();
    ASSERT_TRUE(remove(kind::Contact, {1}));
    const QString backup = inFolder("b.tbk");
    const Outcome made = backupFile(file.path(), backup, Clock::now());
    ASSERT_TRUE(made.ok) << made.ErrMsg.toStdString();
    const QString report = inFolder("r.tvr3");
    run("UPDATE contacts SET con_check=true");
    const Outcome exported = exportReport(kind::Contact, report);
    ASSERT_TRUE(exported.ok) << exported.ErrMsg.toStdString();
    for (const QString& copy : {backup, report}) {
        // The bin's two tables, and the deleted contact.
        EXPECT_EQ(sqlcipherRows(copy,
                                "SELECT COUNT(*) FROM bin_entries; SELECT COUNT(*) FROM "
                                "bin_rows; SELECT COUNT(*) FROM contacts WHERE "
                                "con_lastname='张三'"),
                  QStringList({"0", "0", "0"}))
            << copy.toStdString();
    }
    EXPECT_EQ(sqlcipherRows(backup, "SELECT COUNT(*) FROM contacts"),
              QStringList{QString::number(rows("contacts"))});
    // The live file keeps its bin.
    EXPECT_EQ(binEntries().size(), 1);
}

TEST_F(RecycleBin, AnOlderDataFileGetsTheBinAtItsFirstDelete) {
    fillSample();
    run("DROP TABLE bin_rows");
    run("DROP TABLE bin_entries");
    ASSERT_TRUE(remove(kind::Contact, {2}));
    ASSERT_EQ(binEntries().size(), 1);
    EXPECT_EQ(binEntries().front().name, QStringLiteral("李四"));
}
