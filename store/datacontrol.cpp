#include "store/datacontrol.h"

#include "store/connectionstring.h"
#include "store/trace.h"

namespace tarvel {

bool DataControl::Refresh() {
    error_.clear();
    connection_ = std::make_shared<Connection>();
    if (!connection_->Open(ConnectionString.isEmpty() ? globalConnectionString()
                                                      : ConnectionString)) {
        error_ = connection_->ErrorDescription();
        Recordset = std::make_shared<tarvel::Recordset>();
        if (onRefreshed) onRefreshed();
        return false;
    }
    trace::record(RecordSource);
    Recordset = std::make_shared<tarvel::Recordset>();
    const bool ok = Recordset->Open(RecordSource, connection_, adOpenStatic, adLockPessimistic);
    if (!ok) error_ = Recordset->ErrorDescription();
    if (onRefreshed) onRefreshed();
    return ok;
}

}  // namespace tarvel
