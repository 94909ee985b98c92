#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "store/recordset.h"

namespace tarvel::exchange {

// How a failed import begins its message: it changed nothing.
inline QString importFailed() {
    return QStringLiteral("导入没有完成，当前数据没有改动：");
}

// Adds imported records to one table of the live file through a write
// recordset (values are bound, never spliced into SQL), stamping the creation
// and recent-contact dates the record screens would.
class RecordWriter {
public:
    explicit RecordWriter(const QString& table);
    bool isOpen() const;
    QString ErrMsg() const { return errMsg_; }
    // The columns an import may fill: all but the key and the tick.
    QStringList columns() const;
    // The new record's key, or 0 with the reason in `error`.
    qint64 add(const QHash<QString, QVariant>& values, QString* error);

private:
    QString table_, key_;
    RecordsetPtr rs_;
    QString errMsg_;
};

// Links contacts to accounts by the account's name, adding accounts that are
// not there yet (names compare as the file compares text: case-insensitively).
class AccountLinker {
public:
    AccountLinker();
    // False with the reason in `error`; a blank name links nothing. An account
    // added for the name starts with `newAccount`'s columns.
    bool link(qint64 contactId, const QString& accountName, QString* error,
              qint64* accountId = nullptr, bool* accountAdded = nullptr,
              const QHash<QString, QVariant>& newAccount = {});
    int accountsAdded() const { return added_; }

private:
    RecordWriter accounts_;
    RecordsetPtr links_;
    QHash<QString, qint64> byName_;
    int added_ = 0;
};

}  // namespace tarvel::exchange
