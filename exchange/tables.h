#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "records/kinds.h"

namespace tarvel::exchange {

// A record table: its name, key column and id translation table.
struct RecordTable {
    QString name;     // "contacts"
    QString key;      // "con_id"
    QString upgrade;  // "upgrade_contacts"
    QString oldKey;   // "old_con_id"
    QString newKey;   // "new_con_id"
};

// A link table: its two id columns, the record table each names, and the
// extra column some carry (empty when none).
struct LinkTable {
    QString name;
    QString first, firstTable;
    QString second, secondTable;
    QString extra;
};

// A record kind as the exchange commands name it: by its table ("contacts").
using RecordKind = RecordKindInfo;
// Null for a word that names no kind.
const RecordKind* recordKind(const QString& table);
const RecordKind* recordKind(int code);

// Accounts, contacts, opportunities, tasks, documents.
const std::vector<RecordTable>& recordTables();
const RecordTable* recordTable(const QString& name);
const std::vector<LinkTable>& linkTables();
// The tables a file must hold to be one of this program's data files.
QStringList requiredTables();

}  // namespace tarvel::exchange
