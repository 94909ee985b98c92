// The reminder window: its fields, the digit-only delay box, snoozing up to
// 23:59 with the refusal through the window's own message seam, dismissing,
// and opening the task.
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include "records/recordbase.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/data.h"
#include "tests/views/scripted.h"
#include "views/formschremind.h"

using namespace tarvel;
using tarvel::testsupport::at;
using tarvel::testsupport::child;
using tarvel::testsupport::firstValue;
using tarvel::testsupport::run;
using tarvel::testsupport::ScriptedDialogs;

namespace {

const QString kTooLate =
    QStringLiteral("您延迟的时间不能超过今天晚上23:59 ! 请重新输入延迟分钟数。");

struct Opened {
    qint16 page;
    QString condition;
    qint32 recordId;
};

}  // namespace

class RemindTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        opened_.clear();
        today_ = TodayList();  // what fired in the previous test is gone
        // A one-time reminder at 23:00 on 2024-5-1 and a daily repeating one.
        run(QStringLiteral(
            "INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_type, "
            "tas_important, tas_tag, tas_description, tas_cycle, tas_closedate, tas_remind, "
            "tas_again) VALUES (7, '给''老王''回电话', #2024-5-1#, #23:00#, '电话', '重要', "
            "'客户', '第一行\n第二行', 0, #2024-5-1#, 1, 0)"));
        run(QStringLiteral(
            "INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, "
            "tas_closedate, tas_remind, tas_again, tas_last_remind_date) VALUES (8, '晨会', "
            "#2024-4-1#, #9:05#, 1, #2024-12-31#, 1, 1, #2024-4-30#)"));
    }
    void cleanup() {
        window_.reset();
        file_.reset();
        Clock::reset();
    }

    void showsTheTaskReadOnly();
    void snoozeAt2350TakesNineMinutesNotTen();
    void delayBoxTakesDigitsOnly();
    void dismissingStampsTheTaskAndHandlesTheEntry();
    void openTaskAsksForTheTaskList();

private:
    // The reminder window of a task that has just fired at `now`.
    FormSchRemind& fired(int taskId, const QDateTime& now) {
        Clock::setFixed(now);
        if (!today_.load()) qFatal("%s", qPrintable(today_.ErrMsg()));
        QList<int> ids;
        for (const TodayTask& t : today_.fire(now)) ids << t.id;
        if (!ids.contains(taskId)) qFatal("task %d did not fire", taskId);
        window_ = std::make_unique<FormSchRemind>(taskId, today_);
        window_->setDialogs(dialogs_);
        window_->setPageSwitch([this](qint16 page, const QString& condition, qint32 id) {
            opened_.append({page, condition, id});
        });
        if (!window_->load()) qFatal("task %d not loaded", taskId);
        window_->show();
        return *window_;
    }
    static void clickButton(QWidget& w, const char* name) {
        QTest::mouseClick(child<QPushButton>(w, name), Qt::LeftButton);
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    TodayList today_;
    std::unique_ptr<FormSchRemind> window_;
    QList<Opened> opened_;
};

void RemindTest::showsTheTaskReadOnly() {
    // A repeating reminder's dismissal lasts the day.
    FormSchRemind& daily = fired(8, at(2024, 5, 1, 9, 5));
    QCOMPARE(daily.objectName(), QStringLiteral("form_sch_remind"));
    QCOMPARE(child<QLineEdit>(daily, "txt_time")->text(), QStringLiteral("09:05"));
    QCOMPARE(child<QPushButton>(daily, "cmd_cancel")->text(), QStringLiteral("今天不再提醒"));

    window_.reset();
    FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 0));
    QCOMPARE(child<QLineEdit>(w, "txt_subject")->text(), QStringLiteral("给'老王'回电话"));
    QCOMPARE(child<QLineEdit>(w, "txt_time")->text(), QStringLiteral("23:00"));
    QCOMPARE(child<QLineEdit>(w, "txt_type")->text(), QStringLiteral("电话"));
    QCOMPARE(child<QLineEdit>(w, "txt_important")->text(), QStringLiteral("重要"));
    QCOMPARE(child<QLineEdit>(w, "txt_tag")->text(), QStringLiteral("客户"));
    auto* description = child<QPlainTextEdit>(w, "txt_description");
    QCOMPARE(description->toPlainText(), QStringLiteral("第一行\n第二行"));
    QCOMPARE(child<QLineEdit>(w, "txt_delay")->text(), QStringLiteral("10"));
    QCOMPARE(child<QPushButton>(w, "cmd_cancel")->text(), QStringLiteral("不再提醒"));

    // Key presses in the fields change nothing.
    for (const char* name : {"txt_subject", "txt_time", "txt_type", "txt_important", "txt_tag"}) {
        auto* field = child<QLineEdit>(w, name);
        const QString before = field->text();
        QTest::keyClicks(field, "x1");
        QTest::keyClick(field, Qt::Key_Backspace);
        QCOMPARE(field->text(), before);
    }
    QTest::keyClicks(description, "x");
    QCOMPARE(description->toPlainText(), QStringLiteral("第一行\n第二行"));
}

void RemindTest::snoozeAt2350TakesNineMinutesNotTen() {
    FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 50));
    auto* delay = child<QLineEdit>(w, "txt_delay");
    QCOMPARE(delay->text(), QStringLiteral("10"));
    clickButton(w, "cmd_delay");
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("info"));
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
    QCOMPARE(dialogs_->shown[0].text, kTooLate);
    QVERIFY(w.isVisible());  // refused: the window stays for another number
    QCOMPARE(today_.task(7)->state, TodayTask::State::Showing);
    QVERIFY(!today_.task(7)->snoozed);

    delay->selectAll();  // typing replaces the selection
    QTest::keyClicks(delay, "9");
    QCOMPARE(delay->text(), QStringLiteral("9"));
    clickButton(w, "cmd_delay");
    QCOMPARE(dialogs_->shown.size(), 1);
    QVERIFY(!w.isVisible());
    const TodayTask* entry = today_.task(7);
    QCOMPARE(entry->state, TodayTask::State::Waiting);
    QCOMPARE(entry->fireAt, at(2024, 5, 1, 23, 59));
    QVERIFY(today_.fire(at(2024, 5, 1, 23, 58, 59)).isEmpty());
    QCOMPARE(today_.fire(at(2024, 5, 1, 23, 59)).size(), 1);
    // A snooze writes nothing.
    QCOMPARE(firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=7")).toInt(), 1);
}

void RemindTest::delayBoxTakesDigitsOnly() {
    FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 0));
    auto* delay = child<QLineEdit>(w, "txt_delay");
    delay->deselect();
    delay->end(false);
    QTest::keyClicks(delay, "abc -+.");
    QTest::keyClick(delay, Qt::Key_Backspace);  // dropped too, deliberately
    QCOMPARE(delay->text(), QStringLiteral("10"));
    QTest::keyClicks(delay, "x5y");
    QCOMPARE(delay->text(), QStringLiteral("105"));
    QApplication::clipboard()->setText(QStringLiteral("2a"));
    QTest::keyClick(delay, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(delay->text(), QStringLiteral("105"));
    QApplication::clipboard()->setText(QStringLiteral("2"));
    QTest::keyClick(delay, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(delay->text(), QStringLiteral("1052"));
}

void RemindTest::dismissingStampsTheTaskAndHandlesTheEntry() {
    FormSchRemind& w = fired(8, at(2024, 5, 1, 9, 30));
    QSignalSpy changed(&w, &FormSchRemind::entryChanged);
    clickButton(w, "cmd_cancel");
    QVERIFY(!w.isVisible());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(today_.task(8)->state, TodayTask::State::Handled);
    QCOMPARE(recordvalue::dateTime(firstValue(
                 QStringLiteral("SELECT tas_last_remind_date FROM tasks WHERE tas_id=8"))),
             at(2024, 5, 1, 0, 0));
    QCOMPARE(firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=8")).toInt(), 1);

    window_.reset();
    FormSchRemind& once = fired(7, at(2024, 5, 1, 23, 30));
    clickButton(once, "cmd_cancel");
    QCOMPARE(firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=7")).toInt(), 0);
    QVERIFY(dialogs_->shown.isEmpty());
}

void RemindTest::openTaskAsksForTheTaskList() {
    FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 0));
    clickButton(w, "cmd_opentask");
    QCOMPARE(opened_.size(), 1);
    QCOMPARE(opened_[0].page, page::Schedule);
    QCOMPARE(opened_[0].condition, QStringLiteral("WHERE tas_id= 7"));
    QCOMPARE(opened_[0].recordId, 7);
    QVERIFY(w.isVisible());  // still to be dismissed or snoozed
    QCOMPARE(today_.task(7)->state, TodayTask::State::Showing);
}

QTEST_MAIN(RemindTest)
#include "remind_test.moc"
