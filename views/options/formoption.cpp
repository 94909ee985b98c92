#include "views/options/formoption.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QListWidget>
#include <QVBoxLayout>

#include "browse/savefailure.h"
#include "views/common/buttons.h"
#include "views/common/page.h"
#include "views/options/optionwidgets.h"

namespace tarvel {

namespace {}  // namespace

FormOption::FormOption(QWidget* parent)
    : QDialog(parent), dialogs_(std::make_shared<MessageBoxDialogs>(this)) {
    setObjectName(QStringLiteral("form_option"));
    setWindowTitle(QStringLiteral("选项设置"));

    lblOptName_ = new QLabel(this);
    lblOptName_->setObjectName(QStringLiteral("lbl_opt_name"));
    setHeadingFont(lblOptName_, 1.2);

    model_ = new RecordsetModel(this);
    grid_ = new QTableView(this);
    grid_->setObjectName(QStringLiteral("dg_listall"));
    grid_->setModel(model_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->horizontalHeader()->setStretchLastSection(true);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 8);
    grid_->verticalHeader()->hide();
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (syncing_ || !current.isValid()) return;
                model_->moveTo(current.row());
                showCurrent(false);
            });

    lblOption_ = new QLabel(this);
    lblOption_->setObjectName(QStringLiteral("lbl_option"));
    txtOption_ = new QLineEdit(this);
    txtOption_->setObjectName(QStringLiteral("txt_option"));
    lblOption_->setBuddy(txtOption_);

    QPushButton* add = dialogButton(this, "cmd_add", QStringLiteral("增加(&A)"));
    QPushButton* save = dialogButton(this, "cmd_save", QStringLiteral("保存(&S)"));
    QPushButton* remove = dialogButton(this, "cmd_delete", QStringLiteral("删除(&D)"));
    QPushButton* exit = dialogButton(this, "cmd_exit", QStringLiteral("退出(&X)"));
    connect(add, &QPushButton::clicked, this, &FormOption::cmdAddClick);
    connect(save, &QPushButton::clicked, this, &FormOption::cmdSaveClick);
    connect(remove, &QPushButton::clicked, this, &FormOption::cmdDeleteClick);
    connect(exit, &QPushButton::clicked, this, &FormOption::cmdExitClick);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {add, save, remove}) buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(exit);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(14, 12, 14, 14);
    layout->setHorizontalSpacing(10);
    layout->setVerticalSpacing(8);
    layout->addWidget(lblOptName_, 0, 0, 1, 3);
    layout->addWidget(grid_, 1, 0, 1, 2);
    layout->addLayout(buttons, 1, 2, 2, 1);
    layout->addWidget(lblOption_, 2, 0);
    layout->addWidget(txtOption_, 2, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
    resize(420, 360);
}

void FormOption::load() {
    kind_ = kind_.trimmed();
    object_ = object_.trimmed();
    name_ = name_.trimmed();
    recordWord_ = recordWord_.trimmed();
    fieldWord_ = fieldWord_.trimmed();
    lblOptName_->setText(recordWord_ + QStringLiteral("的") + fieldWord_);
    lblOption_->setText(fieldWord_);
    setWindowTitle(recordWord_ + QStringLiteral("的") + fieldWord_ + QStringLiteral(" - 选项设置"));

    if (!entries_.open(object_, name_))
        dialogs_->info(messageTitle(),
                       QStringLiteral("选项没有读出，原因可能是") + entries_.ErrMsg());
    model_->setRecordset(entries_.recordset());
    model_->setCaption(1, QStringLiteral("选项描述"));
    for (int column : {0, 2, 3}) grid_->setColumnHidden(column, true);
    editState_ = Showing;
    syncGrid();
    showCurrent(true);
}

void FormOption::showCurrent(bool dataControlMoved) {
    editState_ = Showing;
    if (!entries_.hasCurrent()) {
        // Nothing left to show or change until a new entry is started.
        txtOption_->clear();
        txtOption_->setEnabled(false);
        return;
    }
    const QVariant v = entries_.currentText();
    txtOption_->setEnabled(true);
    txtOption_->setText(v.isNull() ? (dataControlMoved ? QStringLiteral(" ") : QString())
                                   : v.toString());
}

void FormOption::syncGrid() {
    syncing_ = true;
    model_->reload();
    const int row = model_->currentRow();
    if (row >= 0)
        grid_->setCurrentIndex(model_->index(row, 1));
    else
        grid_->selectionModel()->clearCurrentIndex();
    syncing_ = false;
}

void FormOption::cmdAddClick() {
    txtOption_->clear();
    txtOption_->setEnabled(true);
    editState_ = Adding;
    txtOption_->setFocus();
}

void FormOption::cmdSaveClick() {
    const QString text = txtOption_->text();
    if (text.trimmed().isEmpty()) return;
    const bool adding = editState_ == Adding;
    if (!entries_.isOpen() || (!adding && !entries_.hasCurrent())) return;
    // Refused, the typed text stays in the box, and a new entry stays new, for another try.
    if (!entries_.store(text, adding)) return refuseWrite();
    editState_ = Showing;
    syncGrid();
}

void FormOption::cmdDeleteClick() {
    if (editState_ == Adding) {
        txtOption_->clear();
        return;
    }
    if (!entries_.hasCurrent()) return;
    // The data control moves on to the next entry, or back to the last one.
    if (!entries_.removeCurrent()) return refuseWrite();
    syncGrid();
    showCurrent(true);
}

void FormOption::refuseWrite() {
    dialogs_->info(messageTitle(), saveFailedText(QStringLiteral("选项")));
    syncGrid();
}

void FormOption::cmdExitClick() {
    accept();
}

void FormOption::refreshCaller() {
    if (kind_ == QLatin1String("combobox"))
        FillOptionCombo(qobject_cast<QComboBox*>(control_.data()), object_, name_);
    else if (kind_ == QLatin1String("listbox"))
        FillOptionList(qobject_cast<QListWidget*>(control_.data()), object_, name_);
}

void FormOption::done(int result) {
    refreshCaller();
    QDialog::done(result);
}

void runOptionEditor(QWidget* parent, const QString& kind, QWidget* control, const QString& object,
                     const QString& name, const QString& recordWord, const QString& fieldWord) {
    FormOption form(parent);
    form.setControlKind(kind);
    form.setControl(control);
    form.setObject(object);
    form.setName(name);
    form.setCaptions(recordWord, fieldWord);
    form.load();
    form.exec();
}

}  // namespace tarvel
