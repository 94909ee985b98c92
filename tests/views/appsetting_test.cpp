// The settings window: each page read from and written to storage, only the
// page shown saved, the toolbar preview and the question after saving.
#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <QtTest>

#include "custom/appsettings.h"
#include "custom/fsettings.h"
#include "custom/safekeeping.h"
#include "custom/userprofile.h"
#include "exchange/autobackup.h"
#include "exchange/filetools.h"
#include "exchange/recyclebin.h"
#include "tests/views/screenfixture.h"
#include "views/settings/formappsetting.h"
#include "views/settings/relatedpage.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

template <typename Entries>  // a list of AppSetting, or AppSettings
QStringList keys(const Entries& entries) {
    QStringList out;
    for (const AppSetting& e : entries) out << e.ObjName();
    return out;
}

QStringList keys(const QListWidget& list) {
    QStringList out;
    for (int i = 0; i < list.count(); ++i) out << list.item(i)->data(Qt::UserRole).toString();
    return out;
}

QStringList storedToolbar() {
    AppSettings toolbar;
    toolbar.GetToolbarIndex(0);
    return keys(toolbar);
}

AppSetting stored(qint16 type, const QString& name) {
    AppSettings set;
    set.GetObjs(0, type);
    const int i = set.FindIndex(name);
    return i ? set.Item(i) : AppSetting();
}

QLineEdit* edit(const QWidget& form, const char* name) {
    return child<QLineEdit>(form, name);
}

}  // namespace

class SettingTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin();
        previews_.clear();
        rebuilds_ = 0;
    }
    void cleanup() { end(); }

    void pagesShowTheStoredLayout() {
        run("UPDATE interface SET object_description='人脉' WHERE object_type=1 AND "
            "object_name='contact'");
        run("UPDATE interface SET object_visible=0, object_edittype=0 WHERE "
            "object_type=2 AND object_name='doc_opp'");
        auto form = makeForm();
        QCOMPARE(contactTab(*form), QStringLiteral("人脉的相关信息"));
        QCOMPARE(edit(*form, "txt_contact")->text(), QStringLiteral("人脉"));
        QCOMPARE(indexed<QLineEdit>(*form, "txt_acc_related", 2)->text(),
                 QStringLiteral("项目机会"));
        // An owner's check boxes show its first panel's flags.
        QVERIFY(child<QCheckBox>(*form, "chk_acc_related_e")->isChecked());
        QVERIFY(!child<QCheckBox>(*form, "chk_doc_related_v")->isChecked());
        QVERIFY(!child<QCheckBox>(*form, "chk_doc_related_e")->isChecked());
        QCOMPARE(keys(*child<QListWidget>(*form, "lv_menu")), storedToolbar());
        QVERIFY(previews_.isEmpty());  // loading previews nothing

        // Option1 picks the kind of list whose fields lv_field shows.
        const char* const firstField[] = {"acc_id", "opp_id", "con_id", "tas_id", "doc_id"};
        auto* fields = child<QTreeWidget>(*form, "lv_field");
        for (int i = 0; i < 5; ++i) {
            indexed<QRadioButton>(*form, "Option1", i)->click();
            QCOMPARE(fields->topLevelItem(0)->data(0, Qt::UserRole).toString(),
                     QLatin1String(firstField[i]));
        }
        QCOMPARE(fields->topLevelItem(1)->text(1), QStringLiteral("02"));
    }

    void savingWritesOnlyThePageShownThenAsks() {
        auto form = makeForm();
        edit(*form, "txt_contact")->setText(QStringLiteral(" 人脉 "));
        // A blank module name stops the save where it is.
        edit(*form, "txt_schedule")->setText(QStringLiteral("   "));
        save(*form, FormAppSetting::CaptionsTab, true);
        QCOMPARE(dialogs_->lastText(),
                 QStringLiteral("模块的名称不能为空，请输入日程安排模块的名称！"));
        QCOMPARE(form->focusWidget(), edit(*form, "txt_schedule"));
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("联系人"));
        edit(*form, "txt_schedule")->setText(QStringLiteral("日程安排"));

        edit(*form, "txt_account")->setText(QStringLiteral("O'Neil单位"));
        edit(*form, "txt_user_name")->setText(QStringLiteral(" 王小明 "));
        edit(*form, "txt_user_account")->setText(QStringLiteral("O'Reilly 公司"));
        child<QListWidget>(*form, "lv_menu")->item(0)->setCheckState(Qt::Unchecked);
        indexed<QLineEdit>(*form, "txt_con_related", 0)->setText(QStringLiteral("日程"));

        save(*form, FormAppSetting::CaptionsTab, false);
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].text, QStringLiteral(" 现在执行界面修改的结果吗?"));
        QCOMPARE(rebuilds_, 0);  // Cancel: stored, shown when the screens are next built
        QCOMPARE(contactTab(*form), QStringLiteral("联系人的相关信息"));
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("人脉"));
        QCOMPARE(stored(1, "account").ObjDesc(), QStringLiteral("O'Neil单位"));
        QCOMPARE(stored(1, "back").ObjVisible(), qint16(-1));
        QCOMPARE(stored(2, "con_sch").ObjDesc(), QStringLiteral("日程安排"));
        QCOMPARE(UserProfile::load().name, QString());

        // The new module name shows in the toolbar list at once.
        auto* menu = child<QListWidget>(*form, "lv_menu");
        QCOMPARE(menu->item(keys(*menu).indexOf(QStringLiteral("contact")))->text(),
                 QStringLiteral("人脉"));

        // The profile changes nothing on screen: saved without a question.
        save(*form, FormAppSetting::PersonalTab, true);
        QVERIFY(dialogs_->shown.isEmpty());
        QCOMPARE(rebuilds_, 0);
        QCOMPARE(UserProfile::load().name, QStringLiteral("王小明"));
        QCOMPARE(UserProfile::load().account, QStringLiteral("O'Reilly 公司"));
        save(*form, FormAppSetting::RelatedFirst, true);
        QCOMPARE(rebuilds_, 1);  // OK: the screens rebuild

        // Without a host the window rebuilds only itself, and only after OK.
        auto alone = makeForm(false);
        edit(*alone, "txt_contact")->setText(QStringLiteral("客户联系人"));
        save(*alone, FormAppSetting::CaptionsTab, false);
        QCOMPARE(contactTab(*alone), QStringLiteral("人脉的相关信息"));
        save(*alone, FormAppSetting::CaptionsTab, true);
        QCOMPARE(contactTab(*alone), QStringLiteral("客户联系人的相关信息"));
    }

    void toolbarMovesFollowTheFirstLastRuleAndPreview() {
        auto form = makeForm();
        auto* menu = child<QListWidget>(*form, "lv_menu");
        auto* up = child<QPushButton>(*form, "Cmd_menu_up");
        auto* down = child<QPushButton>(*form, "cmd_menu_down");
        const auto choose = [&](int row) {
            QTest::mouseClick(menu->viewport(), Qt::LeftButton, {},
                              menu->visualItemRect(menu->item(row)).center());
        };
        choose(0);
        QVERIFY(!up->isEnabled() && down->isEnabled());
        QCOMPARE(previews_.last(), keys(*menu));
        choose(menu->count() - 1);
        QVERIFY(up->isEnabled() && !down->isEnabled());

        choose(4);  // contact, moved to the top and one back down
        for (int i = 0; i < 4; ++i) up->click();
        QVERIFY(!up->isEnabled());
        down->click();
        QCOMPARE(menu->currentRow(), 1);
        QCOMPARE(keys(*menu).mid(0, 3), QStringList({"back", "contact", "forward"}));
        QCOMPARE(previews_.last(), keys(*menu));

        // An unchecked separator drops out of the preview at once, stored only on saving.
        menu->item(keys(*menu).indexOf(QStringLiteral("sepline2")))->setCheckState(Qt::Unchecked);
        QStringList shown = keys(*menu);
        shown.removeAll(QStringLiteral("sepline2"));
        QCOMPARE(previews_.last(), shown);
        QCOMPARE(stored(1, "sepline2").ObjVisible(), qint16(-1));
        save(*form, FormAppSetting::ToolbarTab, false);
        QCOMPARE(storedToolbar(), keys(*menu));
        QCOMPARE(stored(1, "sepline2").ObjVisible(), qint16(0));
    }

    // Each record kind's page saves its own four panels, as the hint says.
    void relatedPanelsSaveOnlyThePageShown() {
        auto form = makeForm();
        indexed<QLineEdit>(*form, "txt_con_related", 2)->setText(QStringLiteral("相关项目"));
        child<QCheckBox>(*form, "chk_con_related_e")->setChecked(false);
        child<QCheckBox>(*form, "chk_sch_related_v")->setChecked(false);
        const QStringList owners = RelatedPage::owners();
        save(*form, FormAppSetting::RelatedFirst + int(owners.indexOf("con")), false);
        for (const QString& owner : owners) {
            for (const QString& panel : RelatedPage::panels(owner)) {
                const AppSetting e = stored(2, panel);
                QCOMPARE(e.ObjVisible(), qint16(-1));  // the tasks' page was not saved
                QCOMPARE(e.ObjEditType(), qint16(owner == QLatin1String("con") ? 0 : -1));
            }
        }
        QCOMPARE(stored(2, "con_opp").ObjDesc(), QStringLiteral("相关项目"));
        save(*form, FormAppSetting::RelatedFirst + int(owners.indexOf("sch")), false);
        for (const QString& panel : RelatedPage::panels("sch"))
            QCOMPARE(stored(2, panel).ObjVisible(), qint16(0));
    }

    void fieldReorderedAndHiddenIsStillSelected() {
        loadProgramFieldSettings();
        auto form = makeForm();
        indexed<QRadioButton>(*form, "Option1", 2)->click();  // contacts
        auto* fields = child<QTreeWidget>(*form, "lv_field");
        auto* up = child<QPushButton>(*form, "cmd_field_up");
        auto* down = child<QPushButton>(*form, "cmd_field_down");
        QLineEdit* caption = edit(*form, "txt_edit");
        const int count = fields->topLevelItemCount();

        QTreeWidgetItem* account = fields->topLevelItem(3);
        QCOMPARE(account->data(0, Qt::UserRole).toString(), QStringLiteral("acc_name"));
        fields->setCurrentItem(account);
        for (int i = 0; i < 3; ++i) up->click();
        QCOMPARE(fields->indexOfTopLevelItem(account), 0);
        QVERIFY(!up->isEnabled() && down->isEnabled());
        account->setCheckState(0, Qt::Unchecked);
        caption->selectAll();
        typeText(caption, QStringLiteral("单位"));
        fields->setCurrentItem(fields->topLevelItem(count - 1));
        QVERIFY(!down->isEnabled());

        save(*form, FormAppSetting::FieldsTab, false);
        FSettings columns;
        columns.GetMySetting(3);
        QVERIFY2(columns.SelectFields().startsWith(QStringLiteral(
                     " con_check, acc_name,con_id,con_lastname,con_title,con_department_title,")),
                 qPrintable(columns.SelectFields()));
        QCOMPARE(columns.Count(), count);
        QVERIFY(!columns.Item(QStringLiteral("1"))->Visible());
        // The lists see the new columns without waiting for the next start.
        QCOMPARE(programFieldSettings(3)->SelectFields(), columns.SelectFields());
        QCOMPARE(programFieldSettings(3)->FindCaption(QStringLiteral("acc_name")),
                 QStringLiteral("单位"));
    }

    void failedSaveSaysSoAndAsksNothing() {
        auto form = makeForm();
        {
            tarvel::testsupport::ReadOnlyDataFile readOnly;
            edit(*form, "txt_contact")->setText(QStringLiteral("人脉"));
            saveRefused(*form, FormAppSetting::CaptionsTab);
            edit(*form, "txt_user_name")->setText(QStringLiteral("王小明"));
            saveRefused(*form, FormAppSetting::PersonalTab);
        }
        // Nothing stored, nothing typed lost.
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("联系人"));
        QCOMPARE(edit(*form, "txt_contact")->text(), QStringLiteral("人脉"));
        QCOMPARE(UserProfile::load().name, QString());

        // A page written halfway is not written at all.
        run("CREATE TRIGGER refuse BEFORE UPDATE ON interface WHEN "
            "NEW.object_name = 'document' BEGIN SELECT RAISE(ABORT, 'refused'); END");
        saveRefused(*form, FormAppSetting::CaptionsTab);
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("联系人"));

        run("DROP TABLE interface");
        saveRefused(*form, FormAppSetting::ToolbarTab);
        QCOMPARE(rebuilds_, 0);
    }

    void templateSavedThenLoadedRebuildsEveryScreen() {
        auto form = makeForm();
        auto files = std::make_shared<ScriptedFileDialogs>();
        form->setFileDialogs(files);
        const QString path = QDir(file_->folder()).filePath(QStringLiteral("公司模板.tvm3"));
        files->names = {path};
        tarvel::testsupport::click(*form, "cmd_save_template");
        QVERIFY(QFile::exists(path));
        QVERIFY2(dialogs_->lastText().contains(QStringLiteral("模板已保存到")),
                 qPrintable(dialogs_->lastText()));

        run("UPDATE interface SET object_description='人脉' WHERE object_type=1 AND "
            "object_name='contact'");
        run("UPDATE fields SET fie_description='职位' WHERE fie_type=3 AND "
            "fie_name='con_department_title'");
        loadProgramFieldSettings();
        form->load();
        const auto loadAnswering = [&](const QString& chosen, bool ok) {
            dialogs_->shown.clear();
            dialogs_->answers = {ok};
            files->names = {chosen};
            tarvel::testsupport::click(*form, "cmd_load_template");
        };
        // Declining after reading what would change changes nothing.
        loadAnswering(path, false);
        QCOMPARE(dialogs_->shown.size(), 1);
        QVERIFY2(dialogs_->shown[0].text.contains(QStringLiteral("名称“人脉”改为“联系人”")),
                 qPrintable(dialogs_->shown[0].text));
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("人脉"));
        QCOMPARE(rebuilds_, 0);

        loadAnswering(path, true);
        QCOMPARE(stored(1, "contact").ObjDesc(), QStringLiteral("联系人"));
        QCOMPARE(edit(*form, "txt_contact")->text(), QStringLiteral("联系人"));
        QCOMPARE(programFieldSettings(3)->FindCaption(QStringLiteral("con_department_title")),
                 QStringLiteral("部门/职务"));
        QCOMPARE(rebuilds_, 1);

        // The data file itself is no template: said so, nothing asked or rebuilt.
        loadAnswering(file_->path(), true);
        QCOMPARE(dialogs_->shown.size(), 1);
        QVERIFY2(dialogs_->lastText().contains(QStringLiteral("不是模板文件")),
                 qPrintable(dialogs_->lastText()));
        QCOMPARE(rebuilds_, 1);
        loadAnswering(QString(), true);  // a cancelled dialog
        QVERIFY(dialogs_->shown.isEmpty());
    }

    void safekeepingIsStoredInAFileWithoutItsRows() {
        // Data files made before these settings have no rows for them.
        run("DELETE * FROM setting WHERE set_type='backup' OR set_type='bin'");
        auto form = makeForm();
        QCOMPARE(child<QSpinBox>(*form, "spn_bin_days")->value(), 30);
        QCOMPARE(child<QSpinBox>(*form, "spn_backup_limit")->value(), 1024);

        // A file where the folder should be is refused before anything is written.
        const QString live = exchange::liveDataFile();
        edit(*form, "txt_backup_folder")->setText(QFileInfo(live).fileName());
        child<QSpinBox>(*form, "spn_bin_days")->setValue(0);
        save(*form, FormAppSetting::SafekeepingTab, true);
        QCOMPARE(dialogs_->shown.size(), 1);
        QVERIFY(dialogs_->shown[0].text.contains(QStringLiteral("不是文件夹")));
        QCOMPARE(exchange::recyclebin::keepDays(), 30);

        edit(*form, "txt_backup_folder")->setText(QStringLiteral(" 备份's "));
        child<QSpinBox>(*form, "spn_backup_limit")->setValue(2000);
        save(*form, FormAppSetting::SafekeepingTab, true);
        QVERIFY(dialogs_->shown.isEmpty());
        QCOMPARE(exchange::recyclebin::keepDays(), 0);
        const exchange::AutoBackupPlace place = exchange::autoBackupPlace(live);
        QCOMPARE(place.folder, QFileInfo(live).absoluteDir().filePath(QStringLiteral("备份's")));
        QCOMPARE(place.limitBytes, qint64(2000) * 1024 * 1024);

        // Saved again, the rows are rewritten rather than doubled.
        child<QSpinBox>(*form, "spn_bin_days")->setValue(7);
        save(*form, FormAppSetting::SafekeepingTab, true);
        QCOMPARE(Safekeeping::load().binDays, 7);
        QCOMPARE(tarvel::testsupport::count(
                     "SELECT count(*) FROM setting WHERE set_type='bin' AND set_key='days'"),
                 1);
    }

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
        form->show();
        return form;
    }
    void save(FormAppSetting& form, int tab, bool ok) {
        form.SSTab1()->setCurrentIndex(tab);
        dialogs_->shown.clear();
        dialogs_->answers = {ok};
        tarvel::testsupport::click(form, "cmd_save");
    }
    // Saved after OK, the page's write fails: one notice naming the data file.
    void saveRefused(FormAppSetting& form, int tab) {
        save(form, tab, true);
        const auto& shown = dialogs_->shown;
        QVERIFY2(shown.size() == 1 && shown[0].kind == QLatin1String("info") &&
                     shown[0].text.contains(QStringLiteral("没有保存成功")) &&
                     shown[0].text.contains(QDir::toNativeSeparators(file_->path())),
                 qPrintable(dialogs_->lastText()));
    }
    static QString contactTab(const FormAppSetting& form) {
        return form.SSTab1()->tabText(FormAppSetting::RelatedFirst + 2);
    }

    QList<QStringList> previews_;
    int rebuilds_ = 0;
};

QTEST_MAIN(SettingTest)
#include "appsetting_test.moc"
