#pragma once
// The test's data file as a test reads and writes it directly: statements that
// stop the test when they fail, single values, and naive date-times.
#include <QDateTime>
#include <QString>
#include <QVariant>

#include "custom/softwaresetting.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel::testsupport {

// Runs a statement against the test's data file; the test stops when it fails.
inline void run(const QString& sql) {
    tarveldatabase db;
    db.Execute(sql);
    if (!db.ErrMsg().isEmpty()) qFatal("%s", qPrintable(db.ErrMsg()));
}

// Stores a value of the settings table (type, key), as the settings window would.
inline void writeValue(const char* type, const char* key, const QString& value) {
    SoftwareSetting().WriteValue(QLatin1String(type), QLatin1String(key), {}, {}, value, {});
}

// The first column of the first row; null when there is none.
inline QVariant firstValue(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    return rs && !rs->Eof() ? rs->value(0) : QVariant();
}
inline int count(const QString& sql) {
    return firstValue(sql).toInt();
}
inline QString text(const QString& sql) {
    return firstValue(sql).toString();
}

// A naive date-time, as the program's clock and the data file hold them.
inline QDateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return jetdate::naive(QDate(y, m, d), QTime(h, mi, s));
}

}  // namespace tarvel::testsupport
