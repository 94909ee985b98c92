// The settings window: each page read from and written to storage, only the
// page shown saved, the toolbar preview and the question after saving.
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QtTest>

#include "custom/appsettings.h"
#include "custom/fsettings.h"
#include "custom/userprofile.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/data.h"
#include "tests/views/scripted.h"
#include "views/formappsetting.h"

using namespace tarvel;
using tarvel::testsupport::child;
using tarvel::testsupport::indexed;
using tarvel::testsupport::run;
using tarvel::testsupport::ScriptedDialogs;
using tarvel::testsupport::typeText;

namespace {

const QString kQuestion = QStringLiteral(" 现在执行界面修改的结果吗?");

QStringList keys(const QList<AppSetting>& entries) {
    QStringList out;
    for (const AppSetting& e : entries) out << e.ObjName();
    return out;
}

QStringList keys(const QListWidget& list) {
    QStringList out;
    for (int i = 0; i < list.count(); ++i) out << list.item(i)->data(Qt::UserRole).toString();
    return out;
}

void clickItem(QListWidget* list, int row) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(row)).center());
}

AppSetting storedEntry(qint16 type, const QString& name) {
    AppSettings set;
    set.GetObjs(0, type);
    const int i = set.FindIndex(name);
    return i ? set.Item(i) : AppSetting();
}

}  // namespace

class SettingTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        previews_.clear();
        rebuilds_ = 0;
        trace::clear();
        trace::setEnabled(true);
    }
    void cleanup() {
        trace::setEnabled(false);
        file_.reset();
    }

    void pagesShowTheStoredLayout();
    void savingWritesOnlyThePageShownThenAsks();
    void toolbarMovesFollowTheFirstLastRuleAndPreview();
    void relatedPanelsSaveAllTwenty();
    void fieldReorderedAndHiddenIsStillSelected();
    void profileIsSaved();
    void failedSaveSaysSoAndAsksNothing();

private:
    std::unique_ptr<FormAppSetting> makeForm(bool withHost = true) {
        auto form = std::make_unique<FormAppSetting>();
        form->setDialogs(dialogs_);
        if (withHost) {
            LayoutHost host;
            host.previewToolbar = [this](const QList<AppSetting>& e) { previews_ << keys(e); };
            host.rebuildScreens = [this] { ++rebuilds_; };
            form->setLayoutHost(host);
        }
        form->resize(800, 560);
        form->show();
        return form;
    }
    void save(FormAppSetting& form, int tab, bool ok) {
        form.SSTab1()->setCurrentIndex(tab);
        dialogs_->shown.clear();
        dialogs_->answers = {ok};
        child<QPushButton>(form, "cmd_save")->click();
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    QList<QStringList> previews_;
    int rebuilds_ = 0;
};

void SettingTest::pagesShowTheStoredLayout() {
    run(
        QStringLiteral("UPDATE interface SET object_description='人脉' WHERE object_type=1 AND "
                       "object_name='contact'"));
    run(
        QStringLiteral("UPDATE interface SET object_visible=0, object_edittype=0 WHERE "
                       "object_type=2 AND object_name='doc_opp'"));
    auto form = makeForm();
    QStringList titles;
    for (int i = 0; i < form->SSTab1()->count(); ++i) titles << form->SSTab1()->tabText(i);
    QCOMPARE(titles, QStringList({"模块名称", "工具栏", "客户单位的相关信息", "项目机会的相关信息",
                                  "人脉的相关信息", "日程安排的相关信息", "文档附件的相关信息",
                                  "列表字段", "个人资料"}));
    QCOMPARE(child<QLineEdit>(*form, "txt_contact")->text(), QStringLiteral("人脉"));
    QCOMPARE(child<QLineEdit>(*form, "txt_document")->text(), QStringLiteral("文档附件"));
    QCOMPARE(indexed<QRadioButton>(*form, "Option1", 2)->text(), QStringLiteral("人脉"));

    // An owner's four panels, in box order; its check boxes show the first one's flags.
    QCOMPARE(indexed<QLineEdit>(*form, "txt_acc_related", 0)->text(), QStringLiteral("日程安排"));
    QCOMPARE(indexed<QLineEdit>(*form, "txt_acc_related", 2)->text(), QStringLiteral("项目机会"));
    QCOMPARE(indexed<QLineEdit>(*form, "txt_con_related", 1)->text(), QStringLiteral("联系人"));
    QVERIFY(child<QCheckBox>(*form, "chk_acc_related_v")->isChecked());
    QVERIFY(child<QCheckBox>(*form, "chk_acc_related_e")->isChecked());
    QVERIFY(!child<QCheckBox>(*form, "chk_doc_related_v")->isChecked());
    QVERIFY(!child<QCheckBox>(*form, "chk_doc_related_e")->isChecked());

    auto* menu = child<QListWidget>(*form, "lv_menu");
    QCOMPARE(
        keys(*menu).join(QLatin1Char(' ')),
        QStringLiteral("back forward sepline1 pp contact account opportunity schedule document "
                       "sepline2 email inout setting sepline3 help bbs"));
    QCOMPARE(menu->item(4)->text(), QStringLiteral("人脉"));
    QCOMPARE(menu->item(2)->checkState(), Qt::Checked);
    QVERIFY(previews_.isEmpty());  // loading previews nothing

    // The list-field page: Option1 picks the kind, lv_field its columns.
    const char* const firstField[] = {"acc_id", "opp_id", "con_id", "tas_id", "doc_id"};
    const int kinds[] = {2, 1, 3, 4, 5};
    auto* fields = child<QTreeWidget>(*form, "lv_field");
    for (int i = 0; i < 5; ++i) {
        indexed<QRadioButton>(*form, "Option1", i)->click();
        QCOMPARE(form->fieldKind(), kinds[i]);
        QCOMPARE(fields->topLevelItem(0)->data(0, Qt::UserRole).toString(),
                 QLatin1String(firstField[i]));
    }
    QCOMPARE(fields->columnCount(), 3);
    QCOMPARE(fields->headerItem()->data(0, Qt::UserRole).toString(),
             QStringLiteral("fie_description"));
    QCOMPARE(fields->headerItem()->data(1, Qt::UserRole).toString(), QStringLiteral("fie_index"));
    QCOMPARE(fields->headerItem()->data(2, Qt::UserRole).toString(), QStringLiteral("fie_name"));
    QCOMPARE(fields->columnWidth(0), 2500 / 15);
    QVERIFY(fields->isColumnHidden(1) && fields->isColumnHidden(2));
    QTreeWidgetItem* second = fields->topLevelItem(1);
    QCOMPARE(second->text(0), QStringLiteral("文档附件名称"));
    QCOMPARE(second->text(1), QStringLiteral("02"));
    QCOMPARE(second->checkState(0), Qt::Checked);
    QCOMPARE(fields->topLevelItem(0)->checkState(0), Qt::Unchecked);
}

void SettingTest::savingWritesOnlyThePageShownThenAsks() {
    auto form = makeForm();
    child<QLineEdit>(*form, "txt_contact")->setText(QStringLiteral(" 人脉 "));
    child<QLineEdit>(*form, "txt_account")->setText(QStringLiteral("O'Neil单位"));
    child<QLineEdit>(*form, "txt_user_name")->setText(QStringLiteral("王小明"));
    child<QListWidget>(*form, "lv_menu")->item(0)->setCheckState(Qt::Unchecked);
    indexed<QLineEdit>(*form, "txt_con_related", 0)->setText(QStringLiteral("日程"));
    trace::clear();

    save(*form, FormAppSetting::CaptionsTab, false);
    QStringList expected;
    const char* const modules[] = {"account", "opportunity", "contact", "schedule", "document"};
    const char* const captions[] = {"O''Neil单位", "项目机会", "人脉", "日程安排", "文档附件"};
    for (int i = 0; i < 5; ++i)
        expected << QStringLiteral(
                        "UPDATE interface SET object_description='%1'  WHERE "
                        "app_type=0 AND object_type=1 AND object_name='%2'")
                        .arg(QString::fromUtf8(captions[i]), QLatin1String(modules[i]));
    QCOMPARE(trace::statements(), expected);
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("ask"));
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel 提示"));
    QCOMPARE(dialogs_->shown[0].text, kQuestion);
    QCOMPARE(dialogs_->shown[0].buttons, Dialogs::Buttons::OkCancel);
    QCOMPARE(rebuilds_, 0);  // Cancel: stored, shown when the screens are next built
    QCOMPARE(form->SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
             QStringLiteral("联系人的相关信息"));
    QCOMPARE(storedEntry(1, QStringLiteral("account")).ObjDesc(), QStringLiteral("O'Neil单位"));
    QCOMPARE(UserProfile::load().name, QString());
    QCOMPARE(storedEntry(1, QStringLiteral("back")).ObjVisible(), qint16(-1));
    QCOMPARE(storedEntry(2, QStringLiteral("acc_sch")).ObjDesc(), QStringLiteral("日程安排"));

    save(*form, FormAppSetting::CaptionsTab, true);
    QCOMPARE(rebuilds_, 1);

    // Without a host the window rebuilds only itself.
    auto alone = makeForm(false);
    QCOMPARE(alone->SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
             QStringLiteral("人脉的相关信息"));
    child<QLineEdit>(*alone, "txt_contact")->setText(QStringLiteral("客户联系人"));
    save(*alone, FormAppSetting::CaptionsTab, false);
    QCOMPARE(alone->SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
             QStringLiteral("人脉的相关信息"));
    save(*alone, FormAppSetting::CaptionsTab, true);
    QCOMPARE(alone->SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
             QStringLiteral("客户联系人的相关信息"));
    QCOMPARE(indexed<QRadioButton>(*alone, "Option1", 2)->text(), QStringLiteral("客户联系人"));
}

void SettingTest::toolbarMovesFollowTheFirstLastRuleAndPreview() {
    auto form = makeForm();
    form->SSTab1()->setCurrentIndex(FormAppSetting::ToolbarTab);
    auto* menu = child<QListWidget>(*form, "lv_menu");
    auto* up = child<QPushButton>(*form, "Cmd_menu_up");
    auto* down = child<QPushButton>(*form, "cmd_menu_down");
    const QStringList stored = keys(*menu);

    clickItem(menu, 0);
    QVERIFY(!up->isEnabled());
    QVERIFY(down->isEnabled());
    QCOMPARE(previews_.last(), stored);
    clickItem(menu, menu->count() - 1);
    QVERIFY(up->isEnabled());
    QVERIFY(!down->isEnabled());
    clickItem(menu, 4);  // contact
    QVERIFY(up->isEnabled() && down->isEnabled());

    // Moving keeps the item chosen; at the top the rule disables "up".
    for (int i = 0; i < 4; ++i) up->click();
    QCOMPARE(menu->currentRow(), 0);
    QVERIFY(!up->isEnabled());
    QCOMPARE(keys(*menu).mid(0, 3), QStringList({"contact", "back", "forward"}));
    down->click();
    QCOMPARE(menu->currentRow(), 1);
    QCOMPARE(keys(*menu).mid(0, 3), QStringList({"back", "contact", "forward"}));
    QCOMPARE(previews_.last(), keys(*menu));

    // An unchecked separator drops out of the preview at once.
    const int sep = keys(*menu).indexOf(QStringLiteral("sepline2"));
    menu->item(sep)->setCheckState(Qt::Unchecked);
    QStringList shown = keys(*menu);
    shown.removeAll(QStringLiteral("sepline2"));
    QCOMPARE(previews_.last(), shown);
    QCOMPARE(storedEntry(1, QStringLiteral("sepline2")).ObjVisible(), qint16(-1));  // not yet

    trace::clear();
    save(*form, FormAppSetting::ToolbarTab, false);
    QCOMPARE(trace::statements().size(), 16);
    QCOMPARE(trace::statements().at(1),
             QStringLiteral("UPDATE interface SET object_index=2 ,object_visible= -1 WHERE "
                            "app_type=0 AND object_type=1 AND object_name='contact'"));
    QCOMPARE(trace::statements().at(sep),
             QStringLiteral("UPDATE interface SET object_index=%1 ,object_visible= 0 WHERE "
                            "app_type=0 AND object_type=1 AND object_name='sepline2'")
                 .arg(sep + 1));
    AppSettings toolbar;
    toolbar.GetToolbarIndex(0);
    QStringList order;
    for (const AppSetting& e : toolbar) order << e.ObjName();
    QCOMPARE(order, keys(*menu));
    QCOMPARE(storedEntry(1, QStringLiteral("sepline2")).ObjVisible(), qint16(0));
}

void SettingTest::relatedPanelsSaveAllTwenty() {
    auto form = makeForm();
    indexed<QLineEdit>(*form, "txt_con_related", 2)->setText(QStringLiteral("相关项目"));
    child<QCheckBox>(*form, "chk_con_related_e")->setChecked(false);
    child<QCheckBox>(*form, "chk_sch_related_v")->setChecked(false);
    trace::clear();
    save(*form, FormAppSetting::RelatedFirst, false);  // from the accounts' page
    const QStringList sql = trace::statements();
    QCOMPARE(sql.size(), 20);
    QVERIFY(sql.contains(
        QStringLiteral("UPDATE interface SET object_description='相关项目',object_visible=-1,"
                       "object_edittype=0 WHERE app_type=0 AND object_type=2 AND "
                       "object_name='con_opp'")));
    for (const QString& owner : FormAppSetting::relatedOwners()) {
        for (const QString& panel : FormAppSetting::relatedPanels(owner)) {
            const AppSetting e = storedEntry(2, panel);
            QCOMPARE(e.ObjVisible(), qint16(owner == QLatin1String("sch") ? 0 : -1));
            QCOMPARE(e.ObjEditType(), qint16(owner == QLatin1String("con") ? 0 : -1));
        }
    }
    QCOMPARE(storedEntry(2, QStringLiteral("con_opp")).ObjDesc(), QStringLiteral("相关项目"));
    QCOMPARE(storedEntry(2, QStringLiteral("acc_opp")).ObjDesc(), QStringLiteral("项目机会"));

    // Shown again, the page reads back what was stored.
    indexed<QLineEdit>(*form, "txt_con_related", 2)->clear();
    form->fill(PageRequest{});
    QCOMPARE(indexed<QLineEdit>(*form, "txt_con_related", 2)->text(), QStringLiteral("相关项目"));
    QVERIFY(!child<QCheckBox>(*form, "chk_sch_related_v")->isChecked());
}

void SettingTest::fieldReorderedAndHiddenIsStillSelected() {
    loadProgramFieldSettings();
    auto form = makeForm();
    form->SSTab1()->setCurrentIndex(FormAppSetting::FieldsTab);
    indexed<QRadioButton>(*form, "Option1", 2)->click();  // contacts
    QCOMPARE(form->fieldKind(), 3);
    auto* fields = child<QTreeWidget>(*form, "lv_field");
    auto* up = child<QPushButton>(*form, "cmd_field_up");
    auto* down = child<QPushButton>(*form, "cmd_field_down");
    auto* edit = child<QLineEdit>(*form, "txt_edit");
    QVERIFY(!edit->isEnabled());
    const int count = fields->topLevelItemCount();

    QTreeWidgetItem* account = fields->topLevelItem(3);
    QCOMPARE(account->data(0, Qt::UserRole).toString(), QStringLiteral("acc_name"));
    fields->setCurrentItem(account);
    QCOMPARE(edit->text(), QStringLiteral("客户/单位名称"));
    for (int i = 0; i < 3; ++i) up->click();
    QCOMPARE(fields->indexOfTopLevelItem(account), 0);
    QVERIFY(!up->isEnabled());
    QVERIFY(down->isEnabled());
    account->setCheckState(0, Qt::Unchecked);
    edit->selectAll();
    typeText(edit, QStringLiteral("单位"));
    QCOMPARE(account->text(0), QStringLiteral("单位"));
    fields->setCurrentItem(fields->topLevelItem(count - 1));
    QVERIFY(!down->isEnabled());
    QCOMPARE(edit->text(), fields->topLevelItem(count - 1)->text(0));

    trace::clear();
    save(*form, FormAppSetting::FieldsTab, false);
    QCOMPARE(trace::statements().first(),
             QStringLiteral("UPDATE fields SET fie_index=1,fie_description='单位',fie_visible=0 "
                            "WHERE fie_type=3 AND fie_name='acc_name'"));
    FSettings stored;
    stored.GetMySetting(3);
    QVERIFY(stored.SelectFields().startsWith(QStringLiteral(
        " con_check, acc_name,con_id,con_lastname,con_title,con_department_title,")));
    QCOMPARE(stored.Count(), count);
    QCOMPARE(stored.Item(QStringLiteral("1"))->FieldName(), QStringLiteral("acc_name"));
    QVERIFY(!stored.Item(QStringLiteral("1"))->Visible());
    // The lists see the new columns without waiting for the next start.
    QCOMPARE(programFieldSettings(3)->SelectFields(), stored.SelectFields());
    QCOMPARE(programFieldSettings(3)->FindCaption(QStringLiteral("acc_name")),
             QStringLiteral("单位"));

    // Choosing the list again shows the stored order.
    indexed<QRadioButton>(*form, "Option1", 0)->click();
    indexed<QRadioButton>(*form, "Option1", 2)->click();
    QCOMPARE(fields->topLevelItem(0)->text(0), QStringLiteral("单位"));
    QCOMPARE(fields->topLevelItem(0)->text(1), QStringLiteral("01"));
}

void SettingTest::profileIsSaved() {
    auto form = makeForm();
    child<QLineEdit>(*form, "txt_user_name")->setText(QStringLiteral(" 王小明 "));
    child<QLineEdit>(*form, "txt_user_account")->setText(QStringLiteral("O'Reilly 公司"));
    child<QLineEdit>(*form, "txt_user_title")->setText(QStringLiteral("经理"));
    child<QLineEdit>(*form, "txt_user_email")->setText(QStringLiteral("wang@example.com"));
    save(*form, FormAppSetting::PersonalTab, true);
    const UserProfile p = UserProfile::load();
    QCOMPARE(p.name, QStringLiteral("王小明"));
    QCOMPARE(p.account, QStringLiteral("O'Reilly 公司"));
    QCOMPARE(p.title, QStringLiteral("经理"));
    QCOMPARE(p.email, QStringLiteral("wang@example.com"));
    QCOMPARE(dialogs_->shown.size(), 1);

    auto again = makeForm();
    QCOMPARE(child<QLineEdit>(*again, "txt_user_account")->text(), QStringLiteral("O'Reilly 公司"));
}

void SettingTest::failedSaveSaysSoAndAsksNothing() {
    auto form = makeForm();
    run(QStringLiteral("DROP TABLE interface"));
    save(*form, FormAppSetting::ToolbarTab, true);
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("info"));
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
    QCOMPARE(dialogs_->shown[0].text, QStringLiteral("保存设置没有完成！"));
    QCOMPARE(rebuilds_, 0);
}

QTEST_MAIN(SettingTest)
#include "appsetting_test.moc"
