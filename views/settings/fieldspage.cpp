#include "views/settings/fieldspage.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>

#include "custom/fsettings.h"
#include "views/common/buttons.h"

namespace tarvel {

using namespace settingsui;

int FieldsPage::fieldKindForOption(int index) {
    static const int kinds[] = {2, 1, 3, 4, 5};
    return index >= 0 && index < 5 ? kinds[index] : 0;
}

FieldsPage::FieldsPage(QWidget* parent) : SettingsPage(parent) {
    setObjectName(QStringLiteral("tab_fields"));
    auto* kinds = new QGroupBox(QStringLiteral("列表"), this);
    auto* kindsLayout = new QVBoxLayout(kinds);
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 5; ++i) {
        auto* option = new QRadioButton(kinds);
        option->setObjectName(QStringLiteral("Option1"));
        option->setProperty("Index", i);
        group->addButton(option, i);
        kindsLayout->addWidget(option);
        option1_ << option;
    }
    kindsLayout->addStretch(1);
    connect(group, &QButtonGroup::idClicked, this, &FieldsPage::option1Click);

    lvField_ = new QTreeWidget(this);
    lvField_->setObjectName(QStringLiteral("lv_field"));
    lvField_->setRootIsDecorated(false);
    lvField_->setMinimumWidth(240);
    lvField_->setMaximumWidth(360);
    connect(lvField_, &QTreeWidget::currentItemChanged, this, [this] {
        QTreeWidgetItem* item = lvField_->currentItem();
        txtEdit_->setEnabled(item != nullptr);
        txtEdit_->setText(item ? item->text(0) : QString());
        updateFieldButtons();
    });

    cmdFieldUp_ = namedButton(this, "cmd_field_up", QStringLiteral("上移(&U)"));
    cmdFieldDown_ = namedButton(this, "cmd_field_down", QStringLiteral("下移(&D)"));
    connect(cmdFieldUp_, &QPushButton::clicked, this, &FieldsPage::cmdFieldUpClick);
    connect(cmdFieldDown_, &QPushButton::clicked, this, &FieldsPage::cmdFieldDownClick);

    txtEdit_ = lineEdit(this, QStringLiteral("txt_edit"));
    // The caption follows the typing, so what is saved is what the list shows.
    connect(txtEdit_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (QTreeWidgetItem* item = lvField_->currentItem()) item->setText(0, text);
    });
    auto* editRow = new QHBoxLayout;
    auto* editLabel = new QLabel(QStringLiteral("列标题："), this);
    editLabel->setBuddy(txtEdit_);
    editRow->addWidget(editLabel);
    editRow->addWidget(txtEdit_, 1);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->addWidget(kinds, 0, 0, 2, 1);
    grid->addWidget(lvField_, 0, 1);
    grid->addLayout(moveButtons(cmdFieldUp_, cmdFieldDown_), 0, 2);
    grid->addLayout(editRow, 1, 1);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(0, 1);
    pageLayout(this, QStringLiteral("勾选的字段显示在列表中，顺序就是列的顺序；"
                                    "选中一个字段可以在下面修改它的列标题。"))
        ->addLayout(grid, 1);
}

void FieldsPage::showCaptions(const ModuleCaptions& captions) {
    // Option1 follows the module order: accounts, opportunities, contacts, tasks, documents.
    for (int i = 0; i < option1_.size(); ++i)
        option1_[i]->setText(captions.caption(ModuleCaptions::recordModules()[i]));
}

void FieldsPage::load() {
    // The list chosen before stays chosen; the accounts' list at first.
    int index = 0;
    for (int i = 0; i < option1_.size(); ++i)
        if (option1_[i]->isChecked()) index = i;
    option1Click(index);
}

void FieldsPage::option1Click(int index) {
    if (index < 0 || index >= option1_.size()) return;
    option1_[index]->setChecked(true);
    fieldKind_ = fieldKindForOption(index);

    lvField_->clear();
    lvField_->setColumnCount(3);
    auto* header = new QTreeWidgetItem;
    const char* const keys[] = {"fie_description", "fie_index", "fie_name"};
    const char* const titles[] = {"列标题", "序号", "字段"};
    for (int c = 0; c < 3; ++c) {
        header->setText(c, QString::fromUtf8(titles[c]));
        header->setData(c, Qt::UserRole, QLatin1String(keys[c]));
    }
    lvField_->setHeaderItem(header);
    // Widths in the grid's twips, 15 to a pixel: the caption column 2500, the
    // other two 0, so they carry data without showing.
    lvField_->setColumnWidth(0, 2500 / 15);
    lvField_->setColumnHidden(1, true);
    lvField_->setColumnHidden(2, true);

    FSettings columns;
    columns.GetMySetting(qint16(fieldKind_));
    for (const FSetting& f : columns) {
        auto* item = new QTreeWidgetItem(lvField_);
        item->setText(0, f.Description());
        item->setData(0, Qt::UserRole, f.FieldName());
        item->setText(1, QStringLiteral("%1").arg(f.Index(), 2, 10, QLatin1Char('0')));
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, f.Visible() ? Qt::Checked : Qt::Unchecked);
    }
    lvField_->setCurrentItem(nullptr);
    txtEdit_->clear();
    txtEdit_->setEnabled(false);
    updateFieldButtons();
}

void FieldsPage::updateFieldButtons() {
    QTreeWidgetItem* item = lvField_->currentItem();
    enableMoves(cmdFieldUp_, cmdFieldDown_, item ? lvField_->indexOfTopLevelItem(item) : -1,
                lvField_->topLevelItemCount());
}

void FieldsPage::move(int step) {
    if (QTreeWidgetItem* current = lvField_->currentItem()) {
        const int row = lvField_->indexOfTopLevelItem(current);
        const int to = row + step;
        if (to >= 0 && to < lvField_->topLevelItemCount()) {
            QTreeWidgetItem* item = lvField_->takeTopLevelItem(row);
            lvField_->insertTopLevelItem(to, item);
            lvField_->setCurrentItem(item);
        }
    }
    updateFieldButtons();
}

void FieldsPage::cmdFieldUpClick() {
    move(-1);
}

void FieldsPage::cmdFieldDownClick() {
    move(1);
}

bool FieldsPage::save() {
    bool ok = true;
    for (int i = 0; i < lvField_->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = lvField_->topLevelItem(i);
        FSetting f;
        f.setFieldType(qint16(fieldKind_));
        f.setFieldName(item->data(0, Qt::UserRole).toString());
        f.setDescription(item->text(0));
        f.setIndex(qint16(i + 1));
        f.setVisible(item->checkState(0) == Qt::Checked);
        ok = f.SaveObj() && ok;
    }
    return ok;
}

void FieldsPage::saved() {
    // The lists read the program-wide columns: they must see the new ones.
    if (FSettings* shared = programFieldSettings(fieldKind_))
        shared->GetMySetting(qint16(fieldKind_));
}

}  // namespace tarvel
