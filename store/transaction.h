#pragma once

#include <QString>
#include <memory>

namespace tarvel {

class Handle;

// Writes that belong together: begins a transaction on the data file unless one
// is already open (then it joins it and leaves commit and rollback to the
// owner), and rolls back in its destructor unless committed.
class Transaction {
public:
    // The data file of `connectionString`, or of the global connection string.
    explicit Transaction(const QString& connectionString = QString());
    // An open data file's handle (a recordset's writes).
    explicit Transaction(std::shared_ptr<Handle> handle);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // False when the file could not be opened or the transaction not begun.
    bool isActive() const { return handle_ != nullptr; }
    // Commits when this guard began the transaction; false (and rolled back)
    // when the commit failed.
    bool commit();
    void rollback();
    QString error() const { return error_; }

private:
    void begin();

    std::shared_ptr<Handle> handle_;
    bool owner_ = false;
    bool done_ = false;
    QString error_;
};

}  // namespace tarvel
