// First run, login and the start routine, driven through the named controls.
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

#include "custom/fsettings.h"
#include "custom/softwaresetting.h"
#include "shell/forminit.h"
#include "shell/formlogin.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "shell/startup.h"
#include "store/encode.h"
#include "tests/views/screenfixture.h"

using namespace tarvel;
using tarvel::testsupport::child;
using tarvel::testsupport::click;
using tarvel::testsupport::RecordingOpener;
using tarvel::testsupport::ScriptedDialogs;
using tarvel::testsupport::writeValue;

namespace {

const QString kWrongPassword =
    QStringLiteral("密码不对！提示密码区分大小写，您是否无意中按了CapsLock 或 Shift 键？");

SoftwareSetting read(const char* key) {
    SoftwareSetting s;
    s.GetValue(QStringLiteral("login"), QLatin1String(key));
    return s;
}

// A user who finished the first run with this password.
void storePassword(const QString& plain) {
    writeValue("login", "password", encode().MD5(plain));
    SoftwareSetting s = read("agreement");
    s.WriteValue(QStringLiteral("login"), QStringLiteral("agreement"), s.Set_Name(),
                 QStringLiteral("1"), QString(), s.Set_Description());
}

// Agrees, then types the two passwords and asks to finish.
void choosePasswords(QDialog& form, const QString& first, const QString& second) {
    if (static_cast<FormInit&>(form).currentPage() == 0) {
        child<QRadioButton>(form, "opt_agree")->click();
        click(form, "cmd_forward");
    }
    child<QLineEdit>(form, "txt_password1")->setText(first);
    child<QLineEdit>(form, "txt_password2")->setText(second);
    child<QLineEdit>(form, "txt_password2")->setFocus();
    click(form, "cmd_forward");
}

}  // namespace

class StartTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        begin();
    }
    void cleanup() { end(); }

    void loginTrimsRefusesWrongCaseAndAllowsRetry();
    void loginSaysWhichDataFileCouldNotBeOpened();
    void firstRunRefusesDisagreementAndBadPasswords();
    void firstRunStoresTheTrimmedSixCharacterPassword();
    void firstRunOnAReadOnlyDataFileSaysSoAndWaits();
    void startRoutineRunsFirstRunThenLogin();
};

void StartTest::loginTrimsRefusesWrongCaseAndAllowsRetry() {
    storePassword(QStringLiteral("abcdef"));
    writeValue("website", "homepage", QStringLiteral(" https://example.org/tarvel "));
    FormLogin form;
    form.setDialogs(dialogs_);
    form.setShellOpener(opener_);
    form.show();
    QVERIFY(child<QLabel>(form, "lbl_status")->isHidden());
    child<QPushButton>(form, "Label1")->click();
    QCOMPARE(opener_->opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/tarvel"))});

    auto* txt = child<QLineEdit>(form, "txt_password");
    QTest::keyClicks(txt, QStringLiteral("ABCDEF"));
    QTest::keyClick(txt, Qt::Key_Return);  // Enter acts as cmd_ok, once
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].text, kWrongPassword);
    QCOMPARE(txt->text(), QString());
    QVERIFY(!appGlobals().passed);
    QVERIFY(form.isVisible());

    QTest::keyClicks(txt, QStringLiteral("  abcdef  "));  // no limit on attempts
    click(form, "cmd_ok");
    QCOMPARE(dialogs_->shown.size(), 1);
    QVERIFY(appGlobals().passed);
    QCOMPARE(form.result(), int(QDialog::Accepted));
}

void StartTest::loginSaysWhichDataFileCouldNotBeOpened() {
    QTemporaryDir dir;
    setApplicationPath(dir.path());
    const QString path = QDir::toNativeSeparators(dir.filePath(QStringLiteral("mydata3.tvg")));
    for (const char* problem : {"不存在", "损坏"}) {
        FormLogin form;
        const QString status = child<QLabel>(form, "lbl_status")->text();
        QVERIFY(!child<QLabel>(form, "lbl_status")->isHidden());
        QVERIFY2(status.contains(QString::fromUtf8(problem)) && status.contains(path),
                 qPrintable(status));
        if (QFile::exists(path)) break;  // the damaged file must be left as it was
        QFile junk(path);                // none was created for the missing one: now a damaged one
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write(QByteArray(4096, 'x'));
    }
    QCOMPARE(QFile(path).size(), 4096);
}

void StartTest::firstRunRefusesDisagreementAndBadPasswords() {
    struct Case {
        QString first, second, message;
    };
    const Case cases[] = {
        {"   ", "abcdef", "您需要输入两次密码，并且两个密码要一致！"},
        {"abcdef", " abcde ", "密码长度要求超过6个英文字符！"},
        {"abcdef", "ABCDEF", "两次输入的密码不一致!"},
    };
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    for (const Case& c : cases) {
        dialogs_->shown.clear();
        choosePasswords(form, c.first, c.second);
        QCOMPARE(dialogs_->lastText(), c.message);
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(form.focusWidget(), child<QLineEdit>(form, "txt_password1"));
        QVERIFY(form.isVisible());
    }
    QCOMPARE(read("password").Set_Value().trimmed(), QString());

    writeValue("website", "support_email", QStringLiteral("help@example.org"));
    click(form, "cmd_back");
    child<QRadioButton>(form, "opt_disagree")->click();
    click(form, "cmd_forward");
    QCOMPARE(dialogs_->lastText(),
             QStringLiteral("很遗憾您不同意我们的用户协议，有什么建议请发邮件给我们"
                            "help@example.org， 谢谢！"));
    QCOMPARE(form.result(), int(QDialog::Rejected));
    QVERIFY(!appGlobals().passed);
    QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("0"));
}

void StartTest::firstRunStoresTheTrimmedSixCharacterPassword() {
    const QString agreement = read("agreement").Set_Description();
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    choosePasswords(form, QStringLiteral("  abc12!  "), QStringLiteral("abc12!"));
    QVERIFY(dialogs_->shown.isEmpty());
    QVERIFY(appGlobals().passed);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(read("password").Set_Value(), encode().MD5(QStringLiteral("abc12!")));
    QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("1"));
    QCOMPARE(read("agreement").Set_Description(), agreement);  // the text survives
}

void StartTest::firstRunOnAReadOnlyDataFileSaysSoAndWaits() {
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    {
        tarvel::testsupport::ReadOnlyDataFile readOnly;
        choosePasswords(form, QStringLiteral("abcdef"), QStringLiteral("abcdef"));
    }
    QCOMPARE(dialogs_->shown.size(), 1);
    const QString text = dialogs_->lastText();
    QVERIFY2(text.contains(QStringLiteral("没有保存成功")) &&
                 text.contains(QDir::toNativeSeparators(file_->path())),
             qPrintable(text));
    QVERIFY(!appGlobals().passed);
    QVERIFY(form.isVisible());
    QCOMPARE(form.result(), int(QDialog::Rejected));
    QCOMPARE(read("password").Set_Value().trimmed(), QString());
    QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("0"));

    // Writable again (the user fixed the folder): the same click finishes.
    click(form, "cmd_forward");
    QVERIFY(appGlobals().passed);
    QCOMPARE(read("password").Set_Value(), encode().MD5(QStringLiteral("abcdef")));
    QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("1"));
}

void StartTest::startRoutineRunsFirstRunThenLogin() {
    QStringList shown;
    appGlobals().passed = true;  // a stale flag must not let anyone in
    const auto answer = [&](const QString& password) {
        return [&, password](QDialog& d) {
            shown << d.objectName();
            if (auto* init = qobject_cast<FormInit*>(&d)) {
                init->setDialogs(dialogs_);
                if (!password.isEmpty()) choosePasswords(d, password, password);
            } else {
                static_cast<FormLogin&>(d).setDialogs(dialogs_);
                QTest::keyClicks(child<QLineEdit>(d, "txt_password"), password);
                click(d, "cmd_ok");
            }
            if (d.result() != QDialog::Accepted) d.reject();  // gives up after one try
        };
    };
    QVERIFY(startUp(answer(QString())) == nullptr);  // first run closed: the program ends
    QCOMPARE(programFieldSettings(3)->Count(), 0);
    QVERIFY(startUp(answer(QStringLiteral("secret1"))) != nullptr);
    // The lists' columns are loaded before the main window opens.
    FSettings contacts;
    contacts.GetMySetting(3);
    QCOMPARE(programFieldSettings(3)->SelectFields(), contacts.SelectFields());

    QVERIFY(startUp(answer(QStringLiteral("SECRET1"))) == nullptr);
    QCOMPARE(dialogs_->lastText(), kWrongPassword);
    QVERIFY(startUp(answer(QStringLiteral(" secret1"))) != nullptr);
    QCOMPARE(shown, (QStringList{"form_init", "form_init", "form_login", "form_login"}));
}

QTEST_MAIN(StartTest)
#include "start_test.moc"
