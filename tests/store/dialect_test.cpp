#include "store/dialect.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include "store/dialectcriterion.h"
#include "store/dialectlexer.h"

using tarvel::dialect::translateUncached;

namespace {

struct Case {
    const char* jet;
    const char* engine;  // nullptr: refused with a message
};

// Texts the program writes and odd ones: what the engine must be given for them, or a refusal.
const Case kTranslations[] = {
    {"DELETE * FROM accounts_contacts WHERE acc_id=5",
     "DELETE  FROM accounts_contacts WHERE acc_id=5"},
    {"SELECT Now(), Date()", "SELECT tv_now(), tv_date()"},
    {"WHERE x=1.5e3", "WHERE x=1.5e3"},
    {"WHERE name=\"it's \"\"hi\"\"\"", "WHERE name='it''s \"hi\"'"},
    {"SELECT x.date, date_col FROM t", "SELECT x.date, date_col FROM t"},
    {"SELECT first(accounts.acc_industry) AS con_option, count(contacts.con_id) AS option_count  "
     "From que_contacts_accounts GROUP BY accounts.acc_industry",
     "SELECT first(que_contacts_accounts.acc_industry) AS con_option, "
     "count(que_contacts_accounts.con_id) AS option_count  From que_contacts_accounts GROUP BY "
     "que_contacts_accounts.acc_industry"},
    // A base table next to the query keeps its own qualifiers.
    {"SELECT contacts.con_id FROM contacts, que_contacts_accounts",
     "SELECT contacts.con_id FROM contacts, que_contacts_accounts"},
    // Searches escape their wildcards; brackets in a pattern are plain characters.
    {"UPDATE que_contacts_accounts SET con_check=0 WHERE con_lastname LIKE '%[x]\\%%' ESCAPE "
     "'\\'",
     "UPDATE contacts SET con_check=0  WHERE con_id IN (SELECT con_id FROM que_contacts_accounts "
     "WHERE con_lastname LIKE '%[x]\\%%' ESCAPE '\\')"},
    {"UPDATE que_contacts_accounts SET con_check=0",
     "UPDATE contacts SET con_check=0 WHERE con_id IN (SELECT con_id FROM que_contacts_accounts )"},
    {"SELECT f(a & b + 1, c) & d", "SELECT f(a || (b + 1), c) || d"},
    {"SELECT a FROM t WHERE NOT (con_check = 0)", "SELECT a FROM t WHERE NOT (con_check = 0)"},
    {"SELECT a FROM t WHERE NOT (con_check) AND NOT (x)",
     "SELECT a FROM t WHERE ~ (con_check) AND NOT (x)"},
    // What the order cannot change is left as written.
    {"SELECT a.*, b FROM t AS a", "SELECT a.*, b FROM t AS a"},
    {"SELECT a & ", "SELECT a || "},
    {"SELECT (a & b", "SELECT (a || b"},
    {"SELECT '?', [a?b], \"?\"", "SELECT '?', \"a?b\", '?'"},
    {"SELECT [it's], [a\"b]", "SELECT \"it's\", \"a\"\"b\""},
    {"SELECT '' & \"\"", "SELECT '' || ''"},
    {"SELECT ))) & (", "SELECT ))) || ("},
    {"mod mod mod", "% % %"},
    {"- - -", "- - -"},
    {"DELETE FROM t WHERE a--1=0 AND b=2", "DELETE FROM t WHERE a- -1=0 AND b=2"},
    {"SELECT 1-true", "SELECT 1- -1"},
    // Date literals: month first, the two-digit year's window, 12 AM and PM, any separator.
    {"x=#12/31/99#", "x='1999-12-31 00:00:00'"},
    {"x=#1/2/05#", "x='2005-01-02 00:00:00'"},
    {"x=#12:00 AM#", "x='1899-12-30 00:00:00'"},
    {"x=#12:30 PM#", "x='1899-12-30 12:30:00'"},
    {"x=#9:30 AM#", "x='1899-12-30 09:30:00'"},
    {"x=#2024-2-29 23:59:59#", "x='2024-02-29 23:59:59'"},
    {"x=#2024/03/05#", "x='2024-03-05 00:00:00'"},
    {"x=#3/5/2024 14:00#", "x='2024-03-05 14:00:00'"},
    {"SELECT 'open", nullptr},
    {"SELECT 'a'' ", nullptr},
    {"SELECT \"open", nullptr},
    {"SELECT [open", nullptr},
    {"SELECT #2024-1-1", nullptr},
    {"SELECT #'#", nullptr},
    {"x=#2024-13-01#", nullptr},
    {"x=#yesterday#", nullptr},
    {"x=#25:00#", nullptr},
};

}  // namespace

// Operators keep the original order, double quotes and brackets become the engine's, and
// what cannot be read is reported.
TEST(Dialect, TranslatesOrRefuses) {
    for (const Case& c : kTranslations) {
        const auto t = translateUncached(QString::fromUtf8(c.jet));
        if (c.engine) {
            EXPECT_TRUE(t.error.isEmpty()) << c.jet << ": " << t.error.toStdString();
            EXPECT_EQ(t.sql.toStdString(), c.engine) << "from: " << c.jet;
        } else {
            EXPECT_FALSE(t.error.isEmpty()) << c.jet << " -> " << t.sql.toStdString();
        }
    }
}

// Compared numbers become parameters; the caller's own ? marks and those numbers share
// one numbering, in the order they stand.
TEST(Dialect, MarksAndComparedNumbersShareOneOrder) {
    using tarvel::dialect::translate;
    const struct {
        const char* jet;
        QList<QVariant> bound;
        const char* engine;
        QList<QVariant> parameters;
        bool error;
    } cases[] = {
        {"SELECT a WHERE b=5", {}, "SELECT a WHERE b=?", {5}, false},
        {"DELETE FROM t WHERE p>=2.5", {}, "DELETE FROM t WHERE p>=?", {2.5}, false},
        // Glued, quoted and dated numbers stay as written, and every number of an insert.
        {"SELECT a WHERE x=11AND y='=3'", {}, "SELECT a WHERE x=11 AND y='=3'", {}, false},
        {"SELECT a WHERE d=#2024-1-1#", {}, "SELECT a WHERE d='2024-01-01 00:00:00'", {}, false},
        {"INSERT INTO t SELECT 1 WHERE 1=1", {}, "INSERT INTO t SELECT 1 WHERE 1=1", {}, false},
        {"SELECT a WHERE b=? AND c=5", {"x"}, "SELECT a WHERE b=? AND c=?", {"x", 5}, false},
        {"SELECT a WHERE c=5 AND b=?", {"x"}, "SELECT a WHERE c=? AND b=?", {5, "x"}, false},
        {"SELECT ?,[?],\"?\" WHERE c=7", {1}, "SELECT ?,\"?\",'?' WHERE c=?", {1, 7}, false},
        // A mark never becomes a numbered one.
        {"SELECT a WHERE b=?1", {"x"}, "SELECT a WHERE b=? 1", {"x"}, false},
        {"SELECT a WHERE b=? OR c=?", {"x"}, "SELECT a WHERE b=? OR c=?", {"x", {}}, true},
        {"SELECT a WHERE c=5", {"x"}, "SELECT a WHERE c=?", {5}, true},
    };
    for (const auto& c : cases) {
        const auto t = translate(QString::fromUtf8(c.jet), c.bound);
        EXPECT_EQ(t.sql.toStdString(), c.engine);
        EXPECT_EQ(t.parameters, c.parameters) << c.jet;
        EXPECT_EQ(!t.error.isEmpty(), c.error) << c.jet << ": " << t.error.toStdString();
    }
    // Two ids, one translation: the second comes from the cache with its own value.
    EXPECT_EQ(translate(QStringLiteral("SELECT a WHERE b=6")).parameters, QList<QVariant>{6});
}

TEST(Dialect, SearchConditions) {
    using tarvel::dialect::Criterion;
    const QVariant invalid = QStringLiteral("<invalid>");
    const struct {
        const char* text;
        const char* column;
        const char* op;
        QVariant value;  // `invalid` when refused
    } cases[] = {
        {" contacts.con_id >= -2.5 ", "contacts.con_id", ">=", -2.5},
        {"[con_lastname] like '李%'", "con_lastname", "LIKE", QStringLiteral("李%")},
        {"con_nickname<>'it''s = #1#'", "con_nickname", "<>", QStringLiteral("it's = #1#")},
        {"con_birthday < #1980-2-29#", "con_birthday", "<",
         QDateTime(QDate(1980, 2, 29), QTime(0, 0))},
        {"con_id = 1e3", "con_id", "=", 1000.0},
        {"con_id = ", "", "", invalid},
        {"= 5", "", "", invalid},
        {"con_id 5", "", "", invalid},
        {"con_id = 'open", "", "", invalid},
        {"con_id = -'x'", "", "", invalid},
        {"con_birthday = #2024-13-1#", "", "", invalid},
        {"a. = 1", "", "", invalid},
    };
    for (const auto& c : cases) {
        Criterion criterion;
        QString error;
        const bool ok =
            tarvel::dialect::parseCriterion(QString::fromUtf8(c.text), criterion, error);
        EXPECT_EQ(ok, c.value != invalid) << c.text << ": " << error.toStdString();
        EXPECT_EQ(error.isEmpty(), ok) << c.text;
        if (!ok) continue;
        EXPECT_EQ(criterion.column.toStdString(), c.column);
        EXPECT_EQ(criterion.op.toStdString(), c.op);
        EXPECT_EQ(criterion.value, c.value) << c.text;
    }
}

// Random texts of operators, groups, marks and quotes: no crash (an unreadable text is
// refused), quoted text reaches the engine as written, and every ? the engine sees has
// one value.
TEST(Dialect, RandomExpressionsKeepQuotesAndMarks) {
    using tarvel::dialect::Lexeme;
    using tarvel::dialect::LexemeKind;
    using tarvel::dialect::Lexer;
    const auto marks = [](const QString& text) {
        Lexer lexer(text);
        int count = 0;
        for (Lexeme l; lexer.next(l);) count += l.kind == LexemeKind::Mark;
        return lexer.error().isEmpty() ? count : -1;
    };
    const QStringList pieces = QStringLiteral(
                                   "WHERE ,(,),&, mod ,\\,-,+,*,/,=,?,5,x,NOT ,con_check,true,., ,"
                                   "'q?''#',[n?],\"?\",#2024-1-1#,now,11AND,"
                                   "que_contacts_accounts,张")
                                   .split(QLatin1Char(','));
    const QString payload = QStringLiteral("'a''#now# \"x\" [y] ? & mod'");
    quint32 seed = 2024;
    auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 16; };
    for (int round = 0; round < 3000; ++round) {
        QString text = QStringLiteral("SELECT ");
        for (int n = next() % 14; n > 0; --n) text += pieces[next() % pieces.size()];
        // must not crash or hang
        translateUncached(QString(text).insert(next() % (text.size() + 1), "'\"[#"[next() % 4]));
        text += QStringLiteral(" & ") + payload;
        const int count = marks(text);
        ASSERT_GE(count, 0) << text.toStdString();
        const auto t = tarvel::dialect::translate(text, QList<QVariant>(count, 1));
        ASSERT_TRUE(t.error.isEmpty()) << text.toStdString() << ": " << t.error.toStdString();
        EXPECT_TRUE(t.sql.contains(payload)) << text.toStdString() << " -> " << t.sql.toStdString();
        EXPECT_EQ(marks(t.sql), t.parameters.size())
            << text.toStdString() << " -> " << t.sql.toStdString();
    }
}
