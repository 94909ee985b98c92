#pragma once

#include <QString>

#include "store/connection.h"
#include "store/recordset.h"

namespace tarvel::exchange {

// Runs statements of the program's dialect on a data file other than the live
// one (a report's working copy, an incoming report), recording each in the
// statement trace as the record classes do for the live file.
class FileDatabase {
public:
    explicit FileDatabase(const QString& path);
    ~FileDatabase();
    bool isOpen() const;
    QString connectionString() const { return connectionString_; }

    // False, with the reason added to ErrMsg, when the statement fails.
    bool run(const QString& sql);
    // An open read-only recordset, or null with the reason in ErrMsg.
    RecordsetPtr read(const QString& sql);
    QString ErrMsg() const { return errMsg_; }
    // Lets go of the file so it can be moved or deleted.
    void close();

private:
    QString connectionString_;
    ConnectionPtr connection_;
    QString errMsg_;
};

}  // namespace tarvel::exchange
