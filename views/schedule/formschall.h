#pragma once

#include <QButtonGroup>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "schedule/calendar.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"
#include "views/schedule/calendarviews.h"

namespace tarvel {

// The schedule page form_sch_all: month, week and day calendars with a date
// picker, previous, next and today; the left panel of the schedule's
// categories with their counts, which narrow the calendar, and the way to the
// statistics page. The view is the page number of the page history (0 month,
// 1 week, 2 day), the date its date and the category its condition.
class FormSchAll : public PageWidget {
    Q_OBJECT
public:
    enum View { Month = 0, Week = 1, Day = 2 };
    // Opens a task (id 0: a new one on `day`, at `time` when valid).
    using TaskOpener = std::function<void(int taskId, const QDate& day, const QTime& time)>;
    // Writes the page's date, view and condition into the current history entry.
    using HistoryUpdate =
        std::function<void(const QDate& day, qint16 pageNo, const QString& condition)>;

    explicit FormSchAll(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setFileDialogs(std::shared_ptr<FileDialogs> files) { files_ = std::move(files); }
    void setTaskOpener(TaskOpener opener) { openTask_ = std::move(opener); }
    void setHistoryUpdate(HistoryUpdate update) { historyUpdate_ = std::move(update); }
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }

    void fill(const PageRequest& request) override;
    void refresh() override;

    View view() const { return view_; }
    QDate date() const { return date_; }
    QString condition() const { return condition_; }
    void setView(View view);
    void setDate(const QDate& day);
    const ScheduleCalendar& calendar() const { return calendar_; }
    MonthView* monthView() const { return month_; }
    WeekView* weekView() const { return week_; }
    DayView* dayView() const { return day_; }
    QTreeWidget* categories() const { return categories_; }

public slots:
    void cmdPrevClick();
    void cmdNextClick();
    void cmdTodayClick();
    // iCalendar files: every task, or those ticked in the task list.
    void exportICalendar(bool tickedOnly);
    void importICalendar();

signals:
    // Tasks were added behind the home page's back (an import).
    void tasksImported();

private:
    void showCalendar();
    void showCategories();
    void chooseCategory(QTreeWidgetItem* item);
    void recordInHistory();
    QDate step(int direction) const;

    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<FileDialogs> files_;
    TaskOpener openTask_;
    HistoryUpdate historyUpdate_;
    PageSwitch pageSwitch_;
    View view_ = Month;
    QDate date_;
    QString condition_;
    bool showing_ = false;
    ScheduleCalendar calendar_;

    QTreeWidget* categories_;
    QDateEdit* dtDay_;
    QLabel* lblRange_;
    QButtonGroup* views_;
    QStackedWidget* stack_;
    MonthView* month_;
    WeekView* week_;
    DayView* day_;
};

}  // namespace tarvel
