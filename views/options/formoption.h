#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <memory>

#include "browse/optionentries.h"
#include "browse/recordsetmodel.h"
#include "views/common/dialogs.h"

namespace tarvel {

// The options editor: adds, renames and deletes the entries of one option
// list, then refreshes the combo or list box it was opened from. The caller
// sets the control kind, the control, the list's object and name and the two
// display words, calls load() and shows the window modally.
class FormOption : public QDialog {
    Q_OBJECT
public:
    // -1 while a new entry is being typed, 0 while the text box shows the
    // current row.
    enum EditState { Adding = -1, Showing = 0 };

    explicit FormOption(QWidget* parent = nullptr);
    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }

    // "combobox" or "listbox": which routine refreshes the caller's control.
    void setControlKind(const QString& kind) { kind_ = kind; }
    void setControl(QWidget* control) { control_ = control; }
    void setObject(const QString& object) { object_ = object; }
    void setName(const QString& name) { name_ = name; }
    // The record kind's and the field's display words, as in "联系人的称呼".
    void setCaptions(const QString& recordWord, const QString& fieldWord) {
        recordWord_ = recordWord;
        fieldWord_ = fieldWord;
    }
    // Takes the settings (trimmed) and binds the grid to the list's entries.
    void load();

    int editState() const { return editState_; }
    DataControl& Adodc1() { return entries_.dataControl(); }
    RecordsetModel* gridModel() const { return model_; }

public slots:
    void cmdAddClick();
    void cmdSaveClick();
    void cmdDeleteClick();
    void cmdExitClick();

protected:
    // However the window closes, the caller's control shows the edited list.
    void done(int result) override;

private:
    // Shows the current row in the text box. A null entry shows as empty when
    // the user moved in the grid, as a blank when the data control moved.
    void showCurrent(bool dataControlMoved);
    // Reloads the grid and puts its cursor on the recordset's current row.
    void syncGrid();
    void refreshCaller();
    // The data file refused the change: say so, show what is stored.
    void refuseWrite();

    std::shared_ptr<Messages> dialogs_;
    QString kind_, object_, name_, recordWord_, fieldWord_;
    QPointer<QWidget> control_;
    int editState_ = Showing;
    bool syncing_ = false;
    OptionEntries entries_;
    RecordsetModel* model_;
    QLabel* lblOptName_;
    QLabel* lblOption_;
    QLineEdit* txtOption_;
    QTableView* grid_;
};

// Opens the editor over `parent` for a combo ("combobox") or list box
// ("listbox") and returns when it is closed.
void runOptionEditor(QWidget* parent, const QString& kind, QWidget* control, const QString& object,
                     const QString& name, const QString& recordWord, const QString& fieldWord);

}  // namespace tarvel
