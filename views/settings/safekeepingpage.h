#pragma once

#include "views/settings/settingspage.h"

class QSpinBox;

namespace tarvel {

// Where automatic backups go and how much room they take, and how long the
// recycle bin keeps deleted records.
class SafekeepingPage : public SettingsPage {
    Q_OBJECT
public:
    explicit SafekeepingPage(QWidget* parent = nullptr);
    void load() override;
    bool ready(Messages& dialogs) override;
    bool save() override;
    bool changesScreens() const override { return false; }
    QString title(const ModuleCaptions&) const override { return QStringLiteral("备份与回收站"); }

private:
    QLineEdit* folder_;
    QSpinBox* limitMb_;
    QSpinBox* binDays_;
};

}  // namespace tarvel
