// The schedule: recurrence (the task-date condition against the occurs-today
// test and the table of cycles), reminders and the today list, the schedule
// statistics, and the Task record: storing and loading, its row of the
// relation matrix, and its form operations over a form held in maps and a
// real grid data control.

#include <map>
#include <set>

#include "schedule/recurrence.h"
#include "schedule/reminders.h"
#include "schedule/statistics.h"
#include "schedule/task.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;
using records_test::at;
using records_test::withId;

namespace {

// The message boxes a model asked for, as "icon title: text" (info, warn or
// ask); every question is answered No.
struct RecordedMessages : Messages {
    void info(const QString& t, const QString& s) override { shown << "info " + t + ": " + s; }
    void warning(const QString& t, const QString& s) override { shown << "warn " + t + ": " + s; }
    bool ask(const QString& t, const QString& s, Icon, Buttons) override {
        shown << "ask " + t + ": " + s;
        return false;
    }
    QStringList shown;
};

using Schedule = records_test::RecordFixture;

// What the table of cycles says, worked out on day numbers rather than with
// the weekday and date helpers the program uses.
bool tableSays(const QDate& start, int cycleValue, const QDate& close, const QDate& day) {
    const qint64 d = day.toJulianDay(), first = start.toJulianDay();
    if (cycleValue == 0) return d == first;
    if (!close.isValid() || d < first || d > close.toJulianDay()) return false;
    const bool sameDay = day.day() == start.day();
    return cycleValue == 1 || (cycleValue == 7 && (d - first) % 7 == 0) ||
           (cycleValue == 30 && sameDay) ||
           (cycleValue == 365 && sameDay && day.month() == start.month());
}

// Every day of 2023 to 2028 (two leap years): the rows the condition selects,
// the tasks the in-memory test finds, and the table of cycles applied to the
// stored rows must be the same set.
TEST_F(Schedule, ConditionAndTodayTestAgreeWithTheTableOnEveryDay) {
    const QDate last(2028, 12, 31);
    std::vector<std::tuple<int, QDate, int, QDate>> rows;  // id, start, cycle, close
    QStringList values;
    auto add = [&](const QDate& start, int c, const QDate& close) {
        rows.emplace_back(int(rows.size()) + 1, start, c, close);
        values << QString::asprintf(
            "(%d, #%s#, %d, %s)", int(rows.size()), qPrintable(start.toString(Qt::ISODate)), c,
            close.isValid() ? qPrintable(close.toString("#yyyy-MM-dd#")) : "NULL");
    };
    // Starts on the 29th to 31st, on 29 February and on a Wednesday; the table's
    // cycles and two it lacks; closing the day before the start, on the start,
    // 400 days on and on the last day walked; and one without a close date.
    for (const QDate& start :
         {QDate(2023, 1, 29), QDate(2023, 1, 30), QDate(2023, 1, 31), QDate(2023, 3, 31),
          QDate(2023, 8, 30), QDate(2023, 12, 31), QDate(2024, 1, 31), QDate(2024, 2, 29),
          QDate(2024, 3, 6), QDate(2025, 6, 15), QDate(2026, 10, 29)})
        for (int c : {0, 1, 7, 30, 365, 2, 14})
            for (const QDate& close : {start.addDays(-1), start, start.addDays(400), last})
                add(start, c, close);
    add(QDate(2024, 3, 6), 7, QDate());
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate) VALUES " +
        values.join(','));
    std::vector<Task> tasks;  // each read back through the record class
    for (const auto& [id, start, c, close] : rows) {
        tasks.push_back(withId<Task>(id));
        ASSERT_TRUE(tasks.back().GetById()) << tasks.back().ErrMsg().toStdString();
    }
    std::map<int, int> occurrences;
    trace::setEnabled(false);
    for (QDate day(2023, 1, 1); day <= last; day = day.addDays(1)) {
        std::set<int> bySql, byTest, byTable;
        tarveldatabase db;
        RecordsetPtr rs = db.GetReadRs("SELECT tas_id FROM tasks" + taskDateCondition(day));
        ASSERT_TRUE(rs && rs->State() == adStateOpen) << db.ErrMsg().toStdString();
        for (; !rs->Eof(); rs->MoveNext()) bySql.insert(rs->value(0).toInt());
        Clock::setFixed(jetdate::naive(day, QTime(12, 0)));
        for (const Task& t : tasks)
            if (occursToday(t)) byTest.insert(t.ID());
        for (const auto& [id, start, c, close] : rows)
            if (tableSays(start, c, close, day)) byTable.insert(id);
        ASSERT_EQ(bySql, byTable) << "condition on " << day.toString(Qt::ISODate).toStdString();
        ASSERT_EQ(byTest, byTable) << "today test on " << day.toString(Qt::ISODate).toStdString();
        for (int hit : byTable) ++occurrences[hit];
    }
    // Occurrence counts worked out by hand, so the table itself is right.
    auto days = [&](const QDate& start, int cycleValue, const QDate& close) {
        for (const auto& [id, s, c, end] : rows)
            if (s == start && c == cycleValue && end == close) return occurrences[id];
        return -1;
    };
    EXPECT_EQ(days(QDate(2024, 2, 29), 365, last), 2);     // 2024 and 2028 only
    EXPECT_EQ(days(QDate(2023, 1, 31), 30, last), 7 * 6);  // the 31-day months
    EXPECT_EQ(days(QDate(2023, 8, 30), 0, QDate(2023, 8, 29)),
              1);  // a one-off ignores its close date
    EXPECT_EQ(days(QDate(2023, 8, 30), 1, QDate(2023, 8, 29)), 0);  // closed before it starts
}

TEST(Recurrence, DatesWithATimeCompareAsStoredAndTypedTimesAreChecked) {
    // A close date later on the day still covers it; a start later on the day does not.
    EXPECT_TRUE(occursOn(at(2024, 3, 6), cycle::Daily, at(2024, 3, 8, 10), QDate(2024, 3, 8)));
    EXPECT_FALSE(occursOn(at(2024, 3, 6, 10), cycle::Daily, at(2024, 3, 8), QDate(2024, 3, 6)));
    EXPECT_FALSE(occursOn(at(2024, 3, 6, 10), cycle::Once, QDateTime(), QDate(2024, 3, 6)));
    // Typed times: the text afterwards (a failed one becomes the time now), the message.
    Clock::setFixed(at(2026, 3, 2, 8, 5, 59));
    const QString colon = "info Tarvel提示: 小时和分钟之间请用冒号(:)分隔开！";
    const QString format = "info Tarvel提示: 您输入的时间不符合格式！请检查";
    const std::tuple<const char*, const char*, QString> cases[] = {
        {"9:5", "9:5", ""},       {"0:0", "0:0", ""},       {"23:59", "23:59", ""},
        {"930", "930", colon},    {"24:00", "8:5", format}, {"10:60", "8:5", format},
        {"-1:30", "8:5", format}, {"10:", "8:5", format},   {"9.5:30", "8:5", format}};
    for (const auto& [typed, after, message] : cases) {
        RecordedMessages messages;
        QString text = typed;
        EXPECT_EQ(checkTypedTime(text, messages), message.isEmpty()) << typed;
        EXPECT_EQ(text + "|" + messages.shown.join("|"), after + ("|" + message)) << typed;
    }
    EXPECT_TRUE(isNumber(" 1,000.25 ") && !isNumber("12元") && !isNumber("nan"));
    EXPECT_EQ(pickListItems("sch", " time_format ")->value(47), "23:30");  // the 48 half hours
}

TEST(DueRule, DecidesFromRemindAgainAndTheLastDismissal) {
    const QVariant t(at(2026, 3, 2)), y(at(2026, 3, 1)), n;  // today, yesterday, none
    // remind, again, last dismissal, due on 2026-03-02
    const std::tuple<QVariant, QVariant, QVariant, bool> cases[] = {
        {0, 1, y, false}, {n, 1, y, false}, {-1, 0, n, false}, {1, 0, n, true},
        {1, n, t, true},  {1, 1, y, true},  {1, 1, t, false},  {1, 1, n, false}};
    for (const auto& [remind, again, last, due] : cases)
        EXPECT_EQ(reminderDue(remind, again, last, QDate(2026, 3, 2)), due);
}

// Today: task 1 daily and reminded every day, 2 weekly on Mondays with a
// one-time reminder, 3 once at 23:00, 4 tomorrow at 10:00, 5 done without a time;
// all but 5 reminded, last dismissed yesterday.
TEST_F(Schedule, TheTodayListFiresDueRemindersWhichADismissalOrASnoozeHandles) {
    run("INSERT INTO tasks (tas_id, tas_date, tas_time, tas_cycle, tas_again, tas_subject, "
        "tas_closedate, tas_remind, tas_last_remind_date) SELECT *, '任务', #2026-12-31#, 1, "
        "#2026-3-1# FROM (VALUES (1, #2026-3-1#, #9:00#, 1, 1), (2, #2026-2-23#, #9:00#, 7, 0), "
        "(3, #2026-3-2#, #23:00#, 0, 0), (4, #2026-3-3#, #10:00#, 0, 0))");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_closed) VALUES (5, '已完成', "
        "#2026-3-2#, 1)");
    run("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES (1, '张三', #1990-3-2#), "
        "(2, '李四', #1900-1-1#), (3, '王五', #1985-3-3#), (4, '赵六', NULL)");
    TodayList list;
    RecordedMessages messages;
    auto firing = [&](const QDateTime& now) {
        QList<int> ids;
        for (const TodayTask& t : list.fire(now)) ids << t.id;
        return ids;
    };
    ASSERT_TRUE(list.load()) << list.ErrMsg().toStdString();
    // By time, no time first: id, subject, time, done, due, firing time.
    QStringList entries;
    for (const TodayTask& t : list.tasks())
        entries << QStringList({QString::number(t.id), t.subject, t.timeText,
                                QString::number(t.done), QString::number(t.due),
                                t.fireAt.toString("H:mm")})
                       .join(' ');
    EXPECT_EQ(entries, QStringList({"5 已完成  1 0 0:00", "1 任务 09:00 0 1 9:00",
                                    "2 任务 09:00 0 1 9:00", "3 任务 23:00 0 1 23:00"}));
    ASSERT_EQ(list.birthdays().size(), 1);
    EXPECT_EQ(list.birthdays()[0].name + list.birthdays()[0].birthday.toString(Qt::ISODate),
              "张三1990-03-02");

    // Due entries fire once their time has come, and not again while their window is open.
    EXPECT_TRUE(firing(at(2026, 3, 2, 8, 59, 59)).isEmpty());
    Clock::setFixed(at(2026, 3, 2, 9, 0, 5));
    ASSERT_EQ(firing(Clock::now()), QList<int>({1, 2}));
    EXPECT_TRUE(firing(Clock::now()).isEmpty());
    Reminder daily(1, list, messages), weekly(2, list, messages), late(3, list, messages);
    ASSERT_TRUE(daily.load() && weekly.load() && late.load());
    EXPECT_EQ(daily.fieldText("txt_time"), "09:00");
    // What a dismissal stores and the snooze's refusal are the reminder window's test.
    ASSERT_TRUE(daily.dismiss(Clock::now()) && weekly.dismiss(Clock::now()));

    // A snooze at 23:50:40 may take nine minutes but not ten.
    Clock::setFixed(at(2026, 3, 2, 23, 50, 40));
    ASSERT_TRUE(list.load());  // a refresh the same day keeps what the windows did
    ASSERT_EQ(firing(Clock::now()), QList<int>({3}));
    EXPECT_TRUE(late.snooze("9", Clock::now()));
    EXPECT_TRUE(firing(at(2026, 3, 2, 23, 59, 39)).isEmpty());
    ASSERT_TRUE(list.load());
    EXPECT_EQ(firing(at(2026, 3, 2, 23, 59, 40)), QList<int>({3}));

    // The next day the timer's first tick reads the list afresh: the daily one
    // fires again; a week on, the weekly one, reminded once, stays quiet.
    EXPECT_EQ(firing(at(2026, 3, 3, 9, 0)), QList<int>({1}));
    EXPECT_EQ(firing(at(2026, 3, 9, 9, 0)), QList<int>({1}));
}

class Statistics : public Schedule {
protected:
    QString ids(const QString& select) {
        return scalar("SELECT group_concat(k, ' ') FROM (" + select + ")").toString();
    }
    ScheduleStatistics::Choice choose(int index, const QDate& from, const QDate& to) {
        page.setDay1(from);
        page.setDay2(to);
        ScheduleStatistics::Choice choice;
        EXPECT_TRUE(page.select(index, &choice)) << page.ErrMsg().toStdString();
        return choice;
    }

    RecordedMessages messages;
    ScheduleStatistics page{messages};
};

TEST_F(Statistics, EachSelectionOpensItsListWithItsFilterAfterThePeriodChecks) {
    // Row 1 of each list was last contacted long ago, was added before the period, ends in
    // it and has a birthday in it; row 2 was added in the period, contacted after it, and
    // is linked to a task of the period.
    const char* const rows[] = {
        "contacts (con_id, con_recent_contact_date, con_create_date, con_birthday) VALUES (1, "
        "#2026-1-1#, #2025-1-1#, #1980-2-10#), (2, #2026-3-5#, #2026-2-10#, NULL)",
        "accounts (acc_id, acc_recent_contact_date, acc_create_date) VALUES (1, #2026-1-1#, "
        "#2025-1-1#), (2, #2026-3-5#, #2026-2-10#)",
        "opportunities (opp_id, opp_recent_contact_date, opp_create_date, opp_die_date) VALUES "
        "(1, #2026-1-1#, #2025-1-1#, #2026-2-20#), (2, #2026-3-5#, #2026-2-10#, #2026-4-1#)",
        "documents (doc_id, doc_create_date) VALUES (1, #2025-1-1#), (2, #2026-2-10#)",
        "tasks (tas_id, tas_date, tas_cycle) VALUES (1, #2026-2-20#, 0)",
        "contacts_tasks (con_id, tas_id) VALUES (2, 1)",
        "accounts_tasks (acc_id, tas_id) VALUES (2, 1)",
        "opportunities_tasks (opp_id, tas_id) VALUES (2, 1)",
        "tasks_documents (doc_id, tas_id) VALUES (2, 1)"};
    for (const char* r : rows) run(QStringLiteral("INSERT INTO ") + r);
    const std::map<int, QString> lists = {{22, "con_id AS k FROM contacts"},
                                          {12, "acc_id AS k FROM accounts"},
                                          {3, "opp_id AS k FROM opportunities"},
                                          {40, "doc_id AS k FROM documents"}};
    const char* const expected[] = {"22:1", "12:1", "3:1", "22:2", "12:2", "3:2", "40:2",
                                    "22:2", "12:2", "3:2", "40:2", "22:1", "3:1"};
    for (int i = 0; i < 13; ++i) {
        const ScheduleStatistics::Choice c = choose(i, QDate(2026, 2, 1), QDate(2026, 3, 2));
        const QString list = lists.count(c.page) ? lists.at(c.page) : "no list";
        EXPECT_EQ(QString::number(c.page) + ":" + ids("SELECT " + list + " " + c.filter),
                  expected[i])
            << i;
    }
    EXPECT_EQ(ScheduleStatistics::captions().join(','),
              "没有联系的联系人,没有联系的客户单位,没有联系的项目机会,增加的联系人,增加的客户单位,"
              "增加的项目机会,增加的文档附件,有联系记录的联系人,有联系记录的客户单位,"
              "有联系记录的项目机会,有联系记录的文档附件,生日的联系人,结束的项目机会");
    // The days without contact count back from today, whatever the period.
    page.setOverDays("70");
    EXPECT_EQ(ids("SELECT opp_id AS k FROM opportunities " + page.filter(2)), "");
    page.setOverDays("40");
    EXPECT_EQ(ids("SELECT opp_id AS k FROM opportunities " + page.filter(2)), "1");

    // A period backwards is refused, but for the days without contact.
    page.setDay1(QDate(2026, 3, 2));
    page.setDay2(QDate(2026, 3, 1));
    EXPECT_TRUE(traced([&] {
                    EXPECT_FALSE(page.select(7, nullptr) || page.select(3, nullptr));
                }).isEmpty());
    EXPECT_TRUE(page.select(0, nullptr));  // days without contact need no period
    const QString backwards = "info Tarvel提示: 第二个日期小于第一个日期,请重新设置日期间隔";
    EXPECT_EQ(messages.shown, QStringList({backwards, backwards}));
    // (The warning of a long period is the statistics page's test.)
    // The days without contact: up to four digits, never none.
    messages.shown.clear();
    for (const char* days : {"", " ", "99999"}) {
        page.setOverDays(days);
        EXPECT_FALSE(page.select(0, nullptr)) << days;
    }
    EXPECT_EQ(messages.shown,
              QStringList(3, "info Tarvel提示: 请输入没有联系的天数（最多4位数字）！"));
    page.setOverDays("9999");
    EXPECT_TRUE(page.select(0, nullptr));
}

TEST_F(Statistics, TasksAndBirthdaysOfThePeriodAreMarkedDayByDayAndAFailingDayUndoesAll) {
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate, tas_check) VALUES (1, "
        "#2026-2-25#, 0, NULL, 0), (2, #2026-3-2#, 0, NULL, 0), (3, #2026-1-7#, 7, #2026-12-31#, "
        "0), (4, #2026-1-5#, 7, #2026-2-22#, 0), (5, #2025-1-2#, 30, #2026-12-31#, 0), (6, "
        "#2024-2-28#, 365, #2030-1-1#, 0), (7, #2020-1-1#, 0, NULL, -1), (8, #2026-2-27#, 1, "
        "#2026-2-28#, 0), (9, #2026-2-10#, 1, #2026-2-20#, 0)");
    // The period 2026-02-23 (Monday) .. 2026-03-01 (Sunday): the one-off on the 25th, the
    // Wednesday task, the yearly 28 February and the daily one inside it; the old mark is cleared.
    choose(7, QDate(2026, 2, 23), QDate(2026, 3, 1));
    EXPECT_EQ(ids("SELECT tas_id AS k FROM tasks WHERE tas_check=-1 ORDER BY 1"), "1 3 6 8");
    // Another kind of selection leaves the marks for the list page.
    choose(11, QDate(2026, 2, 23), QDate(2026, 3, 1));
    EXPECT_EQ(ids("SELECT tas_id AS k FROM tasks WHERE tas_check=-1 ORDER BY 1"), "1 3 6 8");
    // The next task selection marks its own period afresh, and a day that fails
    // undoes the clearing and the days before it: all of it is one transaction.
    // The user is told why.
    run("CREATE TRIGGER refuse AFTER UPDATE OF tas_check ON tasks WHEN NEW.tas_id = 5 AND "
        "NEW.tas_check = -1 BEGIN SELECT RAISE(ABORT, 'refused by trigger'); END");
    page.setDay1(QDate(2026, 2, 1));
    EXPECT_FALSE(page.select(8, nullptr));
    EXPECT_TRUE(page.ErrMsg().startsWith("lbl_Selection出错，原因可能是") &&
                page.ErrMsg().contains("refused by trigger"))
        << page.ErrMsg().toStdString();
    EXPECT_TRUE(messages.shown.last().startsWith("info Tarvel提示: 统计没有完成，原因可能是："));
    EXPECT_EQ(ids("SELECT tas_id AS k FROM tasks WHERE tas_check=-1 ORDER BY 1"), "1 3 6 8");
    run("DROP TRIGGER refuse");
    choose(10, QDate(2026, 3, 2), QDate(2026, 3, 2));  // the file takes writes again
    EXPECT_EQ(ids("SELECT tas_id AS k FROM tasks WHERE tas_check=-1 ORDER BY 1"), "2 5");

    // Birthdays across the year end are marked, never the unknown one.
    run("INSERT INTO contacts (con_id, con_birthday, con_check) VALUES (1, #1980-12-31#, 0), (2, "
        "#1990-1-1#, 0), (3, #1900-1-1#, 0), (4, #1975-1-3#, 0), (5, NULL, 0), (6, #1970-6-1#, "
        "-1)");
    choose(11, QDate(2025, 12, 30), QDate(2026, 1, 2));
    EXPECT_EQ(ids("SELECT con_id AS k FROM contacts WHERE con_check= true ORDER BY 1"), "1 2");
}

// Every property of a task, as text.
QString fields(const Task& t) {
    auto d = [](const QDateTime& v) { return v.isValid() ? jetdate::canonical(v) : "null"; };
    QStringList out;
    out << QString::number(t.ID()) << t.Subject() << d(t.TaskDate()) << d(t.TaskTime())
        << t.TaskType() << t.Important() << t.Tag() << t.Outlay().toString()
        << QString::number(t.iPrivate()) << QString::number(t.Remind())
        << QString::number(t.Closed()) << QString::number(t.Again()) << QString::number(t.Cycle())
        << d(t.CloseDate()) << d(t.CreateDate()) << d(t.RCDate()) << t.Description()
        << d(t.Task_last_remind_date());
    return out.join(QLatin1Char('|'));
}

// Types each value into its control: type(form, "txt_sch_subject", "回访", ...).
void type(MapForm&) {}
template <typename Value, typename... Rest>
void type(MapForm& form, const char* control, const Value& value, const Rest&... rest) {
    form.setControlValue(QLatin1String(control), QVariant(value));
    type(form, rest...);
}

class Tasks : public records_test::RecordFixture {
protected:
    Task loaded(int id) {
        Task t = withId<Task>(id);
        EXPECT_TRUE(t.GetById()) << t.ErrMsg().toStdString();
        return t;
    }
    // Task 9 with every column set, as the program reads it.
    Task full() {
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_type, tas_important, "
            "tas_tag, tas_outlay, tas_private, tas_remind, tas_closed, tas_again, tas_cycle, "
            "tas_closedate, tas_create_date, tas_recent_contact_date, tas_description, "
            "tas_last_remind_date) VALUES (9, 'it''s', #2026-3-5#, #9:30#, '拜访', '重要', '客户', "
            "123.45, 1, 1, 1, 1, 7, #2026-6-30#, #2020-1-1#, #2020-1-2#, '第一行', #2026-3-1#)");
        return loaded(9);
    }
    // The task's links of the relation matrix.
    int links() {
        return count(
            "SELECT (SELECT COUNT(*) FROM contacts_tasks) + (SELECT COUNT(*) FROM accounts_tasks) "
            "+ (SELECT COUNT(*) FROM opportunities_tasks) + (SELECT COUNT(*) FROM "
            "tasks_documents)");
    }
};

TEST_F(Tasks, EveryColumnIsReadAddedAndUpdatedButTheCreationAndReminderDates) {
    Task t = full();
    const QString stored =
        "9|it's|2026-03-05 00:00:00|1899-12-30 09:30:00|拜访|重要|客户|123.45|1|1|1|1|7|2026-06-30 "
        "00:00:00|2020-01-01 00:00:00|2020-01-02 00:00:00|第一行|2026-03-01 00:00:00";
    EXPECT_EQ(fields(t), stored);
    // Add: the date and the time apart, its own creation and recent dates, no reminder date.
    t.setTaskDate(at(2026, 3, 5, 17, 30));
    t.setTaskTime(at(2026, 3, 5, 9, 30));
    ASSERT_TRUE(t.Add()) << t.ErrMsg().toStdString();
    EXPECT_EQ(fields(loaded(10)),
              "10|it's|2026-03-05 00:00:00|1899-12-30 "
              "09:30:00|拜访|重要|客户|123.45|1|1|1|1|7|2026-06-30 00:00:00|2026-03-02 "
              "00:00:00|2026-03-02 09:15:30|第一行|null");
    t = loaded(9);
    t.setSubject(QStringLiteral("改期"));
    t.setCreateDate(at(2000, 1, 1));
    t.setTask_last_remind_date(at(2000, 1, 1));
    t.setClosed(0);
    ASSERT_TRUE(t.Update()) << t.ErrMsg().toStdString();
    // Only the subject and the done flag change.
    EXPECT_EQ(fields(loaded(9)),
              QString(stored).replace("it's", "改期").replace("|1|1|1|1|7|", "|1|1|0|1|7|"));
    // The outlay of a day is that of the rows stored on it, not of those occurring.
    EXPECT_EQ(t.GetOutlayAtDay(QDate(2026, 3, 5)), Currency::fromUnits(2469000));
    EXPECT_EQ(t.GetOutlayAtDay(QDate(2026, 3, 12)), Currency());
}

TEST_F(Tasks, AddRelativeLinksOnceAndStampsBothDeleteRelativeStampsNeither) {
    run("INSERT INTO tasks (tas_id) VALUES (6)");
    run("INSERT INTO contacts (con_id) VALUES (3)");
    run("INSERT INTO accounts (acc_id) VALUES (4)");
    run("INSERT INTO opportunities (opp_id) VALUES (5)");
    run("INSERT INTO documents (doc_id) VALUES (9)");
    // The other record, its stamped column, and the link table.
    const std::tuple<qint16, int, const char*, const char*> rows[] = {
        {kind::Opportunity, 5, "opportunities opp_recent_contact_date opp_id",
         "opportunities_tasks"},
        {kind::Account, 4, "accounts acc_recent_contact_date acc_id", "accounts_tasks"},
        {kind::Contact, 3, "contacts con_recent_contact_date con_id", "contacts_tasks"},
        {kind::Document, 9, "documents doc_recentedit_date doc_id", "tasks_documents"}};
    auto t = withId<Task>(6);
    for (const auto& [k, other, stamp, table] : rows) {
        const QStringList s = QString(stamp).split(' ');
        const QString key = s[2] + "=" + QString::number(other);
        const QString stamps =
            "SELECT (SELECT COUNT(*) FROM tasks WHERE tas_recent_contact_date=now) "
            "+ (SELECT COUNT(*) FROM " +
            s[0] + " WHERE " + s[1] + "=now AND " + key + ")";
        run("UPDATE tasks SET tas_recent_contact_date=NULL");
        ASSERT_TRUE(t.AddRelative(k, other) && t.AddRelative(k, other)) << table;
        EXPECT_EQ(count("SELECT COUNT(*) FROM " + QString(table) + " WHERE tas_id=6 AND " + key), 1)
            << table;
        EXPECT_EQ(count(stamps), 2) << table;
        // Removing stamps neither record.
        run(QStringLiteral("UPDATE %1 SET %2=NULL").arg(s[0], s[1]));
        run("UPDATE tasks SET tas_recent_contact_date=NULL");
        ASSERT_TRUE(t.DeleteRelative(k, other));
        EXPECT_EQ(links() + count(stamps), 0) << table;
    }
    // No task-to-task link: only the stamp. No other key, or no key of its own: nothing.
    EXPECT_EQ(traced([&] {
                  t.AddRelative(kind::Task, 7), t.DeleteRelative(kind::Task, 7);
                  t.AddRelative(kind::Contact, 0), t.DeleteRelative(kind::Contact, 0);
                  Task().AddRelative(kind::Contact, 3);
              }),
              QStringList{"UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=6"});
}

TEST_F(Tasks, DeleteLeavesTheLinksAndDeleteRelationTakesThem) {
    run("INSERT INTO tasks (tas_id) VALUES (6), (77)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6), (3, 77)");
    run("INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (4, 6)");
    run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (5, 6)");
    run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (6, 9)");
    auto t = withId<Task>(6);
    ASSERT_TRUE(t.Delete());
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks") * 10 + links(), 15);
    ASSERT_TRUE(t.DeleteRelation());
    EXPECT_EQ(links(), 1);  // another task's link stays
}

// One task through a deal's panel: named, read from the form, stored, linked
// and listed, edited through the grid, shown on the detail form, followed up.
TEST_F(Tasks, TheFormOperationsOnAPanelAndOnTheDetailForm) {
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '数据中心项目')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_closed, tas_description) VALUES (3, "
        "'旧的', #2026-1-1#, 1, '带章')");
    run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (20, 3)");
    MapForm form(QLatin1String(panel::formName(kind::Opportunity)));
    form.setProperty(QLatin1String(panel::RecordId), 20);
    DataControl grid;
    Task t;
    t.setOForm(&form);
    t.setOAdodc(&grid);
    auto shown = [](const MapForm& f, std::initializer_list<const char*> names) {
        QStringList out;
        for (const char* name : names) out << f.controlValue(QLatin1String(name)).toString();
        return out.join(QLatin1Char('|'));
    };
    ASSERT_TRUE(t.InitTask(0)) << t.ErrMsg().toStdString();
    EXPECT_EQ(fields(t).section('|', 0, 3),
              "0|项目机会:数据中心项目|2026-03-02 00:00:00|1899-12-30 09:15:30");
    ASSERT_TRUE(t.SetQuery()) << t.ErrMsg().toStdString();
    // Texts cut to 255 and 50 characters, a non-number outlay taken as zero.
    type(form, "txt_sch_subject", QString(300, u'日'), "DT_sch_date", QDate(2026, 3, 9),
         "cbo_sch_time", "14:30", "txt_sch_outlay", "八十元", "cbo_sch_tag", "工作",
         "cbo_sch_importance", QString(60, u'重'), "Cbo_sch_type", QString(60, u'类'),
         "chk_sch_remind", -1, "chk_sch_completed", 0, "chk_sch_private", 0);
    ASSERT_TRUE(t.AddTask()) << t.ErrMsg().toStdString();
    EXPECT_EQ(
        fields(t),
        "0|" + QString(255, u'日') + "|2026-03-09 00:00:00|1899-12-30 14:30:00|" +
            QString(50, u'类') + "|" + QString(50, u'重') +
            "|工作|0|0|1|0|0|0|2026-03-02 00:00:00|2026-03-02 00:00:00|2026-03-02 09:15:30||null");
    ASSERT_TRUE(t.AddToList()) << t.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_tasks WHERE opp_id=20 AND tas_id=4"), 1);
    EXPECT_EQ(form.property("g_TasID").toInt(), 4);
    EXPECT_EQ(grid.Recordset->value(QStringLiteral("tas_id")).toInt(), 4);
    // The digest, newest first, as the grid lists them.
    EXPECT_EQ(shown(form, {"rtxt_sch_digest"}), "2026-3-9,14:30:00,未完成,工作\r\n" + t.Subject() +
                                                    "\r\n\r\n===================\r\n2026-1-1,,完成,"
                                                    "\r\n旧的\r\n带章\r\n===================\r\n");
    // An edit goes through the grid's row and leaves the creation date alone; a bad time is
    // refused.
    type(form, "txt_sch_subject", "回访", "txt_sch_outlay", " 1,234.5 ", "chk_sch_completed", -1);
    ASSERT_TRUE(t.ChangeTask());
    ASSERT_TRUE(t.UpdateIndex()) << t.ErrMsg().toStdString();
    EXPECT_EQ(grid.Recordset->value(QStringLiteral("tas_subject")).toString(), "回访");
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks WHERE tas_id=4 AND tas_subject='回访' AND "
                    "tas_closed=1 AND tas_outlay=1234.5 AND tas_create_date=#2026-3-2#"),
              1);
    // A task the grid is not on is stored directly.
    Task old = loaded(3);
    old.setOAdodc(&grid);
    old.setSubject(QStringLiteral("旧的（改）"));
    EXPECT_TRUE(old.UpdateIndex() && loaded(3).Subject() == "旧的（改）");
    type(form, "cbo_sch_time", "下午");
    EXPECT_FALSE(t.ChangeTask());
    EXPECT_TRUE(t.ErrMsg().startsWith("ChangeTask出错，原因可能是")) << t.ErrMsg().toStdString();

    // The detail form shows a task and resets the next-schedule fields.
    MapForm detail(QStringLiteral("form_sch_detail"));
    t.setOForm(&detail);
    Clock::setFixed(at(2026, 3, 2, 7, 8, 9));
    ASSERT_TRUE(t.ShowTask(4)) << t.ErrMsg().toStdString();
    EXPECT_EQ(shown(detail, {"txt_sch_subject", "DT_sch_date", "cbo_sch_time", "txt_sch_outlay",
                             "chk_sch_remind", "chk_sch_completed", "chk_sch_private",
                             "chk_sch_nextdate", "DT_sch_nextdate", "cbo_sch_nexttime"}),
              "回访|2026-03-09|14:30|1234.5|-1|-1|0|0|2026-03-02|7:8");
    // A follow-up: a new, open task from the next-schedule fields and the two flags.
    t = full();
    t.setOForm(&detail);
    type(detail, "chk_sch_private", -1, "DT_sch_nextdate", QDate(2026, 3, 16), "cbo_sch_nexttime",
         "10:00");
    ASSERT_TRUE(t.AddNextTask()) << t.ErrMsg().toStdString();
    EXPECT_EQ(fields(t),
              "0|回访|2026-03-16 00:00:00|1899-12-30 10:00:00||||0|1|1|0|1|7|2026-06-30 "
              "00:00:00|2026-03-02 00:00:00|2026-03-02 07:08:09|本记录的建立日期为:2026-3-2|null");
    // Stored from the detail form, it links to the records the form shows, once.
    detail.setProperty(QStringLiteral("iShowCon"), 1);
    detail.setProperty(QStringLiteral("g_ConID"), 3);
    ASSERT_TRUE(t.Add() && t.AddToList()) << t.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_tasks WHERE con_id=3 AND tas_id=10"), 1);
    EXPECT_EQ(links(), 3);
    EXPECT_FALSE(Task().AddToList());  // without a form nothing is stored
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 4);
}

}  // namespace
