// Category counts: the arrays they leave, on a populated file.

#include <functional>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

using Statistics = records_test::RecordFixture;

// Runs a count, which must succeed, and gives its two arrays.
using Arrays = std::pair<QVariantList, QVariantList>;
using Calc = std::function<Arrays()>;
template <typename Record>
Calc calc(bool (Record::*op)()) {
    return [op] {
        Record r;
        EXPECT_TRUE((r.*op)()) << r.ErrMsg().toStdString();
        return Arrays{r.arrDesc(), r.arrValue()};
    };
}

// `counts`: "label=count" in row order, blank-separated; `ordered`: the
// statement orders its rows, otherwise they are compared as a set.
void expectCounts(const Calc& run, const char* counts, bool ordered) {
    SCOPED_TRACE(counts);
    const auto [desc, value] = run();
    // Sized from the row count: one more entry than rows, the last left
    // empty; the two fixed participation categories fill theirs exactly.
    QStringList expected = QString::fromUtf8(counts).split(QLatin1Char(' '));
    const bool fixed = expected.first().startsWith(QStringLiteral("有="));
    ASSERT_EQ(desc.size(), expected.size() + (fixed ? 0 : 1));
    ASSERT_EQ(value.size(), desc.size());
    EXPECT_TRUE(fixed || (desc.last().isNull() && value.last().isNull()));
    QStringList got;
    for (qsizetype i = 0; i < expected.size(); ++i)
        got << desc[i].toString() + QLatin1Char('=') + QString::number(value[i].toInt());
    if (!ordered) {
        got.sort();
        expected.sort();
    }
    EXPECT_EQ(got, expected);
}

TEST_F(Statistics, EveryCountFillsBothArrays) {
    for (const char* sql : {
             "DELETE * FROM options WHERE opt_name='tag' OR opt_name='probability'",
             "INSERT INTO options (opt_object, opt_name, opt_description) VALUES ('con', 'tag', "
             "'B'), ('con', 'tag', 'A2'), ('con', 'tag', 'A'), ('con', 'tag', 'O''K'), ('con', "
             "'tag', ' C '), ('acc', 'tag', 'A'), ('acc', 'tag', 'B'), ('opp', 'tag', 'Y'), "
             "('opp', 'tag', 'X'), ('opp', 'Probability', '20'), ('opp', 'probability', '50'), "
             "('opp', 'probability', '80'), ('opp', 'probability', '九成')",
             "INSERT INTO contacts (con_id, con_important, con_relation, con_province, con_tag) "
             "VALUES (1, '重要', '客户', '北京', 'A2'), (2, '重要', '朋友', '上海', 'A,B'), (3, "
             "NULL, '客户', '北京', NULL), (4, '一般', NULL, NULL, 'BC')",
             "INSERT INTO accounts (acc_id, acc_name, acc_type, acc_industry, acc_important, "
             "acc_province, acc_tag) VALUES (10, '华信', '客户', 'IT', '重要', '北京', 'A'), (11, "
             "'华信', '供应商', NULL, NULL, '北京', NULL), (12, '东方', '客户', 'IT', '重要', "
             "'广东', 'AB')",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1), (11, 2), (12, 3)",
             "INSERT INTO opportunities (opp_id, opp_important, opp_type, opp_phase, opp_industry, "
             "opp_province, opp_succeed_probability, opp_tag) VALUES (20, '重要', '新', '谈判', "
             "'IT', '北京', 80, 'X'), (21, '一般', '新', '初期', NULL, '北京', 20, 'X,Y'), (22, "
             "'重要', NULL, '谈判', 'IT', NULL, 80, NULL)",
             "INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 1), (21, 1), (20, 3)",
             "INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (20, 10)",
             "INSERT INTO documents (doc_id, doc_tag) VALUES (1, '合同'), (2, NULL), (3, '合同')",
         })
        run(QString::fromUtf8(sql));
    expectCounts(calc(&Contact::CalcByOpportunity), "有=2 无=2", true);
    expectCounts(calc(&Contact::CalcByImportant), "重要=2 =1 一般=1", false);
    expectCounts(calc(&Contact::CalcByAccType), "客户=2 供应商=1 =1", false);
    expectCounts(calc(&Contact::CalcByRelation), "客户=2 朋友=1 =1", false);
    expectCounts(calc(&Contact::CalcByIndustry), "IT=2 =2", false);
    expectCounts(calc(&Contact::CalcByProvince), "北京=2 上海=1 =1", false);
    // Two accounts of one name stay apart: grouped by key.
    expectCounts(calc(&Contact::CalcByAccount), "华信=1 华信=1 东方=1 =1", false);
    // By substring: tag A counts A2; " C " sorts first, is shown trimmed and counted
    // with its blanks (BC is not counted).
    expectCounts(calc(&Contact::CalcByTag), "C=0 A=2 A2=1 B=2 O'K=0", true);
    expectCounts(calc(&Account::CalcByOpportunity), "有=1 无=2", true);
    expectCounts(calc(&Account::CalcByImportant), "重要=2 =1", false);
    expectCounts(calc(&Account::CalcByAccType), "客户=2 供应商=1", false);
    expectCounts(calc(&Account::CalcByRelation), "=3", false);
    expectCounts(calc(&Account::CalcByIndustry), "IT=2 =1", false);
    expectCounts(calc(&Account::CalcByProvince), "北京=2 广东=1", false);
    expectCounts(calc(&Account::CalcByTag), "A=2 B=1", true);
    expectCounts(calc(&Opportunity::CalcByImportant), "重要=2 一般=1", false);
    expectCounts(calc(&Opportunity::CalcByOppType), "新=2 =1", false);
    expectCounts(calc(&Opportunity::CalcByPhase), "初期=1 谈判=2", true);
    expectCounts(calc(&Opportunity::CalcByIndustry), "IT=2 =1", false);
    expectCounts(calc(&Opportunity::CalcByProvince), "北京=2 =1", false);
    expectCounts(calc(&Opportunity::CalcByOppTag), "X=2 Y=1", true);
    // Only the numeric options are counted, as many as there are.
    expectCounts(calc(&Opportunity::CalcByProbability), "20=1 50=0 80=2 九成=0", false);
    expectCounts(calc(&document::CalcByTag), "合同=2 =1", false);
}

TEST_F(Statistics, AnEmptyTableGivesArraysForZeroRowsAndAFailureNamesItsCount) {
    run("DELETE * FROM options");
    EXPECT_EQ(calc(&Account::CalcByTag)().second, QVariantList{QVariant()});
    run("DROP TABLE options");
    Opportunity o;
    EXPECT_FALSE(o.CalcByProbability());
    EXPECT_TRUE(o.ErrMsg().startsWith("CalcByProbability出错，原因可能是"));
}

// Option texts that the engine would not read as plain text or plain numbers:
// "%" and "_" in a tag are no wildcards, and a probability only goes into its
// statement when it is a whole number.
TEST_F(Statistics, TagsMatchAsPlainSubstringsAndOnlyWholeProbabilitiesAreCounted) {
    run("DELETE * FROM options WHERE opt_name='tag' OR opt_name='probability'");
    run("INSERT INTO options (opt_object, opt_name, opt_description) VALUES ('con', 'tag', "
        "'5%'), ('con', 'tag', 'a_b'), ('con', 'tag', '折扣'), ('opp', 'probability', 'inf'), "
        "('opp', 'probability', 'nan'), ('opp', 'probability', '1e1'), ('opp', "
        "'probability', '10')");
    run("INSERT INTO contacts (con_id, con_tag) VALUES (1, '5%折扣'), (2, '50折扣'), (3, "
        "'a_b'), (4, 'axb'), (5, NULL)");
    run("INSERT INTO opportunities (opp_id, opp_succeed_probability) VALUES (1, 10), (2, 10)");
    expectCounts(calc(&Contact::CalcByTag), "5%=1 a_b=1 折扣=2", false);
    expectCounts(calc(&Opportunity::CalcByProbability), "inf=0 nan=0 1e1=0 10=2", false);
}

}  // namespace
