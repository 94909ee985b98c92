#include "views/exchange/csvpreview.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvel {

namespace {
constexpr int kPreviewRows = 10;
}

CsvPreview::CsvPreview(const exchange::CsvImportPlan& plan, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("form_csv_preview"));
    setWindowTitle(QStringLiteral("导入CSV文件"));
    auto* layout = new QVBoxLayout(this);
    auto* summary =
        new QLabel(QStringLiteral("共 %1 行。请核对每一列要导入的字段（灰色的列不导入）：")
                       .arg(plan.rows.size()));
    summary->setObjectName(QStringLiteral("lbl_csv_summary"));
    layout->addWidget(summary);
    table_ = new QTableWidget(int(qMin<qsizetype>(plan.rows.size(), kPreviewRows)),
                              int(plan.header.size()));
    table_->setObjectName(QStringLiteral("lv_csv_preview"));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    summary->setBuddy(table_);
    for (int c = 0; c < plan.header.size(); ++c) {
        const QString field =
            plan.captions.value(c).isEmpty() ? QStringLiteral("不导入") : plan.captions[c];
        table_->setHorizontalHeaderItem(
            c, new QTableWidgetItem(plan.header[c] + QStringLiteral("\n→ ") + field));
        for (int r = 0; r < table_->rowCount(); ++r) {
            auto* item = new QTableWidgetItem(plan.rows[r].fields.value(c));
            if (plan.targets.value(c).isEmpty()) item->setForeground(Qt::gray);
            table_->setItem(r, c, item);
        }
    }
    QStringList lines;
    for (int r = 0; r < table_->rowCount(); ++r) lines << QString::number(plan.rows[r].line);
    table_->setVerticalHeaderLabels(lines);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    layout->addWidget(table_);
    auto* buttons = new QDialogButtonBox;
    auto* ok = buttons->addButton(QStringLiteral("导入"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmd_ok"));
    auto* cancel = buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmd_cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(720, 420);
}

}  // namespace tarvel
