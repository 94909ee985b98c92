// Task: storing and loading, its row of the relation matrix, and the form
// operations over a form held in maps and a real grid data control.

#include "schedule/task.h"

#include <vector>

#include "tests/schedule/schedulefixture.h"

using namespace tarvel;
using schedule_test::at;

namespace {

QString repeated(const QString& unit, int times) {
    QString out;
    for (int i = 0; i < times; ++i) out += unit;
    return out;
}

class Tasks : public schedule_test::RecordFixture {
protected:
    Task fullTask() {
        Task t;
        t.setSubject(QStringLiteral("拜访王总 it's"));
        t.setTaskDate(at(2026, 3, 5, 17, 30));  // stored as the date alone
        t.setTaskTime(at(2026, 3, 5, 9, 30));   // stored as the time alone
        t.setTaskType(QStringLiteral("拜访"));
        t.setImportant(QStringLiteral("重要"));
        t.setTag(QStringLiteral("客户拜访"));
        t.setOutlay(Currency::fromUnits(1234500));
        t.setiPrivate(1);
        t.setRemind(1);
        t.setClosed(0);
        t.setAgain(1);
        t.setCycle(7);
        t.setCloseDate(at(2026, 6, 30));
        t.setCreateDate(at(2020, 1, 1));
        t.setRCDate(at(2020, 1, 1));
        t.setDescription(QStringLiteral("第一行\r\n第二行"));
        t.setTask_last_remind_date(at(2026, 3, 1));
        return t;
    }
    QString stored(const char* column, int id) {
        return scalar(QStringLiteral("SELECT %1 FROM tasks WHERE tas_id=%2")
                          .arg(QLatin1String(column))
                          .arg(id))
            .toString();
    }
    // Every property of a task, as text, side by side.
    static QStringList fields(const Task& t) {
        auto d = [](const QDateTime& v) { return v.isValid() ? jetdate::canonical(v) : "null"; };
        return {QString::number(t.ID()),
                t.Subject(),
                d(t.TaskDate()),
                d(t.TaskTime()),
                t.TaskType(),
                t.Important(),
                t.Tag(),
                t.Outlay().toString(),
                QString::number(t.iPrivate()),
                QString::number(t.Remind()),
                QString::number(t.Closed()),
                QString::number(t.Again()),
                QString::number(t.Cycle()),
                d(t.CloseDate()),
                d(t.CreateDate()),
                d(t.RCDate()),
                t.Description(),
                d(t.Task_last_remind_date())};
    }
};

TEST_F(Tasks, AddStoresEveryColumnWithItsOwnStampsAndGetByIdReadsThemBack) {
    Task t = fullTask();
    ASSERT_TRUE(t.Add()) << t.ErrMsg().toStdString();
    EXPECT_EQ(t.ID(), 1);
    // As stored: date and time apart, the creation date without a time, no
    // reminder date yet.
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks WHERE tas_date=#2026-3-5# AND tas_time=#9:30# AND "
                    "tas_create_date=#2026-3-2# AND tas_recent_contact_date=#2026-3-2 9:15:30# "
                    "AND tas_closedate=#2026-6-30# AND tas_last_remind_date IS NULL"),
              1);
    Task loaded;
    loaded.setID(1);
    ASSERT_TRUE(loaded.GetById());
    t.setTaskDate(at(2026, 3, 5));
    t.setTaskTime(jetdate::naive(jetdate::timeBaseDate(), QTime(9, 30)));
    t.setTask_last_remind_date(QDateTime());
    EXPECT_EQ(t.CreateDate(), at(2026, 3, 2));
    EXPECT_EQ(t.RCDate(), start());
    EXPECT_EQ(fields(loaded), fields(t));

    Task second = fullTask();
    ASSERT_TRUE(second.Add());
    EXPECT_EQ(second.ID(), 2);
}

TEST_F(Tasks, NullColumnsLoadAsEmptyAndAMissingRowChangesNothing) {
    run("INSERT INTO tasks (tas_id, tas_outlay, tas_private) VALUES (7, NULL, NULL)");
    Task t = fullTask();
    t.setID(7);
    ASSERT_TRUE(t.GetById());
    EXPECT_EQ(fields(t), QStringList({"7", "", "null", "null", "", "", "", "0", "0", "0", "0", "0",
                                      "0", "null", "null", "null", "", "null"}));
    Task missing = fullTask();
    missing.setID(99);
    ASSERT_TRUE(missing.GetById());
    EXPECT_EQ(missing.Subject(), fullTask().Subject());
}

TEST_F(Tasks, UpdateKeepsTheCreationAndReminderDatesAndReportsAMissingRow) {
    Task t = fullTask();
    ASSERT_TRUE(t.Add());
    run("UPDATE tasks SET tas_last_remind_date=#2026-3-1# WHERE tas_id=1");
    t.setSubject(QStringLiteral("改期"));
    t.setTaskDate(at(2026, 4, 1));
    t.setCreateDate(at(2000, 1, 1));
    t.setTask_last_remind_date(at(2000, 1, 1));
    t.setRCDate(at(2026, 3, 2, 10));
    t.setClosed(1);
    ASSERT_TRUE(t.Update()) << t.ErrMsg().toStdString();
    Task loaded;
    loaded.setID(1);
    ASSERT_TRUE(loaded.GetById());
    t.setCreateDate(at(2026, 3, 2));
    t.setTask_last_remind_date(at(2026, 3, 1));
    t.setTaskTime(jetdate::naive(jetdate::timeBaseDate(), QTime(9, 30)));
    EXPECT_EQ(fields(loaded), fields(t));

    Task missing;
    missing.setID(42);
    EXPECT_FALSE(missing.Update());
    EXPECT_FALSE(missing.Update());
    const QStringList entries = missing.ErrMsg().split(QStringLiteral(" ; "));
    ASSERT_EQ(entries.size(), 2);
    for (const QString& e : entries)
        EXPECT_TRUE(e.startsWith("Update出错，原因可能是")) << e.toStdString();
}

TEST_F(Tasks, OutlayOfADayCountsTheRowsStoredOnIt) {
    run("INSERT INTO tasks (tas_date, tas_outlay, tas_cycle, tas_closedate) VALUES (#2026-3-1#, "
        "100.5, 1, #2026-12-31#)");
    run("INSERT INTO tasks (tas_date, tas_outlay) VALUES (#2026-3-2#, 20.25)");
    run("INSERT INTO tasks (tas_date, tas_outlay) VALUES (#2026-3-2#, 0.0001)");
    Task t;
    EXPECT_EQ(t.GetOutlayAtDay(QDate(2026, 3, 2)), Currency::fromUnits(202501));
    EXPECT_EQ(t.GetOutlayAtDay(QDate(2026, 3, 1)), Currency::fromUnits(1005000));
    // The daily task occurs on the 3rd, but its outlay belongs to its own date.
    EXPECT_EQ(t.GetOutlayAtDay(QDate(2026, 3, 3)), Currency());
    EXPECT_TRUE(t.ErrMsg().isEmpty());
}

// ---------------------------------------------------------------------------
// The task's row of the relation matrix: contact 3, account 4, opportunity 5,
// task 6, document 9.

const QString kStampTask =
    QStringLiteral("UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=6");

class TaskRelations : public Tasks {
protected:
    void SetUp() override {
        // Each record's recent date is long past, so a stamp shows.
        const char* const rows[] = {
            "contacts (con_id, con_lastname, con_recent_contact_date) VALUES (3, '王', ",
            "accounts (acc_id, acc_name, acc_recent_contact_date) VALUES (4, '单位', ",
            "opportunities (opp_id, opp_subject, opp_recent_contact_date) VALUES (5, '项目', ",
            "tasks (tas_id, tas_subject, tas_recent_contact_date) VALUES (6, '拜访', ",
            "documents (doc_id, doc_name, doc_recentedit_date) VALUES (9, '合同', "};
        for (const char* row : rows)
            run(QStringLiteral("INSERT INTO ") + QString::fromUtf8(row) +
                QStringLiteral("#2020-1-1 8:00:00#)"));
        Clock::advance(3600);
    }
    // Which of the five records carry the current time as their recent date.
    QStringList stamped() {
        QStringList out;
        const std::pair<const char*, const char*> recent[] = {
            {"contact", "SELECT con_recent_contact_date FROM contacts"},
            {"account", "SELECT acc_recent_contact_date FROM accounts"},
            {"opportunity", "SELECT opp_recent_contact_date FROM opportunities"},
            {"task", "SELECT tas_recent_contact_date FROM tasks"},
            {"document", "SELECT doc_recentedit_date FROM documents"}};
        for (const auto& [name, sql] : recent)
            if (scalar(QLatin1String(sql)).toDateTime() == Clock::now()) out << QLatin1String(name);
        return out;
    }
    int links() {
        int n = 0;
        for (const char* table : {"contacts_tasks", "accounts_tasks", "opportunities_tasks",
                                  "tasks_documents", "accounts_contacts", "contacts_documents"})
            n += count(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table));
        return n;
    }
    Task task() {
        Task t;
        t.setID(6);
        return t;
    }
};

struct LinkCase {
    const char* name;
    qint16 kind;
    int other;
    QStringList added;    // AddRelative on no link; on the existing link, the same but the insert
    const char* row;      // counts the link made
    QStringList removed;  // DeleteRelative
    QStringList stamps;   // records stamped by AddRelative
};

const std::vector<LinkCase> kLinkCases = {
    {"Opportunity",
     kind::Opportunity,
     5,
     {kStampTask, "SELECT * FROM opportunities_tasks WHERE tas_id=6 AND opp_id=5",
      "UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id=5",
      "INSERT INTO opportunities_tasks(tas_id,opp_id) VALUES(6,5)",
      "SELECT * FROM  opportunities_tasks "},
     "SELECT COUNT(*) FROM opportunities_tasks WHERE tas_id=6 AND opp_id=5",
     {"DELETE * FROM opportunities_tasks WHERE tas_id=6 AND opp_id=5"},
     {"opportunity", "task"}},
    {"Account",
     kind::Account,
     4,
     {kStampTask, "SELECT * FROM accounts_tasks WHERE tas_id=6 AND acc_id=4",
      "UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 4",
      "INSERT INTO accounts_tasks(tas_id,acc_id) VALUES(6,4)", "SELECT * FROM accounts_tasks"},
     "SELECT COUNT(*) FROM accounts_tasks WHERE tas_id=6 AND acc_id=4",
     {"DELETE * FROM accounts_tasks WHERE tas_id=6 AND acc_id=4"},
     {"account", "task"}},
    {"Contact",
     kind::Contact,
     3,
     {kStampTask, "SELECT * FROM contacts_tasks WHERE tas_id=6 AND con_id=3",
      "UPDATE contacts SET con_recent_contact_date=now WHERE con_id=3",
      "INSERT INTO contacts_tasks(tas_id,con_id) VALUES(6,3)", "SELECT * FROM  contacts_tasks"},
     "SELECT COUNT(*) FROM contacts_tasks WHERE tas_id=6 AND con_id=3",
     {"DELETE * FROM contacts_tasks WHERE tas_id=6 AND con_id=3"},
     {"contact", "task"}},
    {"Document",
     kind::Document,
     9,
     {kStampTask, "SELECT * FROM tasks_documents WHERE tas_id=6 AND doc_id=9",
      "UPDATE documents SET doc_recentedit_date=now WHERE doc_id=9",
      "INSERT INTO tasks_documents(tas_id,doc_id) VALUES(6,9)", "SELECT * FROM  tasks_documents"},
     "SELECT COUNT(*) FROM tasks_documents WHERE tas_id=6 AND doc_id=9",
     {"DELETE * FROM tasks_documents WHERE tas_id=6 AND doc_id=9"},
     {"task", "document"}},
    // No task-to-task link: the call only stamps the task itself.
    {"TaskOnlyStamps", kind::Task, 6, {kStampTask}, nullptr, {}, {"task"}},
};

class TaskLinkMatrix : public TaskRelations, public ::testing::WithParamInterface<LinkCase> {};

TEST_P(TaskLinkMatrix, AddsOnceStampsBothAndRemovesWithoutStamps) {
    const LinkCase& c = GetParam();
    Task t = task();
    EXPECT_EQ(
        traced([&] { ASSERT_TRUE(t.AddRelative(c.kind, c.other)) << t.ErrMsg().toStdString(); }),
        c.added);
    EXPECT_EQ(stamped(), QStringList(c.stamps));
    EXPECT_EQ(links(), c.row ? 1 : 0);
    if (c.row) {
        EXPECT_EQ(count(QLatin1String(c.row)), 1);
    }

    QStringList again = c.added;
    again.removeIf([](const QString& sql) { return sql.startsWith("INSERT"); });
    EXPECT_EQ(traced([&] { ASSERT_TRUE(t.AddRelative(c.kind, c.other)); }), again);
    EXPECT_EQ(links(), c.row ? 1 : 0);

    Clock::advance(60);
    EXPECT_EQ(traced([&] { ASSERT_TRUE(t.DeleteRelative(c.kind, c.other)); }), c.removed);
    EXPECT_EQ(links(), 0);
    EXPECT_TRUE(stamped().isEmpty());
    EXPECT_TRUE(t.ErrMsg().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(EachKind, TaskLinkMatrix, ::testing::ValuesIn(kLinkCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(TaskRelations, NoOtherIdOrNoKeyDoesNothing) {
    Task t = task();
    Task unsaved;
    EXPECT_TRUE(traced([&] {
                    EXPECT_TRUE(t.AddRelative(kind::Contact, 0));
                    EXPECT_TRUE(t.DeleteRelative(kind::Contact, 0));
                    EXPECT_TRUE(unsaved.AddRelative(kind::Contact, 3));
                }).isEmpty());
    EXPECT_TRUE(stamped().isEmpty());
}

TEST_F(TaskRelations, DeletingTakesTheRowThenEveryLinkInOrder) {
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6)");
    run("INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (4, 6)");
    run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (5, 6)");
    run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (6, 9)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 77)");
    Task t = task();
    ASSERT_TRUE(t.Delete());
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 0);
    EXPECT_EQ(links(), 5);  // Delete alone leaves the links
    EXPECT_EQ(traced([&] { ASSERT_TRUE(t.DeleteRelation()); }),
              QStringList({"DELETE * FROM tasks_documents WHERE tas_id=6",
                           "DELETE * FROM accounts_tasks WHERE tas_id=6",
                           "DELETE * FROM opportunities_tasks WHERE tas_id=6",
                           "DELETE * FROM contacts_tasks WHERE tas_id=6"}));
    EXPECT_EQ(links(), 1);  // another task's link stays
}

// ---------------------------------------------------------------------------
// Form operations

class TaskForms : public Tasks {
protected:
    void openPanel(const char* name, int recordId) {
        form.setName(QLatin1String(name));
        form.setProperty(QLatin1String(panel::RecordId), recordId);
    }
    void attach(Task& t) {
        t.setOForm(&form);
        t.setOAdodc(&grid);
    }
    QVariant control(const char* name) { return form.controlValue(QLatin1String(name)); }
    void type(const char* name, const QVariant& value) {
        form.setControlValue(QLatin1String(name), value);
    }
    void fillDetail() {
        type("txt_sch_subject", QStringLiteral("回访"));
        type("DT_sch_date", QDate(2026, 3, 9));
        type("cbo_sch_time", QStringLiteral("14:30"));
        type("txt_sch_outlay", QStringLiteral("88.5"));
        type("rtxt_sch_memo", QStringLiteral("带合同"));
        type("chk_sch_remind", -1);
        type("chk_sch_completed", 0);
        type("chk_sch_private", 0);
        type("cbo_sch_importance", QStringLiteral("重要"));
        type("cbo_sch_tag", QStringLiteral("工作"));
        type("Cbo_sch_type", QStringLiteral("拜访"));
    }
    int gridTaskId() {
        return grid.Recordset && !grid.Recordset->Eof() && !grid.Recordset->Bof()
                   ? grid.Recordset->value(QStringLiteral("tas_id")).toInt()
                   : -1;
    }

    MapForm form;
    DataControl grid;
};

TEST_F(TaskForms, ANewTaskOnARecordsPanelIsNamedAfterThatRecord) {
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '数据中心项目')");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (21, '报价单.doc')");
    openPanel(panel::Opportunity, 20);
    Task t = fullTask();
    t.setOForm(&form);
    ASSERT_TRUE(t.InitTask(0)) << t.ErrMsg().toStdString();
    EXPECT_EQ(fields(t), QStringList({"0", "项目机会:数据中心项目", "2026-03-02 00:00:00",
                                      "1899-12-30 09:15:30", "", "", "", "0", "0", "0", "0", "0",
                                      "0", "2026-03-02 00:00:00", "2026-03-02 00:00:00",
                                      "2026-03-02 09:15:30", "", "null"}));

    // The label follows the module's caption in the stored layout.
    run("UPDATE interface SET object_description='文档' WHERE app_type=0 AND object_type=1 AND "
        "object_name='document'");
    openPanel(panel::Document, 21);
    ASSERT_TRUE(t.InitTask(0));
    EXPECT_EQ(t.Subject(), "文档:报价单.doc");

    form.setName(QStringLiteral("form_sch_detail"));
    ASSERT_TRUE(t.InitTask(0));
    EXPECT_EQ(t.Subject(), QString());
}

TEST_F(TaskForms, ShowTaskWritesTheTaskAndResetsTheNextScheduleFields) {
    Task stored = fullTask();
    stored.setTaskTime(jetdate::naive(jetdate::timeBaseDate(), QTime(9, 5)));
    ASSERT_TRUE(stored.Add());
    form.setName(QStringLiteral("form_sch_detail"));
    Clock::setFixed(at(2026, 3, 2, 7, 8, 9));
    Task t;
    t.setOForm(&form);
    ASSERT_TRUE(t.ShowTask(stored.ID())) << t.ErrMsg().toStdString();
    QStringList shown;
    for (const char* c :
         {"DT_sch_date", "cbo_sch_time", "txt_sch_outlay", "chk_sch_remind", "chk_sch_completed",
          "chk_sch_private", "chk_sch_nextdate", "DT_sch_nextdate", "cbo_sch_nexttime"})
        shown << control(c).toString();
    EXPECT_EQ(shown, QStringList({"2026-03-05", "9:5", "123.45", "-1", "0", "-1", "0", "2026-03-02",
                                  "7:8"}));
    EXPECT_EQ(form.property("DT_sch_nextdate.Enabled"), QVariant(false));
    EXPECT_EQ(form.property("cbo_sch_nexttime.Enabled"), QVariant(false));
    EXPECT_EQ(form.property("g_TasID").toInt(), stored.ID());
}

TEST_F(TaskForms, ReadingTheFormCutsTextsAndTakesANonNumberOutlayAsZero) {
    form.setName(QStringLiteral("form_sch_detail"));
    fillDetail();
    type("txt_sch_subject", repeated(QStringLiteral("日"), 300));
    type("cbo_sch_importance", repeated(QStringLiteral("重"), 60));
    type("Cbo_sch_type", repeated(QStringLiteral("类"), 60));
    type("cbo_sch_tag", repeated(QStringLiteral("签"), 300));
    type("txt_sch_outlay", QStringLiteral("八十元"));
    type("chk_sch_completed", true);
    Task t;
    t.setOForm(&form);
    ASSERT_TRUE(t.AddTask()) << t.ErrMsg().toStdString();
    EXPECT_EQ(t.Subject(), repeated(QStringLiteral("日"), 255));
    EXPECT_EQ(t.Important(), repeated(QStringLiteral("重"), 50));
    EXPECT_EQ(t.TaskType(), repeated(QStringLiteral("类"), 50));
    EXPECT_EQ(t.Tag(), repeated(QStringLiteral("签"), 255));
    EXPECT_EQ(t.Outlay(), Currency());
    EXPECT_EQ(t.TaskDate(), at(2026, 3, 9));
    EXPECT_EQ(t.TaskTime().time(), QTime(14, 30));
    EXPECT_EQ(t.Remind(), 1);
    EXPECT_EQ(t.Closed(), 1);
    EXPECT_EQ(t.iPrivate(), 0);
    EXPECT_EQ(t.CreateDate(), at(2026, 3, 2));
    EXPECT_EQ(t.RCDate(), start());

    type("txt_sch_outlay", QStringLiteral(" 1,234.5 "));
    t.setCreateDate(at(2020, 1, 1));
    ASSERT_TRUE(t.ChangeTask());
    EXPECT_EQ(t.Outlay(), Currency::fromUnits(12345000));
    EXPECT_EQ(t.CreateDate(), at(2020, 1, 1));

    type("cbo_sch_time", QStringLiteral("下午"));
    EXPECT_FALSE(t.ChangeTask());
    EXPECT_TRUE(t.ErrMsg().startsWith("ChangeTask出错，原因可能是")) << t.ErrMsg().toStdString();
}

TEST_F(TaskForms, AFollowUpTaskComesFromTheNextScheduleFields) {
    form.setName(QStringLiteral("form_sch_detail"));
    fillDetail();
    type("chk_sch_private", -1);
    type("DT_sch_nextdate", QDate(2026, 3, 16));
    type("cbo_sch_nexttime", QStringLiteral("10:00"));
    Task t = fullTask();
    t.setID(5);
    t.setClosed(1);
    t.setOForm(&form);
    ASSERT_TRUE(t.AddNextTask()) << t.ErrMsg().toStdString();
    // A new, open task: same subject, the next date and time, the two flags.
    EXPECT_EQ(fields(t), QStringList({"0", "回访", "2026-03-16 00:00:00", "1899-12-30 10:00:00", "",
                                      "", "", "0", "1", "1", "0", "1", "7", "2026-06-30 00:00:00",
                                      "2026-03-02 00:00:00", "2026-03-02 09:15:30",
                                      "本记录的建立日期为:2026-3-2", "null"}));
}

TEST_F(TaskForms, AddToListOnAPanelStoresOnceLinksAndShowsTheTask) {
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '项目')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_closed) VALUES (3, '旧的', "
        "#2026-1-1#, 1)");
    run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (20, 3)");
    openPanel(panel::Opportunity, 20);
    Task t;
    attach(t);
    ASSERT_TRUE(t.SetQuery()) << t.ErrMsg().toStdString();
    fillDetail();
    ASSERT_TRUE(t.AddTask());
    ASSERT_TRUE(t.AddToList()) << t.ErrMsg().toStdString();
    EXPECT_EQ(t.ID(), 4);
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 2);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_tasks WHERE opp_id=20 AND tas_id=4"), 1);
    EXPECT_EQ(form.property("g_TasID").toInt(), 4);
    EXPECT_EQ(grid.Recordset->RecordCount(), 2);
    EXPECT_EQ(gridTaskId(), 4);
    EXPECT_TRUE(t.Digest().contains("回访"));

    // An edit goes through the grid's row and leaves the creation date alone.
    type("txt_sch_subject", QStringLiteral("回访（改）"));
    type("chk_sch_completed", -1);
    ASSERT_TRUE(t.ChangeTask());
    ASSERT_TRUE(t.UpdateIndex()) << t.ErrMsg().toStdString();
    EXPECT_EQ(stored("tas_subject", 4), "回访（改）");
    EXPECT_EQ(scalar("SELECT tas_closed FROM tasks WHERE tas_id=4").toInt(), 1);
    EXPECT_EQ(grid.Recordset->value(QStringLiteral("tas_subject")).toString(), "回访（改）");
    EXPECT_EQ(scalar("SELECT tas_create_date FROM tasks WHERE tas_id=4").toDateTime(),
              at(2026, 3, 2));

    // A task the grid is not on is stored directly.
    Task other;
    other.setID(3);
    ASSERT_TRUE(other.GetById());
    attach(other);
    other.setSubject(QStringLiteral("旧的（改）"));
    ASSERT_TRUE(other.UpdateIndex()) << other.ErrMsg().toStdString();
    EXPECT_EQ(stored("tas_subject", 3), "旧的（改）");
}

TEST_F(TaskForms, AddToListElsewhereLinksTheRecordsTheFormShows) {
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (3, '王')");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (9, '合同')");
    form.setName(QStringLiteral("form_sch_detail"));
    form.setProperty(QStringLiteral("iShowCon"), 1);
    form.setProperty(QStringLiteral("g_ConID"), 3);
    form.setProperty(QStringLiteral("iShowDoc"), 0);
    form.setProperty(QStringLiteral("g_DocID"), 9);
    fillDetail();
    Task t;
    t.setOForm(&form);
    ASSERT_TRUE(t.AddTask());
    ASSERT_TRUE(t.Add());
    ASSERT_TRUE(t.AddToList()) << t.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_tasks WHERE con_id=3 AND tas_id=1"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks_documents"), 0);

    Task formless;
    EXPECT_FALSE(formless.AddToList());
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 1);
}

TEST_F(TaskForms, SetQueryListsThePanelRecordsTasksWithTheirDigest) {
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_closed, tas_tag, "
        "tas_description) VALUES (1, '签约', #2026-2-1#, #9:30:00#, 1, '工作', '带章')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_closed) VALUES (2, '回访', "
        "#2026-2-8#, 0)");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date) VALUES (3, '别人的', #2026-2-9#)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (7, 1)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (7, 2)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (8, 3)");
    openPanel(panel::Contact, 7);
    Task t;
    attach(t);
    ASSERT_TRUE(t.SetQuery(7)) << t.ErrMsg().toStdString();
    EXPECT_EQ(
        grid.RecordSource,
        "SELECT tas_id,tas_date,tas_time,tas_subject,tas_remind,tas_closed,tas_private,"
        "tas_outlay,tas_important,tas_tag,tas_create_date,tas_recent_contact_date,"
        "tas_description, tas_type,tas_again, tas_cycle,tas_closedate FROM tasks  WHERE "
        "tas_id IN (SELECT tas_id FROM contacts_tasks WHERE con_id=7) ORDER BY tas_date DESC");
    EXPECT_EQ(grid.Recordset->RecordCount(), 2);
    EXPECT_EQ(gridTaskId(), 2);
    const QStringList captions = form.controlItems(QStringLiteral("dgrid_sch"));
    ASSERT_GE(captions.size(), 2);
    EXPECT_EQ(captions.mid(0, 2), QStringList({"联系日期", "时间"}));
    const QString digest = QStringLiteral(
        "2026-2-8,,未完成,\r\n回访\r\n\r\n===================\r\n"
        "2026-2-1,9:30:00,完成,工作\r\n签约\r\n带章\r\n===================\r\n");
    EXPECT_EQ(t.Digest(), digest);
    EXPECT_EQ(control("rtxt_sch_digest").toString(), digest);
    EXPECT_EQ(form.property("iShowCon").toInt(), 0);
    EXPECT_EQ(form.property("iShowTas").toInt(), 1);

    form.setName(QStringLiteral("form_sch_detail"));
    grid.RecordSource.clear();
    ASSERT_TRUE(t.SetQuery(7));
    EXPECT_TRUE(grid.RecordSource.isEmpty());
}

}  // namespace
