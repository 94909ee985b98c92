#include "views/related/formaddrelated.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "browse/relatedrecords.h"
#include "records/recordbase.h"
#include "records/recordsearch.h"
#include "views/common/buttons.h"
#include "views/related/formrelated.h"

namespace tarvel {

FormAddRelated::FormAddRelated(qint16 ownerKind, int ownerId, qint16 kind, const QString& kindName,
                               QSet<int> linked, std::shared_ptr<Messages> dialogs, QWidget* parent)
    : QDialog(parent),
      ownerKind_(ownerKind),
      ownerId_(ownerId),
      kind_(kind),
      linked_(std::move(linked)),
      dialogs_(std::move(dialogs)) {
    setObjectName(QStringLiteral("form_addrelated"));
    setWindowTitle(QStringLiteral("增加相关的") + kindName);
    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("txt_search"));
    search_->setPlaceholderText(QStringLiteral("输入名称的一部分"));
    found_ = new QListWidget(this);
    found_->setObjectName(QStringLiteral("lst_found"));
    found_->setSelectionMode(QAbstractItemView::MultiSelection);
    auto* lblSearch = new QLabel(QStringLiteral("查找(&F)："), this);
    lblSearch->setBuddy(search_);
    auto* lblFound = new QLabel(QStringLiteral("选择要增加的记录(&R)："), this);
    lblFound->setBuddy(found_);
    auto* cmdAdd = namedButton(this, QStringLiteral("cmd_add"), QStringLiteral("增加(&A)"));
    cmdAdd->setDefault(true);
    auto* cmdCancel = namedButton(this, QStringLiteral("cmd_cancel"), QStringLiteral("取消"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(lblSearch, 0, 0);
    grid->addWidget(search_, 0, 1);
    grid->addWidget(lblFound, 1, 0, 1, 2);
    grid->addWidget(found_, 2, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdCancel);
    grid->addLayout(buttons, 3, 0, 1, 2);
    setTabOrder(search_, found_);
    setTabOrder(found_, cmdAdd);
    setTabOrder(cmdAdd, cmdCancel);
    resize(420, 360);

    connect(search_, &QLineEdit::textChanged, this, &FormAddRelated::search);
    connect(cmdAdd, &QPushButton::clicked, this, &FormAddRelated::addChosen);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    search();
}

void FormAddRelated::search() {
    found_->clear();
    RecordSearch finder;
    if (!finder.run(recordsearch::addable(kind_, search_->text()))) {
        dialogs_->info(messageTitle(), finder.ErrMsg());
        return;
    }
    for (const FoundRecord& r : finder.found()) {
        // Neither the record itself nor what is linked already (adding that
        // again would clear the role the link carries).
        if ((kind_ == ownerKind_ && r.id == ownerId_) || linked_.contains(r.id)) continue;
        auto* item = new QListWidgetItem(
            r.account.isEmpty() ? r.name : r.name + QStringLiteral(" - ") + r.account, found_);
        item->setData(Qt::UserRole, r.id);
    }
}

void FormAddRelated::addChosen() {
    QList<int> chosen;
    for (QListWidgetItem* item : found_->selectedItems())
        chosen << item->data(Qt::UserRole).toInt();
    if (chosen.isEmpty()) {
        dialogs_->info(messageTitle(), QStringLiteral("您没有选择任何要添加的记录"));
        return;
    }
    const QString title = questionTitle();
    if (!dialogs_->ask(title, QStringLiteral("确定要增加这些相关记录吗?"))) return;
    // A contact has one account: joining this one takes it from its old one.
    if (ownerKind_ == kind::Account && kind_ == kind::Contact &&
        !dialogs_->ask(title,
                       QStringLiteral("这个选择将改变联系人的单位信息为当前单位信息,您确定吗?")))
        return;
    QString error;
    if (!relatedrecords::link(ownerKind_, ownerId_, kind_, chosen, error)) {
        dialogs_->info(messageTitle(), refusedText(QStringLiteral("增加的相关记录"), error));
        return;
    }
    accept();
}

}  // namespace tarvel
