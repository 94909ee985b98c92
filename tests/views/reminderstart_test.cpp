// Reminders missed while the program was closed: each due one fires once when
// it starts, and however many open, every window lies on the screen.
#include <QGuiApplication>
#include <QScreen>
#include <QtTest>

#include "shell/mainwindow.h"
#include "shell/windowplacement.h"
#include "store/clock.h"
#include "tests/views/quietmain.h"
#include "tests/views/screenfixture.h"
#include "views/schedule/formschremind.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class ReminderStartTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void cascadeStaysInside_data() {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<int>("index");
        QTest::newRow("tenth") << QRect(0, 0, 1280, 800) << QSize(440, 300) << 9;
        QTest::newRow("many") << QRect(0, 0, 1280, 800) << QSize(440, 300) << 200;
        QTest::newRow("second screen") << QRect(1920, -200, 1024, 768) << QSize(440, 300) << 5;
        QTest::newRow("tiny screen") << QRect(0, 0, 320, 240) << QSize(440, 300) << 3;
    }

    void cascadeStaysInside() {
        QFETCH(QRect, screen);
        QFETCH(QSize, window);
        QFETCH(int, index);
        const QRect placed = popupGeometry(window, screen, index);
        QCOMPARE(screen.intersected(placed), placed);  // wholly inside
        if (screen.width() > 2 * window.width())
            QVERIFY(placed != popupGeometry(window, screen, index - 1));  // not stacked exactly
    }

    void missedRemindersFireOnceAtStart() {
        // Three reminders this morning, one repeating one already dismissed today,
        // one this afternoon; the program starts at 11:00.
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
            "tas_remind, tas_again, tas_last_remind_date) VALUES "
            "(1, 'a', #2024-5-1#, #8:00#, 0, #2024-5-1#, 1, 0, null), "
            "(2, 'b', #2024-4-1#, #9:00#, 1, #2024-12-31#, 1, 1, #2024-4-30#), "
            "(3, 'c', #2024-5-1#, #10:30#, 0, #2024-5-1#, 1, 0, null), "
            "(4, 'd', #2024-4-1#, #7:00#, 1, #2024-12-31#, 1, 1, #2024-5-1#), "
            "(5, 'e', #2024-5-1#, #15:00#, 0, #2024-5-1#, 1, 0, null)");
        Clock::setFixed(at(2024, 5, 1, 11, 0));
        const std::unique_ptr<TarvelMain> window = tarvel::testsupport::quietMain(dialogs_);
        TarvelMain& main = *window;
        main.move(5000, 5000);  // wherever the main window went, reminders stay visible
        main.Timer1Timer();
        QList<int> shown;
        for (FormSchRemind* w : main.reminderWindows()) shown << w->taskId();
        QCOMPARE(shown, QList<int>({1, 2, 3}));
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QSet<QPoint> corners;
        for (FormSchRemind* w : main.reminderWindows()) {
            QCOMPARE(available.intersected(w->frameGeometry()), w->frameGeometry());
            corners << w->frameGeometry().topLeft();
        }
        QCOMPARE(corners.size(), 3);  // fanned out, none hidden under another
        // The first in the screen's bottom-right corner.
        const QRect first = main.reminderWindows().first()->frameGeometry();
        QVERIFY(available.right() - first.right() <= 16 &&
                available.bottom() - first.bottom() <= 16);
        main.Timer1Timer();
        QCOMPARE(main.reminderWindows().size(), 3);  // once only
    }
};

QTEST_MAIN(ReminderStartTest)
#include "reminderstart_test.moc"
