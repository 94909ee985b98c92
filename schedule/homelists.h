#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

#include "records/currency.h"

namespace tarvel {

// An opportunity that ends soon, as the home page lists it.
struct EndingOpportunity {
    int id = 0;
    QString subject;
    QDateTime dieDate;
    QString phase;
    Currency estimateSale;
};

// A one-off task of the last days that is not done.
struct OverdueTask {
    int id = 0;
    QDateTime date;
    QTime time;  // invalid when the task has no time
    QString subject;
};

// The home page's lists besides today's (TodayList): the opportunities that
// end within a week from the day, and the open one-off tasks of the month
// before it. Each load reports a list that could not be read (false, with
// ErrMsg) instead of passing it off as an empty one.
class HomeLists {
public:
    // Days ahead for the ending opportunities, days back for overdue tasks.
    static constexpr int kEndingDays = 7;
    static constexpr int kOverdueDays = 30;

    bool loadEndingOpportunities(const QDate& day);
    bool loadOverdueTasks(const QDate& day);
    const QList<EndingOpportunity>& endingOpportunities() const { return opportunities_; }
    const QList<OverdueTask>& overdueTasks() const { return overdue_; }

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }

private:
    QList<EndingOpportunity> opportunities_;
    QList<OverdueTask> overdue_;
    QString errMsg_;
};

}  // namespace tarvel
