#pragma once

#include <QLabel>
#include <QTabWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "browse/relatedrecords.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/related/panelform.h"

namespace tarvel {

class FormAddRelated;

// What the user is told when the data file refused a write of the panels:
// what was not saved, the usual causes, and the engine's reason.
QString refusedText(const QString& what, const QString& reason);

// The related panel a detail page hosts below its fields: one tab per kind
// linked to the page's record, each a grid of the linked records and a
// quick-edit section to add, change and unlink them without leaving the
// page. The object name (form_con_related, form_acc_related,
// form_opp_related, form_doc_related) tells the record classes which panel
// they serve; captions, shown tabs and edit rights come from the stored
// interface layout.
class FormRelated : public QWidget {
    Q_OBJECT
public:
    // `ownerKind`: the relation kind code of the page's record (contact,
    // account, opportunity or document).
    explicit FormRelated(qint16 ownerKind, QWidget* parent = nullptr);
    ~FormRelated() override;

    // The record whose links are shown; 0 = not yet saved: tabs disabled.
    void showRecord(int id);
    int recordId() const { return ownerId_; }
    qint16 ownerKind() const { return ownerKind_; }
    // Captions, shown kinds and edit rights again from the interface layout.
    void rebuildLayout();

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setFileDialogs(std::shared_ptr<FileDialogs> files) { files_ = std::move(files); }
    void setShellOpener(std::shared_ptr<ShellOpener> opener) { opener_ = std::move(opener); }
    // Opens the page of a related record (the task page for a task).
    void setRecordOpener(std::function<void(qint16 relationKind, int id)> opener) {
        recordOpener_ = std::move(opener);
    }
    // Begins a new task for this panel's record on the task page.
    void setNewTaskOpener(std::function<void(qint16 ownerKind, int ownerId)> opener) {
        newTaskOpener_ = std::move(opener);
    }

    // The add-related dialog for `kind`, shown window-modal; the panel
    // refreshes when it adds.
    FormAddRelated* openAddRelated(qint16 kind);

signals:
    // A link or a related record changed: the host page may re-read its record.
    void linksChanged();

private:
    struct Section;
    void buildSection(Section& s);
    QWidget* buildButtons(Section& s);
    void connectSearches(Section& s);
    void takeAccount(int id);
    void refreshSection(Section& s);
    void keepSortOrder(Section& s);
    void refreshCounts();
    void applyCaptions(Section& s);
    void selectCurrentRow(Section& s);
    void clearChoice(Section& s);
    void chooseRow(Section& s, int row);
    void showInSection(Section& s, int id);
    void newEntry(Section& s);
    void save(Section& s);
    // Whether the save may overwrite the shown record: asked when it changed
    // or went since it was shown (then *id becomes 0: saved as a new one).
    bool mayOverwrite(Section& s, int* id);
    bool askAccountQuestions(int contactId, relatedrecords::AccountChoice& choice);
    void unlink(Section& s);
    void sortBy(Section& s, int column);
    void openDocument();
    void chooseDocumentFile();
    void changed();
    Section* section(qint16 kind) const;
    int shownId(const Section& s) const;
    QWidget* control(const char* name) const;
    void tell(const QString& text) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

    qint16 ownerKind_;
    int ownerId_ = 0;
    PanelForm form_;
    QTabWidget* tabs_ = nullptr;
    QLabel* hint_ = nullptr;
    std::vector<std::unique_ptr<Section>> sections_;
    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<FileDialogs> files_;
    std::shared_ptr<ShellOpener> opener_;
    std::function<void(qint16, int)> recordOpener_;
    std::function<void(qint16, int)> newTaskOpener_;
    // The account the contact section showed, and one picked from its search.
    QString shownAccount_;
    int chosenAccount_ = 0;
};

}  // namespace tarvel
