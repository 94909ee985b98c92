#include <QCoreApplication>
#include <QTextStream>

#include "tools/exchangetool.h"

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QTextStream out(stdout), err(stderr);
    return tarvel::runExchangeTool(app.arguments().mid(1), QCoreApplication::applicationDirPath(),
                                   out, err);
}
