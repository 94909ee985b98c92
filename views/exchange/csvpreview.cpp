#include "views/exchange/csvpreview.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tarvel {

namespace {
constexpr int kPreviewRows = 10;
constexpr int kChoiceColumns = 3;  // label and choice pairs per line
}  // namespace

CsvPreview::CsvPreview(exchange::CsvImportPlan* plan, QWidget* parent)
    : QDialog(parent), plan_(plan) {
    setObjectName(QStringLiteral("form_csv_preview"));
    setWindowTitle(QStringLiteral("导入表格文件"));
    auto* layout = new QVBoxLayout(this);
    QString said = QStringLiteral("共 %1 行。请选择每一列要导入的字段（“不导入”的列灰色显示）")
                       .arg(plan->rows.size());
    if (plan->remembered) said += QStringLiteral("；已按上次对相同列名的选择填好");
    auto* summary = new QLabel(said + QStringLiteral("："));
    summary->setObjectName(QStringLiteral("lbl_csv_summary"));
    summary->setWordWrap(true);
    layout->addWidget(summary);

    auto* choicePanel = new QWidget;
    auto* grid = new QGridLayout(choicePanel);
    for (int c = 0; c < plan->header.size(); ++c) {
        auto* label = new QLabel(QStringLiteral("%1(&%2)").arg(
            plan->header[c].isEmpty() ? QStringLiteral("第%1列").arg(c + 1) : plan->header[c],
            c < 9 ? QString::number(c + 1) : QString()));
        label->setObjectName(QStringLiteral("lbl_csv_column_%1").arg(c));
        auto* combo = new QComboBox;
        combo->setObjectName(QStringLiteral("cbo_csv_column_%1").arg(c));
        combo->addItem(QStringLiteral("不导入"), QString());
        for (const auto& t : plan->choices) combo->addItem(t.caption, t.key);
        const QString target = plan->targets.value(c);
        int at = combo->findData(target);
        if (at < 0) {
            combo->addItem(plan->captions.value(c), target);
            at = combo->count() - 1;
        }
        combo->setCurrentIndex(at);
        label->setBuddy(combo);
        grid->addWidget(label, c / kChoiceColumns, (c % kChoiceColumns) * 2);
        grid->addWidget(combo, c / kChoiceColumns, (c % kChoiceColumns) * 2 + 1);
        choices_ << combo;
        connect(combo, &QComboBox::currentIndexChanged, this, [this, c] { showChoice(c); });
    }
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("scr_csv_columns"));
    scroll->setWidget(choicePanel);
    scroll->setWidgetResizable(true);
    layout->addWidget(scroll, 1);

    table_ = new QTableWidget(int(qMin<qsizetype>(plan->rows.size(), kPreviewRows)),
                              int(plan->header.size()));
    table_->setObjectName(QStringLiteral("lv_csv_preview"));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int c = 0; c < plan->header.size(); ++c) {
        for (int r = 0; r < table_->rowCount(); ++r)
            table_->setItem(r, c, new QTableWidgetItem(plan->rows[r].fields.value(c)));
        showChoice(c);
    }
    QStringList lines;
    for (int r = 0; r < table_->rowCount(); ++r) lines << QString::number(plan->rows[r].line);
    table_->setVerticalHeaderLabels(lines);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* rowsLabel = new QLabel(QStringLiteral("前几行(&R)："));
    rowsLabel->setObjectName(QStringLiteral("lbl_csv_rows"));
    rowsLabel->setBuddy(table_);
    layout->addWidget(rowsLabel);
    layout->addWidget(table_, 2);

    auto* buttons = new QDialogButtonBox;
    auto* ok = buttons->addButton(QStringLiteral("导入"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmd_ok"));
    auto* cancel = buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmd_cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(860, 560);
}

void CsvPreview::showChoice(int column) {
    const QComboBox* combo = choices_.value(column);
    if (!combo) return;
    const bool used = !combo->currentData().toString().isEmpty();
    table_->setHorizontalHeaderItem(
        column, new QTableWidgetItem(plan_->header.value(column) + QStringLiteral("\n→ ") +
                                     combo->currentText()));
    for (int r = 0; r < table_->rowCount(); ++r)
        if (auto* item = table_->item(r, column))
            item->setForeground(used ? palette().text() : QBrush(Qt::gray));
}

void CsvPreview::accept() {
    QStringList targets;
    for (const QComboBox* combo : std::as_const(choices_))
        targets << combo->currentData().toString();
    exchange::retarget(plan_, targets);
    QDialog::accept();
}

}  // namespace tarvel
