// The settings window inside the main window: opened from the toolbar, its
// live toolbar preview, and the main window rebuilt after saving.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "store/clock.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/scripted.h"
#include "views/formappsetting.h"
#include "views/unsaved.h"

using namespace tarvel;
using tarvel::testsupport::child;
using tarvel::testsupport::ScriptedDialogs;

namespace {

const QString kStoredToolbar = QStringLiteral(
    "back forward | pp contact account opportunity schedule document | email inout setting | "
    "help bbs");

QString labelText(QWidget* page, const char* name) {
    auto* label = page ? page->findChild<QLabel*>(QLatin1String(name)) : nullptr;
    return label ? label->text() : QStringLiteral("<none>");
}

}  // namespace

class ShellSettingTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        clearUnsaved();
        Clock::setFixed(QDateTime(QDate(2024, 5, 1), QTime(10, 0)));
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        MainWindowOptions o;
        o.trayAvailable = [] { return false; };
        o.checkForUpdate = false;
        main_ = std::make_unique<TarvelMain>(o);
        main_->setDialogs(dialogs_);
        main_->show();
    }
    void cleanup() {
        main_.reset();
        file_.reset();
    }

    void settingKeyOpensTheSettingsWindow();
    void previewDropsAnUncheckedSeparator();
    void savedCaptionShowsAfterOk();

private:
    FormAppSetting* openSettings() {
        main_->toolbarAction(QStringLiteral("setting"))->trigger();
        auto* form = qobject_cast<FormAppSetting*>(main_->currentPage());
        if (!form) qFatal("the settings window did not open");
        return form;
    }
    QString toolbar() const { return main_->toolbarKeys().join(QLatin1Char(' ')); }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    std::unique_ptr<TarvelMain> main_;
};

void ShellSettingTest::settingKeyOpensTheSettingsWindow() {
    FormAppSetting* form = openSettings();
    QCOMPARE(form->objectName(), QStringLiteral("form_app_setting"));
    QVERIFY(form->isVisible());
    QCOMPARE(main_->currentPageCode(), page::Settings);
    QCOMPARE(main_->history().c_RelatedPage(), page::Settings);
    QCOMPARE(form->windowTitle(), QStringLiteral("设置"));

    // Shown again, it reads the stored values afresh.
    child<QLineEdit>(*form, "txt_schedule")->setText(QStringLiteral("未保存"));
    main_->toolbarAction(QStringLiteral("contact"))->trigger();
    QCOMPARE(openSettings(), form);
    QCOMPARE(child<QLineEdit>(*form, "txt_schedule")->text(), QStringLiteral("日程安排"));
}

void ShellSettingTest::previewDropsAnUncheckedSeparator() {
    QCOMPARE(toolbar(), kStoredToolbar);
    FormAppSetting* form = openSettings();
    form->SSTab1()->setCurrentIndex(FormAppSetting::ToolbarTab);
    auto* menu = child<QListWidget>(*form, "lv_menu");
    for (int i = 0; i < menu->count(); ++i)
        if (menu->item(i)->data(Qt::UserRole) == QStringLiteral("sepline2"))
            menu->item(i)->setCheckState(Qt::Unchecked);
    QCOMPARE(toolbar(),
             QStringLiteral("back forward | pp contact account opportunity schedule document "
                            "email inout setting | help bbs"));

    // The preview's buttons work.
    main_->toolbarAction(QStringLiteral("account"))->trigger();
    QCOMPARE(main_->currentPageCode(), page::AccountList);

    // Nothing was stored: the stored layout comes back on the next rebuild.
    main_->RebuildToolbar();
    QCOMPARE(toolbar(), kStoredToolbar);
}

void ShellSettingTest::savedCaptionShowsAfterOk() {
    main_->toolbarAction(QStringLiteral("contact"))->trigger();
    FormAppSetting* form = openSettings();
    child<QLineEdit>(*form, "txt_contact")->setText(QStringLiteral("人脉"));
    form->SSTab1()->setCurrentIndex(FormAppSetting::CaptionsTab);

    dialogs_->answers = {false};
    child<QPushButton>(*form, "cmd_save")->click();
    QCOMPARE(dialogs_->shown.last().text, QStringLiteral(" 现在执行界面修改的结果吗?"));
    QCOMPARE(main_->toolbarAction(QStringLiteral("contact"))->text(), QStringLiteral("联系人"));

    dialogs_->answers = {true};
    child<QPushButton>(*form, "cmd_save")->click();
    QCOMPARE(main_->toolbarAction(QStringLiteral("contact"))->text(), QStringLiteral("人脉"));
    QCOMPARE(main_->moduleCaption(QStringLiteral("contact")), QStringLiteral("人脉"));
    QCOMPARE(toolbar(), kStoredToolbar);
    QCOMPARE(form->SSTab1()->tabText(FormAppSetting::RelatedFirst + 2),
             QStringLiteral("人脉的相关信息"));
    // The module page already open shows the new caption too.
    QWidget* contacts = main_->pageWidget(page::ContactList);
    QCOMPARE(labelText(contacts, "lbl_caption"), QStringLiteral("人脉"));
    QCOMPARE(contacts->windowTitle(), QStringLiteral("人脉"));
    main_->ShowPage(page::ContactDetail);
    QCOMPARE(labelText(main_->currentPage(), "lbl_caption"), QStringLiteral("人脉 - 详细信息"));
}

QTEST_MAIN(ShellSettingTest)
#include "setting_test.moc"
