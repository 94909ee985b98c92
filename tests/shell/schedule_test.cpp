// The schedule in the main window: the home page at start and after a change
// of day, reminders fired by Timer1 and what dismissing and snoozing do to
// the next firing, and the statistics page reached from the schedule module.
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

#include "records/recordbase.h"
#include "shell/globals.h"
#include "shell/mainwindow.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/data.h"
#include "tests/views/scripted.h"
#include "views/formhome.h"
#include "views/formschremind.h"
#include "views/unsaved.h"

using namespace tarvel;
using tarvel::testsupport::at;
using tarvel::testsupport::child;
using tarvel::testsupport::firstValue;
using tarvel::testsupport::indexed;
using tarvel::testsupport::run;
using tarvel::testsupport::ScriptedDialogs;

namespace {

// A task with a reminder: `again` 1 repeats it on each day the task occurs,
// and its last dismissal was long ago, so it is due.
void addTask(int id, const char* subject, const char* date, const char* time, int cycle, int again,
             const char* close = "2024-12-31") {
    run(QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, "
                       "tas_closedate, tas_remind, tas_again, tas_closed, "
                       "tas_last_remind_date) VALUES (%1, '%2', #%3#, #%4#, %5, #%6#, 1, %7, 0, "
                       "#2024-1-1#)")
            .arg(id)
            .arg(tarveldatabase::SafeSql(QString::fromUtf8(subject)), QLatin1String(date),
                 QLatin1String(time))
            .arg(cycle)
            .arg(QLatin1String(close))
            .arg(again));
}

// The texts of one column of a list, empty-list row excluded.
QStringList texts(const QTreeWidget* list, int column) {
    QStringList out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->flags() != Qt::NoItemFlags)
            out << list->topLevelItem(i)->text(column);
    return out;
}

QString labelText(QWidget* page, const char* name) {
    auto* label = page ? page->findChild<QLabel*>(QLatin1String(name)) : nullptr;
    return label ? label->text() : QStringLiteral("<none>");
}

}  // namespace

class ScheduleTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        appGlobals() = AppGlobals{};
        clearUnsaved();
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
    }
    void cleanup() {
        main_.reset();
        file_.reset();
        Clock::reset();
    }

    void homePageListsTodayAndFollowsTheDay();
    void homePageOpensWhatIsDoubleClicked();
    void dismissedRepeatingReminderComesBackOnTheNextDay();
    void dismissedOneTimeReminderEndsForLaterOccurrences();
    void snoozedReminderFiresAgainAtTheNewTime();
    void reminderOpensItsTaskInTheMainWindow();
    void statisticsPageFromTheScheduleModule();

private:
    TarvelMain& start(const QDateTime& now) {
        Clock::setFixed(now);
        MainWindowOptions o;
        o.trayAvailable = [] { return false; };
        o.checkForUpdate = false;
        main_ = std::make_unique<TarvelMain>(o);
        main_->setDialogs(dialogs_);
        main_->Timer1()->stop();  // ticks come from the test
        main_->show();
        return *main_;
    }
    // One tick at `now`; the reminder windows open afterwards.
    QList<int> tick(const QDateTime& now) {
        Clock::setFixed(now);
        main_->Timer1Timer();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QList<int> ids;
        for (FormSchRemind* w : main_->reminderWindows()) ids << w->taskId();
        return ids;
    }
    void clickIn(FormSchRemind* window, const char* button) {
        QTest::mouseClick(child<QPushButton>(*window, button), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    FormHome& home() {
        FormHome* h = main_->homePage();
        if (!h) qFatal("no home page");
        return *h;
    }
    QString reminderColumn(int taskId) {
        const QTreeWidget* list = home().lvTodayTasks();
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            if (list->topLevelItem(i)->data(0, Qt::UserRole + 1).toInt() == taskId)
                return list->topLevelItem(i)->text(3);
        return QStringLiteral("<not listed>");
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    std::unique_ptr<TarvelMain> main_;
};

void ScheduleTest::homePageListsTodayAndFollowsTheDay() {
    addTask(1, "交季度报表", "2024-5-1", "16:00", 0, 0);
    addTask(2, "晨会", "2024-4-1", "9:00", 1, 1);  // daily
    addTask(3, "五月二日的拜访", "2024-5-2", "10:30", 0, 0);
    run(QStringLiteral("UPDATE tasks SET tas_remind=0, tas_closed=1 WHERE tas_id=1"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES "
                       "(1, '张三', #1990-5-1#)"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES "
                       "(2, '李四', #1985-5-2#)"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES "
                       "(3, '不详', #1900-1-1#)"));
    // Ending within a week of 2024-5-1 (the 8th included, with a time), or not.
    run(
        QStringLiteral("INSERT INTO opportunities (opp_id, opp_subject, opp_die_date) VALUES "
                       "(1, '设备采购', #2024-5-8 17:00#)"));
    run(
        QStringLiteral("INSERT INTO opportunities (opp_id, opp_subject, opp_die_date) VALUES "
                       "(2, '已过期', #2024-4-30#)"));
    run(
        QStringLiteral("INSERT INTO opportunities (opp_id, opp_subject, opp_die_date) VALUES "
                       "(3, '下个月', #2024-5-9#)"));
    // Overdue: open one-off tasks of the last 30 days; not done ones, not
    // recurring ones, not older ones.
    addTask(4, "没交的标书", "2024-4-29", "10:00", 0, 0);
    addTask(5, "做完了", "2024-4-29", "11:00", 0, 0);
    run(QStringLiteral("UPDATE tasks SET tas_closed=1 WHERE tas_id=5"));
    addTask(6, "太久了", "2024-3-31", "10:00", 0, 0);

    TarvelMain& w = start(at(2024, 5, 1, 23, 59, 58));
    QCOMPARE(w.currentPageCode(), page::Home);
    QCOMPARE(w.currentPage(), &home());
    QCOMPARE(home().objectName(), QStringLiteral("form_pp"));
    QVERIFY(labelText(&home(), "lbl_date").contains(QStringLiteral("2024年5月1日")));
    QCOMPARE(texts(home().lvTodayTasks(), 1), (QStringList{"晨会", "交季度报表"}));
    QCOMPARE(texts(home().lvTodayTasks(), 0), (QStringList{"09:00", "16:00"}));
    QCOMPARE(texts(home().lvTodayTasks(), 2), (QStringList{"未完成", "完成"}));
    QCOMPARE(texts(home().lvTodayTasks(), 3), (QStringList{"待提醒", ""}));
    QCOMPARE(texts(home().lvBirthdays(), 0), (QStringList{"张三"}));
    QCOMPARE(texts(home().lvOpportunities(), 1), (QStringList{"设备采购"}));
    QCOMPARE(texts(home().lvOverdue(), 2), (QStringList{"没交的标书"}));
    const QList<int> open = tick(at(2024, 5, 1, 23, 59, 58));
    QCOMPARE(open, (QList<int>{2}));  // the 9:00 reminder, missed before the start
    QCOMPARE(reminderColumn(2), QStringLiteral("已提醒"));
    clickIn(w.reminderWindows().first(), "cmd_cancel");
    QCOMPARE(reminderColumn(2), QStringLiteral("已处理"));

    QSignalSpy refreshed(&home(), &FormHome::refreshed);
    tick(at(2024, 5, 2, 0, 0, 1));
    tick(at(2024, 5, 2, 0, 0, 2));
    tick(at(2024, 5, 2, 1, 0));
    QCOMPARE(refreshed.count(), 1);
    QCOMPARE(refreshed.at(0).at(0).toDate(), QDate(2024, 5, 2));
    QVERIFY(labelText(&home(), "lbl_date").contains(QStringLiteral("2024年5月2日")));
    QCOMPARE(texts(home().lvTodayTasks(), 1), (QStringList{"晨会", "五月二日的拜访"}));
    QCOMPARE(texts(home().lvTodayTasks(), 3), (QStringList{"待提醒", "待提醒"}));
    QCOMPARE(texts(home().lvBirthdays(), 0), (QStringList{"李四"}));
    QCOMPARE(home().lvOverdue()->topLevelItemCount(), 1);  // still 没交的标书
    QVERIFY(w.reminderWindows().isEmpty());
}

void ScheduleTest::homePageOpensWhatIsDoubleClicked() {
    addTask(9, "拜访", "2024-5-1", "15:00", 0, 0);
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES "
                       "(4, '王五', #1990-5-1#)"));
    TarvelMain& w = start(at(2024, 5, 1, 8, 0));
    const auto open = [&](QTreeWidget* list) {
        QTreeWidgetItem* item = list->topLevelItem(0);
        emit list->itemDoubleClicked(item, 0);
    };
    open(home().lvTodayTasks());
    QCOMPARE(w.currentPageCode(), page::Task);
    QCOMPARE(w.history().c_RecordID(), 9);
    QCOMPARE(labelText(w.currentPage(), "lbl_condition"), QStringLiteral("条件：WHERE tas_id=9"));
    w.ShowPage(page::Home);
    open(home().lvBirthdays());
    QCOMPARE(w.currentPageCode(), page::ContactDetail);
    QCOMPARE(w.history().c_RecordID(), 4);

    // An unsaved edit is asked about first; No stays.
    w.ShowPage(page::Home);
    setUnsaved(UnsavedModule::Task, true);
    dialogs_->answers = {false};
    open(home().lvTodayTasks());
    QCOMPARE(w.currentPageCode(), page::Home);
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("ask"));
}

void ScheduleTest::dismissedRepeatingReminderComesBackOnTheNextDay() {
    addTask(1, "晨会", "2024-5-1", "9:00", 1, 1, "2024-5-31");
    TarvelMain& w = start(at(2024, 5, 2, 8, 59, 59));
    QVERIFY(tick(at(2024, 5, 2, 8, 59, 59)).isEmpty());
    QCOMPARE(reminderColumn(1), QStringLiteral("待提醒"));
    QCOMPARE(tick(at(2024, 5, 2, 9, 0)), (QList<int>{1}));
    QCOMPARE(reminderColumn(1), QStringLiteral("已提醒"));
    QCOMPARE(w.reminderWindows().first()->objectName(), QStringLiteral("form_sch_remind"));
    QVERIFY(w.reminderWindows().first()->isVisible());
    QCOMPARE(tick(at(2024, 5, 2, 9, 0, 1)), (QList<int>{1}));  // one window, not two

    clickIn(w.reminderWindows().first(), "cmd_cancel");
    QVERIFY(w.reminderWindows().isEmpty());
    QCOMPARE(reminderColumn(1), QStringLiteral("已处理"));
    QCOMPARE(recordvalue::dateTime(firstValue(
                 QStringLiteral("SELECT tas_last_remind_date FROM tasks WHERE tas_id=1"))),
             at(2024, 5, 2, 0, 0));
    QVERIFY(tick(at(2024, 5, 2, 9, 0, 2)).isEmpty());
    QVERIFY(tick(at(2024, 5, 2, 23, 59, 59)).isEmpty());
    // Read again the same day (the home page button), it stays dismissed.
    QTest::mouseClick(child<QPushButton>(home(), "cmd_refresh"), Qt::LeftButton);
    QVERIFY(tick(at(2024, 5, 2, 23, 59, 59)).isEmpty());

    QVERIFY(tick(at(2024, 5, 3, 8, 59, 59)).isEmpty());
    QCOMPARE(tick(at(2024, 5, 3, 9, 0)), (QList<int>{1}));
}

void ScheduleTest::dismissedOneTimeReminderEndsForLaterOccurrences() {
    addTask(1, "周报", "2024-5-1", "10:00", 7, 0);  // weekly, Wednesdays
    TarvelMain& w = start(at(2024, 5, 1, 10, 0));
    QCOMPARE(tick(at(2024, 5, 1, 10, 0)), (QList<int>{1}));
    clickIn(w.reminderWindows().first(), "cmd_cancel");
    QCOMPARE(firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=1")).toInt(), 0);
    QVERIFY(tick(at(2024, 5, 8, 10, 0)).isEmpty());
    QCOMPARE(texts(home().lvTodayTasks(), 1), (QStringList{"周报"}));  // listed, not due
    QCOMPARE(reminderColumn(1), QString());
    QVERIFY(tick(at(2024, 5, 15, 12, 0)).isEmpty());
}

void ScheduleTest::snoozedReminderFiresAgainAtTheNewTime() {
    addTask(1, "提交报价", "2024-5-1", "23:00", 0, 0);
    TarvelMain& w = start(at(2024, 5, 1, 23, 50));
    QCOMPARE(tick(at(2024, 5, 1, 23, 50)), (QList<int>{1}));
    FormSchRemind* window = w.reminderWindows().first();
    auto* delay = child<QLineEdit>(*window, "txt_delay");
    delay->selectAll();
    QTest::keyClicks(delay, "9");
    clickIn(window, "cmd_delay");
    QVERIFY(w.reminderWindows().isEmpty());
    QCOMPARE(reminderColumn(1), QStringLiteral("延迟到 23:59"));
    QVERIFY(tick(at(2024, 5, 1, 23, 58, 59)).isEmpty());
    QCOMPARE(tick(at(2024, 5, 1, 23, 59)), (QList<int>{1}));
    QCOMPARE(firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=1")).toInt(), 1);
    // At 23:59 no delay is left: the window's own seam refuses it.
    FormSchRemind* again = w.reminderWindows().first();
    again->setDialogs(dialogs_);
    clickIn(again, "cmd_delay");
    QCOMPARE(w.reminderWindows().size(), 1);
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].text,
             QStringLiteral("您延迟的时间不能超过今天晚上23:59 ! 请重新输入延迟分钟数。"));
    // Still open at midnight, it closes: answered later it would act on the new day's entries.
    QVERIFY(tick(at(2024, 5, 2, 0, 0, 1)).isEmpty());
}

void ScheduleTest::reminderOpensItsTaskInTheMainWindow() {
    addTask(5, "开会", "2024-5-1", "9:00", 0, 0);
    TarvelMain& w = start(at(2024, 5, 1, 9, 0));
    QCOMPARE(tick(at(2024, 5, 1, 9, 0)), (QList<int>{5}));
    const int visits = w.history().ListCount();
    clickIn(w.reminderWindows().first(), "cmd_opentask");
    QCOMPARE(w.currentPageCode(), page::Schedule);
    QCOMPARE(labelText(w.currentPage(), "lbl_condition"), QStringLiteral("条件：WHERE tas_id= 5"));
    QCOMPARE(w.history().ListCount(), visits + 1);
    QCOMPARE(w.history().c_StrCondition(), QStringLiteral("WHERE tas_id= 5"));
    QCOMPARE(w.reminderWindows().size(), 1);
}

void ScheduleTest::statisticsPageFromTheScheduleModule() {
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday) VALUES "
                       "(1, '张三', #1990-5-1#)"));
    TarvelMain& w = start(at(2024, 5, 1, 8, 0));
    w.toolbarAction(QStringLiteral("schedule"))->trigger();
    QTest::mouseClick(child<QPushButton>(*w.currentPage(), "cmd_sch_stat"), Qt::LeftButton);
    QCOMPARE(w.currentPageCode(), page::ScheduleStatistics);
    QCOMPARE(w.currentPage()->objectName(), QStringLiteral("form_sch_stat"));
    QCOMPARE(w.currentPage()->windowTitle(), QStringLiteral("日程安排 - 统计"));

    QLabel* birthdays = indexed<QLabel>(*w.currentPage(), "lbl_Selection", 11);
    QTest::mouseClick(birthdays, Qt::LeftButton, {}, birthdays->rect().center());
    QCOMPARE(w.currentPageCode(), page::ContactList);
    QCOMPARE(labelText(w.currentPage(), "lbl_condition"),
             QStringLiteral("条件：WHERE con_check= true"));
    QCOMPARE(firstValue(QStringLiteral("SELECT con_check FROM contacts WHERE con_id=1")).toInt(),
             -1);

    // The warning of a long period comes through the main window's seam.
    w.toolbarAction(QStringLiteral("back"))->trigger();
    QCOMPARE(w.currentPageCode(), page::ScheduleStatistics);
    child<QDateEdit>(*w.currentPage(), "DT_day1")->setDate(QDate(2024, 1, 1));
    QLabel* ending = indexed<QLabel>(*w.currentPage(), "lbl_Selection", 12);
    QTest::mouseClick(ending, Qt::LeftButton, {}, ending->rect().center());
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("warning"));
    QCOMPARE(w.currentPageCode(), page::OpportunityList);
}

QTEST_MAIN(ScheduleTest)
#include "schedule_test.moc"
