// Finding duplicate contacts and accounts on a real data file.
#include "exchange/duplicates.h"

#include "records/kinds.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;

namespace {

// One contact of a case: its label (stored as the given name, so the groups
// can be told in labels), whole name, mobiles, e-mails and account.
struct Person {
    const char* label;
    const char* name;
    QStringList mobiles;
    QStringList emails;
    const char* account;
};

struct ContactCase {
    const char* what;
    std::vector<Person> people;
    QStringList groups;   // each "A,B": the labels of one group, in key order
    QStringList reasons;  // every reason of every group, in order
};

class Duplicates : public ExchangeFixture {
protected:
    void addContact(const Person& p) {
        QStringList columns = {"con_firstname", "con_lastname"}, values = {p.label, p.name};
        for (int i = 0; i < 3; ++i) {
            const QString slot = i ? QString::number(i + 1) : QString();
            if (i < p.mobiles.size()) columns << "con_mobile" + slot, values << p.mobiles[i];
            if (i < p.emails.size()) columns << "con_email" + slot, values << p.emails[i];
        }
        run(QString("INSERT INTO contacts (%1) VALUES ('%2')")
                .arg(columns.join(", "), values.join("', '")));
        if (QString(p.account).isEmpty()) return;
        if (!count(QString("SELECT COUNT(*) FROM accounts WHERE acc_name='%1'").arg(p.account)))
            run(QString("INSERT INTO accounts (acc_name) VALUES ('%1')").arg(p.account));
        run(QString("INSERT INTO accounts_contacts (acc_id, con_id) SELECT acc_id, (SELECT "
                    "MAX(con_id) FROM contacts) FROM accounts WHERE acc_name='%1'")
                .arg(p.account));
    }

    // The groups in the labels of their members; `sql` reads one member's label.
    QStringList labelled(const QList<DuplicateGroup>& groups, const char* sql) {
        QStringList out;
        for (const DuplicateGroup& g : groups) {
            QStringList labels;
            for (qint64 k : g.keys) labels << scalar(QString(sql).arg(k)).toString();
            out << labels.join(",");
        }
        return out;
    }
};

const ContactCase kContactCases[] = {
    {"+86 and blanks against a plain mobile in another slot",
     {{"A", "王伟", {"+86 138 0013 8000"}, {}, ""},
      {"B", "王伟强", {"", "13800138000"}, {}, ""},
      {"C", "李娜", {"13800138001"}, {}, ""}},
     {"A,B"},
     {"相同手机：13800138000"}},
    {"full-width digits and 0086 with dashes",
     {{"A", "张三", {"１３９１２３４５６７８"}, {}, ""},
      {"B", "张叁", {"", "", "0086-139-1234-5678"}, {}, ""}},
     {"A,B"},
     {"相同手机：13912345678"}},
    {"e-mail case and blanks, any slot",
     {{"A", "赵六", {}, {" Zhao.Liu@Example.COM "}, ""},
      {"B", "赵陆", {}, {"x@y.cn", "", "zhao.liu@example.com"}, ""},
      {"C", "赵禄", {}, {"zhao.liu@example.org"}, ""}},
     {"A,B"},
     {"相同邮箱：zhao.liu@example.com"}},
    {"the same whole name counts only with the same account",
     {{"A", "王 伟", {}, {}, "甲公司"},
      {"B", "王 伟", {}, {}, "甲公司"},
      {"C", "王 伟", {}, {}, "乙公司"},
      {"D", "王 伟", {}, {}, ""},
      {"E", "王 伟", {}, {}, ""}},
     {"A,B"},
     {"相同姓名和单位：王 伟（甲公司）"}},
    {"groups that share a member are one, with every reason",
     {{"A", "甲", {"13700000001"}, {}, ""},
      {"B", "乙", {"13700000001"}, {"b@x.cn"}, ""},
      {"C", "丙", {}, {"B@X.CN"}, ""},
      {"D", "丁", {"13700000002"}, {}, ""},
      {"E", "戊", {"13700000002"}, {}, ""}},
     {"A,B,C", "D,E"},
     {"相同手机：13700000001", "相同邮箱：b@x.cn", "相同手机：13700000002"}},
    {"one contact with the same number twice is no group; short numbers are no mobile",
     {{"A", "孙", {"13600000000", "+8613600000000"}, {}, ""},
      {"B", "周", {"110"}, {}, ""},
      {"C", "吴", {"110"}, {}, ""}},
     {},
     {}},
};

}  // namespace

TEST_F(Duplicates, ContactsAreFoundByMobileEmailAndNameWithAccount) {
    for (const ContactCase& c : kContactCases) {
        SCOPED_TRACE(c.what);
        run("DELETE FROM accounts_contacts");
        run("DELETE FROM contacts");
        run("DELETE FROM accounts");
        for (const Person& p : c.people) addContact(p);
        QList<DuplicateGroup> groups;
        const Outcome o = findDuplicates(kind::Contact, &groups);
        ASSERT_TRUE(o.ok) << o.ErrMsg.toStdString();
        EXPECT_EQ(labelled(groups, "SELECT con_firstname FROM contacts WHERE con_id=%1"), c.groups);
        QStringList reasons;
        for (const DuplicateGroup& g : groups) reasons << g.reasons;
        EXPECT_EQ(reasons, c.reasons);
    }
}

TEST(CompanyNameCore, SetsCompanyWordsPunctuationAndCaseAside) {
    const struct {
        const char* a;
        const char* b;
        bool same;
    } cases[] = {
        {"华为技术有限公司", "华为技术（中国）有限公司", true},
        {"华为技术(中国)有限公司", "华为技术", true},
        {"北京华信股份有限公司", "北京华信集团", true},
        {"上海远景有限责任公司", "上海远景", true},
        {"ACME Co., Ltd.", "acme", true},
        {"Acme Inc.", "ＡＣＭＥ", true},
        {"Acme  Trading Co.,Ltd", "ACME TRADING", true},
        {"华信科技", "华信电子", false},
        {"Costco", "Cost", false},
        {"Incubator Ltd", "ubator", false},
    };
    for (const auto& c : cases) {
        const QString a = companyNameCore(QString::fromUtf8(c.a)),
                      b = companyNameCore(QString::fromUtf8(c.b));
        EXPECT_FALSE(a.isEmpty()) << c.a;
        EXPECT_EQ(a == b, c.same) << c.a << " / " << c.b << ": " << a.toStdString() << " / "
                                  << b.toStdString();
    }
    EXPECT_TRUE(companyNameCore(QStringLiteral("（中国）有限公司")).isEmpty());
}

TEST_F(Duplicates, AccountsAreFoundByNameWithoutCompanyWords) {
    for (const char* name : {"华为技术有限公司", "华信科技", "华为技术（中国）有限公司", "有限公司",
                             "ACME Co., Ltd.", "有限公司", "华为技术", "Acme Inc."})
        run(QString("INSERT INTO accounts (acc_name) VALUES ('%1')").arg(QString::fromUtf8(name)));
    QList<DuplicateGroup> groups;
    const Outcome o = findDuplicates(kind::Account, &groups);
    ASSERT_TRUE(o.ok) << o.ErrMsg.toStdString();
    EXPECT_EQ(labelled(groups, "SELECT acc_name FROM accounts WHERE acc_id=%1"),
              QStringList({"华为技术有限公司,华为技术（中国）有限公司,华为技术",
                           "ACME Co., Ltd.,Acme Inc."}));
    EXPECT_EQ(groups.value(1).reasons,
              QStringList({"名称相同（不计公司字样）：ACME Co., Ltd.、Acme Inc."}));
}

TEST_F(Duplicates, OtherKindsAreRefused) {
    QList<DuplicateGroup> groups;
    EXPECT_FALSE(findDuplicates(kind::Task, &groups).ok);
}
