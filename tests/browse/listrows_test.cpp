// The rows of a list condition and the current one, as the list screen and
// the detail page share them: stepping stays within the rows, a delete of the
// first, a middle, the last or the only row leaves a sensible current row,
// a save puts the current row on the saved record, and a new condition or a
// search starts on its first row.
#include "browse/listrows.h"

#include <QSignalSpy>
#include <QtTest>

#include "browse/listsql.h"
#include "custom/fsettings.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;
using namespace tarvel::lists;
using namespace tarvel::testsupport;

namespace {

// Keys 1..4 in name order; contact 2 is linked to an account.
const QString kByName = QStringLiteral(" ORDER BY con_lastname ASC");

QList<qint64> keys(const ListRows& rows) {
    QList<qint64> out;
    for (int r = 0; r < rows.count(); ++r) out << rows.keyAt(r);
    return out;
}

}  // namespace

class ListRowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        run(
            QStringLiteral("INSERT INTO contacts (con_lastname) VALUES ('a甲'), ('b乙'), "
                           "('c丙'), ('d丁')"));
        run(QStringLiteral("INSERT INTO accounts (acc_name) VALUES ('星辰')"));
        run(QStringLiteral("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 2)"));
        loadProgramFieldSettings();
        rows_ = std::make_unique<ListRows>(listKind(listno::Contacts));
        QVERIFY(rows_->show(kByName));
    }
    void cleanup() {
        rows_.reset();
        file_.reset();
    }

    void readsTheConditionsRowsInOrderWithTheFirstCurrent() {
        QCOMPARE(keys(*rows_), (QList<qint64>{1, 2, 3, 4}));
        QCOMPARE(rows_->current(), 0);
        QCOMPARE(rows_->rowOf(3), 2);
        QCOMPARE(rows_->rowOf(99), -1);
        QCOMPARE(rows_->keyAt(4), qint64(0));
        QCOMPARE(rows_->keyAt(-1), qint64(0));
    }

    void steppingStaysWithinTheRows_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("step");
        QTest::addColumn<int>("to");
        QTest::newRow("next") << 1 << "next" << 2;
        QTest::newRow("next at the end") << 3 << "next" << 3;
        QTest::newRow("previous") << 2 << "previous" << 1;
        QTest::newRow("previous at the start") << 0 << "previous" << 0;
        QTest::newRow("previous with none current") << -1 << "previous" << 0;
        QTest::newRow("next with none current") << -1 << "next" << 0;
        QTest::newRow("first") << 2 << "first" << 0;
        QTest::newRow("last") << 1 << "last" << 3;
    }
    void steppingStaysWithinTheRows() {
        QFETCH(int, from);
        QFETCH(QString, step);
        QFETCH(int, to);
        QVERIFY(rows_->setCurrent(from));
        QSignalSpy moved(rows_.get(), &ListRows::currentChanged);
        const QHash<QString, bool (ListRows::*)()> steps = {
            {QStringLiteral("next"), &ListRows::moveNext},
            {QStringLiteral("previous"), &ListRows::movePrevious},
            {QStringLiteral("first"), &ListRows::moveFirst},
            {QStringLiteral("last"), &ListRows::moveLast}};
        QVERIFY(((*rows_).*steps.value(step))());
        QCOMPARE(rows_->current(), to);
        QCOMPARE(rows_->currentKey(), rows_->keyAt(to));
        // The grid hears of a move only when the row changed.
        QCOMPARE(moved.count(), from == to ? 0 : 1);
    }

    void outOfRangeIsRefused() {
        QVERIFY(rows_->setCurrent(2));
        QVERIFY(!rows_->setCurrent(4));
        QVERIFY(!rows_->setCurrent(-2));
        QCOMPARE(rows_->current(), 2);
        QVERIFY(rows_->setCurrent(-1));
        QCOMPARE(rows_->currentKey(), qint64(0));
    }

    void deleteLeavesTheRowThatTookItsPlace_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QList<qint64>>("left");
        QTest::addColumn<int>("current");
        QTest::newRow("first") << 0 << QList<qint64>{2, 3, 4} << 0;
        QTest::newRow("middle, with its account link") << 1 << QList<qint64>{1, 3, 4} << 1;
        QTest::newRow("last") << 3 << QList<qint64>{1, 2, 3} << 2;
    }
    void deleteLeavesTheRowThatTookItsPlace() {
        QFETCH(int, row);
        QFETCH(QList<qint64>, left);
        QFETCH(int, current);
        QVERIFY(rows_->setCurrent(row));
        const qint64 gone = rows_->currentKey();
        QSignalSpy changed(rows_.get(), &ListRows::recordsChanged);
        QVERIFY(rows_->remove(gone));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(keys(*rows_), left);
        QCOMPARE(rows_->current(), current);
        // The record and its links are gone.
        QCOMPARE(count(QStringLiteral("SELECT (SELECT count(*) FROM contacts WHERE con_id=%1) + "
                                      "(SELECT count(*) FROM accounts_contacts WHERE con_id=%1)")
                           .arg(gone)),
                 0);
    }

    void deleteOfTheOnlyRowLeavesNoneCurrent() {
        QVERIFY(rows_->show(QStringLiteral("WHERE con_id = 3")));
        QVERIFY(rows_->remove(3));
        QCOMPARE(rows_->count(), 0);
        QCOMPARE(rows_->current(), -1);
        QCOMPARE(rows_->currentKey(), qint64(0));
        QVERIFY(!rows_->moveNext());
        QCOMPARE(rows_->condition(), QStringLiteral("WHERE con_id = 3"));
    }

    void refusedDeleteIsReportedAndKeepsTheRows() {
        run(
            QStringLiteral("CREATE TRIGGER no_delete BEFORE DELETE ON contacts BEGIN "
                           "SELECT RAISE(ABORT, 'locked'); END"));
        QVERIFY(rows_->setCurrent(2));
        QVERIFY(!rows_->remove(3));
        QVERIFY(rows_->ErrMsg().contains(QStringLiteral("locked")));
        QCOMPARE(keys(*rows_), (QList<qint64>{1, 2, 3, 4}));
        QCOMPARE(rows_->current(), 2);
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM accounts_contacts")), 1);
    }

    void savedRecordBecomesCurrent() {
        run(QStringLiteral("INSERT INTO contacts (con_lastname) VALUES ('b乙2')"));
        QVERIFY(rows_->reread(5));
        QCOMPARE(keys(*rows_), (QList<qint64>{1, 2, 5, 3, 4}));
        QCOMPARE(rows_->current(), 2);
        // A record saved outside the condition leaves the first row current.
        run(QStringLiteral("UPDATE contacts SET con_lastname='zz' WHERE con_id=5"));
        QVERIFY(rows_->show(QStringLiteral("WHERE con_lastname < 'x'") + kByName));
        QVERIFY(rows_->setCurrent(3));
        QVERIFY(rows_->reread(5));
        QCOMPARE(rows_->current(), 0);
    }

    void newConditionStartsOnItsFirstRow() {
        QVERIFY(rows_->setCurrent(3));
        QVERIFY(rows_->show(QStringLiteral("WHERE con_id > 2 ORDER BY con_lastname DESC")));
        QCOMPARE(keys(*rows_), (QList<qint64>{4, 3}));
        QCOMPARE(rows_->current(), 0);
        QVERIFY(rows_->show(QStringLiteral("WHERE con_id > 9")));
        QCOMPARE(rows_->current(), -1);
    }

    void failedReadKeepsRowsAndCondition() {
        QSignalSpy failed(rows_.get(), &ListRows::readFailed);
        QVERIFY(!rows_->show(QStringLiteral("WHERE no_such_column = 1")));
        QCOMPARE(failed.count(), 1);
        QVERIFY(!rows_->ErrMsg().isEmpty());
        QCOMPARE(rows_->condition(), kByName);
        QCOMPARE(keys(*rows_), (QList<qint64>{1, 2, 3, 4}));
    }

    void searchIsAnsweredFromEveryRecordsRows() {
        QVERIFY(rows_->show(QString()));
        QVERIFY(rows_->prepareSearch());
        const QString condition = searchCondition(listno::Contacts, QStringLiteral("丙"));
        QVERIFY(rows_->showSearch(QStringLiteral("丙"), condition));
        QCOMPARE(keys(*rows_), QList<qint64>{3});
        QCOMPARE(rows_->current(), 0);
        QCOMPARE(rows_->condition(), condition);
        // Read again, the search condition keeps its rows.
        QVERIFY(rows_->reread());
        QCOMPARE(keys(*rows_), QList<qint64>{3});
        // Rows of one condition are no ground for a search in memory.
        QVERIFY(rows_->show(kByName));
        QVERIFY(!rows_->showSearch(QStringLiteral("丙"), condition));
        QCOMPARE(rows_->condition(), kByName);
    }

private:
    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::unique_ptr<ListRows> rows_;
};

QTEST_GUILESS_MAIN(ListRowsTest)
#include "listrows_test.moc"
