#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <memory>

#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"

namespace tarvel {

// The task's related panel: one tab per linked kind (sch_opp, sch_con,
// sch_acc, sch_doc) with the records linked to the task, a search for records
// to link, and add and unlink. Captions, visibility and whether links may be
// edited come from the stored interface layout. A task not yet saved has no
// links to show: the tabs are disabled until it is.
class TaskRelatedPanel : public QTabWidget {
    Q_OBJECT
public:
    // `dialogs` is the owning window's seam member, read at each use.
    TaskRelatedPanel(const std::shared_ptr<Messages>& dialogs, QWidget* parent = nullptr);

    void showTask(int taskId);
    int taskId() const { return taskId_; }
    // Captions, visible tabs and edit rights from the stored layout.
    void rebuildLayout();

    // The linked records of a kind as listed (ids in Qt::UserRole).
    QListWidget* linkedList(qint16 recordKind) const;

signals:
    void linksChanged();

private:
    struct Section {
        qint16 kind;
        QString name;  // sch_opp, ...
        QWidget* page = nullptr;
        QListWidget* linked = nullptr;
        QLineEdit* find = nullptr;
        QListWidget* found = nullptr;
        QPushButton* add = nullptr;
        QPushButton* remove = nullptr;
        QString caption;
        bool editable = true;
    };
    void buildSection(Section& s);
    void refreshSection(Section& s);
    void search(Section& s);
    void addChosen(Section& s);
    void unlinkChosen(Section& s);
    void updateCaption(Section& s);

    const std::shared_ptr<Messages>& dialogs_;
    int taskId_ = 0;
    QList<Section> sections_;
};

}  // namespace tarvel
