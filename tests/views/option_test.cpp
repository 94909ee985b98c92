// Option combos and list boxes, and the options editor driven through its
// named controls.
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QtTest>

#include "tests/views/screenfixture.h"
#include "views/options/formoption.h"
#include "views/options/optionwidgets.h"

using namespace tarvel;
using namespace tarvel::testsupport;

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

class OptionTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void combosAndListsKeepTheirText() {
        QComboBox combo;
        combo.setEditable(true);
        combo.setEditText(QStringLiteral("自己写的"));
        FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("title"));
        QCOMPARE(items(combo), stored("con", "title"));
        FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("nothing"));  // only cleared
        QCOMPARE(combo.count(), 0);
        QCOMPARE(combo.currentText(), QStringLiteral("自己写的"));

        // A fixed combo can only show an entry of its list.
        QComboBox fixed;
        FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("time_format"));
        fixed.setCurrentText(QStringLiteral("09:30"));
        FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("cycle_type"));
        QCOMPARE(fixed.currentIndex(), -1);
        fixed.setCurrentIndex(3);
        FillOptionCombo(&fixed, QStringLiteral("sch"), QStringLiteral("cycle_type"));
        QCOMPARE(fixed.currentText(), QStringLiteral("每年"));

        QListWidget list;
        FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
        const QStringList tags = items(list);
        list.setCurrentRow(tags.indexOf(QStringLiteral("朋友")));
        FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
        QCOMPARE(list.currentRow(), tags.indexOf(QStringLiteral("朋友")));

        // An unreadable list leaves the control as it was.
        run("DROP TABLE options");
        FillOptionList(&list, QStringLiteral("con"), QStringLiteral("tag"));
        QCOMPARE(items(list), tags);
    }

    void editorAddSaveDeleteExitRefreshesTheCombo() {
        QComboBox combo;
        combo.setEditable(true);
        FillOptionCombo(&combo, QStringLiteral("con"), QStringLiteral("title"));
        combo.setEditText(QStringLiteral("先生"));
        auto form = editor("combobox", &combo, "con", "title");
        const QStringList before = stored("con", "title");
        QCOMPARE(text_->text(), before.first());

        click(*form, "cmd_add");  // a quote is stored as typed
        QTest::keyClicks(text_, QStringLiteral("O'Brien"));
        click(*form, "cmd_save");
        QVERIFY(stored("con", "title").contains(QStringLiteral("O'Brien")));
        click(*form, "cmd_add");  // blank text saves nothing; deleting while adding only clears
        text_->setText(QStringLiteral("   "));
        click(*form, "cmd_save");
        text_->setText(QStringLiteral("不要"));
        click(*form, "cmd_delete");
        QVERIFY(text_->text().isEmpty());
        QCOMPARE(stored("con", "title").size(), before.size() + 1);

        pick(before.indexOf(QStringLiteral("博士")));  // saving renames the picked entry
        text_->setText(QStringLiteral("博士后"));
        click(*form, "cmd_save");
        const int professor = before.indexOf(QStringLiteral("教授"));
        const QString next = grid_->model()->index(professor + 1, 1).data().toString();
        pick(professor);
        click(*form, "cmd_delete");  // the next entry is shown
        QCOMPARE(text_->text(), next);
        QStringList now = before;
        now.removeAll(QStringLiteral("教授"));
        now.replace(now.indexOf(QStringLiteral("博士")), QStringLiteral("博士后"));
        now << QStringLiteral("O'Brien");
        now.sort();
        QCOMPARE(stored("con", "title"), now);

        QVERIFY(items(combo).contains(QStringLiteral("教授")));  // until the editor is left
        click(*form, "cmd_exit");
        QCOMPARE(items(combo), now);
        QCOMPARE(combo.currentText(), QStringLiteral("先生"));
    }

    void editorKeepsProbabilityOrderInTheCombo() {
        QComboBox combo;
        FillOptionCombo(&combo, QStringLiteral("opp"), QStringLiteral("Probability"));
        const QStringList before = items(combo);
        auto form = editor("combobox", &combo, "opp", "Probability");
        click(*form, "cmd_add");
        QTest::keyClicks(text_, QStringLiteral("15"));
        click(*form, "cmd_save");
        form->close();  // the close box refreshes the caller as well
        // In stored order (not sorted): the entry made last comes last.
        QCOMPARE(items(combo), before + QStringList{QStringLiteral("15%")});
    }

    void lastDeletionDisablesTheTextBox() {
        run("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
            "('doc', 'kind', 'b'), ('doc', 'kind', 'a')");
        QListWidget list;
        auto form = editor("listbox", &list, "doc", "kind");
        pick(1);
        click(*form, "cmd_delete");  // the last row: back to the one before
        QCOMPARE(text_->text(), QStringLiteral("a"));
        click(*form, "cmd_delete");
        QVERIFY(!text_->isEnabled());
        click(*form, "cmd_add");
        QVERIFY(text_->isEnabled());
        QTest::keyClicks(text_, QStringLiteral("c"));
        click(*form, "cmd_save");
        click(*form, "cmd_exit");
        QCOMPARE(items(list), QStringList{"c"});
    }

    void refusedWritesSaySoAndKeepTheText() {
        QComboBox combo;
        auto form = editor("combobox", &combo, "con", "title");
        form->setDialogs(dialogs_);
        const QStringList before = stored("con", "title");
        {
            ReadOnlyDataFile readOnly;
            pick(0);
            click(*form, "cmd_delete");
            click(*form, "cmd_add");
            typeText(text_, QStringLiteral("院士"));
            click(*form, "cmd_save");
            QCOMPARE(text_->text(), QStringLiteral("院士"));  // still there for another try
            QCOMPARE(form->editState(), int(FormOption::Adding));
        }
        QCOMPARE(dialogs_->shown.size(), 2);
        for (const auto& shown : dialogs_->shown)
            QVERIFY2(shown.text.contains(QStringLiteral("选项没有保存成功")) &&
                         shown.text.contains(QDir::toNativeSeparators(file_->path())),
                     qPrintable(shown.text));
        QCOMPARE(stored("con", "title"), before);
    }

private:
    // An editor over (object, name) for `control`, loaded and shown.
    std::unique_ptr<FormOption> editor(const char* kind, QWidget* control, const char* object,
                                       const char* name) {
        auto form = std::make_unique<FormOption>();
        form->setControlKind(QLatin1String(kind));
        form->setControl(control);
        form->setObject(QLatin1String(object));
        form->setName(QLatin1String(name));
        form->setCaptions(QStringLiteral("联系人"), QStringLiteral("称呼"));
        form->load();
        form->show();
        text_ = child<QLineEdit>(*form, "txt_option");
        grid_ = child<QTableView>(*form, "dg_listall");
        return form;
    }

    void pick(int row) { grid_->setCurrentIndex(grid_->model()->index(row, 1)); }

    QLineEdit* text_ = nullptr;
    QTableView* grid_ = nullptr;
};

QTEST_MAIN(OptionTest)
#include "option_test.moc"
