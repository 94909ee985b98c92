#include "shell/formlogin.h"

#include <QDir>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "shell/globals.h"
#include "store/encode.h"
#include "store/faulttext.h"
#include "views/common/buttons.h"
#include "views/common/page.h"

namespace tarvel {

FormLogin::FormLogin(QWidget* parent)
    : QDialog(parent),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      opener_(std::make_shared<DesktopShellOpener>()) {
    setObjectName(QStringLiteral("form_login"));
    setWindowTitle(QStringLiteral("Tarvel日志软件 - 登录"));

    auto* product = new QLabel(QStringLiteral("Tarvel日志软件V3.1"), this);
    product->setObjectName(QStringLiteral("lbl_product"));
    setHeadingFont(product, 1.5);

    auto* prompt = new QLabel(QStringLiteral("请输入登录密码（区分大小写）："), this);
    prompt->setObjectName(QStringLiteral("lbl_prompt"));

    txtPassword_ = new QLineEdit(this);
    txtPassword_->setObjectName(QStringLiteral("txt_password"));
    txtPassword_->setEchoMode(QLineEdit::Password);
    txtPassword_->setMinimumWidth(260);
    prompt->setBuddy(txtPassword_);

    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("lbl_status"));
    status_->setWordWrap(true);
    status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    status_->setStyleSheet(QStringLiteral("color: #b00020;"));
    status_->hide();

    label1_ = flatButton(QStringLiteral("Label1"), QStringLiteral("访问Tarvel网站"), this);

    cmdOk_ = new QPushButton(QStringLiteral("确定"), this);
    cmdOk_->setObjectName(QStringLiteral("cmd_ok"));
    cmdNo_ = new QPushButton(QStringLiteral("退出"), this);
    cmdNo_->setObjectName(QStringLiteral("cmd_no"));
    // Enter is handled by the password box alone, so one key press is one attempt.
    for (QPushButton* b : {cmdOk_, cmdNo_}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(label1_);
    buttons->addStretch(1);
    buttons->addWidget(cmdOk_);
    buttons->addWidget(cmdNo_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 18);
    layout->setSpacing(10);
    layout->addWidget(product);
    layout->addSpacing(6);
    layout->addWidget(prompt);
    layout->addWidget(txtPassword_);
    layout->addWidget(status_);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOk_, &QPushButton::clicked, this, &FormLogin::cmdOkClick);
    connect(cmdNo_, &QPushButton::clicked, this, &FormLogin::cmdNoClick);
    connect(txtPassword_, &QLineEdit::returnPressed, this, &FormLogin::cmdOkClick);
    connect(label1_, &QPushButton::clicked, this, &FormLogin::label1Click);

    // Every read of a missing file fails quietly and the login can never
    // succeed, so say here which file was looked for.
    QString where;
    bool missing = false;
    if (!dataFileOpens(&where, &missing)) {
        // A good file in too deep a folder is never called damaged.
        const QString why =
            missing ? QStringLiteral("无法打开数据文件：文件不存在。")
            : pathTooLong(where)
                ? plainOpenFault(QString(), where)
                : QStringLiteral("无法打开数据文件：文件已损坏或不是Tarvel数据文件。");
        status_->setText(why + QStringLiteral("\n查找位置：") + QDir::toNativeSeparators(where));
        status_->show();
    } else if (const QString problem = writeProblem(dataFilePath()); !problem.isEmpty()) {
        // Said now, not at the first save that fails.
        status_->setText(problem);
        status_->show();
    }
    txtPassword_->setFocus();
}

void FormLogin::cmdOkClick() {
    SoftwareSetting& setting = softwareSetting();
    setting.GetValue(QStringLiteral("login"), QStringLiteral("password"));
    const QString stored = setting.Set_Value().trimmed();
    const QString typed = encode().MD5(txtPassword_->text().trimmed());
    if (typed != stored) {
        dialogs_->info(messageTitle(),
                       QStringLiteral("密码不对！提示密码区分大小写，您是否无意中按了CapsLock 或 "
                                      "Shift 键？"));
        txtPassword_->clear();
        txtPassword_->setFocus();
        return;
    }
    appGlobals().passed = true;
    accept();
}

void FormLogin::cmdNoClick() {
    reject();
}

void FormLogin::label1Click() {
    const QString address = settingValue(QStringLiteral("website"), QStringLiteral("homepage"));
    if (!address.isEmpty()) opener_->open(QUrl::fromUserInput(address));
}

}  // namespace tarvel
