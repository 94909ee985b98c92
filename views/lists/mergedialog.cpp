#include "views/lists/mergedialog.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "custom/fsettings.h"
#include "exchange/mergeundo.h"
#include "records/kinds.h"
#include "views/common/buttons.h"

namespace tarvel::lists {

namespace {

// A stored value as the user reads it: dates without a time of midnight.
QString shown(const QVariant& v) {
    if (exchange::isUnfilled(v)) return QStringLiteral("（空）");
    QString text = v.toString();
    if (text.endsWith(QLatin1String(" 00:00:00"))) text.chop(9);
    return text.size() > 40 ? text.left(40) + QStringLiteral("…") : text;
}

}  // namespace

MergeDialog::MergeDialog(qint16 kindCode, const QList<qint64>& keys,
                         std::shared_ptr<Messages> dialogs, QWidget* parent)
    : QDialog(parent), kindCode_(kindCode), dialogs_(std::move(dialogs)) {
    setObjectName(QStringLiteral("dlg_merge"));
    const RecordKindInfo* k = kindByCode(kindCode);
    setWindowTitle(QStringLiteral("合并重复的") + (k ? k->captionText() : QString()));
    const exchange::Outcome o = exchange::readMergeRecords(kindCode, keys, &records_, &columns_);
    if (!o.ok) {
        records_.clear();
        if (dialogs_) dialogs_->warning(messageTitle(), o.ErrMsg);
        return;
    }
    build();
}

void MergeDialog::build() {
    FSettings captions;
    captions.GetMySetting(kindCode_);
    const QHash<QString, qint64> preferred = exchange::defaultChoice(columns_, records_);
    const RecordKindInfo* k = kindByCode(kindCode_);

    auto* grid = new QGridLayout;
    auto* keptLabel = new QLabel(QStringLiteral("保留哪条记录(&K)："), this);
    keptLabel->setObjectName(QStringLiteral("lbl_keep"));
    grid->addWidget(keptLabel, 0, 0);
    kept_ = new QButtonGroup(this);
    for (int i = 0; i < records_.size(); ++i) {
        const exchange::MergeRecord& r = records_.at(i);
        auto* b = new QRadioButton(QStringLiteral("%1（编号 %2）")
                                       .arg(r.values.value(QLatin1String(k->nameColumn)).toString())
                                       .arg(r.key),
                                   this);
        b->setObjectName(QStringLiteral("opt_keep_%1").arg(i));
        b->setChecked(i == 0);
        kept_->addButton(b, i);
        grid->addWidget(b, 0, i + 1);
        if (i == 0) keptLabel->setBuddy(b);
    }
    int row = 1;
    const auto hasAccount = [](const exchange::MergeRecord& r) { return r.accountId != 0; };
    if (std::any_of(records_.cbegin(), records_.cend(), hasAccount)) {
        // A contact belongs to one account, so one of theirs stays.
        auto* label = new QLabel(QStringLiteral("客户/单位(&A)："), this);
        label->setObjectName(QStringLiteral("lbl_account"));
        grid->addWidget(label, row, 0);
        account_ = new QButtonGroup(this);
        const auto first = std::find_if(records_.cbegin(), records_.cend(), hasAccount);
        for (int i = 0; i < records_.size(); ++i) {
            const exchange::MergeRecord& r = records_.at(i);
            auto* b =
                new QRadioButton(r.accountId ? r.accountName : QStringLiteral("（空）"), this);
            b->setObjectName(QStringLiteral("opt_account_%1").arg(i));
            b->setAccessibleName(
                QStringLiteral("客户/单位：%1（编号 %2）").arg(b->text()).arg(r.key));
            b->setChecked(i == first - records_.cbegin());
            account_->addButton(b, i);
            grid->addWidget(b, row, i + 1);
            if (b->isChecked()) label->setBuddy(b);
        }
        ++row;
    }
    for (const QString& c : std::as_const(columns_)) {
        // A field empty in every record has nothing to choose.
        if (std::all_of(records_.cbegin(), records_.cend(), [&c](const exchange::MergeRecord& r) {
                return exchange::isUnfilled(r.values.value(c));
            }))
            continue;
        QString caption = captions.FindCaption(c);
        if (caption == QStringLiteral("无")) caption = c;
        auto* label = new QLabel(caption + QStringLiteral("："), this);
        label->setObjectName(QStringLiteral("lbl_") + c);
        grid->addWidget(label, row, 0);
        auto* group = new QButtonGroup(this);
        for (int i = 0; i < records_.size(); ++i) {
            auto* b = new QRadioButton(shown(records_.at(i).values.value(c)), this);
            b->setObjectName(QStringLiteral("opt_%1_%2").arg(c).arg(i));
            // Read out with its field and record, which the grid shows by position.
            b->setAccessibleName(QStringLiteral("%1：%2（编号 %3）")
                                     .arg(caption, b->text())
                                     .arg(records_.at(i).key));
            b->setChecked(records_.at(i).key == preferred.value(c));
            group->addButton(b, i);
            grid->addWidget(b, row, i + 1);
            if (b->isChecked()) label->setBuddy(b);
        }
        choices_.insert(c, group);
        ++row;
    }
    grid->setRowStretch(row, 1);
    grid->setHorizontalSpacing(24);
    grid->setColumnStretch(int(records_.size()) + 1, 1);
    auto* inner = new QWidget(this);
    inner->setObjectName(QStringLiteral("pnl_fields"));
    inner->setLayout(grid);
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scr_fields"));
    scroll->setWidget(inner);
    scroll->setWidgetResizable(true);

    auto* note =
        new QLabel(QStringLiteral("每个字段选一个值；其他记录的关联都移到保留的记录上，然后删除其他"
                                  "记录。创建日期取最早的，最近联系日期取最晚的。"),
                   this);
    note->setObjectName(QStringLiteral("lbl_note"));
    note->setWordWrap(true);
    auto* merge = namedButton(this, QStringLiteral("cmd_merge"), QStringLiteral("合并(&M)"));
    connect(merge, &QPushButton::clicked, this, &MergeDialog::merge);
    auto* cancel = namedButton(this, QStringLiteral("cmd_cancel"), QStringLiteral("取消"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(merge);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(note);
    layout->addWidget(scroll, 1);
    layout->addLayout(buttons);
    resize(280 + 220 * int(records_.size()), 620);
}

exchange::MergeRequest MergeDialog::request() const {
    exchange::MergeRequest r;
    r.kindCode = kindCode_;
    const int keep = kept_ ? kept_->checkedId() : 0;
    for (int i = 0; i < records_.size(); ++i) {
        if (i == keep)
            r.kept = records_.at(i).key;
        else
            r.others << records_.at(i).key;
    }
    if (account_ && account_->checkedId() >= 0)
        r.accountFrom = records_.at(account_->checkedId()).key;
    for (auto it = choices_.cbegin(); it != choices_.cend(); ++it)
        if (const int i = it.value()->checkedId(); i >= 0)
            r.fieldFrom.insert(it.key(), records_.at(i).key);
    return r;
}

void MergeDialog::merge() {
    if (!isReady()) return;
    const exchange::MergeRequest r = request();
    if (dialogs_ && !dialogs_->ask(questionTitle(),
                                   QStringLiteral("合并后只保留选定的一条记录，其他 %1 条记录的关联"
                                                  "都移到它上面，然后删除这些记录。确定合并吗？")
                                       .arg(r.others.size())))
        return;
    // The records merged away go to the recycle bin, and Ctrl+Z can take the merge back.
    const exchange::Outcome o = exchange::mergeKeepingImage(r, nullptr);
    if (!o.ok) {
        if (dialogs_) dialogs_->warning(messageTitle(), o.ErrMsg);
        return;
    }
    accept();
}

}  // namespace tarvel::lists
