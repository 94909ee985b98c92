// The recycle bin dialog and its button on the data exchange page, driven by
// control names over a real data file.
#include <QLineEdit>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

#include "browse/listkind.h"
#include "browse/liststore.h"
#include "records/kinds.h"
#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "views/exchange/formdataio.h"
#include "views/exchange/recyclebindialog.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

void removeRecords(qint16 code, const QList<qint64>& ids) {
    lists::ListStore store(*lists::listKindForRecord(code));
    if (!store.deleteRecords(ids)) qFatal("%s", qPrintable(store.ErrMsg()));
}

// Rows of the grid as "kind|name", groups with their records indented.
QStringList shownRows(const QTreeWidget* grid) {
    QStringList rows;
    for (int i = 0; i < grid->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* top = grid->topLevelItem(i);
        rows << top->text(1) + '|' + top->text(2);
        for (int j = 0; j < top->childCount(); ++j)
            rows << "  " + top->child(j)->text(1) + '|' + top->child(j)->text(2);
    }
    return rows;
}

}  // namespace

class RecycleBinTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2026, 4, 7, 16, 20));
        for (const char* sql :
             {"INSERT INTO accounts (acc_name) VALUES ('华信科技有限公司')",
              "INSERT INTO contacts (con_lastname, con_check) VALUES ('王明', true)",
              "INSERT INTO contacts (con_lastname, con_check) VALUES ('李芳', true)",
              "INSERT INTO contacts (con_lastname, con_check) VALUES ('赵强', false)",
              "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)",
              "INSERT INTO tasks (tas_subject) VALUES ('季度回访')"})
            run(QString::fromUtf8(sql));
        removeRecords(kind::Task, {1});
        Clock::advance(3600);
        removeRecords(kind::Contact, {1, 2});
    }
    void cleanup() { end(); }

    void listsGroupsNewestFirstAndSearches() {
        RecycleBinDialog dialog(dialogs_);
        QTreeWidget* grid = child<QTreeWidget>(dialog, "lv_bin_entries");
        QCOMPARE(shownRows(grid), QStringList({"批量删除|2条记录", "  联系人|李芳", "  联系人|王明",
                                               "日程安排|季度回访"}));
        QCOMPARE(grid->topLevelItem(0)->text(0), QStringLiteral("2026-04-07 17:20"));
        for (QLabel* label : dialog.findChildren<QLabel*>())
            if (label->text().contains('&')) QVERIFY(label->buddy());
        child<QLineEdit>(dialog, "txt_bin_search")->setText(QStringLiteral("日程"));
        QCOMPARE(shownRows(grid), QStringList({"日程安排|季度回访"}));
        child<QLineEdit>(dialog, "txt_bin_search")->setText(QStringLiteral("李"));
        QCOMPARE(shownRows(grid), QStringList({"联系人|李芳"}));
        QVERIFY(!child<QPushButton>(dialog, "cmd_bin_restore")->isEnabled());
    }

    // The group's records come back; the link to an account deleted since is named.
    void restoringAGroupNamesTheLinksThatCannotComeBack() {
        run("DELETE * FROM accounts WHERE acc_id=1");
        RecycleBinDialog dialog(dialogs_);
        QTreeWidget* grid = child<QTreeWidget>(dialog, "lv_bin_entries");
        grid->topLevelItem(0)->setSelected(true);
        click(dialog, "cmd_bin_restore");
        QCOMPARE(count("SELECT COUNT(*) FROM contacts"), 3);
        QCOMPARE(shownRows(grid), QStringList({"日程安排|季度回访"}));
        QVERIFY(dialog.restoredAny());
        QVERIFY2(dialogs_->lastText().startsWith(QStringLiteral("已恢复2条记录。")) &&
                     dialogs_->lastText().contains(QStringLiteral("客户单位（编号1）")),
                 qPrintable(dialogs_->lastText()));
    }

    void purgeAndEmptyAskFirst() {
        RecycleBinDialog dialog(dialogs_);
        QTreeWidget* grid = child<QTreeWidget>(dialog, "lv_bin_entries");
        grid->topLevelItem(1)->setSelected(true);  // 季度回访
        dialogs_->answers = {false};
        click(dialog, "cmd_bin_purge");
        QCOMPARE(dialogs_->shown.last().kind, QStringLiteral("ask"));
        QCOMPARE(count("SELECT COUNT(*) FROM bin_entries"), 3);
        dialogs_->answers = {true};
        click(dialog, "cmd_bin_purge");
        QCOMPARE(shownRows(grid),
                 QStringList({"批量删除|2条记录", "  联系人|李芳", "  联系人|王明"}));
        QCOMPARE(count("SELECT COUNT(*) FROM tasks"), 0);
        dialogs_->answers = {false};
        click(dialog, "cmd_bin_empty");
        QCOMPARE(grid->topLevelItemCount(), 1);
        dialogs_->answers = {true};
        click(dialog, "cmd_bin_empty");
        QCOMPARE(grid->topLevelItemCount(), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM bin_rows"), 0);
        // Gone for good: nothing came back.
        QCOMPARE(count("SELECT COUNT(*) FROM contacts") + count("SELECT COUNT(*) FROM tasks"), 1);
        QVERIFY(!child<QPushButton>(dialog, "cmd_bin_empty")->isEnabled());
    }

    void theDataExchangePageOpensTheBin() {
        FormDataIO page;
        page.setDialogs(dialogs_);
        QList<std::shared_ptr<Messages>> opened;
        bool restored = false;
        page.setRecycleBinOpener([&](std::shared_ptr<Messages> d) {
            opened << d;
            return restored;
        });
        QSignalSpy replaced(&page, &FormDataIO::dataReplaced);
        click(page, "cmd_recycle_bin");
        restored = true;
        click(page, "cmd_recycle_bin");
        QCOMPARE(opened.size(), 2);
        QCOMPARE(opened.front().get(), static_cast<Messages*>(dialogs_.get()));
        QCOMPARE(replaced.count(), 1);
    }
};

QTEST_MAIN(RecycleBinTest)
#include "recyclebin_test.moc"
