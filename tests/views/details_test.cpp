// The four detail pages: the name search with a quote, the contact's account
// questions, stepping through the list with unsaved edits, a new record
// saved twice, the no-birthday date, amounts that are no number, the mailto
// text, a refused write, and delete through the list's routine.
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryFile>
#include <QtTest>

#include "browse/listkind.h"
#include "browse/unsaved.h"
#include "custom/fsettings.h"
#include "store/clock.h"
#include "tests/views/quietmain.h"
#include "tests/views/screenfixture.h"
#include "views/details/formaccdetail.h"
#include "views/details/formcondetail.h"
#include "views/details/formdocdetail.h"
#include "views/details/formoppdetail.h"
#include "views/lists/formlist.h"
#include "views/related/formrelated.h"

using namespace tarvel;
using namespace tarvel::testsupport;
using Answer = Messages::Answer;

class DetailsTest : public ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 20, 10, 30));
        run("INSERT INTO accounts (acc_name, acc_address) VALUES ('星辰科技', '长安街1号')");
        run("INSERT INTO contacts (con_lastname, con_email) VALUES ('王伟', 'wang@xc.cn'), "
            "('O''Brien', NULL), ('李娜', NULL)");
        run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
        loadProgramFieldSettings();
    }

    void cleanup() {
        main_.reset();
        page_.reset();
        list_.reset();
        end();
    }

    void nameSearchTakesAQuote() {
        FormConDetail& page = contactPage(0);
        typeText(child<QLineEdit>(page, "txt_name"), QStringLiteral("O'B"));
        auto* found = child<QListWidget>(page, "lst_contacts");
        QTRY_COMPARE(found->count(), 1);
        // Without an account there is nothing to put after "  @  ".
        QCOMPARE(found->item(0)->text(), QStringLiteral("O'Brien"));
        QVERIFY(dialogs_->shown.isEmpty());
        // The typed text is an edit, so leaving it is asked about.
        dialogs_->answers = {true};
        emit found->itemClicked(found->item(0));
        QCOMPARE(page.recordId(), 2);
    }

    void emptyAccountNameAnsweredNoKeepsThePageUnsaved() {
        FormConDetail& page = contactPage(2);
        child<QLineEdit>(page, "txt_address1")->setText(QStringLiteral("人民路8号"));
        child<QLineEdit>(page, "txt_nickname")->setText(QStringLiteral("小布"));
        dialogs_->answers = {false};
        click(page, "lbl_save");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("ask"));
        QVERIFY(page.isModified());
        QVERIFY(isUnsaved(UnsavedModule::Contact));
        QCOMPARE(text("SELECT con_nickname FROM contacts WHERE con_id=2"), QString());
        // Yes saves the contact without any account.
        dialogs_->answers = {true};
        click(page, "lbl_save");
        QVERIFY(!page.isModified());
        QCOMPARE(text("SELECT con_nickname FROM contacts WHERE con_id=2"), QStringLiteral("小布"));
        QCOMPARE(count("SELECT count(*) FROM accounts"), 1);
    }

    // The rename question is told by its kind (the only three-way one); each
    // answer is carried out by the page.
    void renamingALinkedAccount_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<int>("accounts");
        QTest::addColumn<int>("linkedTo");
        QTest::addColumn<QString>("firstName");
        QTest::newRow("yes renames") << Answer::Yes << 1 << 1 << QStringLiteral("星辰集团");
        QTest::newRow("no creates") << Answer::No << 2 << 2 << QStringLiteral("星辰科技");
        QTest::newRow("cancel stops") << Answer::Cancel << 1 << 1 << QStringLiteral("星辰科技");
    }

    void renamingALinkedAccount() {
        QFETCH(Answer, answer);
        FormConDetail& page = contactPage(1);
        child<QLineEdit>(page, "txt_account")->setText(QStringLiteral("星辰集团"));
        dialogs_->threeWay = {answer};
        click(page, "lbl_save");
        QCOMPARE(dialogs_->shown.size(), 1);
        QCOMPARE(dialogs_->shown[0].kind, QStringLiteral("askYesNoCancel"));
        QFETCH(int, accounts);
        QFETCH(int, linkedTo);
        QFETCH(QString, firstName);
        QCOMPARE(count("SELECT count(*) FROM accounts"), accounts);
        QCOMPARE(count("SELECT acc_id FROM accounts_contacts WHERE con_id=1"), linkedTo);
        QCOMPARE(text("SELECT acc_name FROM accounts WHERE acc_id=1"), firstName);
        QCOMPARE(page.isModified(), answer == Answer::Cancel);
    }

    void nextWithUnsavedEditsAnsweredNoKeepsThem() {
        FormConDetail& page = contactPage(0, true);
        const int first = page.recordId();
        QCOMPARE(page.positionText(), QStringLiteral("No. 1/3"));
        auto* nickname = child<QLineEdit>(page, "txt_nickname");
        nickname->setText(QStringLiteral("阿伟"));
        dialogs_->answers = {false};
        click(page, "lbl_next");
        QCOMPARE(page.recordId(), first);
        QCOMPARE(nickname->text(), QStringLiteral("阿伟"));
        dialogs_->answers = {true};
        click(page, "lbl_next");
        QCOMPARE(page.recordId(), int(list_->currentId()));
        QCOMPARE(page.positionText(), QStringLiteral("No. 2/3"));
        click(page, "lbl_last");
        QCOMPARE(page.positionText(), QStringLiteral("No. 3/3"));
    }

    void noBirthdayIsStoredAs1900_data() {
        QTest::addColumn<QDate>("picked");
        QTest::newRow("none") << QDate(1900, 1, 1);
        QTest::newRow("a day") << QDate(1985, 3, 2);
    }

    void noBirthdayIsStoredAs1900() {
        QFETCH(QDate, picked);
        FormConDetail& page = contactPage(3);
        auto* birthday = child<QDateEdit>(page, "DT_Birthday");
        QCOMPARE(birthday->text(), QStringLiteral("无"));
        birthday->setDate(picked);
        QVERIFY(page.save());
        QCOMPARE(firstValue("SELECT con_birthday FROM contacts WHERE con_id=3").toDateTime(),
                 at(picked.year(), picked.month(), picked.day()));
        page.reload();
        QCOMPARE(birthday->date(), picked);
        QCOMPARE(birthday->text() == QStringLiteral("无"), picked.year() == 1900);
    }

    void amountThatIsNoNumberIsRefused() {
        run("INSERT INTO opportunities (opp_subject, opp_estimate_sale) VALUES "
            "('服务器采购', 5000)");
        FormOppDetail page;
        page.setDialogs(dialogs_);
        page.fill({page::OpportunityDetail, QString(), 1});
        QCOMPARE(child<QLineEdit>(page, "txt_esale")->text(), QStringLiteral("5000"));
        child<QLineEdit>(page, "txt_esale")->setText(QStringLiteral("12元"));
        QVERIFY(!page.save());
        QCOMPARE(dialogs_->lastText(), QStringLiteral("预计金额必须是数字，请检查。"));
        QVERIFY(page.isModified());
        QCOMPARE(count("SELECT opp_estimate_sale FROM opportunities WHERE opp_id=1"), 5000);
        child<QLineEdit>(page, "txt_esale")->setText(QStringLiteral("12,500.5"));
        QVERIFY(page.save());
        QCOMPARE(
            firstValue("SELECT opp_estimate_sale FROM opportunities WHERE opp_id=1").toDouble(),
            12500.5);
    }

    void refusedWriteIsToldAndKeepsTheEdit() {
        FormConDetail& page = contactPage(3);
        child<QLineEdit>(page, "txt_nickname")->setText(QStringLiteral("娜娜"));
        {
            ReadOnlyDataFile readOnly;
            QVERIFY(!page.save());
        }
        QVERIFY(dialogs_->lastText().startsWith(QStringLiteral("联系人没有保存。\n")));
        QVERIFY(dialogs_->lastText().contains(QStringLiteral("出错，原因可能是")));
        QVERIFY(page.isModified());
    }

    void deleteGoesThroughTheListAndShowsTheNext() {
        // What a delete takes with the record is recyclebin_test's.
        FormConDetail& page = contactPage(0, true);
        const QString gone = QString::number(page.recordId());
        dialogs_->answers = {true};
        click(page, "lbl_delete");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("您确定要删除这个记录吗？"));
        QCOMPARE(count("SELECT count(*) FROM contacts WHERE con_id=" + gone), 0);
        QCOMPARE(list_->rowCount(), 2);
        QVERIFY(page.recordId() != 0);
        QCOMPARE(page.recordId(), int(list_->currentId()));
    }

    void shellActions_data() {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("opened");
        const auto row = [](const char* name, const char* box, const char* typed,
                            const char* button, const char* opened) {
            QTest::newRow(name) << box << QString::fromUtf8(typed) << button << opened;
        };
        row("first mail", "txt_email1", "wang@xc.cn", "Img_email1_send",
            "mailto:wang@xc.cn%20?subject=%20&body=");
        row("second mail", "txt_email2", "li@x.cn", "Img_email2_send",
            "mailto:li@x.cn%20?subject=%20&body=");
        row("web without scheme", "txt_personal_web", "www.a.cn", "Img_personal_web_vist",
            "http://www.a.cn");
        row("web with scheme", "txt_account_web", "https://b.cn/x", "img_account_web_visit",
            "https://b.cn/x");
        row("name search", "txt_name", "王伟", "Img_Search_Contact",
            "https://www.baidu.com/s?wd=%E7%8E%8B%E4%BC%9F");
        row("address on the map", "txt_address1", "长安街 1号", "Img_Search_Baddress",
            "https://map.baidu.com/search/"
            "?querytype=s&wd=%E9%95%BF%E5%AE%89%E8%A1%97%201%E5%8F%B7");
    }

    void shellActions() {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, button);
        QFETCH(QString, opened);
        FormConDetail& page = contactPage(1);
        child<QLineEdit>(page, qPrintable(box))->setText(typed);
        click(page, qPrintable(button));
        QCOMPARE(opener_->opened.size(), 1);
        QCOMPARE(QString::fromLatin1(opener_->opened[0].toEncoded()), opened);
    }

    void chosenAccountIsTakenAndLinked() {
        FormConDetail& page = contactPage(2);
        typeText(child<QLineEdit>(page, "txt_account"), QStringLiteral("星辰"));
        auto* found = child<QListWidget>(page, "lst_account");
        QTRY_COMPARE(found->count(), 1);
        found->setCurrentRow(0);
        click(page, "Img_account_down");
        QCOMPARE(child<QLineEdit>(page, "txt_address1")->text(), QStringLiteral("长安街1号"));
        QVERIFY(page.save());
        QCOMPARE(count("SELECT acc_id FROM accounts_contacts WHERE con_id=2"), 1);
        QCOMPARE(count("SELECT count(*) FROM accounts"), 1);
    }

    void tickedTagsAreJoinedWithCommas() {
        FormConDetail& page = contactPage(3);
        auto* tags = child<QListWidget>(page, "Lst_tag");
        for (const QString& tag : {QStringLiteral("VIP"), QStringLiteral("客户")}) {
            const auto items = tags->findItems(tag, Qt::MatchExactly);
            QCOMPARE(items.size(), 1);
            items[0]->setCheckState(Qt::Checked);
        }
        QCOMPARE(child<QLineEdit>(page, "txt_tag")->text(), QStringLiteral("VIP,客户"));
        QVERIFY(page.isModified());
        QVERIFY(page.save());
        QCOMPARE(text("SELECT con_tag FROM contacts WHERE con_id=3"), QStringLiteral("VIP,客户"));
        QCOMPARE(tags->findItems(QStringLiteral("客户"), Qt::MatchExactly)[0]->checkState(),
                 Qt::Checked);
    }

    void documentOpensAnExistingFileOnly() {
        QTemporaryFile file(QDir::tempPath() + QStringLiteral("/合同XXXXXX.txt"));
        QVERIFY(file.open());
        FormDocDetail page;
        page.setDialogs(dialogs_);
        page.setShellOpener(opener_);
        page.fill({page::DocumentDetail, QStringLiteral("  WHERE doc_id = -1"), 0});
        child<QLineEdit>(page, "txt_path")->setText(file.fileName() + QStringLiteral(".gone"));
        click(page, "img_open");
        QVERIFY(opener_->opened.isEmpty());
        QVERIFY(dialogs_->lastText().contains(QStringLiteral("不存在")));
        child<QLineEdit>(page, "txt_path")->setText(file.fileName());
        click(page, "img_open");
        QCOMPARE(opener_->opened.size(), 1);
        QCOMPARE(opener_->opened[0].toLocalFile(), file.fileName());
    }

    void listRelatedButtonOpensTheRecordsPageAndItsPanelFollows() {
        main_ = quietMain(dialogs_);
        QVERIFY(main_->OpenPage(page::ContactList));
        auto* list = qobject_cast<lists::FormList*>(main_->currentPage());
        QVERIFY(list);
        // Without a chosen row the user is told what to do.
        child<QTableView>(*list, "dg_listall")->setCurrentIndex(QModelIndex());
        click(*list, "lbl_conrelated");
        QCOMPARE(dialogs_->lastText(), QStringLiteral("请先在列表中选择一个联系人。"));
        QCOMPARE(main_->currentPage(), list);
        list->setCurrentRow(1);
        const int id = int(list->currentId());
        click(*list, "lbl_conrelated");
        auto* page = qobject_cast<FormConDetail*>(main_->currentPage());
        QVERIFY(page);
        QCOMPARE(page->recordId(), id);
        QCOMPARE(page->positionText(), QStringLiteral("No. 2/3"));
        QTRY_VERIFY(page->relatedArea()->height() > 0);
        QTRY_VERIFY(page->relatedArea()->hasFocus());

        // The page's related panel follows the record shown, and a related
        // record opens its own page, whose panel leads back.
        run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (3, 1)");
        QVERIFY(main_->OpenPage(page::ContactDetail, QStringLiteral("WHERE con_id=1"), 1));
        auto related = [this] {
            return main_->currentPage()->findChild<FormRelated*>(
                QStringLiteral("form_con_related"));
        };
        QVERIFY(related());
        auto* tabs = child<QTabWidget>(*related(), "tab_related");
        QVERIFY(tabs->tabText(0).endsWith(QStringLiteral("(1)")));
        auto* grid = child<QTableView>(*related(), "dgrid_con");
        QCOMPARE(grid->model()->rowCount(), 1);
        emit grid->doubleClicked(grid->model()->index(0, 1));
        page = qobject_cast<FormConDetail*>(main_->currentPage());
        QVERIFY(page);
        QCOMPARE(page->recordId(), 3);
        grid = child<QTableView>(*related(), "dgrid_con");
        QCOMPARE(grid->model()->rowCount(), 1);
        QCOMPARE(grid->model()->index(0, 1).data().toString(), QStringLiteral("王伟"));
    }

    void otherPagesStoreANewRecord_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("nameBox");
        QTest::addColumn<QString>("check");
        const auto row = [](const char* name, qint16 kind, const char* box, const char* check) {
            QTest::newRow(name) << int(kind) << box << QString::fromUtf8(check);
        };
        row("account", page::AccountDetail, "txt_subject",
            "SELECT count(*) FROM accounts WHERE acc_name='新单位' AND acc_create_date IS NOT NULL "
            "AND acc_tag='重点客户'");
        row("opportunity", page::OpportunityDetail, "txt_opportunity",
            "SELECT count(*) FROM opportunities WHERE opp_subject='新单位' AND "
            "opp_succeed_probability=80 AND opp_create_date IS NOT NULL");
        row("document", page::DocumentDetail, "txt_name",
            "SELECT count(*) FROM documents WHERE doc_name='新单位' AND doc_tag='重点客户' AND "
            "doc_create_date IS NOT NULL");
    }

    void otherPagesStoreANewRecord() {
        QFETCH(int, kind);
        QFETCH(QString, nameBox);
        QFETCH(QString, check);
        std::unique_ptr<FormDetail> page;
        if (kind == page::AccountDetail) page = std::make_unique<FormAccDetail>();
        if (kind == page::OpportunityDetail) page = std::make_unique<FormOppDetail>();
        if (kind == page::DocumentDetail) page = std::make_unique<FormDocDetail>();
        page->setDialogs(dialogs_);
        page->fill({qint16(kind), QStringLiteral("  WHERE xxx_id = -1"), 0});
        QCOMPARE(page->recordId(), 0);
        child<QLineEdit>(*page, qPrintable(nameBox))->setText(QStringLiteral("新单位"));
        if (auto* tag = page->findChild<QComboBox*>(QStringLiteral("cbo_tag")))
            tag->setCurrentText(QStringLiteral("重点客户"));
        if (auto* tag = page->findChild<QLineEdit*>(QStringLiteral("txt_tag")))
            tag->setText(QStringLiteral("重点客户"));
        if (auto* chance = page->findChild<QComboBox*>(QStringLiteral("cbo_probability")))
            chance->setCurrentText(QStringLiteral("80%"));
        QVERIFY(page->isModified());
        QVERIFY(page->save());
        QVERIFY(page->recordId() > 0);
        QVERIFY(!page->isModified());
        QCOMPARE(count(check), 1);
    }

    void tabOrderFollowsTheSections() {
        FormConDetail& page = contactPage(1);
        QStringList order;
        for (QWidget* w = child<QWidget>(page, "txt_name"); order.size() < 200;
             w = w->nextInFocusChain()) {
            if (!w->objectName().isEmpty() && w->focusPolicy() & Qt::TabFocus)
                order << w->objectName();
            if (w->objectName() == QLatin1String("lbl_delete")) break;
        }
        const QStringList expected = {"txt_name",    "txt_nickname", "cbo_title", "txt_tag",
                                      "chk_private", "txt_account",  "txt_zip1",  "txt_tel1",
                                      "txt_email1",  "txt_zip2",     "rtxt_memo", "lbl_save",
                                      "lbl_delete"};
        int at = -1;
        for (const QString& name : expected) {
            const int next = order.indexOf(name);
            QVERIFY2(next > at, qPrintable(name + QStringLiteral(" out of order: ") +
                                           order.join(QLatin1Char(' '))));
            at = next;
        }
    }

    // A new record from the list's button is an ordinary record after its
    // first save: the list's current row, where back returns, saved in place.
    void newRecordIsOrdinaryAfterItsFirstSave() {
        main_ = quietMain(dialogs_);
        QVERIFY(main_->OpenPage(page::ContactList));
        auto* list = qobject_cast<lists::FormList*>(main_->currentPage());
        click(*list, "cmd_add");
        auto* page = qobject_cast<FormConDetail*>(main_->currentPage());
        QCOMPARE(page->recordId(), 0);
        child<QLineEdit>(*page, "txt_name")->setText(QStringLiteral("赵敏"));
        QVERIFY(page->save());
        const int id = page->recordId();
        QVERIFY(id > 3);
        QCOMPARE(firstValue(
                     QStringLiteral("SELECT con_create_date FROM contacts WHERE con_id=%1").arg(id))
                     .toDateTime(),
                 at(2024, 5, 20));
        QCOMPARE(list->currentId(), qint64(id));
        QCOMPARE(page->positionText(), QStringLiteral("No. %1/4").arg(list->currentRow() + 1));
        QCOMPARE(main_->history().c_RecordID(), id);
        QCOMPARE(main_->history().c_StrCondition(), QStringLiteral("WHERE con_id=%1").arg(id));
        child<QLineEdit>(*page, "txt_jobtitle")->setText(QStringLiteral("经理"));
        QVERIFY(page->save());
        QCOMPARE(page->recordId(), id);
        QCOMPARE(count("SELECT count(*) FROM contacts"), 4);
    }

private:
    // The contact page on record `id`; with `withList`, following the contact
    // list and showing its first row instead.
    FormConDetail& contactPage(int id, bool withList = false) {
        page_ = std::make_unique<FormConDetail>();
        page_->setDialogs(dialogs_);
        page_->setShellOpener(opener_);
        if (withList) {
            list_ = std::make_unique<lists::FormList>(lists::listKind(lists::listno::Contacts));
            list_->setDialogs(dialogs_);
            list_->fill({page::ContactList, QString(), 0});
            list_->setCurrentRow(0);
            page_->setRows([this] { return &list_->rows(); });
            id = int(list_->currentId());
        }
        page_->fill({page::ContactDetail, QString(), id});
        return *page_;
    }

    std::unique_ptr<lists::FormList> list_;
    std::unique_ptr<FormConDetail> page_;
    std::unique_ptr<TarvelMain> main_;
};

QTEST_MAIN(DetailsTest)
#include "details_test.moc"
