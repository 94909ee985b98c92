#include "views/settings/formappsetting.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "custom/appsettings.h"
#include "custom/fsettings.h"
#include "custom/userprofile.h"
#include "store/transaction.h"
#include "views/common/savefailure.h"

namespace tarvel {

namespace {

// The five modules in the order their captions are read and shown.
const char* const kModules[] = {"account", "opportunity", "contact", "schedule", "document"};

// The module key of a record-kind word ("acc" -> "account", "sch" -> "schedule").
QString moduleOf(const QString& word) {
    for (const char* key : kModules)
        if (QLatin1String(key).startsWith(word)) return QLatin1String(key);
    return QString();
}

// The up and down buttons of a list: no moving past either end, nor with
// nothing chosen.
void enableMoves(QPushButton* up, QPushButton* down, int row, int count) {
    up->setEnabled(row > 0);
    down->setEnabled(row >= 0 && row < count - 1);
}

QPushButton* button(QWidget* parent, const char* name, const QString& text) {
    auto* b = new QPushButton(text, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

QLineEdit* lineEdit(QWidget* parent, const QString& name) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setMinimumWidth(280);
    return e;
}

// Label and box rows whose boxes keep a readable width on a wide page.
QFormLayout* formRows() {
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(10);
    return form;
}

QLabel* hint(const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setWordWrap(true);
    l->setStyleSheet(QStringLiteral("color: palette(dark);"));
    return l;
}

// Up and down beside a list, stacked at its top.
QVBoxLayout* moveButtons(QPushButton* up, QPushButton* down) {
    auto* column = new QVBoxLayout;
    column->addWidget(up);
    column->addWidget(down);
    column->addStretch(1);
    return column;
}

// Swaps a list row with its neighbour and keeps it current.
void moveListRow(QListWidget* list, int step) {
    const int row = list->currentRow();
    const int to = row + step;
    if (row < 0 || to < 0 || to >= list->count()) return;
    QSignalBlocker block(list);
    QListWidgetItem* item = list->takeItem(row);
    list->insertItem(to, item);
    list->setCurrentRow(to);
}

void moveTreeRow(QTreeWidget* tree, int step) {
    QTreeWidgetItem* current = tree->currentItem();
    if (!current) return;
    const int row = tree->indexOfTopLevelItem(current);
    const int to = row + step;
    if (to < 0 || to >= tree->topLevelItemCount()) return;
    QTreeWidgetItem* item = tree->takeTopLevelItem(row);
    tree->insertTopLevelItem(to, item);
    tree->setCurrentItem(item);
}

}  // namespace

QStringList FormAppSetting::relatedOwners() {
    return {QStringLiteral("acc"), QStringLiteral("opp"), QStringLiteral("con"),
            QStringLiteral("sch"), QStringLiteral("doc")};
}

QStringList FormAppSetting::relatedPanels(const QString& owner) {
    static const QHash<QString, QStringList> panels = {
        {QStringLiteral("acc"), {"acc_sch", "acc_con", "acc_opp", "acc_doc"}},
        {QStringLiteral("opp"), {"opp_sch", "opp_con", "opp_acc", "opp_doc"}},
        {QStringLiteral("con"), {"con_sch", "con_con", "con_opp", "con_doc"}},
        {QStringLiteral("sch"), {"sch_opp", "sch_con", "sch_acc", "sch_doc"}},
        {QStringLiteral("doc"), {"doc_opp", "doc_acc", "doc_con", "doc_sch"}},
    };
    return panels.value(owner);
}

int FormAppSetting::fieldKindForOption(int index) {
    static const int kinds[] = {2, 1, 3, 4, 5};
    return index >= 0 && index < 5 ? kinds[index] : 0;
}

FormAppSetting::FormAppSetting(QWidget* parent)
    : PageWidget(parent), dialogs_(std::make_shared<MessageBoxDialogs>(this)) {
    setObjectName(QStringLiteral("form_app_setting"));
    setWindowTitle(QStringLiteral("设置"));

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("SSTab1"));
    tabs_->setUsesScrollButtons(false);
    tabs_->setElideMode(Qt::ElideNone);
    tabs_->addTab(buildCaptionsPage(), QStringLiteral("模块名称"));
    tabs_->addTab(buildToolbarPage(), QStringLiteral("工具栏"));
    for (const QString& owner : relatedOwners()) tabs_->addTab(buildRelatedPage(owner), QString());
    tabs_->addTab(buildFieldsPage(), QStringLiteral("列表字段"));
    tabs_->addTab(buildPersonalPage(), QStringLiteral("个人资料"));

    QPushButton* save = button(this, "cmd_save", QStringLiteral("保存(&S)"));
    save->setMinimumWidth(96);
    connect(save, &QPushButton::clicked, this, &FormAppSetting::cmdSaveClick);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(hint(QStringLiteral("保存只写入当前显示的这一页。"), this), 1);
    bottom->addWidget(save);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    layout->addWidget(tabs_, 1);
    layout->addLayout(bottom);

    load();
}

QWidget* FormAppSetting::buildCaptionsPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("tab_captions"));
    QFormLayout* form = formRows();
    for (const char* key : kModules) {
        QLineEdit* edit = lineEdit(page, QStringLiteral("txt_") + QLatin1String(key));
        edit->setMaxLength(20);
        captionEdits_.insert(QLatin1String(key), edit);
        form->addRow(defaultToolbarCaption(QLatin1String(key)) + QStringLiteral("模块的名称："),
                     edit);
    }
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->addWidget(
        hint(QStringLiteral("模块的名称显示在工具栏按钮、模块页面的标题和相关信息中。"), page));
    layout->addSpacing(6);
    layout->addLayout(form);
    layout->addStretch(1);
    return page;
}

QWidget* FormAppSetting::buildToolbarPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("tab_toolbar"));
    lvMenu_ = new QListWidget(page);
    lvMenu_->setObjectName(QStringLiteral("lv_menu"));
    lvMenu_->setMinimumWidth(260);
    lvMenu_->setMaximumWidth(360);
    connect(lvMenu_, &QListWidget::itemClicked, this, &FormAppSetting::lvMenuItemClick);
    // Ticking a box is a click on the item as well.
    connect(lvMenu_, &QListWidget::itemChanged, this, &FormAppSetting::lvMenuItemClick);
    cmdMenuUp_ = button(page, "Cmd_menu_up", QStringLiteral("上移(&U)"));
    cmdMenuDown_ = button(page, "cmd_menu_down", QStringLiteral("下移(&D)"));
    connect(cmdMenuUp_, &QPushButton::clicked, this, &FormAppSetting::cmdMenuUpClick);
    connect(cmdMenuDown_, &QPushButton::clicked, this, &FormAppSetting::cmdMenuDownClick);

    auto* row = new QHBoxLayout;
    row->addWidget(lvMenu_, 1);
    row->addLayout(moveButtons(cmdMenuUp_, cmdMenuDown_));
    row->addStretch(1);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->addWidget(hint(QStringLiteral("勾选要显示在工具栏上的按钮，用“上移”“下移”调整顺序；"
                                          "分隔线用来把按钮分组。工具栏会立即显示修改的效果。"),
                           page));
    layout->addLayout(row, 1);
    return page;
}

QWidget* FormAppSetting::buildRelatedPage(const QString& owner) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("tab_") + owner + QStringLiteral("_related"));
    auto* visible = new QCheckBox(QStringLiteral("在详细信息页中显示相关信息"), page);
    visible->setObjectName(QStringLiteral("chk_") + owner + QStringLiteral("_related_v"));
    auto* editable = new QCheckBox(QStringLiteral("允许在相关信息中增加和取消关联"), page);
    editable->setObjectName(QStringLiteral("chk_") + owner + QStringLiteral("_related_e"));
    relatedVisible_.insert(owner, visible);
    relatedEditable_.insert(owner, editable);

    auto* box = new QGroupBox(QStringLiteral("相关信息的标题"), page);
    QFormLayout* form = formRows();
    box->setLayout(form);
    const QStringList panels = relatedPanels(owner);
    for (int i = 0; i < panels.size(); ++i) {
        // A control array: the four boxes share the name, told apart by index.
        QLineEdit* edit =
            lineEdit(box, QStringLiteral("txt_") + owner + QStringLiteral("_related"));
        edit->setProperty("Index", i);
        auto* label = new QLabel(box);
        label->setBuddy(edit);
        form->addRow(label, edit);
        relatedTexts_[owner] << edit;
        relatedLabels_[owner] << label;
    }
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->setSpacing(10);
    layout->addWidget(visible);
    layout->addWidget(editable);
    auto* boxRow = new QHBoxLayout;
    boxRow->addWidget(box);
    boxRow->addStretch(1);
    layout->addLayout(boxRow);
    layout->addStretch(1);
    return page;
}

QWidget* FormAppSetting::buildFieldsPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("tab_fields"));
    auto* kinds = new QGroupBox(QStringLiteral("列表"), page);
    auto* kindsLayout = new QVBoxLayout(kinds);
    auto* group = new QButtonGroup(page);
    for (int i = 0; i < 5; ++i) {
        auto* option = new QRadioButton(kinds);
        option->setObjectName(QStringLiteral("Option1"));
        option->setProperty("Index", i);
        group->addButton(option, i);
        kindsLayout->addWidget(option);
        option1_ << option;
    }
    kindsLayout->addStretch(1);
    connect(group, &QButtonGroup::idClicked, this, &FormAppSetting::option1Click);

    lvField_ = new QTreeWidget(page);
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

    cmdFieldUp_ = button(page, "cmd_field_up", QStringLiteral("上移(&U)"));
    cmdFieldDown_ = button(page, "cmd_field_down", QStringLiteral("下移(&D)"));
    connect(cmdFieldUp_, &QPushButton::clicked, this, &FormAppSetting::cmdFieldUpClick);
    connect(cmdFieldDown_, &QPushButton::clicked, this, &FormAppSetting::cmdFieldDownClick);

    txtEdit_ = lineEdit(page, QStringLiteral("txt_edit"));
    // The caption follows the typing, so what is saved is what the list shows.
    connect(txtEdit_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (QTreeWidgetItem* item = lvField_->currentItem()) item->setText(0, text);
    });
    auto* editRow = new QHBoxLayout;
    auto* editLabel = new QLabel(QStringLiteral("列标题："), page);
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

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->addWidget(hint(QStringLiteral("勾选的字段显示在列表中，顺序就是列的顺序；"
                                          "选中一个字段可以在下面修改它的列标题。"),
                           page));
    layout->addLayout(grid, 1);
    return page;
}

QWidget* FormAppSetting::buildPersonalPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("tab_personal"));
    QFormLayout* form = formRows();
    const struct {
        const char* key;
        const char* label;
    } rows[] = {{"user_name", "姓名："},
                {"user_account", "单位："},
                {"user_title", "职务："},
                {"user_email", "电子邮件："}};
    for (const auto& r : rows) {
        QLineEdit* edit = lineEdit(page, QStringLiteral("txt_") + QLatin1String(r.key));
        personalEdits_.insert(QLatin1String(r.key), edit);
        form->addRow(QString::fromUtf8(r.label), edit);
    }
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->addWidget(hint(QStringLiteral("导出Tarvel报表时需要填写这些信息，"
                                          "对方导入报表时用它们识别报表的发送人。"),
                           page));
    layout->addSpacing(6);
    layout->addLayout(form);
    layout->addStretch(1);
    return page;
}

QString FormAppSetting::moduleCaption(const QString& key) const {
    const QString caption = captions_.value(key).trimmed();
    return caption.isEmpty() ? defaultToolbarCaption(key) : caption;
}

QLineEdit* FormAppSetting::relatedText(const QString& owner, int index) const {
    const QList<QLineEdit*> edits = relatedTexts_.value(owner);
    return index >= 0 && index < edits.size() ? edits[index] : nullptr;
}

void FormAppSetting::load() {
    loadCaptions();
    loadToolbar();
    loadRelated();
    loadFields();
    loadPersonal();
}

void FormAppSetting::fill(const PageRequest&) {
    load();
}

void FormAppSetting::rebuildLayout() {
    AppSettings names;
    names.GetToolbarName(0);
    captions_.clear();
    for (const AppSetting& e : names) captions_.insert(e.ObjName(), e.ObjDesc());

    const QStringList owners = relatedOwners();
    for (int i = 0; i < owners.size(); ++i) {
        tabs_->setTabText(RelatedFirst + i,
                          moduleCaption(moduleOf(owners[i])) + QStringLiteral("的相关信息"));
        const QStringList panels = relatedPanels(owners[i]);
        for (int p = 0; p < panels.size(); ++p)
            relatedLabels_[owners[i]][p]->setText(moduleCaption(moduleOf(panels[p].mid(4))) +
                                                  QStringLiteral("："));
    }
    // Option1 follows the module order: accounts, opportunities, contacts, tasks, documents.
    for (int i = 0; i < option1_.size(); ++i)
        option1_[i]->setText(moduleCaption(QLatin1String(kModules[i])));
}

void FormAppSetting::loadCaptions() {
    rebuildLayout();
    for (const char* key : kModules)
        captionEdits_[QLatin1String(key)]->setText(captions_.value(QLatin1String(key)));
}

void FormAppSetting::loadToolbar() {
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

void FormAppSetting::loadRelated() {
    AppSettings panels;
    panels.GetObjs(0, 2);
    for (const QString& owner : relatedOwners()) {
        const QStringList names = relatedPanels(owner);
        // The owner's check boxes show its first panel's flags; saving gives
        // all four the same.
        bool flagsShown = false;
        for (int i = 0; i < names.size(); ++i) {
            const int at = panels.FindIndex(names[i]);
            relatedText(owner, i)->setText(at ? panels.Item(at).ObjDesc() : QString());
            if (!at || flagsShown) continue;
            relatedVisible_[owner]->setChecked(panels.Item(at).ObjVisible() != 0);
            relatedEditable_[owner]->setChecked(panels.Item(at).ObjEditType() != 0);
            flagsShown = true;
        }
    }
}

void FormAppSetting::loadFields() {
    // The list chosen before stays chosen; the accounts' list at first.
    int index = 0;
    for (int i = 0; i < option1_.size(); ++i)
        if (option1_[i]->isChecked()) index = i;
    option1Click(index);
}

void FormAppSetting::loadPersonal() {
    const UserProfile profile = UserProfile::load();
    personalEdits_[QStringLiteral("user_name")]->setText(profile.name);
    personalEdits_[QStringLiteral("user_account")]->setText(profile.account);
    personalEdits_[QStringLiteral("user_title")]->setText(profile.title);
    personalEdits_[QStringLiteral("user_email")]->setText(profile.email);
}

void FormAppSetting::lvMenuItemClick() {
    enableMoves(cmdMenuUp_, cmdMenuDown_, lvMenu_->currentRow(), lvMenu_->count());
    if (!host_.previewToolbar) return;
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
    host_.previewToolbar(shown);
}

void FormAppSetting::cmdMenuUpClick() {
    moveListRow(lvMenu_, -1);
    lvMenuItemClick();
}

void FormAppSetting::cmdMenuDownClick() {
    moveListRow(lvMenu_, 1);
    lvMenuItemClick();
}

void FormAppSetting::option1Click(int index) {
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

void FormAppSetting::updateFieldButtons() {
    QTreeWidgetItem* item = lvField_->currentItem();
    enableMoves(cmdFieldUp_, cmdFieldDown_, item ? lvField_->indexOfTopLevelItem(item) : -1,
                lvField_->topLevelItemCount());
}

void FormAppSetting::cmdFieldUpClick() {
    moveTreeRow(lvField_, -1);
    updateFieldButtons();
}

void FormAppSetting::cmdFieldDownClick() {
    moveTreeRow(lvField_, 1);
    updateFieldButtons();
}

bool FormAppSetting::saveCaptions() {
    bool ok = true;
    for (const char* key : kModules) {
        AppSetting e;
        e.setObjName(QLatin1String(key));
        e.setObjDesc(captionEdits_[QLatin1String(key)]->text().trimmed());
        ok = e.SaveToolbarName() && ok;
    }
    return ok;
}

bool FormAppSetting::saveToolbar() {
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

bool FormAppSetting::saveRelated() {
    bool ok = true;
    for (const QString& owner : relatedOwners()) {
        const QStringList names = relatedPanels(owner);
        for (int i = 0; i < names.size(); ++i) {
            AppSetting e;
            e.setObjName(names[i]);
            e.setObjDesc(relatedText(owner, i)->text().trimmed());
            e.setObjVisible(relatedVisible_[owner]->isChecked() ? -1 : 0);
            e.setObjEditType(relatedEditable_[owner]->isChecked() ? -1 : 0);
            ok = e.SaveRelationInfo() && ok;
        }
    }
    return ok;
}

bool FormAppSetting::saveFields() {
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

bool FormAppSetting::savePersonal() {
    UserProfile profile;
    profile.name = personalEdits_[QStringLiteral("user_name")]->text().trimmed();
    profile.account = personalEdits_[QStringLiteral("user_account")]->text().trimmed();
    profile.title = personalEdits_[QStringLiteral("user_title")]->text().trimmed();
    profile.email = personalEdits_[QStringLiteral("user_email")]->text().trimmed();
    return profile.save();
}

void FormAppSetting::cmdSaveClick() {
    const int tab = tabs_->currentIndex();
    if (tab == CaptionsTab && !captionsComplete()) return;
    // A page is saved whole or not at all; what was typed stays for another try.
    Transaction transaction;
    if (!(transaction.isActive() && savePage(tab) && transaction.commit())) {
        transaction.rollback();
        dialogs_->info(messageTitle(), saveFailedText(QStringLiteral("设置")));
        return;
    }
    if (tab == CaptionsTab) renameToolbarItems();
    if (tab == FieldsTab) {
        // The lists read the program-wide columns: they must see the new ones.
        if (FSettings* shared = programFieldSettings(fieldKind_))
            shared->GetMySetting(qint16(fieldKind_));
    }
    // The user's profile changes nothing on screen: nothing to apply.
    if (tab == PersonalTab) return;
    if (!dialogs_->ask(QStringLiteral("Tarvel 提示"), QStringLiteral(" 现在执行界面修改的结果吗?"),
                       Dialogs::Icon::Question, Dialogs::Buttons::OkCancel))
        return;
    if (host_.rebuildScreens)
        host_.rebuildScreens();
    else
        rebuildLayout();
}

// The toolbar list shows the new module names at once, keeping any order
// or ticks not yet saved there.
void FormAppSetting::renameToolbarItems() {
    QSignalBlocker block(lvMenu_);
    for (int i = 0; i < lvMenu_->count(); ++i) {
        QListWidgetItem* item = lvMenu_->item(i);
        if (QLineEdit* edit = captionEdits_.value(item->data(Qt::UserRole).toString()))
            item->setText(edit->text().trimmed());
    }
}

bool FormAppSetting::savePage(int tab) {
    if (tab == CaptionsTab) return saveCaptions();
    if (tab == ToolbarTab) return saveToolbar();
    if (tab >= RelatedFirst && tab < FieldsTab) return saveRelated();
    if (tab == FieldsTab) return saveFields();
    return tab != PersonalTab || savePersonal();
}

bool FormAppSetting::captionsComplete() {
    for (const char* key : kModules) {
        QLineEdit* edit = captionEdits_[QLatin1String(key)];
        if (!edit->text().trimmed().isEmpty()) continue;
        dialogs_->info(messageTitle(), QStringLiteral("模块的名称不能为空，请输入%1模块的名称！")
                                           .arg(defaultToolbarCaption(QLatin1String(key))));
        edit->setFocus();
        return false;
    }
    return true;
}

}  // namespace tarvel
