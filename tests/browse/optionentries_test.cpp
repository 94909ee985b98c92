// The option editor's entries without the editor: the list of one kind and
// name in text order, names with quotes, and a read or a write the data file
// refuses, each reported with the engine's reason.
#include "browse/optionentries.h"

#include <QtTest>

#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

QStringList texts(const OptionEntries& entries) {
    QStringList out;
    const RecordsetPtr rs = entries.recordset();
    for (int r = 0; rs && r < rs->RecordCount(); ++r) out << rs->valueAt(r, 1).toString();
    return out;
}

}  // namespace

class OptionEntriesTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        run(
            QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                           "('o''x', 'n''y', 'b'), ('o''x', 'n''y', 'a'), ('o''x', 'other', 'c'), "
                           "('o', 'n''y', 'd')"));
    }
    void cleanup() { file_.reset(); }

    void readsOneListInTextOrder() {
        OptionEntries entries;
        QVERIFY(entries.open(QStringLiteral("o'x"), QStringLiteral("n'y")));
        QCOMPARE(texts(entries), (QStringList{"a", "b"}));
        QVERIFY(entries.hasCurrent());
        QCOMPARE(entries.currentText().toString(), QStringLiteral("a"));
        // A new entry belongs to the same list.
        QVERIFY(entries.store(QStringLiteral("z"), true));
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM options WHERE opt_object='o''x' AND "
                                      "opt_name='n''y' AND opt_description='z'")),
                 1);
    }

    void refusedReadIsReported() {
        run(QStringLiteral("DROP TABLE options"));
        OptionEntries entries;
        QVERIFY(!entries.open(QStringLiteral("con"), QStringLiteral("title")));
        QVERIFY2(entries.ErrMsg().contains(QStringLiteral("options")),
                 qPrintable(entries.ErrMsg()));
        QVERIFY(!entries.hasCurrent());
        QVERIFY(!entries.store(QStringLiteral("x"), true));
        QVERIFY(!entries.removeCurrent());
    }

    void refusedWriteIsReportedAndLeavesTheEntry() {
        run(
            QStringLiteral("CREATE TRIGGER no_rename BEFORE UPDATE ON options BEGIN "
                           "SELECT RAISE(ABORT, 'locked'); END"));
        OptionEntries entries;
        QVERIFY(entries.open(QStringLiteral("o'x"), QStringLiteral("n'y")));
        QVERIFY(!entries.store(QStringLiteral("renamed"), false));
        QVERIFY(entries.ErrMsg().contains(QStringLiteral("locked")));
        QCOMPARE(entries.currentText().toString(), QStringLiteral("a"));
        QCOMPARE(count(QStringLiteral("SELECT count(*) FROM options WHERE opt_description='a'")),
                 1);
    }

private:
    std::unique_ptr<tarvel::testing::TempDataFile> file_;
};

QTEST_GUILESS_MAIN(OptionEntriesTest)
#include "optionentries_test.moc"
