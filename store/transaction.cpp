#include "store/transaction.h"

#include <sqlite3.h>

#include "store/connectionstring.h"
#include "store/sqlitehandle.h"

namespace tarvel {

Transaction::Transaction(const QString& connectionString) {
    const QString cs = connectionString.isEmpty() ? globalConnectionString() : connectionString;
    handle_ = acquireHandle(cs, &error_);
    begin();
}

Transaction::Transaction(std::shared_ptr<Handle> handle) : handle_(std::move(handle)) {
    if (!handle_ || !handle_->isOpen()) {
        error_ = QStringLiteral("数据文件已关闭");
        handle_.reset();
    }
    begin();
}

void Transaction::begin() {
    if (!handle_) return;
    if (!sqlite3_get_autocommit(handle_->db())) return;  // joins the open one
    if (handle_->exec(QStringLiteral("BEGIN"), &error_))
        owner_ = true;
    else
        handle_.reset();
}

Transaction::~Transaction() {
    if (!done_) rollback();
}

bool Transaction::commit() {
    if (!handle_) return false;
    done_ = true;
    if (!owner_) return true;
    if (handle_->exec(QStringLiteral("COMMIT"), &error_)) return true;
    handle_->exec(QStringLiteral("ROLLBACK"), nullptr);
    return false;
}

void Transaction::rollback() {
    done_ = true;
    if (handle_ && owner_ && !sqlite3_get_autocommit(handle_->db()))
        handle_->exec(QStringLiteral("ROLLBACK"), nullptr);
}

}  // namespace tarvel
