// The reminder window: its fields, the digit-only delay box, snoozing up to
// 23:59 with the refusal through the window's own message seam, dismissing,
// and opening the task.
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QtTest>

#include "records/recordbase.h"
#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "views/schedule/formschremind.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

QList<int> ids(const QList<TodayTask>& tasks) {
    QList<int> out;
    for (const TodayTask& t : tasks) out << t.id;
    return out;
}

int remindFlag(int taskId) {
    return firstValue(QStringLiteral("SELECT tas_remind FROM tasks WHERE tas_id=%1").arg(taskId))
        .toInt();
}

}  // namespace

class RemindTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin();
        opened_.clear();
        today_ = TodayList();  // what fired in the previous test is gone
        // A weekly one-time reminder at 23:00 from Wednesday 2024-5-1, and a
        // daily repeating one at 9:05.
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
            "tas_remind, tas_again) VALUES (7, '给''老王''回电话', #2024-5-1#, #23:00#, 7, "
            "#2024-12-31#, 1, 0), (8, '晨会', #2024-4-1#, #9:05#, 1, #2024-12-31#, 1, 1)");
        run("UPDATE tasks SET tas_last_remind_date=#2024-4-30# WHERE tas_id=8");
    }
    void cleanup() {
        window_.reset();
        end();
    }

    void showsTheTaskAndOpensIt() {
        // A repeating reminder's dismissal lasts the day; a one-time one's for good.
        QCOMPARE(child<QPushButton>(fired(8, at(2024, 5, 1, 9, 5)), "cmd_cancel")->text(),
                 QStringLiteral("今天不再提醒"));
        FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 0));
        QCOMPARE(child<QPushButton>(w, "cmd_cancel")->text(), QStringLiteral("不再提醒"));
        QCOMPARE(child<QLineEdit>(w, "txt_subject")->text(), QStringLiteral("给'老王'回电话"));
        QCOMPARE(child<QLineEdit>(w, "txt_time")->text(), QStringLiteral("23:00"));

        clickButton(w, "cmd_opentask");
        QCOMPARE(opened_, QStringList{QStringLiteral("%1 WHERE tas_id= 7 7").arg(page::Task)});
        QVERIFY(w.isVisible());  // still to be dismissed or snoozed
        QCOMPARE(today_.task(7)->state, TodayTask::State::Showing);
    }

    // When a snoozed or dismissed reminder fires again is the today list's concern
    // (schedule_test); here, that the window's buttons reach it and close the window.
    void snoozeAt2350TakesNineMinutesNotTen() {
        FormSchRemind& w = fired(7, at(2024, 5, 1, 23, 50));
        auto* delay = child<QLineEdit>(w, "txt_delay");
        QCOMPARE(delay->text(), QStringLiteral("10"));
        clickButton(w, "cmd_delay");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].text,
                 QStringLiteral("您延迟的时间不能超过今天晚上23:59 ! 请重新输入延迟分钟数。"));
        QVERIFY(w.isVisible());        // refused: the window stays for another number
        QTest::keyClicks(delay, "9");  // typing replaces the selection
        clickButton(w, "cmd_delay");
        QCOMPARE(dialogs_->shown.size(), 1);
        QVERIFY(!w.isVisible());
        QCOMPARE(today_.task(7)->fireAt, at(2024, 5, 1, 23, 59));
        QCOMPARE(remindFlag(7), 1);  // a snooze writes nothing
    }

    void delayBoxTakesDigitsOnly() {
        auto* delay = child<QLineEdit>(fired(7, at(2024, 5, 1, 23, 0)), "txt_delay");
        delay->end(false);
        QTest::keyClicks(delay, "abc -+.x5y");
        QCOMPARE(delay->text(), QStringLiteral("105"));
        QApplication::clipboard()->setText(QStringLiteral("2a"));
        QTest::keyClick(delay, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(delay->text(), QStringLiteral("105"));
    }

    void dismissalLastsTheDayOrForGood() {
        clickButton(fired(8, at(2024, 5, 1, 9, 30)), "cmd_cancel");
        QVERIFY(!window_->isVisible());
        QCOMPARE(remindFlag(8), 1);
        QCOMPARE(recordvalue::dateTime(
                     firstValue("SELECT tas_last_remind_date FROM tasks WHERE tas_id=8")),
                 at(2024, 5, 1));
        clickButton(fired(7, at(2024, 5, 1, 23, 30)), "cmd_cancel");
        QCOMPARE(remindFlag(7), 0);
        QCOMPARE(today_.task(7)->state, TodayTask::State::Handled);
        QVERIFY(dialogs_->shown.isEmpty());
    }

private:
    // The reminder window of a task that has just fired at `now`.
    FormSchRemind& fired(int taskId, const QDateTime& now) {
        Clock::setFixed(now);
        if (!ids(today_.fire(now)).contains(taskId)) qFatal("task %d did not fire", taskId);
        window_ = std::make_unique<FormSchRemind>(taskId, today_);
        window_->setDialogs(dialogs_);
        window_->setPageSwitch([this](qint16 page, const QString& condition, qint32 id) {
            opened_ << QStringLiteral("%1 %2 %3").arg(page).arg(condition).arg(id);
        });
        if (!window_->load()) qFatal("task %d not loaded", taskId);
        window_->show();
        return *window_;
    }
    static void clickButton(QWidget& w, const char* name) {
        QTest::mouseClick(child<QPushButton>(w, name), Qt::LeftButton);
    }

    TodayList today_;
    std::unique_ptr<FormSchRemind> window_;
    QStringList opened_;
};

QTEST_MAIN(RemindTest)
#include "remind_test.moc"
