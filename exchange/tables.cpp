#include "exchange/tables.h"

namespace tarvel::exchange {

namespace {

RecordTable record(qint16 code) {
    const RecordKindInfo* k = kindByCode(code);
    return {QLatin1String(k->table), QLatin1String(k->key), k->upgradeTable(), k->oldKey(),
            k->newKey()};
}

LinkTable link(const char* name, const char* first, const char* firstTable, const char* second,
               const char* secondTable, const char* extra = "") {
    return {QLatin1String(name),   QLatin1String(first),       QLatin1String(firstTable),
            QLatin1String(second), QLatin1String(secondTable), QLatin1String(extra)};
}

}  // namespace

const RecordKind* recordKind(const QString& table) {
    for (const RecordKindInfo& k : recordKinds())
        if (table == QLatin1String(k.table)) return &k;
    return nullptr;
}

const RecordKind* recordKind(int code) {
    return kindByCode(qint16(code));
}

const std::vector<RecordTable>& recordTables() {
    static const std::vector<RecordTable> tables = {record(kind::Account), record(kind::Contact),
                                                    record(kind::Opportunity), record(kind::Task),
                                                    record(kind::Document)};
    return tables;
}

const RecordTable* recordTable(const QString& name) {
    for (const RecordTable& t : recordTables())
        if (t.name == name) return &t;
    return nullptr;
}

const std::vector<LinkTable>& linkTables() {
    static const std::vector<LinkTable> tables = {
        link("accounts_contacts", "acc_id", "accounts", "con_id", "contacts"),
        link("accounts_documents", "acc_id", "accounts", "doc_id", "documents"),
        link("accounts_tasks", "acc_id", "accounts", "tas_id", "tasks"),
        link("contacts_contacts", "con_id1", "contacts", "con_id2", "contacts", "con_relation"),
        link("contacts_documents", "con_id", "contacts", "doc_id", "documents"),
        link("contacts_tasks", "con_id", "contacts", "tas_id", "tasks"),
        link("opportunities_accounts", "opp_id", "opportunities", "acc_id", "accounts",
             "acc_part_in_opp"),
        link("opportunities_contacts", "opp_id", "opportunities", "con_id", "contacts",
             "con_part_in_opp"),
        link("opportunities_documents", "opp_id", "opportunities", "doc_id", "documents"),
        link("opportunities_tasks", "opp_id", "opportunities", "tas_id", "tasks"),
        link("tasks_documents", "tas_id", "tasks", "doc_id", "documents")};
    return tables;
}

QStringList requiredTables() {
    QStringList names;
    for (const RecordTable& t : recordTables()) names << t.name << t.upgrade;
    for (const LinkTable& t : linkTables()) names << t.name;
    names << QStringLiteral("setting");
    return names;
}

}  // namespace tarvel::exchange
