#pragma once

#include <QString>
#include <QTemporaryDir>

namespace tarvel::testing {

// A private copy of a freshly built data file in its own temporary folder; the
// global connection string points at it while the object lives.
class TempDataFile {
public:
    TempDataFile();
    ~TempDataFile();
    TempDataFile(const TempDataFile&) = delete;
    TempDataFile& operator=(const TempDataFile&) = delete;

    QString folder() const { return dir_.path(); }
    QString path() const;
    QString connectionString() const;

    // A freshly built data file shared by the process (never written to).
    static QString pristinePath();

private:
    QTemporaryDir dir_;
};

}  // namespace tarvel::testing
