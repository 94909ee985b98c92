#pragma once

#include <QString>
#include <QVariant>

struct sqlite3_stmt;

namespace tarvel::sqlvalue {

// The value of a result column as the program sees it: null, int/qlonglong,
// double (currency rounded to four places), QDateTime for dates, -1/0 for yes/no.
QVariant read(sqlite3_stmt* stmt, int column, const QString& declaredType);

// How values of a declared column type are presented.
enum Kind { Plain = 0, Date = 1, YesNo = 2, Currency = 3, Untyped = 4 };
int kindOf(const QString& declaredType);

// The same from a copied cell: its engine type (SQLITE_INTEGER, ...) and content.
QVariant decode(int type, qint64 integer, double real, const char* bytes, int size, int kind);

// Converts a value written by the program into what the column stores; false
// (with a message) when the value does not fit the column's type.
bool toStorage(const QVariant& value, const QString& declaredType, QVariant& stored,
               QString* error);

// Binds a stored value (as returned by toStorage) to a parameter (1-based).
void bind(sqlite3_stmt* stmt, int parameter, const QVariant& stored);

// Rounds to the four decimals of a currency value.
double roundCurrency(double value);

}  // namespace tarvel::sqlvalue
