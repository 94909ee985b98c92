// The main window: toolbar from the layout table, page switching and history,
// the unsaved-changes question, the day-change timer, tray and update request.
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include "custom/softwaresetting.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "shell/updatecheck.h"
#include "store/clock.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/data.h"
#include "tests/views/scripted.h"
#include "views/unsaved.h"

using namespace tarvel;
using tarvel::testsupport::RecordingOpener;
using tarvel::testsupport::run;
using tarvel::testsupport::ScriptedDialogs;

namespace {

const QString kQuestion = QStringLiteral("您输入的信息未保存，\n是否取消当前修改？");

void writeValue(const char* type, const char* key, const QString& value) {
    SoftwareSetting s;
    s.GetValue(QLatin1String(type), QLatin1String(key));
    s.WriteValue(QLatin1String(type), QLatin1String(key), s.Set_Name(), s.Set_Visible(), value,
                 s.Set_Description());
}

QString labelText(QWidget* page, const char* name) {
    auto* label = page ? page->findChild<QLabel*>(QLatin1String(name)) : nullptr;
    return label ? label->text() : QStringLiteral("<none>");
}

MainWindowOptions quietOptions() {
    MainWindowOptions o;
    o.trayAvailable = [] { return false; };
    return o;
}

}  // namespace

class MainTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        clearUnsaved();
        Clock::setFixed(QDateTime(QDate(2024, 5, 1), QTime(10, 0)));
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        opener_ = std::make_shared<RecordingOpener>();
    }
    void cleanup() { file_.reset(); }

    void loadBuildsToolbarFromTheLayoutTable();
    void moduleButtonsShowNamedPages();
    void backAndForwardAcrossThreeModules();
    void unsavedEditAsksBeforeToolbarActionsAndClosing();
    void helpAndForumOpenTheStoredAddresses();
    void dayChangeRefreshesTheHomePageOnce();
    void trayOnlyWithANotificationArea();
    void updateRequestIsSentAsIsAndTheReplyJudged();

private:
    std::unique_ptr<TarvelMain> makeMain(MainWindowOptions options = quietOptions()) {
        auto w = std::make_unique<TarvelMain>(options);
        w->setDialogs(dialogs_);
        w->setShellOpener(opener_);
        w->show();
        return w;
    }
    static void click(TarvelMain& w, const char* key) {
        QAction* a = w.toolbarAction(QLatin1String(key));
        if (!a) qFatal("no toolbar button %s", key);
        a->trigger();
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    std::shared_ptr<RecordingOpener> opener_;
};

void MainTest::loadBuildsToolbarFromTheLayoutTable() {
    appGlobals().busy = true;
    auto w = makeMain();
    QVERIFY(!appGlobals().busy);  // cleared on load
    QCOMPARE(w->windowTitle(), QStringLiteral("Tarvel日志软件V3.1"));
    QCOMPARE(w->currentPage()->objectName(), QStringLiteral("form_pp"));
    QCOMPARE(w->history().ListCount(), 1);
    QVERIFY(w->Timer1()->isActive());
    QCOMPARE(w->toolbarKeys().join(QLatin1Char(' ')),
             QStringLiteral("back forward | pp contact account opportunity schedule document | "
                            "email inout setting | help bbs"));
    QCOMPARE(w->toolbarAction(QStringLiteral("account"))->text(), QStringLiteral("客户单位"));

    run(
        QStringLiteral("UPDATE interface SET object_visible=0 WHERE object_type=1 AND "
                       "object_name IN ('sepline2', 'email')"));
    run(
        QStringLiteral("UPDATE interface SET object_index=0, object_description='人脉' WHERE "
                       "object_type=1 AND object_name='contact'"));
    w->RebuildToolbar();
    QCOMPARE(w->toolbarKeys().join(QLatin1Char(' ')),
             QStringLiteral("contact back forward | pp account opportunity schedule document "
                            "inout setting | help bbs"));
    QCOMPARE(w->toolbarAction(QStringLiteral("contact"))->text(), QStringLiteral("人脉"));
    click(*w, "contact");  // the caption names the module's page too
    QCOMPARE(labelText(w->currentPage(), "lbl_caption"), QStringLiteral("人脉"));
}

void MainTest::moduleButtonsShowNamedPages() {
    auto w = makeMain();
    const struct {
        const char* key;
        qint16 code;
        const char* form;
        const char* caption;
    } modules[] = {
        {"contact", 22, "form_con_all", "联系人"},
        {"account", 12, "form_acc_all", "客户单位"},
        {"opportunity", 3, "form_opp_all", "项目机会"},
        {"schedule", page::Schedule, "form_sch_all", "日程安排"},
        {"document", 40, "form_doc_all", "文档附件"},
        {"inout", 42, "form_inout", "数据交换"},
        {"email", page::Email, "form_email", "邮件"},
        {"setting", page::Settings, "form_app_setting", nullptr},  // a screen of its own
        {"pp", page::Home, "form_pp", nullptr},
    };
    for (const auto& m : modules) {
        click(*w, m.key);
        PageWidget* page = w->currentPage();
        QCOMPARE(page->objectName(), QLatin1String(m.form));
        QCOMPARE(w->mdiArea()->activeSubWindow()->widget(), page);
        QCOMPARE(w->history().c_RelatedPage(), m.code);
        if (!m.caption) continue;
        QCOMPARE(labelText(page, "lbl_caption"), QString::fromUtf8(m.caption));
        QCOMPARE(labelText(page, "lbl_condition"), QStringLiteral("条件：（无，显示全部记录）"));
    }
    QCOMPARE(w->history().ListCount(), 10);
    click(*w, "contact");  // one child window per page, reused
    QCOMPARE(w->mdiArea()->subWindowList().size(), 9);
    for (QMdiSubWindow* sub : w->mdiArea()->subWindowList())
        QCOMPARE(sub->isVisible(), sub->widget() == w->currentPage());

    // A condition and a record reach the page; unknown keys and codes do nothing.
    w->ShowPage(page::ContactDetail, QStringLiteral("WHERE con_id=17"), 17);
    QCOMPARE(labelText(w->currentPage(), "lbl_caption"), QStringLiteral("联系人 - 详细信息"));
    QCOMPARE(labelText(w->currentPage(), "lbl_condition"), QStringLiteral("条件：WHERE con_id=17"));
    w->Toolbar1ButtonClick(QStringLiteral("nothing"));
    QVERIFY(w->ShowPage(999) == nullptr);
    QCOMPARE(w->currentPageCode(), page::ContactDetail);
    QCOMPARE(w->history().ListCount(), 12);
}

void MainTest::backAndForwardAcrossThreeModules() {
    auto w = makeMain();
    w->ShowPage(page::ContactList, QStringLiteral("WHERE con_name LIKE '%王%'"));
    click(*w, "account");
    click(*w, "opportunity");
    QCOMPARE(w->history().aRelatedPage(), (QVector<qint16>{1, 22, 12, 3}));

    const auto expectPage = [&](const char* form, int index) {
        QCOMPARE(w->currentPage()->objectName(), QLatin1String(form));
        QVERIFY(w->currentPage()->isVisible());
        QCOMPARE(w->history().ListIndex(), index);
        QCOMPARE(w->history().ListCount(), 4);  // history mode adds nothing
    };
    click(*w, "back");
    expectPage("form_acc_all", 2);
    click(*w, "back");
    expectPage("form_con_all", 1);
    QCOMPARE(labelText(w->currentPage(), "lbl_condition"),
             QStringLiteral("条件：WHERE con_name LIKE '%王%'"));
    click(*w, "forward");
    click(*w, "forward");
    expectPage("form_opp_all", 3);
    click(*w, "forward");  // at the end: the same page again
    expectPage("form_opp_all", 3);
    for (int i = 0; i < 4; ++i) click(*w, "back");
    expectPage("form_pp", 0);

    // A new visit after going back lands at the end; the skipped pages stay.
    click(*w, "forward");
    click(*w, "document");
    QCOMPARE(w->history().aRelatedPage(), (QVector<qint16>{1, 22, 12, 3, 40}));
    QCOMPARE(w->history().ListIndex(), 4);
    click(*w, "back");
    QCOMPARE(w->currentPageCode(), qint16(3));
    QVERIFY(dialogs_->shown.isEmpty());
}

void MainTest::unsavedEditAsksBeforeToolbarActionsAndClosing() {
    auto w = makeMain();
    click(*w, "contact");
    setUnsaved(UnsavedModule::Contact, true);
    for (const char* key : {"account", "back", "help"}) {
        dialogs_->shown.clear();
        dialogs_->answers = {false};
        click(*w, key);
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("ask"));
        QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
        QCOMPARE(dialogs_->shown[0].text, kQuestion);
        // No: the page and the edit stay.
        QCOMPARE(w->currentPageCode(), page::ContactList);
        QVERIFY(isUnsaved(UnsavedModule::Contact));
        QCOMPARE(w->history().ListCount(), 2);
    }
    QVERIFY(opener_->opened.isEmpty());

    dialogs_->answers = {true};
    click(*w, "account");
    QCOMPARE(w->currentPageCode(), page::AccountList);
    QVERIFY(!anyUnsaved());  // the edit was given up, nothing left to ask about
    dialogs_->shown.clear();
    click(*w, "opportunity");
    QVERIFY(dialogs_->shown.isEmpty());

    setUnsaved(UnsavedModule::Document, true);  // any of the five asks
    dialogs_->answers = {false};
    QVERIFY(!w->close());
    QVERIFY(w->isVisible());
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].text, kQuestion);
    QCOMPARE(dialogs_->shown[0].icon, Dialogs::Icon::Information);
    dialogs_->answers = {true};
    QVERIFY(w->close());
    QVERIFY(!w->Timer1()->isActive());
}

void MainTest::helpAndForumOpenTheStoredAddresses() {
    writeValue("website", "help", QStringLiteral("https://help.example.org/tarvel/"));
    auto w = makeMain();
    click(*w, "help");
    click(*w, "bbs");
    QCOMPARE(opener_->opened, (QList<QUrl>{QUrl(QStringLiteral("https://help.example.org/tarvel/")),
                                           QUrl(QStringLiteral("https://www.tarvel.cn/bbs/"))}));
    QCOMPARE(w->history().ListCount(), 1);  // no page change
    writeValue("website", "bbs", QStringLiteral("  "));
    click(*w, "bbs");
    QCOMPARE(opener_->opened.size(), 2);
}

void MainTest::dayChangeRefreshesTheHomePageOnce() {
    Clock::setFixed(QDateTime(QDate(2024, 5, 1), QTime(23, 59, 58)));
    auto w = makeMain();
    QSignalSpy refreshed(w.get(), &TarvelMain::homePageRefreshed);
    QWidget* home = w->pageWidget(page::Home);
    QVERIFY(labelText(home, "lbl_date").contains(QStringLiteral("2024年5月1日")));
    w->Timer1Timer();
    QCOMPARE(refreshed.count(), 0);

    Clock::advance(3);  // 00:00:01 of the next day
    for (int i = 0; i < 3; ++i) {
        w->Timer1Timer();
        Clock::advance(3600);
    }
    QCOMPARE(refreshed.count(), 1);
    QCOMPARE(refreshed.at(0).at(0).toDate(), QDate(2024, 5, 2));
    QCOMPARE(w->lastDaySeen(), QDate(2024, 5, 2));
    QVERIFY(labelText(home, "lbl_date").contains(QStringLiteral("2024年5月2日")));

    Clock::advance(24 * 3600);  // and again at the next midnight
    w->Timer1Timer();
    QCOMPARE(w->homeRefreshCount(), 2);

    // The two flags: a queued routine runs once, the periodic one while asked for.
    int ran = 0;
    w->setPendingRoutine([&] { ++ran; });
    QVERIFY(appGlobals().busy);
    w->Timer1Timer();
    w->Timer1Timer();
    QCOMPARE(ran, 1);
    QVERIFY(!appGlobals().busy);
    appGlobals().secondTimer = true;
    w->Timer1Timer();
    QCOMPARE(w->periodicRunCount(), 1);
    QCOMPARE(w->homeRefreshCount(), 2);
}

void MainTest::trayOnlyWithANotificationArea() {
    QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());  // offscreen has none
    auto plain = makeMain(MainWindowOptions{});          // the real check
    QVERIFY(plain->trayIcon() == nullptr);
    QVERIFY(!plain->findChild<QAction*>(QStringLiteral("m_tray_show")));
    QVERIFY(plain->close());

    MainWindowOptions o;
    o.trayAvailable = [] { return true; };
    auto w = makeMain(o);
    QCOMPARE(w->trayIcon()->toolTip(), QStringLiteral("Tarvel日志软件V3.1"));
    auto* hide = w->findChild<QAction*>(QStringLiteral("m_tray_hide"));
    auto* show = w->findChild<QAction*>(QStringLiteral("m_tray_show"));
    auto* exit = w->findChild<QAction*>(QStringLiteral("m_tray_exit"));
    QVERIFY(hide && show && exit);
    hide->trigger();
    QVERIFY(!w->isVisible());
    show->trigger();
    QVERIFY(w->isVisible());
    setUnsaved(UnsavedModule::Contact, true);
    dialogs_->answers = {false, true};
    exit->trigger();  // through the normal closing path
    QVERIFY(w->isVisible());
    exit->trigger();
    QVERIFY(!w->isVisible());
    QCOMPARE(dialogs_->shown.size(), 2);
}

void MainTest::updateRequestIsSentAsIsAndTheReplyJudged() {
    auto plain = makeMain(MainWindowOptions{});  // the shipped file names no server
    QVERIFY(!plain->updateCheck()->requested());
    QCOMPARE(plain->updateCheck()->Wsk_Getfiles()->state(), QAbstractSocket::UnconnectedState);

    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    writeValue("software", "update_host", QStringLiteral(" 127.0.0.1 "));
    writeValue("software", "update_port", QString::number(port));
    writeValue("software", "date_upgrade", QStringLiteral("2024-3-1"));
    MainWindowOptions o = quietOptions();
    o.checkForUpdate = true;
    auto w = makeMain(o);
    QSignalSpy checked(w.get(), &TarvelMain::updateChecked);
    QVERIFY(w->updateCheck()->requested());

    if (!server.hasPendingConnections()) QVERIFY(server.waitForNewConnection(30000));
    QTcpSocket* peer = server.nextPendingConnection();
    const QByteArray expected = "GET http://127.0.0.1:" + QByteArray::number(port) +
                                "/atarvel.txt  HTTP/1.0\r\nAccept/\r\nAccept text/html\r\n";
    QByteArray received;
    while (received.size() < expected.size()) {
        if (!peer->bytesAvailable()) QVERIFY(QSignalSpy(peer, &QTcpSocket::readyRead).wait(30000));
        received += peer->readAll();
    }
    QCOMPARE(received, expected);

    peer->write("HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\n\r\n2024-04-15\r\n");
    peer->disconnectFromHost();
    if (checked.isEmpty()) QVERIFY(checked.wait(30000));
    QCOMPARE(checked.count(), 1);
    QCOMPARE(checked.at(0).at(0).toBool(), true);
    QCOMPARE(checked.at(0).at(1).toDate(), QDate(2024, 4, 15));
    QVERIFY(w->statusBar()->currentMessage().contains(QStringLiteral("2024-04-15")));
    SoftwareSetting s;
    s.GetValue(QStringLiteral("software"), QStringLiteral("date_recent_getfile"));
    QCOMPARE(s.Set_Value(), QStringLiteral("2024-05-01"));
}

QTEST_MAIN(MainTest)
#include "main_test.moc"
