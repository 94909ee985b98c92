#include "custom/appsettings.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include "store/connectionstring.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/custom/fixture.h"
#include "tests/custom/printers.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

class Interface : public tarvel::testsupport::TracedDataFile {
protected:
    static QStringList names(const AppSettings& set) {
        QStringList out;
        for (const AppSetting& e : set) out << e.ObjName();
        return out;
    }
    // The one row of a layout set, type and name, read back through GetObjs.
    static AppSetting stored(qint16 appType, qint16 objType, const QString& name) {
        AppSettings set;
        set.GetObjs(appType, objType);
        const int i = set.FindIndex(name);
        return i ? set.Item(i) : AppSetting();
    }
};

}  // namespace

TEST_F(Interface, ToolbarReadsInOrderWithAllColumns) {
    run(
        QStringLiteral("UPDATE interface SET object_index=99, object_visible=0, "
                       "object_edittype=7, object_description='往来单位' "
                       "WHERE object_type=1 AND object_name='account'"));
    run(QStringLiteral("DELETE * FROM interface WHERE object_name='opportunity'"));
    trace::clear();
    AppSettings set;
    ASSERT_TRUE(set.GetToolbarIndex(0));
    const QString sql = QStringLiteral(
        "SELECT * FROM interface WHERE app_type=0 AND object_type=1 "
        "ORDER BY app_type, object_type, object_index");
    EXPECT_EQ(trace::statements(), QStringList{sql});
    EXPECT_EQ(set.ErrMsg(), sql);
    EXPECT_EQ(names(set), QString("back forward sepline1 pp contact schedule document sepline2 "
                                  "email inout setting sepline3 help bbs account")
                              .split(QLatin1Char(' ')));
    const AppSetting& last = set.Item(set.Count());
    EXPECT_EQ(last.ObjDesc(), QStringLiteral("往来单位"));
    EXPECT_EQ(last.ObjType(), 1);
    EXPECT_EQ(last.ObjVisible(), 0);
    EXPECT_EQ(last.ObjIndex(), 99);
    EXPECT_EQ(last.ObjEditType(), 7);
    EXPECT_EQ(set.Item(1).ObjVisible(), -1);
    EXPECT_EQ(set.FindIndex(QStringLiteral("back")), 1);
    EXPECT_EQ(set.FindIndex(QStringLiteral("Back")), 0);  // names are fixed keys
    EXPECT_EQ(set.FindIndex(QStringLiteral("nothing")), 0);

    // Module captions: five queries in a fixed order, the missing module left out.
    trace::clear();
    ASSERT_TRUE(set.GetToolbarName(0));  // a read replaces the contents
    EXPECT_EQ(names(set), QStringList({"account", "contact", "schedule", "document"}));
    EXPECT_EQ(set.Item(1).ObjDesc(), QStringLiteral("往来单位"));
    QStringList expected;
    for (const char* m : {"account", "opportunity", "contact", "schedule", "document"})
        expected << QStringLiteral(
                        "SELECT object_description FROM interface WHERE app_type=0 AND "
                        "object_type=1 AND object_name='%1'")
                        .arg(QLatin1String(m));
    EXPECT_EQ(trace::statements(), expected);
    EXPECT_EQ(set.ErrMsg(), sql + QStringLiteral(" ; ") + expected.join(QStringLiteral(" ; ")));
}

TEST_F(Interface, RelationInfoSelectsEachOwnersFourPanels) {
    AppSettings set;
    ASSERT_TRUE(set.GetRelationInfo(0, 0));
    QStringList sorted = names(set);
    sorted.sort();
    EXPECT_EQ(names(set), sorted);
    EXPECT_EQ(set.Count(), 20);

    // '%opp_%' wants a character after "opp": "acc_opp" is not the opportunity's.
    const QStringList owners = {"", "opp", "acc", "con", "sch", "doc"};
    for (int kind = 1; kind <= 5; ++kind) {
        ASSERT_TRUE(set.GetRelationInfo(0, kind));
        ASSERT_EQ(set.Count(), 4) << kind;
        for (const AppSetting& e : set)
            EXPECT_TRUE(e.ObjName().startsWith(owners[kind] + QLatin1Char('_'))) << kind;
    }
    EXPECT_EQ(trace::statements().at(2),
              QStringLiteral("SELECT * FROM interface WHERE app_type=0 AND object_type=2 AND "
                             "object_name LIKE '%acc_%' ORDER BY object_name,object_index"));
    trace::clear();
    EXPECT_TRUE(set.GetRelationInfo(0, 6));  // no such kind: no query
    EXPECT_EQ(set.Count(), 0);
    EXPECT_TRUE(trace::statements().isEmpty());
}

TEST_F(Interface, SavesWriteTheirExactStatements) {
    // A second layout set shows which saves fix app_type 0 and which do not.
    run(
        QStringLiteral("INSERT INTO interface (app_type, object_type, object_name, "
                       "object_description, object_visible, object_index, object_edittype) "
                       "VALUES (1, 1, 'contact', '人脉', -1, 5, 0)"));
    AppSetting e;
    e.setAppType(1);
    e.setObjType(1);
    e.setObjName(QStringLiteral("contact"));
    e.setObjIndex(12);
    e.setObjVisible(1);
    e.setObjDesc(QStringLiteral("O'Brien的人"));
    ASSERT_TRUE(e.SaveToolbarIndex());
    ASSERT_TRUE(e.SaveToolbarName());
    const QStringList toolbarSql = {
        QStringLiteral("UPDATE interface SET object_index=12 ,object_visible= -1 WHERE "
                       "app_type=0 AND object_type=1 AND object_name='contact'"),
        QStringLiteral("UPDATE interface SET object_description='O''Brien的人'  WHERE "
                       "app_type=0 AND object_type=1 AND object_name='contact'")};
    EXPECT_EQ(trace::statements().mid(1), toolbarSql);
    EXPECT_EQ(e.ErrMsg(), toolbarSql.join(QStringLiteral(" ; ")));
    EXPECT_EQ(stored(0, 1, QStringLiteral("contact")).ObjDesc(), QStringLiteral("O'Brien的人"));
    EXPECT_EQ(stored(0, 1, QStringLiteral("contact")).ObjIndex(), 12);
    EXPECT_EQ(stored(1, 1, QStringLiteral("contact")).ObjDesc(), QStringLiteral("人脉"));

    e.setObjDesc(QStringLiteral("模板"));
    e.setObjVisible(0);
    e.setObjEditType(-1);
    ASSERT_TRUE(e.SaveObj());
    EXPECT_EQ(trace::statements().last(),
              QStringLiteral("UPDATE interface SET object_description='模板',object_index=12,"
                             "object_visible=0,object_edittype=-1 WHERE app_type=1 AND "
                             "object_type=1 AND object_name='contact'"));
    EXPECT_EQ(stored(1, 1, QStringLiteral("contact")).ObjDesc(), QStringLiteral("模板"));
    EXPECT_EQ(stored(0, 1, QStringLiteral("contact")).ObjVisible(), -1);

    AppSetting panel;
    panel.setObjName(QStringLiteral("con_opp"));
    panel.setObjDesc(QStringLiteral("相关项目"));
    ASSERT_TRUE(panel.SaveRelationInfo());
    EXPECT_EQ(panel.ErrMsg(),
              QStringLiteral("UPDATE interface SET object_description='相关项目',object_visible=0,"
                             "object_edittype=0 WHERE app_type=0 AND object_type=2 AND "
                             "object_name='con_opp'"));
    const AppSetting saved = stored(0, 2, QStringLiteral("con_opp"));
    EXPECT_EQ(saved.ObjDesc(), QStringLiteral("相关项目"));
    EXPECT_EQ(saved.ObjVisible(), 0);
    EXPECT_EQ(saved.ObjEditType(), 0);
}

TEST(InterfaceWithoutDataFile, ReadsAndSavesReportFailure) {
    QTemporaryDir empty;
    setGlobalConnectionString(buildConnectionString(empty.path()));
    AppSettings set;
    EXPECT_FALSE(set.GetToolbarIndex(0));
    EXPECT_FALSE(set.GetToolbarName(0));
    EXPECT_EQ(set.Count(), 0);
    EXPECT_TRUE(set.ErrMsg().startsWith(QStringLiteral("SELECT * FROM interface")));

    AppSetting e;
    e.setObjName(QStringLiteral("contact"));
    EXPECT_FALSE(e.SaveToolbarName());
    EXPECT_TRUE(e.ErrMsg().startsWith(QStringLiteral("UPDATE interface")));
    EXPECT_TRUE(e.ErrMsg().contains(QStringLiteral(" ; ")));  // the statement, then the error
    EXPECT_FALSE(QFile::exists(empty.filePath(QStringLiteral("mydata3.tvg"))));
    setGlobalConnectionString(QString());
}
