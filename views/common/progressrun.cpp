#include "views/common/progressrun.h"

namespace tarvel {

ProgressRun::ProgressRun(QWidget* parent, const QString& label)
    : dialog_(std::make_unique<QProgressDialog>(label, QStringLiteral("取消"), 0, 100, parent)) {
    dialog_->setObjectName(QStringLiteral("form_progress"));
    dialog_->setWindowTitle(QStringLiteral("Tarvel提示"));
    dialog_->setWindowModality(Qt::WindowModal);
    dialog_->setMinimumDuration(500);
    dialog_->setAutoClose(true);
    dialog_->setValue(0);
}

exchange::Progress ProgressRun::callback() {
    QProgressDialog* dialog = dialog_.get();
    return [dialog](int percent) {
        dialog->setValue(qBound(0, percent, 100));
        return !dialog->wasCanceled();
    };
}

}  // namespace tarvel
