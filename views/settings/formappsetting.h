#pragma once

#include <QTabWidget>
#include <functional>
#include <memory>

#include "custom/appsetting.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"

namespace tarvel {

class SettingsPage;

// What the settings window asks of the window that hosts the module screens.
struct LayoutHost {
    // Shows the toolbar as the toolbar page now has it: the checked entries,
    // in list order. Nothing is stored.
    std::function<void(const QList<AppSetting>& entries)> previewToolbar;
    // Every screen rebuilds itself from the stored layout.
    std::function<void()> rebuildScreens;
};

// The settings window: a page each in SSTab1 for the module captions, the
// toolbar buttons, the related panels of each record kind, the columns of
// the lists and the user's profile. Saving writes the page shown, then offers
// to apply the new layout to the open screens at once. A template file
// carries the whole customisation to another installation.
class FormAppSetting : public PageWidget {
    Q_OBJECT
public:
    // The pages of SSTab1, in order; the five related-panel pages follow
    // RelatedFirst in the order of RelatedPage::owners().
    enum Tab {
        CaptionsTab = 0,
        ToolbarTab = 1,
        RelatedFirst = 2,
        FieldsTab = 7,
        PersonalTab = 8,
        SafekeepingTab = 9
    };

    explicit FormAppSetting(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setFileDialogs(std::shared_ptr<FileDialogs> files) { files_ = std::move(files); }
    void setLayoutHost(LayoutHost host);

    // Re-reads every page from storage.
    void load();
    void fill(const PageRequest& request) override;
    // Titles and labels that show module captions.
    void rebuildLayout() override;

    QTabWidget* SSTab1() const { return tabs_; }

public slots:
    void cmdSaveClick();
    // Write the customisation to a template file, or load one in its place.
    void cmdSaveTemplateClick();
    void cmdLoadTemplateClick();

private:
    SettingsPage* page(int tab) const;

    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<FileDialogs> files_;
    LayoutHost host_;
    QTabWidget* tabs_;
};

}  // namespace tarvel
