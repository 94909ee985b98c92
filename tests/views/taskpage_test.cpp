// The task page: the checks of a save (both time messages, the outlay), what
// a save stores with recurrence and the next schedule, the home page's today
// list after a save, a task begun from a record, and the related links.
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QtTest>

#include "browse/tickmodel.h"
#include "browse/unsaved.h"
#include "exchange/tableexport.h"
#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "shell/mainwindow.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "tests/views/quietmain.h"
#include "tests/views/screenfixture.h"
#include "views/schedule/formschdetail.h"
#include "views/schedule/taskrelatedpanel.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class TaskPageTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 1, 10, 0));
        form_ = std::make_unique<FormSchDetail>();
        form_->setDialogs(dialogs_);
        PageRequest request;
        request.date = QDate(2024, 5, 6);
        form_->fill(request);
    }

    void cleanup() {
        form_.reset();
        main_.reset();
        end();
    }

    // Which typed times pass is checked in schedule_test; here, that both time
    // boxes are checked on saving, with each message, and nothing is stored.
    void typedTimesAreChecked_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("shownAfter");
        const auto row = [](const char* typed, const char* message, const char* shownAfter) {
            QTest::newRow(typed) << QString::fromUtf8(typed) << QString::fromUtf8(message)
                                 << QString::fromUtf8(shownAfter);
        };
        row("930", "小时和分钟之间请用冒号(:)分隔开！", "930");
        row("25:00", "您输入的时间不符合格式！请检查", "10:0");
    }

    void typedTimesAreChecked() {
        QFETCH(QString, typed);
        QFETCH(QString, message);
        QFETCH(QString, shownAfter);
        type("txt_sch_subject", QStringLiteral("拜访"));
        for (const char* combo : {"cbo_sch_time", "cbo_sch_nexttime"}) {
            dialogs_->shown.clear();
            const bool next = QByteArray(combo) == "cbo_sch_nexttime";
            child<QCheckBox>(*form_, "chk_sch_nextdate")->setChecked(next);
            setTime("cbo_sch_time", next ? QStringLiteral("9:30") : typed);
            setTime(combo, typed);
            QVERIFY(!form_->cmdSaveClick());
            QCOMPARE(dialogs_->lastText(), message);
            QCOMPARE(child<QComboBox>(*form_, combo)->currentText(), shownAfter);
            QCOMPARE(tasks(), 0);
        }
    }

    void outlayThatIsNoNumberIsRefused() {
        type("txt_sch_subject", QStringLiteral("出差"));
        type("txt_sch_outlay", QStringLiteral("12元"));
        QVERIFY(!form_->cmdSaveClick());
        QCOMPARE(dialogs_->lastText(), QStringLiteral("费用必须是数字！请检查"));
        QCOMPARE(tasks(), 0);
        QVERIFY(isUnsaved(UnsavedModule::Task));
        type("txt_sch_outlay", QStringLiteral("1,250.5"));
        QVERIFY(form_->cmdSaveClick());
        QCOMPARE(firstValue("SELECT tas_outlay FROM tasks").toDouble(), 1250.5);
        QVERIFY(!isUnsaved(UnsavedModule::Task));
    }

    void savesEveryFieldAndTheRecurrence() {
        type("txt_sch_subject", QStringLiteral("月度'报表"));
        child<QDateEdit>(*form_, "DT_sch_date")->setDate(QDate(2024, 1, 31));
        setTime("cbo_sch_time", QStringLiteral("14:30"));
        child<QComboBox>(*form_, "cbo_sch_cycle")->setCurrentText(QStringLiteral("每月"));
        child<QDateEdit>(*form_, "DT_sch_closedate")->setDate(QDate(2024, 12, 31));
        child<QComboBox>(*form_, "Cbo_sch_type")->setEditText(QStringLiteral("会议"));
        child<QComboBox>(*form_, "cbo_sch_importance")->setEditText(QStringLiteral("重要"));
        child<QComboBox>(*form_, "cbo_sch_tag")->setEditText(QStringLiteral("财务"));
        for (const char* box : {"chk_sch_remind", "chk_sch_again", "chk_sch_private"})
            child<QCheckBox>(*form_, box)->setChecked(true);
        child<QPlainTextEdit>(*form_, "rtxt_sch_memo")->setPlainText(QStringLiteral("带上发票"));
        QVERIFY(form_->cmdSaveClick());
        QVERIFY(form_->taskId() != 0);
        QCOMPARE(taskRow("tas_subject,tas_date,tas_time,tas_cycle,tas_closedate,tas_type,"
                         "tas_important,tas_tag,tas_remind || tas_again || tas_private || "
                         "tas_closed,tas_description"),
                 QStringLiteral("月度'报表|2024-01-31 00:00:00|1899-12-30 14:30:00|30|"
                                "2024-12-31 00:00:00|会议|重要|财务|1110|带上发票"));

        // Edited: one-off now, done; the row is rewritten, not added.
        child<QComboBox>(*form_, "cbo_sch_cycle")->setCurrentText(QStringLiteral("不重复"));
        child<QCheckBox>(*form_, "chk_sch_completed")->setChecked(true);
        QVERIFY(isUnsaved(UnsavedModule::Task));
        QVERIFY(form_->cmdSaveClick());
        QCOMPARE(tasks(), 1);
        QCOMPARE(taskRow("tas_cycle || tas_closed || tas_again,tas_closedate"),
                 QStringLiteral("010|2024-01-31 00:00:00"));

        // Deleted after Yes, with its links.
        run(QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (5, %1)")
                .arg(form_->taskId()));
        dialogs_->answers = {true};
        click(*form_, "cmd_sch_delete");
        QCOMPARE(tasks(), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_tasks"), 0);
        // ... into the recycle bin (what it keeps there is recyclebin_test's).
        QCOMPARE(count("SELECT COUNT(*) FROM bin_entries WHERE bin_kind=4"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM bin_rows WHERE bin_table='contacts_tasks'"), 1);
    }

    // 无结束日期 beside the end date: stored as the open end the task-date
    // condition selects on any later day, shown again when the task is opened,
    // and in the lists as words.
    void openEndIsStoredSelectedAndShown() {
        auto* noEnd = child<QCheckBox>(*form_, "chk_sch_noend");
        auto* close = child<QDateEdit>(*form_, "DT_sch_closedate");
        QVERIFY(!noEnd->isEnabled());  // a one-off task has no end to leave open
        type("txt_sch_subject", QStringLiteral("周例会"));
        child<QComboBox>(*form_, "cbo_sch_cycle")->setCurrentText(QStringLiteral("每周"));
        QVERIFY(noEnd->isEnabled());
        close->setDate(QDate(2024, 4, 1));  // before the start: no matter once the end is open
        noEnd->setChecked(true);
        QVERIFY(!close->isEnabled());
        QVERIFY(form_->cmdSaveClick());
        QCOMPARE(taskRow("tas_closedate"), QStringLiteral("9999-12-31 00:00:00"));
        const QDate farMonday = QDate(2024, 5, 6).addDays(7 * 1000);
        for (int later : {0, 1})  // selected on its weekday only
            QCOMPARE(tasks(taskDateCondition(farMonday.addDays(later))), later ? 0 : 1);

        PageRequest again;
        again.recordId = form_->taskId();
        form_->fill(again);
        QVERIFY(noEnd->isChecked());
        QVERIFY(!close->isEnabled());
        QCOMPARE(exchange::cellText(jetdate::naive(openEndDate())), QStringLiteral("无结束日期"));

        // Cleared: the date typed is the end again.
        noEnd->setChecked(false);
        close->setDate(QDate(2024, 6, 30));
        QVERIFY(form_->cmdSaveClick());
        QCOMPARE(taskRow("tas_closedate"), QStringLiteral("2024-06-30 00:00:00"));
    }

    // A task begun from a contact is named after it and linked to it and its
    // account; the next schedule saved with it gets the same links.
    void taskFromAContactAndItsNextScheduleAreLinked() {
        run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '韩梅梅')");
        run("INSERT INTO accounts (acc_id, acc_name) VALUES (3, '星光公司')");
        run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (3, 5)");
        form_->newTaskFor(kind::Contact, 5);
        const QString subject = child<QLineEdit>(*form_, "txt_sch_subject")->text();
        QVERIFY2(subject.endsWith(QStringLiteral(":韩梅梅")), qPrintable(subject));
        child<QCheckBox>(*form_, "chk_sch_nextdate")->setChecked(true);
        QVERIFY(child<QDateEdit>(*form_, "DT_sch_nextdate")->isEnabled());
        child<QDateEdit>(*form_, "DT_sch_nextdate")->setDate(QDate(2024, 5, 8));
        setTime("cbo_sch_nexttime", QStringLiteral("16:00"));
        child<QCheckBox>(*form_, "chk_sch_remind")->setChecked(true);
        QVERIFY(form_->cmdSaveClick());
        QCOMPARE(tasks(), 2);
        QCOMPARE(taskRow("tas_date,tas_time,tas_remind,tas_subject", "tas_id DESC"),
                 QStringLiteral("2024-05-08 00:00:00|1899-12-30 16:00:00|1|") + subject);
        for (const char* links : {"contacts_tasks WHERE con_id=5", "accounts_tasks WHERE acc_id=3"})
            QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(links)), 2);
        QCOMPARE(form_->relatedPanel()->linkedList(kind::Contact)->count(), 1);
        QVERIFY(!child<QCheckBox>(*form_, "chk_sch_nextdate")->isChecked());
    }

    void savingForTodayRefreshesTheHomePage() {
        main_ = quietMain(dialogs_);
        QVERIFY(main_->OpenTask(0, Clock::today(), QTime(15, 0)));
        auto* page = qobject_cast<FormSchDetail*>(main_->currentPage());
        QVERIFY(page);
        QCOMPARE(child<QComboBox>(*page, "cbo_sch_time")->currentText(), QStringLiteral("15:00"));
        child<QLineEdit>(*page, "txt_sch_subject")->setText(QStringLiteral("下午茶"));
        child<QCheckBox>(*page, "chk_sch_remind")->setChecked(true);
        const int before = main_->homeRefreshCount();
        QVERIFY(page->cmdSaveClick());
        QCOMPARE(main_->homeRefreshCount(), before + 1);
        const TodayTask* entry = main_->todayList().task(page->taskId());
        QVERIFY(entry);
        QVERIFY(entry->due);
        // The reminder fires at its time in the same session.
        Clock::setFixed(at(2024, 5, 1, 15, 0));
        main_->Timer1Timer();
        QCOMPARE(main_->reminderWindows().size(), 1);

        // A task on another day leaves the home page alone.
        QVERIFY(main_->OpenTask(0, QDate(2024, 5, 9)));
        child<QLineEdit>(*page, "txt_sch_subject")->setText(QStringLiteral("下周"));
        QVERIFY(page->cmdSaveClick());
        QCOMPARE(main_->homeRefreshCount(), before + 1);
    }

    void relatedPanelAddsAndUnlinks() {
        run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (9, '服务器''升级'), "
            "(10, '网络改造')");
        TaskRelatedPanel* panel = form_->relatedPanel();
        QVERIFY(!child<QWidget>(*panel, "sch_opp")->isEnabled());  // nothing to link to yet
        type("txt_sch_subject", QStringLiteral("方案评审"));
        QVERIFY(form_->cmdSaveClick());
        QVERIFY(child<QWidget>(*panel, "sch_opp")->isEnabled());

        click(*panel, "cmd_sch_opp_add");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您没有选择任何要添加的记录"));
        child<QLineEdit>(*panel, "txt_sch_opp_find")->setText(QStringLiteral("服务器'"));
        auto* found = child<QListWidget>(*panel, "lst_sch_opp_found");
        QCOMPARE(found->count(), 1);
        found->item(0)->setSelected(true);
        click(*panel, "cmd_sch_opp_add");
        auto* linked = child<QListWidget>(*panel, "lst_sch_opp");
        QCOMPARE(linked->count(), 1);
        QCOMPARE(linked->item(0)->text(), QStringLiteral("服务器'升级"));
        QCOMPARE(count("SELECT COUNT(*) FROM opportunities_tasks WHERE opp_id=9"), 1);

        linked->setCurrentRow(0);
        dialogs_->answers = {false};
        click(*panel, "cmd_sch_opp_delete");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您确定删除和此单位的相关性？"));
        QCOMPARE(linked->count(), 1);
        dialogs_->answers = {true};
        click(*panel, "cmd_sch_opp_delete");
        QCOMPARE(linked->count(), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM opportunities_tasks"), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM opportunities"), 2);
    }

private:
    void type(const char* control, const QString& value) {
        auto* edit = child<QLineEdit>(*form_, control);
        edit->setText(value);
        emit edit->textEdited(value);
    }

    void setTime(const char* combo, const QString& value) {
        child<QComboBox>(*form_, combo)->setEditText(value);
    }
    int tasks(const QString& where = QString()) {
        return count(QStringLiteral("SELECT COUNT(*) FROM tasks") + where);
    }
    // The first task's `columns` (SQL expressions) as stored, joined with '|'.
    static QString taskRow(const QString& columns, const char* order = "tas_id") {
        return text(QStringLiteral("SELECT '|' || %1 FROM tasks ORDER BY %2")
                        .arg(columns.split(',').join(QStringLiteral(" || '|' || ")),
                             QLatin1String(order)))
            .mid(1);
    }

    std::unique_ptr<FormSchDetail> form_;
    std::unique_ptr<TarvelMain> main_;
};

QTEST_MAIN(TaskPageTest)
#include "taskpage_test.moc"
