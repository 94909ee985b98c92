#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace tarvel {
class Handle;
}

namespace tarvel::exchange {

// Another data file (a report, a template, an older data file) attached to the
// live file's handle under a schema name of its own, so that one statement can
// copy rows between the two. Detached again when the object goes. A file can
// be attached only outside a transaction, so make this before the Transaction.
class AttachedFile {
public:
    AttachedFile(const QString& path, const QString& schemaName);
    ~AttachedFile();
    AttachedFile(const AttachedFile&) = delete;
    AttachedFile& operator=(const AttachedFile&) = delete;

    bool isOpen() const { return attached_; }
    QString error() const { return error_; }
    Handle& live() const { return *live_; }
    const QString& schema() const { return schema_; }

    // Columns of a table in the attached file, or in the live file with
    // `live`; empty when the file lacks the table.
    QStringList columns(const QString& table, bool live = false) const;
    // The columns both files give `table`, in the live file's order.
    QStringList sharedColumns(const QString& table) const;
    // Tables of the attached file.
    QStringList tables() const;
    // The first value of a query (null when it returns no row or fails).
    QVariant scalar(const QString& sql) const;
    // Rows of a query, each a list of its values; false with the reason.
    bool rows(const QString& sql, QList<QVariantList>* out, QString* error) const;
    // Runs one statement with `values` bound to its parameters in order; the
    // statement is prepared once and kept while the file is attached.
    bool run(const QString& sql, const QVariantList& values, QString* error) const;

private:
    std::shared_ptr<Handle> live_;
    QString schema_;
    bool attached_ = false;
    QString error_;
    mutable QHash<QString, void*> prepared_;  // sqlite3_stmt*, finalised before detaching
};

// Rows of a query on an open handle, each a list of its values; false with the reason.
bool queryRows(Handle& handle, const QString& sql, QList<QVariantList>* out, QString* error);

// Opens `path` with the database password and reads the names of its tables;
// false when it does not open as an encrypted data file or holds no table.
// With `intact`, also whether it passes the engine's integrity check.
bool readFileTables(const QString& path, QSet<QString>* tables, bool* intact = nullptr);

}  // namespace tarvel::exchange
