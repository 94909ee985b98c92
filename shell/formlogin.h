#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <memory>

#include "views/common/dialogs.h"

namespace tarvel {

// The password prompt of every start after the first. Sets the passed flag and
// closes on a correct password; a wrong one may be retried without limit.
class FormLogin : public QDialog {
    Q_OBJECT
public:
    explicit FormLogin(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setShellOpener(std::shared_ptr<ShellOpener> opener) { opener_ = std::move(opener); }

public slots:
    void cmdOkClick();
    void cmdNoClick();
    void label1Click();

private:
    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<ShellOpener> opener_;
    QLineEdit* txtPassword_;
    QPushButton* cmdOk_;
    QPushButton* cmdNo_;
    QPushButton* label1_;
    QLabel* status_;
};

}  // namespace tarvel
