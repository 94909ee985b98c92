#include "shell/startup.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QRadioButton>
#include <QTextStream>
#include <QTranslator>

#include "custom/fsettings.h"
#include "exchange/importjournal.h"
#include "exchange/recyclebin.h"
#include "shell/autobackuphook.h"
#include "shell/forminit.h"
#include "shell/formlogin.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "store/connectionstring.h"
#include "views/options/formoption.h"
#include "views/schedule/formschremind.h"
#include "views/settings/formappsetting.h"

namespace tarvel {

QString programFolder(const QStringList& arguments, const QString& tarvelHome,
                      const QString& executableFolder) {
    const QString option = QStringLiteral("--data-dir");
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == option && i + 1 < arguments.size()) return arguments[i + 1];
        if (arguments[i].startsWith(option + QLatin1Char('=')))
            return arguments[i].mid(option.size() + 1);
    }
    if (!tarvelHome.trimmed().isEmpty()) return tarvelHome;
    return executableFolder;
}

void setApplicationPath(const QString& folder) {
    AppGlobals& g = appGlobals();
    g.appPath = QDir::toNativeSeparators(folder).trimmed();
    g.appPathNoSep = g.appPath;
    if (g.appPathNoSep.endsWith(QDir::separator())) g.appPathNoSep.chop(1);
    setGlobalConnectionString(buildConnectionString(g.appPathNoSep));
}

bool needsFirstRun() {
    SoftwareSetting& setting = softwareSetting();
    setting.GetValue(QStringLiteral("login"), QStringLiteral("agreement"));
    return setting.Set_Visible().trimmed() == QLatin1String("0");
}

std::unique_ptr<TarvelMain> startUp(const ModalRunner& runModal) {
    appGlobals().passed = false;
    if (needsFirstRun()) {
        FormInit init;
        runModal(init);
    } else {
        FormLogin login;
        runModal(login);
    }
    if (!appGlobals().passed) return nullptr;
    // A data file of an earlier build gets the tables imports keep their
    // journal in; where it cannot be written, the first import says why.
    QString notWritable;
    exchange::ImportJournal::ensureTables(&notWritable);
    // Deleted records older than the bin keeps them go by themselves.
    exchange::recyclebin::expire(&notWritable);
    // The lists read their columns from these for as long as the program runs.
    loadProgramFieldSettings();
    return std::make_unique<TarvelMain>();
}

namespace {

void loadChineseTranslations(QApplication& app) {
    auto* qt = new QTranslator(&app);
    if (qt->load(QLocale(QLocale::Chinese, QLocale::China), QStringLiteral("qtbase"),
                 QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        app.installTranslator(qt);
}

// Saves the three windows as the user first sees them, for layout checks.
int saveScreenshots(const QString& prefix) {
    bool ok = true;
    auto shoot = [&](QWidget& w, const QString& name) {
        w.show();
        for (int i = 0; i < 10; ++i) QApplication::processEvents();
        const QString file = prefix + QLatin1Char('_') + name + QStringLiteral(".png");
        ok = w.grab().save(file) && ok;
        QTextStream(stdout) << file << Qt::endl;
        w.hide();
    };
    {
        FormInit init;
        shoot(init, QStringLiteral("init"));
        init.findChild<QRadioButton*>(QStringLiteral("opt_agree"))->setChecked(true);
        init.cmdForwardClick();
        shoot(init, QStringLiteral("init_password"));
    }
    {
        FormLogin login;
        shoot(login, QStringLiteral("login"));
    }
    {
        MainWindowOptions options;
        options.checkForUpdate = false;
        TarvelMain main(options);
        main.ShowPage(page::ContactList);
        shoot(main, QStringLiteral("main"));
        main.ShowPage(page::Settings);
        shoot(main, QStringLiteral("setting_main"));
    }
    {
        // The schedule's screens over whatever the data file holds for today.
        MainWindowOptions options;
        options.checkForUpdate = false;
        options.trayAvailable = [] { return false; };
        TarvelMain main(options);
        main.Timer1()->stop();  // the shots show the lists, not reminders firing
        main.ShowPage(page::Home);
        shoot(main, QStringLiteral("sch_home"));
        main.ShowPage(page::Schedule);
        shoot(main, QStringLiteral("sch_module"));
        main.ShowPage(page::ScheduleStatistics);
        shoot(main, QStringLiteral("sch_stat"));
        // The reminder of today's first task that has one, else of the first task.
        int taskId = 0;
        for (const TodayTask& t : main.todayList().tasks())
            if (taskId == 0 || (t.due && !main.todayList().task(taskId)->due)) taskId = t.id;
        FormSchRemind remind(taskId, main.todayList());
        remind.load();
        shoot(remind, QStringLiteral("sch_remind"));
    }
    {
        loadProgramFieldSettings();
        FormAppSetting settings;
        settings.resize(settings.sizeHint().expandedTo(QSize(760, 540)));
        const char* const pages[] = {"captions",    "toolbar",     "acc_related",
                                     "opp_related", "con_related", "sch_related",
                                     "doc_related", "fields",      "personal"};
        for (int i = 0; i < settings.SSTab1()->count(); ++i) {
            settings.SSTab1()->setCurrentIndex(i);
            shoot(settings, QStringLiteral("setting_") + QLatin1String(pages[i]));
        }
    }
    {
        FormOption option;
        option.setObject(QStringLiteral("con"));
        option.setName(QStringLiteral("title"));
        option.setCaptions(QStringLiteral("联系人"), QStringLiteral("称呼"));
        option.load();
        shoot(option, QStringLiteral("option"));
    }
    return ok ? 0 : 1;
}

}  // namespace

int runTarvel(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarvel"));
    loadChineseTranslations(app);
    // The modal windows of start-up close before the main window opens.
    QApplication::setQuitOnLastWindowClosed(false);

    const QStringList args = QApplication::arguments();
    setApplicationPath(programFolder(args, qEnvironmentVariable("TARVEL_HOME"),
                                     QCoreApplication::applicationDirPath()));

    if (const qsizetype i = args.indexOf(QStringLiteral("--screenshot"));
        i >= 0 && i + 1 < args.size())
        return saveScreenshots(args[i + 1]);

    std::unique_ptr<TarvelMain> main = startUp([](QDialog& dialog) { dialog.exec(); });
    if (!main) return 0;
    QApplication::setQuitOnLastWindowClosed(true);
    AutoBackupHook backups(std::make_shared<MessageBoxDialogs>(main.get()));
    backups.atStart();
    main->show();
    const int result = app.exec();
    backups.atClose();
    return result;
}

}  // namespace tarvel
