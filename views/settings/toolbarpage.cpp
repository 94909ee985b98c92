#include "views/settings/toolbarpage.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

#include "custom/appsettings.h"
#include "views/common/buttons.h"

namespace tarvel {

using namespace settingsui;

ToolbarPage::ToolbarPage(QWidget* parent) : SettingsPage(parent) {
    setObjectName(QStringLiteral("tab_toolbar"));
    lvMenu_ = new QListWidget(this);
    lvMenu_->setObjectName(QStringLiteral("lv_menu"));
    lvMenu_->setMinimumWidth(260);
    lvMenu_->setMaximumWidth(360);
    connect(lvMenu_, &QListWidget::itemClicked, this, &ToolbarPage::lvMenuItemClick);
    // Ticking a box is a click on the item as well.
    connect(lvMenu_, &QListWidget::itemChanged, this, &ToolbarPage::lvMenuItemClick);
    cmdMenuUp_ = namedButton(this, "Cmd_menu_up", QStringLiteral("上移(&U)"));
    cmdMenuDown_ = namedButton(this, "cmd_menu_down", QStringLiteral("下移(&D)"));
    connect(cmdMenuUp_, &QPushButton::clicked, this, &ToolbarPage::cmdMenuUpClick);
    connect(cmdMenuDown_, &QPushButton::clicked, this, &ToolbarPage::cmdMenuDownClick);

    auto* row = new QHBoxLayout;
    row->addWidget(lvMenu_, 1);
    row->addLayout(moveButtons(cmdMenuUp_, cmdMenuDown_));
    row->addStretch(1);
    pageLayout(this, QStringLiteral("勾选要显示在工具栏上的按钮，用“上移”“下移”调整顺序；"
                                    "分隔线用来把按钮分组。工具栏会立即显示修改的效果。"))
        ->addLayout(row, 1);
}

void ToolbarPage::load() {
    AppSettings entries;
    entries.GetToolbarIndex(0);
    QSignalBlocker block(lvMenu_);
    lvMenu_->clear();
    for (const AppSetting& e : entries) {
        auto* item = new QListWidgetItem(e.ObjDesc().trimmed(), lvMenu_);
        item->setData(Qt::UserRole, e.ObjName());
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(e.ObjVisible() != 0 ? Qt::Checked : Qt::Unchecked);
    }
    cmdMenuUp_->setEnabled(false);
    cmdMenuDown_->setEnabled(false);
}

bool ToolbarPage::save() {
    bool ok = true;
    for (int i = 0; i < lvMenu_->count(); ++i) {
        const QListWidgetItem* item = lvMenu_->item(i);
        AppSetting e;
        e.setObjName(item->data(Qt::UserRole).toString());
        e.setObjIndex(qint16(i + 1));
        e.setObjVisible(item->checkState() == Qt::Checked ? -1 : 0);
        ok = e.SaveToolbarIndex() && ok;
    }
    return ok;
}

void ToolbarPage::renameItems(const QHash<QString, QString>& captions) {
    QSignalBlocker block(lvMenu_);
    for (int i = 0; i < lvMenu_->count(); ++i) {
        QListWidgetItem* item = lvMenu_->item(i);
        const auto it = captions.constFind(item->data(Qt::UserRole).toString());
        if (it != captions.constEnd()) item->setText(it.value());
    }
}

void ToolbarPage::lvMenuItemClick() {
    enableMoves(cmdMenuUp_, cmdMenuDown_, lvMenu_->currentRow(), lvMenu_->count());
    if (!preview_) return;
    QList<AppSetting> shown;
    for (int i = 0; i < lvMenu_->count(); ++i) {
        const QListWidgetItem* item = lvMenu_->item(i);
        if (item->checkState() != Qt::Checked) continue;
        AppSetting e;
        e.setObjType(1);
        e.setObjName(item->data(Qt::UserRole).toString());
        e.setObjDesc(item->text());
        e.setObjVisible(-1);
        e.setObjIndex(qint16(i + 1));
        shown << e;
    }
    preview_(shown);
}

void ToolbarPage::move(int step) {
    const int row = lvMenu_->currentRow();
    const int to = row + step;
    if (row >= 0 && to >= 0 && to < lvMenu_->count()) {
        QSignalBlocker block(lvMenu_);
        QListWidgetItem* item = lvMenu_->takeItem(row);
        lvMenu_->insertItem(to, item);
        lvMenu_->setCurrentRow(to);
    }
    lvMenuItemClick();
}

void ToolbarPage::cmdMenuUpClick() {
    move(-1);
}

void ToolbarPage::cmdMenuDownClick() {
    move(1);
}

}  // namespace tarvel
