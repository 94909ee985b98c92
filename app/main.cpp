#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include "store/connectionstring.h"
#include "store/tarveldatabase.h"

// Opens the data file in the program folder and reports what it holds.
int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QString folder = QCoreApplication::applicationDirPath();
    if (const QByteArray home = qgetenv("TARVEL_HOME"); !home.isEmpty())
        folder = QString::fromLocal8Bit(home);
    const QStringList args = app.arguments();
    if (const qsizetype i = args.indexOf(QStringLiteral("--data-dir"));
        i >= 0 && i + 1 < args.size())
        folder = args[i + 1];
    folder = QDir::toNativeSeparators(folder.trimmed());
    if (folder.endsWith(QDir::separator())) folder.chop(1);
    tarvel::setGlobalConnectionString(tarvel::buildConnectionString(folder));

    QTextStream out(stdout);
    tarvel::tarveldatabase db;
    const char* tables[] = {"contacts", "accounts", "opportunities", "tasks", "documents"};
    for (const char* table : tables) {
        tarvel::RecordsetPtr rs =
            db.GetReadRs(QStringLiteral("SELECT COUNT(*) AS n FROM %1").arg(QLatin1String(table)));
        if (!rs || rs->State() != tarvel::adStateOpen) {
            out << "无法打开数据文件（" << folder << QDir::separator() << "mydata3.tvg）："
                << db.ErrMsg() << Qt::endl;
            return 1;
        }
        out << table << ": " << rs->value(0).toInt() << Qt::endl;
    }
    return 0;
}
