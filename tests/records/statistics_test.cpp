// Category counts: the exact statements and the arrays they leave, on a
// populated file.

#include <functional>
#include <vector>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

class Statistics : public records_test::RecordFixture {
protected:
    void populate() {
        for (const char* sql : {
                 "DELETE * FROM options WHERE opt_name='tag' OR opt_name='probability'",
                 "INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                 "('con', 'tag', 'B'), ('con', 'tag', 'A2'), ('con', 'tag', 'A'), "
                 "('con', 'tag', 'O''K'), ('con', 'tag', ' C '), ('acc', 'tag', 'A'), "
                 "('acc', 'tag', 'B'), ('opp', 'tag', 'Y'), ('opp', 'tag', 'X'), "
                 "('opp', 'Probability', '20'), ('opp', 'probability', '50'), "
                 "('opp', 'probability', '80'), ('opp', 'probability', '九成')",
                 "INSERT INTO contacts (con_id, con_lastname, con_important, con_relation, "
                 "con_province, con_tag, con_private) VALUES "
                 "(1, '张', '重要', '客户', '北京', 'A2', 0), "
                 "(2, '李', '重要', '朋友', '上海', 'A,B', 1), "
                 "(3, '王', NULL, '客户', '北京', NULL, 0), "
                 "(4, '赵', '一般', NULL, NULL, 'B', 0)",
                 "INSERT INTO accounts (acc_id, acc_name, acc_type, acc_industry, acc_important, "
                 "acc_province, acc_tag, acc_private) VALUES "
                 "(10, '华信', '客户', 'IT', '重要', '北京', 'A', 0), "
                 "(11, '华信', '供应商', NULL, NULL, '北京', NULL, 1), "
                 "(12, '东方', '客户', 'IT', '重要', '广东', 'AB', 0)",
                 "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1), (11, 2), (12, 3)",
                 "INSERT INTO opportunities (opp_id, opp_subject, opp_important, opp_type, "
                 "opp_phase, opp_industry, opp_province, opp_succeed_probability, opp_tag, "
                 "opp_private) VALUES "
                 "(20, 'a', '重要', '新', '谈判', 'IT', '北京', 80, 'X', 1), "
                 "(21, 'b', '一般', '新', '初期', NULL, '北京', 20, 'X,Y', 0), "
                 "(22, 'c', '重要', NULL, '谈判', 'IT', NULL, 80, NULL, 0)",
                 "INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 1), (21, 1), "
                 "(20, 3)",
                 "INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (20, 10)",
                 "INSERT INTO documents (doc_id, doc_name, doc_tag) VALUES (1, 'x', '合同'), "
                 "(2, 'y', NULL), (3, 'z', '合同')",
             })
            run(QString::fromUtf8(sql));
    }
};

struct Arrays {
    bool ok = false;
    QVariantList desc, value;
    QString errMsg;
};

template <typename Record>
Arrays calc(bool (Record::*op)()) {
    Record r;
    Arrays a;
    a.ok = (r.*op)();
    a.desc = r.arrDesc();
    a.value = r.arrValue();
    a.errMsg = r.ErrMsg();
    return a;
}

struct CountCase {
    const char* name;
    std::function<Arrays()> run;
    QStringList statements;
    QStringList counts;  // "label=count", in row order
    bool ordered;        // the statement orders its rows; otherwise compare as a set
};

QString tagCount(const char* prefix, const char* tag) {
    return QLatin1String(prefix) + QString::fromUtf8(tag) + QStringLiteral("%' ");
}

const char* kConTag =
    "SELECT count(contacts.con_id) AS option_count FROM contacts WHERE  con_tag LIKE '%";
const char* kAccTag =
    "SELECT count(accounts.acc_id) AS option_count FROM accounts WHERE  acc_tag LIKE '%";
const char* kOppTag =
    "SELECT count(opportunities.opp_id) AS option_count FROM opportunities WHERE  "
    "opp_tag LIKE '%";
const char* kProbability =
    "SELECT count(opportunities.opp_id) AS option_count FROM opportunities "
    "WHERE  opp_succeed_probability =";

std::vector<CountCase> countCases() {
    return {
        {"Contact.CalcByOpportunity",
         [] { return calc(&Contact::CalcByOpportunity); },
         {"SELECT COUNT(*) AS con_count FROM contacts WHERE con_id IN (SELECT DISTINCT con_id FROM "
          "opportunities_contacts)",
          "SELECT COUNT(*) AS con_count FROM contacts WHERE con_id NOT IN (SELECT DISTINCT con_id "
          "FROM opportunities_contacts)"},
         {"有=2", "无=2"},
         true},
        {"Contact.CalcByImportant",
         [] { return calc(&Contact::CalcByImportant); },
         {"SELECT first(contacts.con_important) AS con_option, count(contacts.con_id) AS "
          "option_count  From contacts GROUP BY contacts.con_important "},
         {"重要=2", "=1", "一般=1"},
         false},
        {"Contact.CalcByAccType",
         [] { return calc(&Contact::CalcByAccType); },
         {"SELECT first(accounts.acc_type) AS con_option, count(contacts.con_id) AS option_count  "
          "From que_contacts_accounts GROUP BY accounts.acc_type"},
         {"客户=2", "供应商=1", "=1"},
         false},
        {"Contact.CalcByRelation",
         [] { return calc(&Contact::CalcByRelation); },
         {"SELECT first(contacts.con_relation) AS con_option, count(contacts.con_id) AS "
          "option_count  From contacts GROUP BY contacts.con_relation "},
         {"客户=2", "朋友=1", "=1"},
         false},
        {"Contact.CalcByIndustry",
         [] { return calc(&Contact::CalcByIndustry); },
         {"SELECT first(accounts.acc_industry) AS con_option, count(contacts.con_id) AS "
          "option_count  From que_contacts_accounts GROUP BY accounts.acc_industry"},
         {"IT=2", "=2"},
         false},
        {"Contact.CalcByProvince",
         [] { return calc(&Contact::CalcByProvince); },
         {"SELECT first(contacts.con_province) AS con_option, count(contacts.con_id) AS "
          "option_count  From contacts GROUP BY contacts.con_province "},
         {"北京=2", "上海=1", "=1"},
         false},
        {"Contact.CalcByAccount",
         [] { return calc(&Contact::CalcByAccount); },
         {"SELECT first(accounts.acc_name) AS con_option, count(contacts.con_id) AS option_count  "
          "From que_contacts_accounts GROUP BY accounts.acc_id "},
         {"华信=1", "华信=1", "东方=1", "=1"},
         false},
        {"Contact.CalcByTag",
         [] { return calc(&Contact::CalcByTag); },
         {"SELECT opt_description FROM  options WHERE opt_object= 'con'  AND  opt_name='tag' "
          "ORDER BY  opt_description",
          tagCount(kConTag, " C "), tagCount(kConTag, "A"), tagCount(kConTag, "A2"),
          tagCount(kConTag, "B"), tagCount(kConTag, "O''K")},
         {"C=0", "A=2", "A2=1", "B=2", "O'K=0"},
         true},
        {"Account.CalcByOpportunity",
         [] { return calc(&Account::CalcByOpportunity); },
         {"SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id IN (SELECT DISTINCT acc_id FROM "
          "opportunities_accounts)",
          "SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id NOT IN (SELECT DISTINCT acc_id "
          "FROM opportunities_accounts)"},
         {"有=1", "无=2"},
         true},
        {"Account.CalcByImportant",
         [] { return calc(&Account::CalcByImportant); },
         {"SELECT first(accounts.acc_important) AS acc_option, count(accounts.acc_id) AS "
          "option_count  From accounts GROUP BY accounts.acc_important "},
         {"重要=2", "=1"},
         false},
        {"Account.CalcByAccType",
         [] { return calc(&Account::CalcByAccType); },
         {"SELECT first(accounts.acc_type) AS acc_option, count(accounts.acc_id) AS option_count  "
          "From accounts GROUP BY accounts.acc_type "},
         {"客户=2", "供应商=1"},
         false},
        {"Account.CalcByRelation",
         [] { return calc(&Account::CalcByRelation); },
         {"SELECT first(accounts.acc_relation) AS acc_option, count(accounts.acc_id) AS "
          "option_count  From accounts GROUP BY accounts.acc_relation "},
         {"=3"},
         false},
        {"Account.CalcByIndustry",
         [] { return calc(&Account::CalcByIndustry); },
         {"SELECT first(accounts.acc_industry) AS acc_option, count(accounts.acc_id) AS "
          "option_count  From accounts GROUP BY accounts.acc_industry "},
         {"IT=2", "=1"},
         false},
        {"Account.CalcByProvince",
         [] { return calc(&Account::CalcByProvince); },
         {"SELECT first(accounts.acc_province) AS acc_option, count(accounts.acc_id) AS "
          "option_count  From accounts  GROUP BY accounts.acc_province "},
         {"北京=2", "广东=1"},
         false},
        {"Account.CalcByTag",
         [] { return calc(&Account::CalcByTag); },
         {"SELECT opt_description FROM  options WHERE opt_object= 'acc'  AND  opt_name='tag' "
          "ORDER BY  opt_description",
          tagCount(kAccTag, "A"), tagCount(kAccTag, "B")},
         {"A=2", "B=1"},
         true},
        {"Opportunity.CalcByImportant",
         [] { return calc(&Opportunity::CalcByImportant); },
         {"SELECT first(opportunities.opp_important) AS opp_option, count(opportunities.opp_id) "
          "AS option_count  From opportunities GROUP BY opportunities.opp_important"},
         {"重要=2", "一般=1"},
         false},
        {"Opportunity.CalcByOppType",
         [] { return calc(&Opportunity::CalcByOppType); },
         {"SELECT first(opportunities.opp_type) AS opp_option, count(opportunities.opp_id) AS "
          "option_count  From opportunities GROUP BY opportunities.opp_type"},
         {"新=2", "=1"},
         false},
        {"Opportunity.CalcByPhase",
         [] { return calc(&Opportunity::CalcByPhase); },
         {"SELECT first(opportunities.opp_phase) AS opp_option, count(opportunities.opp_id) AS "
          "option_count  From opportunities GROUP BY opportunities.opp_phase ORDER BY "
          "opportunities.opp_phase"},
         {"初期=1", "谈判=2"},
         true},
        {"Opportunity.CalcByIndustry",
         [] { return calc(&Opportunity::CalcByIndustry); },
         {"SELECT first(opportunities.opp_industry) AS opp_option, count(opportunities.opp_id) AS "
          "option_count  From opportunities GROUP BY opportunities.opp_industry"},
         {"IT=2", "=1"},
         false},
        {"Opportunity.CalcByProvince",
         [] { return calc(&Opportunity::CalcByProvince); },
         {"SELECT first(opportunities.opp_province) AS opp_option, count(opportunities.opp_id) AS "
          "option_count  From opportunities GROUP BY opportunities.opp_province"},
         {"北京=2", "=1"},
         false},
        {"Opportunity.CalcByOppTag",
         [] { return calc(&Opportunity::CalcByOppTag); },
         {"SELECT opt_description FROM  options WHERE opt_object= 'opp'  AND  opt_name='tag' "
          "ORDER BY  opt_description",
          tagCount(kOppTag, "X"), tagCount(kOppTag, "Y")},
         {"X=2", "Y=1"},
         true},
        {"Opportunity.CalcByProbability",
         [] { return calc(&Opportunity::CalcByProbability); },
         {"SELECT opt_description FROM options WHERE opt_object= 'opp'  AND  "
          "opt_name='probability'  ",
          QLatin1String(kProbability) + QStringLiteral("20"),
          QLatin1String(kProbability) + QStringLiteral("50"),
          QLatin1String(kProbability) + QStringLiteral("80")},
         {"20=1", "50=0", "80=2", "九成=0"},
         true},
        {"document.CalcByTag",
         [] { return calc(&document::CalcByTag); },
         {"SELECT first(documents.doc_tag) AS doc_option, count(documents.doc_id) AS option_count  "
          "From documents GROUP BY documents.doc_tag "},
         {"合同=2", "=1"},
         false},
    };
}

TEST_F(Statistics, EveryCountIssuesItsStatementAndFillsBothArrays) {
    populate();
    for (const CountCase& c : countCases()) {
        SCOPED_TRACE(c.name);
        Arrays a;
        const QStringList statements = traced([&] { a = c.run(); });
        ASSERT_TRUE(a.ok) << a.errMsg.toStdString();
        EXPECT_EQ(statements, c.statements);
        // Sized from the row count: one more entry than rows, the last left
        // empty; the two fixed participation categories fill theirs exactly.
        const qsizetype rows = c.counts.size();
        const bool fixed = c.counts.first().startsWith(QStringLiteral("有="));
        ASSERT_EQ(a.desc.size(), fixed ? rows : rows + 1);
        ASSERT_EQ(a.value.size(), a.desc.size());
        if (!fixed) {
            EXPECT_TRUE(a.desc.last().isNull() && a.value.last().isNull());
        }
        QStringList got;
        for (qsizetype i = 0; i < rows; ++i) {
            EXPECT_EQ(a.desc[i].typeId(), QMetaType::QString);
            got << a.desc[i].toString() + QLatin1Char('=') + QString::number(a.value[i].toInt());
        }
        QStringList expected = c.counts;
        if (!c.ordered) {
            got.sort();
            expected.sort();
        }
        EXPECT_EQ(got, expected);
    }
}

TEST_F(Statistics, AnEmptyFileGivesArraysForZeroRows) {
    run("DELETE * FROM options");
    Arrays grouped = calc(&Contact::CalcByImportant);
    ASSERT_TRUE(grouped.ok);
    EXPECT_EQ(grouped.desc.size(), 1);
    EXPECT_TRUE(grouped.desc[0].isNull());
    Arrays tags = calc(&Account::CalcByTag);
    ASSERT_TRUE(tags.ok);
    EXPECT_EQ(tags.value.size(), 1);
    Arrays phase = calc(&Opportunity::CalcByPhase);
    ASSERT_TRUE(phase.ok);
    EXPECT_EQ(phase.value.size(), 1);
    Arrays taking = calc(&Contact::CalcByOpportunity);
    ASSERT_TRUE(taking.ok);
    EXPECT_EQ(taking.value, (QVariantList{0, 0}));
}

TEST_F(Statistics, AFailedCountNamesItselfInErrMsg) {
    run("DROP TABLE options");
    const Arrays tag = calc(&Contact::CalcByTag);
    EXPECT_FALSE(tag.ok);
    EXPECT_TRUE(tag.errMsg.startsWith(QStringLiteral("CalcByTag出错，原因可能是")))
        << tag.errMsg.toStdString();
    const Arrays probability = calc(&Opportunity::CalcByProbability);
    EXPECT_FALSE(probability.ok);
    EXPECT_TRUE(probability.errMsg.startsWith(QStringLiteral("CalcByProbability出错，原因可能是")));
    const Arrays oppTag = calc(&Opportunity::CalcByOppTag);
    EXPECT_TRUE(oppTag.errMsg.startsWith(QStringLiteral("CalcByOppTag出错，原因可能是")));
}

}  // namespace
