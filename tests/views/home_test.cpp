// The home page's lists: what they show for a day, and a list that cannot be
// read saying so instead of showing empty.
#include <QGroupBox>
#include <QTreeWidget>
#include <QtTest>

#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "views/home/formhome.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {
// Each row's cells joined by "|".
QStringList rows(const QTreeWidget& list) {
    QStringList out;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QStringList cells;
        for (int c = 0; c < list.columnCount(); ++c) cells << list.topLevelItem(i)->text(c);
        out << cells.join(QLatin1Char('|'));
    }
    return out;
}
}  // namespace

class HomeTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2026, 3, 2, 8));
        run("INSERT INTO opportunities (opp_id, opp_subject, opp_die_date, opp_phase, "
            "opp_estimate_sale) VALUES (1, '服务器', #2026-3-9 17:00#, '谈判', 12000.5), "
            "(2, '太远', #2026-3-10#, '谈判', 1), (3, '已过', #2026-3-1#, '谈判', 1)");
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, "
            "tas_closedate, tas_closed) VALUES (1, '回电话', #2026-2-27#, #14:30#, 0, "
            "#2026-2-27#, 0), (2, '做完了', #2026-2-26#, NULL, 0, #2026-2-26#, -1), "
            "(3, '太早', #2026-1-30#, NULL, 0, #2026-1-30#, 0), (4, '每天', #2026-2-1#, "
            "NULL, 1, #2026-12-31#, 0)");
    }

    void cleanup() { end(); }
    void listsShowTheWeekAheadAndTheMonthBehind() {
        FormHome home(today_);
        home.refresh();
        QCOMPARE(rows(*home.lvOpportunities()),
                 QStringList{QStringLiteral("3月9日 周一|服务器|谈判|12,000.50")});
        QCOMPARE(child<QGroupBox>(home, "fra_ending_opportunities")->title(),
                 QStringLiteral("一周内结束的项目机会（1）"));
        QCOMPARE(rows(*home.lvOverdue()), QStringList{QStringLiteral("2月27日 周五|14:30|回电话")});
        QCOMPARE(rows(*home.lvTodayTasks()), QStringList{QStringLiteral("|每天|未完成|")});
    }

    void aListThatCannotBeReadSaysSo() {
        FormHome home(today_);
        run("DROP TABLE opportunities");
        home.refresh();
        QCOMPARE(home.lvOpportunities()->topLevelItemCount(), 1);
        QVERIFY2(home.lvOpportunities()->topLevelItem(0)->text(0).startsWith(
                     QStringLiteral("无法读取：loadEndingOpportunities出错，原因可能是")),
                 qPrintable(home.lvOpportunities()->topLevelItem(0)->text(0)));
        QCOMPARE(child<QGroupBox>(home, "fra_ending_opportunities")->title(),
                 QStringLiteral("一周内结束的项目机会（读取失败）"));
        // The other lists are read as ever.
        QCOMPARE(home.lvOverdue()->topLevelItemCount(), 1);
        QCOMPARE(child<QGroupBox>(home, "fra_overdue_tasks")->title(),
                 QStringLiteral("最近30天过期未完成的日程（1）"));

        run("DROP TABLE tasks");
        home.refresh();
        QVERIFY(
            home.lvTodayTasks()->topLevelItem(0)->text(0).startsWith(QStringLiteral("无法读取：")));
        QCOMPARE(child<QGroupBox>(home, "fra_today_tasks")->title(),
                 QStringLiteral("今日日程（读取失败）"));
        QVERIFY(
            home.lvOverdue()->topLevelItem(0)->text(0).startsWith(QStringLiteral("无法读取：")));
    }

private:
    TodayList today_;
};

QTEST_MAIN(HomeTest)
#include "home_test.moc"
