#include "shell/startup.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include "custom/fsettings.h"
#include "exchange/importjournal.h"
#include "exchange/recyclebin.h"
#include "shell/autobackuphook.h"
#include "shell/forminit.h"
#include "shell/formlogin.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "shell/singleinstance.h"
#include "store/connectionstring.h"

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

    // A second start on the same data file shows the window already open.
    // It listens from the start, so that a start during the login finds it too.
    SingleInstance instance(dataFilePath());
    if (instance.askRunningWindow()) return 0;
    instance.listen([] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible()) continue;
            if (window->isMinimized()) window->showNormal();
            window->raise();
            window->activateWindow();
        }
    });
    std::unique_ptr<TarvelMain> main = startUp([](QDialog& dialog) { dialog.exec(); });
    if (!main) return 0;
    QApplication::setQuitOnLastWindowClosed(true);
    AutoBackupHook backups(std::make_shared<MessageBoxDialogs>(main.get()));
    backups.atStart();
    main->showPlaced();
    const int result = app.exec();
    backups.atClose();
    return result;
}

}  // namespace tarvel
