// What a column holds and how a longer text is cut: whole characters only,
// whatever the script, and the same widths wherever a record is written.

#include "records/columnlimit.h"

#include <gtest/gtest.h>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"

using namespace tarvel;

namespace {

const QString kSmile = QStringLiteral("\U0001F600");                   // one pair of UTF-16 units
const QString kAcute = QStringLiteral("e\u0301");                      // e + combining acute
const QString kFamily = QStringLiteral("\U0001F468\u200D\U0001F469");  // man ZWJ woman
const QString kFlag = QStringLiteral("\U0001F1E8\U0001F1F3");          // a regional-indicator pair

struct CutCase {
    const char* name;
    QString text;
    int limit;
    QString kept;
};

class Cut : public testing::TestWithParam<CutCase> {};

TEST_P(Cut, KeepsWholeCharactersWithinTheLimit) {
    const CutCase& c = GetParam();
    const QString kept = columnlimit::cut(c.text, c.limit);
    EXPECT_EQ(kept, c.kept) << c.name;
    EXPECT_EQ(columnlimit::cutPosition(c.text, c.limit), c.kept.size()) << c.name;
    EXPECT_FALSE(columnlimit::exceeds(kept, c.limit)) << c.name;
    EXPECT_EQ(columnlimit::exceeds(c.text, c.limit), kept != c.text) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Cut,
    testing::Values(
        CutCase{"ascii", QStringLiteral("abcdef"), 4, QStringLiteral("abcd")},
        CutCase{"ascii fits", QStringLiteral("abcd"), 4, QStringLiteral("abcd")},
        CutCase{"no limit", QStringLiteral("长").repeated(300), 0,
                QStringLiteral("长").repeated(300)},
        // An emoji counts as one character though it takes two UTF-16 units.
        CutCase{"emoji counted once", kSmile.repeated(50), 50, kSmile.repeated(50)},
        CutCase{"emoji at the cut",
                QStringLiteral("张").repeated(49) + kSmile + QStringLiteral("三"), 50,
                QStringLiteral("张").repeated(49) + kSmile},
        // The limit falls between a letter and its accent: both go.
        CutCase{"combining mark at the cut", QStringLiteral("abc") + kAcute + QStringLiteral("x"),
                4, QStringLiteral("abc")},
        CutCase{"joined emoji at the cut", QStringLiteral("ab") + kFamily, 4, QStringLiteral("ab")},
        CutCase{"flag at the cut", QStringLiteral("a") + kFlag, 2, QStringLiteral("a")}));

TEST(ColumnLimit, CountsCodePoints) {
    EXPECT_EQ(columnlimit::length(QString()), 0);
    EXPECT_EQ(columnlimit::length(kSmile + kSmile), 2);
    EXPECT_EQ(columnlimit::length(kAcute), 2);
}

TEST(ColumnLimit, WidthsByColumn) {
    const std::pair<const char*, int> widths[] = {
        {"con_lastname", 50}, {"CON_LASTNAME", 50},        {"con_email3", 50},
        {"acc_name", 50},     {"con_address_family", 255}, {"tas_subject", 255},
        {"opp_subject", 255}, {"con_description", 0},      {"doc_path", 0},
        {"con_birthday", 0},  {"acc_private", 0},          {"set_value", 0},
        {"no_such", 0}};
    for (const auto& [column, width] : widths)
        EXPECT_EQ(columnlimit::width(QLatin1String(column)), width) << column;
}

// The panels cut each control to the description's width; where the control
// writes a column, that width is the column's. Pages find a column by its
// control or property name, so each name leads back to its own column.
template <typename Record>
void expectDescribedCutsAgree() {
    const auto& d = Record::description();
    for (const auto& c : d.columns) {
        const int width = c.column ? columnlimit::width(QLatin1String(c.column)) : 0;
        if (c.control && c.cut > 0 && width > 0) {
            EXPECT_EQ(c.cut, width) << c.column;
        }
        EXPECT_EQ(d.byProperty(QLatin1String(c.property)), &c) << c.property;
        if (c.control) {
            EXPECT_EQ(d.byControl(QLatin1String(c.control)), &c) << c.control;
        }
    }
}

TEST(ColumnLimit, RecordDescriptionsAgree) {
    expectDescribedCutsAgree<Contact>();
    expectDescribedCutsAgree<Account>();
    expectDescribedCutsAgree<Opportunity>();
    expectDescribedCutsAgree<document>();
}

}  // namespace
