#include "views/lists/categorypanel.h"

#include <QHeaderView>

namespace tarvel::lists {

namespace {
constexpr int kGroupRole = Qt::UserRole;
constexpr int kLabelRole = Qt::UserRole + 1;
}  // namespace

CategoryPanel::CategoryPanel(const ListKind& kind, QWidget* parent)
    : QTreeWidget(parent), kind_(kind) {
    setObjectName(QStringLiteral("lv_listall"));
    setHeaderHidden(true);
    setAccessibleName(QStringLiteral("分类"));
    for (int g = 0; g < kind_.groups.size(); ++g) {
        auto* item = new QTreeWidgetItem(this, {kind_.groups[g].caption});
        item->setData(0, kGroupRole, g);
    }
    const auto tell = [this](QTreeWidgetItem* item) {
        if (!item) return;
        const int g = item->data(0, kGroupRole).toInt();
        const bool isGroup = !item->parent();
        const CategoryGroup& group = kind_.groups[g];
        // A group heading with entries only opens or closes.
        if (isGroup && group.count) return;
        emit chosen(group, isGroup ? QString() : item->data(0, kLabelRole).toString());
    };
    connect(this, &QTreeWidget::itemClicked, this, [tell](QTreeWidgetItem* item) { tell(item); });
    connect(this, &QTreeWidget::itemActivated, this, [tell](QTreeWidgetItem* item) { tell(item); });
}

bool CategoryPanel::recount(QString* error) {
    bool allOk = true;
    for (int g = 0; g < kind_.groups.size(); ++g) {
        const CategoryGroup& group = kind_.groups[g];
        if (!group.count) continue;
        QTreeWidgetItem* heading = topLevelItem(g);
        const bool wasOpen = heading->isExpanded();
        qDeleteAll(heading->takeChildren());
        CategoryCounts counts;
        QString reason;
        if (!group.count(&counts, &reason)) {
            allOk = false;
            if (error) *error += (error->isEmpty() ? QString() : QStringLiteral(" ; ")) + reason;
            continue;
        }
        for (int i = 0; i < counts.labels.size(); ++i) {
            const QString label = counts.labels[i];
            QString shown = label;
            if (label.isEmpty())
                shown = group.match == CategoryGroup::Match::AccountName
                            ? QStringLiteral("（无客户单位）")
                            : QStringLiteral("（未填）");
            auto* item = new QTreeWidgetItem(
                heading, {shown + QStringLiteral("（%1）").arg(counts.counts[i])});
            item->setData(0, kGroupRole, g);
            item->setData(0, kLabelRole, label);
        }
        heading->setExpanded(wasOpen);
    }
    return allOk;
}

QTreeWidgetItem* CategoryPanel::entry(const QString& groupKey, const QString& label) const {
    for (int g = 0; g < kind_.groups.size(); ++g) {
        if (kind_.groups[g].key != groupKey) continue;
        QTreeWidgetItem* heading = topLevelItem(g);
        if (!kind_.groups[g].count) return heading;
        for (int i = 0; i < heading->childCount(); ++i)
            if (heading->child(i)->data(0, kLabelRole).toString() == label)
                return heading->child(i);
    }
    return nullptr;
}

}  // namespace tarvel::lists
