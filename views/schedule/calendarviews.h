#pragma once

#include <QDate>
#include <QFrame>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>

#include "schedule/calendar.h"

namespace tarvel {

// What the calendar views ask of the page that holds them.
class CalendarViewBase : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    // Shows the days of `calendar` (already loaded for the view's span).
    virtual void show(const ScheduleCalendar& calendar, const QDate& current) = 0;

signals:
    void openTask(int taskId);
    // A new task on a day, at a time (invalid: no particular time).
    void newTask(const QDate& day, const QTime& time);
    // The user picked a day to look at closely.
    void showDay(const QDate& day);
};

// One day of the week and month views: the day's number (a button that opens
// the day view), its outlay, and its tasks. A double click on a task opens
// it, on the empty part of the day starts a new task there.
class DayCell : public QFrame {
    Q_OBJECT
public:
    explicit DayCell(QWidget* parent = nullptr);
    void show(const ScheduleCalendar& calendar, const QDate& day, bool inMonth);
    QDate day() const { return day_; }
    QListWidget* tasks() const { return tasks_; }

signals:
    void openTask(int taskId);
    void newTask(const QDate& day, const QTime& time);
    void showDay(const QDate& day);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QDate day_;
    QPushButton* number_;
    QLabel* outlay_;
    QListWidget* tasks_;
};

// Six weeks from the Sunday on or before the 1st.
class MonthView : public CalendarViewBase {
    Q_OBJECT
public:
    explicit MonthView(QWidget* parent = nullptr);
    void show(const ScheduleCalendar& calendar, const QDate& current) override;
    static QDate firstDay(const QDate& current) { return monthViewStart(current); }
    static QDate lastDay(const QDate& current) { return monthViewStart(current).addDays(41); }
    const QList<DayCell*>& cells() const { return cells_; }

private:
    QList<DayCell*> cells_;
};

// Sunday to Saturday of the current day's week.
class WeekView : public CalendarViewBase {
    Q_OBJECT
public:
    explicit WeekView(QWidget* parent = nullptr);
    void show(const ScheduleCalendar& calendar, const QDate& current) override;
    static QDate firstDay(const QDate& current) { return weekStart(current); }
    static QDate lastDay(const QDate& current) { return weekStart(current).addDays(6); }
    const QList<DayCell*>& cells() const { return cells_; }

private:
    QList<DayCell*> cells_;
};

// One day by the half hour: tasks without a time first, then each half hour
// with its tasks, or empty for a new task at that time.
class DayView : public CalendarViewBase {
    Q_OBJECT
public:
    explicit DayView(QWidget* parent = nullptr);
    void show(const ScheduleCalendar& calendar, const QDate& current) override;
    static QDate firstDay(const QDate& current) { return current; }
    static QDate lastDay(const QDate& current) { return current; }
    QTreeWidget* halfHours() const { return halfHours_; }

private:
    QLabel* heading_;
    QTreeWidget* halfHours_;
};

// A task's line in a day: time, subject and its marks (done, reminder, recurring).
QString entryText(const CalendarEntry& entry, bool withTime = true);

}  // namespace tarvel
