#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <memory>

#include "views/common/dialogs.h"

namespace tarvel {

// 回收站: the deleted records, newest first, a bulk delete as one group with
// its records below it; 恢复 puts the chosen ones back (a group whole),
// 彻底删除 and 清空回收站 remove them for good after asking.
class RecycleBinDialog : public QDialog {
    Q_OBJECT
public:
    explicit RecycleBinDialog(std::shared_ptr<Messages> dialogs, QWidget* parent = nullptr);

    // Reads the bin again, keeping only entries that match the search box.
    void refresh();
    QTreeWidget* grid() const { return grid_; }
    QLineEdit* searchBox() const { return txtSearch_; }
    // Whether anything was put back since the dialog opened.
    bool restoredAny() const { return restoredAny_; }

public slots:
    void cmd_bin_restore_Click();
    void cmd_bin_purge_Click();
    void cmd_bin_empty_Click();

private:
    // The entries of the selected rows (a group row stands for all of its own).
    QList<qint64> chosenEntries() const;
    void updateButtons();

    std::shared_ptr<Messages> dialogs_;
    QLineEdit* txtSearch_;
    QTreeWidget* grid_;
    QPushButton* cmdRestore_;
    QPushButton* cmdPurge_;
    QPushButton* cmdEmpty_;
    bool restoredAny_ = false;
};

}  // namespace tarvel
