#pragma once

#include "views/settings/settingspage.h"

namespace tarvel {

// The module captions (txt_<module>): every module needs a name.
class CaptionsPage : public SettingsPage {
    Q_OBJECT
public:
    explicit CaptionsPage(QWidget* parent = nullptr);
    void load() override;
    bool save() override;
    bool ready(Messages& dialogs) override;
    void saved() override;
    QString title(const ModuleCaptions&) const override { return QStringLiteral("模块名称"); }

signals:
    // Module key -> caption, as just saved.
    void captionsSaved(const QHash<QString, QString>& captions);

private:
    QHash<QString, QLineEdit*> edits_;
};

}  // namespace tarvel
