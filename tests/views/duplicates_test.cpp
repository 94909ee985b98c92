// 查找重复 and 合并 driven by their controls' names on a real data file.
#include <QListWidget>
#include <QRadioButton>
#include <QtTest>

#include "custom/fsettings.h"
#include "records/kinds.h"
#include "tests/views/screenfixture.h"
#include "views/lists/duplicatesdialog.h"
#include "views/lists/formlist.h"
#include "views/lists/mergedialog.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class DuplicatesScreenTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin();
        // Three 王伟 (one mobile written three ways), one 李娜, and links.
        for (const char* sql : {
                 "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_title) VALUES (1, "
                 "'王伟', '13800138000', '')",
                 "INSERT INTO contacts (con_id, con_lastname, con_mobile2, con_title) VALUES (2, "
                 "'王 伟', '+86 138 0013 8000', '经理')",
                 "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_title) VALUES (3, "
                 "'wang wei', '０08613800138000', '总监')",
                 "INSERT INTO contacts (con_id, con_lastname) VALUES (4, '李娜')",
                 "INSERT INTO tasks (tas_id, tas_subject) VALUES (1, '拜访')",
                 "INSERT INTO contacts_tasks VALUES (1, 1)",
                 "INSERT INTO contacts_tasks VALUES (3, 1)",
                 "INSERT INTO accounts (acc_id, acc_name) VALUES (1, '甲公司')",
                 "INSERT INTO accounts (acc_id, acc_name) VALUES (2, '乙公司')",
                 "INSERT INTO accounts_contacts VALUES (1, 2)",
                 "INSERT INTO accounts_contacts VALUES (2, 3)",
             })
            run(QString::fromUtf8(sql));
        loadProgramFieldSettings();
    }
    void cleanup() { end(); }

    void onlyContactAndAccountListsOfferTheSearch() {
        for (int number = 0; number <= lists::listno::Documents; ++number) {
            const lists::ListKind& kind = lists::listKind(number);
            lists::FormList form(kind);
            auto* b = form.findChild<QPushButton*>("cmd_find_duplicates");
            const bool offered = kind.fieldType == kind::Contact || kind.fieldType == kind::Account;
            QCOMPARE(b != nullptr, offered);
        }
    }

    void groupsAreListedWithWhyAndMergedByChoice() {
        lists::DuplicatesDialog dialog(kind::Contact, dialogs_);
        QVERIFY(dialog.search());
        auto* list = child<QListWidget>(dialog, "lst_groups");
        QCOMPARE(list->count(), 1);
        QVERIFY(list->item(0)->text().contains(QStringLiteral("相同手机：13800138000")));
        QVERIFY(list->item(0)->text().contains(QStringLiteral("王 伟（编号 2）")));

        bool shownSideBySide = false;
        dialog.setMergeRunner([&](lists::MergeDialog& merge) {
            // Defaults: the first record kept, the filled title of the second.
            shownSideBySide =
                child<QRadioButton>(merge, "opt_keep_0")->isChecked() &&
                child<QRadioButton>(merge, "opt_con_title_1")->isChecked() &&
                child<QRadioButton>(merge, "opt_con_title_2")->text() == QStringLiteral("总监");
            child<QRadioButton>(merge, "opt_keep_2")->click();
            child<QRadioButton>(merge, "opt_account_1")->click();
            child<QRadioButton>(merge, "opt_con_lastname_0")->click();
            child<QRadioButton>(merge, "opt_con_title_1")->click();
            dialogs_->answers = {true};
            testsupport::click(merge, "cmd_merge");
            return merge.result() == QDialog::Accepted;
        });
        testsupport::click(dialog, "cmd_merge");
        QVERIFY(shownSideBySide);
        QVERIFY(dialog.merged());
        QCOMPARE(list->count(), 0);
        QCOMPARE(child<QLabel>(dialog, "lbl_count")->text(), QStringLiteral("没有找到重复的记录"));
        QCOMPARE(firstValue("SELECT COUNT(*) FROM contacts").toInt(), 2);
        QCOMPARE(firstValue("SELECT con_lastname || '|' || con_title FROM contacts WHERE con_id=3")
                     .toString(),
                 QStringLiteral("王伟|经理"));
        QCOMPARE(firstValue("SELECT acc_id || '-' || con_id FROM accounts_contacts").toString(),
                 QStringLiteral("1-3"));
        // The two merged away wait in the recycle bin as one step.
        QCOMPARE(firstValue("SELECT COUNT(*) || '/' || COUNT(DISTINCT bin_batch) FROM bin_entries")
                     .toString(),
                 QStringLiteral("2/1"));
    }

    void aMergeTheUserDeclinesChangesNothing() {
        lists::DuplicatesDialog dialog(kind::Contact, dialogs_);
        QVERIFY(dialog.search());
        dialog.setMergeRunner([&](lists::MergeDialog& merge) {
            dialogs_->answers = {false};
            testsupport::click(merge, "cmd_merge");
            return merge.result() == QDialog::Accepted;
        });
        testsupport::click(dialog, "cmd_merge");
        QVERIFY(!dialog.merged());
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(firstValue("SELECT COUNT(*) FROM contacts").toInt(), 4);
    }
};

QTEST_MAIN(DuplicatesScreenTest)
#include "duplicates_test.moc"
