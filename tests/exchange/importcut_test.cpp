// Imports keep to what each column holds: a longer value is cut between whole
// characters, stored so in the data file, and named in the summary.

#include "exchange/csvimport.h"
#include "exchange/vcard.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::writeBytes;

namespace {

const QString kSmile = QStringLiteral("\U0001F600");

class ImportCut : public ExchangeFixture {};

TEST_F(ImportCut, CsvNamesEachCutAndStoresWholeCharacters) {
    struct Row {
        QString name, company;
        QString storedName;  // as the data file holds it afterwards
    };
    const QString longCompany = QStringLiteral("星").repeated(55);
    const Row rows[] = {
        // The emoji is the 50th character: it stays, the 51st goes.
        {QStringLiteral("张").repeated(49) + kSmile + QStringLiteral("三"), QString(),
         QStringLiteral("张").repeated(49) + kSmile},
        // The limit falls between a letter and its accent: both go.
        {QStringLiteral("a").repeated(49) + QStringLiteral("e\u0301"), QString(),
         QStringLiteral("a").repeated(49)},
        {QStringLiteral("李四"), longCompany, QStringLiteral("李四")},
        {QStringLiteral("王").repeated(50), QString(), QStringLiteral("王").repeated(50)},
    };
    QString text = QStringLiteral("姓名,公司\r\n");
    for (const Row& r : rows)
        text += r.name + QLatin1Char(',') + r.company + QStringLiteral("\r\n");
    const QString path = inFolder("long.csv");
    writeBytes(path, text.toUtf8());

    CsvImportPlan plan;
    QString error;
    ASSERT_TRUE(planCsvImport(path, "contacts", &plan, &error)) << error.toStdString();
    CsvImportResult result;
    const Outcome out = importCsv(plan, false, &result);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();

    EXPECT_EQ(result.tally.added, 4);
    ASSERT_EQ(result.tally.cuts.size(), 3) << result.summary().toStdString();
    EXPECT_EQ(result.tally.cuts[0], QStringLiteral("第2行「") + QStringLiteral("张").repeated(12) +
                                        QStringLiteral("…」：姓名超过50个字，已截断"));
    EXPECT_TRUE(result.tally.cuts[1].startsWith(QStringLiteral("第3行「aaaaaaaaaaaa…」：姓名")));
    EXPECT_TRUE(result.tally.cuts[2].startsWith(QStringLiteral("第4行「李四」：")));
    EXPECT_TRUE(result.tally.cuts[2].endsWith(QStringLiteral("超过50个字，已截断")));
    const QString summary = result.summary();
    EXPECT_TRUE(summary.contains(QStringLiteral("3 处内容超过长度，已截断")))
        << summary.toStdString();
    EXPECT_TRUE(summary.contains(result.tally.cuts[0])) << summary.toStdString();

    // Read back from the data file: whole characters, nothing replaced by "?".
    const QStringList stored =
        column(QStringLiteral("SELECT con_lastname FROM contacts ORDER BY con_id"));
    ASSERT_EQ(stored.size(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(stored[i], rows[i].storedName) << i;
    EXPECT_EQ(column(QStringLiteral("SELECT acc_name FROM accounts")),
              QStringList{QStringLiteral("星").repeated(50)});
}

TEST_F(ImportCut, VCardNamesTheCardWhoseNameWasCut) {
    const QString name = QStringLiteral("赵").repeated(48) + kSmile + kSmile + kSmile;
    const QString card =
        QStringLiteral(
            "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:短名\r\nTEL;TYPE=CELL:13800000001\r\n"
            "END:VCARD\r\nBEGIN:VCARD\r\nVERSION:3.0\r\nFN:%1\r\n"
            "TEL;TYPE=CELL:13800000002\r\nEND:VCARD\r\n")
            .arg(name);
    const QString path = inFolder("long.vcf");
    writeBytes(path, card.toUtf8());
    VCardImport done;
    const Outcome out = importVCards(path, &done);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    ASSERT_EQ(done.tally.cuts.size(), 1);
    EXPECT_TRUE(done.tally.cuts[0].startsWith(QStringLiteral("第2张名片「赵赵")))
        << done.tally.cuts[0].toStdString();
    EXPECT_TRUE(done.summary().contains(QStringLiteral("姓名超过50个字，已截断")));
    EXPECT_EQ(
        column(QStringLiteral("SELECT con_lastname FROM contacts WHERE con_mobile='13800000002'")),
        QStringList{QStringLiteral("赵").repeated(48) + kSmile + kSmile});
    // A second import of the same file finds the cut name again instead of adding it.
    VCardImport again;
    ASSERT_TRUE(importVCards(path, &again).ok);
    EXPECT_EQ(again.tally.added, 0);
    EXPECT_EQ(rows("contacts"), 2);
}

}  // namespace
