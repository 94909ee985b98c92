#pragma once

#include <gtest/gtest.h>

#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

namespace records_test {

inline QDateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return tarvel::jetdate::naive(QDate(y, m, d), QTime(h, mi, s));
}

// A record object with its key set.
template <typename Record>
Record withId(int id) {
    Record r;
    r.setID(id);
    return r;
}

// A fresh data file per test, the clock pinned at 2026-03-02 09:15:30, and the
// statement trace on.
class RecordFixture : public ::testing::Test {
protected:
    RecordFixture() {
        tarvel::Clock::setFixed(at(2026, 3, 2, 9, 15, 30));
        tarvel::trace::setEnabled(true);
        tarvel::trace::clear();
    }
    ~RecordFixture() override {
        tarvel::trace::setEnabled(false);
        tarvel::trace::clear();
    }

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
