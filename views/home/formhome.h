#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QTreeWidget>

#include "schedule/homelists.h"
#include "schedule/reminders.h"
#include "views/common/page.h"

namespace tarvel {

// The home page form_pp: today's tasks with their reminder state and today's
// birthdays (the today list the main window's timer fires reminders from),
// the opportunities that end within a week and the open one-off tasks of
// the last 30 days that are overdue. A double click opens the record. A list
// that could not be read says so in its frame rather than showing empty.
class FormHome : public PageWidget {
    Q_OBJECT
public:
    // `today` is borrowed: the main window keeps it for its timer.
    explicit FormHome(TodayList& today, QWidget* parent = nullptr);

    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }

    // Re-reads everything for today (the program's clock).
    void fill(const PageRequest& request) override;
    void refresh() override;
    // Shows the today list as it stands: after a reminder fired, was dismissed
    // or snoozed, nothing needs reading again.
    void showToday();

    QTreeWidget* lvTodayTasks() const { return lvTasks_; }
    QTreeWidget* lvBirthdays() const { return lvBirthdays_; }
    QTreeWidget* lvOpportunities() const { return lvOpportunities_; }
    QTreeWidget* lvOverdue() const { return lvOverdue_; }

signals:
    // Everything was read again for `day`.
    void refreshed(const QDate& day);

private:
    void showOpportunities();
    void showOverdue();
    void openItem(QTreeWidgetItem* item);

    TodayList& today_;
    HomeLists lists_;
    PageSwitch pageSwitch_;
    QLabel* lblDate_;
    QGroupBox* fraTasks_;
    QGroupBox* fraBirthdays_;
    QGroupBox* fraOpportunities_;
    QGroupBox* fraOverdue_;
    QTreeWidget* lvTasks_;
    QTreeWidget* lvBirthdays_;
    QTreeWidget* lvOpportunities_;
    QTreeWidget* lvOverdue_;
};

}  // namespace tarvel
