#pragma once

#include "views/settings/settingspage.h"

namespace tarvel {

// The user's profile, which report files carry to tell their sender.
class PersonalPage : public SettingsPage {
    Q_OBJECT
public:
    explicit PersonalPage(QWidget* parent = nullptr);
    void load() override;
    bool save() override;
    bool changesScreens() const override { return false; }
    QString title(const ModuleCaptions&) const override { return QStringLiteral("个人资料"); }

private:
    QLineEdit* name_;
    QLineEdit* account_;
    QLineEdit* jobTitle_;
    QLineEdit* email_;
};

}  // namespace tarvel
