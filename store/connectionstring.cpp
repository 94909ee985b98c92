#include "store/connectionstring.h"

#include <QDir>
#include <QRegularExpression>

#include "store/schema.h"

namespace tarvel {

namespace {
const QString kPrefix =
    QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Password=\"\";Data Source= ");
const QString kSuffix = QStringLiteral(";Persist Security Info=True;Jet OLEDB:Database Password=");

QString& globalString() {
    static QString value;
    return value;
}
}  // namespace

ConnectionInfo parseConnectionString(const QString& connectionString) {
    // A path may itself hold ';', so a part ends only where the next "name=" starts.
    static const QRegularExpression partStart(
        QStringLiteral(";(?=\\s*[A-Za-z][A-Za-z0-9 ]*(?::[A-Za-z0-9 ]+)?=)"));
    ConnectionInfo info;
    bool haveSource = false;
    bool havePassword = false;
    for (const QString& part : connectionString.split(partStart)) {
        const qsizetype eq = part.indexOf(QLatin1Char('='));
        if (eq < 0) continue;
        const QString name = part.left(eq).trimmed();
        QString value = part.mid(eq + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) &&
            value.endsWith(QLatin1Char('"')))
            value = value.mid(1, value.size() - 2);
        if (name.compare(QLatin1String("Data Source"), Qt::CaseInsensitive) == 0) {
            info.dataSource = value;
            haveSource = true;
        } else if (name.compare(QLatin1String("Jet OLEDB:Database Password"),
                                Qt::CaseInsensitive) == 0) {
            info.password = value;
            havePassword = true;
        }
    }
    info.valid = haveSource && havePassword && !info.dataSource.isEmpty();
    return info;
}

QString connectionStringFor(const QString& filePath) {
    return kPrefix + QDir::toNativeSeparators(filePath) + kSuffix +
           QLatin1String(schema::kDatabasePassword);
}

QString buildConnectionString(const QString& appPathNoSep) {
    return kPrefix + appPathNoSep + QDir::separator() + QLatin1String(schema::kDataFileName) +
           kSuffix + QLatin1String(schema::kDatabasePassword);
}

QString globalConnectionString() {
    return globalString();
}

void setGlobalConnectionString(const QString& connectionString) {
    globalString() = connectionString;
}

}  // namespace tarvel
