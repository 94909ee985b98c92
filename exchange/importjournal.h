#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include "store/recordset.h"

namespace tarvel::exchange {

// The journal of the import under way: what it added, linked and changed,
// written beside the records in the import's transaction so that the import
// can be taken back until the next one.
class ImportJournal {
public:
    // Adds the journal's tables to a data file made before they existed.
    static bool ensureTables(QString* error);
    // Starts a new journal; finish drops the one of the import before when
    // this one changed anything.
    bool begin(const QString& source, const QString& file, QString* error);
    void added(const QString& table, qint64 key);
    void linked(const QString& linkTable, qint64 first, qint64 second);
    void changed(const QString& table, qint64 key, const QString& column, const QVariant& before,
                 const QVariant& after);
    // Remembers the id a record had in another program.
    bool externalId(const QString& source, const QString& id, const QString& table, qint64 key,
                    QString* error);
    // Writes the entries (added records with the fingerprint of their rows).
    bool finish(const QString& summary, QString* error);
    int size() const { return int(entries_.size()); }
    qint64 id() const { return id_; }

    // A stored value as the journal keeps it: dates in their fixed form.
    static QString text(const QVariant& value);
    // The fingerprint of the rows of `table` whose keys are given: what the
    // user has changed since shows as a different fingerprint.
    static bool fingerprints(const QString& table, const QList<qint64>& keys,
                             QHash<qint64, QString>* out, QString* error);

    struct Entry {
        QString table;
        qint64 key = 0;
        QString column;  // empty: record added; for a link, the link table is `table`
        QString before, after;
        qint64 other = 0;  // a link's second id
    };

    // The entries one stored row stands for (a row lists all the records or
    // links of a table the import added).
    static QList<Entry> expand(const QString& table, qint64 key, const QString& column,
                               const QString& before, const QString& after);
    // The column an entry of a link carries; the other end is in `other`
    // (read back: `after`).
    static QString linkColumn() { return QStringLiteral("*link"); }

private:
    static QString addedColumn() { return QStringLiteral("*added"); }
    static QString linksColumn() { return QStringLiteral("*links"); }

    qint64 id_ = 0;
    QList<Entry> entries_;
    // One write recordset for every external id of the import: opening one per
    // id would read the growing table again each time.
    RecordsetPtr externalIds_;
};

}  // namespace tarvel::exchange
