#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <list>
#include <memory>
#include <vector>

#include "store/resultcolumns.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tarvel {

struct TableInfo {
    QStringList columns;
    QString primaryKey;                     // empty when the table has no single-column key
    QHash<QString, QString> declaredTypes;  // column -> declared type
};

// One open, keyed data file. Opening derives the key, which is slow by design,
// so handles are cached per connection string and shared by every operation.
class Handle {
public:
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    // Opens (or, with `create`, creates) a data file keyed with `password`.
    static std::shared_ptr<Handle> open(const QString& path, const QString& password, bool create,
                                        QString* error);

    bool isOpen() const { return db_ != nullptr; }
    sqlite3* db() const { return db_; }
    const QString& path() const { return path_; }
    QString lastError() const;

    // A prepared statement for an engine-dialect text, reused between calls.
    // The caller resets it (StatementLease does).
    sqlite3_stmt* prepare(const QString& sql, QString* error);

    // Runs engine-dialect statements that return no rows (schema building).
    bool exec(const QString& sql, QString* error);

    const TableInfo* tableInfo(const QString& table);

    // The columns of a statement prepared by this handle.
    std::shared_ptr<const ResultColumns> resultColumns(sqlite3_stmt* stmt);

    void close();

private:
    explicit Handle(sqlite3* db, QString path);
    void registerFunctions();

    sqlite3* db_ = nullptr;
    QString path_;
    struct Cached {
        sqlite3_stmt* stmt;
        std::list<QString>::iterator age;
        std::shared_ptr<const ResultColumns> columns;
    };
    QHash<QString, Cached> statements_;
    std::list<QString> ages_;  // most recently used first
    QHash<QString, TableInfo> tables_;
    QHash<sqlite3_stmt*, QString> sqlOf_;
};

// Resets a cached statement when the caller is done with it.
class StatementLease {
public:
    explicit StatementLease(sqlite3_stmt* stmt) : stmt_(stmt) {}
    ~StatementLease();
    StatementLease(const StatementLease&) = delete;
    StatementLease& operator=(const StatementLease&) = delete;
    sqlite3_stmt* get() const { return stmt_; }

private:
    sqlite3_stmt* stmt_;
};

// The page cache, in KiB, for a data file of `fileBytes`: enough to hold the
// whole file (so a scan decrypts each page once), within 16 to 256 MiB.
int pageCacheKiB(qint64 fileBytes);

// The cached handle for a connection string (opened on first use).
std::shared_ptr<Handle> acquireHandle(const QString& connectionString, QString* error);

// Closes every cached handle, so the files can be replaced (restore, compaction).
void closeAllHandles();

}  // namespace tarvel
