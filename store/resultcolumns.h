#pragma once

#include <QHash>
#include <QString>
#include <memory>
#include <vector>

struct sqlite3_stmt;

namespace tarvel {

// What a prepared statement returns: its columns and where each came from.
// Built once per statement and shared by every recordset over it.
struct ResultColumn {
    QString name;
    QString table;   // base table the column came from; empty for computed values
    QString origin;  // its name in that table
    QString declaredType;
    int kind = 0;  // sqlvalue::Kind of the declared type
};

class ResultColumns {
public:
    static std::shared_ptr<const ResultColumns> describe(sqlite3_stmt* stmt);

    // The column a caller means by `name`, -1 when none: the exact name, else
    // the name in any case, else the bare name of a qualified result column
    // ("x.name"), else "table.column" by base table and origin. The first
    // column wins at each step, also when a name is ambiguous.
    int indexOf(const QString& name) const;

    std::vector<ResultColumn> list;

private:
    QHash<QString, int> exact_;
    QHash<QString, int> folded_;  // lower-case names, then bare names of qualified ones
};

}  // namespace tarvel
