// Ctrl+Z's record of the last action: deletes and imports taken back on a real
// data file, which must then equal the file before the action, table by table.
#include "exchange/lastaction.h"

#include "browse/listkind.h"
#include "browse/liststore.h"
#include "exchange/csvimport.h"
#include "exchange/importsession.h"
#include "exchange/recyclebin.h"
#include "records/kinds.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/support/wholetables.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;

namespace {

class Undo : public ExchangeFixture {
protected:
    Undo() { LastAction::instance().forget(); }

    void remove(qint16 code, const QList<qint64>& ids) {
        lists::ListStore store(*lists::listKindForRecord(code));
        ASSERT_TRUE(store.deleteRecords(ids)) << store.ErrMsg().toStdString();
    }
    void importContacts(const QByteArray& csv) {
        const QString path = inFolder("contacts.csv");
        exchange_test::writeBytes(path, csv);
        CsvImportPlan plan;
        QString error;
        ASSERT_TRUE(planCsvImport(path, "contacts", &plan, &error)) << error.toStdString();
        const Outcome o = importCsv(plan, false);
        ASSERT_TRUE(o.ok) << o.ErrMsg.toStdString();
    }
    QString undo() {
        QString done;
        const Outcome o = LastAction::instance().undo(&done);
        EXPECT_TRUE(o.ok) << o.ErrMsg.toStdString();
        return done;
    }
};

TEST_F(Undo, ABulkDeleteComesBackWithEveryLinkAndLeavesTheBinEmpty) {
    fillSample();
    const auto before = testsupport::wholeTables();
    remove(kind::Contact, {1, 3, 4});
    EXPECT_EQ(LastAction::instance().caption(), "已删除 3 条联系人记录。");
    EXPECT_EQ(undo(), "已撤销删除：恢复了 3 条联系人记录。");
    EXPECT_EQ(testsupport::changedSince(before), QStringList());
    // Only once: the second Ctrl+Z finds nothing left.
    EXPECT_EQ(LastAction::instance().caption(), "");
    EXPECT_EQ(undo(), "没有可以撤销的操作。");
}

TEST_F(Undo, ADeleteRolledBackOrTakenFromTheBinElsewhereIsNotOffered) {
    fillSample();
    remove(kind::Task, {2});
    // A delete refused half-way changes no table, the bin's included, and the
    // delete before it stays the one to undo.
    run("CREATE TRIGGER refuse BEFORE DELETE ON contacts WHEN old.con_id = 3 BEGIN SELECT "
        "RAISE(ABORT, 'refused'); END");
    const auto before = testsupport::wholeTables();
    lists::ListStore store(*lists::listKindForRecord(kind::Contact));
    EXPECT_FALSE(store.deleteRecords({1, 3}));
    EXPECT_FALSE(store.ErrMsg().isEmpty());
    EXPECT_EQ(testsupport::changedSince(before), QStringList());
    EXPECT_EQ(LastAction::instance().caption(), "已删除 1 条任务记录。");
    // The bin page restores it: Ctrl+Z has nothing of its own left.
    QStringList lost;
    QString error;
    ASSERT_TRUE(recyclebin::restore(
        recyclebin::batchOf(recyclebin::entries({}, &error).value(0).id, &error), &lost, &error))
        << error.toStdString();
    const auto restored = testsupport::wholeTables();
    EXPECT_EQ(LastAction::instance().caption(), "");
    EXPECT_EQ(undo(), "没有可以撤销的操作。");
    EXPECT_EQ(testsupport::changedSince(restored), QStringList());
}

TEST_F(Undo, ACsvImportIsTakenBackAndTheDataPagesButtonAgrees) {
    run("INSERT INTO contacts (con_lastname, con_mobile) VALUES ('张三', '13800000000')");
    const QByteArray csv =
        "名,姓,单位,移动电话,电子邮件地址\r\n"
        "三,张,,13800000000,zs@hx.cn\r\n"
        "四,李,新公司,13900000000,\r\n";
    for (bool throughDataPage : {false, true}) {
        SCOPED_TRACE(throughDataPage ? "撤销导入 first" : "Ctrl+Z");
        const auto before = testsupport::wholeTables();
        importContacts(csv);
        EXPECT_TRUE(LastAction::instance().caption().startsWith("已导入：新增 1，更新 1"))
            << LastAction::instance().caption().toStdString();
        if (throughDataPage) {
            ASSERT_TRUE(undoLastImport().ok);
            EXPECT_EQ(LastAction::instance().caption(), "");
            EXPECT_EQ(undo(), "没有可以撤销的操作。");
        } else {
            const QString done = undo();
            EXPECT_TRUE(done.startsWith("已撤销上次导入：删除 2 条记录，恢复 2 个字段"))
                << done.toStdString();
            EXPECT_EQ(lastImportDescription(), "");
        }
        EXPECT_EQ(testsupport::changedSince(before), QStringList());
    }
}

TEST_F(Undo, OnlyTheLastActionIsUndoneAndItsCaptionSaysWhich) {
    fillSample();
    importContacts("名,姓\r\n五,孙\r\n");
    const auto afterImport = testsupport::wholeTables();
    remove(kind::Account, {2});
    EXPECT_EQ(LastAction::instance().caption(), "已删除 1 条客户单位记录。");
    undo();
    EXPECT_EQ(testsupport::changedSince(afterImport), QStringList());
    // The import before it is not reached by a second Ctrl+Z.
    EXPECT_EQ(undo(), "没有可以撤销的操作。");
}

}  // namespace
