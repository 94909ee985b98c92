#pragma once

#include <gtest/gtest.h>

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

namespace records_test {

// A fresh data file per test, the clock pinned, and the statement trace on.
class RecordFixture : public ::testing::Test {
protected:
    RecordFixture() {
        tarvel::Clock::setFixed(start());
        tarvel::trace::setEnabled(true);
        tarvel::trace::clear();
    }
    ~RecordFixture() override {
        tarvel::trace::setEnabled(false);
        tarvel::trace::clear();
    }

    static QDateTime start() { return tarvel::jetdate::naive(QDate(2026, 3, 2), QTime(9, 15, 30)); }

    void run(const QString& sql) {
        tarvel::tarveldatabase db;
        db.Execute(sql);
        ASSERT_TRUE(db.ErrMsg().isEmpty())
            << sql.toStdString() << ": " << db.ErrMsg().toStdString();
    }
    QVariant scalar(const QString& sql) {
        tarvel::tarveldatabase db;
        tarvel::RecordsetPtr rs = db.GetReadRs(sql);
        EXPECT_TRUE(rs && rs->State() == tarvel::adStateOpen) << sql.toStdString();
        return rs && !rs->Eof() ? rs->value(0) : QVariant();
    }
    int count(const QString& sql) { return scalar(sql).toInt(); }

    // The statements issued while `body` runs.
    template <typename Body>
    QStringList traced(Body&& body) {
        tarvel::trace::clear();
        body();
        const QStringList statements = tarvel::trace::statements();
        tarvel::trace::clear();
        return statements;
    }

    tarvel::testing::TempDataFile file;
};

}  // namespace records_test
