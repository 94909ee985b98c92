#pragma once

#include <QList>
#include <QString>

namespace tarvel {

// One entry of the schedule's left panel: a caption with its count of tasks
// and the terms on `tasks` that select them.
struct TaskCategory {
    QString group;  // "类型", "重要性", "标签", "状态"
    QString caption;
    int count = 0;
    QString filter;
};

// The schedule's categories with their counts: every type, importance and
// tag in use (an empty one as "(未分类)") and open against done.
class TaskCategories {
public:
    // False (with ErrMsg) when the data file could not be read.
    bool load();
    const QList<TaskCategory>& categories() const { return categories_; }
    int total() const { return total_; }
    QString ErrMsg() const { return errMsg_; }

    // The terms that select the tasks whose `column` holds `value` (an empty
    // value also matches null).
    static QString valueFilter(const QString& column, const QString& value);

private:
    bool loadGroup(const QString& group, const QString& column);

    QList<TaskCategory> categories_;
    int total_ = 0;
    QString errMsg_;
};

}  // namespace tarvel
