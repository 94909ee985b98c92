#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

namespace tarvel {

// tarvel-io: backups, restores, report files, CSV and vCard from a terminal,
// on the data file of `--db FILE` (default: mydata3.tvg in `programFolder`).
// Prints what it did; returns 0 on success, 1 when the operation failed and
// 2 when the command line was wrong.
int runExchangeTool(const QStringList& args, const QString& programFolder, QTextStream& out,
                    QTextStream& err);

}  // namespace tarvel
