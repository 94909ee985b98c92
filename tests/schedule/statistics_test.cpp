// The schedule statistics page: the thirteen filters, the period checks, and
// the day-by-day marking of tasks and birthdays.

#include "schedule/statistics.h"

#include <vector>

#include "schedule/recurrence.h"
#include "tests/schedule/schedulefixture.h"

using namespace tarvel;
using schedule_test::at;

namespace {

class Statistics : public schedule_test::RecordFixture {
protected:
    Statistics() : page(messages) { page.load(); }
    QList<int> ids(const QString& sql) {
        QList<int> out;
        tarveldatabase db;
        RecordsetPtr rs = db.GetReadRs(sql);
        EXPECT_TRUE(rs && rs->State() == adStateOpen) << sql.toStdString();
        for (; rs && !rs->Eof(); rs->MoveNext()) out << rs->value(0).toInt();
        return out;
    }
    ScheduleStatistics::Choice choose(int index) {
        ScheduleStatistics::Choice choice;
        EXPECT_TRUE(page.select(index, &choice)) << page.ErrMsg().toStdString();
        return choice;
    }

    schedule_test::RecordedMessages messages;
    ScheduleStatistics page;
};

struct FilterCase {
    int index;
    qint16 page;
    const char* caption;
    const char* filter;
};

const std::vector<FilterCase> kFilters = {
    {0, 22, "没有联系的联系人", "WHERE con_recent_contact_date <= #2026-02-15#"},
    {1, 12, "没有联系的客户单位", "WHERE acc_recent_contact_date <= #2026-02-15#"},
    {2, 3, "没有联系的项目机会", "WHERE opp_recent_contact_date <= #2026-02-15#"},
    {3, 22, "增加的联系人",
     "WHERE con_create_date <= #2026-03-02#  AND con_create_date>=#2026-02-01#"},
    {4, 12, "增加的客户单位",
     "WHERE acc_create_date <= #2026-03-02#  AND acc_create_date>=#2026-02-01#"},
    {5, 3, "增加的项目机会",
     "WHERE opp_create_date <= #2026-03-02#  AND opp_create_date>=#2026-02-01#"},
    {6, 40, "增加的文档附件",
     "WHERE doc_create_date <= #2026-03-02#  AND doc_create_date>=#2026-02-01#"},
    {7, 22, "有联系记录的联系人",
     "WHERE con_id IN (SELECT DISTINCT contacts_tasks.con_id  FROM contacts_tasks LEFT Join "
     "tasks ON contacts_tasks.tas_id = tasks.tas_id  WHERE  tasks.tas_check = true)"},
    {8, 12, "有联系记录的客户单位",
     "WHERE acc_id IN (SELECT DISTINCT accounts_tasks.acc_id  FROM accounts_tasks LEFT Join "
     "tasks ON accounts_tasks.tas_id = tasks.tas_id  WHERE  tasks.tas_check = true)"},
    {9, 3, "有联系记录的项目机会",
     "WHERE opp_id IN (SELECT DISTINCT opportunities_tasks.opp_id  FROM opportunities_tasks "
     "LEFT Join tasks ON opportunities_tasks.tas_id = tasks.tas_id  WHERE  tasks.tas_check = "
     "true)"},
    {10, 40, "有联系记录的文档附件",
     "WHERE doc_id IN (SELECT DISTINCT tasks_documents.doc_id  FROM tasks_documents LEFT Join "
     "tasks ON tasks_documents.tas_id = tasks.tas_id  WHERE  tasks.tas_check = true)"},
    {11, 22, "生日的联系人", "WHERE con_check= true"},
    {12, 3, "结束的项目机会", "WHERE opp_die_date <= #2026-03-02#  AND opp_die_date>=#2026-02-01#"},
};

TEST_F(Statistics, EachSelectionOpensItsListWithItsFilter) {
    EXPECT_EQ(page.overDays(), "15");
    EXPECT_EQ(page.day1(), QDate(2026, 2, 15));
    EXPECT_EQ(page.day2(), QDate(2026, 3, 2));
    page.setDay1(QDate(2026, 2, 1));  // 29 days: no warning
    const QStringList captions = ScheduleStatistics::captions();
    ASSERT_EQ(captions.size(), 13);
    for (const FilterCase& c : kFilters) {
        SCOPED_TRACE(c.index);
        const ScheduleStatistics::Choice choice = choose(c.index);
        EXPECT_EQ(choice.page, c.page);
        EXPECT_EQ(choice.filter, QString::fromUtf8(c.filter));
        EXPECT_EQ(captions[c.index], QString::fromUtf8(c.caption));
        // Every filter is a valid condition for its list.
        const char* table[] = {"", "opportunities", "accounts", "contacts", "tasks", "documents"};
        ids(QStringLiteral("SELECT * FROM ") +
            QLatin1String(table[ScheduleStatistics::recordKind(c.index)]) + QLatin1Char(' ') +
            choice.filter);
    }
    EXPECT_TRUE(messages.shown.isEmpty());
    EXPECT_FALSE(page.select(13, nullptr));
}

TEST_F(Statistics, TheDaysWithoutContactCountFromToday) {
    page.setOverDays(QStringLiteral("0"));
    EXPECT_EQ(page.filter(0), "WHERE con_recent_contact_date <= #2026-03-02#");
    page.setOverDays(QString());
    EXPECT_EQ(page.filter(1), "WHERE acc_recent_contact_date <= #2026-03-02#");
    page.setOverDays(QStringLiteral("400"));
    EXPECT_EQ(page.filter(2), "WHERE opp_recent_contact_date <= #2025-01-26#");
    EXPECT_TRUE(ScheduleStatistics::acceptsOverDaysKey(QLatin1Char('0')));
    EXPECT_FALSE(ScheduleStatistics::acceptsOverDaysKey(QLatin1Char('\b')));
    EXPECT_FALSE(ScheduleStatistics::acceptsOverDaysKey(QLatin1Char('x')));
}

TEST_F(Statistics, APeriodBackwardsIsRefusedAndALongOneWarned) {
    const QString backwards = QStringLiteral("第二个日期小于第一个日期,请重新设置日期间隔");
    const QString longPeriod = QStringLiteral("您设置的日期间隔比较长,查询统计的时间会比较长");
    page.setDay1(QDate(2026, 3, 2));
    page.setDay2(QDate(2026, 3, 1));
    ScheduleStatistics::Choice choice;
    EXPECT_TRUE(traced([&] { EXPECT_FALSE(page.select(7, &choice)); }).isEmpty());
    EXPECT_FALSE(page.select(3, &choice));
    EXPECT_EQ(messages.texts(), QStringList({backwards, backwards}));
    EXPECT_EQ(messages.shown[0].icon, "info");
    EXPECT_EQ(choice.page, 0);
    // The selections of days without contact need no period.
    messages.shown.clear();
    EXPECT_TRUE(page.select(0, &choice));
    EXPECT_TRUE(messages.shown.isEmpty());

    // One day: the two dates equal. Marking runs in one transaction: the
    // statements are BEGIN, the clearing, one per day and COMMIT.
    page.setDay2(QDate(2026, 3, 2));
    EXPECT_EQ(traced([&] { choose(7); }).size(), 3 + 1);
    // Thirty days apart: no warning; thirty-one: a warning, and it still runs.
    page.setDay1(QDate(2026, 1, 31));
    EXPECT_EQ(traced([&] { choose(11); }).size(), 3 + 31);
    EXPECT_TRUE(messages.shown.isEmpty());
    page.setDay1(QDate(2026, 1, 30));
    EXPECT_EQ(traced([&] { choose(10); }).size(), 3 + 32);
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].icon, "warning");
    EXPECT_EQ(messages.shown[0].title, "Tarvel提示");
    EXPECT_EQ(messages.shown[0].text, longPeriod);
}

TEST_F(Statistics, TasksOfThePeriodAreMarkedDayByDayAndStayMarked) {
    // The period 2026-02-23 (Monday) .. 2026-03-01 (Sunday).
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle) VALUES (1, #2026-2-25#, 0)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle) VALUES (2, #2026-3-2#, 0)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate) VALUES (3, #2026-1-7#, 7, "
        "#2026-12-31#)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate) VALUES (4, #2026-1-5#, 7, "
        "#2026-2-22#)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate) VALUES (5, #2025-1-2#, 30, "
        "#2026-12-31#)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_closedate) VALUES (6, #2024-2-28#, "
        "365, #2030-1-1#)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_check) VALUES (7, #2020-1-1#, 0, -1)");
    for (const char* link : {"(10, 1)", "(11, 2)", "(12, 3)", "(13, 4)", "(14, 6)", "(15, 7)"})
        run(QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES ") +
            QLatin1String(link));
    for (int id = 10; id <= 15; ++id)
        run(QStringLiteral("INSERT INTO contacts (con_id, con_lastname) VALUES (%1, '人%1')")
                .arg(id));
    run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (3, 30)");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (30, '纪要')");
    page.setDay1(QDate(2026, 2, 23));
    page.setDay2(QDate(2026, 3, 1));

    QStringList statements;
    const QStringList issued = traced([&] { choose(7); });
    statements << "BEGIN"
               << "UPDATE tasks SET tas_check=0";
    for (QDate d(2026, 2, 23); d <= QDate(2026, 3, 1); d = d.addDays(1))
        statements << QStringLiteral("UPDATE tasks SET tas_check=true") +
                          statisticsTaskDateCondition(d);
    statements << "COMMIT";
    EXPECT_EQ(issued, statements);
    // One-off on the 25th, the Wednesday task, the yearly 28 February.
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=-1 ORDER BY tas_id"),
              QList<int>({1, 3, 6}));
    EXPECT_EQ(ids("SELECT con_id FROM contacts " + page.filter(7) + " ORDER BY con_id"),
              QList<int>({10, 12, 14}));

    // Another kind of selection leaves the marks for the list page.
    choose(11);
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=-1 ORDER BY tas_id"),
              QList<int>({1, 3, 6}));
    // The next task selection marks its own period afresh.
    page.setDay1(QDate(2026, 3, 2));
    page.setDay2(QDate(2026, 3, 2));
    const ScheduleStatistics::Choice documents = choose(10);
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=-1 ORDER BY tas_id"),
              QList<int>({2, 5}));
    EXPECT_EQ(documents.page, 40);
    EXPECT_TRUE(ids("SELECT doc_id FROM documents " + documents.filter).isEmpty());
}

TEST_F(Statistics, AFailingDayUndoesTheWholeMarking) {
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle, tas_check) VALUES (1, #2020-1-1#, 0, -1)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle) VALUES (2, #2026-2-23#, 0)");
    run("INSERT INTO tasks (tas_id, tas_date, tas_cycle) VALUES (3, #2026-2-25#, 0)");
    run("CREATE TRIGGER refuse_third AFTER UPDATE OF tas_check ON tasks WHEN NEW.tas_id = 3 AND "
        "NEW.tas_check = -1 BEGIN SELECT RAISE(ABORT, 'refused by trigger'); END");
    page.setDay1(QDate(2026, 2, 23));
    page.setDay2(QDate(2026, 2, 27));
    ScheduleStatistics::Choice choice;
    EXPECT_FALSE(page.select(8, &choice));
    EXPECT_TRUE(page.ErrMsg().startsWith("lbl_Selection出错，原因可能是"))
        << page.ErrMsg().toStdString();
    EXPECT_TRUE(page.ErrMsg().contains("refused by trigger"));
    EXPECT_EQ(choice.page, 0);
    // The clearing and the first day are undone; the file takes writes again.
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=-1"), QList<int>({1}));
    run("DROP TRIGGER refuse_third");
    EXPECT_TRUE(page.select(8, &choice));
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=-1 ORDER BY tas_id"),
              QList<int>({2, 3}));
}

TEST_F(Statistics, BirthdaysAcrossTheYearEndAreMarkedButNeverTheUnknownOne) {
    run("INSERT INTO contacts (con_id, con_birthday) VALUES (1, #1980-12-31#)");
    run("INSERT INTO contacts (con_id, con_birthday) VALUES (2, #1990-1-1#)");
    run("INSERT INTO contacts (con_id, con_birthday) VALUES (3, #1900-1-1#)");
    run("INSERT INTO contacts (con_id, con_birthday) VALUES (4, #1975-1-3#)");
    run("INSERT INTO contacts (con_id) VALUES (5)");
    run("INSERT INTO contacts (con_id, con_birthday, con_check) VALUES (6, #1970-6-1#, -1)");
    page.setDay1(QDate(2025, 12, 30));
    page.setDay2(QDate(2026, 1, 2));
    const QStringList issued =
        traced([&] { EXPECT_EQ(choose(11).filter, "WHERE con_check= true"); });
    ASSERT_EQ(issued.size(), 7);
    EXPECT_EQ(issued[1], "UPDATE contacts SET con_check=0");
    EXPECT_EQ(issued[4],
              "UPDATE contacts SET con_check=true WHERE (con_birthday<> # 1900-1-1# AND "
              "month(con_birthday)= 1 AND day(con_birthday)= 1)");
    EXPECT_EQ(ids("SELECT con_id FROM contacts WHERE con_check= true ORDER BY con_id"),
              QList<int>({1, 2}));
}

}  // namespace
