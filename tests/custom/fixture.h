#pragma once

#include <gtest/gtest.h>

#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/support/tempdatafile.h"

namespace tarvel::testsupport {

// A test on its own data file, with the statement trace on so the exact
// texts that are part of a contract can be checked.
class TracedDataFile : public ::testing::Test {
protected:
    void SetUp() override {
        trace::clear();
        trace::setEnabled(true);
    }
    void TearDown() override { trace::setEnabled(false); }

    // Runs a setup statement; the test fails when it does not run.
    static void run(const QString& sql) {
        tarveldatabase db;
        db.Execute(sql);
        ASSERT_TRUE(db.ErrMsg().isEmpty()) << db.ErrMsg().toStdString();
    }

    tarvel::testing::TempDataFile file;
};

}  // namespace tarvel::testsupport
