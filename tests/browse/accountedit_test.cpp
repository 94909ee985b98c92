// The account stored with a contact from its page, without the page: the
// shown account keeps the columns the page does not show, a new one is made
// today and linked, and an account that is gone is reported.
#include "browse/accountedit.h"

#include <QtTest>

#include "records/contact.h"
#include "store/clock.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;
using tarvel::testsupport::at;
using tarvel::testsupport::count;
using tarvel::testsupport::firstValue;
using tarvel::testsupport::run;
using tarvel::testsupport::text;

class AccountEditTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        Clock::setFixed(at(2024, 6, 3, 9, 15));
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        run(
            QStringLiteral("INSERT INTO accounts (acc_name, acc_tag, acc_postcode, "
                           "acc_create_date) VALUES ('星辰', '大客户', '100001', #2020-1-2#)"));
        run(QStringLiteral("INSERT INTO contacts (con_lastname) VALUES ('王伟')"));
        contact_.setID(1);
        QVERIFY(contact_.GetById());
    }
    void cleanup() {
        file_.reset();
        Clock::reset();
    }

    void shownAccountIsRewrittenKeepingWhatThePageDoesNotShow() {
        QVERIFY(storeContactAccount(contact_, 1, false,
                                    [](Account& a) { a.setAccName(QStringLiteral("星辰科技")); }));
        QCOMPARE(text(QStringLiteral("SELECT acc_name FROM accounts WHERE acc_id=1")),
                 QStringLiteral("星辰科技"));
        QCOMPARE(text(QStringLiteral("SELECT acc_tag FROM accounts WHERE acc_id=1")),
                 QStringLiteral("大客户"));
        QCOMPARE(text(QStringLiteral("SELECT acc_postcode FROM accounts WHERE acc_id=1")),
                 QStringLiteral("100001"));
        QCOMPARE(firstValue(QStringLiteral("SELECT acc_create_date FROM accounts WHERE acc_id=1"))
                     .toDateTime(),
                 at(2020, 1, 2));
        QCOMPARE(firstValue(
                     QStringLiteral("SELECT acc_recent_contact_date FROM accounts WHERE acc_id=1"))
                     .toDateTime(),
                 at(2024, 6, 3, 9, 15));
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts_contacts WHERE acc_id=1 AND "
                                      "con_id=1")),
                 1);
    }

    void newAccountIsMadeTodayAndLinked() {
        QVERIFY(storeContactAccount(contact_, 1, true,
                                    [](Account& a) { a.setAccName(QStringLiteral("新单位")); }));
        const int id = contact_.Account().ID();
        QVERIFY(id > 1);
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts")), 2);
        QCOMPARE(firstValue(
                     QStringLiteral("SELECT acc_create_date FROM accounts WHERE acc_id=%1").arg(id))
                     .toDateTime(),
                 at(2024, 6, 3));
        // The new account has nothing of the one shown.
        QVERIFY(
            text(QStringLiteral("SELECT acc_tag FROM accounts WHERE acc_id=%1").arg(id)).isEmpty());
        QCOMPARE(text(QStringLiteral("SELECT acc_name FROM accounts_contacts INNER JOIN accounts "
                                     "ON accounts.acc_id=accounts_contacts.acc_id WHERE con_id=1")),
                 QStringLiteral("新单位"));
    }

    void goneAccountIsReported() {
        run(QStringLiteral("DELETE * FROM accounts WHERE acc_id=1"));
        QVERIFY(!storeContactAccount(contact_, 1, false, [](Account&) {}));
        QVERIFY(!contact_.Account().ErrMsg().isEmpty());
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts")), 0);
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts_contacts")), 0);
    }

private:
    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    Contact contact_;
};

QTEST_GUILESS_MAIN(AccountEditTest)
#include "accountedit_test.moc"
