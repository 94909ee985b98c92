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
using namespace tarvel::testsupport;

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
        QCOMPARE(text(QStringLiteral("SELECT acc_name || acc_tag || acc_postcode FROM accounts "
                                     "INNER JOIN accounts_contacts ON accounts.acc_id = "
                                     "accounts_contacts.acc_id WHERE con_id=1")),
                 QStringLiteral("星辰科技大客户100001"));
        QCOMPARE(dates(1), (QList<QDateTime>{at(2020, 1, 2), at(2024, 6, 3, 9, 15)}));
    }

    void newAccountIsMadeTodayAndLinked() {
        QVERIFY(storeContactAccount(contact_, 1, true,
                                    [](Account& a) { a.setAccName(QStringLiteral("新单位")); }));
        const int id = contact_.Account().ID();
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts")), 2);
        // The new account has nothing of the one shown.
        QCOMPARE(text(QStringLiteral(
                          "SELECT acc_name || '|' || COALESCE(acc_tag, '') FROM accounts_contacts "
                          "INNER JOIN accounts ON accounts.acc_id = "
                          "accounts_contacts.acc_id WHERE con_id=1 AND accounts.acc_id=%1")
                          .arg(id)),
                 QStringLiteral("新单位|"));
        QCOMPARE(dates(id), (QList<QDateTime>{at(2024, 6, 3), at(2024, 6, 3, 9, 15)}));
    }

    void goneAccountIsReported() {
        run(QStringLiteral("DELETE * FROM accounts WHERE acc_id=1"));
        QVERIFY(!storeContactAccount(contact_, 1, false, [](Account&) {}));
        QVERIFY(!contact_.Account().ErrMsg().isEmpty());
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts")), 0);
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts_contacts")), 0);
    }

private:
    // The account's creation and last-contact dates.
    static QList<QDateTime> dates(int account) {
        const QString sql = QStringLiteral("SELECT %1 FROM accounts WHERE acc_id=%2");
        return {firstValue(sql.arg("acc_create_date").arg(account)).toDateTime(),
                firstValue(sql.arg("acc_recent_contact_date").arg(account)).toDateTime()};
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    Contact contact_;
};

QTEST_GUILESS_MAIN(AccountEditTest)
#include "accountedit_test.moc"
