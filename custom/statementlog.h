#pragma once

#include <QString>

#include "store/recordset.h"

namespace tarvel {

// The customisation classes keep ErrMsg as a running log: every statement
// they issue, then the error text of any that failed, joined by " ; ".

// Appends an entry to a " ; "-joined log.
void appendErrMsg(QString& log, const QString& entry);
// Logs and runs a statement; false (with the error logged) when it failed.
bool executeLogged(QString& log, const QString& sql);
// Logs and opens a query; null (with the error logged) when it failed.
RecordsetPtr readLogged(QString& log, const QString& sql);

}  // namespace tarvel
