// Search answered from the rows a list has read: for random texts with quotes,
// wildcards, mixed case and Chinese, the rows the search index selects must be
// exactly those the engine selects with the search condition, whether it
// searches every row or only those a shorter text selected.
#include <QRandomGenerator>
#include <QtTest>

#include "browse/listsql.h"
#include "browse/liststore.h"
#include "browse/searchindex.h"
#include "custom/fsettings.h"
#include "store/datacontrol.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"
#include "tools/screenshots/samplerecords.h"

using namespace tarvel;
using namespace tarvel::lists;
using tarvel::testsupport::run;

namespace {

// Texts a search should tell apart: wildcards the engine reads as such, a
// quote, ASCII in both cases, letters whose case the engine does not fold.
const QStringList kOddTexts = {QStringLiteral("Ab_C%d'E"),  QStringLiteral("ÄBC ärger"),
                               QStringLiteral("50% off_x"), QStringLiteral("O'Neil\\n"),
                               QStringLiteral("张三Zhang"), QStringLiteral("𠀀古字")};
const QString kAlphabet = QStringLiteral("aAbBcCdDeE_%'\\Ää王李伟三张 𠀀1@.");

QString randomText(QRandomGenerator& random, const QStringList& samples) {
    if (random.bounded(3) == 0) {  // free letters, often matching nothing
        QString text;
        const int n = 1 + int(random.bounded(3));
        for (int i = 0; i < n; ++i) text += kAlphabet[int(random.bounded(kAlphabet.size()))];
        if (text.back().isHighSurrogate()) text.chop(1);
        return text.isEmpty() ? QStringLiteral("%") : text;
    }
    QString sample = samples[int(random.bounded(quint32(samples.size())))];
    const int from = int(random.bounded(quint32(sample.size())));
    QString text = sample.mid(from, 1 + int(random.bounded(4)));
    if (text.front().isLowSurrogate()) text.remove(0, 1);
    if (!text.isEmpty() && text.back().isHighSurrogate()) text.chop(1);
    if (random.bounded(2)) text = random.bounded(2) ? text.toUpper() : text.toLower();
    return text.isEmpty() ? QStringLiteral("_") : text;
}

}  // namespace

class SearchTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        samples::fillRecords({60, 200, 30, 0, 0});
        for (int i = 0; i < kOddTexts.size(); ++i) {
            const QString t = tarveldatabase::SafeSql(kOddTexts[i]);
            run(QStringLiteral(
                    "UPDATE contacts SET con_nickname='%1', con_im3='%2' WHERE con_id=%3")
                    .arg(t, t.toLower())
                    .arg(3 + i * 7));
        }
        run(QStringLiteral("UPDATE accounts SET acc_website='www.Odd_Site.cn' WHERE acc_id=2"));
        run(QStringLiteral("UPDATE opportunities SET opp_description='Ab_C%d''E' WHERE opp_id=4"));
        // Neighbouring search columns: "yz" stands in neither.
        run(
            QStringLiteral("UPDATE contacts SET con_nickname='xy', con_department_title='zw' "
                           "WHERE con_id=50"));
        loadProgramFieldSettings();
    }
    void cleanup() {
        index_.clear();
        grid_.Recordset.reset();
        file_.reset();
    }
    void randomTextsSelectWhatTheEngineSelects_data() {
        QTest::addColumn<int>("number");
        QTest::newRow("contacts") << int(listno::Contacts);
        QTest::newRow("accounts") << int(listno::Accounts);
        QTest::newRow("opportunities") << int(listno::Opportunities);
    }
    void randomTextsSelectWhatTheEngineSelects() {
        QFETCH(int, number);
        QVERIFY(openList(number));
        QStringList samples = kOddTexts;
        samples << QStringLiteral("user12@example.com") << QStringLiteral("021-52000")
                << QStringLiteral("销售部/主管") << QStringLiteral("科技有限公司")
                << QStringLiteral("www.Odd_Site.cn") << QStringLiteral("项目1")
                << QStringLiteral("人民路13号") << QStringLiteral("010-61000010");
        QRandomGenerator random(29);
        int toldApart = 0;  // texts that selected some rows but not all
        for (int i = 0; i < 150; ++i) {
            const QString text = randomText(random, samples);
            const std::vector<int> expected = engineRows(text);
            QVERIFY2(index_.select(text, nullptr) == expected, why(text).constData());
            toldApart += !expected.empty() && int(expected.size()) < grid_.Recordset->RecordCount();
        }
        QVERIFY(toldApart > 20);
    }
    void typingOnNarrowsTheSameWayTheEngineDoes() {
        QVERIFY(openList(listno::Contacts));
        for (const QString& word :
             kOddTexts + QStringList{QStringLiteral("User1"), QStringLiteral("%_%"),
                                     QStringLiteral("yzw"), QStringLiteral("xyz"),
                                     // '_' stands for one character of three or four bytes
                                     QStringLiteral("张_Zh"), QStringLiteral("𠀀_字")}) {
            std::vector<int> shown;
            bool first = true;
            for (int n = 1; n <= word.size(); ++n) {
                if (word[n - 1].isHighSurrogate()) continue;
                const QString text = word.left(n);
                shown = first ? index_.select(text, nullptr) : index_.select(text, &shown);
                first = false;
                QVERIFY2(shown == engineRows(text), why(text).constData());
            }
        }
    }
    // Grid rows the search columns cannot be matched to one by one leave the
    // index empty, so that the engine answers the search instead.
    void rowsNotMatchedOneByOneAreRefused_data() {
        QTest::addColumn<QString>("grid");
        QTest::newRow("one key twice") << QStringLiteral("SELECT 1 AS con_id FROM contacts");
        QTest::newRow("a row missing")
            << QStringLiteral("SELECT con_id FROM contacts WHERE con_id>1");
        QTest::newRow("a stranger") << QStringLiteral("SELECT con_id + 1 AS con_id FROM contacts");
    }
    void rowsNotMatchedOneByOneAreRefused() {
        QFETCH(QString, grid);
        QVERIFY(openList(listno::Contacts));
        DataControl other;
        other.RecordSource = grid;
        QVERIFY(other.Refresh());
        const RecordsetPtr columns = ListStore(listKind(listno::Contacts)).searchColumns();
        QVERIFY(!index_.build(*columns, *other.Recordset, 0));
        QVERIFY(!index_.isBuilt());
    }

private:
    // Opens the list of `number` over every record and indexes its search columns.
    bool openList(int number) {
        kind_ = &listKind(number);
        ListStore store(*kind_);
        grid_.RecordSource = listQuery(*kind_, store.columns(), QString());
        if (!grid_.Refresh()) return false;
        const RecordsetPtr columns = store.searchColumns();
        return columns &&
               index_.build(*columns, *grid_.Recordset, grid_.Recordset->fieldIndex(kind_->key));
    }
    // The grid rows (ascending) whose keys the engine selects with the search condition.
    std::vector<int> engineRows(const QString& text) const {
        tarveldatabase db;
        QSet<qint64> keys;
        RecordsetPtr rs =
            db.GetReadRs(QStringLiteral("SELECT ") + kind_->key + QStringLiteral(" FROM ") +
                         kind_->source + QLatin1Char(' ') + searchCondition(kind_->number, text));
        if (!rs) qFatal("%s", qPrintable(db.ErrMsg()));
        for (; !rs->Eof(); rs->MoveNext()) keys << rs->value(0).toLongLong();
        std::vector<int> rows;
        const int key = grid_.Recordset->fieldIndex(kind_->key);
        for (int r = 0; r < grid_.Recordset->RecordCount(); ++r)
            if (keys.contains(grid_.Recordset->valueAt(r, key).toLongLong())) rows.push_back(r);
        return rows;
    }
    QByteArray why(const QString& text) const {
        return QStringLiteral("searching %1 for \"%2\"").arg(kind_->noun, text).toUtf8();
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    const ListKind* kind_ = nullptr;
    DataControl grid_;
    SearchIndex index_;
};

QTEST_GUILESS_MAIN(SearchTest)
#include "search_test.moc"
