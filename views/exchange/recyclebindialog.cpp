#include "views/exchange/recyclebindialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMap>
#include <QVBoxLayout>

#include "exchange/recyclebin.h"
#include "records/kinds.h"
#include "views/common/buttons.h"

namespace tarvel {

namespace {

constexpr int kEntryRole = Qt::UserRole;

QString kindCaption(qint16 code) {
    const RecordKindInfo* k = kindByCode(code);
    return k ? k->captionText() : QString();
}

QString when(const QDateTime& at) {
    return at.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

}  // namespace

RecycleBinDialog::RecycleBinDialog(std::shared_ptr<Messages> dialogs, QWidget* parent)
    : QDialog(parent), dialogs_(std::move(dialogs)) {
    setObjectName(QStringLiteral("dlg_recycle_bin"));
    setWindowTitle(QStringLiteral("回收站"));
    resize(640, 420);
    auto* search = new QLabel(QStringLiteral("查找(&F)"));
    search->setObjectName(QStringLiteral("lbl_bin_search"));
    txtSearch_ = new QLineEdit;
    txtSearch_->setObjectName(QStringLiteral("txt_bin_search"));
    txtSearch_->setPlaceholderText(QStringLiteral("名称或类别"));
    search->setBuddy(txtSearch_);
    auto* list = new QLabel(
        QStringLiteral("已删除的记录(&L)（%1天后自动清除）").arg(exchange::recyclebin::keepDays()));
    list->setObjectName(QStringLiteral("lbl_bin_entries"));
    grid_ = new QTreeWidget;
    grid_->setObjectName(QStringLiteral("lv_bin_entries"));
    grid_->setHeaderLabels(
        {QStringLiteral("删除时间"), QStringLiteral("类别"), QStringLiteral("名称")});
    grid_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    grid_->setUniformRowHeights(true);
    grid_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    grid_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list->setBuddy(grid_);
    grid_->setAccessibleName(QStringLiteral("已删除的记录"));
    cmdRestore_ = namedButton(nullptr, "cmd_bin_restore", QStringLiteral("恢复(&R)"));
    cmdPurge_ = namedButton(nullptr, "cmd_bin_purge", QStringLiteral("彻底删除(&D)"));
    cmdEmpty_ = namedButton(nullptr, "cmd_bin_empty", QStringLiteral("清空回收站(&E)"));
    auto* cmdClose = namedButton(nullptr, "cmd_close", QStringLiteral("关闭"));

    auto* layout = new QVBoxLayout(this);
    auto* searchRow = new QHBoxLayout;
    searchRow->addWidget(search);
    searchRow->addWidget(txtSearch_, 1);
    layout->addLayout(searchRow);
    layout->addWidget(list);
    layout->addWidget(grid_, 1);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {cmdRestore_, cmdPurge_, cmdEmpty_}) buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    layout->addLayout(buttons);

    connect(txtSearch_, &QLineEdit::textChanged, this, &RecycleBinDialog::refresh);
    connect(grid_, &QTreeWidget::itemSelectionChanged, this, &RecycleBinDialog::updateButtons);
    connect(cmdRestore_, &QPushButton::clicked, this, &RecycleBinDialog::cmd_bin_restore_Click);
    connect(cmdPurge_, &QPushButton::clicked, this, &RecycleBinDialog::cmd_bin_purge_Click);
    connect(cmdEmpty_, &QPushButton::clicked, this, &RecycleBinDialog::cmd_bin_empty_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    refresh();
}

void RecycleBinDialog::refresh() {
    grid_->clear();
    QString error;
    const QList<exchange::BinEntry> entries =
        exchange::recyclebin::entries(txtSearch_->text(), &error);
    if (!error.isEmpty())
        dialogs_->warning(messageTitle(), QStringLiteral("无法读取回收站：") + error);
    QMap<qint64, int> perBatch;
    for (const exchange::BinEntry& e : entries) ++perBatch[e.batch];
    QMap<qint64, QTreeWidgetItem*> groups;
    for (const exchange::BinEntry& e : entries) {
        QTreeWidgetItem* parent = nullptr;
        if (perBatch.value(e.batch) > 1) {
            parent = groups.value(e.batch);
            if (!parent) {
                parent = new QTreeWidgetItem(
                    grid_, {when(e.deletedAt), QStringLiteral("批量删除"),
                            QStringLiteral("%1条记录").arg(perBatch.value(e.batch))});
                parent->setExpanded(true);
                groups.insert(e.batch, parent);
            }
        }
        const QStringList columns{when(e.deletedAt), kindCaption(e.kind), e.name};
        auto* item =
            parent ? new QTreeWidgetItem(parent, columns) : new QTreeWidgetItem(grid_, columns);
        item->setData(0, kEntryRole, e.id);
    }
    grid_->expandAll();
    updateButtons();
}

QList<qint64> RecycleBinDialog::chosenEntries() const {
    QList<qint64> ids;
    auto add = [&](const QTreeWidgetItem* item) {
        const qint64 id = item->data(0, kEntryRole).toLongLong();
        if (id != 0 && !ids.contains(id)) ids << id;
    };
    for (const QTreeWidgetItem* item : grid_->selectedItems()) {
        add(item);
        for (int i = 0; i < item->childCount(); ++i) add(item->child(i));
    }
    return ids;
}

void RecycleBinDialog::updateButtons() {
    const bool chosen = !grid_->selectedItems().isEmpty();
    cmdRestore_->setEnabled(chosen);
    cmdPurge_->setEnabled(chosen);
    cmdEmpty_->setEnabled(grid_->topLevelItemCount() > 0);
}

void RecycleBinDialog::cmd_bin_restore_Click() {
    const QList<qint64> ids = chosenEntries();
    if (ids.isEmpty()) return;
    QStringList lost;
    QString error;
    if (!exchange::recyclebin::restore(ids, &lost, &error)) {
        dialogs_->warning(messageTitle(), QStringLiteral("记录没有恢复，原因可能是") + error);
        return;
    }
    restoredAny_ = true;
    refresh();
    QString text = QStringLiteral("已恢复%1条记录。").arg(ids.size());
    if (!lost.isEmpty())
        text += QStringLiteral("\n以下关联的另一方已不存在，没有恢复：\n") +
                lost.join(QLatin1Char('\n'));
    dialogs_->info(messageTitle(), text);
}

void RecycleBinDialog::cmd_bin_purge_Click() {
    const QList<qint64> ids = chosenEntries();
    if (ids.isEmpty() ||
        !dialogs_->ask(
            questionTitle(),
            QStringLiteral("彻底删除选中的%1条记录后将无法恢复，确定吗？").arg(ids.size())))
        return;
    QString error;
    if (!exchange::recyclebin::purge(ids, &error))
        dialogs_->warning(messageTitle(), QStringLiteral("记录没有删除，原因可能是") + error);
    refresh();
}

void RecycleBinDialog::cmd_bin_empty_Click() {
    if (!dialogs_->ask(questionTitle(),
                       QStringLiteral("清空回收站后其中的记录将无法恢复，确定吗？")))
        return;
    QString error;
    if (!exchange::recyclebin::empty(&error))
        dialogs_->warning(messageTitle(), QStringLiteral("回收站没有清空，原因可能是") + error);
    refresh();
}

}  // namespace tarvel
