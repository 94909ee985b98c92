#include "views/exchange/autobackuplist.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include "exchange/autobackup.h"
#include "exchange/filetools.h"
#include "views/common/buttons.h"

namespace tarvel {

AutoBackupList::AutoBackupList(QWidget* parent)
    : QGroupBox(QStringLiteral("自动备份（每天第一次启动和关闭时自动备份，已检验）"), parent) {
    setObjectName(QStringLiteral("grp_auto_backups"));
    auto* label = new QLabel(QStringLiteral("自动备份列表(&A)"));
    label->setObjectName(QStringLiteral("lbl_auto_backups"));
    grid_ = new QTreeWidget;
    grid_->setObjectName(QStringLiteral("lv_auto_backups"));
    grid_->setRootIsDecorated(false);
    grid_->setUniformRowHeights(true);
    grid_->setHeaderLabels(
        {QStringLiteral("备份时间"), QStringLiteral("大小"), QStringLiteral("各类记录数")});
    grid_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    grid_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    grid_->setMinimumHeight(120);
    label->setBuddy(grid_);
    grid_->setAccessibleName(QStringLiteral("自动备份列表"));
    cmdRestore_ = namedButton(nullptr, QStringLiteral("cmd_restore_auto"),
                              QStringLiteral("恢复选中的自动备份..."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(grid_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdRestore_);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    connect(grid_, &QTreeWidget::itemSelectionChanged, this,
            [this] { cmdRestore_->setEnabled(grid_->currentItem() != nullptr); });
    connect(cmdRestore_, &QPushButton::clicked, this, [this] {
        if (QTreeWidgetItem* item = grid_->currentItem())
            emit restoreRequested(item->data(0, Qt::UserRole).toString());
    });
}

void AutoBackupList::refresh() {
    grid_->clear();
    const QLocale locale(QLocale::Chinese, QLocale::China);
    const auto entries =
        exchange::listAutoBackups(exchange::autoBackupPlace(exchange::liveDataFile()).folder);
    for (const exchange::AutoBackupEntry& e : entries) {
        auto* item = new QTreeWidgetItem(
            grid_, {e.made.toString(QStringLiteral("yyyy-MM-dd HH:mm")),
                    locale.formattedDataSize(e.bytes, 1, QLocale::DataSizeTraditionalFormat),
                    e.recordsText()});
        item->setData(0, Qt::UserRole, e.path);
        item->setToolTip(0, QDir::toNativeSeparators(e.path));
    }
    if (grid_->topLevelItemCount() > 0) grid_->setCurrentItem(grid_->topLevelItem(0));
    cmdRestore_->setEnabled(grid_->currentItem() != nullptr);
}

}  // namespace tarvel
