// Ctrl+Z and the status bar's 撤销 in the main window, and the question a
// detail page or the task page asks before overwriting a record changed
// behind it (through a second connection to the data file).
#include <QAction>
#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QtTest>

#include "browse/shownrow.h"
#include "exchange/lastaction.h"
#include "exchange/recyclebin.h"
#include "shell/mainwindow.h"
#include "store/schema.h"
#include "tests/support/wholetables.h"
#include "tests/views/quietmain.h"
#include "tests/views/screenfixture.h"
#include "views/details/formcondetail.h"
#include "views/lists/formlist.h"
#include "views/related/formrelated.h"
#include "views/schedule/formschdetail.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class UndoTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 20, 10, 30));
        exchange::LastAction::instance().forget();
        timers_.clear();
        for (const char* sql :
             {"INSERT INTO accounts (acc_name) VALUES ('星辰科技')",
              "INSERT INTO contacts (con_lastname, con_email) VALUES ('王伟', 'wang@xc.cn')",
              "INSERT INTO contacts (con_lastname) VALUES ('李娜'), ('张强'), ('赵敏')",
              "INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle) VALUES ('拜访', "
              "#2024-5-21#, #10:00#, 0)",
              "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1), (1, 3)",
              "INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (1, 2, "
              "'同事')",
              "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 1)"})
            run(QString::fromUtf8(sql));
    }
    void cleanup() {
        main_.reset();
        end();
    }

    // 删除选定记录 on the list, then 撤销 in the status bar: every table as it was.
    void bulkDeleteIsTakenBackByTheStatusBarButton() {
        auto* list = contactList();
        const auto before = deleteTicked(list, "con_id IN (1, 2, 3)");
        QCOMPARE(list->rowCount(), 1);
        QVERIFY(offer()->isVisible());
        QCOMPARE(child<QLabel>(*main_, "lbl_undo")->text(),
                 QStringLiteral("已删除 3 条联系人记录。"));
        QCOMPARE(timers_.size(), 1);
        QCOMPARE(timers_[0].first, 10000);

        click(*main_, "cmd_undo");
        QCOMPARE(testsupport::changedSince(before), QStringList());
        QVERIFY(!offer()->isVisible());
        QCOMPARE(status(), QStringLiteral("已撤销删除：恢复了 3 条联系人记录。"));
        // The open list reads the records again.
        QCOMPARE(list->rowCount(), 4);
    }

    // The detail page's delete, then Ctrl+Z.
    void detailPageDeleteIsTakenBackByCtrlZ() {
        const auto before = testsupport::wholeTables();
        QVERIFY(main_ = quietMain());
        QVERIFY(main_->OpenRecord(kind::Contact, 3));
        auto* page = qobject_cast<FormConDetail*>(main_->currentPage());
        QVERIFY(page);
        dialogs_->answers = {true};
        click(*page, "lbl_delete");
        QCOMPARE(count("SELECT COUNT(*) FROM contacts WHERE con_id=3"), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_tasks"), 0);
        pressCtrlZ(main_.get());
        QCOMPARE(testsupport::changedSince(before), QStringList());
        QCOMPARE(status(), QStringLiteral("已撤销删除：恢复了 1 条联系人记录。"));
        // A second Ctrl+Z finds nothing and says so without a message box.
        dialogs_->shown.clear();
        pressCtrlZ(main_.get());
        QCOMPARE(status(), QStringLiteral("没有可以撤销的操作。"));
        QVERIFY(dialogs_->shown.isEmpty());
        QCOMPARE(testsupport::changedSince(before), QStringList());
    }

    // The offer goes when its time is up; a newer offer keeps its own time.
    // Ctrl+Z still takes the last delete back, but not in a text field.
    void ctrlZOutlastsTheButtonButNotInATextField() {
        auto* list = contactList();
        deleteTicked(list, "con_id=4");
        deleteTicked(list, "con_id=3");
        QCOMPARE(timers_.size(), 2);
        timers_[0].second();  // the first offer's time: the second stays
        QVERIFY(offer()->isVisible());
        timers_[1].second();
        QVERIFY(!offer()->isVisible());

        const auto deleted = testsupport::wholeTables();
        auto* search = child<QLineEdit>(*list, "txt_search");
        search->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), search);
        testsupport::typeText(search, QStringLiteral("王"));
        pressCtrlZ(search);  // undoes the typing there
        QCOMPARE(search->text(), QString());
        testsupport::typeText(search, QStringLiteral("王"));
        child<QAction>(*main_, "act_undo")->trigger();  // should the window get the key first
        QCOMPARE(search->text(), QString());
        QCOMPARE(testsupport::changedSince(deleted), QStringList());
        child<QWidget>(*list, "dg_listall")->setFocus();
        pressCtrlZ(main_.get());  // the last delete, and only that one
        QCOMPARE(text("SELECT group_concat(con_id) FROM contacts WHERE con_id IN (3, 4)"),
                 QStringLiteral("3"));
    }

    // Taken back on the bin page, the delete is no longer offered.
    void aRestoreElsewhereWithdrawsTheOffer() {
        deleteTicked(contactList(), "con_id=4");
        QVERIFY(offer()->isVisible());
        QString error;
        QStringList lost;
        QVERIFY(exchange::recyclebin::restore(
            {testsupport::firstValue("SELECT bin_id FROM bin_entries").toLongLong()}, &lost,
            &error));
        QVERIFY(!offer()->isVisible());
    }

    // A row changed behind the contact page: Yes overwrites, No writes nothing.
    void saveOverARowChangedElsewhereAsks_data() {
        QTest::addColumn<bool>("deleted");
        QTest::addColumn<bool>("yes");
        QTest::newRow("changed, yes") << false << true;
        QTest::newRow("changed, no") << false << false;
        QTest::newRow("deleted, save as new") << true << true;
        QTest::newRow("deleted, cancel") << true << false;
    }
    void saveOverARowChangedElsewhereAsks() {
        QFETCH(bool, deleted);
        QFETCH(bool, yes);
        FormConDetail page;
        page.setDialogs(dialogs_);
        page.fill({page::ContactDetail, QString(), 1});
        auto* name = child<QLineEdit>(page, "txt_name");
        name->setText(QStringLiteral("王伟伟"));
        elsewhere(deleted ? "DELETE FROM contacts WHERE con_id=1"
                          : "UPDATE contacts SET con_email='w@other.cn' WHERE con_id=1");
        const auto behind = testsupport::wholeTables();
        saveAnswering(page, "lbl_save", yes,
                      deleted ? lists::ShownRow::deletedQuestion(QStringLiteral("联系人"))
                              : lists::ShownRow::changedQuestion());
        if (!yes) {
            QCOMPARE(testsupport::changedSince(behind), QStringList());
            QVERIFY(page.isModified());
            QCOMPARE(name->text(), QStringLiteral("王伟伟"));
            return;
        }
        QVERIFY(!page.isModified());
        QCOMPARE(text("SELECT con_email FROM contacts WHERE con_lastname='王伟伟'"),
                 QStringLiteral("wang@xc.cn"));
        QCOMPARE(count("SELECT COUNT(*) FROM contacts WHERE con_id=1"), deleted ? 0 : 1);
        QCOMPARE(page.recordId() == 1, !deleted);
        // Saved once, the page knows the row again: no question the next time.
        name->setText(QStringLiteral("王伟"));
        click(page, "lbl_save");
        QCOMPARE(dialogs_->shown.size(), 1);
    }

    void taskPageAsksBeforeOverwritingToo() {
        for (bool yes : {false, true}) {
            QVERIFY(main_ || (main_ = quietMain()));
            QVERIFY(main_->OpenTask(1));
            auto* page = qobject_cast<FormSchDetail*>(main_->currentPage());
            QVERIFY(page);
            child<QLineEdit>(*page, "txt_sch_subject")->setText(QStringLiteral("拜访王伟"));
            elsewhere(
                QStringLiteral("UPDATE tasks SET tas_outlay=%1 WHERE tas_id=1").arg(yes ? 60 : 50));
            saveAnswering(*page, "cmd_sch_save", yes);
            QCOMPARE(text("SELECT tas_subject FROM tasks WHERE tas_id=1"),
                     yes ? QStringLiteral("拜访王伟") : QStringLiteral("拜访"));
        }
    }

    // The related panel's quick edit: 李娜, shown beside 王伟, changed behind it.
    void panelQuickEditAsksToo() {
        for (bool yes : {false, true}) {
            FormRelated panel(kind::Contact);
            panel.setDialogs(dialogs_);
            panel.showRecord(1);
            auto* grid = child<QTableView>(panel, "dgrid_con");
            QCOMPARE(grid->model()->rowCount(), 1);
            grid->setCurrentIndex(grid->model()->index(0, 1));
            QCOMPARE(child<QLineEdit>(panel, "txt_con_name")->text(), QStringLiteral("李娜"));
            child<QLineEdit>(panel, "txt_con_mobile")->setText(QStringLiteral("13900000000"));
            elsewhere(QStringLiteral("UPDATE contacts SET con_email='%1' WHERE con_id=2")
                          .arg(yes ? "b@x.cn" : "a@x.cn"));
            saveAnswering(panel, "cmd_con_save", yes);
            QCOMPARE(text("SELECT con_mobile FROM contacts WHERE con_id=2"),
                     yes ? QStringLiteral("13900000000") : QString());
        }
    }

private:
    // Saves with `button`, answering the one question asked with `yes`.
    void saveAnswering(const QWidget& page, const char* button, bool yes,
                       const QString& question = lists::ShownRow::changedQuestion()) {
        dialogs_->shown.clear();
        dialogs_->answers = {yes};
        click(page, button);
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].text, question);
    }
    // A statement run by another program on the same data file.
    void elsewhere(const QString& sql) {
        QString error;
        const auto other =
            Handle::open(file_->path(), QLatin1String(schema::kDatabasePassword), false, &error);
        if (!other || !other->exec(sql, &error)) qFatal("%s", qPrintable(error));
        other->close();
    }
    // Active, for Ctrl+Z to reach it; the undo offer's timers are the test's.
    std::unique_ptr<TarvelMain> quietMain() {
        MainWindowOptions o;
        o.undoTimer = [this](int ms, std::function<void()> expired) {
            timers_.append({ms, std::move(expired)});
        };
        auto main = testsupport::quietMain(dialogs_, o);
        main->activateWindow();
        if (!QTest::qWaitForWindowActive(main.get())) qWarning("the window is not active");
        return main;
    }
    lists::FormList* contactList() {
        main_ = quietMain();
        if (!main_->OpenPage(page::ContactList)) qFatal("no contact list");
        return qobject_cast<lists::FormList*>(main_->currentPage());
    }
    // Ticks the contacts `which` selects, alone, and deletes them from the
    // list; the tables as they stood before the delete.
    QMap<QString, QStringList> deleteTicked(lists::FormList* list, const char* which) {
        run(QStringLiteral("UPDATE contacts SET con_check=CASE WHEN %1 THEN -1 ELSE 0 END")
                .arg(QLatin1String(which)));
        const auto before = testsupport::wholeTables();
        dialogs_->answers = {true};
        list->runOperation(QStringLiteral("删除选定记录"));
        QCoreApplication::processEvents();
        return before;
    }
    QString status() const { return main_->statusBar()->currentMessage(); }
    QWidget* offer() const { return child<QWidget>(*main_, "cmd_undo"); }
    static void pressCtrlZ(QWidget* target) {
        QTest::keyClick(target, Qt::Key_Z, Qt::ControlModifier);
    }

    std::unique_ptr<TarvelMain> main_;
    QList<std::pair<int, std::function<void()>>> timers_;
};

QTEST_MAIN(UndoTest)
#include "undo_test.moc"
