#pragma once

#include <QList>
#include <QPointer>
#include <functional>
#include <memory>

#include "browse/shownrow.h"
#include "views/common/dialogs.h"
#include "views/common/page.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QScrollArea;
class QSplitter;

namespace tarvel {

class NameSearch;

namespace lists {
class ListRows;
struct ListKind;
}  // namespace lists

// What the four detail pages share: the record shown (by id or a list
// condition), the modified flag and its question, the position in the list
// page of the kind and stepping through it, save and delete, tags, option
// combos with their editor, shell actions, and the area below the fields
// that holds the record's related panel.
class FormDetail : public PageWidget {
    Q_OBJECT
public:
    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setShellOpener(std::shared_ptr<ShellOpener> opener) { opener_ = std::move(opener); }
    // The rows of the kind's list page, which the page steps through and
    // deletes from; the function returns null while no list page is open.
    void setRows(std::function<lists::ListRows*()> rows) { rows_ = std::move(rows); }
    // Writes the shown record into the current history entry (a new record
    // once saved), so that going back returns to it.
    void setHistoryUpdate(std::function<void(const QString& condition, int id)> update) {
        historyUpdate_ = std::move(update);
    }

    // Shows request.recordId, else the record of a condition "WHERE xxx_id=N"
    // ("-1": a new, empty record). Page number 1 brings the related area forward.
    void fill(const PageRequest& request) override;
    void rebuildLayout() override;
    // Records came back or went elsewhere (an undo, a restore): the page reads
    // its record again, unless an edit is in progress (its save then asks when
    // the record changed beneath it).
    void refresh() override;

    int recordId() const { return recordId_; }
    // The page code of the list page of the kind.
    qint16 listPage() const;
    bool isModified() const { return modified_; }
    // Reads the shown record again (after its links changed elsewhere).
    void reload();
    QWidget* relatedArea() const { return related_; }
    void showRelated();
    // The position label's text: "No. 3/12".
    QString positionText() const;

public slots:
    bool save();
    void deleteRecord();
    void moveFirst();
    void movePrevious();
    void moveNext();
    void moveLast();

signals:
    // A record is shown (0 for a new one), or was saved.
    void recordShown(int id);

protected:
    // `list` is the list routines' number of the kind; the contact page names
    // its navigation buttons lbl_first.., the others lbl_movefirst...
    FormDetail(int list, const char* objectName, bool contactNavigation, QWidget* parent);

    // Writes record `id` (0: an empty new one) into the controls; false with
    // the record's error text.
    virtual bool showFields(int id, QString* error) = 0;
    // Reads the controls and stores them; `id` receives the key of a new
    // record. False with the error text, or with none when the user stopped
    // the save (and was told why).
    virtual bool saveFields(int* id, QString* error) = 0;
    // The record's name box: the title shows its text, and a record is not
    // stored without it ("请填写<word>。").
    void setNameBox(QLineEdit* box, const QString& word) {
        nameBox_ = box;
        nameWord_ = word;
    }
    QString recordName() const;

    // The note a full text box shows (see FieldLimit).
    QLabel* limitNote() const { return limitNote_; }
    // Where a page puts its fields.
    QWidget* fieldsArea() const { return fields_; }
    // A control of the fields area, named as the record class and tests know it.
    // The tab order follows the order in which the controls are made.
    template <typename T>
    T* make(const char* name) {
        auto* w = new T(fields_);
        w->setObjectName(QLatin1String(name));
        tabChain_.append(w);
        return w;
    }
    // A control of the fields area by its name.
    QWidget* field(const char* name) const;
    // The fields in two columns of sections, the right one ending in the
    // memo section "简介" that takes the height left; returns the memo box.
    QPlainTextEdit* arrangeColumns(std::initializer_list<QWidget*> left,
                                   std::initializer_list<QWidget*> right);
    // The list below a name box that offers the records found.
    QListWidget* matchList(const char* name, const QString& accessibleName);
    // The search of a name box into its match list; a failed search is told.
    // With `showChosen`, choosing a match shows that record.
    NameSearch* searchNames(QLineEdit* box, QListWidget* matches,
                            std::function<QString(const QString&)> statement, bool withAccount,
                            bool showChosen);
    // chk_private on its own form row.
    QCheckBox* addPrivateBox(QFormLayout* form);
    // The end of a basic section: the tags on the row of `tagColumn`, then
    // chk_private (returned in *privateBox); returns the section "基本信息".
    QWidget* finishBasicSection(QFormLayout* form, const char* tagColumn, QCheckBox** privateBox);
    // A web address box with a button that opens the page.
    void addWebRow(QFormLayout* form, const char* name, const char* button,
                   const QString& buttonName, const char* column, const QString& caption);
    // An address box with a button that looks the address up on the map.
    void addMapRow(QFormLayout* form, const char* name, const char* button,
                   const QString& buttonName, const char* column, const QString& caption);
    // A label for `field` captioned by the list field of `column` (or
    // `fallback`) and "：", kept up to date with the stored captions.
    QLabel* captionFor(QWidget* field, const char* column, const QString& fallback);
    void addRow(QFormLayout* form, QWidget* field, const char* column, const QString& fallback,
                QWidget* shown = nullptr);
    // An option combo with its small edit button, refilled from the kind's
    // option list `option`; returns the row holding both.
    QWidget* optionCombo(QComboBox* combo, const char* button, const QString& option,
                         const QString& fieldWord);
    // Option combos on form rows: the combo, its edit button, the option
    // name, the list field of its caption and the caption to fall back on.
    struct OptionField {
        const char* name;
        const char* button;
        const char* option;
        const char* column;
        const char* caption;
    };
    void addOptionRows(QFormLayout* form, std::initializer_list<OptionField> fields);
    // txt_tag, Img_tag and the checked list Lst_tag of the kind's tags.
    QWidget* tagEditor();
    void showTags(const QString& tags);
    QString tagText() const;
    // A small flat button showing `symbol`, read out as `name`.
    QPushButton* iconButton(const char* objectName, const QString& symbol, const QString& name);
    // Called once the fields are made: every edit control raises the
    // modified flag, and the tab order runs through the fields, then save,
    // delete and the navigation buttons.
    void finishFields();
    // Shell actions; a failure is told.
    void openUrl(const QString& text);
    void openWebPage(const QString& address);
    // The search of setting ("website", key) for `text`.
    void webSearch(const char* key, const QString& text);
    // An amount box holds a number (or nothing); else the user is told.
    bool checkAmount(QLineEdit* box, const QString& caption);
    // A record needs its name; without one the user is told.
    bool requireName();
    void info(const QString& text);
    // The unsaved-changes question; true when the page may move on.
    bool mayLeave();
    void showRecord(int id);
    void setModified(bool value);
    // While loading, edits do not raise the modified flag.
    bool loading() const { return loading_; }
    QString objectCode() const;
    // The kind code (kind::Contact, ...) of the page's records.
    qint16 recordCode() const;
    const lists::ListKind& kind() const { return kind_; }
    lists::ListRows* rows() const;
    // The record as the page showed it, for the save to compare with.
    lists::ShownRow* shownRow() { return &shown_; }

    std::shared_ptr<Messages> dialogs_;

private:
    // A step through the list's rows, after the unsaved question.
    void step(bool (lists::ListRows::*move)());
    void updateHeader();
    void applyCaptions();

    const lists::ListKind& kind_;
    QString moduleCaption_;  // the module's caption in the interface layout
    std::shared_ptr<ShellOpener> opener_;
    std::function<lists::ListRows*()> rows_;
    std::function<void(const QString&, int)> historyUpdate_;
    int recordId_ = 0;
    lists::ShownRow shown_;
    bool modified_ = false;
    bool loading_ = false;
    QWidget* fields_;
    QWidget* related_;
    QSplitter* splitter_;
    QLabel* title_;
    QLabel* position_;
    QLabel* limitNote_;
    QLineEdit* nameBox_ = nullptr;
    QString nameWord_;
    QLineEdit* txtTag_ = nullptr;
    QListWidget* lstTag_ = nullptr;
    struct Caption {
        QPointer<QLabel> label;
        const char* column;
        QString fallback;
    };
    QList<Caption> captions_;
    struct Option {
        QPointer<QComboBox> combo;
        QString option;
    };
    QList<Option> options_;
    QList<QPointer<QWidget>> tabChain_;
    QList<QWidget*> headerButtons_;
};

}  // namespace tarvel
