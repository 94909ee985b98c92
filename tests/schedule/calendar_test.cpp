// The calendar's span reading against the task-date condition day by day,
// its outlay against Task::GetOutlayAtDay, the category filter and counts,
// and the task's linked records.
#include "schedule/calendar.h"

#include <set>

#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "schedule/task.h"
#include "schedule/taskcategories.h"
#include "schedule/tasklinks.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

class Calendar : public records_test::RecordFixture {
protected:
    // The edge starts of every cycle, two rows with a time of day in their
    // date, a range that closes before it starts, an unknown cycle, and outlays.
    void addTasks() {
        run(QStringLiteral(
            "INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
            "tas_closed, tas_outlay, tas_type) VALUES "
            "(1, 'once', #2024-3-15#, #9:00#, 0, #2020-1-1#, 0, 12.5, '拜访'), "
            "(2, 'daily', #2024-2-27#, #8:00#, 1, #2024-3-3#, 0, 1, '会''议'), "
            "(3, 'weekly wed', #2024-5-1#, null, 7, #2024-12-31#, 1, 0, null), "
            "(4, 'monthly 31', #2024-1-31#, #10:00#, 30, #2025-3-31#, 0, 0, ''), "
            "(5, 'yearly feb 29', #2024-2-29#, #7:30#, 365, #2029-12-31#, 0, 3, '会''议'), "
            "(6, 'closed early', #2024-6-1#, null, 1, #2024-5-1#, 0, 4, null), "
            "(7, 'bad cycle', #2024-3-15#, null, 14, #2024-12-31#, 0, 2.25, null), "
            "(8, 'monthly 30', #2024-1-30#, #23:30#, 30, #2024-12-31#, 0, 0, null), "
            "(9, 'once with time', #2024-3-15 10:00#, null, 0, null, 0, 100, null), "
            "(10, 'yearly dec 31', #2023-12-31#, null, 365, #2026-1-1#, 0, 0, null)"));
    }
    std::set<int> byCondition(const QDate& day, const QString& filter = QString()) {
        tarveldatabase db;
        RecordsetPtr rs =
            db.GetReadRs(QStringLiteral("SELECT tas_id FROM tasks") + taskDateCondition(day) +
                         (filter.isEmpty() ? QString() : " AND (" + filter + ")"));
        std::set<int> ids;
        for (; rs && !rs->Eof(); rs->MoveNext()) ids.insert(rs->value(0).toInt());
        return ids;
    }
    static std::set<int> shown(const ScheduleCalendar& calendar, const QDate& day) {
        std::set<int> ids;
        for (const CalendarEntry& e : calendar.entriesOn(day)) ids.insert(e.id);
        return ids;
    }
};

TEST_F(Calendar, EachDayShowsWhatTheTaskDateConditionSelects) {
    addTasks();
    const QDate first(2023, 12, 1), last(2025, 3, 31);
    ScheduleCalendar calendar;
    ASSERT_TRUE(calendar.load(first, last)) << calendar.ErrMsg().toStdString();
    Task task;
    for (QDate day = first; day <= last; day = day.addDays(1)) {
        ASSERT_EQ(shown(calendar, day), byCondition(day)) << day.toString().toStdString();
        ASSERT_EQ(calendar.outlayOn(day), task.GetOutlayAtDay(day)) << day.toString().toStdString();
    }
    EXPECT_EQ(shown(calendar, QDate(2024, 4, 30)), std::set<int>({8}));  // no 31st in April
    EXPECT_EQ(shown(calendar, QDate(2025, 2, 28)), std::set<int>());     // no 29th either
    // An entry carries its marks and its time.
    const QList<CalendarEntry> wednesday = calendar.entriesOn(QDate(2024, 5, 29));
    ASSERT_EQ(wednesday.size(), 1);
    EXPECT_EQ(wednesday[0].subject, QStringLiteral("weekly wed"));
    EXPECT_TRUE(wednesday[0].done && wednesday[0].recurring && !wednesday[0].time.isValid());
    EXPECT_EQ(calendar.entriesOn(QDate(2024, 5, 31)).value(0).time, QTime(10, 0));
}

TEST_F(Calendar, CategoriesCountAndNarrowTheCalendar) {
    addTasks();
    TaskCategories categories;
    ASSERT_TRUE(categories.load()) << categories.ErrMsg().toStdString();
    EXPECT_EQ(categories.total(), 10);
    QStringList counts;
    QMap<QString, QString> filters;
    for (const TaskCategory& c : categories.categories()) {
        counts << c.group + "/" + c.caption + " " + QString::number(c.count);
        filters[c.group + "/" + c.caption] = c.filter;
    }
    // Values in order, then null and empty alike as one.
    EXPECT_EQ(counts.join(", ").toStdString(),
              "状态/未完成 9, 状态/已完成 1, 类型/会'议 2, 类型/拜访 1, 类型/(未分类) 7, "
              "重要性/(未分类) 10, 标签/(未分类) 10");
    // A value with a quote is a value, not SQL.
    for (const QString& key : {QStringLiteral("类型/会'议"), QStringLiteral("类型/(未分类)"),
                               QStringLiteral("状态/已完成")}) {
        ScheduleCalendar calendar;
        ASSERT_TRUE(calendar.load(QDate(2024, 2, 25), QDate(2024, 6, 5), filters.value(key)));
        for (QDate d(2024, 2, 25); d <= QDate(2024, 6, 5); d = d.addDays(1))
            ASSERT_EQ(shown(calendar, d), byCondition(d, filters.value(key)))
                << key.toStdString() << d.toString().toStdString();
    }
}

TEST_F(Calendar, TaskLinksListAndSearchByKind) {
    run("INSERT INTO tasks (tas_id, tas_subject) VALUES (1, 't')");
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '李雷'), (6, '韩梅梅')");
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (3, '星光公司')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (3, 5)");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (2, '合同.doc')");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (5, 1)");
    run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (1, 2)");
    TaskLinks links;
    const auto contacts = links.linked(kind::Contact, 1);
    ASSERT_TRUE(contacts.has_value());
    ASSERT_EQ(contacts->size(), 1);
    EXPECT_EQ(contacts->at(0).caption, QStringLiteral("李雷 - 星光公司"));
    EXPECT_EQ(links.linked(kind::Document, 1)->size(), 1);
    EXPECT_TRUE(links.linked(kind::Account, 1)->isEmpty());
    EXPECT_EQ(links.search(kind::Contact, "梅")->size(), 1);
    EXPECT_TRUE(links.search(kind::Contact, "x' OR '1'='1")->isEmpty());
    EXPECT_EQ(links.accountOfContact(5), 3);
    EXPECT_EQ(links.accountOfContact(6), 0);
}

}  // namespace
