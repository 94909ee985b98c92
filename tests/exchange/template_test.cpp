// Template files: the customisation of one data file carried into another,
// the file itself read back by the sqlcipher program, and files that are not
// templates refused without a change.
#include "exchange/template.h"

#include "tests/exchange/exchangefixture.h"

using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

// Every row a template carries, as text, in a fixed order; options without
// their keys, which the loading file gives anew.
const char* const kCarried[] = {
    "SELECT fie_type & '|' & fie_name & '|' & fie_description & '|' & fie_index & '|' & "
    "fie_visible & '|' & fie_width FROM fields ORDER BY fie_type, fie_index, fie_name",
    "SELECT object_type & '|' & object_name & '|' & object_description & '|' & object_visible & "
    "'|' & object_index & '|' & object_edittype FROM interface WHERE app_type=0 ORDER BY "
    "object_type, object_index, object_name",
    "SELECT opt_object & '|' & opt_name & '|' & opt_description FROM options ORDER BY opt_object, "
    "opt_name, opt_description",
    "SELECT pha_description FROM phase ORDER BY pha_description",
};

}  // namespace

class Template : public ExchangeFixture {
protected:
    // fields, interface, options, phase
    QList<QStringList> carried() {
        QList<QStringList> all;
        for (const char* sql : kCarried) {
            all << column(QString::fromUtf8(sql));
            all.back().sort();
        }
        return all;
    }
    QStringList records() {
        return column(
            "SELECT con_lastname & '|' & con_province & '|' & con_tag FROM contacts "
            "ORDER BY con_id");
    }
    // A customisation no new file has.
    void customise() {
        run("UPDATE interface SET object_description='客户' WHERE app_type=0 AND object_type=1 "
            "AND object_name='contact'");
        run("UPDATE interface SET object_visible=0 WHERE app_type=0 AND object_name='email'");
        run("UPDATE fields SET fie_visible=0, fie_width=33 WHERE fie_type=3 AND "
            "fie_name='con_department_title'");
        run("DELETE * FROM options WHERE opt_object='con' AND opt_name='region'");
        run("INSERT INTO options (opt_object, opt_name, opt_description, opt_count) VALUES "
            "('con', 'region', '华东', 3)");
        run("INSERT INTO phase (pha_description, pha_count) VALUES ('签约', 1)");
    }
};

TEST_F(Template, LoadedIntoAnotherFileItGivesTheSameRowsAndKeepsUsedOptions) {
    customise();
    run("INSERT INTO contacts (con_lastname) VALUES ('不该带走')");
    const QString path = inFolder("公司.tvm3");
    const Outcome saved = saveTemplate(path);
    ASSERT_TRUE(saved.ok) << saved.ErrMsg.toStdString();
    const QList<QStringList> wanted = carried();

    tarvel::testing::TempDataFile other;  // another installation
    // Its records use options the template may lack: a region, and two tags.
    run("INSERT INTO contacts (con_lastname, con_province, con_tag) VALUES ('李四', '西北', "
        "'VIP,老朋友')");
    run("INSERT INTO interface (app_type, object_type, object_name, object_description, "
        "object_visible, object_index, object_edittype) VALUES (1, 1, 'contact', '旧布局', -1, 1, "
        "0)");
    const QStringList before = records();
    QStringList options = wanted[2];
    for (const char* used : {"con|region|西北", "con|tag|VIP", "con|tag|老朋友"})
        if (!options.contains(QString::fromUtf8(used))) options << QString::fromUtf8(used);
    options.sort();

    QStringList changes;
    ASSERT_TRUE(describeTemplate(path, &changes).ok);
    EXPECT_TRUE(changes.join('\n').contains("名称“联系人”改为“客户”"))
        << changes.join('\n').toStdString();
    EXPECT_TRUE(changes.join('\n').contains("西北")) << "the kept option is announced";

    int kept = -1;
    const Outcome loaded = loadTemplate(path, &kept);
    ASSERT_TRUE(loaded.ok) << loaded.ErrMsg.toStdString();
    EXPECT_EQ(carried(), QList<QStringList>({wanted[0], wanted[1], options, wanted[3]}));
    EXPECT_EQ(kept, options.size() - wanted[2].size());
    EXPECT_EQ(records(), before);
    // Another program's layout in the same table stays.
    EXPECT_EQ(column("SELECT object_description FROM interface WHERE app_type=1"),
              QStringList({"旧布局"}));
}

TEST_F(Template, TheFileOpensWithTheSqlcipherProgramAndHoldsNoRecord) {
    customise();
    fillSample();
    const QString path = inFolder("t.tvm3");
    ASSERT_TRUE(saveTemplate(path).ok);
    EXPECT_FALSE(QFile::exists(path + ".part"));
    EXPECT_EQ(sqlcipherRows(path,
                            "SELECT name FROM sqlite_master WHERE type='table' AND name NOT "
                            "LIKE 'sqlite_%' ORDER BY name"),
              QStringList({"fields", "important", "industry", "interface", "opp_type", "options",
                           "phase", "province", "relation", "task_type", "title", "type"}));
    // Without the password the file is unreadable.
    QProcess plain;
    plain.start("sqlcipher", {"-batch", path, "SELECT COUNT(*) FROM fields;"});
    ASSERT_TRUE(plain.waitForFinished(30000));
    EXPECT_NE(plain.exitCode(), 0);

    // Saving again over the file replaces it; a folder that is not there fails aloud.
    run("UPDATE interface SET object_description='伙伴' WHERE object_name='contact'");
    ASSERT_TRUE(saveTemplate(path).ok);
    EXPECT_EQ(sqlcipherRows(path,
                            "SELECT object_description FROM interface WHERE "
                            "object_name='contact'"),
              QStringList({"伙伴"}));
    const Outcome nowhere = saveTemplate(inFolder("no/such/folder/t.tvm3"));
    EXPECT_FALSE(nowhere.ok);
    EXPECT_TRUE(nowhere.ErrMsg.startsWith("保存模板没有完成")) << nowhere.ErrMsg.toStdString();
}

TEST_F(Template, AFileThatIsNotATemplateIsRefusedAndNothingChanges) {
    const QString junk = inFolder("junk.tvm3");
    exchange_test::writeBytes(junk, QByteArray(4096, 'x'));
    const QString dataFile = inFolder("data.tvm3");
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), dataFile));
    // Encrypted with the right password, but only one of the tables.
    const QString partial = inFolder("partial.tvm3");
    ASSERT_TRUE(sqlcipherRows(partial, "CREATE TABLE fields (fie_type INTEGER); SELECT 1") ==
                QStringList({"1"}));
    const struct {
        QString path;
        QString says;
    } cases[] = {{junk, "不是Tarvel模板文件"},
                 {dataFile, "是Tarvel数据文件，不是模板文件"},
                 {partial, "缺少表 interface"},
                 {inFolder("missing.tvm3"), "找不到文件"}};
    const QList<QStringList> before = carried();
    for (const auto& c : cases) {
        QStringList changes;
        const Outcome described = describeTemplate(c.path, &changes);
        EXPECT_FALSE(described.ok) << c.path.toStdString();
        EXPECT_TRUE(described.ErrMsg.contains(c.says)) << described.ErrMsg.toStdString();
        const Outcome loaded = loadTemplate(c.path);
        EXPECT_FALSE(loaded.ok);
        EXPECT_TRUE(loaded.ErrMsg.startsWith("载入模板没有完成，当前设置没有改动"))
            << loaded.ErrMsg.toStdString();
    }
    EXPECT_EQ(carried(), before);
    EXPECT_FALSE(QFile::exists(inFolder("missing.tvm3")));
}

TEST_F(Template, ATemplateOfTheSameSettingsAnnouncesNoChange) {
    const QString path = inFolder("same.tvm3");
    ASSERT_TRUE(saveTemplate(path).ok);
    QStringList changes;
    ASSERT_TRUE(describeTemplate(path, &changes).ok);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(changes.value(0).contains("相同")) << changes.join('\n').toStdString();
    // Renaming the list column and hiding a panel show up by name.
    run("UPDATE fields SET fie_visible=0 WHERE fie_type=3 AND fie_name='con_department_title'");
    ASSERT_TRUE(describeTemplate(path, &changes).ok);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(changes.value(0).startsWith("联系人列表显示的列："))
        << changes.join('\n').toStdString();
    EXPECT_TRUE(changes.value(0).contains("部门/职务"));
    // A renamed module is one line: the toolbar keeps its buttons and order.
    run("UPDATE fields SET fie_visible=-1 WHERE fie_type=3 AND fie_name='con_department_title'");
    run("UPDATE interface SET object_description='人脉' WHERE object_name='contact'");
    ASSERT_TRUE(describeTemplate(path, &changes).ok);
    EXPECT_EQ(changes, QStringList({"名称“人脉”改为“联系人”"}));
    // A hidden toolbar button is named in the toolbar the template brings.
    run("UPDATE interface SET object_visible=0 WHERE object_type=1 AND object_name='email'");
    ASSERT_TRUE(describeTemplate(path, &changes).ok);
    EXPECT_EQ(changes.size(), 2);
    EXPECT_TRUE(changes.value(1).startsWith("工具栏：")) << changes.join('\n').toStdString();
}

TEST_F(Template, ALoadThatFailsPartWayLeavesEverythingAsItWas) {
    const QString path = inFolder("t.tvm3");
    ASSERT_TRUE(saveTemplate(path).ok);
    customise();
    const QList<QStringList> before = carried();
    // The option lists are written after the layout and the columns.
    run("CREATE TRIGGER refuse BEFORE INSERT ON options BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const Outcome out = loadTemplate(path);
    EXPECT_FALSE(out.ok);
    EXPECT_TRUE(out.ErrMsg.contains("refused")) << out.ErrMsg.toStdString();
    EXPECT_EQ(carried(), before);
}
