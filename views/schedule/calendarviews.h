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

// Whole weeks of days, Sunday first, one DayCell each.
class DayGridView : public CalendarViewBase {
    Q_OBJECT
public:
    DayGridView(int weeks, QWidget* parent);
    void show(const ScheduleCalendar& calendar, const QDate& current) override;
    // The first day shown for `current`; the view shows 7 * weeks days from it.
    virtual QDate firstDayFor(const QDate& current) const = 0;
    const QList<DayCell*>& cells() const { return cells_; }

private:
    int weeks_;
    QList<DayCell*> cells_;
};

// Six weeks from the Sunday on or before the 1st; days of other months shaded.
class MonthView : public DayGridView {
    Q_OBJECT
public:
    explicit MonthView(QWidget* parent = nullptr) : DayGridView(6, parent) {}
    QDate firstDayFor(const QDate& current) const override { return firstDay(current); }
    static QDate firstDay(const QDate& current) { return monthViewStart(current); }
    static QDate lastDay(const QDate& current) { return monthViewStart(current).addDays(41); }
};

// Sunday to Saturday of the current day's week.
class WeekView : public DayGridView {
    Q_OBJECT
public:
    explicit WeekView(QWidget* parent = nullptr) : DayGridView(1, parent) {}
    QDate firstDayFor(const QDate& current) const override { return firstDay(current); }
    static QDate firstDay(const QDate& current) { return weekStart(current); }
    static QDate lastDay(const QDate& current) { return weekStart(current).addDays(6); }
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
