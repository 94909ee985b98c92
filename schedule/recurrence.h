#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>

#include "custom/optionlists.h"
#include "schedule/messages.h"
#include "store/form.h"

namespace tarvel {

class Task;

// Recurrence of tasks. A task occurs on its `tas_date`; a recurring one also
// on every later date up to and including its `tas_closedate` that matches
// its cycle. A recurring task is one row: occurrences are never expanded,
// the database selects them by the condition below.
namespace cycle {
inline constexpr qint16 Once = 0;
inline constexpr qint16 Daily = 1;
inline constexpr qint16 Weekly = 7;    // same weekday as the start date
inline constexpr qint16 Monthly = 30;  // same day of month; never rolled to a shorter month's end
inline constexpr qint16 Yearly = 365;  // same month and day; a 29 February start only in leap years
}  // namespace cycle

// A recurring task without end keeps this close date: the task-date
// condition (tas_closedate >= the day) then selects it on every later day,
// and every screen shows it as "无结束日期".
QDate openEndDate();
bool isOpenEnded(const QDateTime& closeDate);
QString openEndedText();
// A close date as the screens write it: "无结束日期" for an open end.
QString closeDateText(const QDateTime& closeDate);

// The WHERE clause that selects the tasks occurring on `day`, to be appended
// to "SELECT ... FROM tasks". The whole clause sits in one pair of
// parentheses, so callers may append " AND ..." and an ORDER BY. Its text,
// spacing included, is relied on elsewhere and must not be tidied.
QString taskDateCondition(const QDate& day);

// The same five alternatives as the schedule statistics page writes them:
// no outer parentheses, "tas_date  =#" in the first term and no blank
// before the last "AND". Used only by that page's day-by-day marking.
QString statisticsTaskDateCondition(const QDate& day);

// Whether a task with these values occurs on `day`, evaluated in memory
// exactly as taskDateCondition() is by the database (a date with a time part
// compares as that instant against the day's midnight; a missing close date
// ends a recurring task before it starts).
bool occursOn(const QDateTime& taskDate, qint16 cycleValue, const QDateTime& closeDate,
              const QDate& day);

// Whether a loaded task occurs today (the program's clock). The detail and
// related screens call it after saving, to tell whether the task belongs on
// today's list.
bool occursToday(const Task& task);

// Pick-lists. The two built-in kinds need no database: "time_format" gives
// the 48 half hours 00:00 .. 23:30, "cycle_type" the five cycles in the order
// 每天, 每周, 每月, 每年, 不重复 (timeFormatItems() and cycleTypeItems() of
// custom/optionlists.h). Every other kind, "Probability" included, is the
// option list of `object` ("sch" for tasks) sorted by text, each entry
// trimmed and a null entry "". Names are trimmed. Nullopt when the option
// list cannot be read.
std::optional<QStringList> pickListItems(const QString& object, const QString& kind);
// Puts the items of a kind into a list or combo control of `form`, leaving
// the control's current text as it was; false (the control untouched) when
// the option list cannot be read.
bool fillPickList(Form& form, const QString& control, const QString& object, const QString& kind);
// The cycle item of the detail form and the `tas_cycle` value it stands for
// (每天 1, 每周 7, 每月 30, 每年 365, 不重复 0); an unknown text gives 0, an
// unknown value "".
qint16 cycleOfItem(const QString& item);
QString itemOfCycle(qint16 cycleValue);

// Checks a typed time "hours:minutes". Without a colon it shows "小时和分钟之间
// 请用冒号(:)分隔开！" and leaves the text. When the hours are not a whole
// number from 0 to 23 or the minutes not one from 0 to 59 it shows "您输入的时间
// 不符合格式！请检查" and replaces the text by the current time, written
// unpadded ("9:5"). A valid text passes unchanged.
bool checkTypedTime(QString& text, Messages& messages);

// Whether a typed text is a number (blanks around it and thousands
// separators allowed). Guards amounts before they are stored.
bool isNumber(const QString& text);

// The time of day a typed or stored time stands for, on the day that carries
// time-only values; an invalid date-time when the text is no time.
QDateTime timeOfDay(const QString& text);
// A time of day as the forms show it: hour ":" minute, unpadded ("9:5").
QString unpaddedTime(const QTime& time);

}  // namespace tarvel
