#include "custom/softwaresetting.h"

#include <gtest/gtest.h>

#include "custom/userprofile.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

TEST(SoftwareSetting, ReadsShippedRowsAndBlanksForMissing) {
    tarvel::testing::TempDataFile file;
    SoftwareSetting s;
    ASSERT_TRUE(s.GetValue(QStringLiteral("login"), QStringLiteral("agreement")));
    EXPECT_EQ(s.Set_Visible(), QStringLiteral("0"));
    EXPECT_GT(s.Set_Description().size(), 200);  // a real agreement text ships

    // Case-insensitive look-up, as the original engine compares text.
    ASSERT_TRUE(s.GetValue(QStringLiteral("Login"), QStringLiteral("PASSWORD")));
    EXPECT_EQ(s.Set_Value(), QString());

    ASSERT_TRUE(s.GetValue(QStringLiteral("nope"), QStringLiteral("nothing")));
    for (const QString& v : {s.Set_Value(), s.Set_Name(), s.Set_Visible(), s.Set_Description()})
        EXPECT_EQ(v, QStringLiteral(" "));

    tarveldatabase db;
    db.Execute(QStringLiteral(
        "UPDATE setting SET set_name=NULL WHERE set_type='personal' AND set_key='user_name'"));
    s.GetValue(QStringLiteral("personal"), QStringLiteral("user_name"));
    EXPECT_EQ(s.Set_Name(), QStringLiteral(" "));
}

TEST(SoftwareSetting, WriteOverwritesAllFourColumnsAndOnlyExistingRows) {
    tarvel::testing::TempDataFile file;
    SoftwareSetting s;
    ASSERT_TRUE(s.WriteValue(QStringLiteral("personal"), QStringLiteral("user_name"), QString(),
                             QStringLiteral("1"), QStringLiteral("O'Neil 王"), QString()));
    SoftwareSetting r;
    r.GetValue(QStringLiteral("personal"), QStringLiteral("user_name"));
    EXPECT_EQ(r.Set_Value(), QStringLiteral("O'Neil 王"));  // a quote is stored as typed
    EXPECT_EQ(r.Set_Name(), QString());
    EXPECT_EQ(r.Set_Visible(), QStringLiteral("1"));

    EXPECT_TRUE(s.WriteValue(QStringLiteral("nope"), QStringLiteral("nothing"), QString(),
                             QString(), QStringLiteral("x"), QString()));
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral("SELECT * FROM setting WHERE set_type='nope'"));
    EXPECT_TRUE(rs->Eof());
}

TEST(UserProfile, SavesTheFourValuesAndKeepsEachRowsOtherColumns) {
    tarvel::testing::TempDataFile file;
    UserProfile p = UserProfile::load();
    EXPECT_EQ(p.name, QString());
    EXPECT_FALSE(p.isComplete());
    p.name = QStringLiteral("王小明");
    p.account = QStringLiteral("O'Reilly 公司");
    p.title = QStringLiteral("经理");
    p.email = QStringLiteral("wang@example.com");
    ASSERT_TRUE(p.save());
    const UserProfile back = UserProfile::load();
    EXPECT_EQ(back.account, QStringLiteral("O'Reilly 公司"));
    EXPECT_EQ(back.email, QStringLiteral("wang@example.com"));
    EXPECT_TRUE(back.isComplete());
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral(
        "SELECT set_name, set_visible, set_description FROM setting WHERE set_type='personal' "
        "AND set_key='user_email'"));
    ASSERT_FALSE(rs->Eof());
    EXPECT_EQ(rs->value(0).toString(), QStringLiteral("电子邮件"));
    EXPECT_EQ(rs->value(1).toString(), QStringLiteral("1"));
    EXPECT_TRUE(rs->value(2).toString().contains(QStringLiteral("报告文件")));
}
