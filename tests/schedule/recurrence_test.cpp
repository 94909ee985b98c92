// The task-date condition against the occurs-today test and the table of
// cycles, and the other shared routines of recurrence.

#include "schedule/recurrence.h"

#include <algorithm>
#include <map>
#include <set>

#include "schedule/task.h"
#include "tests/schedule/schedulefixture.h"

using namespace tarvel;
using schedule_test::at;

namespace {

TEST(TaskDateCondition, KeepsItsTextAndSpacing) {
    // 29 February 2024 is a Thursday: weekday 5 counting Sunday as 1.
    EXPECT_EQ(taskDateCondition(QDate(2024, 2, 29)),
              " WHERE (( tas_cycle = 0  AND tas_date=#2024-02-29#)"
              " OR ( tas_cycle = 1  AND tas_date <=#2024-02-29# AND tas_closedate>= #2024-02-29#)"
              " OR ( tas_cycle = 7  AND tas_date <=#2024-02-29# AND tas_closedate>= #2024-02-29#"
              " AND WEEKDAY (tas_date)=5)"
              " OR ( tas_cycle = 30 AND tas_date <=#2024-02-29# AND tas_closedate>= #2024-02-29#"
              " AND DAY(tas_date)=29)"
              " OR ( tas_cycle = 365 AND tas_date <=#2024-02-29# AND tas_closedate>= #2024-02-29#"
              " AND MONTH(tas_date) =2 AND DAY(tas_date)=29))");
    // The statistics page's own copy: no outer parentheses, "tas_date  =#",
    // no blank before the last AND. 7 December 2025 is a Sunday.
    EXPECT_EQ(statisticsTaskDateCondition(QDate(2025, 12, 7)),
              " WHERE ( tas_cycle = 0  AND tas_date  =#2025-12-07#)"
              " OR ( tas_cycle = 1  AND tas_date <=#2025-12-07# AND tas_closedate>= #2025-12-07#)"
              " OR ( tas_cycle = 7  AND tas_date <=#2025-12-07# AND tas_closedate>= #2025-12-07#"
              " AND WEEKDAY (tas_date)=1)"
              " OR ( tas_cycle = 30 AND tas_date <=#2025-12-07# AND tas_closedate>= #2025-12-07#"
              " AND DAY(tas_date)=7)"
              " OR ( tas_cycle = 365 AND tas_date <=#2025-12-07# AND tas_closedate>= #2025-12-07#"
              " AND MONTH(tas_date) =12AND DAY(tas_date)=7)");
}

// What the table of cycles says, worked out on day numbers rather than with
// the weekday and date helpers the program uses.
bool tableSays(const QDate& start, int cycleValue, const QDate& close, const QDate& day) {
    if (cycleValue == 0) return day == start;
    if (!close.isValid() || day.toJulianDay() < start.toJulianDay() ||
        day.toJulianDay() > close.toJulianDay())
        return false;
    switch (cycleValue) {
        case 1:
            return true;
        case 7:
            return (day.toJulianDay() - start.toJulianDay()) % 7 == 0;
        case 30:
            return day.day() == start.day();
        case 365:
            return day.month() == start.month() && day.day() == start.day();
        default:
            return false;
    }
}

class Recurrence : public schedule_test::RecordFixture {};

// Every day of 2023 to 2028 (two leap years): the rows the condition selects,
// the tasks the in-memory test finds, and the table of cycles applied to the
// stored rows must be the same set.
TEST_F(Recurrence, ConditionAndTodayTestAgreeWithTheTableOnEveryDay) {
    const QDate first(2023, 1, 1), last(2028, 12, 31);
    const QList<QDate> starts = {
        QDate(2023, 1, 29), QDate(2023, 1, 30), QDate(2023, 1, 31),
        QDate(2023, 3, 31), QDate(2023, 8, 30), QDate(2023, 12, 31),
        QDate(2024, 1, 31), QDate(2024, 2, 29), QDate(2024, 3, 6) /* a Wednesday */,
        QDate(2025, 6, 15), QDate(2026, 10, 29)};
    const QList<int> cycles = {0, 1, 7, 30, 365, 2, 14};
    struct Expected {
        int id;
        int days;
    };
    std::vector<Expected> counted;  // occurrence counts worked out by hand
    run("BEGIN");
    int id = 0;
    for (const QDate& start : starts) {
        const QList<QDate> closes = {start.addDays(-1), start, start.addDays(400), last};
        for (int c : cycles) {
            for (const QDate& close : closes) {
                ++id;
                run(QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_cycle, "
                                   "tas_closedate) VALUES (%1, '任务%1', #%2#, %3, #%4#)")
                        .arg(id)
                        .arg(start.toString(Qt::ISODate))
                        .arg(c)
                        .arg(close.toString(Qt::ISODate)));
                if (start == QDate(2024, 2, 29) && c == 365 && close == last)
                    counted.push_back({id, 2});  // 2024 and 2028 only
                if (start == QDate(2023, 1, 31) && c == 30 && close == last)
                    counted.push_back({id, 7 * 6});  // the seven 31-day months a year
                if (start == QDate(2023, 1, 30) && c == 30 && close == last)
                    counted.push_back({id, 11 * 6});  // every month but February
                if (start == QDate(2024, 3, 6) && c == 7 && close == start.addDays(400))
                    counted.push_back({id, 400 / 7 + 1});
                if (start == QDate(2025, 6, 15) && c == 1 && close == start.addDays(400))
                    counted.push_back({id, 401});
                if (start == QDate(2023, 8, 30) && c == 0 && close == start.addDays(-1))
                    counted.push_back({id, 1});  // a one-off ignores its close date
                if (start == QDate(2023, 8, 30) && c == 1 && close == start.addDays(-1))
                    counted.push_back({id, 0});  // closed before it starts
                if (start == QDate(2023, 8, 30) && c == 14 && close == last)
                    counted.push_back({id, 0});  // no such cycle
            }
        }
    }
    // A recurring task without a close date never occurs.
    ++id;
    run(QStringLiteral("INSERT INTO tasks (tas_id, tas_date, tas_cycle) VALUES (%1, #2024-3-6#, 7)")
            .arg(id));
    counted.push_back({id, 0});
    run("COMMIT");

    // The stored rows, read directly, and each task through the record class.
    struct Row {
        int id;
        QDate start;
        int cycle;
        QDate close;
    };
    std::vector<Row> rows;
    std::vector<Task> tasks;
    {
        tarveldatabase db;
        RecordsetPtr rs =
            db.GetReadRs("SELECT tas_id, tas_date, tas_cycle, tas_closedate FROM tasks");
        ASSERT_TRUE(rs && rs->State() == adStateOpen);
        for (; !rs->Eof(); rs->MoveNext()) {
            rows.push_back({rs->value(0).toInt(), rs->value(1).toDateTime().date(),
                            rs->value(2).toInt(), rs->value(3).toDateTime().date()});
            Task t;
            t.setID(rows.back().id);
            ASSERT_TRUE(t.GetById()) << t.ErrMsg().toStdString();
            tasks.push_back(t);
        }
    }
    ASSERT_EQ(int(rows.size()), id);

    std::map<int, int> occurrences;
    trace::setEnabled(false);
    for (QDate day = first; day <= last; day = day.addDays(1)) {
        std::set<int> bySql, byTest, byTable;
        tarveldatabase db;
        RecordsetPtr rs =
            db.GetReadRs(QStringLiteral("SELECT tas_id FROM tasks") + taskDateCondition(day) +
                         QStringLiteral(" AND tas_id > 0 ORDER BY tas_id"));
        ASSERT_TRUE(rs && rs->State() == adStateOpen) << db.ErrMsg().toStdString();
        for (; !rs->Eof(); rs->MoveNext()) bySql.insert(rs->value(0).toInt());
        Clock::setFixed(jetdate::naive(day, QTime(12, 0)));
        for (const Task& t : tasks)
            if (occursToday(t)) byTest.insert(t.ID());
        for (const Row& r : rows)
            if (tableSays(r.start, r.cycle, r.close, day)) byTable.insert(r.id);
        ASSERT_EQ(bySql, byTable) << "condition on " << day.toString(Qt::ISODate).toStdString();
        ASSERT_EQ(byTest, byTable) << "today test on " << day.toString(Qt::ISODate).toStdString();
        for (int hit : byTable) ++occurrences[hit];
    }
    for (const Expected& e : counted) EXPECT_EQ(occurrences[e.id], e.days) << "task " << e.id;
}

TEST(OccursOn, DatesWithATimeCompareAsTheDatabaseComparesThem) {
    // A close date later on the day still covers it; a start later on the day
    // does not, exactly as the stored texts compare.
    EXPECT_TRUE(occursOn(at(2024, 3, 6), cycle::Daily, at(2024, 3, 8, 10), QDate(2024, 3, 8)));
    EXPECT_FALSE(occursOn(at(2024, 3, 6, 10), cycle::Daily, at(2024, 3, 8), QDate(2024, 3, 6)));
    EXPECT_FALSE(occursOn(at(2024, 3, 6, 10), cycle::Once, QDateTime(), QDate(2024, 3, 6)));
    EXPECT_FALSE(occursOn(QDateTime(), cycle::Once, QDateTime(), QDate(2024, 3, 6)));
}

struct TimeCase {
    const char* typed;
    bool ok;
    const char* after;  // the text afterwards
    const char* message;
};

const char* const kColon = "小时和分钟之间请用冒号(:)分隔开！";
const char* const kFormat = "您输入的时间不符合格式！请检查";

class TypedTime : public ::testing::TestWithParam<TimeCase> {};

TEST_P(TypedTime, PassesOrShowsItsMessage) {
    const TimeCase& c = GetParam();
    Clock::setFixed(at(2026, 3, 2, 8, 5, 59));
    schedule_test::RecordedMessages messages;
    QString text = QString::fromUtf8(c.typed);
    EXPECT_EQ(checkTypedTime(text, messages), c.ok);
    EXPECT_EQ(text, QString::fromUtf8(c.after));
    if (c.message) {
        ASSERT_EQ(messages.shown.size(), 1);
        EXPECT_EQ(messages.shown[0].icon, "info");
        EXPECT_EQ(messages.shown[0].title, "Tarvel提示");
        EXPECT_EQ(messages.shown[0].text, QString::fromUtf8(c.message));
    } else {
        EXPECT_TRUE(messages.shown.isEmpty());
    }
    Clock::reset();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TypedTime,
    ::testing::Values(
        TimeCase{"9:5", true, "9:5", nullptr}, TimeCase{"09:30", true, "09:30", nullptr},
        TimeCase{"0:0", true, "0:0", nullptr}, TimeCase{"23:59", true, "23:59", nullptr},
        TimeCase{"930", false, "930", kColon}, TimeCase{"", false, "", kColon},
        // A failed time becomes the current time, unpadded.
        TimeCase{"25:00", false, "8:5", kFormat}, TimeCase{"10:75", false, "8:5", kFormat},
        TimeCase{"24:00", false, "8:5", kFormat}, TimeCase{"10:60", false, "8:5", kFormat},
        TimeCase{"-1:30", false, "8:5", kFormat}, TimeCase{"ab:10", false, "8:5", kFormat},
        TimeCase{"10:", false, "8:5", kFormat}, TimeCase{"9.5:30", false, "8:5", kFormat}));

TEST(IsNumber, TellsNumbersFromOtherText) {
    for (const char* yes : {"12", " 12.5 ", "-3", "0", "1,000.25", "1e3"})
        EXPECT_TRUE(isNumber(QString::fromUtf8(yes))) << yes;
    for (const char* no : {"", "  ", "abc", "12abc", "12元", "inf", "nan", "1.2.3"})
        EXPECT_FALSE(isNumber(QString::fromUtf8(no))) << no;
}

class PickLists : public schedule_test::RecordFixture {};

TEST_F(PickLists, BuiltInKindsNeedNoDatabaseOtherKindsAreSortedOptions) {
    MapForm form(QStringLiteral("form_sch_detail"));
    form.setControlValue(QStringLiteral("cbo_sch_time"), QStringLiteral("9:5"));
    const QStringList statements = traced([&] {
        ASSERT_TRUE(fillPickList(form, QStringLiteral("cbo_sch_time"), QStringLiteral("sch"),
                                 QStringLiteral(" time_format ")));
    });
    EXPECT_TRUE(statements.isEmpty());
    const QStringList times = form.controlItems(QStringLiteral("cbo_sch_time"));
    ASSERT_EQ(times.size(), 48);
    EXPECT_EQ(times.mid(0, 3), QStringList({"00:00", "00:30", "01:00"}));
    EXPECT_EQ(times.last(), "23:30");
    EXPECT_EQ(form.controlValue(QStringLiteral("cbo_sch_time")).toString(), "9:5");

    // Other kinds are the stored option list, sorted.
    ASSERT_TRUE(fillPickList(form, QStringLiteral("Cbo_sch_type"), QStringLiteral("sch"),
                             QStringLiteral("type")));
    const QStringList types = form.controlItems(QStringLiteral("Cbo_sch_type"));
    EXPECT_FALSE(types.isEmpty());
    QStringList sorted = types;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(types, sorted);
    EXPECT_EQ(types, *pickListItems(QStringLiteral(" sch "), QStringLiteral(" type ")));

    // Probability is an ordinary stored list here: sorted, no "%".
    const auto probability = pickListItems(QStringLiteral("opp"), QStringLiteral("Probability"));
    ASSERT_TRUE(probability.has_value());
    EXPECT_TRUE(probability->contains("100"));
    EXPECT_FALSE(probability->join(QString()).contains('%'));
}

}  // namespace
