// The main window: toolbar from the layout table and the settings window,
// page switching and history (lists come back with their condition and sort),
// the unsaved-changes question, the day change with the home page and
// reminders, the tray and the update request.
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableView>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTreeWidget>
#include <QtTest>

#include "browse/tickmodel.h"
#include "browse/unsaved.h"
#include "custom/fsettings.h"
#include "custom/softwaresetting.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "shell/updatecheck.h"
#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "tools/screenshots/samplerecords.h"
#include "views/home/formhome.h"
#include "views/lists/categorypanel.h"
#include "views/lists/formlist.h"
#include "views/schedule/formschremind.h"
#include "views/settings/formappsetting.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

const QString kQuestion = QStringLiteral("您输入的信息未保存，\n是否取消当前修改？");

QString labelText(const QWidget* page, const char* name) {
    auto* label = page ? page->findChild<QLabel*>(QLatin1String(name)) : nullptr;
    return label ? label->text() : QStringLiteral("<none>");
}

QString toolbar(const TarvelMain& w) {
    return w.toolbarKeys().join(QLatin1Char(' '));
}

void click(TarvelMain& w, const char* key) {
    QAction* a = w.toolbarAction(QLatin1String(key));
    if (!a) qFatal("no toolbar button %s", key);
    a->trigger();
}

}  // namespace

class MainTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        begin(at(2024, 5, 1, 10));
    }
    void cleanup() {
        main_.reset();
        end();
    }

    void toolbarFollowsTheLayoutTable() {
        run("UPDATE interface SET object_visible=0 WHERE object_type=1 AND "
            "object_name IN ('sepline2', 'email')");
        run("UPDATE interface SET object_index=0, object_description='人脉' WHERE "
            "object_type=1 AND object_name='contact'");
        TarvelMain& w = start();
        QCOMPARE(toolbar(w),
                 QStringLiteral("contact back forward | pp account opportunity schedule "
                                "document inout setting | help bbs"));
        QCOMPARE(w.toolbarAction(QStringLiteral("contact"))->text(), QStringLiteral("人脉"));
        click(w, "contact");  // the caption names the module's page too
        QCOMPARE(labelText(w.currentPage(), "lbl_caption"), QStringLiteral("人脉"));
        // Data exchange lists no records: it shows no condition.
        click(w, "inout");
        const auto* condition =
            w.currentPage()->findChild<QLabel*>(QStringLiteral("lbl_condition"));
        QVERIFY(!condition || condition->isHidden());
    }

    // Back and forward return each page as the user left it: a list with its
    // category, sort or search, and its rows in the same order.
    void backAndForwardReturnPagesAsLeft() {
        samples::fillRecords({10, 80, 10, 5, 5});
        loadProgramFieldSettings();
        TarvelMain& w = start();
        click(w, "contact");
        auto* contacts = qobject_cast<lists::FormList*>(w.currentPage());
        QVERIFY(contacts);
        QCoreApplication::processEvents();  // the panel counts after the grid shows
        contacts->panel()->itemClicked(
            contacts->panel()->entry(QStringLiteral("province"), QStringLiteral("北京")), 0);
        auto* header = child<QTableView>(*contacts, "dg_listall")->horizontalHeader();
        header->sectionClicked(1);
        header->sectionClicked(1);
        const QString sorted = contacts->condition();
        QVERIFY2(sorted.startsWith(QStringLiteral(" WHERE con_province='北京' ORDER BY ")) &&
                     sorted.endsWith(QStringLiteral(" DESC")),
                 qPrintable(sorted));
        const int rows = contacts->gridModel()->rowCount();
        const qint64 firstId = contacts->gridModel()->idAt(0);
        click(w, "account");
        auto* accounts = qobject_cast<lists::FormList*>(w.currentPage());
        QVERIFY(accounts && accounts != contacts);
        auto* search = child<QLineEdit>(*accounts, "txt_search");
        testsupport::typeText(search, QStringLiteral("科技"));
        accounts->searchNow();
        search->setText(QString());  // not searched: no change
        click(w, "opportunity");
        const auto expectPage = [&](const char* form, int index) {
            QCOMPARE(w.currentPage()->objectName(), QLatin1String(form));
            QVERIFY(w.currentPage()->isVisible());
            QCOMPARE(w.history().ListIndex(), index);
            QCOMPARE(w.history().ListCount(), 4);  // history mode adds nothing
        };
        click(w, "back");
        expectPage("form_acc_all", 2);
        QCOMPARE(search->text(), QStringLiteral("科技"));
        QCOMPARE(labelText(accounts, "lbl_condition"), QStringLiteral("搜索：科技"));
        click(w, "back");
        expectPage("form_con_all", 1);
        QCOMPARE(contacts->condition(), sorted);
        QCOMPARE(contacts->gridModel()->rowCount(), rows);
        QCOMPARE(contacts->gridModel()->idAt(0), firstId);
        for (int i = 0; i < 3; ++i) click(w, "forward");
        expectPage("form_opp_all", 3);
        QCOMPARE(labelText(w.currentPage(), "lbl_condition"), QStringLiteral("全部项目机会"));
        for (int i = 0; i < 4; ++i) click(w, "back");
        expectPage("form_pp", 0);
    }

    // Without a notification area there is no tray icon, and closing needs none.
    void unsavedEditAsksBeforeToolbarActionsAndClosing() {
        writeValue("website", "help", QStringLiteral("https://help.example.org/tarvel/"));
        QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());  // offscreen has none
        MainWindowOptions o;                                 // the real tray check
        o.checkForUpdate = false;
        TarvelMain& w = start(o);
        QVERIFY(w.trayIcon() == nullptr);
        QVERIFY(!w.findChild<QAction*>(QStringLiteral("m_tray_show")));
        click(w, "contact");
        setUnsaved(UnsavedModule::Contact, true);
        for (const char* key : {"account", "back", "help"}) {
            dialogs_->answers = {false};  // No: the page and the edit stay
            click(w, key);
            QCOMPARE(dialogs_->lastText(), kQuestion);
            QCOMPARE(w.currentPageCode(), page::ContactList);
            QVERIFY(isUnsaved(UnsavedModule::Contact));
        }
        QCOMPARE(dialogs_->shown.size(), 3);
        QCOMPARE(w.history().ListCount(), 2);
        QVERIFY(opener_->opened.isEmpty());

        dialogs_->answers = {true};
        click(w, "account");
        QCOMPARE(w.currentPageCode(), page::AccountList);
        click(w, "help");  // the edit was given up: nothing left to ask about
        QCOMPARE(dialogs_->shown.size(), 4);
        QCOMPARE(opener_->opened,
                 QList<QUrl>{QUrl(QStringLiteral("https://help.example.org/tarvel/"))});

        setUnsaved(UnsavedModule::Document, true);  // any of the five asks
        dialogs_->answers = {false, true};
        QVERIFY(!w.close());
        QCOMPARE(dialogs_->lastText(), kQuestion);
        QVERIFY(w.close());
    }

    void dayChangeRefreshesTheHomePageOnce() {
        // A daily reminder at 9:00 and a task of the next day only.
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, "
            "tas_closedate, tas_remind, tas_again, tas_closed, tas_last_remind_date) "
            "VALUES (1, '晨会', #2024-4-1#, #9:00#, 1, #2024-12-31#, 1, 1, 0, "
            "#2024-1-1#), (2, '拜访', #2024-5-2#, #10:30#, 0, #2024-5-2#, 0, 0, 0, "
            "#2024-1-1#)");
        Clock::setFixed(at(2024, 5, 1, 23, 59, 58));
        TarvelMain& w = start();
        QSignalSpy refreshed(&w, &TarvelMain::homePageRefreshed);
        const auto subjects = [&] {
            QStringList out;
            const QTreeWidget* list = w.homePage()->lvTodayTasks();
            for (int i = 0; i < list->topLevelItemCount(); ++i)
                out << list->topLevelItem(i)->text(1);
            return out;
        };
        QCOMPARE(subjects(), QStringList{"晨会"});
        tick(at(2024, 5, 1, 23, 59, 59));
        QCOMPARE(refreshed.count(), 0);

        for (const QTime& t : {QTime(0, 0, 1), QTime(0, 0, 2), QTime(1, 0)})
            tick(jetdate::naive(QDate(2024, 5, 2), t));
        QCOMPARE(QList<QVariantList>(refreshed), QList<QVariantList>{{QDate(2024, 5, 2)}});
        QVERIFY(labelText(w.homePage(), "lbl_date").contains(QStringLiteral("2024年5月2日")));
        QCOMPARE(subjects(), (QStringList{"晨会", "拜访"}));
        QVERIFY(w.reminderWindows().isEmpty());  // yesterday's closed at midnight

        tick(at(2024, 5, 2, 9, 0));  // Timer1 fires the reminder whose time has come
        QCOMPARE(w.reminderWindows().size(), 1);
        QCOMPARE(w.reminderWindows().first()->taskId(), 1);
        QCOMPARE(refreshed.count(), 1);
    }

    void updateRequestIsSentAsIsAndTheReplyJudged() {
        MainWindowOptions o = quiet();
        o.checkForUpdate = true;
        QVERIFY(!start(o).updateCheck()->requested());  // the shipped file names no server

        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const quint16 port = server.serverPort();
        writeValue("software", "update_host", QStringLiteral(" 127.0.0.1 "));
        writeValue("software", "update_port", QString::number(port));
        writeValue("software", "date_upgrade", QStringLiteral("2024-3-1"));
        TarvelMain& w = start(o);
        QSignalSpy checked(&w, &TarvelMain::updateChecked);
        if (!server.hasPendingConnections()) QVERIFY(server.waitForNewConnection(30000));
        QTcpSocket* peer = server.nextPendingConnection();
        const QByteArray expected = "GET http://127.0.0.1:" + QByteArray::number(port) +
                                    "/atarvel.txt  HTTP/1.0\r\nAccept/\r\nAccept text/html\r\n";
        QByteArray received;
        while (received.size() < expected.size()) {
            if (!peer->bytesAvailable())
                QVERIFY(QSignalSpy(peer, &QTcpSocket::readyRead).wait(30000));
            received += peer->readAll();
        }
        QCOMPARE(received, expected);

        peer->write("HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\n\r\n2024-04-15\r\n");
        peer->disconnectFromHost();
        if (checked.isEmpty()) QVERIFY(checked.wait(30000));
        QCOMPARE(QList<QVariantList>(checked), (QList<QVariantList>{{true, QDate(2024, 4, 15)}}));
        QVERIFY(w.statusBar()->currentMessage().contains(QStringLiteral("2024-04-15")));
        SoftwareSetting s;
        s.GetValue(QStringLiteral("software"), QStringLiteral("date_recent_getfile"));
        QCOMPARE(s.Set_Value(), QStringLiteral("2024-05-01"));
    }

    // The settings window works on this window: a toolbar change is previewed at
    // once and dropped unless saved; a saved caption shows after OK.
    void settingsPreviewAndSavedCaptionReachTheWindow() {
        TarvelMain& w = start();
        click(w, "contact");
        const QString stored = toolbar(w);
        FormAppSetting& form = openSettings();
        auto* menu = child<QListWidget>(form, "lv_menu");
        for (int i = 0; i < menu->count(); ++i)
            if (menu->item(i)->data(Qt::UserRole) == QStringLiteral("sepline2"))
                menu->item(i)->setCheckState(Qt::Unchecked);
        QVERIFY(stored.contains(QStringLiteral("document | email")));
        QCOMPARE(toolbar(w), QString(stored).replace(QStringLiteral("document | email"),
                                                     QStringLiteral("document email")));
        click(w, "account");  // the preview's buttons work
        QCOMPARE(w.currentPageCode(), page::AccountList);
        w.RebuildToolbar();  // nothing was stored
        QCOMPARE(toolbar(w), stored);

        child<QLineEdit>(form, "txt_contact")->setText(QStringLiteral("人脉"));
        form.SSTab1()->setCurrentIndex(FormAppSetting::CaptionsTab);
        for (bool ok : {false, true}) {
            dialogs_->answers = {ok};
            tarvel::testsupport::click(form, "cmd_save");
            QCOMPARE(w.toolbarAction(QStringLiteral("contact"))->text(),
                     ok ? QStringLiteral("人脉") : QStringLiteral("联系人"));
        }
        // The module page already open shows the new caption too.
        QCOMPARE(labelText(w.pageWidget(page::ContactList), "lbl_caption"), QStringLiteral("人脉"));
        QCOMPARE(form.SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
                 QStringLiteral("人脉的相关信息"));
    }

private:
    TarvelMain& start(MainWindowOptions options = quiet()) {
        options.dialogs = dialogs_;
        options.opener = opener_;
        main_ = std::make_unique<TarvelMain>(options);
        main_->Timer1()->stop();  // ticks come from the test
        main_->show();
        return *main_;
    }
    static MainWindowOptions quiet() {
        MainWindowOptions o;
        o.trayAvailable = [] { return false; };
        o.checkForUpdate = false;
        return o;
    }
    // One tick at `now`; closed reminder windows are gone afterwards.
    void tick(const QDateTime& now) {
        Clock::setFixed(now);
        main_->Timer1Timer();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    FormAppSetting& openSettings() {
        click(*main_, "setting");
        auto* form = qobject_cast<FormAppSetting*>(main_->currentPage());
        if (!form) qFatal("the settings window did not open");
        return *form;
    }

    std::unique_ptr<TarvelMain> main_;
};

QTEST_MAIN(MainTest)
#include "main_test.moc"
