#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "custom/appsetting.h"
#include "views/common/dialogs.h"
#include "views/common/page.h"

namespace tarvel {

// What the settings window asks of the window that hosts the module screens.
struct LayoutHost {
    // Shows the toolbar as the toolbar page now has it: the checked entries,
    // in list order. Nothing is stored.
    std::function<void(const QList<AppSetting>& entries)> previewToolbar;
    // Every screen rebuilds itself from the stored layout.
    std::function<void()> rebuildScreens;
};

// The settings window: module captions, toolbar buttons, the related panels
// of each record kind, the columns of the lists and the user's profile, one
// page each in SSTab1. Saving writes the page shown, then offers to apply
// the new layout to the open screens at once.
class FormAppSetting : public PageWidget {
    Q_OBJECT
public:
    // The pages of SSTab1, in order; the five related-panel pages follow
    // RelatedFirst in the order of relatedOwners().
    enum Tab { CaptionsTab = 0, ToolbarTab = 1, RelatedFirst = 2, FieldsTab = 7, PersonalTab = 8 };

    explicit FormAppSetting(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Dialogs> dialogs) { dialogs_ = std::move(dialogs); }
    void setLayoutHost(LayoutHost host) { host_ = std::move(host); }

    // Re-reads every page from storage.
    void load();
    void fill(const PageRequest& request) override;
    // Titles and labels that show module captions.
    void rebuildLayout() override;

    QTabWidget* SSTab1() const { return tabs_; }
    // The record kind of `fields` that the list-fields page shows.
    int fieldKind() const { return fieldKind_; }

    // The owner words of the related panels ("acc", "opp", "con", "sch",
    // "doc") and each owner's four panels, in text-box order.
    static QStringList relatedOwners();
    static QStringList relatedPanels(const QString& owner);
    // Option1's index to the record kind of `fields`: 0 accounts (2),
    // 1 opportunities (1), 2 contacts (3), 3 tasks (4), 4 documents (5).
    static int fieldKindForOption(int index);

public slots:
    void cmdSaveClick();
    void cmdMenuUpClick();
    void cmdMenuDownClick();
    void lvMenuItemClick();
    void option1Click(int index);
    void cmdFieldUpClick();
    void cmdFieldDownClick();

private:
    QWidget* buildCaptionsPage();
    QWidget* buildToolbarPage();
    QWidget* buildRelatedPage(const QString& owner);
    QWidget* buildFieldsPage();
    QWidget* buildPersonalPage();

    void loadCaptions();
    void loadToolbar();
    void loadRelated();
    void loadFields();
    void loadPersonal();

    bool saveCaptions();
    bool saveToolbar();
    bool saveRelated();
    bool saveFields();
    bool savePersonal();
    bool savePage(int tab);
    void renameToolbarItems();
    // Every module needs a name: an empty one is refused with a message.
    bool captionsComplete();

    void updateFieldButtons();
    QLineEdit* relatedText(const QString& owner, int index) const;
    QString moduleCaption(const QString& key) const;

    std::shared_ptr<Dialogs> dialogs_;
    LayoutHost host_;
    QHash<QString, QString> captions_;  // module key -> stored caption
    int fieldKind_ = 2;

    QTabWidget* tabs_;
    QHash<QString, QLineEdit*> captionEdits_;  // module key -> txt_<key>
    QListWidget* lvMenu_;
    QPushButton* cmdMenuUp_;
    QPushButton* cmdMenuDown_;
    QHash<QString, QCheckBox*> relatedVisible_;
    QHash<QString, QCheckBox*> relatedEditable_;
    QHash<QString, QList<QLineEdit*>> relatedTexts_;
    QHash<QString, QList<QLabel*>> relatedLabels_;
    QList<QRadioButton*> option1_;
    QTreeWidget* lvField_;
    QPushButton* cmdFieldUp_;
    QPushButton* cmdFieldDown_;
    QLineEdit* txtEdit_;
    QHash<QString, QLineEdit*> personalEdits_;  // setting key -> text box
};

}  // namespace tarvel
