// Reading cards from their bytes into contacts, without a data file.

#include <gtest/gtest.h>

#include <QStringEncoder>

#include "exchange/contactnames.h"
#include "exchange/vcardcontact.h"
#include "store/jetdate.h"

using namespace tarvel::exchange;

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
QT_END_NAMESPACE

namespace {

QByteArray encoded(const QString& text, const char* encoding) {
    QStringEncoder encoder(encoding);
    const QByteArray bytes = encoder.encode(text);
    EXPECT_FALSE(encoder.hasError()) << encoding;
    return bytes;
}

// Quoted-printable as phones write it: every byte as =XX, a soft break ("="
// at the end of a line) after every `perLine` bytes.
QByteArray quotedPrintable(const QByteArray& bytes, int perLine = 8) {
    QByteArray out;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (i && i % perLine == 0) out += "=\r\n";
        out += '=' + QByteArray::number(uchar(bytes[i]), 16).toUpper().rightJustified(2, '0');
    }
    return out;
}

// The only contact of the bytes.
VCardContact onlyContact(const QByteArray& bytes) {
    const VCardReading r = readVCards(bytes);
    EXPECT_EQ(r.contacts.size(), 1) << bytes.toStdString();
    EXPECT_TRUE(r.skipped.isEmpty()) << r.skipped.join('\n').toStdString();
    EXPECT_TRUE(r.contacts.value(0).badLines.isEmpty()) << bytes.toStdString();
    return r.contacts.value(0);
}

// Several columns joined by '|', the organisation as "org".
QString columns(const VCardContact& c, const QString& names) {
    QStringList values;
    for (const QString& n : names.split(QLatin1Char(',')))
        values << (n == QLatin1String("org") ? c.record.organisation
                                             : c.record.columns.value(n).toString());
    return values.join(QLatin1Char('|'));
}

QByteArray card(const QByteArray& body, const char* version = "3.0") {
    return "BEGIN:VCARD\r\nVERSION:" + QByteArray(version) + "\r\n" + body + "END:VCARD\r\n";
}

}  // namespace

TEST(VCardRead, ChinesePhoneCardInGbkWithQuotedPrintableSoftBreaks) {
    const QString note = QStringLiteral("这是备注，很长很长的一段话\n第二行：客户的要求");
    const QByteArray bytes =
        card("N;CHARSET=GBK;ENCODING=QUOTED-PRINTABLE:" + quotedPrintable(encoded("杜", "GBK")) +
                 ";" + quotedPrintable(encoded("英春", "GBK")) + ";;;\r\n" +
                 "NOTE;CHARSET=GBK;ENCODING=QUOTED-PRINTABLE:" +
                 quotedPrintable(encoded(QString(note).replace("\n", "\r\n"), "GBK")) + "\r\n" +
                 "ORG;CHARSET=GB2312;ENCODING=QUOTED-PRINTABLE:" +
                 quotedPrintable(encoded("华为技术有限公司", "GB2312"), 6) + "\r\n" +
                 "TEL;CELL:13800138000\r\nTEL;HOME;VOICE:010-62345678\r\n",
             "2.1");
    const VCardContact c = onlyContact(bytes);
    EXPECT_EQ(columns(c, "con_lastname,con_firstname,org,con_mobile,con_telephone"),
              "杜英春|英春|华为技术有限公司|13800138000|010-62345678");
    EXPECT_EQ(columns(c, "con_description"), note);
}

TEST(VCardRead, ValuesWithoutCharsetAreReadInTheEncodingTheirBytesShow) {
    // Older phones write GBK through quoted-printable and say nothing about it.
    const QStringList names = {"张伟", "王芳", "李娜", "刘洋"};
    const QString note = QStringLiteral("这位客户下个月要来公司看样品，记得准备报价单和合同");
    QByteArray bytes;
    for (const QString& name : names)
        bytes +=
            card("FN;ENCODING=QUOTED-PRINTABLE:" + quotedPrintable(encoded(name, "GBK")) +
                     "\r\nNOTE;ENCODING=QUOTED-PRINTABLE:" + quotedPrintable(encoded(note, "GBK")) +
                     "\r\n",
                 "2.1");
    const VCardReading r = readVCards(bytes);
    ASSERT_EQ(r.contacts.size(), names.size());
    for (qsizetype i = 0; i < names.size(); ++i)
        EXPECT_EQ(columns(r.contacts[i], "con_lastname,con_description"), names[i] + "|" + note);
    EXPECT_TRUE(r.unreadable.isEmpty()) << r.unreadable.join('\n').toStdString();
}

TEST(VCardRead, EachCharsetOfAValueIsHonoured) {
    const struct {
        const char* charset;
        QString text;
        bool quoted;
    } cases[] = {
        {"Big5", "陳大文", false},
        {"SHIFT_JIS", "山田太郎", true},
        {"ISO-8859-2", "Łukasz", true},
        {"windows-1251", "Иван", false},
    };
    for (const auto& c : cases) {
        const QByteArray bytes = encoded(c.text, c.charset);
        const QByteArray value = c.quoted ? quotedPrintable(bytes) : bytes;
        const QByteArray params =
            QByteArray(";CHARSET=") + c.charset + (c.quoted ? ";ENCODING=QUOTED-PRINTABLE" : "");
        const VCardContact contact = onlyContact(card("FN" + params + ":" + value + "\r\n", "2.1"));
        EXPECT_EQ(columns(contact, "con_lastname"), c.text) << c.charset;
    }
}

TEST(VCardRead, FoldInsideAUtf8CharacterIsMendedBeforeDecoding) {
    const QByteArray name = QStringLiteral("欧阳娜娜").toUtf8();
    for (const QByteArray& fold : {QByteArray("\r\n "), QByteArray("\r\n\t"), QByteArray("\n ")}) {
        // Split inside the first character's three bytes, and between the others.
        const QByteArray body =
            "FN:" + name.left(1) + fold + name.mid(1, 4) + fold + name.mid(5) + "\r\n";
        EXPECT_EQ(columns(onlyContact(card(body)), "con_lastname"), "欧阳娜娜");
    }
}

TEST(VCardRead, BothFoldingStyles) {
    // Later versions drop the blank that begins a folded line; 2.1 folded at a
    // blank already in the text and keeps it.
    const struct {
        const char* version;
        const char* fold;
        const char* note;
    } cases[] = {
        {"3.0", "\r\n ", "first partsecond part"},
        {"4.0", "\r\n\t", "first partsecond part"},
        {"2.1", "\r\n ", "first part second part"},
    };
    for (const auto& c : cases) {
        const QByteArray body = "FN:A\r\nNOTE:first part" + QByteArray(c.fold) + "second part\r\n";
        EXPECT_EQ(columns(onlyContact(card(body, c.version)), "con_description"), c.note)
            << c.version;
    }
}

TEST(VCardRead, OneBadByteIsNamedAndTheRestStaysUtf8) {
    const QByteArray bytes = card("FN:王一明\r\nNOTE:客户\r\n") +
                             card("FN:李小红\r\nNOTE:第一句\xFF第二句\r\nTITLE:经理\r\n") +
                             card("FN:张伟\r\n");
    const VCardReading r = readVCards(bytes);
    ASSERT_EQ(r.contacts.size(), 3);
    EXPECT_EQ(columns(r.contacts[0], "con_lastname,con_description"), "王一明|客户");
    EXPECT_EQ(columns(r.contacts[1], "con_lastname,con_description,con_department_title"),
              QStringLiteral("李小红|第一句\uFFFD第二句|经理"));
    EXPECT_EQ(columns(r.contacts[2], "con_lastname"), "张伟");
    ASSERT_EQ(r.unreadable.size(), 1);
    for (const char* piece : {"第2张名片", "李小红", "第9行"})
        EXPECT_TRUE(r.unreadable[0].contains(QString::fromUtf8(piece))) << piece;
}

TEST(VCardRead, EveryLineEndAndUtf16ReadTheSame) {
    const QString text = QStringLiteral(
        "BEGIN:VCARD\nVERSION:3.0\nFN:周杰\nNOTE:很长的备注\n "
        "续行\nTEL;TYPE=CELL:139\nEND:VCARD\n");
    const QByteArray utf8 = text.toUtf8();
    const QList<QByteArray> files = {
        utf8,
        QByteArray(utf8).replace("\n", "\r\n"),
        QByteArray(utf8).replace("\n", "\r"),
        QByteArray(utf8).replace("\n", "\r\r\n"),
        "\xEF\xBB\xBF" + utf8,
        "\xFF\xFE" + encoded(text, "UTF-16LE"),
        encoded(text, "UTF-16BE"),
    };
    for (qsizetype i = 0; i < files.size(); ++i) {
        const VCardContact c = onlyContact(files[i]);
        EXPECT_EQ(columns(c, "con_lastname,con_description,con_mobile"), "周杰|很长的备注续行|139")
            << i;
    }
}

TEST(VCardRead, EscapesGroupsAndLowerCaseNames) {
    const VCardContact c = onlyContact(
        "begin:vCard\r\nversion:3.0\r\nfn:Anna\r\n"
        "note:a\\,b\\;c\\nd\\\\e\r\n"
        "ORG:Acme\\, Inc.;Sales\r\n"
        "item1.EMAIL;type=INTERNET:anna@acme.com\r\nitem1.X-ABLabel:_$!<Other>!$_\r\n"
        "item2.TEL:+1 555 0100\r\nitem2.X-ABLabel:_$!<Mobile>!$_\r\n"
        "item3.TEL:+1 555 0199\r\nitem3.X-ABLabel:传真\r\n"
        "tel;type=work:+1 555 0111\r\n"
        "TEL;TYPE=HOME;TYPE=FAX:+1 555 0144\r\n"
        "URL:http\\://acme.com/anna\r\n"
        "end:vcard\r\n");
    EXPECT_EQ(columns(c, "con_lastname,con_description,org,con_department_title,con_email"),
              "Anna|a,b;c\nd\\e|Acme, Inc.|Sales|anna@acme.com");
    EXPECT_EQ(columns(c, "con_mobile,con_fax,con_telephone,con_fax2,con_website"),
              "+1 555 0100|+1 555 0199|+1 555 0111|+1 555 0144|http://acme.com/anna");
}

TEST(VCardRead, WhatDoesNotFitGoesIntoTheNoteUnderACaption) {
    QByteArray body = "FN:陈静\r\nNOTE:老客户\r\n";
    for (int i = 1; i <= 5; ++i) body += "TEL;TYPE=WORK:010-" + QByteArray::number(i) + "\r\n";
    for (int i = 1; i <= 4; ++i) body += "EMAIL:c" + QByteArray::number(i) + "@x.cn\r\n";
    body += "X-QQ:10001\r\nX-WECHAT:chenjing\r\nIMPP:xmpp:cj@x.cn\r\nIMPP:skype:cj\r\n";
    body += "URL:http://a.cn\r\nURL:http://b.cn\r\nANNIVERSARY:20100501\r\n";
    const VCardReading r = readVCards(card(body));
    ASSERT_EQ(r.contacts.size(), 1);
    const VCardContact& c = r.contacts[0];
    EXPECT_EQ(columns(c,
                      "con_telephone,con_telephone2,con_telephone3,con_email3,con_im,con_im2,"
                      "con_im3,con_website"),
              "010-1|010-2|010-3|c3@x.cn|QQ:10001|微信:chenjing|XMPP:cj@x.cn|http://a.cn");
    EXPECT_EQ(columns(c, "con_description").split('\n'),
              QStringList({"老客户", "其他电话：010-4", "其他电话：010-5", "其他邮箱：c4@x.cn",
                           "其他即时通讯：Skype:cj", "其他网址：http://b.cn", "纪念日：20100501"}));
    ASSERT_EQ(r.moved.size(), 1);
    for (const char* caption : {"其他电话", "其他邮箱", "其他即时通讯", "其他网址", "纪念日"})
        EXPECT_TRUE(r.moved[0].contains(QString::fromUtf8(caption))) << r.moved[0].toStdString();
}

TEST(VCardRead, TheNameShownIsTheWholeNameAndNeverEmpty) {
    const struct {
        const char* body;
        const char* whole;
        const char* given;
    } cases[] = {
        {"FN:杜英春\r\nN:杜;英春;;;\r\n", "杜英春", "英春"},
        {"N:杜;英春;;;\r\n", "杜英春", "英春"},
        {"N:Doe;John;Quincy;Dr.;Jr.\r\n", "John Quincy Doe Jr.", "John"},
        {"N:;Maria;;;\r\n", "Maria", "Maria"},
        {"N:김;민수;;;\r\n", "김민수", "민수"},
        {"FN:  \r\nN:Smith;;;;\r\n", "Smith", ""},
        {"N:;;;;\r\nORG:甲公司;销售部\r\n", "甲公司", ""},
        {"EMAIL:only@mail.cn\r\n", "only@mail.cn", ""},
        {"TEL;TYPE=CELL:13912345678\r\n", "13912345678", ""},
        {"NICKNAME:小王\r\n", "小王", ""},
        {"NOTE:什么名字都没有\r\n", "未命名联系人", ""},
    };
    for (const auto& c : cases) {
        const VCardContact contact = onlyContact(card(c.body));
        EXPECT_EQ(columns(contact, "con_lastname"), QString::fromUtf8(c.whole)) << c.body;
        EXPECT_EQ(columns(contact, "con_firstname"), QString::fromUtf8(c.given)) << c.body;
    }
    EXPECT_EQ(columns(onlyContact(card("N:Doe;John;;Dr.;\r\n")), "con_title"), "Dr.");
}

TEST(VCardRead, BirthdaysInEachForm) {
    const struct {
        const char* value;
        QDate day;
    } cases[] = {
        {"19800102", QDate(1980, 1, 2)},
        {"1980-01-02", QDate(1980, 1, 2)},
        {"--0102", QDate(kYearlessBirthdayYear, 1, 2)},
        {"--02-29", QDate(kYearlessBirthdayYear, 2, 29)},
        {"1980-02-30", QDate()},
        {"--13-01", QDate()},
        {"---02", QDate()},
        {"19800102T120000", QDate(1980, 1, 2)},
        {"circa 1800", QDate()},
    };
    for (const auto& c : cases) {
        const auto day = vcardBirthday(QString::fromLatin1(c.value));
        EXPECT_EQ(day.value_or(QDate()), c.day) << c.value;
    }
    const VCardContact apple =
        onlyContact(card("FN:A\r\nBDAY;X-APPLE-OMIT-YEAR=1604:1604-03-04\r\n"));
    EXPECT_EQ(tarvel::jetdate::fromVariant(apple.record.columns.value("con_birthday"))->date(),
              QDate(kYearlessBirthdayYear, 3, 4));
    // One that cannot be read is kept in the note, not dropped.
    EXPECT_EQ(columns(onlyContact(card("FN:A\r\nBDAY:circa 1800\r\n")), "con_description"),
              "生日：circa 1800");
}

TEST(VCardRead, AddressesInTheOrderOfTheirCountry) {
    const VCardContact c = onlyContact(
        card("FN:王芳\r\nORG:乙公司\r\n"
             "ADR;TYPE=WORK:;;中关村大街1号;海淀区;北京市;100080;中国\r\n"
             "ADR;TYPE=HOME:;;Silicon Alley 5;New York;New York;10001;United States of America\r\n"
             "ADR;TYPE=HOME:;3F;2-1 Jingumae;Shibuya;Tokyo;150-0001;Japan\r\n"));
    EXPECT_EQ(c.record.accountColumns.value("acc_address").toString() + "|" +
                  c.record.accountColumns.value("acc_postcode").toString(),
              "中国北京市海淀区中关村大街1号|100080");
    EXPECT_EQ(columns(c, "con_address_family,con_postcode_family"),
              "Silicon Alley 5, New York, United States of America|10001");
    EXPECT_EQ(columns(c, "con_description"),
              "其他地址：Japan Tokyo Shibuya 2-1 Jingumae 3F 150-0001");
    // Without an organisation a work address is the contact's own.
    const VCardContact alone =
        onlyContact(card("FN:赵六\r\nADR;TYPE=WORK:;;人民路8号;;上海市;;\r\n"));
    EXPECT_EQ(columns(alone, "con_address_family"), "上海市人民路8号");
    EXPECT_TRUE(alone.record.accountColumns.isEmpty());
    // A printed address is used only when no ADR gives the parts.
    const char* printed = "LABEL;TYPE=HOME:12 High St\\nLeeds\r\n";
    EXPECT_EQ(columns(onlyContact(card(QByteArray("FN:B\r\n") + printed)), "con_address_family"),
              "12 High St, Leeds");
    EXPECT_EQ(columns(onlyContact(card(QByteArray("FN:B\r\nADR:;;1 Low St;York;;;\r\n") + printed)),
                      "con_address_family"),
              "1 Low St, York");
}

TEST(VCardRead, TagsNicknamesTitlesAndUid) {
    const VCardContact c = onlyContact(
        card("FN:孙七\r\nCATEGORIES:客户,VIP\r\nCATEGORIES:北京\r\nNICKNAME:小孙\r\n"
             "TITLE:销售经理\r\nROLE:采购\r\nORG:丙公司;华北区\r\nUID:urn:uuid:1234\r\n",
             "4.0"));
    EXPECT_EQ(columns(c, "con_nickname,con_department_title,org,con_tag"),
              "小孙|华北区 销售经理 采购|丙公司|客户,VIP,北京");
    EXPECT_EQ(c.record.externalId, "urn:uuid:1234");
}

TEST(VCardRead, BrokenCardsAreSkippedAndNamedWhileGoodOnesComeIn) {
    const QByteArray photo = "PHOTO;ENCODING=b;TYPE=JPEG:/9j/4AAQSkZJRgABAQ==\r\n";
    const QByteArray bytes = card("FN:好一\r\n" + photo) +
                             "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:没有结尾\r\n" +
                             card("FN:好二\r\nPHOTO;VALUE=uri:http://x.cn/a.jpg\r\n") +
                             card("FN:坏照片\r\nPHOTO;ENCODING=b:!!not*base64!!\r\n") +
                             "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:也没有结尾\r\n";
    const VCardReading r = readVCards(bytes);
    ASSERT_EQ(r.contacts.size(), 2);
    EXPECT_EQ(columns(r.contacts[0], "con_lastname") + columns(r.contacts[1], "con_lastname"),
              "好一好二");
    const QStringList said[] = {{"第2张名片", "END:VCARD"}, {"第4张名片", "base64"}, {"第5张名片"}};
    ASSERT_EQ(r.skipped.size(), std::size(said)) << r.skipped.join('\n').toStdString();
    for (size_t i = 0; i < std::size(said); ++i)
        for (const QString& piece : said[i])
            EXPECT_TRUE(r.skipped[i].contains(piece)) << r.skipped[i].toStdString();
    EXPECT_TRUE(readVCards("no cards here\r\nFN:x\r\n").contacts.isEmpty());
}
