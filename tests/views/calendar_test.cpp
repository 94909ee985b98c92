// The schedule page: which days of the month, week and day views show a
// task, double clicks that open or start a task, moving through dates and
// views, the category panel, and the page history returning to a view.
#include <QAction>
#include <QDir>
#include <QListWidget>
#include <QTreeWidget>
#include <QtTest>

#include "shell/mainwindow.h"
#include "store/clock.h"
#include "tests/views/quietmain.h"
#include "tests/views/screenfixture.h"
#include "views/schedule/formschall.h"
#include "views/schedule/formschdetail.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

// The days of a month view whose list holds a task with this subject.
QList<QDate> daysShowing(const MonthView& view, const QString& subject) {
    QList<QDate> days;
    for (DayCell* cell : view.cells())
        for (int i = 0; i < cell->tasks()->count(); ++i)
            if (cell->tasks()->item(i)->text().endsWith(subject)) days << cell->day();
    return days;
}

DayCell* cellOf(const MonthView& view, const QDate& day) {
    for (DayCell* cell : view.cells())
        if (cell->day() == day) return cell;
    return nullptr;
}

// As a user does it: the first click selects, the second is the double click.
void doubleClick(QWidget* viewport, const QPoint& at) {
    QTest::mouseClick(viewport, Qt::LeftButton, {}, at);
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, at);
}

}  // namespace

class CalendarTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 4, 10, 9, 0));
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
            "tas_closed, tas_remind, tas_outlay, tas_type) VALUES "
            "(1, '周会', #2024-3-6#, #9:30#, 7, #2024-12-31#, 0, 1, 0, '会议'), "
            "(2, '月结', #2024-1-31#, #17:00#, 30, #2024-12-31#, 0, 0, 0, null), "
            "(3, '交房租', #2024-4-10#, #11:00#, 0, #2024-4-10#, 1, 0, 3500, null)");
    }
    void cleanup() {
        form_.reset();
        main_.reset();
        end();
    }

    // Which days a task falls on is checked against the engine in the schedule's
    // own tests; here, that the month view spans its six weeks and moves by month.
    void monthViewShowsItsWeeksAndMovesByMonth() {
        FormSchAll& page = open(QDate(2024, 5, 15));
        // May 2024's view runs from Sunday 28 April to Saturday 8 June.
        QList<QDate> wednesdays;
        for (QDate d(2024, 5, 1); d <= QDate(2024, 6, 8); d = d.addDays(7)) wednesdays << d;
        QCOMPARE(daysShowing(*page.monthView(), QStringLiteral("周会")), wednesdays);
        const QString line = cellOf(*page.monthView(), QDate(2024, 5, 1))->tasks()->item(0)->text();
        QCOMPARE(line, QStringLiteral("◷↻ 09:30 周会"));
        click(page, "cmd_next");
        QCOMPARE(page.date(), QDate(2024, 6, 15));
        click(page, "cmd_prev");
        click(page, "cmd_prev");
        QCOMPARE(daysShowing(*page.monthView(), QStringLiteral("月结")),
                 QList<QDate>{QDate(2024, 3, 31)});  // April's view: none in April itself
    }

    void dayShowsItsOutlayTodayAndDoneTasks() {
        FormSchAll& page = open(QDate(2024, 4, 10));
        DayCell* today = cellOf(*page.monthView(), QDate(2024, 4, 10));
        QCOMPARE(child<QLabel>(*today, "lbl_day_outlay")->text(), QStringLiteral("¥3500"));
        QVERIFY(today->palette().color(QPalette::Window) !=
                cellOf(*page.monthView(), QDate(2024, 4, 11))->palette().color(QPalette::Window));
        QListWidgetItem* done = today->tasks()->item(1);  // 09:30 周会, then 11:00 交房租
        QCOMPARE(done->text(), QStringLiteral("✔ 11:00 交房租"));
        QVERIFY(done->font().strikeOut());

        click(page, "Opt_week");
        QCOMPARE(page.weekView()->cells().first()->day(), QDate(2024, 4, 7));
        QCOMPARE(page.weekView()->cells()[3]->tasks()->count(), 2);
        click(page, "Opt_day");
        QTreeWidget* halfHours = page.dayView()->halfHours();
        QCOMPARE(halfHours->topLevelItemCount(),
                 48);  // two half hours hold a task instead of a blank
        QCOMPARE(halfHours->topLevelItem(19)->text(1), QStringLiteral("◷↻ 周会"));
        QCOMPARE(halfHours->topLevelItem(22)->text(0), QStringLiteral("11:00"));
    }

    void doubleClicksOpenOrStartATask() {
        FormSchAll& page = open(QDate(2024, 4, 10));
        QListWidget* list = cellOf(*page.monthView(), QDate(2024, 4, 10))->tasks();
        // A task opens on a double click and on Enter.
        doubleClick(list->viewport(), list->visualItemRect(list->item(0)).center());
        QCOMPARE(opened_.id, 1);
        opened_ = {};
        list->setCurrentRow(1);
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(opened_.id, 3);
        doubleClick(list->viewport(), QPoint(5, list->viewport()->height() - 3));
        QCOMPARE(opened_.id, 0);
        QCOMPARE(opened_.day, QDate(2024, 4, 10));

        click(page, "Opt_day");
        QTreeWidget* halfHours = page.dayView()->halfHours();
        emit halfHours->itemDoubleClicked(halfHours->topLevelItem(28), 0);  // 14:00, empty
        QCOMPARE(opened_.id, 0);
        QCOMPARE(opened_.time, QTime(14, 0));
        emit halfHours->itemDoubleClicked(halfHours->topLevelItem(22), 0);
        QCOMPARE(opened_.id, 3);
    }

    void categoryNarrowsTheCalendar() {
        FormSchAll& page = open(QDate(2024, 4, 10));
        QTreeWidget* tree = page.categories();
        QTreeWidgetItem* meetings = nullptr;
        for (QTreeWidgetItem* item :
             tree->findItems(QStringLiteral("会议"), Qt::MatchStartsWith | Qt::MatchRecursive))
            meetings = item;
        QVERIFY(meetings);
        QCOMPARE(meetings->text(0), QStringLiteral("会议 (1)"));
        emit tree->itemClicked(meetings, 0);
        QCOMPARE(daysShowing(*page.monthView(), QStringLiteral("月结")), QList<QDate>());
        QCOMPARE(daysShowing(*page.monthView(), QStringLiteral("周会")).size(), 6);
        emit tree->itemClicked(tree->topLevelItem(0), 0);  // all
        QCOMPARE(daysShowing(*page.monthView(), QStringLiteral("月结")).size(), 1);
    }

    void historyReturnsToTheViewAndDate() {
        main_ = tarvel::testsupport::quietMain(dialogs_);
        main_->Toolbar1ButtonClick(QStringLiteral("schedule"));
        auto* page = qobject_cast<FormSchAll*>(main_->currentPage());
        QVERIFY(page);
        click(*page, "Opt_week");
        click(*page, "cmd_next");
        QCOMPARE(main_->history().c_PageNo(), qint16(FormSchAll::Week));
        QCOMPARE(main_->history().c_Date(), QDate(2024, 4, 17));

        // Into a task and back.
        auto* cell = page->weekView()->cells()[3];
        doubleClick(cell->tasks()->viewport(),
                    cell->tasks()->visualItemRect(cell->tasks()->item(0)).center());
        auto* task = qobject_cast<FormSchDetail*>(main_->currentPage());
        QVERIFY(task);
        QCOMPARE(task->taskId(), 1);
        main_->Toolbar1ButtonClick(QStringLiteral("back"));
        QCOMPARE(main_->currentPage(), page);
        QCOMPARE(page->view(), FormSchAll::Week);
        QCOMPARE(page->date(), QDate(2024, 4, 17));
    }

    void calendarFilesGoOutAndComeIn() {
        FormSchAll& page = open(QDate(2024, 4, 10));
        page.setFileDialogs(files_);
        const QString path = QDir(file_->folder()).filePath(QStringLiteral("out.ics"));
        files_->names = {path};
        page.findChild<QAction*>(QStringLiteral("m_export_all"))->trigger();
        QCOMPARE(dialogs_->lastText(), QStringLiteral("已导出3项日程。"));

        // Back in: three more tasks, the calendar shows both copies of the rent.
        files_->names = {path};
        click(page, "cmd_sch_import");
        QVERIFY2(dialogs_->lastText().startsWith(QStringLiteral("新增 3，更新 0")),
                 qPrintable(dialogs_->lastText()));
        QCOMPARE(cellOf(*page.monthView(), QDate(2024, 4, 10))->tasks()->count(), 4);

        // Cancelled: nothing asked, nothing done.
        const int shown = int(dialogs_->shown.size());
        click(page, "cmd_sch_import");
        QCOMPARE(int(dialogs_->shown.size()), shown);
    }

private:
    FormSchAll& open(const QDate& day, FormSchAll::View view = FormSchAll::Month) {
        form_ = std::make_unique<FormSchAll>();
        form_->setDialogs(dialogs_);
        form_->setTaskOpener([this](int id, const QDate& d, const QTime& t) {
            opened_ = {id, d, t};
        });
        form_->fill({page::Schedule, QString(), 0, day, qint16(view)});
        form_->resize(1100, 760);
        form_->show();
        return *form_;
    }

    struct Opened {
        int id = -1;
        QDate day;
        QTime time;
    } opened_;
    std::unique_ptr<FormSchAll> form_;
    std::unique_ptr<TarvelMain> main_;
};

QTEST_MAIN(CalendarTest)
#include "calendar_test.moc"
