#pragma once

#include <QHash>
#include <QString>
#include <vector>

namespace tarvel {

// What a prepared statement returns: its columns, where each came from, and
// an index by name. Built once per statement and shared by every recordset.
struct ResultColumn {
    QString name;
    QString table;   // base table the column came from; empty for computed values
    QString origin;  // its name in that table
    QString declaredType;
    int kind = 0;  // sqlvalue::Kind of the declared type
};
struct ResultColumns {
    std::vector<ResultColumn> list;
    QHash<QString, int> byName;  // exact and lower-case names; the first column wins
};

}  // namespace tarvel
