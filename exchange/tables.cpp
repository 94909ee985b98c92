#include "exchange/tables.h"

namespace tarvel::exchange {

namespace {

RecordTable record(const char* name, const char* prefix) {
    const QString p = QLatin1String(prefix);
    return {QLatin1String(name), p + QStringLiteral("_id"),
            QStringLiteral("upgrade_") + QLatin1String(name),
            QStringLiteral("old_") + p + QStringLiteral("_id"),
            QStringLiteral("new_") + p + QStringLiteral("_id")};
}

LinkTable link(const char* name, const char* first, const char* firstTable, const char* second,
               const char* secondTable, const char* extra = "") {
    return {QLatin1String(name),   QLatin1String(first),       QLatin1String(firstTable),
            QLatin1String(second), QLatin1String(secondTable), QLatin1String(extra)};
}

}  // namespace

const std::vector<RecordKind>& recordKinds() {
    auto kind = [](const char* word, int code, const char* prefix, const char* source,
                   const char* caption) {
        return RecordKind{QLatin1String(word),   code,
                          QLatin1String(word),   QLatin1String(prefix) + QStringLiteral("_check"),
                          QLatin1String(source), QString::fromUtf8(caption)};
    };
    static const std::vector<RecordKind> kinds = {
        kind("opportunities", 1, "opp", "opportunities", "销售机会"),
        kind("accounts", 2, "acc", "accounts", "单位"),
        kind("contacts", 3, "con", "que_contacts_accounts", "联系人"),
        kind("tasks", 4, "tas", "tasks", "日程"), kind("documents", 5, "doc", "documents", "文档")};
    return kinds;
}

const RecordKind* recordKind(const QString& word) {
    for (const RecordKind& k : recordKinds())
        if (k.word == word) return &k;
    return nullptr;
}

const RecordKind* recordKind(int code) {
    for (const RecordKind& k : recordKinds())
        if (k.code == code) return &k;
    return nullptr;
}

const std::vector<RecordTable>& recordTables() {
    static const std::vector<RecordTable> tables = {
        record("accounts", "acc"), record("contacts", "con"), record("opportunities", "opp"),
        record("tasks", "tas"), record("documents", "doc")};
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
