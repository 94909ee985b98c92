#pragma once

#include <QDate>
#include <QString>
#include <optional>

#include "browse/listkind.h"

namespace tarvel::lists {

// The statements of the list screens, built from fixed fragments and escaped
// user text. Conditions are WHERE clauses (possibly followed by ORDER BY) or
// empty.

// A condition's WHERE part and its " ORDER BY ..." part (empty when absent).
struct SplitCondition {
    QString where;
    QString order;
};
SplitCondition splitCondition(const QString& condition);

// The condition sorted by `column`: ascending, or descending when it was
// sorted ascending by that column already.
QString sortedCondition(const QString& condition, const QString& column);

// "SELECT " + columns + " FROM " + source + " " + condition + the kind's
// default order unless the condition brings its own.
QString listQuery(const ListKind& kind, const QString& columns, const QString& condition);

// The LIKE tests of the kind's search columns joined by OR; "" for an empty text.
QString searchCondition(int number, const QString& text);
// The text a search condition of the kind looks for, as typed; empty for any
// other condition.
QString searchTextOf(const ListKind& kind, const QString& condition);

// The first test of a WHERE clause "WHERE column LIKE '%...%' ..." read back:
// its column, the text it looks for as typed, and what follows the test.
struct LeadingLike {
    QString column;
    QString text;
    QString rest;
};
std::optional<LeadingLike> leadingLike(const QString& where);

// Clears every tick of a kind; empty for a number of 5 or more.
QString clearChecksSql(int number);

// Mode 0 ticks, 1 unticks, 2 inverts the rows of `condition`; with apply
// false the statement writes each tick onto itself. Contacts are selected
// through que_contacts_accounts, so account columns may take part.
QString setChecksSql(int number, int mode, const QString& condition, bool apply);

// Ticks or unticks one record.
QString tickSql(const ListKind& kind, qint64 id, bool ticked);

// The ticked rows with the given columns.
QString tickedQuery(const ListKind& kind, const QString& columns);

// The condition of a click on `value` of a navigation group; `today` serves
// the birthday entry.
QString categoryCondition(const ListKind& kind, const CategoryGroup& group, const QString& value,
                          const QDate& today);

// The condition of "查看相关": the opportunities of the ticked records (for
// the opportunity list: the contacts of its ticked opportunities), and the
// page that shows it.
struct RelatedList {
    qint16 page;
    QString condition;
};
RelatedList relatedCondition(const ListKind& kind);

}  // namespace tarvel::lists
