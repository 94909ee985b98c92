#include "exchange/importjournal.h"

#include <QCryptographicHash>
#include <QMap>
#include <algorithm>

#include "store/clock.h"
#include "store/jetdate.h"
#include "store/schema.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

QString keyOf(const QString& table) {
    return table.left(3) + QStringLiteral("_id");
}

// One prepared insert for many rows: values are bound, never spliced.
bool insertRow(const RecordsetPtr& rs, const QList<QVariant>& values, QString* error) {
    if (!rs || rs->State() != adStateOpen)
        return (*error = QStringLiteral("无法写入导入记录"), false);
    bool ok = rs->AddNew();
    for (int i = 0; ok && i < values.size(); ++i) ok = rs->setValue(i, values[i]);
    if (ok && rs->Update()) return true;
    *error = rs->ErrorDescription();
    rs->CancelUpdate();
    return false;
}

}  // namespace

bool ImportJournal::ensureTables(QString* error) {
    tarveldatabase db;
    for (const QString& statement : schema::laterTableStatements()) {
        db.Execute(statement);
        if (!db.ErrMsg().isEmpty()) return (*error = db.ErrMsg(), false);
    }
    return true;
}

bool ImportJournal::begin(const QString& source, const QString& file, QString* error) {
    tarveldatabase db;
    const auto rs = db.GetWriteRs(QStringLiteral(
        "SELECT ijn_date, ijn_source, ijn_file, ijn_summary, ijn_id FROM import_journal WHERE "
        "ijn_id=0"));
    if (!insertRow(rs, {Clock::now(), source, file, QString()}, error)) return false;
    id_ = rs->value(4).toLongLong();
    entries_.clear();
    return id_ != 0 || (*error = QStringLiteral("无法写入导入记录"), false);
}

void ImportJournal::added(const QString& table, qint64 key) {
    entries_ << Entry{table, key, {}, {}, {}, 0};
}

void ImportJournal::linked(const QString& linkTable, qint64 first, qint64 second) {
    entries_ << Entry{linkTable, first, linkColumn(), {}, {}, second};
}

QList<ImportJournal::Entry> ImportJournal::expand(const QString& table, qint64 key,
                                                  const QString& column, const QString& before,
                                                  const QString& after) {
    if (column != addedColumn() && column != linksColumn())
        return {Entry{table, key, column, before, after, 0}};
    QList<Entry> entries;
    for (const QString& item : after.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const qint64 first = item.section(QLatin1Char(':'), 0, 0).toLongLong();
        const QString second = item.section(QLatin1Char(':'), 1);
        if (column == addedColumn())
            entries << Entry{table, first, {}, {}, second, 0};
        else
            entries << Entry{table, first, linkColumn(), {}, second, second.toLongLong()};
    }
    return entries;
}

void ImportJournal::changed(const QString& table, qint64 key, const QString& column,
                            const QVariant& before, const QVariant& after) {
    entries_ << Entry{table, key, column, text(before), text(after), 0};
}

bool ImportJournal::externalId(const QString& source, const QString& id, const QString& table,
                               qint64 key, QString* error) {
    if (!externalIds_) {
        tarveldatabase db;
        externalIds_ = db.GetWriteRs(QStringLiteral(
            "SELECT ext_source, ext_id, ext_table, ext_key, ext_import FROM external_ids WHERE "
            "ext_key=0 AND ext_import=0"));
    }
    return insertRow(externalIds_, {source, id, table, key, id_}, error);
}

QString ImportJournal::text(const QVariant& value) {
    if (value.isNull()) return {};
    if (value.typeId() == QMetaType::QDateTime) return jetdate::canonical(value.toDateTime());
    if (value.typeId() == QMetaType::QDate) return jetdate::canonical(value.toDate());
    return value.toString();
}

bool ImportJournal::fingerprints(const QString& table, const QList<qint64>& keys,
                                 QHash<qint64, QString>* out, QString* error) {
    if (keys.isEmpty()) return true;
    const qint64 first = *std::min_element(keys.begin(), keys.end());
    const QSet<qint64> wanted(keys.begin(), keys.end());
    tarveldatabase db;
    const auto rs = db.GetReadRs(
        QStringLiteral("SELECT * FROM %1 WHERE %2>=%3").arg(table, keyOf(table)).arg(first));
    if (!rs || rs->State() != adStateOpen) return (*error = db.ErrMsg(), false);
    const int keyIndex = rs->fieldIndex(keyOf(table));
    const int tick = rs->fieldIndex(table.left(3) + QStringLiteral("_check"));
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
        const qint64 key = rs->value(keyIndex).toLongLong();
        if (!wanted.contains(key)) continue;
        // The tick marks a row for an export; it is no change of the record.
        QCryptographicHash hash(QCryptographicHash::Sha1);
        for (int i = 0; i < rs->FieldCount(); ++i)
            if (i != tick) hash.addData((text(rs->value(i)) + QChar(0x1F)).toUtf8());
        out->insert(key, QString::fromLatin1(hash.result().toHex()));
    }
    return true;
}

bool ImportJournal::finish(const QString& summary, QString* error) {
    tarveldatabase db;
    // An import that changed nothing leaves the one before it to be taken back.
    const QStringList drops =
        entries_.isEmpty()
            ? QStringList{QStringLiteral("DELETE FROM import_journal WHERE ijn_id=%1").arg(id_)}
            : QStringList{
                  QStringLiteral("DELETE FROM import_journal WHERE ijn_id<>%1").arg(id_),
                  QStringLiteral("DELETE FROM import_changes WHERE ijc_import<>%1").arg(id_)};
    for (const QString& statement : drops) {
        db.Execute(statement);
        if (!db.ErrMsg().isEmpty()) return (*error = db.ErrMsg(), false);
    }
    if (entries_.isEmpty()) return true;
    QHash<QString, QList<qint64>> addedByTable;
    for (const Entry& e : std::as_const(entries_))
        if (e.column.isEmpty()) addedByTable[e.table] << e.key;
    QHash<QString, QHash<qint64, QString>> prints;
    for (auto it = addedByTable.cbegin(); it != addedByTable.cend(); ++it)
        if (!fingerprints(it.key(), it.value(), &prints[it.key()], error)) return false;
    // Added records and links are many: one row per table lists them all.
    QMap<std::pair<QString, QString>, QStringList> lists;
    QList<const Entry*> changes;
    for (const Entry& e : std::as_const(entries_)) {
        if (e.column.isEmpty())
            lists[{e.table, addedColumn()}]
                << QStringLiteral("%1:%2").arg(e.key).arg(prints[e.table].value(e.key));
        else if (e.column == linkColumn())
            lists[{e.table, linksColumn()}] << QStringLiteral("%1:%2").arg(e.key).arg(e.other);
        else
            changes << &e;
    }
    const auto rs = db.GetWriteRs(
        QStringLiteral("SELECT ijc_import, ijc_table, ijc_key, ijc_column, ijc_old, ijc_new FROM "
                       "import_changes WHERE ijc_import=0"));
    for (auto it = lists.cbegin(); it != lists.cend(); ++it)
        if (!insertRow(rs,
                       {id_, it.key().first, 0, it.key().second, QString(),
                        it.value().join(QLatin1Char(';'))},
                       error))
            return false;
    for (const Entry* e : std::as_const(changes))
        if (!insertRow(rs, {id_, e->table, e->key, e->column, e->before, e->after}, error))
            return false;
    db.Execute(QStringLiteral("UPDATE import_journal SET ijn_summary='%1' WHERE ijn_id=%2")
                   .arg(QString(summary).replace(QLatin1Char('\''), QStringLiteral("''")))
                   .arg(id_));
    return db.ErrMsg().isEmpty() || (*error = db.ErrMsg(), false);
}

}  // namespace tarvel::exchange
