#pragma once

#include <QAction>
#include <QDate>
#include <QHash>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QToolBar>
#include <functional>
#include <memory>

#include "custom/appsetting.h"
#include "schedule/reminders.h"
#include "shell/pagefactory.h"
#include "shell/pagehistory.h"
#include "shell/pages.h"
#include "shell/reminderwindows.h"
#include "shell/undooffer.h"
#include "shell/windowplacement.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"

namespace tarvel {

class UpdateCheck;
class FormHome;
class FormSchRemind;

struct MainWindowOptions {
    // Whether the desktop has a notification area to put the tray icon in.
    std::function<bool()> trayAvailable = &QSystemTrayIcon::isSystemTrayAvailable;
    int timerInterval = 1000;  // ms; a tick only compares dates and times
    bool checkForUpdate = true;
    // The seams the window and every page it makes use; null: the real ones.
    std::shared_ptr<Messages> dialogs;
    std::shared_ptr<ShellOpener> opener;
    std::shared_ptr<FileDialogs> files;
    // How long the status bar offers 撤销; null: a real timer.
    UndoOffer::Later undoTimer;
};

// The main window: module pages in an MDI area, the toolbar that switches
// them, the page history behind back and forward, the day-change timer, the
// tray icon and the update request.
class TarvelMain : public QMainWindow {
    Q_OBJECT
public:
    enum class PageMode { Normal, History };

    explicit TarvelMain(MainWindowOptions options = {}, QWidget* parent = nullptr);
    ~TarvelMain() override;

    // The page-switching routine: creates or shows the page's child window and
    // fills it. Normal mode records the visit in the history; history mode
    // (back and forward) does not. Returns null for an unknown code.
    PageWidget* ShowPage(qint16 page, const QString& condition = QString(), qint32 recordId = 0,
                         const QDate& date = QDate(), qint16 pageNo = -1,
                         PageMode mode = PageMode::Normal);
    // A page asked for by a screen (a record opened from the home page, a
    // statistics selection, a reminder's task): the unsaved-changes question,
    // then the page in normal mode. False when the user keeps the edit.
    bool OpenPage(qint16 page, const QString& condition = QString(), qint32 recordId = 0);
    // The task page: task id, or 0 for a new task on `day` at `time` (when
    // valid); after the unsaved-changes question. False when the user keeps the edit.
    bool OpenTask(int taskId, const QDate& day = QDate(), const QTime& time = QTime());
    // The task page for a new task begun from a record (kind::Opportunity,
    // Account, Contact, Document), linked to it when saved.
    bool OpenTaskFor(qint16 recordKind, int recordId);
    // The page of a record of any kind (kind::Contact, ..., kind::Task),
    // after the unsaved-changes question. False when the user keeps the edit.
    bool OpenRecord(qint16 relationKind, int id);
    PageWidget* currentPage() const;
    // Shows the window where it was last closed (maximised the first time).
    void showPlaced();
    const WindowPlace& startPlace() const { return place_; }
    qint16 currentPageCode() const { return currentCode_; }
    PageWidget* pageWidget(qint16 code) const { return pages_.value(code); }

    // A toolbar button by its key; an unknown key does nothing.
    void Toolbar1ButtonClick(const QString& key);
    // Rebuilds the toolbar from the stored layout: the visible entries in order,
    // the three separator entries as separators.
    void RebuildToolbar();
    // Shows the given entries as the toolbar without storing anything: the
    // settings window's preview while the user arranges the buttons.
    void PreviewToolbar(const QList<AppSetting>& entries);
    // After the settings window saved a layout: the toolbar, the module
    // captions and every open page rebuild from what is stored.
    void ApplyLayout();
    QToolBar* Toolbar1() const { return toolbar_; }
    QAction* toolbarAction(const QString& key) const;
    QStringList toolbarKeys() const;  // in order; separators as "|"
    QString moduleCaption(const QString& key) const;

    PageHistory& history() { return history_; }
    QMdiArea* mdiArea() const { return mdi_; }
    QTimer* Timer1() const { return timer_; }
    UndoOffer* undoOffer() const { return undo_; }
    QSystemTrayIcon* trayIcon() const { return tray_; }
    UpdateCheck* updateCheck() const { return update_; }

    // The home page's list of today's tasks and birthdays; the timer fires
    // the reminders of its due entries.
    TodayList& todayList() { return today_; }
    FormHome* homePage() const;
    // The reminder windows open now, oldest first.
    QList<FormSchRemind*> reminderWindows() const;

    QDate lastDaySeen() const { return lastDay_; }
    int homeRefreshCount() const { return homeRefreshes_; }

public slots:
    void Timer1Timer();

signals:
    void homePageRefreshed(const QDate& day);
    void updateChecked(bool newer, const QDate& serverDate);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildTray();
    void buildToolbar(const QList<AppSetting>& entries);
    PageServices pageServices();
    bool keepUnsavedEdits();
    // Opens a reminder window for each entry of the today list whose time has come.
    void fireReminders();
    void showHistoryEntry();
    void refreshHomePage();
    QString pageCaption(const PageInfo& info) const;
    QIcon iconFor(const QString& key, const QString& caption) const;

    MainWindowOptions options_;
    WindowPlace place_;
    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<ShellOpener> opener_;
    std::shared_ptr<FileDialogs> files_;
    PageHistory history_;
    QMdiArea* mdi_;
    QToolBar* toolbar_;
    QTimer* timer_;
    QSystemTrayIcon* tray_ = nullptr;
    UpdateCheck* update_;
    QLabel* statusPage_;
    QLabel* statusDate_;
    QHash<qint16, PageWidget*> pages_;
    QHash<QString, QString> captions_;  // toolbar key -> caption
    qint16 currentCode_ = 0;
    QDate lastDay_;
    int homeRefreshes_ = 0;
    TodayList today_;
    ReminderWindows* reminders_;
    UndoOffer* undo_;
};

// The window caption and tray tip of the program.
inline QString productCaption() {
    return QStringLiteral("Tarvel日志软件V3.1");
}

}  // namespace tarvel
