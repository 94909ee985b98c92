#include "exchange/textdecode.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStringEncoder>

using namespace tarvel::exchange;

namespace {

QByteArray encoded(const QString& text, const char* encoding) {
    QStringEncoder encoder(encoding);
    EXPECT_TRUE(encoder.isValid()) << encoding;
    return encoder.encode(text);
}

QByteArray samplesFile(const QString& name) {
    QFile f(QStringLiteral(TARVEL_SAMPLES "/") + name);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

}  // namespace

// What the files people bring are written in, told apart from the bytes alone.
TEST(TextDecode, TellsEncodingsApartFromTheBytes) {
    const QString chinese = QStringLiteral(
        "姓名,公司,手机\n王一明,北京甲乙科技有限公司,13800138000\n"
        "欧阳娜娜,上海贸易有限公司,13912345678\n");
    const QString traditional = QStringLiteral(
        "姓名,公司,電話\n陳大文,臺灣貿易股份有限公司,0912345678\n"
        "林美麗,香港國際電腦有限公司,98765432\n");
    const QString japanese = QStringLiteral(
        "名前,会社,電話\n山田太郎,株式会社サンプル,03-1234-5678\n"
        "佐藤花子,東京システム株式会社,090-1111-2222\n");
    const QString western =
        QStringLiteral("Name,Firma\nJürgen Müller,Straße 5 GmbH\nRenée Dupré,Café\n");
    const struct {
        QByteArray bytes;
        QByteArray encoding;
        QString text;
    } cases[] = {
        {"\xEF\xBB\xBF" + chinese.toUtf8(), "UTF-8", chinese},
        {chinese.toUtf8(), "UTF-8", chinese},
        {"\xFF\xFE" + encoded(chinese, "UTF-16LE"), "UTF-16LE", chinese},
        {encoded(western, "UTF-16BE"), "UTF-16BE", western},
        {encoded(chinese, "GB18030"), "GB18030", chinese},
        {encoded(QStringLiteral("张三,13800000000\n"), "GB18030"), "GB18030",
         QStringLiteral("张三,13800000000\n")},
        {encoded(QStringLiteral("名,姓,生日\n明,王,0/0/00\n"), "GB18030"), "GB18030",
         QStringLiteral("名,姓,生日\n明,王,0/0/00\n")},
        {encoded(traditional, "Big5"), "Big5", traditional},
        {encoded(japanese, "Shift_JIS"), "Shift_JIS", japanese},
        {encoded(western, "windows-1252"), "windows-1252", western},
        {"plain ascii, nothing else\n", "UTF-8", "plain ascii, nothing else\n"},
    };
    for (const auto& c : cases) {
        const DecodedText d = decodeText(c.bytes);
        EXPECT_EQ(d.encoding, c.encoding) << c.text.toStdString();
        EXPECT_EQ(d.text, c.text) << c.encoding.constData();
        EXPECT_TRUE(d.badLines.isEmpty()) << c.encoding.constData();
        EXPECT_TRUE(d.problem().isEmpty());
    }
}

// One damaged byte in a UTF-8 file is named; the file is not read as GB18030,
// which would garble every other character.
TEST(TextDecode, NamesDamagedBytesInsteadOfReadingTheFileAsSomethingElse) {
    QByteArray bytes = QStringLiteral("姓名,手机\n王一明,13800138000\n").toUtf8();
    bytes += "\xE5\xBC";  // a character cut short
    bytes += QStringLiteral(",13900000000\n李四,13700000000\n").toUtf8();
    const DecodedText d = decodeText(bytes);
    EXPECT_EQ(d.encoding, "UTF-8");
    EXPECT_EQ(d.badLines, QList<int>{3});
    EXPECT_TRUE(d.text.contains(QStringLiteral("李四,13700000000")));
    EXPECT_TRUE(d.problem().contains(QStringLiteral("第3行")));
}

TEST(TextDecode, NamedCharsetsReadWhatProgramsWriteUnderThem) {
    const QString text = QStringLiteral("张三 €");
    const struct {
        QByteArray label;
        QByteArray bytes;
        QString text;
    } cases[] = {
        {"GBK", encoded(text, "GB18030"), text},
        {"gb2312", encoded(QStringLiteral("张三"), "GB18030"), QStringLiteral("张三")},
        {"SHIFT_JIS", encoded(QStringLiteral("山田①"), "windows-31j"), QStringLiteral("山田①")},
        {"ISO-8859-1", "Caf\xE9 \x80", QStringLiteral("Café €")},
        {"utf-8", text.toUtf8(), text},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(knownEncoding(c.label)) << c.label.constData();
        const DecodedText d = decodeAs(c.bytes, c.label);
        EXPECT_EQ(d.text, c.text) << c.label.constData();
        EXPECT_TRUE(d.badLines.isEmpty()) << c.label.constData();
    }
    EXPECT_FALSE(knownEncoding("no-such-charset"));
    EXPECT_FALSE(decodeAs("abc", "no-such-charset").badLines.isEmpty());
}

TEST(TextDecode, SampleFilesOfOtherPrograms) {
    if (!QDir(QStringLiteral(TARVEL_SAMPLES)).exists()) GTEST_SKIP() << "no sample folder";
    const struct {
        const char* file;
        QByteArray encoding;
        const char* contains;
    } cases[] = {
        {"csv/thunderbird__shiftjis_addressbook.csv", "Shift_JIS", nullptr},
        {"vcf/roundcube__utf-16_sample.vcf", "UTF-16BE", "BEGIN:VCARD"},
        {"csv/roundcube__all.csv", "UTF-8", "Display Name"},
    };
    for (const auto& c : cases) {
        const QByteArray bytes = samplesFile(QString::fromLatin1(c.file));
        if (bytes.isEmpty()) continue;
        const DecodedText d = decodeText(bytes);
        EXPECT_EQ(d.encoding, c.encoding) << c.file;
        EXPECT_TRUE(d.badLines.isEmpty()) << c.file;
        EXPECT_TRUE(!c.contains || d.text.contains(QLatin1String(c.contains))) << c.file;
    }
}
