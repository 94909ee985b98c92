#include "tools/sqlshell.h"

#include <QDir>
#include <QLocale>

#include "store/connection.h"
#include "store/connectionstring.h"
#include "store/faulttext.h"
#include "store/jetdate.h"
#include "store/schema.h"
#include "tools/datafile.h"

namespace tarvel {

namespace {

const char* kUsage =
    "usage: tarvel-sql [--db FILE] [-c SQL]...   (statements from -c, else one per line on stdin)\n"
    "       tarvel-sql --create FILE\n";

QString printable(const QVariant& v) {
    if (v.isNull()) return QStringLiteral("NULL");
    switch (v.typeId()) {
        case QMetaType::QDateTime:
            return jetdate::canonical(v.toDateTime());
        case QMetaType::Double:
            return QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest);
        default:
            return v.toString();
    }
}

// Runs one statement; false (after printing the engine's message) on an error.
bool runStatement(Connection& connection, const QString& sql, QTextStream& out, QTextStream& err) {
    qint64 changed = 0;
    RecordsetPtr rs = connection.Execute(sql, &changed);
    if (!connection.ErrorDescription().isEmpty()) {
        err << "error: " << connection.ErrorDescription() << Qt::endl;
        return false;
    }
    if (rs->State() != adStateOpen) {
        out << "OK " << changed << Qt::endl;
        return true;
    }
    QStringList header;
    for (int i = 0; i < rs->FieldCount(); ++i) header << rs->fieldName(i);
    out << header.join(QLatin1Char('\t')) << '\n';
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList line;
        for (int i = 0; i < rs->FieldCount(); ++i) line << printable(rs->value(i));
        out << line.join(QLatin1Char('\t')) << '\n';
    }
    out.flush();
    return true;
}

}  // namespace

int runSqlShell(const QStringList& arguments, const QString& defaultFolder, QTextStream& in,
                QTextStream& out, QTextStream& err) {
    QString dbPath = QDir(defaultFolder).filePath(QLatin1String(schema::kDataFileName));
    QStringList statements;
    bool fromArguments = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (a == QLatin1String("--create") && hasValue) {
            QString error;
            if (!datafile::create(arguments[i + 1], &error)) {
                err << "error: " << error << Qt::endl;
                return 1;
            }
            out << "created " << arguments[i + 1] << Qt::endl;
            return 0;
        } else if (a == QLatin1String("--db") && hasValue) {
            dbPath = arguments[++i];
        } else if (a == QLatin1String("-c") && hasValue) {
            statements << arguments[++i];
            fromArguments = true;
        } else {
            err << kUsage;
            return 2;
        }
    }
    Connection connection;
    if (!connection.Open(connectionStringFor(dbPath))) {
        err << "error: " << connection.ErrorDescription() << Qt::endl;
        return 1;
    }
    // Said before the first statement, not at the first write that fails.
    if (const QString problem = writeProblem(dbPath); !problem.isEmpty())
        err << "warning: " << problem << Qt::endl;
    if (fromArguments) {
        for (const QString& sql : std::as_const(statements))
            if (!runStatement(connection, sql, out, err)) return 1;
        return 0;
    }
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.trimmed().isEmpty()) continue;
        if (!runStatement(connection, line, out, err)) return 1;
    }
    return 0;
}

}  // namespace tarvel
