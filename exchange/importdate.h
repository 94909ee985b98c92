#pragma once

#include <QDate>
#include <QString>

namespace tarvel::exchange {

// How a date cell of another program's table reads.
enum class DateCell {
    Empty,  // blank or a placeholder such as "0/0/00" or "1/1/1601"
    Date,
    NoYear,  // "--MM-DD": a day of the year, given in the year 2000
    Bad,
};

// Reads the date forms address books and spreadsheets write: yyyy-MM-dd,
// yyyy/M/d, M/d/yyyy (and M/d/yy), d.M.yyyy, yyyy年M月d日, an Excel serial
// day number, each optionally followed by a time.
DateCell readDateCell(const QString& text, QDate* date);

// The day of an Excel serial number (1900 date system, or the 1904 one).
QDate excelSerialDate(double serial, bool date1904);

}  // namespace tarvel::exchange
