#pragma once

#include <QTreeWidget>

#include "browse/listkind.h"

namespace tarvel::lists {

// The navigation panel `lv_listall`: the kind's groups, each category with
// its count. A click on an entry is told as the group and the label.
class CategoryPanel : public QTreeWidget {
    Q_OBJECT
public:
    CategoryPanel(const ListKind& kind, QWidget* parent = nullptr);
    // Re-reads every count; false with the reasons when a count failed (the
    // other groups are still shown).
    bool recount(QString* error);
    // The entry of a group's label; null when there is none.
    QTreeWidgetItem* entry(const QString& groupKey, const QString& label = QString()) const;

signals:
    void chosen(const tarvel::lists::CategoryGroup& group, const QString& label);

private:
    const ListKind& kind_;
};

}  // namespace tarvel::lists
