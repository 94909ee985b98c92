#pragma once

#include <QString>
#include <functional>

#include "store/connection.h"
#include "store/recordset.h"

namespace tarvel {

// The grid's data control: a record source opened as a writable recordset over
// its own connection. Screens show `Recordset` in a table view and re-bind
// when `onRefreshed` fires.
class DataControl {
public:
    QString ConnectionString;  // empty: the global connection string
    QString RecordSource;
    RecordsetPtr Recordset;
    std::function<void()> onRefreshed;

    // Re-opens RecordSource; false (with ErrorDescription) when it cannot.
    bool Refresh();
    ConnectionPtr ActiveConnection() const { return connection_; }
    QString ErrorDescription() const { return error_; }

private:
    ConnectionPtr connection_;
    QString error_;
};

}  // namespace tarvel
