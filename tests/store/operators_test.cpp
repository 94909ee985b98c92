// Operators of the program's dialect give the original engine's results on a
// real data file, in its order of evaluation (NOT on yes/no columns is the data
// set's test).
#include <gtest/gtest.h>

#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

class Operators : public ::testing::Test {
protected:
    // The value of an expression, or the error text between angle brackets.
    std::string evaluate(const QString& sql) {
        tarveldatabase db;
        RecordsetPtr rs = db.GetReadRs(sql);
        if (!rs || rs->State() != adStateOpen || rs->Eof())
            return "<" + db.ErrMsg().toStdString() + ">";
        QStringList row;
        for (int i = 0; i < rs->FieldCount(); ++i) row << rs->value(i).toString();
        return row.join(QLatin1Char(',')).toStdString();
    }
    tarvel::testing::TempDataFile file;
};

}  // namespace

TEST_F(Operators, EvaluateInTheOriginalOrder) {
    // Tightest first: unary -, * /, \, Mod, + -, &.
    const struct {
        const char* expression;
        const char* value;
    } cases[] = {
        {"'a' & 1 + 2", "a3"},
        {"2 + 3 & 'x'", "5x"},
        {"(1 + 2) & 3", "33"},
        {"'n' & -3 * 2", "n-6"},
        {"'a' & 2 * 3 mod 4", "a2"},
        {"7 mod 4 * 2", "7"},
        {"20 - 7 mod 4", "17"},
        {"17 mod 3 \\ 2", "0"},
        {"12 \\ 5 mod 2", "0"},
        {"2 * 7 \\ 3", "4"},
        {"7.6 \\ 2", "4"},
        {"-7 \\ 2", "-3"},
        {"10 / 4", "2.5"},
        {"5--1", "6"},
        {"abs(-2) & 'x' & 3 * 3", "2x9"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(evaluate(QStringLiteral("SELECT %1 AS v").arg(QLatin1String(c.expression))),
                  c.value)
            << c.expression;
}
