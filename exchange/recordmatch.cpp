#include "exchange/recordmatch.h"

#include "exchange/importsession.h"
#include "exchange/tables.h"

namespace tarvel::exchange {

namespace {

// What recognises a record besides its kind's name column (records/kinds.h).
struct KeyColumns {
    const char* table;
    const char* created;
    QStringList alike;     // with the name, any one of these alike finds the record
    QStringList together;  // with the name, all of these alike together
};

const KeyColumns* keyColumns(const QString& table) {
    static const KeyColumns all[] = {
        {"accounts", nullptr, {}, {}},
        {"contacts",
         "con_create_date",
         {"con_mobile", "con_mobile2", "con_mobile3", "con_email", "con_email2", "con_email3"},
         {}},
        {"opportunities", "opp_create_date", {}, {}},
        {"tasks", "tas_create_date", {}, {"tas_date", "tas_time"}},
        {"documents", "doc_create_date", {}, {"doc_path"}},
    };
    for (const KeyColumns& k : all)
        if (table == QLatin1String(k.table)) return &k;
    return nullptr;
}

QString nameColumn(const KeyColumns* k) {
    return QLatin1String(recordKind(QLatin1String(k->table))->nameColumn);
}

QString text(const QHash<QString, QVariant>& columns, const QString& name) {
    return columns.value(name).toString().simplified().toCaseFolded();
}

}  // namespace

QStringList mergeKeyColumns(const QString& table) {
    const KeyColumns* k = keyColumns(table);
    if (!k) return {};
    QStringList out{nameColumn(k)};
    if (k->created) out << QLatin1String(k->created);
    return out + k->alike + k->together;
}

QStringList mergeKeys(const QString& table, const QHash<QString, QVariant>& columns,
                      const QString& accountName) {
    const KeyColumns* k = keyColumns(table);
    if (!k) return {};
    const QString n = ImportSession::normalisedName(columns.value(nameColumn(k)).toString());
    if (n.isEmpty()) return {};
    if (table == QLatin1String("accounts")) return {n};
    QStringList keys;
    if (table == QLatin1String("contacts"))
        keys = ImportSession::contactKeys(
            n, {text(columns, k->alike[0]), text(columns, k->alike[1]), text(columns, k->alike[2])},
            {text(columns, k->alike[3]), text(columns, k->alike[4]), text(columns, k->alike[5])});
    const QString account = ImportSession::normalisedName(accountName);
    if (!account.isEmpty()) keys << n + QStringLiteral("\x1F") + QStringLiteral("a") + account;
    if (!k->together.isEmpty()) {
        QString key = n + QStringLiteral("\x1F") + QStringLiteral("t");
        for (const QString& c : k->together) key += QLatin1Char('\x1F') + text(columns, c);
        keys << key;
    }
    const QString created = text(columns, QLatin1String(k->created));
    if (!created.isEmpty()) keys << n + QStringLiteral("\x1F") + QStringLiteral("c") + created;
    return keys;
}

bool isEmptyStoredValue(const QVariant& value) {
    if (value.isNull()) return true;
    const QString t = value.toString().trimmed();
    return t.isEmpty() || t.startsWith(QLatin1String("1900-01-01"));
}

}  // namespace tarvel::exchange
