#pragma once

#include <QString>
#include <functional>

#include "browse/listkind.h"

namespace tarvel::lists {

// The list's condition as the user reads it ("搜索：王", "地区：北京",
// "今天过生日的联系人"), never as SQL. It works from the condition text alone,
// so a condition brought back by the history reads the same. `caption` names
// a column for the sort ("最近联系日期"); null leaves the column's name.
QString describeCondition(const ListKind& kind, const QString& condition,
                          const std::function<QString(const QString&)>& caption = nullptr);

// The text a search condition of the kind looks for; empty for any other
// condition.
QString searchTextOf(const ListKind& kind, const QString& condition);

}  // namespace tarvel::lists
