#include "shell/reminderwindows.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSystemTrayIcon>

#include "shell/windowplacement.h"
#include "store/clock.h"
#include "views/schedule/formschremind.h"

namespace tarvel {

ReminderWindows::ReminderWindows(TodayList& today, QWidget* owner)
    : QObject(owner), today_(today), owner_(owner) {}

ReminderWindows::~ReminderWindows() {
    // They work on today's list, which may go before the child windows would.
    for (const QPointer<FormSchRemind>& w : std::as_const(windows_)) delete w.data();
}

bool ReminderWindows::fireDue() {
    const QList<TodayTask> due = today_.fire(Clock::now());
    for (const TodayTask& entry : due) open(entry);
    return !due.isEmpty();
}

void ReminderWindows::closeAll() {
    for (const QPointer<FormSchRemind>& w : std::as_const(windows_))
        if (w) w->close();
}

QList<FormSchRemind*> ReminderWindows::windows() const {
    QList<FormSchRemind*> open;
    for (const QPointer<FormSchRemind>& w : windows_)
        if (w) open << w.data();
    return open;
}

void ReminderWindows::open(const TodayTask& entry) {
    auto* window = new FormSchRemind(entry.id, today_, owner_);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setPageSwitch(pageSwitch_);
    connect(window, &FormSchRemind::entryChanged, this, &ReminderWindows::entryChanged);
    window->load();
    windows_.removeAll(nullptr);
    // On the main window's screen while it shows, else on the primary one;
    // never where the main window itself may stick out of the screen.
    QScreen* screen = owner_->isVisible() && owner_->screen() ? owner_->screen()
                                                              : QGuiApplication::primaryScreen();
    if (screen)
        window->setGeometry(
            popupGeometry(window->size(), screen->availableGeometry(), int(windows_.size())));
    windows_ << window;
    window->show();
    window->raise();
    window->activateWindow();
    QApplication::beep();
    if (tray_ && !owner_->isVisible())
        tray_->showMessage(QStringLiteral("日程提醒"),
                           entry.timeText + QLatin1Char(' ') + entry.subject);
}

}  // namespace tarvel
