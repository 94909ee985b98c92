#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringEncoder>

#include "exchange/csvimport.h"
#include "exchange/textfile.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::python;

namespace {

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray gb18030(const QString& text) {
    QStringEncoder encoder("GB18030");
    return encoder.encode(text);
}

class TextFormats : public ExchangeFixture {};

}  // namespace

TEST(Csv, SplitsQuotedFieldsAndCountsLines) {
    const struct {
        const char* text;
        QList<int> lines;
        QList<QStringList> rows;
    } cases[] = {
        {"a,b\r\nc,d\r\n", {1, 2}, {{"a", "b"}, {"c", "d"}}},
        {"\"x,y\",\"say \"\"hi\"\"\"\n", {1}, {{"x,y", "say \"hi\""}}},
        {"\"two\nlines\",z\n\nlast,\n", {1, 4}, {{"two\nlines", "z"}, {"last", ""}}},
        {"no newline at end", {1}, {{"no newline at end"}}},
    };
    for (const auto& c : cases) {
        const QList<CsvRow> rows = parseCsv(QString::fromUtf8(c.text));
        ASSERT_EQ(rows.size(), c.rows.size()) << c.text;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].fields, c.rows[i]) << c.text;
            EXPECT_EQ(rows[i].line, c.lines[i]) << c.text;
        }
    }
}

TEST_F(TextFormats, CsvImportLinksAccountsByNameAndIsAllOrNothing) {
    run("INSERT INTO accounts (acc_name) VALUES ('甲公司')");
    const QString path = inFolder("in.csv");
    writeBytes(path, gb18030("姓名,名,手机,客户/单位名称,生日,不认识的列\r\n"
                             "张,三,13800000000,甲公司,1980-5-6,x\r\n"
                             "李,四,13900000000,乙公司,,y\r\n"
                             "王,五,,乙公司,1985-2-3,z\r\n"));
    CsvImportPlan plan;
    QString error;
    ASSERT_TRUE(planCsvImport(path, "contacts", &plan, &error)) << error.toStdString();
    EXPECT_EQ(plan.targets, QStringList({"con_lastname", "con_firstname", "con_mobile", "acc_name",
                                         "con_birthday", ""}));
    EXPECT_EQ(plan.rows.size(), 3);
    int added = 0, accounts = 0;
    const Outcome out = importCsv(plan, &added, &accounts);
    ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
    EXPECT_EQ(added, 3);
    EXPECT_EQ(accounts, 1);
    EXPECT_EQ(
        column("SELECT con_lastname & con_firstname & '|' & acc_name FROM que_contacts_accounts "
               "ORDER BY con_id"),
        QStringList({"张三|甲公司", "李四|乙公司", "王五|乙公司"}));
    EXPECT_EQ(column("SELECT con_birthday FROM contacts WHERE con_lastname='张'").value(0).left(10),
              "1980-05-06");

    writeBytes(path,
               QString("\xEF\xBB\xBF姓名,生日\n赵,1990-1-1\n钱,不是日期\n孙,1990-13-1\n").toUtf8());
    ASSERT_TRUE(planCsvImport(path, "contacts", &plan, &error));
    const Outcome bad = importCsv(plan);
    EXPECT_FALSE(bad.ok);
    EXPECT_TRUE(bad.ErrMsg.contains("第3行")) << bad.ErrMsg.toStdString();
    EXPECT_TRUE(bad.ErrMsg.contains("第4行")) << bad.ErrMsg.toStdString();
    EXPECT_FALSE(bad.ErrMsg.contains("第2行"));
    EXPECT_EQ(rows("contacts"), 3) << "nothing of a failed file is kept";
}

TEST_F(TextFormats, CsvImportRefusesWhatItCannotRead) {
    CsvImportPlan plan;
    QString error;
    EXPECT_FALSE(planCsvImport(inFolder("missing.csv"), "contacts", &plan, &error));
    EXPECT_FALSE(planCsvImport(inFolder("x.csv"), "tasks", &plan, &error));
    writeBytes(inFolder("odd.csv"), "foo,bar\n1,2\n");
    EXPECT_FALSE(planCsvImport(inFolder("odd.csv"), "accounts", &plan, &error));
    EXPECT_TRUE(error.contains("没有可以识别的列名"));
}

TEST_F(TextFormats, CsvExportReadsBackWithPythonCsv) {
    run("INSERT INTO accounts (acc_name, acc_telephone, acc_check) VALUES ('\"引号\",公司', "
        "'010-1', true)");
    run("INSERT INTO accounts (acc_name, acc_check) VALUES ('未选', false)");
    const QString path = inFolder("out.csv");
    ASSERT_TRUE(exportCsv("accounts", path).ok);
    const QJsonArray rows =
        python(
            "import csv,json,sys\nprint(json.dumps(list(csv.reader(open(sys.argv[1], "
            "encoding='utf-8-sig')))))",
            path)
            .toArray();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_TRUE(rows[0].toArray().contains(QJsonValue("客户/单位名称")));
    EXPECT_EQ(rows[0].toArray().size(), rows[1].toArray().size());
    EXPECT_TRUE(rows[1].toArray().contains(QJsonValue("\"引号\",公司")));
    EXPECT_TRUE(rows[1].toArray().contains(QJsonValue("010-1")));
}
