#pragma once

#include <QString>
#include <functional>

#include "browse/listkind.h"

namespace tarvel {

// A list condition (a WHERE clause with its ORDER BY, or empty for all
// records) in words for the user: "全部联系人", "搜索：王", "地区：北京",
// "没有联系超过15天的联系人", "2026年2月1日至2026年3月2日增加的客户单位",
// "…，按“姓名”降序". It works from the condition text alone, so a condition
// brought back by the history reads the same. Kinds are named by their
// modules' captions, columns by the captions of the list groups that filter
// by them. `list` names the list the condition is shown on (null: any);
// `caption` names a sort column (null leaves its name). A condition of no
// known shape reads as "按条件筛选的…"; never as SQL.
QString describeCondition(const QString& condition, const lists::ListKind* list = nullptr,
                          const std::function<QString(const QString&)>& caption = nullptr);

}  // namespace tarvel
