// CallProc binds its parameters to the statement's ? marks instead of splicing them
// into the text, on a real data file.
#include <gtest/gtest.h>

#include <QDateTime>

#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

RecordsetPtr call(tarveldatabase& db, const QString& sql, const QList<QVariant>& values) {
    for (const QVariant& v : values) db.arrParam().append({QString(), 0, 1, 0, v});
    return db.CallProc(sql);
}

}  // namespace

TEST(CallProc, BindsValuesThatLookLikeMarksOrQuotesInTheirOrder) {
    tarvel::testing::TempDataFile file;
    tarveldatabase select;
    RecordsetPtr rs =
        call(select, "SELECT ? AS a, ? AS b, ? AS c", {QStringLiteral("it's ?"), QVariant(), 42});
    ASSERT_EQ(rs->State(), adStateOpen) << select.ErrMsg().toStdString();
    EXPECT_EQ(rs->value("a").toString(), QStringLiteral("it's ?"));
    EXPECT_TRUE(rs->value("b").isNull());
    EXPECT_EQ(rs->value("c").toInt(), 42);

    tarveldatabase writer;
    writer.Execute("INSERT INTO contacts (con_lastname) VALUES ('张'), ('李')");
    ASSERT_EQ(writer.ErrMsg(), QString());

    // An action statement runs too; a date is written in the stored form.
    tarveldatabase update;
    call(update, "UPDATE contacts SET con_nickname = ?, con_birthday = ? WHERE con_id = 2",
         {QStringLiteral("O'Neil ?"), QDateTime(QDate(1990, 5, 17), QTime(0, 0))});
    ASSERT_EQ(update.ErrMsg(), QString());

    tarveldatabase db;
    rs = call(db,
              "SELECT con_id, con_nickname, con_birthday FROM contacts WHERE con_id "
              "> 1 AND con_lastname = ? AND con_id < 3",
              {QStringLiteral("李")});
    ASSERT_EQ(rs->RecordCount(), 1) << db.ErrMsg().toStdString();
    EXPECT_EQ(rs->value(0).toInt(), 2);
    EXPECT_EQ(rs->value(1).toString(), QStringLiteral("O'Neil ?"));
    EXPECT_EQ(rs->value(2).toDateTime().date(), QDate(1990, 5, 17));
}

TEST(CallProc, CountsOfMarksAndValuesMustMatch) {
    tarvel::testing::TempDataFile file;
    tarveldatabase db;
    // A value short: refused and reported (the piling of errors is the database's test).
    EXPECT_NE(call(db, "SELECT ? AS a, ? AS b", {1})->State(), adStateOpen);
    EXPECT_FALSE(db.ErrMsg().isEmpty());
}
