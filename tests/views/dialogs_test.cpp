// The message-box seam over real QMessageBox windows: the Yes/No/Cancel
// question answers with the button pressed, and Escape stays put.
#include "views/common/dialogs.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

using namespace tarvel;

class DialogsTest : public QObject {
    Q_OBJECT
private slots:
    void threeWayQuestionAnswersWithTheButtonPressed_data() {
        QTest::addColumn<QString>("press");  // a button's text, or "Esc"
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << QStringLiteral("是(&Y)") << int(Messages::Answer::Yes);
        QTest::newRow("no") << QStringLiteral("否(&N)") << int(Messages::Answer::No);
        QTest::newRow("cancel") << QStringLiteral("取消") << int(Messages::Answer::Cancel);
        QTest::newRow("escape") << QStringLiteral("Esc") << int(Messages::Answer::Cancel);
    }

    void threeWayQuestionAnswersWithTheButtonPressed() {
        QFETCH(QString, press);
        QFETCH(int, answer);
        QWidget window;
        MessageBoxDialogs dialogs(&window);
        QString shownTitle, shownText;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            shownTitle = box->windowTitle();
            shownText = box->text();
            if (press == QLatin1String("Esc")) {
                QTest::keyClick(box, Qt::Key_Escape);
                return;
            }
            for (QAbstractButton* b : box->buttons())
                if (b->text() == press) return b->click();
            box->reject();
            QFAIL("no such button");
        });
        QCOMPARE(int(dialogs.askYesNoCancel(messageTitle(), QStringLiteral("是否保存修改？"))),
                 answer);
        QCOMPARE(shownTitle, QStringLiteral("Tarvel提示"));
        QCOMPARE(shownText, QStringLiteral("是否保存修改？"));
    }
};

QTEST_MAIN(DialogsTest)
#include "dialogs_test.moc"
