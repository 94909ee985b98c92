#pragma once

#include <gtest/gtest.h>

#include "store/clock.h"
#include "store/trace.h"
#include "tests/support/dataquery.h"
#include "tests/support/tempdatafile.h"

namespace records_test {

using tarvel::testsupport::at;

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

    static void run(const QString& sql) { tarvel::testsupport::run(sql); }
    static QVariant scalar(const QString& sql) { return tarvel::testsupport::firstValue(sql); }
    static int count(const QString& sql) { return tarvel::testsupport::count(sql); }

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
