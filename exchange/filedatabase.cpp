#include "exchange/filedatabase.h"

#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "store/trace.h"

namespace tarvel::exchange {

FileDatabase::FileDatabase(const QString& path)
    : connectionString_(connectionStringFor(path)), connection_(std::make_shared<Connection>()) {
    if (!connection_->Open(connectionString_)) errMsg_ = connection_->ErrorDescription();
}

FileDatabase::~FileDatabase() {
    close();
}

bool FileDatabase::isOpen() const {
    return connection_->State() == adStateOpen;
}

bool FileDatabase::run(const QString& sql) {
    trace::record(sql);
    connection_->Execute(sql);
    if (connection_->ErrorDescription().isEmpty()) return true;
    errMsg_ = sql + QStringLiteral("：") + connection_->ErrorDescription();
    return false;
}

RecordsetPtr FileDatabase::read(const QString& sql) {
    trace::record(sql);
    auto rs = std::make_shared<Recordset>();
    if (rs->Open(sql, connection_)) return rs;
    errMsg_ = sql + QStringLiteral("：") + rs->ErrorDescription();
    return nullptr;
}

void FileDatabase::close() {
    // The handle is cached per connection string; closing it lets the file go.
    if (connection_->handle()) connection_->handle()->close();
    connection_->Close();
}

}  // namespace tarvel::exchange
