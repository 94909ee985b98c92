// The record list screens over a data file of generated records: category
// conditions, search as you type, ticks through the stored tables, the sort
// and its memo refusal, saved widths, the bulk operations (refusal, delete,
// CSV and HTML read back by python3) and the grid model's consistency.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QUrlQuery>
#include <QtTest>
#include <algorithm>

#include "browse/conditiontext.h"
#include "browse/listsql.h"
#include "browse/mailing.h"
#include "browse/tickmodel.h"
#include "browse/unsaved.h"
#include "custom/fsettings.h"
#include "store/clock.h"
#include "tests/views/listids.h"
#include "tests/views/screenfixture.h"
#include "tools/screenshots/samplerecords.h"
#include "views/common/filedialogs.h"
#include "views/lists/addresslabels.h"
#include "views/lists/categorypanel.h"
#include "views/lists/formemail.h"
#include "views/lists/formlist.h"

using namespace tarvel;
using namespace tarvel::lists;
using namespace tarvel::testsupport;

namespace {

// Runs python3 on `script` with the file as argument; its standard output.
QString python(const QString& script, const QString& file) {
    QProcess p;
    // Debian's interpreter, where python3-openpyxl is installed.
    p.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, file});
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        qFatal("python3 failed: %s", p.readAllStandardError().constData());
    return QString::fromUtf8(p.readAllStandardOutput());
}

}  // namespace

class ListTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 20, 10));
        samples::fillRecords({40, 300, 60, 30, 20});
        loadProgramFieldSettings();
        opened_.clear();
        history_.clear();
    }

    void cleanup() {
        form_.reset();
        end();
    }

    // The oracle is the panel's own count, read by a query of its own: the grid
    // must show as many rows as the entry clicked says, and the rows its
    // condition selects.
    void categoryConditions_data() {
        QTest::addColumn<int>("list");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("label");
        const auto row = [](const char* name, int list, const char* group, const char* label) {
            QTest::newRow(name) << list << QString::fromUtf8(group) << QString::fromUtf8(label);
        };
        const int con = listno::Contacts, acc = listno::Accounts;
        row("all", con, "all", "");
        row("has opportunities", con, "opportunity", "有");
        row("has none", con, "opportunity", "无");
        row("importance", con, "important", "重要");
        row("account type", con, "acctype", "客户");
        row("relation", con, "relation", "朋友");
        row("industry", con, "industry", "教育/培训");
        row("province, quote doubled", con, "province", "O'Neil省");
        row("tag as substring", con, "tag", "VIP");
        row("no account", con, "account", "");
        row("birthday", con, "birthday", "");
        row("account importance", acc, "important", "一般");
        row("account without opportunity", acc, "opportunity", "无");
        row("opportunity probability", listno::Opportunities, "probability", "30");
        row("document tag", listno::Documents, "tag", "展会");
    }

    void categoryConditions() {
        QFETCH(int, list);
        QFETCH(QString, group);
        QFETCH(QString, label);
        run("UPDATE contacts SET con_province='O''Neil省' WHERE con_id=5");
        run("UPDATE contacts SET con_birthday=#1980-5-20# WHERE con_id<=3");
        run("INSERT INTO options (opt_object, opt_name, opt_description) "
            "VALUES ('opp','probability','30')");
        FormList& form = open(list);
        QTreeWidgetItem* item = form.panel()->entry(group, label);
        QVERIFY2(item, qPrintable(group + QLatin1Char(':') + label));
        form.panel()->itemClicked(item, 0);
        const QSet<qint64> expected = engineIds(form.kind(), form.condition());
        QCOMPARE(shownIds(form), expected);
        QCOMPARE(history_.value(history_.size() - 1), form.condition());
        if (item->parent())
            QVERIFY2(item->text(0).contains(QStringLiteral("（%1）").arg(expected.size())),
                     qPrintable(item->text(0)));
        else if (group == QStringLiteral("birthday"))
            QVERIFY(expected.contains(QSet<qint64>{1, 2, 3}) && expected.size() < 300);
        else
            QCOMPARE(form.condition(), QString());
    }

    // Which rows a search shows is checked at length in search_test; here, that
    // typing alone brings them after the pause, and what the screen adds.
    void typingSearchesAfterThePause() {
        // A wildcard typed is a character looked for: "50%" is not "50" and more.
        run("UPDATE contacts SET con_nickname='打折50%' WHERE con_id=11");
        run("UPDATE contacts SET con_nickname='5000' WHERE con_id=12");
        FormList& form = open(listno::Contacts);
        auto* box = child<QLineEdit>(form, "txt_search");
        typeText(box, QStringLiteral("50%"));
        QTRY_COMPARE(form.condition(), searchCondition(listno::Contacts, QStringLiteral("50%")));
        QCOMPARE(shownIds(form), QSet<qint64>{11});
        QCOMPARE(history_.last(), form.condition());
        box->clear();
        form.searchNow();
        QCOMPARE(form.gridModel()->rowCount(), 300);
        // A longer text searches the rows shown; taking letters back widens them again.
        for (const char* text : {"er_1", "er_19", "er_1"}) {
            box->setText(QLatin1String(text));
            form.searchNow();
        }
        QCOMPARE(shownIds(form),
                 engineIds(form.kind(), searchCondition(listno::Contacts, QStringLiteral("er_1"))));
        // Rows read again are searched again.
        run("UPDATE contacts SET con_email3='new_ab_x@q.cn' WHERE con_id=100");
        form.refresh();
        box->setText(QStringLiteral("Ab_x"));
        form.searchNow();
        QCOMPARE(shownIds(form), QSet<qint64>{100});
        // A search from a category covers every record, not only the category's.
        open(listno::Contacts, QStringLiteral(" WHERE con_province='北京'"));
        child<QLineEdit>(*form_, "txt_search")->setText(QStringLiteral("user1"));
        form_->searchNow();
        QCOMPARE(
            shownIds(*form_),
            engineIds(form_->kind(), searchCondition(listno::Contacts, QStringLiteral("user1"))));
    }

    void ticksGoThroughTheTables() {
        FormList& form = open(listno::Contacts, QStringLiteral(" WHERE con_province='北京'"));
        const auto ticked = [] {
            return idsOf("SELECT con_id FROM contacts WHERE con_check=true");
        };
        const QSet<qint64> beijing = shownIds(form);
        QVERIFY(beijing.size() > 5);
        const qint64 first = form.gridModel()->idAt(0);
        tick({first});
        QCOMPARE(ticked(), QSet<qint64>{first});
        child<QCheckBox>(form, "chk_select")->click();
        QCOMPARE(ticked(), beijing);
        child<QCheckBox>(form, "chk_select")->click();
        QCOMPARE(ticked(), QSet<qint64>());
        tick({first});
        click(form, "cmd_invert");
        QCOMPARE(ticked(), beijing - QSet<qint64>{first});
        for (int r = 0; r < form.gridModel()->rowCount(); ++r)
            QCOMPARE(form.gridModel()->isTicked(r), form.gridModel()->idAt(r) != first);
        // Account columns take part in the condition of the contacts list too.
        run(clearChecksSql(listno::Contacts));
        open(listno::Contacts, QStringLiteral(" WHERE acc_name IS NULL"));
        child<QCheckBox>(*form_, "chk_select")->click();
        QCOMPARE(ticked(), shownIds(*form_));
    }

    void sortAlternatesRefusesTheMemoAndIsKept() {
        open(listno::Contacts);
        const int name = column("姓名");
        const QStringList recentFirst = cells(name);
        clickHeader(name);
        const QStringList ascending = cells(name);
        QVERIFY(std::is_sorted(ascending.cbegin(), ascending.cend()));
        clickHeader(name);
        const QStringList descending = cells(name);
        QVERIFY(std::is_sorted(descending.crbegin(), descending.crend()));
        QVERIFY(descending != ascending);
        const QString sorted = form_->condition();
        clickHeader(column("描述"));
        QCOMPARE(dialogs_->lastText(), QStringLiteral("描述字段内容较多不能排序！"));
        QCOMPARE(form_->condition(), sorted);

        // The list made anew, as at the next start, opens sorted the same way
        // while its condition stays the one it was given.
        open(listno::Contacts);
        QCOMPARE(form_->condition(), QString());
        QCOMPARE(cells(name), descending);
        // A category keeps the sort too; the next click on the column turns the
        // kept order round, keeping the category, and the description says both.
        form_->panel()->itemClicked(
            form_->panel()->entry(QStringLiteral("province"), QStringLiteral("上海")), 0);
        const QStringList inShanghai = cells(name);
        QVERIFY(std::is_sorted(inShanghai.crbegin(), inShanghai.crend()));
        clickHeader(name);
        QCOMPARE(shownIds(*form_), idsOf("SELECT con_id FROM contacts WHERE con_province='上海'"));
        const QStringList turned = cells(name);
        QVERIFY(std::is_sorted(turned.cbegin(), turned.cend()) && turned != inShanghai);
        QCOMPARE(child<QLabel>(*form_, "lbl_condition")->text(),
                 QStringLiteral("地区：上海，按“姓名”升序"));

        // Each list keeps its own; a kept column the list no longer has is ignored.
        QCOMPARE(firstValue("SELECT count(*) FROM setting WHERE set_type='list_sort'").toInt(), 1);
        run("UPDATE setting SET set_value='ORDER BY con_gone DESC' WHERE "
            "set_type='list_sort' AND set_key='form_con_all'");
        open(listno::Contacts);
        QCOMPARE(cells(name), recentFirst);
    }

    void savedWidthIsUsedByTheNextList() {
        open(listno::Accounts);
        const int phone = column("电话");
        child<QTableView>(*form_, "dg_listall")->horizontalHeader()->resizeSection(phone, 233);
        QTRY_COMPARE(
            firstValue("SELECT fie_width FROM fields WHERE fie_type=2 AND fie_name='acc_telephone'")
                .toInt(),
            233);
        FormList& next = open(listno::Accounts);
        QCOMPARE(child<QTableView>(next, "dg_listall")->horizontalHeader()->sectionSize(phone),
                 233);
    }

    void everyBulkOperationRefusesWithoutTicks_data() {
        QTest::addColumn<int>("list");
        for (int list = 0; list <= listno::Documents; ++list)
            QTest::addRow("%s", qPrintable(listKind(list).formName)) << list;
    }

    void everyBulkOperationRefusesWithoutTicks() {
        QFETCH(int, list);
        FormList& form = open(list);
        auto* box = child<QComboBox>(form, "cbo_operation");
        for (int i = 1; i < box->count(); ++i) {
            if (box->itemText(i) == QStringLiteral("-----")) continue;
            dialogs_->shown.clear();
            box->activated(i);
            QCOMPARE(dialogs_->shown.size(), 1);
            QCOMPARE(dialogs_->lastText(), noTicksMessage());
            QCOMPARE(box->currentIndex(), 0);
        }
        QVERIFY(opened_.isEmpty());
        QVERIFY(files_->captions.isEmpty());
    }

    // Which rows and links a delete takes is checked in recyclebin_test; here,
    // that the question guards it and the grid and panel follow.
    void deleteAsksAndTheListFollows() {
        FormList& form = open(listno::Contacts);
        tick({3, 6, 9});
        dialogs_->answers = {false};
        form.runOperation(QStringLiteral("删除选定记录"));
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您确定要删除选定的记录吗?"));
        QCOMPARE(firstValue("SELECT COUNT(*) FROM contacts").toInt(), 300);
        dialogs_->answers = {true};
        form.runOperation(QStringLiteral("删除选定记录"));
        QCOMPARE(idsOf("SELECT con_id FROM contacts WHERE con_id IN (3,6,9)"), QSet<qint64>());
        QCOMPARE(form.gridModel()->rowCount(), 297);
        // The panel's counts follow.
        QTreeWidgetItem* none = form.panel()->entry(QStringLiteral("account"), QString());
        QVERIFY(none->text(0).contains(QStringLiteral("（%1）").arg(
            idsOf("SELECT con_id FROM que_contacts_accounts WHERE acc_name IS NULL").size())));
    }

    void csvReadsBackWithQuotesCommasBreaksAndChinese() {
        run("UPDATE contacts SET con_lastname='say \"hi\", 王' , "
            "con_description='第一行\r\n第二行' WHERE con_id=1");
        const QString path = exportAll(listno::Contacts, QStringLiteral(" WHERE con_id<=3"),
                                       "导出到Excel/CSV表", "out.csv");
        QFile raw(path);
        QVERIFY(raw.open(QIODevice::ReadOnly));
        QVERIFY(raw.read(3) == QByteArray("\xEF\xBB\xBF"));
        // Row count, first caption, every row as wide as the header, the quoted
        // row found once, its memo with the line break, its date's shape.
        const QString out =
            python(QStringLiteral(
                       "import csv,sys,re\n"
                       "rows=list(csv.reader(open(sys.argv[1],encoding='utf-8-sig',newline='')))\n"
                       "h=rows[0];r=[x for x in rows[1:] if x[0]=='say \"hi\", 王']\n"
                       "d=r[0][h.index('最近联系日期')]\n"
                       "print(len(rows),h[0],{len(x) for x in rows}=={len(h)},len(r),"
                       "repr(r[0][h.index('描述')]),"
                       "bool(re.fullmatch(r'\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d',d)))"),
                   path);
        QCOMPARE(out.trimmed(), QStringLiteral("4 姓名 True 1 '第一行\\r\\n第二行' True"));
    }

    void xlsxReadsBackWithTheSameCells() {
        run("UPDATE contacts SET con_lastname='=HYPERLINK(\"x\")', "
            "con_recent_contact_date=#2024-2-29 13:45# WHERE con_id=1");
        const QString path = exportAll(listno::Contacts, QStringLiteral(" WHERE con_id<=3"),
                                       "导出到Excel/CSV表", "out.xlsx");
        const QString out =
            python(QStringLiteral("import sys, json, openpyxl\n"
                                  "ws = openpyxl.load_workbook(sys.argv[1]).active\n"
                                  "rows = [[c.value for c in r] for r in ws.iter_rows()]\n"
                                  "h = rows[0]; n = h.index('姓名'); d = h.index('最近联系日期')\n"
                                  "r = [x for x in rows[1:] if x[n] and x[n].startswith('=')][0]\n"
                                  "c = ws.cell(row=rows.index(r) + 1, column=n + 1)\n"
                                  "print(len(rows), r[n], c.data_type, r[d].isoformat())"),
                   path);
        QCOMPARE(out.trimmed(), QStringLiteral("4 =HYPERLINK(\"x\") s 2024-02-29T13:45:00"));
    }

    void expenseTableAddsTheSums() {
        run("DELETE * FROM opportunities_contacts");
        run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (2, 1), (2, 2)");
        run("UPDATE tasks SET tas_outlay=150 WHERE tas_id=1");
        run("UPDATE tasks SET tas_outlay=50 WHERE tas_id=2");
        run("UPDATE opportunities SET opp_estimate_sale=1000, opp_sale=2, "
            "opp_succeed_probability=40 WHERE opp_id=1");
        run("INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (1, 2)");
        const QString path = exportAll(listno::Contacts, QStringLiteral(" WHERE con_id=2"),
                                       "导出预计收益/费用统计表", "sums.csv");
        const QString out = python(
            QStringLiteral("import csv,sys\n"
                           "rows=list(csv.reader(open(sys.argv[1],encoding='utf-8-sig',newline=''),"
                           "skipinitialspace=True))\n"
                           "print(rows[0][-3].strip());print('|'.join(rows[1][-3:]))"),
            path);
        QCOMPARE(out, QStringLiteral("总费用(日程活动)\n200|2000|800\n"));
    }

    void htmlHoldsEveryCaptionedField() {
        run("UPDATE accounts SET acc_name='<A&B> 公司' WHERE acc_id=4");
        const QString path = exportAll(listno::Accounts, QStringLiteral(" WHERE acc_id=4"),
                                       "导出到HTML/Word文件", "out.html");
        const QString out = python(
            QStringLiteral(
                "import sys\nfrom html.parser import HTMLParser\n"
                "class P(HTMLParser):\n"
                "  def __init__(s):\n    super().__init__();s.cells=[]\n"
                "  def handle_data(s,d):\n    s.cells.append(d)\n"
                "p=P();p.feed(open(sys.argv[1],encoding='utf-8').read());print('|'.join(p.cells))"),
            path);
        QVERIFY2(out.contains(QStringLiteral("客户/单位名称|<A&B> 公司")), qPrintable(out));
        // Hidden list fields are captioned fields too.
        QVERIFY(out.contains(QStringLiteral("邮编|")));
    }

    void relatedOpensTheOpportunitiesOfTheTicked() {
        FormList& form = open(listno::Contacts);
        tick({4});
        form.runOperation(QStringLiteral("查看相关"));
        QCOMPARE(opened_.size(), 1);
        QVERIFY(opened_[0].startsWith(QStringLiteral("3:")));  // the opportunity list
        FormList& opportunities = open(listno::Opportunities, opened_[0].mid(2));
        QCOMPARE(shownIds(opportunities),
                 idsOf("SELECT opp_id FROM opportunities_contacts WHERE con_id=4"));
        QCOMPARE(child<QLabel>(opportunities, "lbl_condition")->text(),
                 QStringLiteral("与勾选的联系人相关的项目机会"));
    }

    // Shapes every page reads alike are checked with the common description.
    void conditionInWords_data() {
        QTest::addColumn<int>("list");
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* name, int list, const QString& condition,
                            const char* words) {
            QTest::newRow(name) << list << condition << QString::fromUtf8(words);
        };
        // The shapes alike for every list are conditiontext_test's; here, what the list adds.
        const int con = listno::Contacts, acc = listno::Accounts;
        row("none", con, "", "全部联系人");
        row("search", con, searchCondition(con, QStringLiteral("王'五")), "搜索：王'五");
        row("account search", acc, searchCondition(acc, QStringLiteral("科技")), "搜索：科技");
        row("empty importance", con, " WHERE (con_important='' OR con_important IS NULL)",
            "重要性：（未填）");
        row("sorted", con, " ORDER BY con_lastname DESC", "全部联系人，按“con_lastname”降序");
        row("unknown", con, "WHERE con_sendmail=1 AND con_id>4", "按条件筛选的联系人");
    }

    void conditionInWords() {
        QFETCH(int, list);
        QFETCH(QString, condition);
        QFETCH(QString, words);
        QCOMPARE(describeCondition(condition, &listKind(list)), words);
    }

    void mailtoLinksStayShortAndCarryEveryAddress() {
        QStringList addresses;
        for (int i = 0; i < 300; ++i) addresses << QStringLiteral("person.%1@example.com").arg(i);
        const QString body = QStringLiteral("您好，\n这是通知 & 说明");
        const QList<QUrl> links = mailtoLinks(addresses, QStringLiteral("会议 #3"), body, 2000);
        QVERIFY(links.size() > 1);
        QStringList carried;
        for (const QUrl& link : links) {
            QVERIFY(link.toString(QUrl::FullyEncoded).size() <= 2000);
            QCOMPARE(link.scheme(), QStringLiteral("mailto"));
            const QUrlQuery query(link);
            QCOMPARE(query.queryItemValue(QStringLiteral("subject"), QUrl::FullyDecoded),
                     QStringLiteral("会议 #3"));
            QCOMPARE(query.queryItemValue(QStringLiteral("body"), QUrl::FullyDecoded),
                     QStringLiteral("您好，\r\n这是通知 & 说明"));
            carried << query.queryItemValue(QStringLiteral("bcc"), QUrl::FullyDecoded)
                           .split(QLatin1Char(','));
        }
        QCOMPARE(carried, addresses);
    }

    void labelsOfTheTickedContactsFillSheets() {
        run("UPDATE contacts SET con_lastname='刘一', con_department_title='采购部', "
            "con_address_family='家里路1号', con_postcode_family='100001' WHERE con_id=7");
        run("UPDATE contacts SET con_lastname='刘二' WHERE con_id=8");
        FormList& form = open(listno::Contacts);
        QList<AddressLabel> shown;
        form.setLabelPreview([&shown](const QList<AddressLabel>& labels) { shown = labels; });
        tick({7, 8});
        form.runOperation(QStringLiteral("打印标签"));
        QCOMPARE(dialogs_->shown.size(), 1);  // what the labels are for
        QCOMPARE(shown.size(), 2);
        // Contact 7 has no account (every seventh is left without), so its home address is used.
        QCOMPARE(labelLines(shown[0]),
                 (QStringList{QStringLiteral("100001"), QStringLiteral("家里路1号"),
                              QStringLiteral("刘一（采购部） 收")}));
        const QStringList second = labelLines(shown[1]);
        QVERIFY(second.last().startsWith(QStringLiteral("刘二（")));
        QCOMPARE(second.size(), 3);  // address, account, name: no postcode was generated
        // A sheet holds 14; 15 labels take two pages.
        QPdfWriter pdf(dir_.filePath(QStringLiteral("labels.pdf")));
        paintLabels(&pdf, QList<AddressLabel>(15, shown[0]));
        QFile file(dir_.filePath(QStringLiteral("labels.pdf")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count("/Type /Page\n"), 2);
    }

    void emailWindowSendsToTheTickedAndStampsThem() {
        run("UPDATE contacts SET con_email=NULL, con_email2='second@example.com' "
            "WHERE con_id=2");
        run("UPDATE contacts SET con_email=NULL WHERE con_id=3");
        run("UPDATE setting SET set_value='张三 销售部' WHERE set_type='mail' AND "
            "set_key='signature'");
        FormList& list = open(listno::Contacts);
        tick({1, 2, 3});
        list.runOperation(QStringLiteral("群发邮件"));
        QCOMPARE(opened_, QStringList{QStringLiteral("43: WHERE con_check=true")});
        FormEmail email;
        email.setDialogs(dialogs_);
        email.setShellOpener(opener_);
        email.fill(PageRequest{});
        QCOMPARE(child<QListWidget>(email, "lst_to")->count(), 2);
        QCOMPARE(child<QListWidget>(email, "lst_noaddress")->count(), 1);
        QVERIFY(child<QPlainTextEdit>(email, "txt_body")
                    ->toPlainText()
                    .endsWith(QStringLiteral("张三 销售部")));
        child<QLineEdit>(email, "txt_subject")->setText(QStringLiteral("新品发布"));
        click(email, "cmd_send");
        QCOMPARE(opener_->opened.size(), 1);
        QStringList sentTo = QUrlQuery(opener_->opened[0])
                                 .queryItemValue(QStringLiteral("bcc"), QUrl::FullyDecoded)
                                 .split(QLatin1Char(','));
        sentTo.sort();
        QCOMPARE(sentTo, (QStringList{"second@example.com", "user1@example.com"}));
        QCOMPARE(idsOf("SELECT con_id FROM contacts WHERE con_sendmail=1"), (QSet<qint64>{1, 2}));
    }

    void gridModelIsConsistent() {
        FormList& form = open(listno::Contacts);
        QAbstractItemModelTester tester(form.gridModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        tick({1, 2});
        form.panel()->itemClicked(form.panel()->entry(QStringLiteral("tag"), QStringLiteral("VIP")),
                                  0);
        child<QCheckBox>(form, "chk_select")->click();
        form.refresh();
        QVERIFY(form.gridModel()->rowCount() > 0);
        QCOMPARE(form.gridModel()->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(form.gridModel()->index(0, 0).data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("已选"));  // what a screen reader says of the tick
    }

    void unsavedEditIsAskedAboutBeforeLeaving() {
        FormList& form = open(listno::Contacts);
        QTreeWidgetItem* shanghai =
            form.panel()->entry(QStringLiteral("province"), QStringLiteral("上海"));
        setUnsaved(UnsavedModule::Account, true);
        dialogs_->answers = {false, false};
        form.panel()->itemClicked(shanghai, 0);
        click(form, "cmd_add");
        QCOMPARE(dialogs_->shown.size(), 2);
        QCOMPARE(form.condition(), QString());
        QVERIFY(opened_.isEmpty());
        QVERIFY(isUnsaved(UnsavedModule::Account));
        dialogs_->answers = {true};
        form.panel()->itemClicked(shanghai, 0);
        QCOMPARE(form.condition(), QStringLiteral(" WHERE con_province='上海'"));
        QVERIFY(!anyUnsaved());
        click(form, "cmd_add");
        QCOMPARE(dialogs_->shown.size(), 3);
        QCOMPARE(opened_, QStringList{QStringLiteral("23:  WHERE con_id = -1")});
    }

private:
    FormList& open(int number, const QString& condition = QString()) {
        form_ = std::make_unique<FormList>(listKind(number));
        form_->setDialogs(dialogs_);
        form_->setFileDialogs(files_);
        form_->setPageSwitch([this](qint16 page, const QString& condition, qint32) {
            opened_ << QStringLiteral("%1:%2").arg(page).arg(condition);
        });
        form_->setHistoryUpdate([this](const QString& c) { history_ << c; });
        form_->resize(1100, 700);
        form_->fill({listKind(number).page, condition, 0});
        QCoreApplication::processEvents();
        return *form_;
    }

    void tick(const QList<qint64>& ids) {
        for (int r = 0; r < form_->gridModel()->rowCount(); ++r)
            if (ids.contains(form_->gridModel()->idAt(r)))
                QVERIFY(form_->gridModel()->setData(form_->gridModel()->index(r, 0), Qt::Checked,
                                                    Qt::CheckStateRole));
    }

    // The grid column captioned so; the test stops when there is none.
    int column(const char* caption) const {
        for (int c = 1; c < form_->gridModel()->columnCount(); ++c)
            if (form_->gridModel()->headerData(c, Qt::Horizontal).toString() ==
                QString::fromUtf8(caption))
                return c;
        qFatal("no column %s", caption);
        return -1;
    }
    QStringList cells(int column) const {
        QStringList shown;
        for (int r = 0; r < form_->gridModel()->rowCount(); ++r)
            shown << form_->gridModel()->index(r, column).data().toString();
        return shown;
    }

    void clickHeader(int column) {
        child<QTableView>(*form_, "dg_listall")->horizontalHeader()->sectionClicked(column);
    }

    // Every row of the list under `condition` ticked and `operation` run into
    // the file `name`; the file's path.
    QString exportAll(int list, const QString& condition, const char* operation, const char* name) {
        open(list, condition);
        child<QCheckBox>(*form_, "chk_select")->click();
        const QString path = dir_.filePath(QLatin1String(name));
        files_->names = {path};
        form_->runOperation(QString::fromUtf8(operation));
        return path;
    }

    std::unique_ptr<FormList> form_;
    QStringList opened_;
    QStringList history_;
    QTemporaryDir dir_;
};

QTEST_MAIN(ListTest)
#include "list_test.moc"
