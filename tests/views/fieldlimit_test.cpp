// Text boxes hold what their column holds: typing and pasting stop at the
// limit between whole characters, a note says so, a stored longer text is
// shown whole, and what is saved is what the box shows.
#include "views/common/fieldlimit.h"

#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include "browse/listkind.h"
#include "records/kinds.h"
#include "tests/views/screenfixture.h"
#include "views/details/formcondetail.h"
#include "views/related/quickedit.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

const QString kSmile = QStringLiteral("\U0001F600");

// One key press carrying `text` (an emoji arrives as one event with both halves).
void press(QWidget* box, const QString& text) {
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, text, Qt::NoModifier);
}

}  // namespace

class FieldLimitTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() { begin(QDateTime(QDate(2024, 5, 20), QTime(10, 0))); }
    void cleanup() {
        page_.reset();
        end();
    }

    void typingStopsAtTheLimitAndSaysSo() {
        FormConDetail& page = contactPage(0);
        auto* name = child<QLineEdit>(page, "txt_name");
        auto* note = child<QLabel>(page, "lbl_limit_note");
        QCOMPARE(name->toolTip(), QStringLiteral("最多50个字"));
        QCOMPARE(name->accessibleDescription(), QStringLiteral("最多50个字"));
        QVERIFY(note->isHidden());

        typeText(name, QStringLiteral("张").repeated(48));
        press(name, kSmile);  // the 49th character, though two UTF-16 units
        QVERIFY(note->isHidden());
        typeText(name, QStringLiteral("三"));
        const QString full = QStringLiteral("张").repeated(48) + kSmile + QStringLiteral("三");
        QCOMPARE(name->text(), full);
        QVERIFY(!note->isHidden());
        QCOMPARE(note->text(), QStringLiteral("姓名：最多50个字"));

        // Neither a character nor an emoji goes in past the limit, nor half of one.
        typeText(name, QStringLiteral("四"));
        press(name, kSmile);
        QCOMPARE(name->text(), full);

        // Deleting makes room and the note goes; a paste at the start takes
        // only what fits, and the cursor stands after it.
        name->setCursorPosition(0);
        name->del();
        name->del();
        QVERIFY(note->isHidden());
        name->insert(QStringLiteral("ab") + kSmile + QStringLiteral("cd"));
        const QString pasted = QStringLiteral("ab") + QStringLiteral("张").repeated(46) + kSmile +
                               QStringLiteral("三");
        QCOMPARE(name->text(), pasted);
        QCOMPARE(name->cursorPosition(), 2);
        QVERIFY(!note->isHidden());
        // Room for one character only: the emoji of a pasted pair-and-more fits whole.
        name->backspace();
        name->insert(kSmile + QStringLiteral("x"));
        QCOMPARE(name->text(), QStringLiteral("a") + kSmile + pasted.mid(2));

        QVERIFY(page.save());
        QCOMPARE(firstValue("SELECT con_lastname FROM contacts ORDER BY con_id DESC").toString(),
                 name->text());
    }

    void storedLongTextIsShownWholeAndSavedCut() {
        // An older record may hold more than the box takes.
        const QString stored = QStringLiteral("李").repeated(49) + kSmile + QStringLiteral("娜");
        run(QStringLiteral("INSERT INTO contacts (con_lastname) VALUES ('%1')").arg(stored));
        FormConDetail& page = contactPage(1);
        auto* name = child<QLineEdit>(page, "txt_name");
        QCOMPARE(name->text(), stored);
        QVERIFY(!page.isModified());
        // Typing adds nothing to it, but it can be shortened.
        name->end(false);
        typeText(name, QStringLiteral("x"));
        QCOMPARE(name->text(), stored);
        QVERIFY(page.save());
        QCOMPARE(firstValue("SELECT con_lastname FROM contacts WHERE con_id=1").toString(),
                 QStringLiteral("李").repeated(49) + kSmile);
    }

    void quickEditBoxesHoldTheirColumnsWidths() {
        QWidget parent;
        const QuickEdit q = buildQuickEdit(kind::Contact, kind::Opportunity, &parent);
        QVERIFY(q.note && q.note->isHidden());
        const struct {
            const char* box;
            int limit;
        } boxes[] = {{"txt_con_name", 50}, {"txt_con_account", 50}, {"txt_con_accaddr", 255}};
        for (const auto& b : boxes) {
            auto* box = child<QLineEdit>(parent, b.box);
            QCOMPARE(FieldLimit::limitOf(box), b.limit);
            box->insert(QStringLiteral("字").repeated(b.limit + 3));
            QCOMPARE(box->text().size(), b.limit);
        }
        QVERIFY(!q.note->isHidden());
        QCOMPARE(FieldLimit::limitOf(child<QWidget>(parent, "rtxt_con_memo")), 0);
    }

private:
    FormConDetail& contactPage(int id) {
        page_ = std::make_unique<FormConDetail>();
        page_->setDialogs(dialogs_);
        page_->setShellOpener(opener_);
        page_->fill({page::ContactDetail, QString(), id});
        return *page_;
    }

    std::unique_ptr<FormConDetail> page_;
};

QTEST_MAIN(FieldLimitTest)
#include "fieldlimit_test.moc"
