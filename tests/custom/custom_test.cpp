// The customisation classes: option lists, the older per-kind option tables, the list columns,
// the interface layout, the settings rows and the user profile. The statement trace is on, so
// a test can tell that nothing was issued.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "custom/appsettings.h"
#include "custom/fsettings.h"
#include "custom/optionlists.h"
#include "custom/selectoptions.h"
#include "custom/softwaresetting.h"
#include "custom/userprofile.h"
#include "store/connectionstring.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

// Readable failure output for texts and lists of texts.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace tarvel;

namespace {

class Custom : public ::testing::Test {
protected:
    void SetUp() override {
        trace::clear();
        trace::setEnabled(true);
    }
    void TearDown() override { trace::setEnabled(false); }
    // Runs a setup statement, left out of the trace.
    static void run(const QString& sql) {
        tarveldatabase db;
        db.Execute(sql);
        ASSERT_TRUE(db.ErrMsg().isEmpty()) << db.ErrMsg().toStdString();
        trace::clear();
    }
    // The statements issued since the last call.
    static QStringList issued() {
        const QStringList out = trace::statements();
        trace::clear();
        return out;
    }
    tarvel::testing::TempDataFile file;
};

QStringList column(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    QStringList out;
    for (; rs && !rs->Eof(); rs->MoveNext()) out << rs->value(0).toString();
    return out;
}
QString names(const AppSettings& set) {
    QStringList out;
    for (const AppSetting& e : set) out << e.ObjName();
    return out.join(' ');
}
// Every column of an entry, in table order.
QString row(const AppSetting& e) {
    return QString::asprintf("%d %d %s %s %d %d %d", e.AppType(), e.ObjType(),
                             qUtf8Printable(e.ObjName()), qUtf8Printable(e.ObjDesc()),
                             e.ObjVisible(), e.ObjIndex(), e.ObjEditType());
}
QString row(const FSetting& f) {
    return QString::asprintf("%d %s %s %d %d %d", f.FieldType(), qUtf8Printable(f.FieldName()),
                             qUtf8Printable(f.Description()), f.Index(), f.Visible(),
                             f.FieldWidth());
}
QString row(const SoftwareSetting& s) {
    return QStringList{s.Set_Name(), s.Set_Visible(), s.Set_Value(), s.Set_Description()}.join('|');
}

}  // namespace

TEST(WithoutDataFile, BuiltInListsWorkAndStoredOnesAreMissing) {
    QTemporaryDir empty;
    setGlobalConnectionString(buildConnectionString(empty.path()));
    const std::optional<QStringList> times = optionComboItems(QString(), "time_format");
    ASSERT_TRUE(times && times->size() == 48);
    EXPECT_EQ(times->mid(18, 3), QStringList({"09:00", "09:30", "10:00"}));
    EXPECT_EQ(optionComboItems("sch", " cycle_type "),
              QStringList({"每天", "每周", "每月", "每年", "不重复"}));
    // A stored list that cannot be read is no list at all; the list routine has no built-ins.
    EXPECT_FALSE(optionComboItems("con", "title") || optionListItems(QString(), "time_format"));

    setGlobalConnectionString(QString());
}

TEST_F(Custom, StoredListsAreTrimmedAndSortedExceptProbability) {
    run("INSERT INTO options (opt_object, opt_name, opt_description) VALUES ('con', 'nick', 'b  "
        "'), "
        "('con', 'nick', NULL), ('con', 'nick', ' c'), ('con', 'nick', 'a'), ('acc', 'nick', 'x')");
    EXPECT_EQ(optionComboItems(" con ", "nick "), QStringList({"", "c", "a", "b"}));

    // Probabilities come in the order they were entered, a null as "0"; a list box just sorts.
    run("DELETE * FROM options WHERE opt_name='Probability'");
    run("INSERT INTO options (opt_object, opt_name, opt_description) VALUES ('opp', "
        "'Probability', ' 70 '), ('opp', 'Probability', NULL), ('opp', 'Probability', '5')");
    EXPECT_EQ(optionComboItems("opp", "Probability"), QStringList({"70%", "0%", "5%"}));
    EXPECT_EQ(optionListItems("opp", "Probability"), QStringList({"", "70", "5"}));  // as stored

    // No entries: an empty list. A quote cannot break the statement (it would give no list).
    EXPECT_EQ(optionComboItems("doc", "it's"), QStringList());
}

TEST_F(Custom, PerKindOptionsLogTheirStatements) {
    SelectOption o;
    o.setDescription("先生");
    for (qint16 kind : {0, 10}) {  // no table: nothing is issued
        o.setKind(kind);
        EXPECT_FALSE(o.Update("x") || o.Delete());
    }
    EXPECT_TRUE(o.ErrMsg().isEmpty() && issued().isEmpty());
    o.setKind(9);
    ASSERT_TRUE(o.Update("O'Brien先生"));
    EXPECT_EQ(o.Description(), "O'Brien先生");
    ASSERT_TRUE(o.Delete());
    EXPECT_EQ(o.Description(), QString());
    EXPECT_EQ(column("SELECT COUNT(*) FROM title WHERE tit_description LIKE '%先生%'"),
              QStringList{"0"});

    // Entries with their counts; a failure keeps the description.
    run("UPDATE important SET imp_count=7 WHERE imp_description='重要'");
    SelectOptions all;
    all.setKind(2);
    ASSERT_TRUE(all.GetAllOptions());
    QStringList read;
    for (const SelectOption& e : all) read << e.Description() + QString::number(e.Count());
    EXPECT_EQ(read, column("SELECT imp_description & imp_count FROM important"));
    run("DROP TABLE province");
    o.setKind(5);
    o.setDescription("北京");
    EXPECT_FALSE(o.Delete());
    EXPECT_EQ(o.Description(), "北京");
}

TEST_F(Custom, GetAllArraysCarryOneEmptySlot) {
    using Getter = bool (SelectOptions::*)();
    const Getter getters[] = {&SelectOptions::GetAllPhase,    &SelectOptions::GetAllImportant,
                              &SelectOptions::GetAllOppType,  &SelectOptions::GetAllRelation,
                              &SelectOptions::GetAllProvince, &SelectOptions::GetAllIndustry,
                              &SelectOptions::GetAllAccType,  &SelectOptions::GetAllTaskType,
                              &SelectOptions::GetAllTitle};
    const QStringList tables =
        QString("phase important opp_type relation province industry type task_type title")
            .split(' ');
    for (int i = 0; i < 9; ++i) {
        SelectOptions s;
        ASSERT_TRUE((s.*getters[i])());
        const int rows = column("SELECT COUNT(*) FROM " + tables[i]).value(0).toInt();
        EXPECT_EQ(s.arrDesc().size(), rows + 1);
        EXPECT_TRUE(s.arrDesc().last().isNull() && !s.arrDesc().first().isNull());
        EXPECT_EQ(s.ErrMsg(), "SELECT * FROM " + tables[i]);
    }
    SelectOptions fixed;
    ASSERT_TRUE(fixed.GetAllProbability());
    EXPECT_EQ(fixed.arrDesc(), QVariantList({0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, {}}));
    ASSERT_TRUE(fixed.GetAllTaskHour());
    EXPECT_EQ(fixed.arrDesc().mid(47), QVariantList({"23:30", {}}));

    // An unreadable table still yields the array: just the empty slot.
    run("DROP TABLE phase");
    SelectOptions none;
    EXPECT_TRUE(none.GetAllPhase());
    EXPECT_EQ(none.arrDesc(), QVariantList{QVariant()});
}

TEST_F(Custom, ToolbarCaptionsAndRelatedPanelsRead) {
    run("UPDATE interface SET object_index=99, object_visible=0, object_edittype=7, "
        "object_description='往来单位' WHERE object_type=1 AND object_name='account'");
    run("DELETE * FROM interface WHERE object_name='opportunity'");
    AppSettings set;
    ASSERT_TRUE(set.GetToolbarIndex(0));
    EXPECT_EQ(names(set),
              "back forward sepline1 pp contact schedule document sepline2 email inout setting "
              "sepline3 help bbs account");
    EXPECT_EQ(row(set.Item(set.Count())), "0 1 account 往来单位 0 99 7");
    EXPECT_EQ(set.FindIndex("back"), 1);
    EXPECT_EQ(set.FindIndex("Back"), 0);  // names are fixed keys

    // Module captions: five queries, the missing module left out; a read replaces the contents.
    ASSERT_TRUE(set.GetToolbarName(0));
    EXPECT_EQ(names(set), "account contact schedule document");
    EXPECT_EQ(set.Item(1).ObjDesc(), "往来单位");

    // Related panels: all twenty, or the four of one owner; a read replaces the contents.
    ASSERT_TRUE(set.GetRelationInfo(0, 0));
    EXPECT_EQ(set.Count(), 20);
    // '%opp_%' wants a character after "opp": "acc_opp" is not the opportunity's.
    const char* const owners[] = {"", "opp", "acc", "con", "sch", "doc"};
    for (int kind = 1; kind <= 5; ++kind) {
        ASSERT_TRUE(set.GetRelationInfo(0, kind));
        ASSERT_EQ(set.Count(), 4) << kind;
        for (const AppSetting& e : set)
            EXPECT_TRUE(e.ObjName().startsWith(owners[kind] + QString('_'))) << kind;
    }
    issued();
    EXPECT_TRUE(set.GetRelationInfo(0, 6));  // no such kind: no query
    EXPECT_EQ(set.Count(), 0);
    EXPECT_TRUE(issued().isEmpty());
}

TEST_F(Custom, LayoutSavesWriteTheirSetAndTheToolbarsOwn) {
    // A second layout set shows which saves fix app_type 0 and which do not; the visible flag
    // is written as -1 or 0.
    run("INSERT INTO interface (app_type, object_type, object_name, object_description, "
        "object_visible, object_index, object_edittype) VALUES (1, 1, 'contact', '人脉', -1, 5, "
        "0)");
    AppSetting e;
    e.setAppType(1);
    e.setObjType(1);
    e.setObjName("contact");
    e.setObjIndex(12);
    e.setObjVisible(1);
    e.setObjDesc("O'Brien的人");
    ASSERT_TRUE(e.SaveToolbarIndex() && e.SaveToolbarName());
    e.setObjVisible(0);
    e.setObjEditType(-1);
    ASSERT_TRUE(e.SaveObj() && e.SaveRelationInfo());
    AppSettings set;  // the entry's own set and type, as GetObjs reads them back
    ASSERT_TRUE(set.GetObjs(1, 1));
    EXPECT_EQ(row(set.Item(set.FindIndex("contact"))), "1 1 contact O'Brien的人 0 12 -1");
    // The toolbar saves always write the program's own layout, visible as -1.
    ASSERT_TRUE(set.GetObjs(0, 1));
    EXPECT_EQ(row(set.Item(set.FindIndex("contact"))).section(' ', 0, 5),
              "0 1 contact O'Brien的人 -1 12");
}

TEST_F(Custom, SelectListLeadsWithTheTickColumnAndEndsInABlank) {
    FSettings s;
    ASSERT_TRUE(s.GetMySetting(5));
    const QString documents =
        " doc_check, doc_id,doc_name,doc_tag,doc_path,doc_description,doc_create_date,"
        "doc_recentedit_date ";
    EXPECT_EQ(s.SelectFields(), documents);
    ASSERT_EQ(s.Count(), 7);
    EXPECT_EQ(row(s.Item(1)), "5 doc_id 编号 1 0 60");  // hidden, and still selected
    EXPECT_EQ(s.Item("2") ? row(*s.Item("2")) : "", "5 doc_name 文档附件名称 2 1 200");
    EXPECT_EQ(s.FindCaption("doc_path"), "文件路径");
    EXPECT_EQ(s.FindCaption("doc_nothing"), "无");

    // Two columns at one position are both kept; otherwise fie_index orders, not storage.
    run("UPDATE fields SET fie_index=2 WHERE fie_type=5 AND fie_name='doc_tag'");
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), documents);
    run("UPDATE fields SET fie_index=0 WHERE fie_type=5 AND fie_name='doc_path'");
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.Count(), 7);  // a reload replaces the columns
    EXPECT_TRUE(s.SelectFields().startsWith(" doc_check, doc_path,doc_id,"));

    // One column: no comma after it; none: the tick column alone.
    run("DELETE * FROM fields WHERE fie_type=5 AND fie_name<>'doc_name'");
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), " doc_check, doc_name ");
    run("DELETE * FROM fields WHERE fie_type=5");
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), " doc_check, ");

    // Outside 1 to 5 the previous select list stays and the rows (none) follow it.
    ASSERT_TRUE(s.GetMySetting(9));
    EXPECT_EQ(s.SelectFields(), " doc_check, ");
}

TEST_F(Custom, FieldSavesAndProgramWideColumns) {
    FSetting f;
    f.setFieldType(3);
    f.setFieldName("con_email");
    f.setDescription("O'Neil的邮箱");
    f.setIndex(2);
    f.setFieldWidth(999);
    f.setVisible(true);
    ASSERT_TRUE(f.SaveObj());

    loadProgramFieldSettings();
    for (qint16 kind = 1; kind <= 5; ++kind) {
        FSettings fresh;
        fresh.GetMySetting(kind);
        EXPECT_EQ(programFieldSettings(kind)->SelectFields(), fresh.SelectFields()) << kind;
    }

    // A width reloads its own kind, emptied first; another kind's change stays unseen.
    run("UPDATE fields SET fie_description='主题名' WHERE fie_type=1 AND fie_name='opp_subject'");
    ASSERT_TRUE(SaveFieldWidth(3, "con_email", 222));
    const FSettings& contacts = *programFieldSettings(3);
    EXPECT_EQ(contacts.Count(), 41);
    QString saved;
    for (const FSetting& c : contacts)
        if (c.FieldName() == "con_email") saved = row(c);
    EXPECT_EQ(saved, "3 con_email O'Neil的邮箱 2 1 222");  // the width saved apart from the rest
    EXPECT_EQ(programFieldSettings(1)->FindCaption("opp_subject"), "项目机会名称");
    // A kind outside 1 to 5 only stores the width.
    run("INSERT INTO fields (fie_type, fie_name, fie_width) VALUES (7, 'it''s', 1)");
    ASSERT_TRUE(SaveFieldWidth(7, "it's", 5));
    EXPECT_EQ(column("SELECT fie_width FROM fields WHERE fie_type=7"), QStringList{"5"});
}

TEST_F(Custom, SettingsAndUserProfile) {
    SoftwareSetting s;
    ASSERT_TRUE(s.GetValue("login", "agreement"));
    EXPECT_EQ(s.Set_Visible(), "0");
    EXPECT_GT(s.Set_Description().size(), 200);    // a real agreement text ships
    ASSERT_TRUE(s.GetValue("Login", "PASSWORD"));  // in any case, as the original engine
    EXPECT_EQ(row(s), "登录密码|1||登录密码的MD5摘要");
    ASSERT_TRUE(s.GetValue("nope", "nothing"));
    EXPECT_EQ(row(s), " | | | ");
    // A write overwrites all four columns of an existing row only; a quote is stored as typed.
    EXPECT_TRUE(s.WriteValue("nope", "nothing", QString(), QString(), "x", QString()));
    EXPECT_TRUE(column("SELECT * FROM setting WHERE set_type='nope'").isEmpty());
    ASSERT_TRUE(s.WriteValue("personal", "user_name", QString(), "1", "O'Neil 王", QString()));
    run("UPDATE setting SET set_description=NULL WHERE set_type='personal' AND "
        "set_key='user_name'");
    SoftwareSetting r;
    r.GetValue("personal", "user_name");
    EXPECT_EQ(row(r), "|1|O'Neil 王| ");  // a null reads as one blank

    // The profile writes its four values, keeping each row's other columns.
    EXPECT_FALSE(UserProfile::load().isComplete());
    UserProfile p = {"王小明", "O'Reilly 公司", "经理", "wang@example.com"};
    ASSERT_TRUE(p.save());
    const UserProfile back = UserProfile::load();
    EXPECT_EQ(QStringList({back.name, back.account, back.title, back.email}),
              QStringList({p.name, p.account, p.title, p.email}));
    r.GetValue("personal", "user_email");
    EXPECT_EQ(row(r), "电子邮件|1|wang@example.com|用户的电子邮件地址，用来识别报告文件的发送人");
}
