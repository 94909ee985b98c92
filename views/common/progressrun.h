#pragma once

#include <QProgressDialog>
#include <memory>

#include "exchange/progress.h"

namespace tarvel {

// A progress dialog with a 取消 button for one long operation; it appears
// only when the work lasts long enough to be worth watching (large files).
class ProgressRun {
public:
    ProgressRun(QWidget* parent, const QString& label);
    // The callback the exchange operations report to; false once cancelled.
    exchange::Progress callback();

private:
    std::unique_ptr<QProgressDialog> dialog_;
};

}  // namespace tarvel
