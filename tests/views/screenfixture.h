#pragma once
// What every screen test stands on: a private copy of the data file, the
// program's clock at the test's moment, no unsaved edit left by the previous
// test, and seams that record what a screen asked for (message boxes, file
// dialogs, the shell-open verb). A test class derives from it, calls begin()
// from init() and end() from cleanup() after dropping its screens.
#include <QDateTime>
#include <QObject>
#include <memory>

#include "browse/unsaved.h"
#include "store/clock.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"

namespace tarvel::testsupport {

class ScreenFixture : public QObject {
protected:
    // A fresh data file and fresh seams; the clock is fixed when `now` is given.
    void begin(const QDateTime& now = {}) {
        clearUnsaved();
        if (now.isValid()) Clock::setFixed(now);
        file_ = std::make_unique<tarvel::testing::TempDataFile>();
        dialogs_ = std::make_shared<ScriptedDialogs>();
        files_ = std::make_shared<ScriptedFileDialogs>();
        opener_ = std::make_shared<RecordingOpener>();
    }
    // Screens holding the data file are gone by now.
    void end() {
        file_.reset();
        Clock::reset();
        clearUnsaved();
    }

    std::unique_ptr<tarvel::testing::TempDataFile> file_;
    std::shared_ptr<ScriptedDialogs> dialogs_;
    std::shared_ptr<ScriptedFileDialogs> files_;
    std::shared_ptr<RecordingOpener> opener_;
};

}  // namespace tarvel::testsupport
