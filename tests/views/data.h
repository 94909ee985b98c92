#pragma once

#include <QDateTime>
#include <QVariant>

#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel::testsupport {

// Runs a statement against the test's data file; the test stops when it fails.
inline void run(const QString& sql) {
    tarveldatabase db;
    db.Execute(sql);
    if (!db.ErrMsg().isEmpty()) qFatal("%s", qPrintable(db.ErrMsg()));
}

// The first column of the first row; null when there is none.
inline QVariant firstValue(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    return rs && !rs->Eof() ? rs->value(0) : QVariant();
}

// A naive date-time, as the program's clock and the data file hold them.
inline QDateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return jetdate::naive(QDate(y, m, d), QTime(h, mi, s));
}

}  // namespace tarvel::testsupport
