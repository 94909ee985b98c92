// The schedule statistics page: its start values and captions, the period
// checks with both messages through the page's seam, the digit-only days box,
// the birthday marking, and the filters handed to the page switch.
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include "records/recordbase.h"
#include "schedule/statistics.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/controls.h"
#include "tests/views/data.h"
#include "tests/views/scripted.h"
#include "views/formschstat.h"

using namespace tarvel;
using tarvel::testsupport::child;
using tarvel::testsupport::indexed;
using tarvel::testsupport::run;
using tarvel::testsupport::ScriptedDialogs;

namespace {

const QString kReversed = QStringLiteral("第二个日期小于第一个日期,请重新设置日期间隔");
const QString kLong = QStringLiteral("您设置的日期间隔比较长,查询统计的时间会比较长");

QList<int> ids(const QString& sql) {
    tarveldatabase db;
    QList<int> out;
    RecordsetPtr rs = db.GetReadRs(sql);
    for (; rs && !rs->Eof(); rs->MoveNext()) out << recordvalue::int32(rs->value(0));
    return out;
}

struct Opened {
    qint16 page;
    QString condition;
};

}  // namespace

class StatTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        Clock::setFixed(jetdate::naive(QDate(2024, 5, 20), QTime(10, 0)));
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        opened_.clear();
        page_ = std::make_unique<FormSchStat>();
        page_->setDialogs(dialogs_);
        page_->setPageSwitch([this](qint16 code, const QString& condition, qint32) {
            opened_.append({code, condition});
        });
        page_->show();
    }
    void cleanup() {
        page_.reset();
        file_.reset();
        Clock::reset();
    }

    void startsWithFifteenDaysAndCaptions();
    void periodOfThirtyDaysIsQuietAndThirtyOneWarns();
    void notContactedIgnoresThePeriodAndTakesDigitsOnly();
    void birthdaysNeverMarkTheUnknownOne();
    void tasksInThePeriodMarkTheirRecords();

private:
    void setPeriod(const QDate& from, const QDate& to) {
        child<QDateEdit>(*page_, "DT_day1")->setDate(from);
        child<QDateEdit>(*page_, "DT_day2")->setDate(to);
    }
    void select(int index) {
        QLabel* label = indexed<QLabel>(*page_, "lbl_Selection", index);
        QTest::mouseClick(label, Qt::LeftButton, {}, label->rect().center());
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    std::unique_ptr<FormSchStat> page_;
    QList<Opened> opened_;
};

void StatTest::startsWithFifteenDaysAndCaptions() {
    QCOMPARE(page_->objectName(), QStringLiteral("form_sch_stat"));
    QCOMPARE(child<QLineEdit>(*page_, "txt_overdays")->text(), QStringLiteral("15"));
    QCOMPARE(child<QDateEdit>(*page_, "DT_day1")->date(), QDate(2024, 5, 5));
    QCOMPARE(child<QDateEdit>(*page_, "DT_day2")->date(), QDate(2024, 5, 20));
    for (const char* name :
         {"lbl_Title", "lbl_over", "lbl_over2", "lbl_between1", "lbl_between2", "lbl_between3"})
        QVERIFY(!child<QLabel>(*page_, name)->text().isEmpty());
    const QStringList expected = {
        "没有联系的联系人",     "没有联系的客户单位",   "没有联系的项目机会",
        "增加的联系人",         "增加的客户单位",       "增加的项目机会",
        "增加的文档附件",       "有联系记录的联系人",   "有联系记录的客户单位",
        "有联系记录的项目机会", "有联系记录的文档附件", "生日的联系人",
        "结束的项目机会"};
    QCOMPARE(page_->findChildren<QLabel*>(QStringLiteral("lbl_Selection")).size(), 13);
    for (int i = 0; i < 13; ++i)
        QCOMPARE(indexed<QLabel>(*page_, "lbl_Selection", i)->text(), expected[i]);

    // A renamed module renames its selections.
    run(
        QStringLiteral("UPDATE interface SET object_description='人脉' WHERE object_type=1 AND "
                       "object_name='contact'"));
    page_->rebuildLayout();
    QCOMPARE(indexed<QLabel>(*page_, "lbl_Selection", 11)->text(), QStringLiteral("生日的人脉"));
}

void StatTest::periodOfThirtyDaysIsQuietAndThirtyOneWarns() {
    setPeriod(QDate(2024, 4, 1), QDate(2024, 5, 1));  // 30 days
    select(3);
    QVERIFY(dialogs_->shown.isEmpty());
    QCOMPARE(opened_.size(), 1);
    QCOMPARE(opened_[0].page, qint16(22));
    QCOMPARE(
        opened_[0].condition,
        QStringLiteral("WHERE con_create_date <= #2024-05-01#  AND con_create_date>=#2024-04-01#"));

    setPeriod(QDate(2024, 3, 31), QDate(2024, 5, 1));  // 31 days: a warning, then the list
    select(6);
    QCOMPARE(dialogs_->shown.size(), 1);
    QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("warning"));
    QCOMPARE(dialogs_->shown[0].title, QStringLiteral("Tarvel提示"));
    QCOMPARE(dialogs_->shown[0].text, kLong);
    QCOMPARE(opened_.size(), 2);
    QCOMPARE(opened_[1].page, qint16(40));
    QCOMPARE(
        opened_[1].condition,
        QStringLiteral("WHERE doc_create_date <= #2024-05-01#  AND doc_create_date>=#2024-03-31#"));

    setPeriod(QDate(2024, 5, 2), QDate(2024, 5, 1));  // reversed: refused, nothing opens
    select(12);
    QCOMPARE(dialogs_->shown.size(), 2);
    QCOMPARE(dialogs_->shown[1].kind, QStringLiteral("info"));
    QCOMPARE(dialogs_->shown[1].text, kReversed);
    QCOMPARE(opened_.size(), 2);

    setPeriod(QDate(2024, 5, 1), QDate(2024, 5, 1));  // one day
    select(12);
    QCOMPARE(dialogs_->shown.size(), 2);
    QCOMPARE(opened_.size(), 3);
    QCOMPARE(opened_[2].page, qint16(3));
    QCOMPARE(opened_[2].condition,
             QStringLiteral("WHERE opp_die_date <= #2024-05-01#  AND opp_die_date>=#2024-05-01#"));
}

void StatTest::notContactedIgnoresThePeriodAndTakesDigitsOnly() {
    setPeriod(QDate(2024, 5, 2), QDate(2024, 5, 1));
    auto* days = child<QLineEdit>(*page_, "txt_overdays");
    days->end(false);
    QTest::keyClicks(days, "a-");
    QTest::keyClick(days, Qt::Key_Backspace);
    QTest::keyClicks(days, "0");
    QCOMPARE(days->text(), QStringLiteral("150"));  // 150 days before 2024-5-20
    select(1);
    select(2);
    QVERIFY(dialogs_->shown.isEmpty());
    QCOMPARE(opened_.size(), 2);
    QCOMPARE(opened_[0].page, qint16(12));
    QCOMPARE(opened_[0].condition, QStringLiteral("WHERE acc_recent_contact_date <= #2023-12-22#"));
    QCOMPARE(opened_[1].page, qint16(3));
    QCOMPARE(opened_[1].condition, QStringLiteral("WHERE opp_recent_contact_date <= #2023-12-22#"));
}

void StatTest::birthdaysNeverMarkTheUnknownOne() {
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday, con_check) "
                       "VALUES (1, '未知', #1900-1-1#, 0)"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday, con_check) "
                       "VALUES (2, '元旦', #1980-1-1#, 0)"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday, con_check) "
                       "VALUES (3, '年末', #1975-12-30#, 0)"));
    run(
        QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_birthday, con_check) "
                       "VALUES (4, '夏天', #1990-7-7#, -1)"));
    setPeriod(QDate(2024, 12, 30), QDate(2025, 1, 2));
    select(11);
    QVERIFY(dialogs_->shown.isEmpty());
    QCOMPARE(opened_.size(), 1);
    QCOMPARE(opened_[0].page, qint16(22));
    QCOMPARE(opened_[0].condition, QStringLiteral("WHERE con_check= true"));
    QCOMPARE(ids(QStringLiteral("SELECT con_id FROM contacts ") + opened_[0].condition +
                 QStringLiteral(" ORDER BY con_id")),
             (QList<int>{2, 3}));
}

void StatTest::tasksInThePeriodMarkTheirRecords() {
    // A weekly task on Wednesdays linked to contact 1, a one-off before the
    // period linked to contact 2.
    run(QStringLiteral("INSERT INTO contacts (con_id, con_lastname) VALUES (1, '甲')"));
    run(QStringLiteral("INSERT INTO contacts (con_id, con_lastname) VALUES (2, '乙')"));
    run(
        QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_cycle, "
                       "tas_closedate) VALUES (1, '周会', #2024-1-3#, 7, #2024-12-31#)"));
    run(
        QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_cycle, "
                       "tas_closedate) VALUES (2, '拜访', #2024-5-6#, 0, #2024-5-6#)"));
    run(QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1)"));
    run(QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (2, 2)"));
    setPeriod(QDate(2024, 5, 7), QDate(2024, 5, 8));  // Tuesday and Wednesday
    select(7);
    QCOMPARE(opened_.size(), 1);
    QCOMPARE(opened_[0].page, qint16(22));
    QCOMPARE(ids(QStringLiteral("SELECT con_id FROM contacts ") + opened_[0].condition),
             (QList<int>{1}));
    QCOMPARE(ids(QStringLiteral("SELECT tas_id FROM tasks WHERE tas_check = true")),
             (QList<int>{1}));
}

QTEST_MAIN(StatTest)
#include "stat_test.moc"
