#include "tests/support/tempdatafile.h"

#include <QFile>
#include <cstdlib>

#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "tools/datafile.h"

namespace tarvel::testing {

QString TempDataFile::pristinePath() {
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(QStringLiteral("pristine.tvg"));
        QString error;
        if (!datafile::create(p, &error)) {
            qFatal("cannot build the test data file: %s", qPrintable(error));
        }
        return p;
    }();
    return path;
}

TempDataFile::TempDataFile() {
    if (!QFile::copy(pristinePath(), path())) qFatal("cannot copy the test data file");
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner);
    setGlobalConnectionString(connectionString());
}

TempDataFile::~TempDataFile() {
    closeAllHandles();
    setGlobalConnectionString(QString());
    Clock::reset();
}

QString TempDataFile::path() const {
    return dir_.filePath(QLatin1String(schema::kDataFileName));
}

QString TempDataFile::connectionString() const {
    return buildConnectionString(dir_.path());
}

}  // namespace tarvel::testing
