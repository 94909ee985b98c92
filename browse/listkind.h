#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>

#include "browse/unsaved.h"

namespace tarvel::lists {

// The numbering of the shared list routines: 0 opportunities, 1 accounts,
// 2 contacts, 3 tasks, 4 documents. It differs from the relation and field
// kind codes (1 to 5) on purpose; ListKind::fieldType carries those.
namespace listno {
enum : int { Opportunities = 0, Accounts = 1, Contacts = 2, Tasks = 3, Documents = 4 };
}  // namespace listno

// The labels and counts of one group of the navigation panel; false and an
// error text when the counting failed.
struct CategoryCounts {
    QStringList labels;
    QList<int> counts;
};
using CountCategories = std::function<bool(CategoryCounts* out, QString* error)>;

// One group of the navigation panel and how a click on one of its entries
// becomes the list's condition.
struct CategoryGroup {
    enum class Match {
        All,            // every record, no condition
        Search,         // moves to the search box
        Birthday,       // contacts born on today's month and day
        Participation,  // "有"/"无": takes part in an opportunity or not
        Equal,          // column = 'value'
        Substring,      // column Like '%value%' (tags)
        Number,         // column = value, unquoted
        AccountName,    // acc_name = 'value'; the empty label means no account
    };
    QString key;      // object name suffix of the group's entry
    QString caption;  // "地区"
    Match match;
    QString column;
    CountCategories count;  // null for groups without counts
};

// What makes one record list different from another.
struct ListKind {
    int number;        // listno
    qint16 fieldType;  // kind code of `fields` and the relation operations
    qint16 page;
    qint16 detailPage;
    QString formName;  // "form_con_all"
    QString prefix;    // "con"
    QString table;     // the table written to
    QString source;    // the table or stored query read
    QString key;
    QString tick;
    QString defaultOrder;  // " ORDER BY ..."
    QString noun;          // "联系人"
    QStringList searchColumns;
    QList<CategoryGroup> groups;
    UnsavedModule module;
};

// The description of a list by its number; contacts for an unknown number.
const ListKind& listKind(int number);
// The list shown under a page code; null for other pages.
const ListKind* listKindForPage(qint16 page);
// The list of a relation kind code (kind::Contact, ...); null for none.
const ListKind* listKindForRecord(qint16 recordKind);

}  // namespace tarvel::lists
