#pragma once

#include <QDialog>
#include <QHash>
#include <memory>

#include "exchange/recordmerge.h"
#include "views/common/dialogs.h"

class QButtonGroup;

namespace tarvel::lists {

// The records of a duplicate group side by side: a row per field with a
// button per record holding its value, the filled value preferred, and which
// record stays. 合并 (cmd_merge) merges them after asking.
class MergeDialog : public QDialog {
    Q_OBJECT
public:
    MergeDialog(qint16 kindCode, const QList<qint64>& keys, std::shared_ptr<Messages> dialogs,
                QWidget* parent = nullptr);

    // False when the records could not be read (the user was told).
    bool isReady() const { return !records_.isEmpty(); }
    // What 合并 will do with the choices as they stand.
    exchange::MergeRequest request() const;
    // Asks, merges; accepted on success, told why otherwise.
    void merge();

private:
    void build();

    qint16 kindCode_;
    std::shared_ptr<Messages> dialogs_;
    QList<exchange::MergeRecord> records_;
    QStringList columns_;
    QButtonGroup* kept_ = nullptr;
    QButtonGroup* account_ = nullptr;        // contacts with an account: whose stays
    QHash<QString, QButtonGroup*> choices_;  // column -> one button per record
};

}  // namespace tarvel::lists
