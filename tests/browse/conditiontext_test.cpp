// Conditions shown to the user in words, never as SQL.
#include "browse/conditiontext.h"

#include <QtTest>

#include "store/clock.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

class ConditionTextTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        Clock::setFixed(tarvel::testsupport::at(2026, 3, 2, 10));
    }
    void cleanup() {
        Clock::reset();
        file_.reset();
    }
    void describesEachShapeOfCondition_data() {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* name, const char* condition, const char* words) {
            QTest::newRow(name) << QString::fromUtf8(condition) << QString::fromUtf8(words);
        };
        row("none", "", "全部记录");
        row("blanks", "   ", "全部记录");
        row("search",
            "WHERE   acc_name LIKE '%王%' OR acc_description LIKE '%王%'  OR acc_fax LIKE "
            "'%王%'",
            "搜索：王");
        row("province", " WHERE con_province='北京'", "地区：北京");
        row("importance", " WHERE con_important='高'", "重要性：高");
        row("account", " WHERE acc_name='华为'", "客户单位：华为");
        row("tag", " WHERE con_tag Like  '%老乡%' ", "标签：老乡");
        row("no account", " WHERE acc_name IS NULL", "没有所属单位的联系人");
        row("not contacted", "WHERE con_recent_contact_date <= #2026-02-15#",
            "没有联系超过15天的联系人");
        row("added", "WHERE acc_create_date <= #2026-03-02#  AND acc_create_date>=#2026-02-01#",
            "2026年2月1日至2026年3月2日增加的客户单位");
        row("ending", "WHERE opp_die_date <= #2026-03-02#  AND opp_die_date>=#2026-02-01#",
            "2026年2月1日至2026年3月2日结束的项目机会");
        row("with tasks",
            "WHERE doc_id IN (SELECT DISTINCT tasks_documents.doc_id  FROM tasks_documents LEFT "
            "Join "
            "tasks ON tasks_documents.tas_id = tasks.tas_id  WHERE  tasks.tas_check = true)",
            "统计期间有联系记录的文档附件");
        row("related to ticked",
            "WHERE opp_id IN (SELECT DISTINCT opportunities_contacts.opp_id  FROM "
            "opportunities_contacts LEFT Join contacts ON opportunities_contacts.con_id  = "
            "contacts.con_id  WHERE  contacts.con_check = true)",
            "与勾选的联系人相关的项目机会");
        row("has", " WHERE con_id IN (SELECT DISTINCT con_id FROM opportunities_contacts)",
            "有项目机会的联系人");
        row("has none", " WHERE con_id NOT IN (SELECT DISTINCT con_id FROM opportunities_contacts)",
            "没有项目机会的联系人");
        row("ticked", "WHERE con_check= true", "勾选的联系人");
        row("birthday",
            " WHERE (con_birthday<> # 1900-1-1# AND month(con_birthday)= 3 AND day(con_birthday)= "
            "2)",
            "3月2日生日的联系人");
        row("one record", "WHERE tas_id= 7", "编号为7的日程安排");
        row("new record", "  WHERE con_id = -1", "新联系人");
        row("unknown shape", "WHERE opp_sale > 3 AND opp_phase <> '结束'", "按条件筛选的项目机会");
        row("unknown kind", "WHERE 1=1", "按条件筛选的记录");
    }
    void describesEachShapeOfCondition() {
        QFETCH(QString, condition);
        QFETCH(QString, words);
        QCOMPARE(describeCondition(condition), words);
    }
    void namesKindsByTheirModuleCaptions() {
        tarvel::testsupport::run(
            QStringLiteral("UPDATE interface SET object_description='人脉' WHERE object_type=1 AND "
                           "object_name='contact'"));
        QCOMPARE(describeCondition(QStringLiteral("WHERE con_recent_contact_date <= #2026-02-15#")),
                 QStringLiteral("没有联系超过15天的人脉"));
    }

private:
    std::unique_ptr<tarvel::testing::TempDataFile> file_;
};

QTEST_GUILESS_MAIN(ConditionTextTest)
#include "conditiontext_test.moc"
