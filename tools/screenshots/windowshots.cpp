// The start windows, the main window with its home, schedule and settings
// pages, a reminder window and the option editor.
#include <QGuiApplication>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>

#include "custom/fsettings.h"
#include "shell/forminit.h"
#include "shell/formlogin.h"
#include "shell/mainwindow.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "tools/screenshots/samplerecords.h"
#include "tools/screenshots/shots.h"
#include "views/options/formoption.h"
#include "views/schedule/formschremind.h"
#include "views/settings/formappsetting.h"

namespace tarvel::shots {

namespace {

void shootStartWindows(Album& album) {
    FormInit init;
    album.save(init, QStringLiteral("init"));
    init.findChild<QRadioButton*>(QStringLiteral("opt_agree"))->setChecked(true);
    init.cmdForwardClick();
    album.save(init, QStringLiteral("init_password"));
    FormLogin login;
    album.save(login, QStringLiteral("login"));
}

void shootMainWindow(Album& album) {
    MainWindowOptions options;
    options.checkForUpdate = false;
    options.trayAvailable = [] { return false; };
    TarvelMain main(options);
    main.Timer1()->stop();  // the pictures show the pages, not reminders firing
    const std::pair<qint16, const char*> pages[] = {{page::ContactList, "main"},
                                                    {page::Home, "sch_home"},
                                                    {page::Schedule, "sch_module"},
                                                    {page::ScheduleStatistics, "sch_stat"},
                                                    {page::Settings, "setting_main"}};
    for (const auto& [code, name] : pages) {
        main.ShowPage(code);
        album.save(main, QLatin1String(name));
    }
    // A filled contact page in the window spread over the whole screen, as
    // maximised (run under a 1366x768 screen to see a laptop's).
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        main.setGeometry(screen->availableGeometry());
    main.ShowPage(page::ContactDetail, QString(), 1);
    album.save(main, QStringLiteral("main_contact_filled"));
    // The reminder of today's first due task, else of the first task.
    int taskId = 0;
    for (const TodayTask& t : main.todayList().tasks())
        if (taskId == 0 || (t.due && !main.todayList().task(taskId)->due)) taskId = t.id;
    FormSchRemind remind(taskId, main.todayList());
    remind.load();
    album.save(remind, QStringLiteral("sch_remind"));
}

void shootSettings(Album& album) {
    FormAppSetting settings;
    settings.resize(settings.sizeHint().expandedTo(QSize(760, 540)));
    const char* const pages[] = {"captions",    "toolbar",     "acc_related",
                                 "opp_related", "con_related", "sch_related",
                                 "doc_related", "fields",      "personal"};
    for (int i = 0; i < settings.SSTab1()->count() && i < int(std::size(pages)); ++i) {
        settings.SSTab1()->setCurrentIndex(i);
        album.save(settings, QStringLiteral("setting_") + QLatin1String(pages[i]));
    }
    FormOption option;
    option.setObject(QStringLiteral("con"));
    option.setName(QStringLiteral("title"));
    option.setCaptions(QStringLiteral("联系人"), QStringLiteral("称呼"));
    option.load();
    album.save(option, QStringLiteral("option"));
}

}  // namespace

void shootMain(Album& album) {
    // The generated tasks fall in May 2024: the pages show that month's day.
    Clock::setFixed(jetdate::naive(QDate(2024, 5, 20), QTime(10, 0)));
    samples::fillRecords({40, 300, 60, 80, 20});
    loadProgramFieldSettings();
    shootStartWindows(album);
    shootMainWindow(album);
    shootSettings(album);
    Clock::reset();
}

}  // namespace tarvel::shots
