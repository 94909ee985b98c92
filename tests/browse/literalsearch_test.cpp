// Every search a user types finds the characters typed: each printable ASCII
// character and a few Chinese ones, alone and inside a word, selects exactly
// the records whose text contains it, whether the list's statement, a name
// search, the add-related dialog, a task's link search or a tag entry of the
// navigation panel answers (the list's in-memory index: search_test). The expected
// records come from a plain substring test done here.
#include <QRandomGenerator>
#include <QtTest>

#include "browse/conditiontext.h"
#include "browse/likematch.h"
#include "browse/listsql.h"
#include "records/kinds.h"
#include "records/recordsearch.h"
#include "schedule/tasklinks.h"
#include "store/likecontains.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;
using namespace tarvel::lists;
using tarvel::testsupport::run;

namespace {

using Keys = QSet<qint64>;

// Printable ASCII, a Chinese name's characters, the full-width percent sign
// and the full-width blank.
QStringList probeCharacters() {
    QStringList chars;
    for (char c = 0x20; c <= 0x7E; ++c) chars << QString(QLatin1Char(c));
    chars << QStringLiteral("王") << QStringLiteral("伟") << QStringLiteral("％")
          << QStringLiteral("　");
    return chars;
}

// The engine folds the case of ASCII letters only.
QString asciiLower(const QString& text) {
    QString out = text;
    for (QChar& c : out)
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) c = QChar(c.unicode() + 32);
    return out;
}

Keys keysOf(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs) qFatal("%s: %s", qPrintable(sql), qPrintable(db.ErrMsg()));
    Keys keys;
    for (; !rs->Eof(); rs->MoveNext()) keys << rs->value(0).toLongLong();
    return keys;
}

const CategoryGroup& tagGroup() {
    for (const CategoryGroup& g : listKind(listno::Contacts).groups)
        if (g.match == CategoryGroup::Match::Substring) return g;
    qFatal("the contacts list has no tag group");
}

}  // namespace

class LiteralSearchTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        QStringList values;
        for (const QString& c : probeCharacters())
            for (const QString& name : {c, QStringLiteral("ab") + c + QStringLiteral("cd"),
                                        QStringLiteral("张") + c + QStringLiteral("三")}) {
                const QString quoted =
                    QLatin1Char('\'') + tarveldatabase::SafeSql(name) + QLatin1Char('\'');
                values << QLatin1Char('(') + quoted + QLatin1Char(',') + quoted + QLatin1Char(')');
            }
        run(QStringLiteral("INSERT INTO contacts (con_lastname, con_tag) VALUES ") +
            values.join(QLatin1Char(',')));
        // Accounts of the same names, under the same keys.
        run(QStringLiteral("INSERT INTO accounts (acc_name) SELECT con_lastname FROM contacts"));
        tarveldatabase db;
        for (RecordsetPtr rs =
                 db.GetReadRs(QStringLiteral("SELECT con_id, con_lastname FROM contacts"));
             rs && !rs->Eof(); rs->MoveNext())
            names_.insert(rs->value(0).toLongLong(), rs->value(1).toString());
    }
    void cleanupTestCase() { file_.reset(); }
    void everySearchFindsWhatWasTyped_data() {
        QTest::addColumn<QString>("text");
        for (const QString& c : probeCharacters()) {
            const QByteArray code = QByteArray::number(c.front().unicode(), 16);
            QTest::newRow(("alone U+" + code).constData()) << c;
            QTest::newRow(("in a word U+" + code).constData())
                << QStringLiteral("b") + c + QStringLiteral("c");
        }
    }
    void everySearchFindsWhatWasTyped() {
        QFETCH(QString, text);
        const Keys expected = containing(text);
        QVERIFY(!expected.isEmpty());

        const ListKind& contacts = listKind(listno::Contacts);
        QCOMPARE(keysOf(QStringLiteral("SELECT con_id FROM ") + contacts.source + QLatin1Char(' ') +
                        searchCondition(listno::Contacts, text)),
                 expected);
        QCOMPARE(keysOf(recordsearch::contactsByName(text)), expected);
        QCOMPARE(keysOf(recordsearch::accountsByName(text)), expected);
        QCOMPARE(keysOf(recordsearch::panelContacts(text, 0)), expected);
        QCOMPARE(keysOf(recordsearch::addable(kind::Contact, text)), expected);
        QCOMPARE(keysOf(QStringLiteral("SELECT con_id FROM ") + contacts.source +
                        categoryCondition(contacts, tagGroup(), text, QDate(2026, 11, 24))),
                 expected);
        // The task page's link search drops blanks at either end of the text.
        if (!text.trimmed().isEmpty()) {
            TaskLinks links;
            const auto found = links.search(kind::Contact, text);
            QVERIFY(found);
            Keys keys;
            for (const LinkedRecord& r : *found) keys << r.id;
            QCOMPARE(keys, containing(text.trimmed()));
        }
    }
    // The index evaluates patterns the way the engine does, escapes included:
    // random patterns of wildcards, escapes, letters in both cases and Chinese,
    // with and without an escape clause, select the same names.
    void patternAgreesWithTheEngine() {
        const QString alphabet = QStringLiteral("%%__\\\\aBc王 '[x@");
        QRandomGenerator random(25);
        int toldApart = 0;
        for (int i = 0; i < 400; ++i) {
            QString pattern;
            const int n = 1 + int(random.bounded(6));
            for (int k = 0; k < n; ++k) pattern += alphabet[int(random.bounded(alphabet.size()))];
            const bool escaped = random.bounded(3) != 0;
            const Keys engine =
                keysOf(QStringLiteral("SELECT con_id FROM contacts WHERE con_lastname LIKE '") +
                       tarveldatabase::SafeSql(pattern) + QLatin1Char('\'') +
                       (escaped ? QStringLiteral(" ESCAPE '\\'") : QString()));
            const LikePattern like(pattern, escaped ? QChar(kLikeEscape) : QChar());
            Keys matched;
            for (auto it = names_.cbegin(); it != names_.cend(); ++it) {
                const QByteArray folded = likeFolded(it.value());
                if (like.matches(folded.constData(), folded.size())) matched << it.key();
            }
            QVERIFY2(matched == engine, qPrintable(pattern + (escaped ? " ESCAPE" : "")));
            toldApart += !engine.isEmpty() && engine.size() < names_.size();
        }
        QVERIFY(toldApart > 40);
    }
    // The page history keeps the condition; going back refills the search box
    // with the text as typed, and the condition reads as that text in words.
    void historyGivesTheTypedTextBack_data() {
        QTest::addColumn<QString>("text");
        for (const char* text : {"50%", "a_b", "[x]", "'", "\\", "a\\b", "%_\\'", "\\%", "  a  b ",
                                 "100%'s", "50％　王"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }
    void historyGivesTheTypedTextBack() {
        QFETCH(QString, text);
        for (int number : {int(listno::Opportunities), int(listno::Accounts), int(listno::Contacts),
                           int(listno::Documents)}) {
            const ListKind& kind = listKind(number);
            const QString condition = searchCondition(number, text);
            QCOMPARE(searchTextOf(kind, condition), text);
            QCOMPARE(searchTextOf(kind, condition + QStringLiteral(" ORDER BY ") + kind.key +
                                            QStringLiteral(" DESC")),
                     text);
            QCOMPARE(describeCondition(condition, &kind), QStringLiteral("搜索：") + text);
            QCOMPARE(describeCondition(condition), QStringLiteral("搜索：") + text);
        }
        const ListKind& contacts = listKind(listno::Contacts);
        QCOMPARE(describeCondition(categoryCondition(contacts, tagGroup(), text, QDate())),
                 QStringLiteral("标签：") + text);
        // A tag condition is no search: the search box stays empty.
        QCOMPARE(searchTextOf(contacts, categoryCondition(contacts, tagGroup(), text, QDate())),
                 QString());
    }

private:
    // The contacts whose name contains `text`, by the plain test.
    Keys containing(const QString& text) const {
        Keys keys;
        for (auto it = names_.cbegin(); it != names_.cend(); ++it)
            if (asciiLower(it.value()).contains(asciiLower(text))) keys << it.key();
        return keys;
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    QHash<qint64, QString> names_;  // each contact's name, also its tags
};

QTEST_GUILESS_MAIN(LiteralSearchTest)
#include "literalsearch_test.moc"
