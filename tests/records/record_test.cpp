// Storing, loading and removing single records, and the error text.

#include "records/account.h"
#include "records/contact.h"
#include "records/currency.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "store/connectionstring.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

using Records = records_test::RecordFixture;

QDateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return jetdate::naive(QDate(y, m, d), QTime(h, mi, s));
}

Contact fullContact() {
    Contact c;
    c.setFirstName(QStringLiteral("小明"));
    c.setLastName(QStringLiteral("王小明"));
    c.setNickName(QStringLiteral("阿明"));
    c.setTitle(QStringLiteral("先生"));
    c.setDepartmentTitle(QStringLiteral("销售部 经理"));
    c.setDescription(QStringLiteral("第一行\r\n第二行 it's"));
    c.setTelephone(QStringLiteral("010-1"));
    c.setTelephone2(QStringLiteral("010-2"));
    c.setTelephone3(QStringLiteral("010-3"));
    c.setMobile(QStringLiteral("138-1"));
    c.setMobile2(QStringLiteral("138-2"));
    c.setMobile3(QStringLiteral("138-3"));
    c.setFax(QStringLiteral("f1"));
    c.setFax2(QStringLiteral("f2"));
    c.setFax3(QStringLiteral("f3"));
    c.setEMail(QStringLiteral("a@x.cn"));
    c.setEMail2(QStringLiteral("b@x.cn"));
    c.setEMail3(QStringLiteral("c@x.cn"));
    c.setFamilyAddress(QStringLiteral("朝阳区"));
    c.setFamilyPostcode(QStringLiteral("100000"));
    c.setIM(QStringLiteral("im1"));
    c.setIM2(QStringLiteral("im2"));
    c.setIM3(QStringLiteral("im3"));
    c.setWebsite(QStringLiteral("www.x.cn"));
    c.setProvince(QStringLiteral("北京"));
    c.setImportant(QStringLiteral("重要"));
    c.setRelation(QStringLiteral("客户"));
    c.setCreateDate(at(2025, 1, 2));
    c.setRCDate(at(2025, 6, 7, 13, 14, 15));
    c.setBirthday(at(1990, 2, 28));
    c.setiPrivate(1);
    c.setTag(QStringLiteral("VIP,客户"));
    return c;
}

// Every stored property of two contacts, side by side.
QStringList contactFields(const Contact& c) {
    return {c.FirstName(),
            c.LastName(),
            c.NickName(),
            c.Title(),
            c.DepartmentTitle(),
            c.Description(),
            c.Telephone(),
            c.Telephone2(),
            c.Telephone3(),
            c.Mobile(),
            c.Mobile2(),
            c.Mobile3(),
            c.Fax(),
            c.Fax2(),
            c.Fax3(),
            c.EMail(),
            c.EMail2(),
            c.EMail3(),
            c.FamilyAddress(),
            c.FamilyPostcode(),
            c.IM(),
            c.IM2(),
            c.IM3(),
            c.Website(),
            c.Province(),
            c.Important(),
            c.Relation(),
            c.CreateDate().toString(Qt::ISODate),
            c.RCDate().toString(Qt::ISODate),
            c.Birthday().toString(Qt::ISODate),
            QString::number(c.iPrivate()),
            c.Tag()};
}

TEST_F(Records, ContactAddTakesTheKeyFromTheDatabaseAndStoresEveryField) {
    // A deleted row's key is never reused, so a key guessed from GetMaxId would be wrong.
    run("INSERT INTO contacts (con_lastname) VALUES ('临时')");
    run("DELETE * FROM contacts");
    Contact probe;
    EXPECT_TRUE(probe.GetMaxId().isNull());

    Contact c = fullContact();
    const QStringList statements =
        traced([&] { ASSERT_TRUE(c.Add()) << c.ErrMsg().toStdString(); });
    EXPECT_EQ(statements, QStringList{"SELECT * FROM contacts WHERE con_id=0"});
    EXPECT_EQ(c.ID(), 2);
    EXPECT_EQ(probe.GetMaxId().toInt(), 2);

    Contact loaded;
    loaded.setID(2);
    ASSERT_TRUE(loaded.GetById());
    EXPECT_EQ(contactFields(loaded), contactFields(c));
    EXPECT_EQ(loaded.Account().ID(), 0);
    EXPECT_EQ(loaded.Account().AccName(), QString());
}

TEST_F(Records, ContactUpdateRewritesEverythingButTheCreationDate) {
    Contact c = fullContact();
    ASSERT_TRUE(c.Add());
    Contact changed = fullContact();
    changed.setID(c.ID());
    changed.setLastName(QStringLiteral("王大明"));
    changed.setEMail3(QString());
    changed.setCreateDate(at(2000, 1, 1));
    changed.setBirthday(at(1900, 1, 1));
    changed.setiPrivate(0);
    ASSERT_TRUE(changed.Update()) << changed.ErrMsg().toStdString();

    Contact loaded;
    loaded.setID(c.ID());
    ASSERT_TRUE(loaded.GetById());
    EXPECT_EQ(loaded.LastName(), QStringLiteral("王大明"));
    EXPECT_EQ(loaded.EMail3(), QString());
    EXPECT_EQ(loaded.Birthday(), at(1900, 1, 1));
    EXPECT_EQ(loaded.iPrivate(), 0);
    EXPECT_EQ(loaded.CreateDate(), at(2025, 1, 2));
}

TEST_F(Records, TheLoaderReadsNullsAsEmptyAndFillsTheAccountFromTheQuery) {
    run("INSERT INTO accounts (acc_id, acc_name, acc_website, acc_address, acc_postcode, "
        "acc_telephone) VALUES (12, '华信科技', 'www.hx.cn', '人民路1号', '200000', '021-1')");
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '李')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (12, 5)");
    Contact c = fullContact();  // everything set, to see the nulls overwrite it
    c.setID(5);
    ASSERT_TRUE(c.GetById());
    EXPECT_EQ(c.LastName(), QStringLiteral("李"));
    EXPECT_EQ(c.FirstName(), QString());
    EXPECT_EQ(c.Tag(), QString());
    EXPECT_FALSE(c.Birthday().isValid());
    EXPECT_EQ(c.iPrivate(), 0);
    EXPECT_EQ(c.Account().ID(), 12);
    EXPECT_EQ(c.Account().AccName(), QStringLiteral("华信科技"));
    EXPECT_EQ(c.Account().Website(), QStringLiteral("www.hx.cn"));
    EXPECT_EQ(c.Account().Address(), QStringLiteral("人民路1号"));
    EXPECT_EQ(c.Account().Postcode(), QStringLiteral("200000"));
    // Only the query's account columns are read, not the rest of the account.
    EXPECT_EQ(c.Account().Telephone(), QString());

    // A missing id leaves everything as it was and still succeeds.
    c.setID(99);
    ASSERT_TRUE(c.GetById());
    EXPECT_EQ(c.ID(), 99);
    EXPECT_EQ(c.LastName(), QStringLiteral("李"));
    EXPECT_EQ(c.Account().ID(), 12);
}

TEST_F(Records, GetByIdExReadsTheRoleAndClearsAStaleOne) {
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (5, '李')");
    run("INSERT INTO opportunities_contacts (con_id, opp_id, con_part_in_opp) VALUES (5, 8, "
        "'决策人')");
    Contact c;
    c.setID(5);
    const QStringList statements = traced([&] { ASSERT_TRUE(c.GetByIdEx(8, kind::Opportunity)); });
    EXPECT_EQ(statements, (QStringList{"SELECT * FROM que_contacts_accounts WHERE con_id=5",
                                       "SELECT * FROM opportunities_contacts WHERE con_id=5 AND "
                                       "opp_id=8"}));
    EXPECT_EQ(c.PartInOpp(), QStringLiteral("决策人"));
    ASSERT_TRUE(c.GetByIdEx(9, kind::Opportunity));
    EXPECT_EQ(c.PartInOpp(), QString());
    c.setPartInOpp(QStringLiteral("kept"));
    ASSERT_TRUE(c.GetByIdEx(9, kind::Task));
    EXPECT_EQ(c.PartInOpp(), QStringLiteral("kept"));
    // The pair statement keeps its missing blanks before AND.
    const QStringList pair = traced([&] { ASSERT_TRUE(c.GetByIdEx(7, kind::Contact)); });
    EXPECT_EQ(
        pair.last(),
        QStringLiteral("SELECT * FROM  contacts_contacts  WHERE (contacts_contacts.con_id1=5AND "
                       "contacts_contacts.con_id2= 7) OR (contacts_contacts.con_id1=7AND "
                       "contacts_contacts.con_id2= 5)"));

    run("INSERT INTO accounts (acc_id, acc_name) VALUES (3, '甲')");
    Account a;
    a.setID(3);
    a.setPartInOpp(QStringLiteral("stale"));
    ASSERT_TRUE(a.GetByIdEx(8, kind::Opportunity));
    EXPECT_EQ(a.PartInOpp(), QString());
    EXPECT_EQ(a.AccName(), QStringLiteral("甲"));

    Contact unsaved;
    EXPECT_TRUE(traced([&] { EXPECT_TRUE(unsaved.GetByIdEx(8, kind::Opportunity)); }).isEmpty());
}

TEST_F(Records, DeleteLeavesTheLinksForDeleteRelation) {
    Contact c = fullContact();
    ASSERT_TRUE(c.Add());
    ASSERT_TRUE(c.AddRelative(kind::Opportunity, 4, QStringLiteral("r")));
    const QStringList statements = traced([&] { ASSERT_TRUE(c.Delete()); });
    EXPECT_EQ(statements, QStringList{QStringLiteral("DELETE * FROM contacts WHERE con_id=1")});
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_contacts WHERE con_id=1"), 1);
    ASSERT_TRUE(c.DeleteRelation());
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_contacts"), 0);
}

TEST_F(Records, FailuresAccumulateInOrderWithTheOperationNames) {
    Contact c;
    c.setID(42);  // no such row: Update has nothing to write to
    EXPECT_FALSE(c.Update());
    const QString first = c.ErrMsg();
    EXPECT_TRUE(first.startsWith(QStringLiteral("Update出错，原因可能是"))) << first.toStdString();
    EXPECT_GT(first.size(), QStringLiteral("Update出错，原因可能是").size());

    setGlobalConnectionString(connectionStringFor(file.folder() + QStringLiteral("/none.tvg")));
    EXPECT_FALSE(c.GetById());
    const QStringList parts = c.ErrMsg().split(QStringLiteral(" ; "));
    ASSERT_EQ(parts.size(), 2) << c.ErrMsg().toStdString();
    EXPECT_EQ(parts[0], first);
    EXPECT_TRUE(parts[1].startsWith(QStringLiteral("GetById出错，原因可能是")));
    EXPECT_GT(parts[1].size(), QStringLiteral("GetById出错，原因可能是").size());
    EXPECT_TRUE(c.GetMaxId().isNull());
    EXPECT_TRUE(c.ErrMsg()
                    .split(QStringLiteral(" ; "))
                    .value(2)
                    .startsWith(QStringLiteral("GetMaxId出错，原因可能是")));
    setGlobalConnectionString(file.connectionString());
}

TEST_F(Records, AccountAddReadsItsRowBackAndUpdateKeepsTheCreationDate) {
    Account a;
    a.setAccName(QStringLiteral("东方贸易"));
    a.setCreateDate(at(2024, 5, 1));
    a.setRCDate(at(2024, 5, 1, 10, 0));
    a.setAccType(QStringLiteral("客户"));
    a.setTag(QStringLiteral("老客户"));
    a.setiPrivate(1);
    const QStringList statements = traced([&] { ASSERT_TRUE(a.Add()); });
    EXPECT_EQ(statements, (QStringList{"SELECT * FROM accounts WHERE acc_id=0",
                                       "SELECT * FROM accounts WHERE acc_id=1"}));
    EXPECT_EQ(a.ID(), 1);

    a.setCreateDate(at(1999, 1, 1));
    a.setIndustry(QStringLiteral("IT"));
    ASSERT_TRUE(a.Update());
    Account loaded;
    loaded.setID(1);
    ASSERT_TRUE(loaded.GetById());
    EXPECT_EQ(loaded.AccName(), QStringLiteral("东方贸易"));
    EXPECT_EQ(loaded.Industry(), QStringLiteral("IT"));
    EXPECT_EQ(loaded.AccType(), QStringLiteral("客户"));
    EXPECT_EQ(loaded.Tag(), QStringLiteral("老客户"));
    EXPECT_EQ(loaded.iPrivate(), 1);
    EXPECT_EQ(loaded.CreateDate(), at(2024, 5, 1));
}

TEST_F(Records, OpportunityStoresAmountsToTheTenThousandthAndKeepsTheMinusOneProbe) {
    Opportunity o;
    o.setSubject(QStringLiteral("ERP 项目"));
    o.setESale(Currency::fromUnits(1234567891));  // 123456.7891
    o.setSale(*Currency::parse(QStringLiteral("1,000.5")));
    o.setProbability(80);
    o.setDieDate(at(2026, 12, 31));
    o.setCreateDate(at(2026, 1, 1));
    o.setPhase(QStringLiteral("谈判"));
    const QStringList statements = traced([&] { ASSERT_TRUE(o.Add()); });
    EXPECT_EQ(statements, QStringList{"SELECT * FROM opportunities WHERE opp_id=-1"});
    EXPECT_EQ(o.ID(), 1);

    Opportunity loaded;
    loaded.setID(1);
    ASSERT_TRUE(loaded.GetById());
    EXPECT_EQ(loaded.ESale().units(), 1234567891);
    EXPECT_EQ(loaded.Sale().toString(), QStringLiteral("1000.5"));
    EXPECT_EQ(loaded.Probability(), 80);
    EXPECT_EQ(loaded.DieDate(), at(2026, 12, 31));
    EXPECT_EQ(loaded.Phase(), QStringLiteral("谈判"));

    loaded.setCreateDate(at(1999, 1, 1));
    loaded.setSale(Currency::fromUnits(-5));
    ASSERT_TRUE(loaded.Update());
    EXPECT_EQ(scalar("SELECT opp_create_date FROM opportunities").toDateTime(), at(2026, 1, 1));
    EXPECT_DOUBLE_EQ(scalar("SELECT opp_sale FROM opportunities").toDouble(), -0.0005);
}

TEST_F(Records, DocumentWritesItsOwnKeyAndUpdateRewritesTheCreationDate) {
    document numbered;
    numbered.setDocName(QStringLiteral("合同.doc"));
    ASSERT_TRUE(numbered.Add());
    EXPECT_EQ(numbered.ID(), 1);

    document chosen;
    chosen.setID(42);
    chosen.setDocName(QStringLiteral("报价单.xls"));
    chosen.setDocPath(QStringLiteral("C:\\docs\\报价单.xls"));
    chosen.setCreatDate(at(2025, 3, 1));
    chosen.setDocType(QStringLiteral("xls"));
    ASSERT_TRUE(chosen.Add());
    EXPECT_EQ(chosen.ID(), 42);

    document edited;
    edited.setID(42);
    edited.setDocName(QStringLiteral("报价单2.xls"));  // CreatDate not loaded first
    ASSERT_TRUE(edited.Update());
    document loaded;
    loaded.setID(42);
    ASSERT_TRUE(loaded.GetById());
    EXPECT_EQ(loaded.DocName(), QStringLiteral("报价单2.xls"));
    EXPECT_EQ(loaded.DocPath(), QString());
    EXPECT_FALSE(loaded.CreatDate().isValid());
}

TEST_F(Records, LoadersMapColumnsByNameWhateverTheLayoutOfTheLastRead) {
    run("INSERT INTO contacts (con_id, con_fax2, con_fax3) VALUES (1, 'a2', 'a3'), (2, 'b2', "
        "'b3')");
    const ColumnSlots columns(
        {QStringLiteral("con_fax2"), QStringLiteral("con_fax3"), QStringLiteral("con_id")});
    auto readRow = [&](const char* sql) {
        tarveldatabase db;
        const QVector<QVariant> v = columns.read(*db.GetReadRs(QString::fromLatin1(sql)));
        QStringList out;
        for (const QVariant& value : v) out << value.toString();
        return out;
    };
    EXPECT_EQ(readRow("SELECT con_fax2, con_fax3 FROM contacts WHERE con_id=1"),
              (QStringList{"a2", "a3", ""}));
    // The same statement but for its key: same columns.
    EXPECT_EQ(readRow("SELECT con_fax2, con_fax3 FROM contacts WHERE con_id=2"),
              (QStringList{"b2", "b3", ""}));
    // Names that differ only in a digit are other columns.
    EXPECT_EQ(readRow("SELECT con_fax3, con_fax2 FROM contacts WHERE con_id=2"),
              (QStringList{"b2", "b3", ""}));
    EXPECT_EQ(readRow("SELECT que_contacts_accounts.con_id, que_contacts_accounts.con_fax3 FROM "
                      "que_contacts_accounts INNER JOIN contacts ON contacts.con_id = "
                      "que_contacts_accounts.con_id WHERE que_contacts_accounts.con_id=1"),
              (QStringList{"", "a3", "1"}));
}

TEST(CurrencyText, ParsesTypedAmountsAndPrintsTheShortestForm) {
    EXPECT_EQ(Currency::parse(QStringLiteral(" 1,234.56 "))->units(), 12345600);
    EXPECT_EQ(Currency::parse(QString())->units(), 0);
    EXPECT_FALSE(Currency::parse(QStringLiteral("十万")).has_value());
    EXPECT_EQ(Currency::fromDouble(0.00005).units(), 1);
    EXPECT_EQ(Currency::fromDouble(-2.5).toString(), QStringLiteral("-2.5"));
    EXPECT_EQ(Currency::fromUnits(70000).toString(), QStringLiteral("7"));
    EXPECT_EQ(Currency::fromUnits(-3).toString(), QStringLiteral("-0.0003"));
}

}  // namespace
