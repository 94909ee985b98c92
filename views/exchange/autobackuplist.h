#pragma once

#include <QGroupBox>
#include <QPushButton>
#include <QTreeWidget>

namespace tarvel {

// The automatic backups on the data exchange page: one row each (date, size,
// records of each kind), newest first, and 恢复 for the chosen one.
class AutoBackupList : public QGroupBox {
    Q_OBJECT
public:
    explicit AutoBackupList(QWidget* parent = nullptr);
    // Reads the backup folder of the live data file again.
    void refresh();
    QTreeWidget* grid() const { return grid_; }

signals:
    void restoreRequested(const QString& path);

private:
    QTreeWidget* grid_;
    QPushButton* cmdRestore_;
};

}  // namespace tarvel
