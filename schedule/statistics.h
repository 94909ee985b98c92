#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include "schedule/messages.h"

namespace tarvel {

// The birthday condition: contacts whose birthday (month and day) falls on
// `day`, never the unknown birthday 1900-1-1. Appended to
// "SELECT ... FROM contacts".
QString birthdayCondition(const QDate& day);

// The model of the schedule statistics page form_sch_stat: thirteen
// ready-made selections, each of which hands a record kind's list page a
// filter. The page shows no results itself; the screen passes the returned
// page code and filter to the page-switching routine.
//
// Controls: txt_overdays (overDays), DT_day1 and DT_day2 (day1, day2),
// lbl_Selection(0..12) (caption). Selections 7 to 10 mark tasks.tas_check
// and selection 11 contacts.con_check day by day over the period; the marks
// stay until the next such selection, for the list page to filter by.
class ScheduleStatistics {
public:
    static constexpr int kSelections = 13;
    // Page codes of the list pages the selections open.
    static constexpr qint16 kContactList = 22;
    static constexpr qint16 kAccountList = 12;
    static constexpr qint16 kOpportunityList = 3;
    static constexpr qint16 kDocumentList = 40;
    // txt_overdays takes up to four digits: 9999 days, some 27 years back.
    static constexpr int kMaxOverDaysDigits = 4;

    // Starts with the values of load().
    explicit ScheduleStatistics(Messages& messages);

    // The page's start values: 15 days without contact, the period from 15
    // days ago to today (the program's clock).
    void load();
    QString overDays() const { return overDays_; }
    void setOverDays(const QString& value) { overDays_ = value; }
    QDate day1() const { return day1_; }
    void setDay1(const QDate& value) { day1_ = value; }
    QDate day2() const { return day2_; }
    void setDay2(const QDate& value) { day2_ = value; }
    // txt_overdays takes the digits 0 to 9 and nothing else (not even backspace).
    static bool acceptsOverDaysKey(QChar key);

    // The captions of lbl_Selection(0..12): each selection's fixed text and
    // the display label of its record kind.
    static QStringList captions();
    // The relation kind code of the records a selection lists, and the page
    // code of their list; 0 for an index out of range.
    static qint16 recordKind(int index);
    static qint16 pageOf(int index);
    // The filter of a selection for the current values, without marking.
    QString filter(int index) const;

    struct Choice {
        qint16 page = 0;
        QString filter;
    };
    // A click on lbl_Selection(index). Selections 0 to 2 refuse an empty or
    // over-long number of days with a message. Selections 3 to 12 check the
    // period first: a second date before the first is refused with a message;
    // a period of more than 30 days draws a warning and goes on. Then the
    // marking, then the filter. False when a value was refused, the index is
    // out of range or a statement failed (then the user is told why, and
    // ErrMsg keeps it).
    bool select(int index, Choice* choice);

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }

private:
    bool periodAccepted();
    bool overDaysAccepted();
    bool mark(const char* clear, const char* set, QString (*condition)(const QDate&));

    Messages& messages_;
    QString overDays_;
    QDate day1_, day2_;
    QString errMsg_;
};

}  // namespace tarvel
