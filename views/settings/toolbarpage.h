#pragma once

#include <QListWidget>
#include <functional>

#include "custom/appsetting.h"
#include "views/settings/settingspage.h"

namespace tarvel {

// The toolbar's buttons (lv_menu): ticked ones show, in list order; the main
// window previews every change at once.
class ToolbarPage : public SettingsPage {
    Q_OBJECT
public:
    using Preview = std::function<void(const QList<AppSetting>& entries)>;
    explicit ToolbarPage(QWidget* parent = nullptr);
    void setPreview(Preview preview) { preview_ = std::move(preview); }
    void load() override;
    bool save() override;
    QString title(const ModuleCaptions&) const override { return QStringLiteral("工具栏"); }
    // Shows new module captions, keeping any order or ticks not yet saved.
    void renameItems(const QHash<QString, QString>& captions);

public slots:
    void cmdMenuUpClick();
    void cmdMenuDownClick();
    void lvMenuItemClick();

private:
    void move(int step);

    Preview preview_;
    QListWidget* lvMenu_;
    QPushButton* cmdMenuUp_;
    QPushButton* cmdMenuDown_;
};

}  // namespace tarvel
