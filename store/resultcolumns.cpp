#include "store/resultcolumns.h"

#include <sqlite3.h>

#include "store/sqlvalue.h"

namespace tarvel {

std::shared_ptr<const ResultColumns> ResultColumns::describe(sqlite3_stmt* stmt) {
    auto columns = std::make_shared<ResultColumns>();
    const int count = sqlite3_column_count(stmt);
    columns->list.reserve(count);
    auto text = [](const char* s) { return s ? QString::fromUtf8(s) : QString(); };
    for (int i = 0; i < count; ++i) {
        ResultColumn c{text(sqlite3_column_name(stmt, i)), text(sqlite3_column_table_name(stmt, i)),
                       text(sqlite3_column_origin_name(stmt, i)),
                       text(sqlite3_column_decltype(stmt, i))};
        c.kind = sqlvalue::kindOf(c.declaredType);
        columns->list.push_back(std::move(c));
    }
    // Walking backwards lets the first column of a name win; the names in any
    // case go in last, so they win over bare names.
    for (int i = count - 1; i >= 0; --i) {
        const QString& name = columns->list[i].name;
        columns->exact_.insert(name, i);
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        if (dot >= 0) columns->folded_.insert(name.mid(dot + 1).toLower(), i);
    }
    for (int i = count - 1; i >= 0; --i)
        columns->folded_.insert(columns->list[i].name.toLower(), i);
    return columns;
}

int ResultColumns::indexOf(const QString& name) const {
    if (auto it = exact_.constFind(name); it != exact_.constEnd()) return *it;
    if (auto it = folded_.constFind(name.toLower()); it != folded_.constEnd()) return *it;
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0) return -1;
    const QStringView table = QStringView(name).left(dot), column = QStringView(name).mid(dot + 1);
    for (int i = 0; i < int(list.size()); ++i) {
        const ResultColumn& c = list[i];
        if (c.table.compare(table, Qt::CaseInsensitive) == 0 &&
            c.origin.compare(column, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

}  // namespace tarvel
