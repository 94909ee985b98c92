// First run, login and the start routine, driven through the named controls.
#include <unistd.h>

#include <QFile>
#include <QLineEdit>
#include <QLocalSocket>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

#include "custom/fsettings.h"
#include "custom/softwaresetting.h"
#include "shell/autobackuphook.h"
#include "shell/forminit.h"
#include "shell/formlogin.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "shell/singleinstance.h"
#include "shell/startup.h"
#include "store/clock.h"
#include "store/encode.h"
#include "store/faulttext.h"
#include "store/sqlitehandle.h"
#include "tests/views/screenfixture.h"

using namespace tarvel;
using namespace tarvel::testsupport;

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

// What the login window says about the data file before anyone types; empty
// when it says nothing.
QString loginStatus() {
    FormLogin form;
    const auto* status = child<QLabel>(form, "lbl_status");
    return status->isHidden() ? QString() : status->text();
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

    void loginTrimsRefusesWrongCaseAndAllowsRetry() {
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

    void loginSaysWhichDataFileCouldNotBeOpened() {
        QTemporaryDir dir;
        setApplicationPath(dir.path());
        const QString path = QDir::toNativeSeparators(dir.filePath(QStringLiteral("mydata3.tvg")));
        for (const char* problem : {"不存在", "损坏"}) {
            const QString status = loginStatus();
            QVERIFY2(status.contains(QString::fromUtf8(problem)) && status.contains(path),
                     qPrintable(status));
            if (QFile::exists(path)) break;  // the damaged file must be left as it was
            QFile junk(path);  // none was created for the missing one: now a damaged one
            QVERIFY(junk.open(QIODevice::WriteOnly));
            junk.write(QByteArray(4096, 'x'));
        }
        QCOMPARE(QFile(path).size(), 4096);
    }

    void loginTellsATooLongPathAndAReadOnlyFolderAtOnce() {
        // A good file in a folder deeper than the engine opens is not called damaged.
        QTemporaryDir dir;
        QString deep = dir.path();
        while (deep.toUtf8().size() <= kLongestDataPath) deep += "/" + QString(60, QChar(u'深'));
        QVERIFY(QDir().mkpath(deep));
        QVERIFY(QFile::copy(file_->path(), QDir(deep).filePath("mydata3.tvg")));
        setApplicationPath(deep);
        QString status = loginStatus();
        QVERIFY2(status.contains("路径太长") && !status.contains("损坏或不是"), qPrintable(status));
        // A read-only view of the folder (root writes through permission bits).
        const QString view = dir.filePath("ro");
        QDir().mkpath(view);
        if (::geteuid() != 0 || QProcess::execute("mount", {"--bind", file_->folder(), view}) != 0)
            QSKIP("needs root to mount a read-only view of a folder");
        const bool readOnly = QProcess::execute("mount", {"-o", "remount,ro,bind", view}) == 0;
        setApplicationPath(view);
        status = loginStatus();
        closeAllHandles();
        QProcess::execute("umount", {view});
        QVERIFY(readOnly);
        QVERIFY2(status.contains("只读") && status.contains("复制到可以写入的位置"),
                 qPrintable(status));
    }

    void automaticBackupsAtTheDaysFirstStartAndAtCloseAfterAChange() {
        Clock::setFixed(QDateTime(QDate(2026, 3, 2), QTime(8, 0)));
        const QString folder = QDir(file_->folder()).filePath("backups");
        auto count = [&] { return exchange::listAutoBackups(folder).size(); };
        {
            AutoBackupHook hook(dialogs_);
            hook.atStart();
            hook.runner().wait();
            QVERIFY2(hook.runner().lastResult().ok, qPrintable(hook.runner().lastResult().message));
            QCOMPARE(count(), 1);
            closeAllHandles();
            Clock::advance(60);
            hook.atClose();  // nothing changed since: no backup at 8:01
            QCOMPARE(count(), 1);
            QCOMPARE(exchange::listAutoBackups(folder)[0].made.time(), QTime(8, 0));
        }
        Clock::advance(3600);
        {
            AutoBackupHook hook(dialogs_);
            hook.atStart();  // the day's backup is there
            QVERIFY(!hook.runner().isRunning());
            run("INSERT INTO contacts (con_lastname) VALUES ('张三')");
            closeAllHandles();
            hook.atClose();
            // The closing backup takes the place of the morning's: one a day.
            QCOMPARE(count(), 1);
            QCOMPARE(exchange::listAutoBackups(folder)[0].made.time(), QTime(9, 1));
        }
        QVERIFY(dialogs_->shown.isEmpty());
        // A folder that cannot be made: the user is told.
        run(QString("INSERT INTO setting (set_type, set_key, set_value) VALUES ('backup', "
                    "'folder', '%1/backups')")
                .arg(file_->path()));
        Clock::advance(24 * 3600);
        AutoBackupHook hook(dialogs_);
        hook.atStart();
        hook.runner().wait();
        QTRY_COMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QString("warning"));
        QVERIFY2(dialogs_->lastText().contains("自动备份没有完成"),
                 qPrintable(dialogs_->lastText()));
    }

    void firstRunRefusesDisagreementAndBadPasswords() {
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

    // A write refused says so and the window waits; once the file is writable the
    // same click stores the trimmed password and the accepted agreement.
    void firstRunOnAReadOnlyDataFileWaitsThenStoresTheTrimmedPassword() {
        const QString agreement = read("agreement").Set_Description();
        FormInit form;
        form.setDialogs(dialogs_);
        form.show();
        {
            tarvel::testsupport::ReadOnlyDataFile readOnly;
            choosePasswords(form, QStringLiteral("  abc12!  "), QStringLiteral("abc12!"));
        }
        QCOMPARE(dialogs_->shown.size(), 1);
        const QString text = dialogs_->lastText();
        QVERIFY2(text.contains(QStringLiteral("没有保存成功")) &&
                     text.contains(QDir::toNativeSeparators(file_->path())),
                 qPrintable(text));
        QVERIFY(!appGlobals().passed);
        QVERIFY(form.isVisible());
        QCOMPARE(read("password").Set_Value().trimmed(), QString());
        QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("0"));

        click(form, "cmd_forward");
        QCOMPARE(dialogs_->shown.size(), 1);
        QVERIFY(appGlobals().passed);
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(read("password").Set_Value(), encode().MD5(QStringLiteral("abc12!")));
        QCOMPARE(read("agreement").Set_Visible(), QStringLiteral("1"));
        QCOMPARE(read("agreement").Set_Description(), agreement);  // the text survives
    }

    void startRoutineRunsFirstRunThenLogin() {
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

    // Two windows on one file would each save over the other's changes.
    void aSecondStartOnTheSameFileEndsAndLeavesTheFirst() {
        const auto start = [this](QProcess& p) {
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            p.setProcessEnvironment(env);
            p.start(QStringLiteral(TARVEL_BIN), {QStringLiteral("--data-dir"), file_->folder()});
            QVERIFY(p.waitForStarted());
        };
        QProcess first, second;
        start(first);
        const QString name =
            SingleInstance::socketName(file_->folder() + QStringLiteral("/mydata3.tvg"));
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                QLocalSocket probe;
                probe.connectToServer(name);
                return probe.waitForConnected(200);
            }(),
            15000);
        start(second);
        QVERIFY2(second.waitForFinished(15000), "the second start kept running");
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.state(), QProcess::Running);
        first.kill();
        first.waitForFinished();
    }
};

QTEST_MAIN(StartTest)
#include "start_test.moc"
