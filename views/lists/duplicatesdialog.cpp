#include "views/lists/duplicatesdialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "records/kinds.h"
#include "store/tarveldatabase.h"
#include "views/common/buttons.h"
#include "views/lists/mergedialog.h"

namespace tarvel::lists {

namespace {

// Key -> name of every record in the groups, read at once.
QHash<qint64, QString> namesOf(qint16 kindCode, const QList<exchange::DuplicateGroup>& groups) {
    const RecordKindInfo* k = kindByCode(kindCode);
    QStringList ids;
    for (const exchange::DuplicateGroup& g : groups)
        for (qint64 key : g.keys) ids << QString::number(key);
    QHash<qint64, QString> names;
    if (ids.isEmpty()) return names;
    tarveldatabase db;
    const auto rs = db.GetReadRs(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %1 IN (%4)")
                                     .arg(QLatin1String(k->key), QLatin1String(k->nameColumn),
                                          QLatin1String(k->table), ids.join(QLatin1Char(','))));
    for (bool more = rs && !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof())
        names.insert(rs->value(0).toLongLong(), rs->value(1).toString());
    return names;
}

// "王伟（编号 3）、王 伟（编号 9）": the members as the user knows them.
QString memberNames(const QHash<qint64, QString>& names, const QList<qint64>& keys) {
    QStringList out;
    for (qint64 key : keys) out << QStringLiteral("%1（编号 %2）").arg(names.value(key)).arg(key);
    return out.join(QStringLiteral("、"));
}

}  // namespace

DuplicatesDialog::DuplicatesDialog(qint16 kindCode, std::shared_ptr<Messages> dialogs,
                                   QWidget* parent)
    : QDialog(parent), kindCode_(kindCode), dialogs_(std::move(dialogs)) {
    setObjectName(QStringLiteral("dlg_duplicates"));
    const RecordKindInfo* k = kindByCode(kindCode);
    setWindowTitle(QStringLiteral("查找重复的") + (k ? k->captionText() : QString()));
    auto* label = new QLabel(QStringLiteral("可能重复的记录(&L)："), this);
    label->setObjectName(QStringLiteral("lbl_groups"));
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("lst_groups"));
    list_->setWordWrap(true);
    list_->setAlternatingRowColors(true);
    label->setBuddy(list_);
    list_->setAccessibleName(QStringLiteral("可能重复的记录"));
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lbl_count"));
    auto* merge = namedButton(this, QStringLiteral("cmd_merge"), QStringLiteral("合并(&M)"));
    connect(merge, &QPushButton::clicked, this, &DuplicatesDialog::mergeCurrent);
    connect(list_, &QListWidget::itemActivated, this, &DuplicatesDialog::mergeCurrent);
    auto* again = namedButton(this, QStringLiteral("cmd_find_again"), QStringLiteral("重新查找"));
    connect(again, &QPushButton::clicked, this, &DuplicatesDialog::search);
    auto* close = namedButton(this, QStringLiteral("cmd_close"), QStringLiteral("关闭"));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(count_, 1);
    buttons->addWidget(merge);
    buttons->addWidget(again);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list_, 1);
    layout->addLayout(buttons);
    resize(720, 480);
}

bool DuplicatesDialog::search() {
    list_->clear();
    const exchange::Outcome o = exchange::findDuplicates(kindCode_, &groups_);
    if (!o.ok) {
        count_->setText(QString());
        if (dialogs_) dialogs_->warning(messageTitle(), o.ErrMsg);
        return false;
    }
    const QHash<qint64, QString> names = namesOf(kindCode_, groups_);
    for (const exchange::DuplicateGroup& g : std::as_const(groups_))
        list_->addItem(memberNames(names, g.keys) + QLatin1Char('\n') +
                       g.reasons.join(QStringLiteral("；")));
    if (!groups_.isEmpty()) list_->setCurrentRow(0);
    count_->setText(groups_.isEmpty() ? QStringLiteral("没有找到重复的记录")
                                      : QStringLiteral("共 %1 组").arg(groups_.size()));
    return true;
}

void DuplicatesDialog::mergeCurrent() {
    const int row = list_->currentRow();
    if (row < 0 || row >= groups_.size()) {
        if (dialogs_) dialogs_->info(messageTitle(), QStringLiteral("请先在列表中选择一组记录。"));
        return;
    }
    MergeDialog dialog(kindCode_, groups_.at(row).keys, dialogs_, this);
    if (!dialog.isReady()) return;
    const bool done = runner_ ? runner_(dialog) : dialog.exec() == QDialog::Accepted;
    if (!done) return;
    merged_ = true;
    search();
}

}  // namespace tarvel::lists
