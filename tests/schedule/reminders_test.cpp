// Reminders: the due rule, the today list's firing times, dismissing and
// snoozing through the reminder window's model.

#include "schedule/reminders.h"

#include "tests/schedule/schedulefixture.h"

using namespace tarvel;
using schedule_test::at;

namespace {

struct DueCase {
    const char* name;
    QVariant remind, again, last;
    bool due;
};

// Today is 2026-03-02.
const QVariant kToday = QVariant(at(2026, 3, 2));
const QVariant kYesterday = QVariant(at(2026, 3, 1));

class DueRule : public ::testing::TestWithParam<DueCase> {};

TEST_P(DueRule, DecidesFromRemindAgainAndTheLastDismissal) {
    const DueCase& c = GetParam();
    EXPECT_EQ(reminderDue(c.remind, c.again, c.last, QDate(2026, 3, 2)), c.due);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DueRule,
    ::testing::Values(DueCase{"NoReminder", 0, 1, kYesterday, false},
                      DueCase{"NullReminder", QVariant(), 1, kYesterday, false},
                      DueCase{"OtherReminderValue", -1, 0, QVariant(), false},
                      DueCase{"OneTime", 1, 0, QVariant(), true},
                      DueCase{"OneTimeNullAgain", 1, QVariant(), kToday, true},
                      DueCase{"RepeatingDismissedYesterday", 1, 1, kYesterday, true},
                      DueCase{"RepeatingDismissedToday", 1, 1, kToday, false},
                      DueCase{"RepeatingNeverDismissed", 1, 1, QVariant(), false}),
    [](const auto& info) { return std::string(info.param.name); });

class Reminders : public schedule_test::RecordFixture {
protected:
    // A task with a reminder at `time`; its last dismissal is yesterday so a
    // repeating one is due.
    void addTask(int id, const char* date, const char* time, int cycle, int again,
                 const char* close = "2026-12-31") {
        run(QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, "
                           "tas_closedate, tas_remind, tas_again, tas_last_remind_date) VALUES "
                           "(%1, '任务%1', #%2#, #%3#, %4, #%5#, 1, %6, #2026-3-1#)")
                .arg(id)
                .arg(QLatin1String(date), QLatin1String(time))
                .arg(cycle)
                .arg(QLatin1String(close))
                .arg(again));
    }
    QList<int> firing(const QDateTime& now) {
        QList<int> ids;
        for (const TodayTask& t : list.fire(now)) ids << t.id;
        return ids;
    }

    TodayList list;
    schedule_test::RecordedMessages messages;
};

TEST_F(Reminders, TheTodayListHoldsTodaysTasksAndBirthdays) {
    addTask(1, "2026-3-2", "14:00:00", 0, 0);
    addTask(2, "2026-2-2", "8:30:00", 30, 1);  // monthly, on the 2nd
    addTask(3, "2026-3-3", "9:00:00", 0, 0);   // tomorrow
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_closed) VALUES (4, '已完成', "
        "#2026-3-2#, 1)");
    run("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES (1, '张三', #1990-3-2#)");
    run("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES (2, '李四', #1900-1-1#)");
    run("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES (3, '王五', #1985-3-3#)");
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (4, '赵六')");
    const QStringList statements =
        traced([&] { ASSERT_TRUE(list.load()) << list.ErrMsg().toStdString(); });
    ASSERT_FALSE(statements.isEmpty());
    EXPECT_EQ(statements[0], todayTasksQuery(QDate(2026, 3, 2)));
    EXPECT_TRUE(statements[0].startsWith(
        "SELECT  tas_id, tas_date, tas_time, tas_subject, tas_closed, tas_remind,tas_again,"
        "tas_last_remind_date FROM tasks  WHERE (( tas_cycle = 0  AND tas_date=#2026-03-02#)"));

    ASSERT_EQ(list.tasks().size(), 3);
    const TodayTask& first = list.tasks()[0];  // sorted by time; no time sorts first
    EXPECT_EQ(first.id, 4);
    EXPECT_TRUE(first.done);
    EXPECT_FALSE(first.due);
    EXPECT_EQ(list.tasks()[1].id, 2);
    EXPECT_EQ(list.tasks()[1].timeText, "08:30");
    EXPECT_TRUE(list.tasks()[1].due);
    EXPECT_EQ(list.tasks()[1].fireAt, at(2026, 3, 2, 8, 30));
    EXPECT_EQ(list.tasks()[2].id, 1);
    EXPECT_EQ(list.tasks()[2].subject, "任务1");
    EXPECT_EQ(list.tasks()[2].fireAt, at(2026, 3, 2, 14, 0));

    ASSERT_EQ(list.birthdays().size(), 1);
    EXPECT_EQ(list.birthdays()[0].contactId, 1);
    EXPECT_EQ(list.birthdays()[0].name, "张三");
    EXPECT_EQ(list.birthdays()[0].birthday, QDate(1990, 3, 2));

    // 1 January never lists the unknown birthday.
    ASSERT_TRUE(list.load(QDate(2027, 1, 1)));
    EXPECT_TRUE(list.birthdays().isEmpty());
}

TEST_F(Reminders, AnEntryFiresOnceWhenItsTimeHasCome) {
    addTask(1, "2026-3-2", "14:00:00", 0, 0);
    ASSERT_TRUE(list.load());
    EXPECT_TRUE(firing(at(2026, 3, 2, 13, 59, 59)).isEmpty());
    EXPECT_EQ(firing(at(2026, 3, 2, 14, 0)), QList<int>({1}));
    EXPECT_EQ(list.task(1)->state, TodayTask::State::Showing);
    EXPECT_TRUE(firing(at(2026, 3, 2, 14, 0, 1)).isEmpty());  // its window is open
}

TEST_F(Reminders, ASnoozeAt2350TakesNineMinutesButNotTen) {
    addTask(1, "2026-3-2", "23:00:00", 0, 0);
    Clock::setFixed(at(2026, 3, 2, 23, 50));
    ASSERT_TRUE(list.load());
    ASSERT_EQ(firing(Clock::now()), QList<int>({1}));
    Reminder window(1, list, messages);
    ASSERT_TRUE(window.load());

    EXPECT_FALSE(window.snooze(QStringLiteral("10"), Clock::now()));
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].title, "Tarvel提示");
    EXPECT_EQ(messages.shown[0].text, "您延迟的时间不能超过今天晚上23:59 ! 请重新输入延迟分钟数。");
    EXPECT_EQ(list.task(1)->state, TodayTask::State::Showing);  // the window stays open

    EXPECT_TRUE(window.snooze(QStringLiteral("9"), Clock::now()));
    EXPECT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(list.task(1)->fireAt, at(2026, 3, 2, 23, 59));
    EXPECT_TRUE(firing(at(2026, 3, 2, 23, 58, 59)).isEmpty());
    EXPECT_EQ(firing(at(2026, 3, 2, 23, 59)), QList<int>({1}));
    // Nothing in the data file changed.
    EXPECT_EQ(count("SELECT tas_remind FROM tasks WHERE tas_id=1"), 1);

    // A refresh of the list on the same day keeps the snoozed time.
    list.snoozed(1, at(2026, 3, 2, 23, 58));
    ASSERT_TRUE(list.load());
    EXPECT_EQ(list.task(1)->fireAt, at(2026, 3, 2, 23, 58));
    EXPECT_TRUE(Reminder::acceptsDelayKey(QLatin1Char('7')));
    for (QChar key : {QChar(u'a'), QChar(u'\b'), QChar(u'-'), QChar(0x4e00)})
        EXPECT_FALSE(Reminder::acceptsDelayKey(key));
}

TEST_F(Reminders, DismissingARepeatingReminderHidesItForTheDayOnly) {
    addTask(1, "2026-3-1", "9:00:00", 1, 1);  // daily, reminded every day
    Clock::setFixed(at(2026, 3, 2, 9, 0, 5));
    ASSERT_TRUE(list.load());
    ASSERT_EQ(firing(Clock::now()), QList<int>({1}));
    Reminder window(1, list, messages);
    ASSERT_TRUE(window.load());
    EXPECT_EQ(window.fieldText(QStringLiteral("txt_time")), "09:00");
    EXPECT_EQ(window.fieldText(QStringLiteral("txt_subject")), "任务1");
    EXPECT_EQ(traced([&] { ASSERT_TRUE(window.dismiss(Clock::now())); }),
              QStringList({"UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 1"}));
    EXPECT_EQ(scalar("SELECT tas_last_remind_date FROM tasks").toDateTime(), at(2026, 3, 2));
    EXPECT_EQ(list.task(1)->state, TodayTask::State::Handled);
    EXPECT_EQ(list.task(1)->handledAt, Clock::now());
    EXPECT_TRUE(firing(at(2026, 3, 2, 18, 0)).isEmpty());
    ASSERT_TRUE(list.load());  // a refresh the same day
    EXPECT_FALSE(list.task(1)->due);
    EXPECT_TRUE(firing(at(2026, 3, 2, 23, 59)).isEmpty());

    // The next day the timer's first tick reads the list afresh.
    Clock::setFixed(at(2026, 3, 3, 8, 0));
    EXPECT_TRUE(firing(Clock::now()).isEmpty());
    EXPECT_EQ(list.day(), QDate(2026, 3, 3));
    EXPECT_EQ(firing(at(2026, 3, 3, 9, 0)), QList<int>({1}));
}

TEST_F(Reminders, DismissingAOneTimeReminderEndsItForLaterOccurrences) {
    addTask(1, "2026-2-23", "9:00:00", 7, 0);  // weekly on Mondays, one-time reminder
    Clock::setFixed(at(2026, 3, 2, 9, 30));
    ASSERT_TRUE(list.load());
    ASSERT_EQ(firing(Clock::now()), QList<int>({1}));
    Reminder window(1, list, messages);
    ASSERT_TRUE(window.load());
    EXPECT_EQ(traced([&] { ASSERT_TRUE(window.dismiss(Clock::now())); }),
              QStringList({"UPDATE tasks SET tas_remind= 0 WHERE tas_id = 1"}));
    EXPECT_EQ(count("SELECT tas_remind FROM tasks WHERE tas_id=1"), 0);

    Clock::setFixed(at(2026, 3, 9, 9, 30));  // the next Monday
    EXPECT_TRUE(firing(Clock::now()).isEmpty());
    ASSERT_NE(list.task(1), nullptr);  // still on the list, no longer due
    EXPECT_FALSE(list.task(1)->due);
    EXPECT_EQ(window.openTaskFilter(), "WHERE tas_id= 1");
}

}  // namespace
