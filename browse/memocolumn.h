#pragma once

#include <QString>

namespace tarvel {

// Memo columns ("con_description", bare or qualified with its table) hold
// too much text for a grid to be sorted by them.
inline bool isMemoColumn(const QString& field) {
    return field.section(QLatin1Char('.'), -1).endsWith(QLatin1String("_description"));
}

inline QString memoSortRefusal() {
    return QStringLiteral("描述字段内容较多不能排序！");
}

}  // namespace tarvel
