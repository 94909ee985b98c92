#include "views/lists/formemail.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "views/common/buttons.h"

namespace tarvel::lists {

namespace {
QLabel* buddyLabel(const QString& name, const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setBuddy(buddy);
    return label;
}
}  // namespace

FormEmail::FormEmail(QWidget* parent)
    : PageWidget(parent),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      opener_(std::make_shared<DesktopShellOpener>()) {
    setObjectName(QStringLiteral("form_email"));
    auto* caption = new QLabel(QStringLiteral("群发邮件"), this);
    caption->setObjectName(QStringLiteral("lbl_caption"));
    setHeadingFont(caption, 1.4);
    to_ = new QListWidget(this);
    to_->setObjectName(QStringLiteral("lst_to"));
    without_ = new QListWidget(this);
    without_->setObjectName(QStringLiteral("lst_noaddress"));
    subject_ = new QLineEdit(this);
    subject_->setObjectName(QStringLiteral("txt_subject"));
    body_ = new QPlainTextEdit(this);
    body_->setObjectName(QStringLiteral("txt_body"));
    auto* sendButton = namedButton(this, QStringLiteral("cmd_send"), QStringLiteral("发送(&S)"));
    connect(sendButton, &QPushButton::clicked, this, &FormEmail::send);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(16, 12, 16, 12);
    grid->addWidget(caption, 0, 0, 1, 2);
    grid->addWidget(
        buddyLabel(QStringLiteral("lbl_to"), QStringLiteral("收件人(密送)(&T)："), to_, this), 1,
        0);
    grid->addWidget(buddyLabel(QStringLiteral("lbl_noaddress"),
                               QStringLiteral("没有电子邮件地址的联系人(&N)："), without_, this),
                    1, 1);
    grid->addWidget(to_, 2, 0);
    grid->addWidget(without_, 2, 1);
    grid->addWidget(
        buddyLabel(QStringLiteral("lbl_subject"), QStringLiteral("主题(&U)："), subject_, this), 3,
        0, 1, 2);
    grid->addWidget(subject_, 4, 0, 1, 2);
    grid->addWidget(
        buddyLabel(QStringLiteral("lbl_body"), QStringLiteral("内容(&B)："), body_, this), 5, 0, 1,
        2);
    grid->addWidget(body_, 6, 0, 1, 2);
    grid->addWidget(sendButton, 7, 1, Qt::AlignRight);
    grid->setRowStretch(2, 1);
    grid->setRowStretch(6, 2);
    setTabOrder(to_, without_);
    setTabOrder(without_, subject_);
    setTabOrder(subject_, body_);
    setTabOrder(body_, sendButton);
}

void FormEmail::info(const QString& text) {
    dialogs_->info(messageTitle(), text);
}

void FormEmail::fill(const PageRequest& request) {
    const QString condition = request.condition.trimmed().isEmpty()
                                  ? QStringLiteral(" WHERE con_check=true")
                                  : request.condition;
    QList<MailRecipient> without;
    recipients_.clear();
    to_->clear();
    without_->clear();
    if (!store_.load(condition, &recipients_, &without)) {
        info(QStringLiteral("收件人没有读出，原因可能是") + store_.ErrMsg());
        return;
    }
    for (const MailRecipient& r : std::as_const(recipients_))
        to_->addItem(r.name + QStringLiteral(" <") + r.address + QLatin1Char('>'));
    for (const MailRecipient& r : std::as_const(without)) without_->addItem(r.name);
    const QString signature = store_.signature();
    body_->setPlainText(signature.isEmpty() ? QString() : QStringLiteral("\n\n") + signature);
}

void FormEmail::send() {
    if (recipients_.isEmpty()) {
        info(QStringLiteral("没有可以发送的电子邮件地址。"));
        return;
    }
    QStringList addresses;
    QList<qint64> ids;
    for (const MailRecipient& r : std::as_const(recipients_)) {
        addresses << r.address;
        ids << r.id;
    }
    for (const QUrl& link : mailtoLinks(addresses, subject_->text(), body_->toPlainText()))
        if (!opener_->open(link)) {
            info(QStringLiteral("没有打开邮件程序，请检查系统的默认邮件程序。"));
            return;
        }
    if (!store_.stampSent(ids))
        info(QStringLiteral("发送标记没有保存，原因可能是") + store_.ErrMsg());
}

}  // namespace tarvel::lists
