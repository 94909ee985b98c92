#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "exchange/duplicates.h"
#include "views/common/dialogs.h"

class QLabel;
class QListWidget;

namespace tarvel::lists {

class MergeDialog;

// 查找重复: the groups of contacts or accounts that look like one, each with
// why it was found; 合并 (cmd_merge) opens the chosen group side by side.
class DuplicatesDialog : public QDialog {
    Q_OBJECT
public:
    DuplicatesDialog(qint16 kindCode, std::shared_ptr<Messages> dialogs, QWidget* parent = nullptr);

    // Shows a merge dialog and says whether it merged; exec() unless set
    // (tests drive the dialog instead).
    void setMergeRunner(std::function<bool(MergeDialog&)> runner) { runner_ = std::move(runner); }
    // Searches again and shows the groups; false (the user told) when it failed.
    bool search();
    const QList<exchange::DuplicateGroup>& groups() const { return groups_; }
    // Whether a merge changed the records since the dialog opened.
    bool merged() const { return merged_; }
    void mergeCurrent();

private:
    qint16 kindCode_;
    std::shared_ptr<Messages> dialogs_;
    std::function<bool(MergeDialog&)> runner_;
    QList<exchange::DuplicateGroup> groups_;
    QListWidget* list_;
    QLabel* count_;
    bool merged_ = false;
};

}  // namespace tarvel::lists
