#pragma once

#include <QString>
#include <QStringList>

namespace tarvel::schema {

// Name of the data file in the program folder, and its database password.
inline constexpr const char* kDataFileName = "mydata3.tvg";
inline constexpr const char* kDatabasePassword = "kt5_vamire4417_q_hx";

// The stored query joining each contact with its account.
inline constexpr const char* kContactsAccountsQuery = "que_contacts_accounts";

// Declared column types; the access layer reads them back to type values.
inline constexpr const char* kDateType = "DATETIME";
inline constexpr const char* kYesNoType = "YESNO";
inline constexpr const char* kCurrencyType = "CURRENCY";

// Statements that create every table, index, view and trigger of a new data file.
QStringList creationStatements();

// Statements that add to an older data file the tables later builds use (the
// journal of the last import, the ids records had in other programs); they
// change nothing where the tables are there. creationStatements includes them.
QStringList laterTableStatements();

// True for the yes/no (check mark) columns, where NOT is a bitwise not.
bool isYesNoColumn(const QString& column);

// True for the short text columns of the record tables (names, numbers,
// options), false for memos and every other type.
bool isShortTextColumn(const QString& column);

}  // namespace tarvel::schema
