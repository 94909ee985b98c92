// First run, login and the start routine, driven through the named controls.
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
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
#include "tests/support/tempdatafile.h"
#include "tests/views/scripted.h"

using namespace tarvel;
using tarvel::testsupport::RecordingOpener;
using tarvel::testsupport::ScriptedDialogs;

namespace {

const QString kWrongPassword =
    QStringLiteral("密码不对！提示密码区分大小写，您是否无意中按了CapsLock 或 Shift 键？");
const QString kNeedTwo = QStringLiteral("您需要输入两次密码，并且两个密码要一致！");
const QString kTooShort = QStringLiteral("密码长度要求超过6个英文字符！");
const QString kDiffer = QStringLiteral("两次输入的密码不一致!");

SoftwareSetting read(const char* type, const char* key) {
    SoftwareSetting s;
    s.GetValue(QLatin1String(type), QLatin1String(key));
    return s;
}

void writeValue(const char* type, const char* key, const QString& value) {
    SoftwareSetting s = read(type, key);
    s.WriteValue(QLatin1String(type), QLatin1String(key), s.Set_Name(), s.Set_Visible(), value,
                 s.Set_Description());
}

// A user who finished the first run with this password.
void storePassword(const QString& plain) {
    writeValue("login", "password", encode().MD5(plain));
    SoftwareSetting s = read("login", "agreement");
    s.WriteValue(QStringLiteral("login"), QStringLiteral("agreement"), s.Set_Name(),
                 QStringLiteral("1"), QString(), s.Set_Description());
}

template <typename T>
T* child(QWidget& parent, const char* name) {
    T* w = parent.findChild<T*>(QLatin1String(name));
    if (!w) qFatal("no control %s", name);
    return w;
}

QFrame* frame(QWidget& form, int index) {
    for (QFrame* f : form.findChildren<QFrame*>(QStringLiteral("Frame1")))
        if (f->property("Index").toInt() == index) return f;
    return nullptr;
}

}  // namespace

class StartTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
    }
    void cleanup() { file_.reset(); }

    void loginAcceptsTheTrimmedPassword();
    void loginRefusesWrongCaseAndAllowsRetry();
    void loginExitAndWebLink();
    void loginSaysWhichDataFileCouldNotBeOpened();
    void firstRunAgreementPageAndDisagreeing();
    void firstRunRefusesBadPasswords();
    void firstRunStoresSixCharacterPassword();
    void startRoutineRunsFirstRunThenLogin();

private:
    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
};

void StartTest::loginAcceptsTheTrimmedPassword() {
    storePassword(QStringLiteral("abcdef"));
    FormLogin form;
    form.setDialogs(dialogs_);
    form.show();
    QVERIFY(child<QLabel>(form, "lbl_status")->isHidden());
    QTest::keyClicks(child<QLineEdit>(form, "txt_password"), QStringLiteral("  abcdef  "));
    child<QPushButton>(form, "cmd_ok")->click();
    QVERIFY(dialogs_->shown.isEmpty());
    QVERIFY(appGlobals().passed);
    QCOMPARE(form.result(), int(QDialog::Accepted));
}

void StartTest::loginRefusesWrongCaseAndAllowsRetry() {
    storePassword(QStringLiteral("abcdef"));
    FormLogin form;
    form.setDialogs(dialogs_);
    form.show();
    QSignalSpy finished(&form, &QDialog::finished);
    auto* txt = child<QLineEdit>(form, "txt_password");
    child<QPushButton>(form, "cmd_no")->setFocus();

    QTest::keyClicks(txt, QStringLiteral("ABCDEF"));
    QTest::keyClick(txt, Qt::Key_Return);  // Enter acts as cmd_ok, once
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("info"));
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
    QCOMPARE(dialogs_->shown[0].text, kWrongPassword);
    QCOMPARE(txt->text(), QString());
    QCOMPARE(form.focusWidget(), txt);
    QVERIFY(!appGlobals().passed);
    QVERIFY(form.isVisible());

    QTest::keyClicks(txt, QStringLiteral("abcdeg"));
    child<QPushButton>(form, "cmd_ok")->click();
    QCOMPARE(dialogs_->shown.size(), 2);  // no limit on attempts
    QTest::keyClicks(txt, QStringLiteral("abcdef"));
    QTest::keyClick(txt, Qt::Key_Enter);
    QCOMPARE(dialogs_->shown.size(), 2);
    QVERIFY(appGlobals().passed);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(form.result(), int(QDialog::Accepted));
}

void StartTest::loginExitAndWebLink() {
    writeValue("website", "homepage", QStringLiteral(" https://example.org/tarvel "));
    auto opener = std::make_shared<RecordingOpener>();
    FormLogin form;
    form.setDialogs(dialogs_);
    form.setShellOpener(opener);
    form.show();
    auto* label = child<QLabel>(form, "Label1");
    QTest::mouseClick(label, Qt::LeftButton, {}, label->rect().center());
    QCOMPARE(opener->opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/tarvel"))});
    QVERIFY(form.isVisible());

    child<QPushButton>(form, "cmd_no")->click();
    QCOMPARE(form.result(), int(QDialog::Rejected));
    QVERIFY(!appGlobals().passed);
    QVERIFY(dialogs_->shown.isEmpty());
}

void StartTest::loginSaysWhichDataFileCouldNotBeOpened() {
    QTemporaryDir dir;
    setApplicationPath(dir.path());
    const QString path = QDir::toNativeSeparators(dir.filePath(QStringLiteral("mydata3.tvg")));
    {
        FormLogin form;
        form.setDialogs(dialogs_);
        form.show();
        auto* status = child<QLabel>(form, "lbl_status");
        QVERIFY(status->isVisible());
        QVERIFY2(status->text().contains(QStringLiteral("无法打开数据文件")) &&
                     status->text().contains(QStringLiteral("不存在")) &&
                     status->text().contains(path),
                 qPrintable(status->text()));
        // Nothing can be read, so no password matches, and no file is created.
        auto* txt = child<QLineEdit>(form, "txt_password");
        QTest::keyClicks(txt, QStringLiteral("abcdef"));
        QTest::keyClick(txt, Qt::Key_Return);
        QCOMPARE(dialogs_->lastText(), kWrongPassword);
        QVERIFY(!appGlobals().passed);
        QVERIFY(!QFile::exists(path));
    }
    QFile junk(path);
    QVERIFY(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    FormLogin form;
    auto* status = child<QLabel>(form, "lbl_status");
    QVERIFY(!status->isHidden());
    QVERIFY2(status->text().contains(QStringLiteral("损坏")) && status->text().contains(path),
             qPrintable(status->text()));
    QCOMPARE(junk.size(), 4096);  // left as it was
}

void StartTest::firstRunAgreementPageAndDisagreeing() {
    writeValue("website", "support_email", QStringLiteral("help@example.org"));
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    QVERIFY(frame(form, 0)->isVisible());
    QVERIFY(!frame(form, 1)->isVisible());
    auto* back = child<QPushButton>(form, "cmd_back");
    auto* forward = child<QPushButton>(form, "cmd_forward");
    QVERIFY(!back->isEnabled());

    auto* agreement = child<QPlainTextEdit>(form, "txt_agreement");
    const QString shipped = read("login", "agreement").Set_Description();
    QVERIFY(shipped.size() > 200);
    QCOMPARE(agreement->toPlainText(), shipped);
    agreement->selectAll();
    QTest::keyClick(agreement, Qt::Key_Delete);
    QTest::keyClick(agreement, Qt::Key_Backspace);
    QTest::keyClicks(agreement, QStringLiteral("x"));
    QTest::keyClick(agreement, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(agreement->toPlainText(), shipped);

    child<QRadioButton>(form, "opt_agree")->click();
    forward->click();
    QVERIFY(frame(form, 1)->isVisible() && !frame(form, 0)->isVisible());
    QVERIFY(back->isEnabled());
    back->click();
    QVERIFY(frame(form, 0)->isVisible());
    QVERIFY(!back->isEnabled());
    QVERIFY(dialogs_->shown.isEmpty());

    child<QRadioButton>(form, "opt_disagree")->click();
    forward->click();
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
    QCOMPARE(dialogs_->shown[0].text,
             QStringLiteral("很遗憾您不同意我们的用户协议，有什么建议请发邮件给我们"
                            "help@example.org， 谢谢！"));
    QCOMPARE(form.result(), int(QDialog::Rejected));
    QVERIFY(!appGlobals().passed);
    QCOMPARE(read("login", "agreement").Set_Visible(), QStringLiteral("0"));
}

void StartTest::firstRunRefusesBadPasswords() {
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    child<QRadioButton>(form, "opt_agree")->click();
    child<QPushButton>(form, "cmd_forward")->click();
    auto* p1 = child<QLineEdit>(form, "txt_password1");
    auto* p2 = child<QLineEdit>(form, "txt_password2");

    struct Case {
        QString first, second, message;
    };
    const Case cases[] = {
        {QString(), QStringLiteral("abcdef"), kNeedTwo},
        {QStringLiteral("abcdef"), QStringLiteral("   "), kNeedTwo},
        {QStringLiteral("abcde"), QStringLiteral("abcde"), kTooShort},
        {QStringLiteral("abcdef"), QStringLiteral(" abcde "), kTooShort},
        {QStringLiteral("abcdefg"), QStringLiteral("abcdefh"), kDiffer},
        {QStringLiteral("abcdef"), QStringLiteral("ABCDEF"), kDiffer},
    };
    for (const Case& c : cases) {
        dialogs_->shown.clear();
        p1->setText(c.first);
        p2->setText(c.second);
        p2->setFocus();
        child<QPushButton>(form, "cmd_forward")->click();
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
        QCOMPARE(dialogs_->shown[0].text, c.message);
        QCOMPARE(form.focusWidget(), p1);
        QVERIFY(form.isVisible());
        QVERIFY(!appGlobals().passed);
    }
    QCOMPARE(read("login", "password").Set_Value().trimmed(), QString());
    QCOMPARE(read("login", "agreement").Set_Visible(), QStringLiteral("0"));
}

void StartTest::firstRunStoresSixCharacterPassword() {
    const SoftwareSetting before = read("login", "agreement");
    FormInit form;
    form.setDialogs(dialogs_);
    form.show();
    child<QRadioButton>(form, "opt_agree")->click();
    child<QPushButton>(form, "cmd_forward")->click();
    child<QLineEdit>(form, "txt_password1")->setText(QStringLiteral("  abc12!  "));
    child<QLineEdit>(form, "txt_password2")->setText(QStringLiteral("abc12!"));
    child<QPushButton>(form, "cmd_forward")->click();
    QVERIFY(dialogs_->shown.isEmpty());
    QVERIFY(appGlobals().passed);
    QCOMPARE(form.result(), int(QDialog::Accepted));

    QCOMPARE(read("login", "password").Set_Value(), encode().MD5(QStringLiteral("abc12!")));
    const SoftwareSetting agreement = read("login", "agreement");
    QCOMPARE(agreement.Set_Visible(), QStringLiteral("1"));
    QCOMPARE(agreement.Set_Description(), before.Set_Description());  // the text survives
}

void StartTest::startRoutineRunsFirstRunThenLogin() {
    QStringList shown;
    appGlobals().passed = true;  // a stale flag must not let anyone in
    auto closeBox = [&](QDialog& d) {
        shown << d.objectName();
        d.reject();
    };
    auto finishFirstRun = [&](QDialog& d) {
        shown << d.objectName();
        static_cast<FormInit&>(d).setDialogs(dialogs_);
        child<QRadioButton>(d, "opt_agree")->click();
        child<QPushButton>(d, "cmd_forward")->click();
        child<QLineEdit>(d, "txt_password1")->setText(QStringLiteral("secret1"));
        child<QLineEdit>(d, "txt_password2")->setText(QStringLiteral("secret1"));
        child<QPushButton>(d, "cmd_forward")->click();
    };
    auto login = [&](const QString& password) {
        return [&, password](QDialog& d) {
            shown << d.objectName();
            static_cast<FormLogin&>(d).setDialogs(dialogs_);
            QTest::keyClicks(child<QLineEdit>(d, "txt_password"), password);
            child<QPushButton>(d, "cmd_ok")->click();
            if (d.result() != QDialog::Accepted) d.reject();  // gives up after one try
        };
    };

    QVERIFY(startUp(closeBox) == nullptr);  // first run closed: the program ends
    QCOMPARE(programFieldSettings(3)->Count(), 0);
    std::unique_ptr<TarvelMain> main = startUp(finishFirstRun);
    QVERIFY(main);
    // The lists' columns are loaded before the main window opens.
    for (int kind = 1; kind <= 5; ++kind) {
        FSettings stored;
        stored.GetMySetting(qint16(kind));
        QCOMPARE(programFieldSettings(kind)->Count(), stored.Count());
        QCOMPARE(programFieldSettings(kind)->SelectFields(), stored.SelectFields());
    }
    QCOMPARE(main->objectName(), QStringLiteral("tarvel_main"));
    QVERIFY(!main->isVisible());  // the caller shows it
    main.reset();

    QVERIFY(startUp(login(QStringLiteral("SECRET1"))) == nullptr);
    QCOMPARE(dialogs_->lastText(), kWrongPassword);
    QVERIFY(startUp(login(QStringLiteral(" secret1"))) != nullptr);
    QCOMPARE(shown, (QStringList{"form_init", "form_init", "form_login", "form_login"}));
}

QTEST_MAIN(StartTest)
#include "start_test.moc"
