#include "views/settings/personalpage.h"

#include "custom/userprofile.h"

namespace tarvel {

using namespace settingsui;

PersonalPage::PersonalPage(QWidget* parent) : SettingsPage(parent) {
    setObjectName(QStringLiteral("tab_personal"));
    QFormLayout* form = formRows();
    auto row = [&](const char* key, const char* label) {
        QLineEdit* edit = lineEdit(this, QStringLiteral("txt_") + QLatin1String(key));
        form->addRow(QString::fromUtf8(label), edit);
        return edit;
    };
    name_ = row("user_name", "姓名：");
    account_ = row("user_account", "单位：");
    jobTitle_ = row("user_title", "职务：");
    email_ = row("user_email", "电子邮件：");
    formPage(this,
             QStringLiteral("导出Tarvel报表时需要填写这些信息，"
                            "对方导入报表时用它们识别报表的发送人。"),
             form);
}

void PersonalPage::load() {
    const UserProfile profile = UserProfile::load();
    name_->setText(profile.name);
    account_->setText(profile.account);
    jobTitle_->setText(profile.title);
    email_->setText(profile.email);
}

bool PersonalPage::save() {
    UserProfile profile;
    profile.name = name_->text().trimmed();
    profile.account = account_->text().trimmed();
    profile.title = jobTitle_->text().trimmed();
    profile.email = email_->text().trimmed();
    return profile.save();
}

}  // namespace tarvel
