#include <QDirIterator>
#include <QJsonArray>
#include <QStringEncoder>

#include "exchange/csvimport.h"
#include "exchange/importdate.h"
#include "exchange/importlayout.h"
#include "exchange/tableexport.h"
#include "exchange/xlsxread.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::python;
using exchange_test::writeBytes;

namespace {

QByteArray encoded(const char* encoding, const QString& text, bool byteOrderMark = false) {
    QStringEncoder encoder(encoding, byteOrderMark ? QStringConverter::Flag::WriteBom
                                                   : QStringConverter::Flag::Default);
    return encoder.encode(text);
}

class TableImport : public ExchangeFixture {
protected:
    // The plan for a file, failing the test when none can be made.
    CsvImportPlan plan(const QString& path, const QString& kind = "contacts",
                       const QString& sheet = {}) {
        CsvImportPlan p;
        QString error;
        EXPECT_TRUE(planCsvImport(path, kind, &p, &error, sheet)) << error.toStdString();
        return p;
    }
    // Plans and imports a file, failing the test when either does not work.
    CsvImportResult import(const QString& path, const QString& kind = "contacts",
                           const QString& sheet = {}) {
        CsvImportResult result;
        const Outcome out = importCsv(plan(path, kind, sheet), false, &result);
        EXPECT_TRUE(out.ok) << out.ErrMsg.toStdString();
        return result;
    }
    // The bytes as a file of the test's folder; its path.
    QString written(const QString& name, const QByteArray& bytes) {
        writeBytes(inFolder(name), bytes);
        return inFolder(name);
    }
    // One contact's columns joined by '|'.
    QString contact(const QString& name, const QString& columns) {
        return column(QStringLiteral("SELECT %1 FROM contacts WHERE con_lastname='%2'")
                          .arg(columns.split(',').join(" & '|' & "), name))
            .value(0);
    }
};

}  // namespace

TEST(TableText, SplitsOnTheSeparatorOfTheHeaderLine) {
    const struct {
        const char* text;
        QChar separator;
        QList<int> lines;
        QList<QStringList> rows;
    } cases[] = {
        {"a,b\r\nc,d\r\n", ',', {1, 2}, {{"a", "b"}, {"c", "d"}}},
        {"\"x,y\",\"say \"\"hi\"\"\"\n", ',', {1}, {{"x,y", "say \"hi\""}}},
        {"\"two\nlines\",z\n\nlast,\n", ',', {1, 4}, {{"two\nlines", "z"}, {"last", ""}}},
        {"Name;E-mail;Note\n\"Doe, J\";j@x;\"a;b\"\n",
         ';',
         {1, 2},
         {{"Name", "E-mail", "Note"}, {"Doe, J", "j@x", "a;b"}}},
        {"姓名\t手机\n张三\t138\n", '\t', {1, 2}, {{"姓名", "手机"}, {"张三", "138"}}},
        {"\"a;b;c\",d\n1,2\n", ',', {1, 2}, {{"a;b;c", "d"}, {"1", "2"}}},
    };
    for (const auto& c : cases) {
        const QString text = QString::fromUtf8(c.text);
        EXPECT_EQ(detectSeparator(text), c.separator) << c.text;
        const QList<CsvRow> rows = parseCsv(text, detectSeparator(text));
        ASSERT_EQ(rows.size(), c.rows.size()) << c.text;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i].fields, c.rows[i]) << c.text;
            EXPECT_EQ(rows[i].line, c.lines[i]) << c.text;
        }
    }
}

TEST(TableText, DateCellsInTheirUsualFormsAndPlaceholders) {
    const struct {
        const char* text;
        DateCell read;
        QDate day;
    } cases[] = {
        {"1980-5-6", DateCell::Date, {1980, 5, 6}},
        {"1980/05/06 00:00:00", DateCell::Date, {1980, 5, 6}},
        {"5/6/1980", DateCell::Date, {1980, 5, 6}},
        {"25/12/1980", DateCell::Date, {1980, 12, 25}},
        {"6.5.1980", DateCell::Date, {1980, 5, 6}},
        {"1980年5月6日", DateCell::Date, {1980, 5, 6}},
        {"29221", DateCell::Date, {1980, 1, 1}},
        {"15", DateCell::Bad, {}},
        {"0/0/00", DateCell::Empty, {}},
        {"--03-04", DateCell::NoYear, {2000, 3, 4}},
        {"00:00:00", DateCell::Empty, {}},
        {"1/1/1601", DateCell::Empty, {}},
        {"  ", DateCell::Empty, {}},
        {"1990-13-1", DateCell::Bad, {}},
        {"不是日期", DateCell::Bad, {}},
    };
    for (const auto& c : cases) {
        QDate day;
        EXPECT_EQ(readDateCell(QString::fromUtf8(c.text), &day), c.read) << c.text;
        EXPECT_EQ(day, c.day) << c.text;
    }
    EXPECT_EQ(excelSerialDate(60, false), QDate(1900, 2, 28)) << "Excel's 29 February 1900";
    EXPECT_EQ(excelSerialDate(61, false), QDate(1900, 3, 1));
    EXPECT_EQ(excelSerialDate(0, true), QDate(1904, 1, 1));
}

TEST(TableLayout, KnownHeadersMapByThemselves) {
    const struct {
        const char* header;
        const char* target;
    } cases[] = {
        // Word for word, whatever the case and blanks.
        {" First  Name", "con_firstname"},
        {"姓名", "con_lastname"},
        {"E-mail Display Name", ""},
        // By the words they hold; the first word that decides wins.
        {"电子邮件地址", ":email"},
        {"Home Mobile", ":mobile"},
        {"Email Home", ":email"},
        {"商务电话", ":phone"},
        {"Business Fax", ":fax"},
        {"Home Street", ":addr.home.street"},
        {"商务地址 邮政编码", ":addr.work.postcode"},
        {"Business Country/Region", ":addr.work.country"},
        {"住宅地址 省/市/自治区", ":addr.home.region"},
        {"Other City", ":addr.other.city"},
        // Google's numbered columns and Apple's bracketed ones.
        {"E-mail 1 - Value", ":email"},
        {"E-mail 1 - Type", ""},
        {"Phone 1 - Type", ":label.p1"},
        {"Phone 2 - Label", ":label.p2"},
        {"Phone 2 - Value", ":phone.p2"},
        {"Address 1 - Postal Code", ":addr.a1.postcode"},
        {"Phone (Mobile)", ":mobile"},
        {"不认识的列", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(layout::targetOf(QString::fromUtf8(c.header), "contacts"),
                  QString::fromUtf8(c.target))
            << c.header;
    EXPECT_EQ(layout::targetOf("公司", "accounts"), "acc_name");
    EXPECT_EQ(layout::targetOf("地址", "accounts"), ":addr.work.street");
    EXPECT_EQ(layout::targetOf("电话", "accounts"), ":phone");
}

TEST_F(TableImport, OutlookWithChineseHeadersInGb18030) {
    const QString path =
        written("outlook.csv",
                encoded("GB18030",
                        "名,中间名,姓,单位,部门,职务,商务地址 街道,商务地址 市/县,"
                        "商务地址 邮政编码,商务电话,商务电话 2,住宅电话,其他电话,移动电话,"
                        "电子邮件地址,电子邮件显示名称,生日,附注\r\n"
                        "三,,张,华信科技,销售部,经理,中关村大街1号,北京,100080,010-1,010-2,"
                        "010-3,010-4,13800000000,zs@hx.cn,张三 (zs@hx.cn),0/0/00,\"老客户\r\n"
                        "两行\"\r\n"
                        "Ann,Lee,Smith,,,,,,,,,,,,ann@x.org,,3/15/1985,\r\n"));
    // A cell that could not be read would refuse the import.
    EXPECT_EQ(import(path).tally.added, 2);
    EXPECT_EQ(contact("张三",
                      "con_firstname,con_department_title,con_mobile,con_email,"
                      "con_telephone,con_telephone2,con_telephone3"),
              "三|销售部 经理|13800000000|zs@hx.cn|010-1|010-2|010-3");
    const QString note = contact("张三", "con_description");
    EXPECT_TRUE(note.startsWith("老客户\n两行")) << note.toStdString();
    EXPECT_TRUE(note.contains("其他电话：010-4")) << "a fourth telephone is not dropped";
    EXPECT_EQ(contact("张三", "con_birthday").left(10), "1900-01-01") << "0/0/00 is no birthday";
    EXPECT_EQ(
        column("SELECT acc_address & '|' & acc_postcode FROM accounts WHERE acc_name='华信科技'"),
        QStringList({"北京中关村大街1号|100080"}));
    EXPECT_EQ(column("SELECT acc_name FROM que_contacts_accounts WHERE con_lastname='张三'"),
              QStringList({"华信科技"}));
    EXPECT_EQ(contact("Ann Lee Smith", "con_firstname,con_birthday").left(14), "Ann|1985-03-15");
}

TEST_F(TableImport, GoogleLayoutsPutEachNumberInTheSlotItsLabelSays) {
    import(written("google.csv",
                   "First Name,Middle Name,Last Name,Nickname,Birthday,Notes,Labels,"
                   "E-mail 1 - Label,E-mail 1 - Value,Phone 1 - Label,Phone 1 - Value,"
                   "Phone 2 - Label,Phone 2 - Value,Address 1 - Label,Address 1 - Street,"
                   "Address 1 - City,Address 1 - Postal Code,Address 1 - Country,"
                   "Organization Name,Organization Title\n"
                   "John,,Doe,JD,1979-02-03,,* myContacts ::: Friends,* Home,"
                   "jd@home.org ::: jd@work.com,Mobile,+1 555 0100,Work Fax,+1 555 0101,Home,"
                   "5 Silicon Alley,New York,10001,United States of America,,\n"
                   "明,,王,,--03-04,,,,,Work,010-5555,Mobile,13900000000,Work,"
                   "建国路88号,北京,100022,中国,远景公司,总监\n"));
    EXPECT_EQ(
        contact("John Doe", "con_firstname,con_nickname,con_mobile,con_fax,con_email,con_email2"),
        "John|JD|+1 555 0100|+1 555 0101|jd@home.org|jd@work.com");
    EXPECT_EQ(contact("John Doe", "con_address_family,con_postcode_family,con_tag"),
              "5 Silicon Alley, New York, United States of America|10001|Friends");
    EXPECT_EQ(contact("王明", "con_telephone,con_mobile,con_department_title"),
              "010-5555|13900000000|总监");
    EXPECT_EQ(column("SELECT acc_address FROM accounts WHERE acc_name='远景公司'"),
              QStringList({"中国北京建国路88号"}));
}

TEST_F(TableImport, SemicolonFileAndTheFallbackName) {
    import(written("semi.csv",
                   "Display Name;First Name;Last Name;Primary Email\n"
                   "\"Doe; John\";John;Doe;jd@x.org\n"
                   ";;;only@mail.org\n"));
    EXPECT_EQ(contact("Doe; John", "con_email"), "jd@x.org");
    EXPECT_EQ(contact("only@mail.org", "con_email"), "only@mail.org")
        << "without a name the e-mail names the contact";
}

TEST_F(TableImport, LocalisedThunderbirdKeepsItsAddressAndBirthdayTogether) {
    import(written("tb.csv",
                   "名,姓,显示名称,主要电子邮件,移动电话号码,家庭地址,家庭地址 2,家庭所在城市,"
                   "家庭邮政编码,出生年份,出生月份,出生日期\n"
                   "小明,李,李小明,xm@x.cn,13700000000,朝阳路1号,3单元,北京,100020,1990,7,15\n"));
    EXPECT_EQ(contact("李小明", "con_mobile,con_address_family,con_postcode_family"),
              "13700000000|北京朝阳路1号 3单元|100020");
    EXPECT_EQ(rows("contacts WHERE con_description IS NULL AND con_lastname='李小明'"), 1)
        << "nothing left over for the note";
    EXPECT_EQ(contact("李小明", "con_birthday").left(10), "1990-07-15");

    // A birthday without its year keeps month and day where vCards keep them.
    import(written("noyear.csv", "姓名,生日\n王芳,--03-04\n"));
    import(written("monthday.csv", "名,姓,出生月份,出生日期\n伟,张,2,29\n"));
    EXPECT_EQ(contact("王芳", "con_birthday").left(10), "1904-03-04");
    EXPECT_EQ(contact("张伟", "con_birthday").left(10), "1904-02-29");
}

TEST_F(TableImport, BadCellsAreNamedAndTheRestComesInOnlyWhenAsked) {
    const CsvImportPlan plan = this->plan(
        written("bad.csv",
                "\xEF\xBB\xBF姓名,生日,手机\n赵,1990-1-1,1\n钱,不是日期,2\n孙,1990-13-1,3\n,,\n"));
    ASSERT_EQ(plan.problems.size(), 2) << plan.problems.join('\n').toStdString();
    EXPECT_TRUE(plan.problems[0].contains("第3行“生日”列")) << plan.problems[0].toStdString();
    EXPECT_TRUE(plan.problems[1].contains("第4行")) << plan.problems[1].toStdString();
    const int before = rows("contacts");
    const Outcome refused = importCsv(plan, false);
    EXPECT_FALSE(refused.ok);
    EXPECT_TRUE(refused.ErrMsg.contains("第3行"));
    EXPECT_EQ(rows("contacts"), before) << "nothing of a refused file is kept";
    CsvImportResult result;
    ASSERT_TRUE(importCsv(plan, true, &result).ok);
    EXPECT_EQ(result.tally.added, 3);
    EXPECT_EQ(result.problems.size(), 2);
    EXPECT_TRUE(result.summary().contains("第4行"));
    EXPECT_EQ(contact("钱", "con_mobile"), "2") << "the row keeps its other cells";
    EXPECT_EQ(contact("赵", "con_birthday").left(10), "1990-01-01");
}

TEST_F(TableImport, AccountsFromTheSheetSmallBusinessesKeep) {
    const CsvImportPlan plan = this->plan(written("accounts.csv",
                                                  "公司,电话,传真,地址,城市,邮编,网址,备注\n"
                                                  "远景公司,010-1,010-2,建国路88号,北京,100022,y."
                                                  "cn,老客户\n"
                                                  ",010-9,,,,,,\n"),
                                          "accounts");
    ASSERT_EQ(plan.problems.size(), 1) << "a row without a name is named";
    EXPECT_TRUE(plan.problems[0].contains("第3行"));
    ASSERT_TRUE(importCsv(plan, true).ok);
    EXPECT_EQ(column("SELECT acc_telephone & '|' & acc_fax & '|' & acc_address & '|' & "
                     "acc_postcode & '|' & acc_website & '|' & acc_description FROM accounts "
                     "WHERE acc_name='远景公司'"),
              QStringList({"010-1|010-2|北京建国路88号|100022|y.cn|老客户"}));
}

TEST_F(TableImport, ChosenColumnsAreRememberedForTheSameHeader) {
    const QString path = written("sheet.csv", "客户,联系电话,自定义\n甲,010-1,x\n");
    CsvImportPlan first = plan(path);
    EXPECT_FALSE(first.remembered);
    retarget(&first, {"con_lastname", ":mobile", "con_nickname"});
    QString error;
    ASSERT_TRUE(rememberTargets(first, &error)) << error.toStdString();
    const CsvImportPlan again = plan(path);
    EXPECT_TRUE(again.remembered);
    EXPECT_EQ(again.targets, QStringList({"con_lastname", ":mobile", "con_nickname"}));
    EXPECT_FALSE(plan(path, "accounts").remembered)
        << "a choice for contacts is not one for accounts";
    ASSERT_TRUE(importCsv(again, false).ok);
    EXPECT_EQ(contact("甲", "con_mobile,con_nickname"), "010-1|x");
}

TEST_F(TableImport, WpsWorkbookWithDatesNumbersAndASecondSheet) {
    const QString path = inFolder("客户.xlsx");
    const QJsonValue made = python(
        "import sys, datetime, zipfile, openpyxl\n"
        "wb = openpyxl.Workbook(); ws = wb.active; ws.title = '客户'\n"
        "ws.append(['姓名','公司/单位','职务','手机','电话','邮箱','地址','邮编','生日','备注',"
        "'微信','QQ'])\n"
        "ws.append(['李雷','韩梅梅商贸','经理',13800000001,'021-1','ll@x.cn','上海市浦东新区1号',"
        "'200120',datetime.date(1985,6,7),'RICH',None,123456])\n"
        "ws.cell(row=4, column=1, value='王芳'); ws.cell(row=4, column=27, value='远处')\n"
        "ws.cell(row=4, column=9, value='0000-00-00')\n"
        "ws2 = wb.create_sheet('供应商'); ws2.append(['姓名','手机']); ws2.append(['赵六', "
        "'139'])\n"
        "wb.save(sys.argv[1])\n"
        // A shared string of rich text runs with a phonetic guide, as Excel and
        // WPS write them (this openpyxl writes inline strings only).
        "z = zipfile.ZipFile(sys.argv[1]); p = {n: z.read(n) for n in z.namelist()}; z.close()\n"
        "s = 'xl/worksheets/sheet1.xml'\n"
        "p[s] = p[s].replace(b'<c r=\"J2\" t=\"inlineStr\"><is><t>RICH</t></is></c>',"
        " b'<c r=\"J2\" t=\"s\"><v>0</v></c>')\n"
        "p['xl/sharedStrings.xml'] = ('<sst xmlns=\"http://schemas.openxmlformats.org/"
        "spreadsheetml/2006/main\" count=\"1\" uniqueCount=\"1\"><si><r><rPr><b/></rPr>"
        "<t>很</t></r><r><t>重要</t></r><rPh sb=\"0\" eb=\"1\"><t>hen</t></rPh></si></sst>')"
        ".encode()\n"
        "p['[Content_Types].xml'] = p['[Content_Types].xml'].replace(b'</Types>', b'<Override "
        "PartName=\"/xl/sharedStrings.xml\" ContentType=\"application/"
        "vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml\"/></Types>')\n"
        "r = 'xl/_rels/workbook.xml.rels'\n"
        "p[r] = p[r].replace(b'</Relationships>', b'<Relationship Id=\"rIdS\" Type=\"http://"
        "schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings\" "
        "Target=\"sharedStrings.xml\"/></Relationships>')\n"
        "z = zipfile.ZipFile(sys.argv[1], 'w', zipfile.ZIP_DEFLATED)\n"
        "[z.writestr(n, b) for n, b in p.items()]; z.close(); print(0)\n",
        path);
    ASSERT_EQ(made.toInt(-1), 0);
    QList<CsvRow> sheet;
    QString error;
    ASSERT_TRUE(readXlsx(path, {}, &sheet, &error)) << error.toStdString();
    ASSERT_EQ(sheet.size(), 3);
    EXPECT_EQ(sheet[2].line, 4) << "row numbers as the sheet has them";
    EXPECT_EQ(sheet[2].fields.value(26), "远处") << "column AA";
    EXPECT_EQ(xlsxSheetNames(path), QStringList({"客户", "供应商"}));

    // A whole number without decimals, a date cell, rich text runs.
    EXPECT_EQ(import(path).tally.added, 2);
    EXPECT_EQ(contact("李雷", "con_mobile,con_telephone,con_email,con_department_title"),
              "13800000001|021-1|ll@x.cn|经理");
    EXPECT_EQ(contact("李雷", "con_birthday").left(10), "1985-06-07");
    EXPECT_EQ(contact("李雷", "con_address_family,con_postcode_family,con_im,con_description"),
              "上海市浦东新区1号|200120|QQ:123456|很重要");
    import(path, "contacts", "供应商");
    EXPECT_EQ(contact("赵六", "con_mobile"), "139");

    CsvImportPlan none;
    EXPECT_FALSE(planCsvImport(path, "contacts", &none, &error, "没有这个表"));
    EXPECT_TRUE(error.contains("供应商")) << error.toStdString();
}

TEST_F(TableImport, WorkbooksCountingFrom1904ReadTheSameDay) {
    const QString path = inFolder("mac.xlsx");
    ASSERT_EQ(
        python("import sys, datetime, openpyxl\n"
               "from openpyxl.utils.datetime import CALENDAR_MAC_1904\n"
               "wb = openpyxl.Workbook(); wb.epoch = CALENDAR_MAC_1904; ws = wb.active\n"
               "ws.append(['姓名', '生日', '到期']); ws.append(['甲', datetime.date(1985, 6, 7),"
               " datetime.datetime(2024, 2, 29, 18, 30)])\n"
               "wb.save(sys.argv[1]); print(0)\n",
               path)
            .toInt(-1),
        0);
    QList<CsvRow> sheet;
    QString error;
    ASSERT_TRUE(readXlsx(path, {}, &sheet, &error)) << error.toStdString();
    ASSERT_EQ(sheet.size(), 2);
    EXPECT_EQ(sheet[1].fields, QStringList({"甲", "1985-06-07", "2024-02-29 18:30:00"}));
}

TEST_F(TableImport, FilesThatCannotBeReadAreRefusedWithAReason) {
    CsvImportPlan plan;
    QString error;
    EXPECT_FALSE(planCsvImport(inFolder("missing.csv"), "contacts", &plan, &error));
    EXPECT_FALSE(planCsvImport(inFolder("x.csv"), "tasks", &plan, &error));
    EXPECT_TRUE(error.contains("只能从CSV文件导入联系人或单位"));
    EXPECT_FALSE(planCsvImport(written("odd.csv", "foo,bar\n1,2\n"), "accounts", &plan, &error));
    EXPECT_TRUE(error.contains("没有可以识别的列名"));
    EXPECT_FALSE(
        planCsvImport(written("text.xlsx", "姓名,手机\n张三,1\n"), "contacts", &plan, &error));
    EXPECT_TRUE(error.contains("不是可以读取的Excel文件")) << error.toStdString();
}

TEST_F(TableImport, ExportsReadBackInOtherProgramsWithTheSameCells) {
    run("INSERT INTO accounts (acc_name, acc_telephone, acc_create_date, acc_check) VALUES "
        "('=1+2公司', '+86 10 1', '2024-03-05 00:00:00', true)");
    run("INSERT INTO accounts (acc_name, acc_check) VALUES ('未选', false)");
    const QString xlsx = inFolder("out.xlsx");
    ASSERT_TRUE(exportTicked("accounts", xlsx).ok);
    // Header -> [value, cell type] of the one row under it.
    const QJsonObject cells =
        python(
            "import sys, json, openpyxl\n"
            "rows = list(openpyxl.load_workbook(sys.argv[1]).active.iter_rows())\n"
            "print(json.dumps({h.value: [str(c.value), c.data_type] for h, c in zip(*rows)}"
            " if len(rows) == 2 else None))\n",
            xlsx)
            .toObject();
    EXPECT_EQ(cells["客户/单位名称"], QJsonArray({"=1+2公司", "s"}))
        << "text that looks like a formula stays text";
    EXPECT_EQ(cells["电话"], QJsonArray({"+86 10 1", "s"}));
    EXPECT_EQ(cells["创建日期"], QJsonArray({"2024-03-05 00:00:00", "d"}))
        << "a date is a date cell";

    const QString csv = inFolder("out.csv");
    ASSERT_TRUE(exportTicked("accounts", csv).ok);
    const QJsonObject row =
        python(
            "import csv, json, sys\n"
            "rows = list(csv.DictReader(open(sys.argv[1], encoding='utf-8-sig')))\n"
            "print(json.dumps(rows[0] if len(rows) == 1 else None))\n",
            csv)
            .toObject();
    EXPECT_EQ(row["客户/单位名称"], "'=1+2公司") << "kept from running";
    EXPECT_EQ(row["电话"], "'+86 10 1");
    EXPECT_EQ(row["创建日期"], "2024-03-05");
}

TEST_F(TableImport, EverySampleFileOfOtherPrograms) {
    const QDir samples(QStringLiteral(TARVEL_SAMPLES "/csv"));
    if (!samples.exists()) GTEST_SKIP() << "no samples folder";
    int files = 0;
    for (const QFileInfo& info : samples.entryInfoList(QDir::Files, QDir::Name)) {
        SCOPED_TRACE(info.fileName().toStdString());
        ++files;
        CsvImportPlan plan;
        QString error;
        if (!planCsvImport(info.filePath(), "contacts", &plan, &error)) {
            EXPECT_FALSE(error.isEmpty());
            continue;
        }
        const int before = rows("contacts");
        CsvImportResult result;
        const Outcome out = importCsv(plan, true, &result);
        ASSERT_TRUE(out.ok) << out.ErrMsg.toStdString();
        EXPECT_GT(rows("contacts"), before);
        if (plan.encodingProblem.isEmpty())
            for (const QString& name :
                 column(QStringLiteral("SELECT con_lastname FROM contacts WHERE con_id > %1")
                            .arg(before))) {
                EXPECT_FALSE(name.trimmed().isEmpty());
                EXPECT_FALSE(name.contains(QChar::ReplacementCharacter)) << name.toStdString();
            }
    }
    EXPECT_GT(files, 0);
    EXPECT_EQ(exchange_test::sqlcipherRows(file.path(), "PRAGMA integrity_check"),
              QStringList({"ok"}));
}
