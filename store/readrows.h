#pragma once

#include <QString>

#include "store/recordset.h"

namespace tarvel {

// Appends a failure to a " ; "-joined ErrMsg.
void appendError(QString& log, const QString& text);

// Opens `sql` for reading; null when it cannot be read, with
// `operation` + "出错，原因可能是" + the reason appended to `log`.
RecordsetPtr readRows(const QString& sql, QString& log, const char* operation);

}  // namespace tarvel
