#pragma once

#include <QStringList>
#include <QTextStream>

namespace tarvel {

// The command-line SQL runner: `[--db FILE] [-c SQL]...` or `--create FILE`.
// `defaultFolder` holds the data file used when no --db is given.
int runSqlShell(const QStringList& arguments, const QString& defaultFolder, QTextStream& in,
                QTextStream& out, QTextStream& err);

}  // namespace tarvel
