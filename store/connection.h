#pragma once

#include <QString>
#include <memory>

#include "store/recordset.h"

namespace tarvel {

class Handle;

// A cheap connection object over the cached handle of its connection string.
class Connection {
public:
    QString ConnectionString;

    bool Open(const QString& connectionString = QString());
    void Close();
    int State() const { return handle_ ? adStateOpen : adStateClosed; }

    // Runs a statement of the program's dialect, with `bound` as the values of
    // its ? marks. A statement that returns rows gives an open read-only
    // recordset; any other gives a closed one.
    RecordsetPtr Execute(const QString& sql, qint64* recordsAffected = nullptr,
                         const QList<QVariant>& bound = {});

    QString ErrorDescription() const { return error_; }
    const std::shared_ptr<Handle>& handle() const { return handle_; }

private:
    std::shared_ptr<Handle> handle_;
    QString error_;
};

}  // namespace tarvel
