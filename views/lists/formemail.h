#pragma once

#include <QList>
#include <memory>

#include "browse/mailing.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"

class QLineEdit;
class QListWidget;
class QPlainTextEdit;

namespace tarvel::lists {

// The e-mail window (form_email): the contacts of its condition (the ticked
// ones when it has none) with their addresses, those without one listed
// apart, a subject and a body that starts with the user's signature. Sending
// hands the message to the user's mail program with the addresses as Bcc and
// marks the contacts as written to.
class FormEmail : public PageWidget {
    Q_OBJECT
public:
    explicit FormEmail(QWidget* parent = nullptr);
    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setShellOpener(std::shared_ptr<ShellOpener> opener) { opener_ = std::move(opener); }

    void fill(const PageRequest& request) override;
    void send();

private:
    void info(const QString& text);

    MailStore store_;
    QList<MailRecipient> recipients_;
    QListWidget* to_;
    QListWidget* without_;
    QLineEdit* subject_;
    QPlainTextEdit* body_;
    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<ShellOpener> opener_;
};

}  // namespace tarvel::lists
