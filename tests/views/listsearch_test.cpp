// Search as you type answered from the rows already read: the rows shown must
// be exactly those the engine selects with the search condition, for random
// texts with quotes, wildcards, mixed case and Chinese, while typing on
// (narrowing), after a refresh, and from a category condition.
#include <QLineEdit>
#include <QRandomGenerator>
#include <QtTest>

#include "browse/listsql.h"
#include "browse/tickmodel.h"
#include "browse/unsaved.h"
#include "custom/fsettings.h"
#include "store/clock.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"
#include "tests/views/listids.h"
#include "tests/views/listrecords.h"
#include "views/lists/formlist.h"

using namespace tarvel;
using namespace tarvel::lists;
using tarvel::testsupport::child;
using tarvel::testsupport::engineIds;
using tarvel::testsupport::run;
using tarvel::testsupport::shownIds;

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

class ListSearchTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        clearUnsaved();
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        testsupport::fillListRecords({20, 200, 0, 0, 0});
        for (int i = 0; i < kOddTexts.size(); ++i) {
            const QString t = tarveldatabase::SafeSql(kOddTexts[i]);
            run(QStringLiteral(
                    "UPDATE contacts SET con_nickname='%1', con_im3='%2' WHERE con_id=%3")
                    .arg(t, t.toLower())
                    .arg(3 + i * 7));
        }
        run(QStringLiteral("UPDATE accounts SET acc_website='www.Odd_Site.cn' WHERE acc_id=2"));
        // Neighbouring search columns: "yz" stands in neither.
        run(
            QStringLiteral("UPDATE contacts SET con_nickname='xy', con_department_title='zw' "
                           "WHERE con_id=50"));
        loadProgramFieldSettings();
        form_ = std::make_unique<FormList>(listKind(listno::Contacts));
        form_->setDialogs(std::make_shared<testsupport::ScriptedDialogs>());
        form_->setHistoryUpdate([this](const QString& c) { history_ << c; });
        PageRequest request;
        request.page = listKind(listno::Contacts).page;
        form_->fill(request);
    }
    void cleanup() {
        form_.reset();
        file_.reset();
        history_.clear();
    }

    void randomTextsShowWhatTheEngineSelects();
    void typingOnNarrowsTheSameWayTheEngineDoes();
    void refreshedRowsAreSearchedAgain();
    void searchFromACategoryConditionCoversEveryRecord();

private:
    void search(const QString& text) {
        child<QLineEdit>(*form_, "txt_search")->setText(text);
        form_->searchNow();
    }
    void expectEngineRows(const QString& text) {
        const QString condition = searchCondition(listno::Contacts, text);
        QCOMPARE(form_->condition(), condition);
        QCOMPARE(shownIds(*form_), engineIds(form_->kind(), condition));
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::unique_ptr<FormList> form_;
    QStringList history_;
};

void ListSearchTest::randomTextsShowWhatTheEngineSelects() {
    QStringList samples = kOddTexts;
    samples << QStringLiteral("user12@example.com") << QStringLiteral("021-52000")
            << QStringLiteral("销售部/主管") << QStringLiteral("科技有限公司")
            << QStringLiteral("www.Odd_Site.cn");
    QRandomGenerator random(29);
    for (int i = 0; i < 150; ++i) {
        const QString text = randomText(random, samples);
        search(text);
        expectEngineRows(text);
        // The history holds the search condition itself.
        QCOMPARE(history_.last(), searchCondition(listno::Contacts, text));
    }
    search(QString());
    QCOMPARE(form_->gridModel()->rowCount(), 200);
}

void ListSearchTest::typingOnNarrowsTheSameWayTheEngineDoes() {
    for (const QString& word :
         kOddTexts + QStringList{QStringLiteral("User1"), QStringLiteral("%_%"),
                                 QStringLiteral("yzw"), QStringLiteral("xyz")}) {
        for (int n = 1; n <= word.size(); ++n) {
            if (word[n - 1].isHighSurrogate()) continue;
            search(word.left(n));
            expectEngineRows(word.left(n));
        }
        // Taking letters back widens the rows again.
        search(word.left(1));
        expectEngineRows(word.left(1));
    }
}

void ListSearchTest::refreshedRowsAreSearchedAgain() {
    search(QStringLiteral("Ab_"));
    expectEngineRows(QStringLiteral("Ab_"));
    run(QStringLiteral("UPDATE contacts SET con_email3='new_ab_x@q.cn' WHERE con_id=100"));
    form_->refresh();
    search(QStringLiteral("Ab_x"));
    expectEngineRows(QStringLiteral("Ab_x"));
    QVERIFY(shownIds(*form_).contains(100));
}

void ListSearchTest::searchFromACategoryConditionCoversEveryRecord() {
    PageRequest request;
    request.page = listKind(listno::Contacts).page;
    request.condition = QStringLiteral(" WHERE con_province='北京'");
    form_->fill(request);
    search(QStringLiteral("user1"));
    expectEngineRows(QStringLiteral("user1"));
    search(QStringLiteral("user19"));
    expectEngineRows(QStringLiteral("user19"));
}

QTEST_MAIN(ListSearchTest)
#include "listsearch_test.moc"
