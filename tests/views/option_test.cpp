// Option combos and list boxes, and the options editor driven through its
// named controls.
#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/data.h"
#include "views/formoption.h"
#include "views/optionwidgets.h"

using namespace tarvel;
using tarvel::testsupport::child;
using tarvel::testsupport::run;

namespace {

// The stored entries of a list, in text order.
QStringList stored(const char* object, const char* name) {
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT opt_description FROM options WHERE opt_object='%1' AND "
                                    "opt_name='%2' ORDER BY opt_description")
                         .arg(QLatin1String(object), QLatin1String(name)));
    QStringList out;
    for (; rs && !rs->Eof(); rs->MoveNext()) out << rs->value(0).toString();
    return out;
}

QStringList items(const QComboBox& combo) {
    QStringList out;
    for (int i = 0; i < combo.count(); ++i) out << combo.itemText(i);
    return out;
}

QStringList items(const QListWidget& list) {
    QStringList out;
    for (int i = 0; i < list.count(); ++i) out << list.item(i)->text();
    return out;
}

}  // namespace

class OptionTest : public QObject {
    Q_OBJECT
private slots:
    void init() { file_ = std::make_unique<tarvel::testing::TempDataFile>(); }
    void cleanup() { file_.reset(); }

    void combosAndListsKeepTheirText();
    void editorAddSaveDeleteExitRefreshesTheCombo();
    void editorKeepsProbabilityOrderInTheCombo();
    void lastDeletionDisablesTheTextBox();
    void nullEntryShowsByHowTheRowWasReached();

private:
    // An editor over (object, name) for `control`, loaded and shown.
    std::unique_ptr<FormOption> editor(const char* kind, QWidget* control, const char* object,
                                       const char* name) {
        auto form = std::make_unique<FormOption>();
        form->setControlKind(QLatin1String(kind));
        form->setControl(control);
        form->setObject(QLatin1String(object));
        form->setName(QLatin1String(name));
        form->setCaptions(QStringLiteral(" 联系人"), QStringLiteral("称呼 "));
        form->load();
        form->show();
        return form;
    }
    static void click(QWidget& form, const char* name) { child<QPushButton>(form, name)->click(); }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
};

void OptionTest::combosAndListsKeepTheirText() {
    QComboBox combo;
    combo.setEditable(true);
    combo.setEditText(QStringLiteral("自己写的"));
    FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("title"));
    QCOMPARE(items(combo), stored("con", "title"));
    QCOMPARE(combo.currentText(), QStringLiteral("自己写的"));

    // No entries: only cleared, and the text stays.
    FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("nothing"));
    QCOMPARE(combo.count(), 0);
    QCOMPARE(combo.currentText(), QStringLiteral("自己写的"));

    // A fixed combo can only show an entry of its list.
    QComboBox fixed;
    FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("time_format"));
    QCOMPARE(fixed.count(), 48);
    fixed.setCurrentText(QStringLiteral("09:30"));
    FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("cycle_type"));
    QCOMPARE(items(fixed), QStringList({"每天", "每周", "每月", "每年", "不重复"}));
    QCOMPARE(fixed.currentIndex(), -1);
    fixed.setCurrentIndex(3);
    FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("cycle_type"));
    QCOMPARE(fixed.currentText(), QStringLiteral("每年"));

    QListWidget list;
    FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
    QCOMPARE(items(list), stored("con", "tag"));
    list.setCurrentRow(items(list).indexOf(QStringLiteral("朋友")));
    run(
        QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                       "('con', 'tag', '  AAA  ')"));
    FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
    QCOMPARE(list.item(0)->text(), QStringLiteral("AAA"));  // trimmed, sorted first
    QCOMPARE(list.currentItem()->text(), QStringLiteral("朋友"));

    // An unreadable list leaves the control as it was.
    run(QStringLiteral("DROP TABLE options"));
    FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
    FillOptionCombo(&fixed, QStringLiteral("con"), QStringLiteral("title"));
    QCOMPARE(list.count(), 10);
    QCOMPARE(fixed.count(), 5);
}

void OptionTest::editorAddSaveDeleteExitRefreshesTheCombo() {
    QComboBox combo;
    combo.setEditable(true);
    FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("title"));
    combo.setEditText(QStringLiteral("先生"));
    auto form = editor("combobox", &combo, "con", "title");
    QAbstractItemModelTester tester(form->gridModel(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);

    QCOMPARE(child<QLabel>(*form, "lbl_opt_name")->text(), QStringLiteral("联系人的称呼"));
    QCOMPARE(child<QLabel>(*form, "lbl_option")->text(), QStringLiteral("称呼"));
    auto* grid = child<QTableView>(*form, "dg_listall");
    auto* text = child<QLineEdit>(*form, "txt_option");
    QVERIFY(grid->isColumnHidden(0) && grid->isColumnHidden(2) && grid->isColumnHidden(3));
    QVERIFY(!grid->isColumnHidden(1));
    QCOMPARE(grid->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("选项描述"));
    const QStringList before = stored("con", "title");
    QCOMPARE(grid->model()->rowCount(), before.size());
    QCOMPARE(text->text(), before.first());  // the first entry in text order
    QCOMPARE(form->editState(), 0);

    // Add: a quote is stored as typed.
    click(*form, "cmd_add");
    QCOMPARE(form->editState(), -1);
    QVERIFY(text->text().isEmpty() && text->isEnabled());
    QTest::keyClicks(text, QStringLiteral("O'Brien"));
    click(*form, "cmd_save");
    QCOMPARE(form->editState(), 0);
    QVERIFY(stored("con", "title").contains(QStringLiteral("O'Brien")));
    QCOMPARE(grid->model()->rowCount(), before.size() + 1);

    // Blank text saves nothing, in either state.
    text->setText(QStringLiteral("   "));
    click(*form, "cmd_save");
    click(*form, "cmd_add");
    click(*form, "cmd_save");
    QCOMPARE(stored("con", "title").size(), before.size() + 1);

    // Deleting while adding only clears the box.
    text->setText(QStringLiteral("不要"));
    click(*form, "cmd_delete");
    QVERIFY(text->text().isEmpty());
    QCOMPARE(stored("con", "title").size(), before.size() + 1);

    // Picking a row shows it; saving renames that entry.
    const int row = before.indexOf(QStringLiteral("博士"));
    grid->setCurrentIndex(grid->model()->index(row, 1));
    QCOMPARE(text->text(), QStringLiteral("博士"));
    QCOMPARE(form->editState(), 0);
    text->setText(QStringLiteral("博士后"));
    click(*form, "cmd_save");
    QStringList now = stored("con", "title");
    QVERIFY(!now.contains(QStringLiteral("博士")));
    QVERIFY(now.contains(QStringLiteral("博士后")));
    QCOMPARE(now.size(), before.size() + 1);

    // Delete the current entry: the next one is shown.
    const int professor = before.indexOf(QStringLiteral("教授"));
    const QString next = grid->model()->index(professor + 1, 1).data().toString();
    grid->setCurrentIndex(grid->model()->index(professor, 1));
    click(*form, "cmd_delete");
    now = stored("con", "title");
    QVERIFY(!now.contains(QStringLiteral("教授")));
    QCOMPARE(grid->model()->rowCount(), now.size());
    QCOMPARE(text->text(), next);
    QVERIFY(text->isEnabled());

    // The combo keeps showing the old list until the editor is left.
    QVERIFY(items(combo).contains(QStringLiteral("教授")));
    click(*form, "cmd_exit");
    QVERIFY(!form->isVisible());
    QCOMPARE(form->result(), int(QDialog::Accepted));
    QCOMPARE(items(combo), now);
    QCOMPARE(combo.currentText(), QStringLiteral("先生"));
}

void OptionTest::editorKeepsProbabilityOrderInTheCombo() {
    QComboBox combo;
    FillOptionCombo(&combo, QStringLiteral("opp"), QStringLiteral("Probability"));
    QCOMPARE(combo.count(), 11);
    QCOMPARE(combo.itemText(10), QStringLiteral("100%"));
    auto form = editor("combobox", &combo, "opp", "Probability");
    click(*form, "cmd_add");
    QTest::keyClicks(child<QLineEdit>(*form, "txt_option"), QStringLiteral("15"));
    click(*form, "cmd_save");
    // In the editor the list is in text order, the new entry after it until reloaded.
    auto* grid = child<QTableView>(*form, "dg_listall");
    QCOMPARE(grid->model()->index(2, 1).data().toString(), QStringLiteral("100"));
    QCOMPARE(grid->model()->index(11, 1).data().toString(), QStringLiteral("15"));
    form->close();  // the close box refreshes the caller as well
    QCOMPARE(combo.count(), 12);
    QCOMPARE(combo.itemText(0), QStringLiteral("0%"));
    QCOMPARE(combo.itemText(10), QStringLiteral("100%"));
    QCOMPARE(combo.itemText(11), QStringLiteral("15%"));  // stored order: entered last
}

void OptionTest::lastDeletionDisablesTheTextBox() {
    run(
        QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                       "('doc', 'kind', 'b'), ('doc', 'kind', 'a')"));
    QListWidget list;
    FillOptionList(&list, QStringLiteral("doc"), QStringLiteral("kind"));
    auto form = editor("listbox", &list, "doc", "kind");
    auto* text = child<QLineEdit>(*form, "txt_option");
    auto* grid = child<QTableView>(*form, "dg_listall");
    grid->setCurrentIndex(grid->model()->index(1, 1));
    QCOMPARE(text->text(), QStringLiteral("b"));
    click(*form, "cmd_delete");  // the last row: back to the one before
    QCOMPARE(text->text(), QStringLiteral("a"));
    click(*form, "cmd_delete");
    QVERIFY(text->text().isEmpty());
    QVERIFY(!text->isEnabled());
    QCOMPARE(grid->model()->rowCount(), 0);
    click(*form, "cmd_delete");  // nothing left: nothing happens
    click(*form, "cmd_save");
    QVERIFY(stored("doc", "kind").isEmpty());

    click(*form, "cmd_add");
    QVERIFY(text->isEnabled());
    QTest::keyClicks(text, QStringLiteral("c"));
    click(*form, "cmd_save");
    click(*form, "cmd_exit");
    QCOMPARE(items(list), QStringList{"c"});
}

void OptionTest::nullEntryShowsByHowTheRowWasReached() {
    run(
        QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                       "('acc', 'grade', NULL), ('acc', 'grade', 'x')"));
    auto form = editor("combobox", nullptr, "acc", "grade");
    auto* text = child<QLineEdit>(*form, "txt_option");
    auto* grid = child<QTableView>(*form, "dg_listall");
    QCOMPARE(text->text(), QStringLiteral(" "));  // the data control moved to it
    grid->setCurrentIndex(grid->model()->index(1, 1));
    QCOMPARE(text->text(), QStringLiteral("x"));
    grid->setCurrentIndex(grid->model()->index(0, 1));
    QCOMPARE(text->text(), QString());  // picked in the grid
    // The data control moves back to the null entry after "x" goes.
    grid->setCurrentIndex(grid->model()->index(1, 1));
    click(*form, "cmd_delete");
    QCOMPARE(text->text(), QStringLiteral(" "));
    click(*form, "cmd_exit");  // no control to refresh: nothing breaks
}

QTEST_MAIN(OptionTest)
#include "option_test.moc"
