// The schedule statistics page: its labels, date boxes and days box reach the
// statistics, whose messages show through the page's seam and whose filters
// go to the page switch. What each selection marks is checked in
// schedule_test.
#include <QDateEdit>
#include <QLineEdit>
#include <QtTest>

#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "views/schedule/formschstat.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class StatTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 20, 10));
        opened_.clear();
        page_ = std::make_unique<FormSchStat>();
        page_->setDialogs(dialogs_);
        page_->setPageSwitch([this](qint16 code, const QString& condition, qint32) {
            opened_ << QString::number(code) + QLatin1Char(' ') + condition;
        });
        page_->show();
    }

    void cleanup() {
        page_.reset();
        end();
    }

    void periodOfThirtyDaysIsQuietAndThirtyOneWarns() {
        select(3, QDate(2024, 4, 1), QDate(2024, 5, 1));  // 30 days
        QVERIFY(dialogs_->shown.isEmpty());
        QCOMPARE(opened_, QStringList{"22 WHERE con_create_date <= #2024-05-01#  AND "
                                      "con_create_date>=#2024-04-01#"});

        select(6, QDate(2024, 3, 31), QDate(2024, 5, 1));  // 31 days: a warning, then the list
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("warning"));
        QCOMPARE(dialogs_->shown[0].text,
                 QStringLiteral("您设置的日期间隔比较长,查询统计的时间会比较长"));
        QCOMPARE(opened_.size(), 2);
        QVERIFY(opened_[1].startsWith(QStringLiteral("40 ")));

        select(12, QDate(2024, 5, 2), QDate(2024, 5, 1));  // reversed: refused, nothing opens
        QCOMPARE(dialogs_->shown.size(), 2);
        QCOMPARE(dialogs_->shown[1].kind, QStringLiteral("info"));
        QCOMPARE(dialogs_->shown[1].text,
                 QStringLiteral("第二个日期小于第一个日期,请重新设置日期间隔"));
        QCOMPARE(opened_.size(), 2);

        // Not contacted for the days typed: the period plays no part.
        QTest::keyClicks(child<QLineEdit>(*page_, "txt_overdays"), "0");  // 150 days
        indexed<QPushButton>(*page_, "lbl_Selection", 1)->click();
        QCOMPARE(opened_.last(),
                 QStringLiteral("12 WHERE acc_recent_contact_date <= #2023-12-22#"));
        QCOMPARE(dialogs_->shown.size(), 2);

        // The field holds four digits at most; an empty one is refused and nothing opens.
        auto* days = child<QLineEdit>(*page_, "txt_overdays");
        days->clear();
        QTest::keyClicks(days, "999999");
        QCOMPARE(days->text(), QStringLiteral("9999"));
        days->clear();
        indexed<QPushButton>(*page_, "lbl_Selection", 0)->click();
        QCOMPARE(dialogs_->shown.size(), 3);
        QCOMPARE(opened_.size(), 3);
    }

private:
    void select(int index, const QDate& from, const QDate& to) {
        child<QDateEdit>(*page_, "DT_day1")->setDate(from);
        child<QDateEdit>(*page_, "DT_day2")->setDate(to);
        indexed<QPushButton>(*page_, "lbl_Selection", index)->click();
    }

    std::unique_ptr<FormSchStat> page_;
    QStringList opened_;
};

QTEST_MAIN(StatTest)
#include "stat_test.moc"
