#include <QFileInfo>

#include "store/connectionstring.h"
#include "store/faulttext.h"
#include "tests/exchange/exchangefixture.h"
#include "tools/exchangetool.h"

using namespace tarvel;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

struct ToolRun {
    int code;
    QString out, err;
};

class Tool : public ExchangeFixture {
protected:
    ToolRun tool(QStringList args) {
        QString out, err;
        QTextStream o(&out), e(&err);
        const int code = runExchangeTool(args, file.folder(), o, e);
        o.flush();
        e.flush();
        // The tool points the program at its file; the test goes on with its own.
        setGlobalConnectionString(file.connectionString());
        return {code, out, err};
    }
};

}  // namespace

TEST_F(Tool, RunsEachExchangeOnTheDataFile) {
    fillSample();
    completeProfile();
    run("INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle, tas_closedate) VALUES "
        "('周会', #2026-8-5#, #9:30#, 7, #2026-12-30#)");
    exchange_test::writeBytes(inFolder("bad.csv"), "姓名,生日\n好,1990-1-1\n坏,下个月\n");
    const struct {
        QStringList args;
        int code;
        const char* says;  // on standard output, or on error output when the code is not 0
        const char* writes;
    } cases[] = {
        {{"backup", "b.tbk"}, 0, "备份成功!", "b.tbk"},
        {{"export-report", "contacts", "r.tvr3"}, 0, "已导出Tarvel报表", "r.tvr3"},
        {{"export-csv", "contacts", "c.csv"}, 0, "已导出到CSV文件", "c.csv"},
        {{"export-csv", "contacts", "c.xlsx"}, 0, "已导出到Excel文件", "c.xlsx"},
        {{"import-csv", "contacts", "c.xlsx", "--sheet", "Sheet1"}, 0, "姓名→姓名", nullptr},
        {{"import-csv", "contacts", "c.xlsx", "--sheet", "无此表"}, 1, "无此表", nullptr},
        // The rest of a file with a bad cell comes in, the cell named.
        {{"import-csv", "contacts", "bad.csv"}, 0, "第3行“生日”列", nullptr},
        {{"export-vcard", "v.vcf"}, 0, "已导出 2 个联系人", "v.vcf"},
        {{"import-vcard", "v.vcf"}, 0, "新增 2", nullptr},
        {{"export-ics", "t.ics"}, 0, "已导出1项日程", "t.ics"},
        {{"import-ics", "t.ics"}, 0, "新增 1，", nullptr},
        {{"agenda", "2026-08-05", "2026-08-12"},
         0,
         "2026-08-05 09:30 周会\n2026-08-05 09:30 周会\n2026-08-12 09:30 周会",
         nullptr},
        // Its own report: every record is found again.
        {{"import-report", "r.tvr3"},
         0,
         "新增 0，更新 0，跳过 6（新增的记录：客户单位 0，联系人 0",
         nullptr},
        {{"export-template", "t.tvm3"}, 0, "已保存模板", "t.tvm3"},
        {{"import-template", "t.tvm3"}, 0, "模板与当前设置相同", nullptr},
        {{"--db", "mydata3.tvg", "restore", "b.tbk"},
         0,
         "恢复成功! 恢复之前的文件已经备份到",
         nullptr},
    };
    QDir::setCurrent(file.folder());
    for (const auto& c : cases) {
        const ToolRun r = tool(c.args);
        EXPECT_EQ(r.code, c.code) << c.args.join(' ').toStdString() << r.err.toStdString();
        EXPECT_TRUE((c.code ? r.err : r.out).contains(QString::fromUtf8(c.says)))
            << r.out.toStdString() << r.err.toStdString();
        EXPECT_TRUE(!c.writes || QFileInfo::exists(inFolder(c.writes))) << c.writes;
    }
    // The restore brought back the file as it was at the backup.
    EXPECT_EQ(rows("contacts"), 4);
    EXPECT_EQ(rows("tasks"), 3);
    EXPECT_EQ(sqlcipherRows(inFolder("b.tbk"), "SELECT COUNT(*) FROM contacts"), QStringList{"4"});
}

// The tool's own mistakes in the words, and one failure of the work relayed.
TEST_F(Tool, ExplainsWhatWentWrong) {
    const struct {
        QStringList args;
        int code;
        const char* says;
    } cases[] = {
        {{}, 2, "用法"},
        {{"backup"}, 2, "用法"},
        {{"frobnicate", "x"}, 2, "用法"},
        {{"export-csv", "people", "x.csv"}, 1, "未知的记录类别：people"},
        {{"export-report", "documents", "x.tvr3"}, 1, "文档只能随相关记录导出到报表"},
        {{"import-ics", "nothing.ics"}, 1, "打不开文件"},
        {{"import-report", "nothing.tvg"}, 1, "找不到文件"},
        {{"agenda", "2026-8-1", "2026-08-31"}, 1, "yyyy-MM-dd"},
        {{"agenda", "2026-08-31", "2026-08-01"}, 1, "截止日不早于起始日"},
        {{"--db", "/nowhere/mydata3.tvg", "backup", "x.tbk"}, 1, "数据文件不存在"},
        {{"backup", inFolder("mydata3.tvg")}, 1, "不能备份到数据文件本身"},
    };
    for (const auto& c : cases) {
        const ToolRun r = tool(c.args);
        EXPECT_EQ(r.code, c.code) << c.args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QString::fromUtf8(c.says))) << r.err.toStdString();
    }
}

TEST_F(Tool, MakesAndListsAutomaticBackupsOneALine) {
    fillSample();
    EXPECT_EQ(tool({"backups"}).out, QString());
    const QDateTime first = Clock::now();
    ToolRun r = tool({"auto-backup"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    Clock::advance(24 * 3600 + 60);
    run("INSERT INTO contacts (con_lastname) VALUES ('新人')");
    ASSERT_EQ(tool({"auto-backup"}).code, 0);
    r = tool({"backups"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QStringList lines = r.out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2) << r.out.toStdString();
    const QDateTime moments[] = {Clock::now(), first};
    const int contacts[] = {5, 4};
    for (int i = 0; i < 2; ++i) {
        const QStringList fields = lines[i].split('\t');
        ASSERT_EQ(fields.size(), 4) << lines[i].toStdString();
        EXPECT_EQ(QFileInfo(fields[0]).absolutePath(), inFolder("backups"));
        EXPECT_EQ(fields[1], moments[i].toString("yyyy-MM-dd HH:mm:ss"));
        EXPECT_EQ(fields[2].toLongLong(), QFileInfo(fields[0]).size());
        EXPECT_TRUE(fields[3].contains(QString("联系人 %1").arg(contacts[i])))
            << lines[i].toStdString();
    }
}

TEST_F(Tool, SaysPlainlyWhyAFileInTooLongAPathCannotBeOpened) {
    QString deep = file.folder();
    while (deep.toUtf8().size() <= kLongestDataPath) deep += "/" + QString(60, QChar(u'深'));
    ASSERT_TRUE(QDir().mkpath(deep));
    const QString live = QDir(deep).filePath("mydata3.tvg");
    ASSERT_TRUE(QFile::copy(file.path(), live));
    for (const QStringList& args : {QStringList{"backup", inFolder("x.tbk")},
                                    QStringList{"export-csv", "contacts", inFolder("x.csv")}}) {
        const ToolRun r = tool(QStringList{"--db", live} + args);
        EXPECT_EQ(r.code, 1) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(plainOpenFault(QString(), live))) << r.err.toStdString();
        EXPECT_FALSE(r.err.contains("不是 Tarvel 数据文件")) << r.err.toStdString();
    }
}
