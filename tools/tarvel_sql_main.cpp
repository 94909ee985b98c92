#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>

#include "tools/sqlshell.h"

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QTextStream in(stdin), out(stdout), err(stderr);
    return tarvel::runSqlShell(app.arguments().mid(1), QCoreApplication::applicationDirPath(), in,
                               out, err);
}
