#pragma once

#include <QDialog>
#include <QFrame>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedLayout>
#include <memory>

#include "views/common/dialogs.h"

namespace tarvel {

// The first-run window: page 0 shows the user agreement, page 1 asks for the
// password twice. Finishing stores the password's digest, marks the agreement
// accepted and sets the passed flag.
class FormInit : public QDialog {
    Q_OBJECT
public:
    explicit FormInit(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }

    // The control array Frame1: both pages carry the name, told apart by index.
    QFrame* Frame1(int index) const { return frames_[index]; }
    int currentPage() const { return stack_->currentIndex(); }

public slots:
    void cmdForwardClick();
    void cmdBackClick();

private:
    void showPage(int index);
    void refuse(const QString& text);

    std::shared_ptr<Messages> dialogs_;
    QFrame* frames_[2];
    QStackedLayout* stack_;
    QPlainTextEdit* txtAgreement_;
    QRadioButton* optAgree_;
    QRadioButton* optDisagree_;
    QLineEdit* txtPassword1_;
    QLineEdit* txtPassword2_;
    QPushButton* cmdBack_;
    QPushButton* cmdForward_;
};

}  // namespace tarvel
