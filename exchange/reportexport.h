#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include "exchange/progress.h"

namespace tarvel::exchange {

// The record kind a report starts from, in the relation numbering.
enum class ReportKind { Opportunities = 1, Accounts = 2, Contacts = 3, Tasks = 4 };

inline QString reportFilter() {
    return QStringLiteral("Tarvel3.0报告文件(*.tvr3)|*.tvr3");
}

// Empty when the user's profile is complete; otherwise what to tell the user.
QString profileProblem();

// The name the save dialog proposes in the program folder.
QString proposedReportName(const QString& folder, const QString& userName, const QDate& date);

// The question asked before an existing file is overwritten.
inline QString overwriteQuestion(const QString& path) {
    return path + QStringLiteral("已经存在,是否覆盖该文件?");
}

// Writes the ticked records of `kind` with the records linked to them, less
// every private record, into the report file `chosen`. The live file is only
// read; `chosen` is replaced only by a complete report.
Outcome exportReport(int kind, const QString& chosen, const Progress& progress = {});

}  // namespace tarvel::exchange
