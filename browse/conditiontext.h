#pragma once

#include <QString>

namespace tarvel {

// A list condition (a WHERE clause, or empty for all records) in words for
// the user: "全部记录", "搜索：王", "地区：北京", "没有联系超过15天的联系人",
// "2026年2月1日至2026年3月2日增加的客户单位", ... The record kinds are named
// by their modules' captions. A condition of no known shape reads as the
// records of its kind "按条件筛选的…"; never as SQL.
QString describeCondition(const QString& condition);

}  // namespace tarvel
