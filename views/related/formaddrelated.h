#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QSet>
#include <memory>

#include "views/common/dialogs.h"

namespace tarvel {

// Adds several existing records of one kind to a record's links at once:
// a search by name, a list to choose from, and cmd_add.
class FormAddRelated : public QDialog {
    Q_OBJECT
public:
    // `kindName` ends the caption: "增加相关的" + "联系人". The records in
    // `linked` are linked already and not offered again.
    FormAddRelated(qint16 ownerKind, int ownerId, qint16 kind, const QString& kindName,
                   QSet<int> linked, std::shared_ptr<Messages> dialogs, QWidget* parent = nullptr);

private:
    void search();
    void addChosen();

    qint16 ownerKind_;
    int ownerId_;
    qint16 kind_;
    QSet<int> linked_;
    std::shared_ptr<Messages> dialogs_;
    QLineEdit* search_ = nullptr;
    QListWidget* found_ = nullptr;
};

}  // namespace tarvel
