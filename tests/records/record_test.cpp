// Storing, loading and removing single records, and the error text.

#include <QRegularExpression>

#include "records/account.h"
#include "records/contact.h"
#include "records/currency.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "store/connectionstring.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;
using records_test::withId;

namespace {

using Records = records_test::RecordFixture;
using records_test::at;

// Every text property of a contact, so each gets its own value and a column
// written or read in the wrong place shows.
using Text = std::pair<void (Contact::*)(const QString&), QString (Contact::*)() const>;
template <typename... T>
std::vector<Text> textList(T... texts) {
    return {texts...};
}
#define TEXT(name) Text(&Contact::set##name, &Contact::name)
const std::vector<Text> kTexts = textList(
    TEXT(FirstName), TEXT(LastName), TEXT(NickName), TEXT(Title), TEXT(Description),
    TEXT(DepartmentTitle), TEXT(Telephone), TEXT(Telephone2), TEXT(Telephone3), TEXT(Mobile),
    TEXT(Mobile2), TEXT(Mobile3), TEXT(Fax), TEXT(Fax2), TEXT(Fax3), TEXT(EMail), TEXT(EMail2),
    TEXT(EMail3), TEXT(FamilyAddress), TEXT(FamilyPostcode), TEXT(IM), TEXT(IM2), TEXT(IM3),
    TEXT(Website), TEXT(Province), TEXT(Important), TEXT(Relation), TEXT(Tag));
#undef TEXT

Contact fullContact() {
    Contact c;
    int i = 0;
    for (const auto& [set, get] : kTexts) (c.*set)(QStringLiteral("第%1项\r\nit's").arg(++i));
    c.setCreateDate(at(2025, 1, 2));
    c.setRCDate(at(2025, 6, 7, 13, 14, 15));
    c.setBirthday(at(1990, 2, 28));
    c.setiPrivate(1);
    return c;
}

QStringList fields(const Contact& c) {
    QStringList out;
    for (const auto& [set, get] : kTexts) out << (c.*get)();
    return out << c.CreateDate().toString(Qt::ISODate) << c.RCDate().toString(Qt::ISODate)
               << c.Birthday().toString(Qt::ISODate) << QString::number(c.iPrivate());
}

template <typename Record>
Record loaded(int id) {
    Record r = withId<Record>(id);
    EXPECT_TRUE(r.GetById()) << r.ErrMsg().toStdString();
    return r;
}

TEST_F(Records, ContactAddStoresEveryFieldUpdateAllButTheCreationDateDeleteOnlyTheRow) {
    // A deleted row's key is never reused, so a key guessed from GetMaxId would be wrong.
    run("INSERT INTO contacts (con_lastname) VALUES ('临时')");
    run("DELETE * FROM contacts");
    Contact c = fullContact();
    ASSERT_TRUE(c.Add()) << c.ErrMsg().toStdString();
    EXPECT_EQ(c.GetMaxId().toInt(), 2);
    EXPECT_EQ(fields(loaded<Contact>(2)), fields(c));

    Contact changed = fullContact();
    changed.setID(2);
    changed.setEMail3(QString());
    changed.setCreateDate(at(2000, 1, 1));
    changed.setBirthday(at(1900, 1, 1));
    changed.setiPrivate(0);
    ASSERT_TRUE(changed.Update()) << changed.ErrMsg().toStdString();
    changed.setCreateDate(at(2025, 1, 2));
    EXPECT_EQ(fields(loaded<Contact>(2)), fields(changed));

    // Delete leaves the links for DeleteRelation.
    ASSERT_TRUE(c.AddRelative(kind::Opportunity, 4, QStringLiteral("r")));
    ASSERT_TRUE(c.Delete());
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_contacts WHERE con_id=2"), 1);
}

TEST_F(Records, TheLoaderReadsNullsAsEmptyAndFillsTheAccountFromTheQuery) {
    run("INSERT INTO accounts (acc_id, acc_name, acc_website, acc_address, acc_postcode, "
        "acc_telephone) VALUES (12, '华信科技', 'www.hx.cn', '人民路1号', '200000', '021-1')");
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '李')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (12, 5)");
    Contact c = fullContact();  // everything set, to see the nulls overwrite it
    c.setID(5);
    ASSERT_TRUE(c.GetById());
    QStringList expected(kTexts.size() + 3);
    expected[1] = QStringLiteral("李");
    EXPECT_EQ(fields(c), expected << QStringLiteral("0"));
    const Account& a = c.Account();
    // Only the query's account columns are read, not the rest of the account.
    EXPECT_EQ((QStringList{QString::number(a.ID()), a.AccName(), a.Website(), a.Address(),
                           a.Postcode(), a.Telephone()}),
              (QStringList{"12", "华信科技", "www.hx.cn", "人民路1号", "200000", ""}));
    // A missing id leaves everything as it was and still succeeds.
    c.setID(99);
    ASSERT_TRUE(c.GetById());
    EXPECT_EQ(c.LastName() + QString::number(c.Account().ID()), QStringLiteral("李12"));
}

TEST_F(Records, GetByIdExReadsTheRoleAndClearsAStaleOne) {
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '李')");
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (3, '甲')");
    run("INSERT INTO opportunities_contacts (con_id, opp_id, con_part_in_opp) VALUES (5, 8, 'a')");
    auto c = withId<Contact>(5);
    ASSERT_TRUE(c.GetByIdEx(8, kind::Opportunity));
    EXPECT_EQ(c.PartInOpp(), "a");
    ASSERT_TRUE(c.GetByIdEx(9, kind::Opportunity));
    EXPECT_EQ(c.PartInOpp(), QString());
    // A pair of contacts is found whichever of them was stored first.
    run("INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (7, 5, '表兄'), "
        "(5, 9, '同事')");
    for (const auto& [other, relation] : {std::pair(7, "表兄"), std::pair(9, "同事")}) {
        ASSERT_TRUE(c.GetByIdEx(other, kind::Contact));
        EXPECT_EQ(c.PartInOpp(), relation);
    }
    auto a = withId<Account>(3);
    a.setPartInOpp(QStringLiteral("stale"));
    ASSERT_TRUE(a.GetByIdEx(8, kind::Opportunity));
    EXPECT_EQ(a.AccName() + a.PartInOpp(), QStringLiteral("甲"));
    Contact unsaved;
    EXPECT_TRUE(traced([&] { EXPECT_TRUE(unsaved.GetByIdEx(8, kind::Opportunity)); }).isEmpty());
}

TEST_F(Records, FailuresAccumulateInOrderWithTheOperationNames) {
    auto c = withId<Contact>(42);  // no such row: Update has nothing to write to
    EXPECT_FALSE(c.Update());
    setGlobalConnectionString(connectionStringFor(file.folder() + QStringLiteral("/none.tvg")));
    EXPECT_FALSE(c.GetById());
    EXPECT_TRUE(c.GetMaxId().isNull());
    setGlobalConnectionString(file.connectionString());
    EXPECT_FALSE(c.AddContact());  // a panel operation without a form
    // Each entry: the operation, the fixed words, a reason; joined in order.
    QString shape = c.ErrMsg();
    shape.replace(QRegularExpression("出错，原因可能是.+?(?= ; |$)"), "!");
    EXPECT_EQ(shape, "Update! ; GetById! ; GetMaxId! ; AddContact!") << c.ErrMsg().toStdString();
}

TEST_F(Records, AccountAndOpportunityAddReadBackAndUpdateKeepsTheCreationDate) {
    Account a;
    a.setAccName(QStringLiteral("东方贸易"));
    a.setCreateDate(at(2024, 5, 1));
    ASSERT_TRUE(a.Add());
    a.setCreateDate(at(1999, 1, 1));
    a.setIndustry(QStringLiteral("IT"));
    ASSERT_TRUE(a.Update());
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts WHERE acc_name='东方贸易' AND acc_industry='IT' "
                    "AND acc_create_date=#2024-5-1#"),
              1);

    // Amounts keep the ten-thousandth.
    Opportunity o;
    o.setESale(Currency::fromUnits(1234567891));
    o.setCreateDate(at(2026, 1, 1));
    ASSERT_TRUE(o.Add());
    Opportunity deal = loaded<Opportunity>(1);
    EXPECT_EQ(deal.ESale().units(), 1234567891);
    deal.setCreateDate(at(1999, 1, 1));
    deal.setSale(Currency::fromUnits(-5));
    ASSERT_TRUE(deal.Update());
    EXPECT_EQ(scalar("SELECT opp_create_date FROM opportunities").toDateTime(), at(2026, 1, 1));
    EXPECT_DOUBLE_EQ(scalar("SELECT opp_sale FROM opportunities").toDouble(), -0.0005);
}

TEST_F(Records, DocumentWritesItsOwnKeyAndUpdateRewritesTheCreationDate) {
    document numbered, chosen = withId<document>(42), edited = withId<document>(42);
    ASSERT_TRUE(numbered.Add());
    EXPECT_EQ(numbered.ID(), 1);
    chosen.setDocPath(QStringLiteral("C:\\docs\\报价单.xls"));
    chosen.setCreatDate(at(2025, 3, 1));
    ASSERT_TRUE(chosen.Add());
    edited.setDocName(QStringLiteral("报价单2.xls"));  // CreatDate not loaded first
    ASSERT_TRUE(edited.Update());
    const document d = loaded<document>(42);
    EXPECT_EQ(d.DocName() + d.DocPath(), QStringLiteral("报价单2.xls"));
    EXPECT_FALSE(d.CreatDate().isValid());
}

TEST_F(Records, LoadersMapColumnsByNameWhateverTheLayoutOfTheLastRead) {
    run("INSERT INTO contacts (con_id, con_fax2, con_fax3) VALUES (1, 'a2', 'a3'), (2, 'b2', "
        "'b3')");
    const ColumnSlots columns({"con_fax2", "con_fax3", "con_id"});
    // In turn: a first layout, the same statement but for its key, names that
    // differ only in a digit, and qualified names.
    const std::pair<const char*, const char*> reads[] = {
        {"SELECT con_fax2, con_fax3 FROM contacts WHERE con_id=1", "a2 a3 "},
        {"SELECT con_fax2, con_fax3 FROM contacts WHERE con_id=2", "b2 b3 "},
        {"SELECT con_fax3, con_fax2 FROM contacts WHERE con_id=2", "b2 b3 "},
        {"SELECT que_contacts_accounts.con_id, que_contacts_accounts.con_fax3 FROM "
         "que_contacts_accounts INNER JOIN contacts ON contacts.con_id = "
         "que_contacts_accounts.con_id WHERE que_contacts_accounts.con_id=1",
         " a3 1"}};
    for (const auto& [sql, expected] : reads) {
        tarveldatabase db;
        QStringList row;
        for (const QVariant& v : columns.read(*db.GetReadRs(QString::fromLatin1(sql))))
            row << v.toString();
        EXPECT_EQ(row.join(QLatin1Char(' ')), expected) << sql;
    }
}

TEST(CurrencyText, ParsesTypedAmountsAndPrintsTheShortestForm) {
    EXPECT_EQ(Currency::parse(QStringLiteral(" 1,234.56 "))->units(), 12345600);
    EXPECT_EQ(Currency::fromUnits(-3).toString(), QStringLiteral("-0.0003"));
    EXPECT_EQ(Currency::fromDouble(0.00005).toString(), QStringLiteral("0.0001"));  // rounded
}

}  // namespace
