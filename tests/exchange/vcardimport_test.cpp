// vCard files into and out of a real data file.

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include "exchange/vcard.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::python;
using exchange_test::writeBytes;

namespace {

// A phone's export (its charsets and folds are the reader's own tests): a card
// with an organisation and its address, a card with a UID and a birthday
// without a year, and a card that never ends.
const QByteArray kPhoneExport =
    "BEGIN:VCARD\r\nVERSION:2.1\r\nN:杜;英春;;;\r\nTEL;CELL:138 0013 8000\r\n"
    "ORG:华为技术有限公司\r\nADR;WORK:;;坂田华为基地;深圳市;广东省;518129;\r\n"
    "NOTE:老客户，喜欢喝茶\r\nEND:VCARD\r\n"
    "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:card-2\r\nFN:欧阳娜娜\r\n"
    "EMAIL:nana@example.cn\r\nBDAY:--0229\r\nEND:VCARD\r\n"
    "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:半张名片\r\n";

class VCardFiles : public ExchangeFixture {
protected:
    // Rows of `sql`, their fields joined by '|' (a null as nothing).
    QStringList joined(const QString& sql) {
        tarveldatabase db;
        QStringList out;
        auto rs = db.GetReadRs(sql);
        EXPECT_TRUE(rs && rs->State() == adStateOpen) << sql.toStdString();
        for (bool more = rs && !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
            QStringList fields;
            for (int i = 0; i < rs->FieldCount(); ++i) fields << rs->value(i).toString();
            out << fields.join(QLatin1Char('|'));
        }
        return out;
    }
};

}  // namespace

TEST_F(VCardFiles, ImportsOnceRecognisesTheSameCardsAgainAndTheImportCanBeTakenBack) {
    run("INSERT INTO contacts (con_lastname) VALUES ('原有的人')");
    const QString path = inFolder("phone.vcf");
    writeBytes(path, kPhoneExport);
    VCardImport done;
    const Outcome first = importVCards(path, &done);
    ASSERT_TRUE(first.ok) << first.ErrMsg.toStdString();
    const QString summary = done.summary();
    EXPECT_TRUE(summary.startsWith("新增 2，更新 0，跳过 0")) << summary.toStdString();
    EXPECT_TRUE(summary.contains("第3张名片")) << summary.toStdString();

    EXPECT_EQ(joined("SELECT con_lastname, con_firstname, con_mobile, con_description FROM "
                     "contacts WHERE con_id > 1 ORDER BY con_id"),
              QStringList({"杜英春|英春|138 0013 8000|老客户，喜欢喝茶", "欧阳娜娜|||"}));
    EXPECT_EQ(joined("SELECT acc_name, acc_address, acc_postcode FROM que_contacts_accounts "
                     "WHERE con_id=2"),
              QStringList({"华为技术有限公司|广东省深圳市坂田华为基地|518129"}));
    // A birthday without a year comes back on its day in the birthday list's terms.
    EXPECT_EQ(column("SELECT month(con_birthday) & '-' & day(con_birthday) FROM contacts "
                     "WHERE con_id=3"),
              QStringList({"2-29"}));

    VCardImport again;
    ASSERT_TRUE(importVCards(path, &again).ok);
    EXPECT_EQ(again.tally.updated + again.tally.skipped, 2);
    EXPECT_EQ(rows("contacts"), 3);
    EXPECT_EQ(rows("accounts"), 1);

    // Written back out, a card keeps the UID it came with, so the phone's next
    // export is recognised too.
    run("UPDATE contacts SET con_check = true WHERE con_id > 1");
    const QString out = inFolder("out.vcf");
    ASSERT_TRUE(exportVCards(out).ok);
    EXPECT_TRUE(exchange_test::fileBytes(out).contains("\r\nUID:card-2\r\n"));
    VCardImport back;
    ASSERT_TRUE(importVCards(out, &back).ok);
    EXPECT_EQ(back.tally.added, 0) << back.summary().toStdString();
    EXPECT_EQ(rows("contacts"), 3);

    // The imports that changed nothing leave the first one to take back.
    const Outcome undone = undoLastImport();
    ASSERT_TRUE(undone.ok) << undone.ErrMsg.toStdString();
    EXPECT_EQ(column("SELECT con_lastname FROM contacts"), QStringList({"原有的人"}));
    EXPECT_EQ(rows("accounts"), 0);
    EXPECT_EQ(rows("accounts_contacts"), 0);
}

TEST_F(VCardFiles, AFileWithoutACardIsRefusedAndChangesNothing) {
    const struct {
        const char* name;
        QByteArray bytes;
        const char* says;
    } cases[] = {
        {"empty.vcf", "", "没有可以导入的联系人名片"},
        {"cut.vcf", "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:x\r\n", "没有结束行END:VCARD"},
        {"missing.vcf", QByteArray(), "无法读取文件"},
    };
    for (const auto& c : cases) {
        const QString path = inFolder(c.name);
        if (!c.bytes.isNull()) writeBytes(path, c.bytes);
        const Outcome o = importVCards(path);
        EXPECT_FALSE(o.ok) << c.name;
        EXPECT_TRUE(o.ErrMsg.contains(QString::fromUtf8(c.says))) << o.ErrMsg.toStdString();
    }
    EXPECT_EQ(rows("contacts"), 0);
}

TEST_F(VCardFiles, ExportReadsBackWithVobjectInBothVersionsAndImportsTheSame) {
    run("INSERT INTO accounts (acc_name, acc_address, acc_postcode) VALUES ('甲公司; 分部', "
        "'北京市海淀区中关村大街1号', '100080')");
    run("INSERT INTO contacts (con_lastname, con_firstname, con_title, con_department_title, "
        "con_telephone, con_telephone2, con_mobile, con_fax, con_email, con_email2, "
        "con_address_family, con_postcode_family, con_website, con_birthday, con_description, "
        "con_nickname, con_im, con_im2, con_tag, con_check) VALUES ('张三丰', '三丰', '先生', "
        "'销售部经理', '010-1', '010-2', '138', '010-9', 'z@a.cn', 'z@b.cn', '北京市朝阳区, 1号', "
        "'100020', 'http://z.cn', #1904-3-4#, '第一行\n第二行，很长很长很长很长很长很长很长很长很"
        "长很长很长很长很长很长很长', '小张', 'QQ:12345', '微信:zsf', '客户,VIP', true)");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
    run("INSERT INTO contacts (con_lastname, con_firstname, con_birthday, con_check) VALUES "
        "('John Doe', 'John', #1980-5-6#, true)");
    run("INSERT INTO contacts (con_lastname, con_check) VALUES ('不导出', false)");

    const char* script =
        "import vobject,json,sys\n"
        "out=[]\n"
        "for c in vobject.readComponents(open(sys.argv[1],encoding='utf-8').read()):\n"
        "  v=lambda n: [x.value for x in c.contents.get(n,[])]\n"
        "  adr={a.params.get('TYPE',[''])[0].lower():[a.value.street,a.value.code] for a in "
        "c.contents.get('adr',[])}\n"
        "  out.append({'version':c.version.value,'fn':c.fn.value,'family':c.n.value.family,"
        "'given':c.n.value.given,'prefix':c.n.value.prefix,'org':v('org'),'title':v('title'),"
        "'tel':[[t.value,','.join(t.params.get('TYPE',[])).lower()] for t in "
        "c.contents.get('tel',[])],'email':v('email'),'adr':adr,'note':v('note'),"
        "'bday':v('bday'),'nickname':v('nickname'),'url':v('url'),'impp':v('impp'),"
        "'categories':v('categories'),'uid':v('uid')})\n"
        "print(json.dumps(out))";
    const QString four = inFolder("four.vcf"), three = inFolder("three.vcf"),
                  again = inFolder("again.vcf");
    int written = 0;
    ASSERT_TRUE(exportVCards(four, VCardVersion::Four, &written).ok);
    EXPECT_EQ(written, 2);
    ASSERT_TRUE(exportVCards(three, VCardVersion::Three).ok);
    ASSERT_TRUE(exportVCards(again, VCardVersion::Four).ok);
    const QJsonArray cards = python(script, four).toArray();
    const QJsonArray older = python(script, three).toArray();
    ASSERT_EQ(cards.size(), 2);
    ASSERT_EQ(older.size(), 2);

    const QJsonObject expected = QJsonDocument::fromJson(R"({"version": "4.0",
        "fn": "张三丰", "family": "张", "given": "三丰", "prefix": "先生",
        "org": [["甲公司; 分部"]], "title": ["销售部经理"],
        "tel": [["010-1", "work,voice"], ["010-2", "work,voice"], ["138", "cell"],
                ["010-9", "fax"]],
        "email": ["z@a.cn", "z@b.cn"],
        "adr": {"home": ["北京市朝阳区, 1号", "100020"], "work": ["北京市海淀区中关村大街1号", "100080"]},
        "note": ["第一行\n第二行，很长很长很长很长很长很长很长很长很长很长很长很长很长很长很长"],
        "bday": ["--0304"], "nickname": ["小张"], "url": ["http://z.cn"],
        "impp": ["qq:12345", "weixin:zsf"], "categories": [["客户", "VIP"]]})")
                                     .object();
    const QJsonObject card = cards[0].toObject(), old = older[0].toObject();
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(card[it.key()], it.value()) << it.key().toStdString();
    EXPECT_EQ(old["version"], "3.0");
    EXPECT_EQ(old["bday"], QJsonArray({"1604-03-04"}));
    EXPECT_EQ(old["tel"].toArray()[2], QJsonArray({"138", "cell"}));
    for (const char* same : {"fn", "given", "family", "email", "adr", "note", "impp", "uid"})
        EXPECT_EQ(old[same], card[same]) << same;
    const QJsonObject western = cards[1].toObject();
    EXPECT_EQ(western["family"], "Doe");
    EXPECT_EQ(western["given"], "John");
    EXPECT_EQ(western["bday"], QJsonArray({"19800506"}));
    // The UID stays the same from one export to the next, and differs between contacts.
    EXPECT_EQ(python(script, again).toArray()[0].toObject()["uid"], card["uid"]);
    EXPECT_NE(western["uid"], card["uid"]);

    // Each version into a new data file gives the same contact back.
    const QString select =
        "SELECT con_lastname, con_firstname, con_title, con_department_title, con_telephone, "
        "con_telephone2, con_mobile, con_fax, con_email, con_email2, con_address_family, "
        "con_postcode_family, con_website, con_birthday, con_description, con_nickname, con_im, "
        "con_im2, con_tag, acc_name, acc_address, acc_postcode FROM que_contacts_accounts WHERE "
        "con_lastname <> '不导出' ORDER BY con_lastname";
    const QStringList original = joined(select);
    ASSERT_EQ(original.size(), 2);
    for (const QString& path : {four, three}) {
        tarvel::testing::TempDataFile other;
        VCardImport done;
        const Outcome in = importVCards(path, &done);
        ASSERT_TRUE(in.ok) << in.ErrMsg.toStdString();
        EXPECT_EQ(done.tally.added, 2);
        EXPECT_EQ(joined(select), original) << path.toStdString();
    }
}

TEST_F(VCardFiles, EverySampleFileImportsOrIsRefusedWithAReason) {
    const QString folder = QStringLiteral(TARVEL_SAMPLES "/vcf");
    if (!QFileInfo(folder).isDir()) GTEST_SKIP() << "no sample files at " << folder.toStdString();
    // Broken on purpose: refused, or the broken card skipped and named.
    const QStringList malformed = {"khard__unparsable.vcf"};
    // Quoted-printable bytes of non-ASCII text left undecoded ("=E8=BF").
    static const QRegularExpression quotedPrintable(
        QStringLiteral("=[89A-F][0-9A-F]=[89A-F][0-9A-F]"));
    int files = 0;
    QDirIterator it(folder, {"*.vcf"}, QDir::Files);
    while (it.hasNext()) {
        const QString path = it.next(), name = it.fileName();
        ++files;
        tarvel::testing::TempDataFile data;
        VCardImport done;
        const Outcome o = importVCards(path, &done);
        if (malformed.contains(name)) {
            EXPECT_TRUE(!o.ok || !done.reading.skipped.isEmpty()) << name.toStdString();
        }
        if (!o.ok) {
            EXPECT_FALSE(o.ErrMsg.isEmpty()) << name.toStdString();
            EXPECT_EQ(rows("contacts"), 0) << name.toStdString();
        } else {
            EXPECT_GT(done.tally.added, 0) << name.toStdString();
            EXPECT_EQ(rows("contacts"), done.tally.added) << name.toStdString();
            EXPECT_EQ(count("SELECT COUNT(*) FROM contacts WHERE con_lastname IS NULL OR "
                            "con_lastname=''"),
                      0)
                << name.toStdString();
            for (const QString& text : joined("SELECT * FROM contacts")) {
                // Damaged bytes are allowed only where the summary names them.
                EXPECT_TRUE(!done.reading.unreadable.isEmpty() || !text.contains(QChar(0xFFFD)))
                    << name.toStdString();
                EXPECT_FALSE(text.contains(quotedPrintable))
                    << name.toStdString() << ": " << text.toStdString();
            }
        }
        EXPECT_EQ(exchange_test::sqlcipherRows(data.path(), "PRAGMA integrity_check"),
                  QStringList({"ok"}))
            << name.toStdString();
    }
    EXPECT_GT(files, 0);
}
