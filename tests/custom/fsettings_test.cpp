// The columns of the record lists: reading a kind's columns into its select
// list, saving captions, positions and widths, and the program-wide copies.
#include "custom/fsettings.h"

#include <gtest/gtest.h>

#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/custom/fixture.h"
#include "tests/custom/printers.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

class Fields : public tarvel::testsupport::TracedDataFile {
protected:
    static QString names(const FSettings& s) {
        QStringList out;
        for (const FSetting& f : s) out << f.FieldName();
        return out.join(QLatin1Char(' '));
    }
};

const QString kDocumentSelect = QStringLiteral(
    " doc_check, doc_id,doc_name,doc_tag,doc_path,doc_description,doc_create_date,"
    "doc_recentedit_date ");

}  // namespace

TEST_F(Fields, SelectListLeadsWithTheTickColumnAndEndsInABlank) {
    FSettings s;
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), kDocumentSelect);
    ASSERT_EQ(s.Count(), 7);
    const FSetting& first = s.Item(1);
    EXPECT_EQ(first.FieldName(), QStringLiteral("doc_id"));
    EXPECT_EQ(first.FieldType(), 5);
    EXPECT_EQ(first.Description(), QStringLiteral("编号"));
    EXPECT_EQ(first.Index(), 1);
    EXPECT_FALSE(first.Visible());  // hidden, and still selected
    EXPECT_EQ(first.FieldWidth(), 60);
    ASSERT_TRUE(s.Item(QStringLiteral("2")));
    EXPECT_EQ(s.Item(QStringLiteral("2"))->FieldName(), QStringLiteral("doc_name"));
    EXPECT_TRUE(s.Item(QStringLiteral("2"))->Visible());
    EXPECT_EQ(s.FindCaption(QStringLiteral("doc_path")), QStringLiteral("文件路径"));
    EXPECT_EQ(s.FindCaption(QStringLiteral("doc_nothing")), QStringLiteral("无"));

    // Order follows fie_index, not the order the rows were stored in.
    run(QStringLiteral("UPDATE fields SET fie_index=0 WHERE fie_type=5 AND fie_name='doc_path'"));
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.Count(), 7);  // a reload replaces the columns
    EXPECT_TRUE(s.SelectFields().startsWith(QStringLiteral(" doc_check, doc_path,doc_id,")));

    // A kind with one column: no comma after it; with none: the tick column alone.
    run(QStringLiteral("DELETE * FROM fields WHERE fie_type=5 AND fie_name<>'doc_name'"));
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), QStringLiteral(" doc_check, doc_name "));
    run(QStringLiteral("DELETE * FROM fields WHERE fie_type=5"));
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.SelectFields(), QStringLiteral(" doc_check, "));
    EXPECT_EQ(s.Count(), 0);

    // Outside 1 to 5 the previous select list stays and the rows (none) follow it.
    FSettings t;
    ASSERT_TRUE(t.GetMySetting(4));
    const QString tasks = t.SelectFields();
    EXPECT_TRUE(tasks.startsWith(QStringLiteral(" tas_check, tas_id,tas_date,")));
    ASSERT_TRUE(t.GetMySetting(9));
    EXPECT_EQ(t.SelectFields(), tasks);
    EXPECT_EQ(t.ErrMsg(),
              QStringLiteral("SELECT * FROM fields WHERE fie_type=4 ORDER BY fie_index ; "
                             "SELECT * FROM fields WHERE fie_type=9 ORDER BY fie_index"));
}

TEST_F(Fields, TwoColumnsAtOnePositionAreBothKept) {
    run(QStringLiteral("UPDATE fields SET fie_index=2 WHERE fie_type=5 AND fie_name='doc_tag'"));
    FSettings s;
    ASSERT_TRUE(s.GetMySetting(5));
    EXPECT_EQ(s.Count(), 7);
    EXPECT_EQ(s.SelectFields(), kDocumentSelect);
}

TEST_F(Fields, SaveObjWritesCaptionPositionAndVisibilityOnly) {
    FSetting f;
    f.setFieldType(3);
    f.setFieldName(QStringLiteral("con_email"));
    f.setDescription(QStringLiteral("O'Neil的邮箱"));
    f.setIndex(2);
    f.setVisible(false);
    f.setFieldWidth(999);
    ASSERT_TRUE(f.SaveObj());
    const QString sql = QStringLiteral(
        "UPDATE fields SET fie_index=2,fie_description='O''Neil的邮箱',fie_visible=0 WHERE "
        "fie_type=3 AND fie_name='con_email'");
    EXPECT_EQ(trace::statements(), QStringList{sql});
    f.setVisible(true);
    ASSERT_TRUE(f.SaveObj());
    EXPECT_EQ(f.ErrMsg(), sql + QStringLiteral(" ; ") +
                              QString(sql).replace(QStringLiteral("fie_visible=0"),
                                                   QStringLiteral("fie_visible=1")));

    FSettings s;
    s.GetMySetting(3);
    EXPECT_EQ(s.FindCaption(QStringLiteral("con_email")), QStringLiteral("O'Neil的邮箱"));
    const FSetting* saved = nullptr;
    for (const FSetting& c : s)
        if (c.FieldName() == QLatin1String("con_email")) saved = &c;
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->Index(), 2);
    EXPECT_TRUE(saved->Visible());
    EXPECT_EQ(saved->FieldWidth(), 160);  // widths are saved elsewhere
}

TEST_F(Fields, SavingAWidthReloadsThatKindsProgramWideColumns) {
    loadProgramFieldSettings();
    for (int kind = 1; kind <= 5; ++kind) {
        FSettings fresh;
        fresh.GetMySetting(qint16(kind));
        EXPECT_EQ(programFieldSettings(kind)->SelectFields(), fresh.SelectFields()) << kind;
        EXPECT_EQ(names(*programFieldSettings(kind)), names(fresh)) << kind;
    }
    EXPECT_EQ(programFieldSettings(0), nullptr);
    EXPECT_EQ(programFieldSettings(6), nullptr);

    // Another kind's change stays unseen until that kind is reloaded.
    run(
        QStringLiteral("UPDATE fields SET fie_description='主题名' WHERE fie_type=1 AND "
                       "fie_name='opp_subject'"));
    trace::clear();
    ASSERT_TRUE(SaveFieldWidth(3, QStringLiteral("con_email"), 222));
    EXPECT_EQ(trace::statements().first(),
              QStringLiteral("UPDATE fields SET fie_width = 222 WHERE fie_type = 3 AND fie_name "
                             "='con_email'"));
    const FSettings& contacts = *programFieldSettings(3);
    EXPECT_EQ(contacts.Count(), 41);  // emptied before reloading, not doubled
    int width = 0;
    for (const FSetting& f : contacts)
        if (f.FieldName() == QLatin1String("con_email")) width = f.FieldWidth();
    EXPECT_EQ(width, 222);
    EXPECT_EQ(programFieldSettings(1)->FindCaption(QStringLiteral("opp_subject")),
              QStringLiteral("项目机会名称"));

    // A kind outside 1 to 5 only stores the width.
    trace::clear();
    EXPECT_TRUE(SaveFieldWidth(7, QStringLiteral("it's"), 5));
    EXPECT_EQ(trace::statements(),
              QStringList{QStringLiteral("UPDATE fields SET fie_width = 5 WHERE fie_type = 7 AND "
                                         "fie_name ='it''s'")});
}
