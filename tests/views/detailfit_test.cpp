// The contact page fits the screens people have: at the size it gets in a
// maximised window on a 1366x768 laptop every field is in view, and at no
// size does the fields area need a horizontal scroll bar.
#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include "custom/fsettings.h"
#include "records/kinds.h"
#include "tests/views/screenfixture.h"
#include "views/details/formcondetail.h"

using namespace tarvel;
using namespace tarvel::testsupport;

class DetailFitTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(QDateTime(QDate(2024, 5, 20), QTime(10, 0)));
        run("INSERT INTO accounts (acc_name, acc_address) VALUES "
            "('北京华信科技有限公司', '北京市海淀区中关村大街27号')");
        run("INSERT INTO contacts (con_lastname, con_nickname, con_department_title, "
            "con_telephone, con_mobile, con_email, con_email2, con_address_family) VALUES "
            "('欧阳建国', '老欧', '华北区销售部经理', '010-62345678', '13812345678', "
            "'ouyang.jianguo@huaxin-tech.com.cn', 'jianguo@example.com', "
            "'北京市朝阳区建国门外大街1号国贸公寓3单元1502室')");
        run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)");
        loadProgramFieldSettings();
    }
    void cleanup() { end(); }

    void everyFieldIsInViewOnALaptop_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("allInView");
        // The page's part of a maximised window: less the tool and status bars.
        QTest::newRow("1366x768 maximised") << QSize(1366, 660) << true;
        QTest::newRow("1920x1080 maximised") << QSize(1920, 970) << true;
        QTest::newRow("1024x700 window") << QSize(1024, 600) << false;
    }
    void everyFieldIsInViewOnALaptop() {
        QFETCH(QSize, size);
        QFETCH(bool, allInView);
        FormConDetail page;
        page.resize(size);
        page.fill({page::ContactDetail, QString(), 1});
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));
        QCoreApplication::processEvents();
        auto* scroll = child<QScrollArea>(page, "scr_fields");
        QVERIFY2(!scroll->horizontalScrollBar()->isVisible(), "a horizontal scroll bar");
        if (!allInView) return;
        const QRect viewport = scroll->viewport()->rect();
        for (QWidget* w : scroll->widget()->findChildren<QWidget*>()) {
            const bool input = qobject_cast<QLineEdit*>(w) || qobject_cast<QComboBox*>(w) ||
                               qobject_cast<QAbstractSpinBox*>(w) ||
                               qobject_cast<QAbstractButton*>(w) ||
                               qobject_cast<QPlainTextEdit*>(w);
            if (!input || !w->isVisibleTo(&page) || qobject_cast<QComboBox*>(w->parentWidget()))
                continue;
            const QRect at(w->mapTo(scroll->viewport(), QPoint(0, 0)), w->size());
            QVERIFY2(viewport.contains(at),
                     qPrintable(QStringLiteral("%1 out of view").arg(w->objectName())));
        }
    }
};

QTEST_MAIN(DetailFitTest)
#include "detailfit_test.moc"
