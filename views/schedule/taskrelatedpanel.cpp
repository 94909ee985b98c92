#include "views/schedule/taskrelatedpanel.h"

#include <QGridLayout>
#include <QLabel>

#include "browse/relatedrecords.h"
#include "custom/appsettings.h"
#include "records/recordbase.h"
#include "schedule/task.h"
#include "schedule/tasklinks.h"
#include "views/common/buttons.h"

namespace tarvel {

TaskRelatedPanel::TaskRelatedPanel(const std::shared_ptr<Messages>& dialogs, QWidget* parent)
    : QTabWidget(parent), dialogs_(dialogs) {
    setObjectName(QStringLiteral("tab_sch_related"));
    const std::pair<qint16, const char*> kinds[] = {{kind::Opportunity, "sch_opp"},
                                                    {kind::Contact, "sch_con"},
                                                    {kind::Account, "sch_acc"},
                                                    {kind::Document, "sch_doc"}};
    for (const auto& [k, name] : kinds) {
        Section s;
        s.kind = k;
        s.name = QLatin1String(name);
        sections_ << s;
    }
    for (Section& s : sections_) buildSection(s);
    rebuildLayout();
    showTask(0);
}

void TaskRelatedPanel::buildSection(Section& s) {
    s.page = new QWidget(this);
    s.page->setObjectName(s.name);
    s.linked = new QListWidget(s.page);
    s.linked->setObjectName(QStringLiteral("lst_") + s.name);
    s.find = new QLineEdit(s.page);
    s.find->setObjectName(QStringLiteral("txt_") + s.name + QStringLiteral("_find"));
    s.find->setPlaceholderText(QStringLiteral("输入名称的一部分"));
    s.found = new QListWidget(s.page);
    s.found->setObjectName(QStringLiteral("lst_") + s.name + QStringLiteral("_found"));
    s.found->setSelectionMode(QAbstractItemView::ExtendedSelection);
    s.add = namedButton(s.page, QStringLiteral("cmd_") + s.name + QStringLiteral("_add"),
                        QStringLiteral("添加相关"));
    s.remove = namedButton(s.page, QStringLiteral("cmd_") + s.name + QStringLiteral("_delete"),
                           QStringLiteral("删除相关性"));

    auto* lblLinked = new QLabel(QStringLiteral("已相关(&L)："), s.page);
    lblLinked->setBuddy(s.linked);
    auto* lblFind = new QLabel(QStringLiteral("查找(&F)："), s.page);
    lblFind->setBuddy(s.find);
    auto* lblFound = new QLabel(QStringLiteral("查找结果(&R)："), s.page);
    lblFound->setBuddy(s.found);
    auto* grid = new QGridLayout(s.page);
    grid->addWidget(lblLinked, 0, 0, 1, 2);
    grid->addWidget(s.linked, 1, 0, 1, 2);
    grid->addWidget(s.remove, 2, 1, Qt::AlignRight);
    grid->addWidget(lblFind, 3, 0);
    grid->addWidget(s.find, 3, 1);
    grid->addWidget(lblFound, 4, 0, 1, 2);
    grid->addWidget(s.found, 5, 0, 1, 2);
    grid->addWidget(s.add, 6, 1, Qt::AlignRight);
    setTabOrder(s.linked, s.remove);
    setTabOrder(s.remove, s.find);
    setTabOrder(s.find, s.found);
    setTabOrder(s.found, s.add);

    const qint16 k = s.kind;
    auto section = [this, k]() -> Section& {
        for (Section& x : sections_)
            if (x.kind == k) return x;
        return sections_.first();
    };
    connect(s.find, &QLineEdit::textChanged, this, [this, section] { search(section()); });
    connect(s.add, &QPushButton::clicked, this, [this, section] { addChosen(section()); });
    connect(s.found, &QListWidget::itemDoubleClicked, this,
            [this, section] { addChosen(section()); });
    connect(s.remove, &QPushButton::clicked, this, [this, section] { unlinkChosen(section()); });
    addTab(s.page, s.name);
}

void TaskRelatedPanel::rebuildLayout() {
    static const QHash<QString, QString> builtIn = {
        {QStringLiteral("sch_opp"), QStringLiteral("相关业务")},
        {QStringLiteral("sch_con"), QStringLiteral("相关联系人")},
        {QStringLiteral("sch_acc"), QStringLiteral("相关客户")},
        {QStringLiteral("sch_doc"), QStringLiteral("相关文档")}};
    AppSettings layout;
    layout.GetRelationInfo(0, 4);
    for (Section& s : sections_) {
        s.caption = builtIn.value(s.name);
        s.editable = true;
        bool visible = true;
        if (const int i = layout.FindIndex(s.name); i > 0) {
            const AppSetting& e = layout.Item(i);
            if (!e.ObjDesc().trimmed().isEmpty()) s.caption = e.ObjDesc().trimmed();
            visible = e.ObjVisible() != 0;
            s.editable = e.ObjEditType() != 0;
        }
        setTabVisible(indexOf(s.page), visible);
        updateCaption(s);
        // The links are as they were; only the right to edit them may have changed.
        s.add->setEnabled(s.editable);
        s.remove->setEnabled(s.editable);
        s.find->setEnabled(s.editable);
    }
}

void TaskRelatedPanel::updateCaption(Section& s) {
    setTabText(indexOf(s.page), taskId_ == 0
                                    ? s.caption
                                    : s.caption + QStringLiteral("(%1)").arg(s.linked->count()));
}

QListWidget* TaskRelatedPanel::linkedList(qint16 recordKind) const {
    for (const Section& s : sections_)
        if (s.kind == recordKind) return s.linked;
    return nullptr;
}

void TaskRelatedPanel::showTask(int taskId) {
    taskId_ = taskId;
    for (Section& s : sections_) {
        s.page->setEnabled(taskId != 0);
        s.find->clear();
        s.found->clear();
        s.add->setEnabled(s.editable);
        s.remove->setEnabled(s.editable);
        s.find->setEnabled(s.editable);
        refreshSection(s);
    }
    setToolTip(taskId == 0 ? QStringLiteral("保存日程后才能添加相关记录。") : QString());
}

void TaskRelatedPanel::refreshSection(Section& s) {
    s.linked->clear();
    if (taskId_ != 0) {
        TaskLinks links;
        const auto records = links.linked(s.kind, taskId_);
        if (!records) {
            if (dialogs_) dialogs_->info(messageTitle(), links.ErrMsg());
        } else {
            for (const LinkedRecord& r : *records) {
                auto* item = new QListWidgetItem(r.caption, s.linked);
                item->setData(Qt::UserRole, r.id);
            }
        }
    }
    updateCaption(s);
}

void TaskRelatedPanel::search(Section& s) {
    s.found->clear();
    if (s.find->text().trimmed().isEmpty()) return;
    TaskLinks links;
    const auto records = links.search(s.kind, s.find->text());
    if (!records) return;  // an unreadable file shows no matches while typing
    for (const LinkedRecord& r : *records) {
        auto* item = new QListWidgetItem(r.caption, s.found);
        item->setData(Qt::UserRole, r.id);
    }
}

void TaskRelatedPanel::addChosen(Section& s) {
    const QList<QListWidgetItem*> chosen = s.found->selectedItems();
    if (chosen.isEmpty()) {
        if (dialogs_) dialogs_->info(messageTitle(), QStringLiteral("您没有选择任何要添加的记录"));
        return;
    }
    QList<int> ids;
    for (QListWidgetItem* item : chosen) ids << item->data(Qt::UserRole).toInt();
    QString error;
    if (!relatedrecords::link(kind::Task, taskId_, s.kind, ids, error) && dialogs_)
        dialogs_->info(messageTitle(), error);
    s.found->clearSelection();
    refreshSection(s);
    emit linksChanged();
}

void TaskRelatedPanel::unlinkChosen(Section& s) {
    QListWidgetItem* item = s.linked->currentItem();
    if (!item) {
        if (dialogs_)
            dialogs_->info(messageTitle(), QStringLiteral("请先选择要删除相关性的记录。"));
        return;
    }
    const QString question = s.kind == kind::Opportunity
                                 ? QStringLiteral("您确定删除和此单位的相关性？")
                                 : QStringLiteral("您确定删除和此记录的相关性？");
    if (!dialogs_ || !dialogs_->ask(questionTitle(), question)) return;
    QString error;
    if (!relatedrecords::unlink(kind::Task, taskId_, s.kind, item->data(Qt::UserRole).toInt(),
                                error))
        dialogs_->info(messageTitle(), error);
    refreshSection(s);
    emit linksChanged();
}

}  // namespace tarvel
