// Back and forward through the main window return a record list with the
// condition and the sort it had when the user left it.
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QtTest>

#include "custom/fsettings.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "store/clock.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"
#include "tests/views/listrecords.h"
#include "views/common/unsaved.h"
#include "views/lists/categorypanel.h"
#include "views/lists/formlist.h"
#include "views/lists/tickmodel.h"

using namespace tarvel;
using tarvel::testsupport::child;

class ListHistoryTest : public QObject {
    Q_OBJECT
private slots:
    void backAndForwardRestoreListConditionAndSort();
};

void ListHistoryTest::backAndForwardRestoreListConditionAndSort() {
    appGlobals() = AppGlobals{};
    clearUnsaved();
    Clock::setFixed(testsupport::at(2024, 5, 1, 10));
    tarvel::testing::TempDataFile file;
    testsupport::fillListRecords({10, 80, 10, 5, 5});
    loadProgramFieldSettings();
    MainWindowOptions options;
    options.trayAvailable = [] { return false; };
    options.checkForUpdate = false;
    TarvelMain main(options);
    auto dialogs = std::make_shared<testsupport::ScriptedDialogs>();
    main.setDialogs(dialogs);
    main.Timer1()->stop();
    main.show();

    main.Toolbar1ButtonClick(QStringLiteral("contact"));
    auto* contacts = qobject_cast<lists::FormList*>(main.currentPage());
    QVERIFY(contacts);
    QCOMPARE(contacts->objectName(), QStringLiteral("form_con_all"));
    QCOMPARE(contacts->gridModel()->rowCount(), 80);
    QCoreApplication::processEvents();  // the panel counts after the grid shows
    QTreeWidgetItem* beijing =
        contacts->panel()->entry(QStringLiteral("province"), QStringLiteral("北京"));
    QVERIFY(beijing);
    contacts->panel()->itemClicked(beijing, 0);
    auto* header = child<QTableView>(*contacts, "dg_listall")->horizontalHeader();
    header->sectionClicked(1);
    header->sectionClicked(1);
    const QString sorted = contacts->condition();
    QVERIFY2(sorted.startsWith(QStringLiteral(" WHERE con_province='北京' ORDER BY ")),
             qPrintable(sorted));
    QVERIFY(sorted.endsWith(QStringLiteral(" DESC")));
    const int rows = contacts->gridModel()->rowCount();
    const qint64 firstId = contacts->gridModel()->idAt(0);

    main.Toolbar1ButtonClick(QStringLiteral("account"));
    auto* accounts = qobject_cast<lists::FormList*>(main.currentPage());
    QVERIFY(accounts && accounts != contacts);
    testsupport::typeText(child<QLineEdit>(*accounts, "txt_search"), QStringLiteral("科技"));
    accounts->searchNow();
    const QString search = accounts->condition();
    child<QLineEdit>(*accounts, "txt_search")->setText(QString());  // not searched: no change

    main.Toolbar1ButtonClick(QStringLiteral("back"));
    QCOMPARE(main.currentPageCode(), page::ContactList);
    QCOMPARE(contacts->condition(), sorted);
    QCOMPARE(contacts->gridModel()->rowCount(), rows);
    QCOMPARE(contacts->gridModel()->idAt(0), firstId);
    main.Toolbar1ButtonClick(QStringLiteral("forward"));
    QCOMPARE(main.currentPageCode(), page::AccountList);
    QCOMPARE(accounts->condition(), search);
    QCOMPARE(child<QLineEdit>(*accounts, "txt_search")->text(), QStringLiteral("科技"));
    Clock::reset();
}

QTEST_MAIN(ListHistoryTest)
#include "listhistory_test.moc"
