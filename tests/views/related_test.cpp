// The related panels and the add-related dialog, driven by control names
// over a real data file: which records a grid lists, the tab counts, the
// quick-edit save with its account questions, unlinking, adding several
// contacts to an account, sorting, and the layout's edit flag.
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

#include "records/recordbase.h"
#include "store/clock.h"
#include "store/trace.h"
#include "tests/views/screenfixture.h"
#include "views/related/formaddrelated.h"
#include "views/related/formrelated.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

// The keys a grid lists, sorted (the key column is the grid's first).
QList<int> gridKeys(const QTableView* grid) {
    QList<int> keys;
    for (int row = 0; row < grid->model()->rowCount(); ++row)
        keys << grid->model()->index(row, 0).data().toInt();
    std::sort(keys.begin(), keys.end());
    return keys;
}

int rowOf(const QTableView* grid, int key) {
    for (int row = 0; row < grid->model()->rowCount(); ++row)
        if (grid->model()->index(row, 0).data().toInt() == key) return row;
    return -1;
}

}  // namespace

class RelatedPanelTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 1, 10, 0));
        run("INSERT INTO accounts (acc_id, acc_name, acc_address) VALUES "
            "(10, '华信', '人民路1号'), (11, '东方贸易', NULL), (12, '南方建材', NULL)");
        run("INSERT INTO contacts (con_id, con_lastname, con_description) VALUES "
            "(1, '张三', '老客户'), (2, '李四', NULL), (3, '王五', NULL), (4, '赵六', NULL), "
            "(5, '钱七', NULL)");
        run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1), (11, 2), (12, 3)");
    }

    void cleanup() {
        panel_.reset();
        end();
    }

    // Whichever side of the pair the contact was stored on, and even a pair
    // naming it twice, the grid lists the others only.
    void contactIsNeverItsOwnRelatedContact() {
        run("INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (1, 2, '同事'), "
            "(3, 1, '同学'), (1, 1, NULL), (2, 4, NULL)");
        open(kind::Contact, 1);
        QCOMPARE(gridKeys(grid("dgrid_con")), (QList<int>{2, 3}));
        // Nor is the contact offered when searching its name box.
        search("txt_con_name", QStringLiteral("张"));
        QTest::qWait(400);  // the pause after typing
        QCOMPARE(child<QListWidget>(*panel_, "lst_contacts")->count(), 0);
        search("txt_con_name", QStringLiteral("李"));
        QTRY_COMPARE(child<QListWidget>(*panel_, "lst_contacts")->count(), 1);
        QCOMPARE(child<QListWidget>(*panel_, "lst_contacts")->item(0)->text(),
                 QStringLiteral("李四 - 东方贸易"));
        // A double click opens the related record's page; the task button a new
        // task for this contact.
        QList<std::pair<qint16, int>> opened;
        panel_->setRecordOpener([&](qint16 k, int id) { opened.append({k, id}); });
        panel_->setNewTaskOpener([&](qint16 k, int id) { opened.append({k, id}); });
        QTableView* g = grid("dgrid_con");
        emit g->doubleClicked(g->model()->index(rowOf(g, 3), 1));
        click(*panel_, "cmd_sch_newtask");
        QCOMPARE(opened, (QList<std::pair<qint16, int>>{{kind::Contact, 3}, {kind::Contact, 1}}));
    }

    void tabCaptionsCountTheLinks_data() {
        QTest::addColumn<int>("owner");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("captions");  // page name = caption, each
        const auto row = [](const char* name, qint16 owner, int id, const char* captions) {
            QTest::newRow(name) << int(owner) << id << QString::fromUtf8(captions);
        };
        row("contact", kind::Contact, 1,
            "tab_con=联系人(2) tab_opp=项目机会(1) tab_sch=日程安排(2)");
        row("account", kind::Account, 10,
            "tab_con=联系人(1) tab_sch=日程安排(1) tab_doc=文档附件(1)");
        row("opportunity", kind::Opportunity, 20, "tab_con=联系人(2) tab_acc=客户单位(1)");
        row("document", kind::Document, 30,
            "tab_acc=客户单位(1) tab_opp=项目机会(0) tab_sch=日程安排(1)");
        row("not saved", kind::Contact, 0, "tab_con=联系人 tab_opp=项目机会 tab_doc=文档附件");
    }

    void tabCaptionsCountTheLinks() {
        QFETCH(int, owner);
        QFETCH(int, id);
        QFETCH(QString, captions);
        run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '机房改造')");
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date) VALUES "
            "(40, '拜访', #2024-5-2#), (41, '回访', #2024-5-3#)");
        run("INSERT INTO documents (doc_id, doc_name) VALUES (30, '合同.pdf')");
        run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (1, 2), (3, 1)");
        run("INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 1), (20, 2)");
        run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 40), (1, 41)");
        run("INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (20, 10)");
        run("INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (10, 40)");
        run("INSERT INTO accounts_documents (acc_id, doc_id) VALUES (10, 30)");
        run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (41, 30)");
        open(qint16(owner), id);
        for (const QString& c : captions.split(QLatin1Char(' ')))
            QCOMPARE(tabText(c.section('=', 0, 0).toLatin1().constData()), c.section('=', 1));
        QCOMPARE(child<QWidget>(*panel_, "tab_con")->isEnabled(), id != 0);
        QCOMPARE(child<QWidget>(*panel_, "lbl_hint")->isVisibleTo(panel_.get()), id == 0);
    }

    void unlinkingATaskLeavesTheTask() {
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date) VALUES (40, '拜访', #2024-5-2#)");
        run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 40)");
        int linkSignals = 0;
        open(kind::Contact, 1);
        connect(panel_.get(), &FormRelated::linksChanged, [&] { ++linkSignals; });
        choose("dgrid_sch", 40);
        QCOMPARE(child<QLineEdit>(*panel_, "txt_sch_subject")->text(), QStringLiteral("拜访"));
        // No keeps the link. (The question names a record; for an opportunity, a unit.)
        click(*panel_, "cmd_sch_delete");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您确定删除和此记录的相关性？"));
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_tasks"), 1);
        dialogs_->answers = {true};
        click(*panel_, "cmd_sch_delete");
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_tasks"), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM tasks WHERE tas_id=40"), 1);
        QCOMPARE(grid("dgrid_sch")->model()->rowCount(), 0);
        QCOMPARE(tabText("tab_sch"), QStringLiteral("日程安排(0)"));
        QCOMPARE(linkSignals, 1);
        // Nothing chosen: the user is told, nothing is asked.
        dialogs_->shown.clear();
        click(*panel_, "cmd_sch_delete");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("info"));
    }

    void addingContactsToAnAccountMovesThem() {
        open(kind::Account, 10);
        QCOMPARE(gridKeys(grid("dgrid_con")), (QList<int>{1}));
        click(*panel_, "cmd_con_addrelated");
        auto* dialog = panel_->findChild<FormAddRelated*>(QStringLiteral("form_addrelated"));
        QVERIFY(dialog);
        click(*dialog, "cmd_add");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您没有选择任何要添加的记录"));
        auto* found = child<QListWidget>(*dialog, "lst_found");
        // 张三 is this account's already: not offered again.
        QCOMPARE(found->findItems(QStringLiteral("张三"), Qt::MatchStartsWith).size(), 0);
        QCOMPARE(found->count(), 4);
        for (int i = 0; i < found->count(); ++i)
            if (found->item(i)->text().startsWith(QStringLiteral("李四")) ||
                found->item(i)->text().startsWith(QStringLiteral("王五")))
                found->item(i)->setSelected(true);
        // Yes to adding, No to the change of account: nothing moves.
        dialogs_->answers = {true, false};
        click(*dialog, "cmd_add");
        QCOMPARE(dialogs_->lastText(),
                 QStringLiteral("这个选择将改变联系人的单位信息为当前单位信息,您确定吗?"));
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts WHERE acc_id=10"), 1);
        dialogs_->answers = {true, true};
        click(*dialog, "cmd_add");
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts WHERE acc_id=10"), 3);
        // Each contact left its previous account: one account per contact.
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts"), 3);
        QCOMPARE(gridKeys(grid("dgrid_con")), (QList<int>{1, 2, 3}));
        QCOMPARE(tabText("tab_con"), QStringLiteral("联系人(3)"));
    }

    // Each question is told by its kind: the rename question is the only
    // three-way one, the dropping question a yes/no. Each answer is carried out.
    void accountQuestionsOfTheContactSave_data() {
        QTest::addColumn<QString>("account");    // typed into txt_con_account
        QTest::addColumn<QList<bool>>("yesNo");  // answers to the dropping question
        QTest::addColumn<int>("threeWay");       // 0 Yes, 1 No, 2 Cancel, -1 not asked
        QTest::addColumn<QString>("savedName");  // con_lastname afterwards
        QTest::addColumn<QString>("accounts");   // contact 1's account name; number of accounts
        const auto row = [](const char* name, const char* account, QList<bool> yesNo, int threeWay,
                            const char* savedName, const char* accounts) {
            QTest::newRow(name) << QString::fromUtf8(account) << yesNo << threeWay
                                << QString::fromUtf8(savedName) << QString::fromUtf8(accounts);
        };
        row("renamed: yes renames", "华信集团", {}, 0, "张三丰", "华信集团;3");
        row("renamed: no makes a second account", "华信集团", {}, 1, "张三丰", "华信集团;4");
        row("renamed: cancel saves nothing", "华信集团", {}, 2, "张三", "华信;3");
        row("no name but an address: no keeps it unsaved", "", {false}, -1, "张三", "华信;3");
        row("no name but an address: yes saves the contact only", "", {true}, -1, "张三丰",
            "华信;3");
    }

    void accountQuestionsOfTheContactSave() {
        QFETCH(QString, account);
        QFETCH(QList<bool>, yesNo);
        QFETCH(int, threeWay);
        QFETCH(QString, savedName);
        QFETCH(QString, accounts);
        run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (5, 1)");
        run("UPDATE contacts SET con_recent_contact_date=#2020-1-1# WHERE con_id=5");
        open(kind::Contact, 5);
        choose("dgrid_con", 1);
        QCOMPARE(child<QLineEdit>(*panel_, "txt_con_account")->text(), QStringLiteral("华信"));
        type("txt_con_name", QStringLiteral("张三丰"));
        type("txt_con_account", account);
        type("txt_con_accaddr", QStringLiteral("人民路1号"));
        dialogs_->answers = yesNo;
        const Messages::Answer answers[] = {Messages::Answer::Yes, Messages::Answer::No,
                                            Messages::Answer::Cancel};
        if (threeWay >= 0) dialogs_->threeWay = {answers[threeWay]};
        click(*panel_, "cmd_con_save");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind,
                 threeWay >= 0 ? QStringLiteral("askYesNoCancel") : QStringLiteral("ask"));
        QCOMPARE(firstValue("SELECT con_lastname FROM contacts WHERE con_id=1").toString(),
                 savedName);
        QCOMPARE(
            firstValue("SELECT acc_name FROM que_contacts_accounts WHERE con_id=1").toString() +
                ";" + QString::number(count("SELECT COUNT(*) FROM accounts")),
            accounts);
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=1"), 1);
        // A save stamps the panel's own contact too.
        QCOMPARE(firstValue("SELECT con_recent_contact_date FROM contacts WHERE con_id=5")
                         .toDateTime() == Clock::now(),
                 savedName != QStringLiteral("张三"));
    }

    // An existing account picked from the name search: the contact moves to it
    // without the rename question, and no account is made.
    void anAccountChosenFromTheSearchTakesTheContact() {
        run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (5, 2)");
        open(kind::Contact, 5);
        choose("dgrid_con", 2);
        QLineEdit* box = search("txt_con_account", QStringLiteral("南方"));
        auto* found = child<QListWidget>(*panel_, "lst_accounts");
        QTRY_COMPARE(found->count(), 1);
        emit found->itemClicked(found->item(0));
        QCOMPARE(box->text(), QStringLiteral("南方建材"));
        click(*panel_, "cmd_con_save");
        QCOMPARE(dialogs_->shown.size(), 0);
        QCOMPARE(count("SELECT acc_id FROM accounts_contacts WHERE con_id=2"), 12);
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=2"), 1);
        QCOMPARE(count("SELECT COUNT(*) FROM accounts"), 3);
    }

    void aNewContactSavedInTheSectionIsLinked() {
        int linkSignals = 0;
        open(kind::Contact, 5);
        connect(panel_.get(), &FormRelated::linksChanged, [&] { ++linkSignals; });
        click(*panel_, "cmd_con_new");
        type("txt_con_name", QStringLiteral("孙八"));
        type("txt_con_part", QStringLiteral("表兄's"));
        trace::clear();
        trace::setEnabled(true);
        click(*panel_, "cmd_con_save");
        trace::setEnabled(false);
        // The panel's contact is stamped first. (Other writes of the save stamp
        // it as well, so only the statement tells this one apart.)
        QCOMPARE(trace::statements().value(0),
                 QStringLiteral("UPDATE contacts SET con_recent_contact_date=now WHERE con_id= 5"));
        QCOMPARE(dialogs_->shown.size(), 0);
        const int added = count("SELECT con_id FROM contacts WHERE con_lastname='孙八'");
        QCOMPARE(firstValue("SELECT con_relation FROM contacts_contacts WHERE con_id1=" +
                            QString::number(added) + " AND con_id2=5")
                     .toString(),
                 QStringLiteral("表兄's"));
        QCOMPARE(gridKeys(grid("dgrid_con")), (QList<int>{added}));
        QCOMPARE(tabText("tab_con"), QStringLiteral("联系人(1)"));
        QCOMPARE(linkSignals, 1);
        // The section keeps showing the new contact: a second save changes it.
        type("txt_con_tel", QStringLiteral("010-1"));
        click(*panel_, "cmd_con_save");
        QCOMPARE(count("SELECT COUNT(*) FROM contacts"), 6);
        QCOMPARE(count("SELECT COUNT(*) FROM accounts_contacts"), 3);  // no account was typed
        QCOMPARE(
            firstValue("SELECT con_telephone FROM contacts WHERE con_lastname='孙八'").toString(),
            QStringLiteral("010-1"));
    }

    void memoColumnsCannotBeSorted() {
        run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (5, 1), (5, 2), (3, 5)");
        open(kind::Contact, 5);
        QTableView* g = grid("dgrid_con");
        auto* model = g->model();
        int memo = -1, name = -1;
        for (int c = 0; c < model->columnCount(); ++c) {
            const QString caption = model->headerData(c, Qt::Horizontal).toString();
            if (caption == QStringLiteral("简介")) memo = c;
            if (caption == QStringLiteral("联系人名称")) name = c;
        }
        QVERIFY(memo > 0 && name > 0);
        emit g->horizontalHeader()->sectionClicked(memo);
        QCOMPARE(dialogs_->lastText(), QStringLiteral("描述字段内容较多不能排序！"));
        auto names = [&] {
            QStringList out;
            for (int row = 0; row < model->rowCount(); ++row)
                out << model->index(row, name).data().toString();
            return out;
        };
        // Clicking a column again turns its order round.
        emit g->horizontalHeader()->sectionClicked(name);
        const QStringList ascending = names();
        QCOMPARE(ascending.size(), 3);
        emit g->horizontalHeader()->sectionClicked(name);
        QStringList reversed = names();
        std::reverse(reversed.begin(), reversed.end());
        QCOMPARE(reversed, ascending);
        QCOMPARE(dialogs_->shown.size(), 1);
        // The order outlives a save in the section.
        const QStringList descending = names();
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {},
                          g->visualRect(model->index(0, name)).center());
        type("txt_con_tel", QStringLiteral("010-9"));
        click(*panel_, "cmd_con_save");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(names(), descending);
        QCOMPARE(g->currentIndex().row(), 0);
    }

    // A file chosen through the dialog becomes a new linked document on save;
    // the shown document opens through the shell from its folder and name.
    void documentsAreChosenSavedAndOpened() {
        QTemporaryDir folder;
        for (const char* name : {"合同.pdf", "报价单.xlsx"}) {
            QFile f(folder.filePath(QString::fromUtf8(name)));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        const QString native = QDir::toNativeSeparators(folder.path());
        files_->names = {folder.filePath(QStringLiteral("报价单.xlsx"))};
        open(kind::Contact, 1);
        click(*panel_, "cmd_doc_add");
        QCOMPARE(child<QLineEdit>(*panel_, "txt_doc_name")->text(), QStringLiteral("报价单.xlsx"));
        QCOMPARE(child<QLineEdit>(*panel_, "txt_doc_path")->text(), native);
        click(*panel_, "cmd_doc_save");
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_documents INNER JOIN documents ON "
                       "contacts_documents.doc_id = documents.doc_id WHERE con_id=1 AND "
                       "doc_name='报价单.xlsx'"),
                 1);
        QCOMPARE(tabText("tab_doc"), QStringLiteral("文档附件(1)"));
        QCOMPARE(dialogs_->shown.size(), 0);

        click(*panel_, "img_doc_open");
        QTest::mouseDClick(child<QLineEdit>(*panel_, "txt_doc_path"), Qt::LeftButton);
        const QUrl expected = QUrl::fromLocalFile(folder.filePath(QStringLiteral("报价单.xlsx")));
        // A section without a name is not saved.
        click(*panel_, "cmd_doc_new");
        click(*panel_, "cmd_doc_save");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("请先填写名称再保存。"));
        QCOMPARE(count("SELECT COUNT(*) FROM documents"), 1);
        choose("dgrid_doc", count("SELECT doc_id FROM documents"));
        dialogs_->shown.clear();
        QCOMPARE(opener_->opened, (QList<QUrl>{expected, expected}));
        // A file that is gone is reported, not opened.
        type("txt_doc_name", QStringLiteral("不存在.pdf"));
        click(*panel_, "img_doc_open");
        QCOMPARE(opener_->opened.size(), 2);
        QVERIFY(dialogs_->lastText().contains(QStringLiteral("不存在.pdf")));
    }

    // A data file that refuses writes: the save and the unlink each tell the
    // user, and nothing is half-written.
    void refusedWritesAreReported() {
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date) VALUES (40, '拜访', #2024-5-2#)");
        run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 40)");
        open(kind::Contact, 1);
        {
            ReadOnlyDataFile readOnly;
            type("txt_opp_name", QStringLiteral("机房改造"));
            click(*panel_, "cmd_opp_save");
            QCOMPARE(dialogs_->shown.size(), 1);
            QVERIFY(dialogs_->lastText().startsWith(QStringLiteral("项目机会没有保存成功")));
            choose("dgrid_sch", 40);
            dialogs_->answers = {true};
            click(*panel_, "cmd_sch_delete");
            QCOMPARE(dialogs_->shown.size(), 3);
            QVERIFY(dialogs_->shown[2].text.startsWith(QStringLiteral("删除相关性没有保存成功")));
        }
        QCOMPARE(count("SELECT COUNT(*) FROM opportunities"), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM contacts_tasks"), 1);
        QCOMPARE(firstValue("SELECT con_recent_contact_date FROM contacts WHERE con_id=1").isNull(),
                 true);
    }

    void layoutWithoutEditRightDisablesTheSection() {
        run("UPDATE interface SET object_edittype=0, object_description='商机' WHERE object_type=2 "
            "AND object_name='con_opp'");
        run("UPDATE interface SET object_visible=0 WHERE object_type=2 AND object_name='con_doc'");
        open(kind::Contact, 1);
        for (const char* name :
             {"cmd_opp_save", "cmd_opp_delete", "cmd_opp_new", "cmd_opp_addrelated"})
            QVERIFY2(!child<QPushButton>(*panel_, name)->isEnabled(), name);
        for (const char* name : {"cmd_con_save", "cmd_sch_delete", "cmd_sch_newtask"})
            QVERIFY2(child<QPushButton>(*panel_, name)->isEnabled(), name);
        auto* tabs = child<QTabWidget>(*panel_, "tab_related");
        QVERIFY(!tabs->isTabVisible(tabs->indexOf(child<QWidget>(*panel_, "tab_doc"))));
        QCOMPARE(tabText("tab_opp"), QStringLiteral("商机(0)"));
        // The settings window gives the right back: the panel follows on rebuild.
        run("UPDATE interface SET object_edittype=-1 WHERE object_type=2 AND "
            "object_name='con_opp'");
        panel_->rebuildLayout();
        QVERIFY(child<QPushButton>(*panel_, "cmd_opp_save")->isEnabled());
    }

private:
    FormRelated& open(qint16 owner, int id) {
        panel_ = std::make_unique<FormRelated>(owner);
        panel_->setDialogs(dialogs_);
        panel_->setFileDialogs(files_);
        panel_->setShellOpener(opener_);
        panel_->showRecord(id);
        return *panel_;
    }
    QTableView* grid(const char* name) { return child<QTableView>(*panel_, name); }
    void choose(const char* gridName, int key) {
        QTableView* g = grid(gridName);
        const int row = rowOf(g, key);
        QVERIFY(row >= 0);
        g->setCurrentIndex(g->model()->index(row, 1));
    }

    void type(const char* box, const QString& text) {
        child<QLineEdit>(*panel_, box)->setText(text);
    }
    // Typed as by the user, so the box's search runs after its pause.
    QLineEdit* search(const char* box, const QString& text) {
        auto* edit = child<QLineEdit>(*panel_, box);
        edit->setText(text);
        emit edit->textEdited(text);
        return edit;
    }

    QString tabText(const char* page) {
        auto* tabs = child<QTabWidget>(*panel_, "tab_related");
        return tabs->tabText(tabs->indexOf(child<QWidget>(*panel_, page)));
    }

    std::unique_ptr<FormRelated> panel_;
};

QTEST_MAIN(RelatedPanelTest)
#include "related_test.moc"
