#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringEncoder>

#include "exchange/textfile.h"
#include "exchange/vcard.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::python;
using exchange_test::writeBytes;

namespace {

class TextFormats : public ExchangeFixture {};

}  // namespace

TEST_F(TextFormats, VCardExportReadsBackWithVobjectAndImportsAgain) {
    run("INSERT INTO accounts (acc_name) VALUES ('甲公司; 分部')");
    run("INSERT INTO contacts (con_lastname, con_firstname, con_title, con_department_title, "
        "con_telephone, "
        "con_telephone2, con_mobile, con_fax, con_email, con_email2, con_address_family, "
        "con_postcode_family, "
        "con_website, con_birthday, con_description, con_nickname, con_check) VALUES ('张', '三', "
        "'先生', "
        "'销售部经理', '010-1', '010-2', '138', '010-9', 'z@a.cn', 'z@b.cn', '北京市海淀区, 1号', "
        "'100080', "
        "'http://z.cn', #1980-5-6#, "
        "'第一行\n第二行，很长很长很长很长很长很长很长很长很长很长很长很长很长很长很长', "
        "'小张', true)");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
    run("INSERT INTO contacts (con_lastname, con_check) VALUES ('不导出', false)");
    const QString path = inFolder("out.vcf");
    int written = 0;
    ASSERT_TRUE(exportVCards(path, &written).ok);
    EXPECT_EQ(written, 1);
    const QJsonObject card =
        python(
            "import vobject,json,sys\n"
            "cards=list(vobject.readComponents(open(sys.argv[1],encoding='utf-8').read()))\n"
            "c=cards[0]\n"
            "print(json.dumps({'n':len(cards),'fn':c.fn.value,'family':c.n.value.family,"
            "'given':c.n.value.given,'org':c.org.value,'title':c.title.value,"
            "'tel':[t.value for t in c.contents['tel']],'email':[e.value for e in "
            "c.contents['email']],"
            "'street':c.adr.value.street,'code':c.adr.value.code,'bday':c.bday.value,"
            "'note':c.note.value,'url':c.url.value,'version':c.version.value}))",
            path)
            .toObject();
    const QJsonObject expected = QJsonDocument::fromJson(R"({"n": 1, "version": "4.0",
        "fn": "张三", "family": "张", "given": "三", "org": ["甲公司; 分部"], "title": "销售部经理",
        "tel": ["010-1", "010-2", "138", "010-9"], "email": ["z@a.cn", "z@b.cn"],
        "street": "北京市海淀区, 1号", "code": "100080", "bday": "19800506",
        "url": "http://z.cn"})")
                                     .object();
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(card[it.key()], it.value()) << it.key().toStdString();
    EXPECT_TRUE(card["note"].toString().startsWith("第一行\n第二行"));

    // The same card back into a new file gives the same contact.
    const QStringList columns = {
        "con_lastname",  "con_firstname",  "con_title",          "con_department_title",
        "con_telephone", "con_telephone2", "con_mobile",         "con_fax",
        "con_email",     "con_email2",     "con_address_family", "con_postcode_family",
        "con_website",   "con_birthday",   "con_description",    "con_nickname",
        "acc_name"};
    const QString select =
        "SELECT " + columns.join(" & '|' & ") + " FROM que_contacts_accounts WHERE con_id=1";
    const QStringList original = column(select);
    tarvel::testing::TempDataFile other;
    int added = 0;
    const Outcome in = importVCards(path, &added);
    ASSERT_TRUE(in.ok) << in.ErrMsg.toStdString();
    EXPECT_EQ(added, 1);
    EXPECT_EQ(column(select), original);
}

TEST(VCard, ReadsVersionThreeWithFoldedLinesAndBareTypes) {
    const QString text =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Smith;John;;Dr.;\r\nFN:John Smith\r\n"
        "ORG:Acme\\, Inc.;Sales\r\nTEL;TYPE=WORK,VOICE:111\r\nTEL;TYPE=CELL:222\r\nTEL;CELL:333\r\n"
        "TEL;TYPE=HOME;TYPE=FAX:444\r\nitem1.EMAIL;TYPE=INTERNET:j@s.com\r\n"
        "ADR;TYPE=WORK:;;Work St;;;999;\r\nADR;TYPE=HOME:;;1 Main\r\n  St;Town;;12345;\r\n"
        "BDAY:1970-01-02\r\nNOTE:a\\nb\\;c\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:只有全名\r\nEND:VCARD\r\n";
    const QList<VCardContact> cards = readVCards(text);
    ASSERT_EQ(cards.size(), 2);
    const QMap<QString, QString> expected = {{"con_lastname", "Smith"},
                                             {"con_firstname", "John"},
                                             {"con_title", "Dr."},
                                             {"con_telephone", "111"},
                                             {"con_mobile", "222"},
                                             {"con_mobile2", "333"},
                                             {"con_fax", "444"},
                                             {"con_email", "j@s.com"},
                                             {"con_address_family", "Town1 Main St"},
                                             {"con_postcode_family", "12345"},
                                             {"con_description", "a\nb;c"}};
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(cards[0].columns[it.key()].toString(), it.value()) << it.key().toStdString();
    EXPECT_EQ(cards[0].columns["con_birthday"].toDateTime().date(), QDate(1970, 1, 2));
    EXPECT_EQ(cards[0].organisation, "Acme, Inc.");
    EXPECT_EQ(cards[1].columns["con_lastname"], "只有全名");
}
