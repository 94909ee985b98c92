// The grid model over a recordset: cells come from the recordset as the grid
// asks, its shape changes on reload, and grid rows and records stay in step.
#include "browse/recordsetmodel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

#include "store/datacontrol.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;
using tarvel::testsupport::run;

class RecordsetModelTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        run(
            QStringLiteral("INSERT INTO contacts (con_lastname, con_birthday) VALUES ('张', "
                           "#1980-2-29#), ('李', null), ('王', #1990-1-1#)"));
        control_.RecordSource = QStringLiteral(
            "SELECT con_id, con_lastname, con_birthday FROM contacts ORDER BY con_id");
        QVERIFY(control_.Refresh());
        model_ = std::make_unique<RecordsetModel>();
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        model_->setRecordset(control_.Recordset);
    }
    void cleanup() {
        tester_.reset();
        model_.reset();
        control_.Recordset.reset();
        file_.reset();
    }
    void showsTheRecordsetsCells() {
        QCOMPARE(model_->rowCount(), 3);
        QCOMPARE(model_->columnCount(), 3);
        QCOMPARE(text(1, 1), QStringLiteral("李"));
        QCOMPARE(model_->data(model_->index(0, 2)).toDateTime().date(), QDate(1980, 2, 29));
        QVERIFY(model_->data(model_->index(1, 2)).isNull());
        QCOMPARE(model_->data(model_->index(2, 0), Qt::EditRole).toInt(), 3);
        QVERIFY(!model_->data(model_->index(0, 1), Qt::DecorationRole).isValid());
        QCOMPARE(model_->headerData(1, Qt::Horizontal).toString(), QStringLiteral("con_lastname"));
        model_->setCaption(1, QStringLiteral("姓"));
        QCOMPARE(model_->headerData(1, Qt::Horizontal).toString(), QStringLiteral("姓"));
        QCOMPARE(model_->headerData(0, Qt::Vertical).toInt(), 1);
    }
    void readsEditsWithoutReload() {
        RecordsetPtr rs = control_.Recordset;
        QVERIFY(rs->setAbsolutePosition(2));
        rs->Fields(QStringLiteral("con_lastname")) = QStringLiteral("李四");
        QVERIFY(rs->Update());
        QCOMPARE(text(1, 1), QStringLiteral("李四"));
    }
    void followsAddsAndDeletesOnReload() {
        RecordsetPtr rs = control_.Recordset;
        QVERIFY(rs->Delete());  // 张, the current record
        QVERIFY(rs->AddNew());
        rs->Fields(QStringLiteral("con_lastname")) = QStringLiteral("赵");
        QVERIFY(rs->Update());
        QCOMPARE(model_->rowCount(), 3);  // the shape waits for reload
        model_->reload();
        QCOMPARE(model_->rowCount(), 3);
        QCOMPARE(text(0, 1), QStringLiteral("李"));
        QCOMPARE(text(2, 1), QStringLiteral("赵"));
        QCOMPARE(model_->currentRow(), 2);  // reload leaves the recordset where it was
    }
    void movesTheRecordsetWithTheGrid() {
        QCOMPARE(model_->currentRow(), 0);
        QVERIFY(model_->moveTo(2));
        QCOMPARE(control_.Recordset->value(1).toString(), QStringLiteral("王"));
        QCOMPARE(model_->currentRow(), 2);
        QVERIFY(!model_->moveTo(3));
        QVERIFY(!model_->moveTo(-1));
        QCOMPARE(model_->currentRow(), 2);
        control_.Recordset->MoveNext();  // EOF
        QCOMPARE(model_->currentRow(), -1);
    }
    void rowMapShowsAndMovesOnlyItsRows() {
        model_->setRowMap({0, 2});
        QCOMPARE(model_->rowCount(), 2);
        QCOMPARE(text(1, 1), QStringLiteral("王"));
        QVERIFY(model_->moveTo(1));
        QCOMPARE(control_.Recordset->value(1).toString(), QStringLiteral("王"));
        QCOMPARE(model_->currentRow(), 1);
        QVERIFY(!model_->moveTo(2));
        control_.Recordset->setAbsolutePosition(2);  // 李, not shown
        QCOMPARE(model_->currentRow(), -1);
        model_->clearRowMap();
        QCOMPARE(model_->rowCount(), 3);
        QCOMPARE(model_->currentRow(), 1);
        model_->setRowMap({});
        QCOMPARE(model_->rowCount(), 0);
        model_->reload();  // rows read again show all of them
        QCOMPARE(model_->rowCount(), 3);
    }
    void emptyWithoutAnOpenRecordset() {
        model_->setRecordset(std::make_shared<Recordset>());
        QCOMPARE(model_->rowCount(), 0);
        QCOMPARE(model_->columnCount(), 0);
        model_->setRecordset(nullptr);
        QCOMPARE(model_->rowCount(), 0);
        QVERIFY(!model_->moveTo(0));
        QCOMPARE(model_->currentRow(), -1);
    }

private:
    QString text(int row, int column) const {
        return model_->data(model_->index(row, column)).toString();
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    DataControl control_;
    std::unique_ptr<RecordsetModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

QTEST_GUILESS_MAIN(RecordsetModelTest)
#include "recordsetmodel_test.moc"
