#include "shell/forminit.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "browse/savefailure.h"
#include "shell/globals.h"
#include "store/encode.h"
#include "store/transaction.h"
#include "views/common/page.h"

namespace tarvel {

namespace {
QLabel* heading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    setHeadingFont(label, 1.3);
    return label;
}
}  // namespace

FormInit::FormInit(QWidget* parent)
    : QDialog(parent), dialogs_(std::make_shared<MessageBoxDialogs>(this)) {
    setObjectName(QStringLiteral("form_init"));
    setWindowTitle(QStringLiteral("Tarvel日志软件 - 首次使用"));

    for (int i = 0; i < 2; ++i) {
        frames_[i] = new QFrame(this);
        frames_[i]->setObjectName(QStringLiteral("Frame1"));
        frames_[i]->setProperty("Index", i);
    }

    // Page 0: the agreement.
    auto* agreementHead = heading(QStringLiteral("第一步：用户协议"), frames_[0]);
    auto* agreementHint = new QLabel(
        QStringLiteral("请仔细阅读下面的用户协议，同意后才能继续使用本软件。"), frames_[0]);
    agreementHint->setWordWrap(true);
    txtAgreement_ = new QPlainTextEdit(frames_[0]);
    txtAgreement_->setObjectName(QStringLiteral("txt_agreement"));
    // Read-only swallows every key that would change the text, Delete included.
    txtAgreement_->setReadOnly(true);
    txtAgreement_->setUndoRedoEnabled(false);
    txtAgreement_->setMinimumSize(520, 300);
    optAgree_ = new QRadioButton(QStringLiteral("我同意"), frames_[0]);
    optAgree_->setObjectName(QStringLiteral("opt_agree"));
    optDisagree_ = new QRadioButton(QStringLiteral("我不同意"), frames_[0]);
    optDisagree_->setObjectName(QStringLiteral("opt_disagree"));
    // Nobody agrees by default: the choice has to be made.
    optDisagree_->setChecked(true);
    auto* options = new QHBoxLayout;
    options->addWidget(optAgree_);
    options->addSpacing(24);
    options->addWidget(optDisagree_);
    options->addStretch(1);
    auto* page0 = new QVBoxLayout(frames_[0]);
    page0->setContentsMargins(0, 0, 0, 0);
    page0->addWidget(agreementHead);
    page0->addWidget(agreementHint);
    page0->addWidget(txtAgreement_, 1);
    page0->addLayout(options);

    // Page 1: the password.
    auto* passwordHead = heading(QStringLiteral("第二步：设置登录密码"), frames_[1]);
    auto* passwordHint = new QLabel(
        QStringLiteral("以后每次启动Tarvel都要输入这个密码。密码至少6个字符，区分大小写。\n"
                       "请牢记您的密码：密码遗忘后无法找回。"),
        frames_[1]);
    passwordHint->setWordWrap(true);
    txtPassword1_ = new QLineEdit(frames_[1]);
    txtPassword1_->setObjectName(QStringLiteral("txt_password1"));
    txtPassword1_->setEchoMode(QLineEdit::Password);
    txtPassword2_ = new QLineEdit(frames_[1]);
    txtPassword2_->setObjectName(QStringLiteral("txt_password2"));
    txtPassword2_->setEchoMode(QLineEdit::Password);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("输入密码："), txtPassword1_);
    form->addRow(QStringLiteral("再次输入："), txtPassword2_);
    auto* page1 = new QVBoxLayout(frames_[1]);
    page1->setContentsMargins(0, 0, 0, 0);
    page1->addWidget(passwordHead);
    page1->addWidget(passwordHint);
    page1->addSpacing(12);
    page1->addLayout(form);
    page1->addStretch(1);

    cmdBack_ = new QPushButton(QStringLiteral("上一步"), this);
    cmdBack_->setObjectName(QStringLiteral("cmd_back"));
    cmdForward_ = new QPushButton(QStringLiteral("下一步"), this);
    cmdForward_->setObjectName(QStringLiteral("cmd_forward"));
    for (QPushButton* b : {cmdBack_, cmdForward_}) b->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdBack_);
    buttons->addWidget(cmdForward_);

    stack_ = new QStackedLayout;
    stack_->addWidget(frames_[0]);
    stack_->addWidget(frames_[1]);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addLayout(stack_, 1);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(cmdForward_, &QPushButton::clicked, this, &FormInit::cmdForwardClick);
    connect(cmdBack_, &QPushButton::clicked, this, &FormInit::cmdBackClick);

    showPage(0);
    SoftwareSetting& setting = softwareSetting();
    setting.GetValue(QStringLiteral("login"), QStringLiteral("agreement"));
    txtAgreement_->setPlainText(setting.Set_Description());
}

void FormInit::showPage(int index) {
    stack_->setCurrentIndex(index);
    cmdBack_->setEnabled(index == 1);
    cmdForward_->setText(index == 1 ? QStringLiteral("完成") : QStringLiteral("下一步"));
    if (index == 1) txtPassword1_->setFocus();
}

void FormInit::cmdBackClick() {
    showPage(0);
}

void FormInit::refuse(const QString& text) {
    dialogs_->info(messageTitle(), text);
    txtPassword1_->setFocus();
}

void FormInit::cmdForwardClick() {
    if (currentPage() == 0) {
        if (optDisagree_->isChecked()) {
            dialogs_->info(
                messageTitle(),
                QStringLiteral("很遗憾您不同意我们的用户协议，有什么建议请发邮件给我们") +
                    settingValue(QStringLiteral("website"), QStringLiteral("support_email")) +
                    QStringLiteral("， 谢谢！"));
            reject();  // the passed flag stays false, so the program ends
            return;
        }
        showPage(1);
        return;
    }

    const QString first = txtPassword1_->text().trimmed();
    const QString second = txtPassword2_->text().trimmed();
    if (first.isEmpty() || second.isEmpty())
        return refuse(QStringLiteral("您需要输入两次密码，并且两个密码要一致！"));
    // Six characters pass although the message asks for more than six.
    if (first.size() < 6 || second.size() < 6)
        return refuse(QStringLiteral("密码长度要求超过6个英文字符！"));
    if (first != second) return refuse(QStringLiteral("两次输入的密码不一致!"));

    // Both settings or neither: a refused write leaves the first run to do again.
    Transaction transaction;
    SoftwareSetting& setting = softwareSetting();
    const QString login = QStringLiteral("login");
    const bool stored =
        transaction.isActive() &&
        setting.ChangeValue(login, QStringLiteral("password"), encode().MD5(first)) &&
        setting.ChangeValue(login, QStringLiteral("agreement"), std::nullopt,
                            QStringLiteral("1")) &&
        transaction.commit();
    if (!stored) {
        transaction.rollback();
        dialogs_->info(messageTitle(), saveFailedText(QStringLiteral("密码")));
        return;
    }
    appGlobals().passed = true;
    accept();
}

}  // namespace tarvel
