#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <functional>

#include "schedule/reminders.h"
#include "views/common/page.h"

class QSystemTrayIcon;
class QWidget;

namespace tarvel {

class FormSchRemind;

// The reminder windows of the main window: one per task whose time has come,
// stacked on the screen the main window is on.
class ReminderWindows : public QObject {
    Q_OBJECT
public:
    // `owner`: the main window (the windows' parent, whose screen they use).
    ReminderWindows(TodayList& today, QWidget* owner);
    ~ReminderWindows() override;

    // Where a reminder's task opens.
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }
    // Told in the notification area while the main window is hidden; may be null.
    void setTray(QSystemTrayIcon* tray) { tray_ = tray; }

    // Opens a window for each entry of today's list whose time has come;
    // true when any opened.
    bool fireDue();
    void closeAll();
    // Open now, oldest first.
    QList<FormSchRemind*> windows() const;

signals:
    // An entry was answered in a window (postponed, done, dismissed).
    void entryChanged();

private:
    void open(const TodayTask& entry);

    TodayList& today_;
    QWidget* owner_;
    QSystemTrayIcon* tray_ = nullptr;
    PageSwitch pageSwitch_;
    QList<QPointer<FormSchRemind>> windows_;
};

}  // namespace tarvel
