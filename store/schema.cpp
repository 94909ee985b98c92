#include "store/schema.h"

#include <QSet>
#include <utility>
#include <vector>

namespace tarvel::schema {

namespace {

enum class Type { Key, Id, Text, Memo, Int16, Int, YesNo, Date, Currency };

struct Column {
    const char* name;
    Type type;
};

struct Table {
    const char* name;
    std::vector<Column> columns;
};

QString columnDefinition(const Column& c) {
    const QString name = QLatin1String(c.name);
    switch (c.type) {
        case Type::Key:
            return name + QStringLiteral(" INTEGER PRIMARY KEY AUTOINCREMENT");
        case Type::Id:
        case Type::Int:
            return name + QStringLiteral(" INTEGER");
        case Type::Text:
        case Type::Memo:
            return name + QStringLiteral(" TEXT COLLATE NOCASE");
        case Type::Int16:
            return name +
                   QStringLiteral(
                       " SMALLINT DEFAULT 0 CHECK (%1 IS NULL OR %1 BETWEEN -32768 AND 32767)")
                       .arg(name);
        case Type::YesNo:
            return name + QStringLiteral(" %1 NOT NULL DEFAULT 0 CHECK (%2 IN (-1, 0))")
                              .arg(QLatin1String(kYesNoType), name);
        case Type::Date:
            // Fixed-width text, so text order is time order and = compares instants.
            return name + QStringLiteral(
                              " %1 CHECK (%2 IS NULL OR %2 GLOB "
                              "'[0-9][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9] "
                              "[0-2][0-9]:[0-5][0-9]:[0-5][0-9]')")
                              .arg(QLatin1String(kDateType), name);
        case Type::Currency:
            return name + QStringLiteral(" %1 DEFAULT 0").arg(QLatin1String(kCurrencyType));
    }
    return name;
}

const std::vector<Table>& recordTables() {
    static const std::vector<Table> tables = {
        {"accounts",
         {{"acc_id", Type::Key},
          {"acc_name", Type::Text},
          {"acc_description", Type::Memo},
          {"acc_create_date", Type::Date},
          {"acc_recent_contact_date", Type::Date},
          {"acc_important", Type::Text},
          {"acc_type", Type::Text},
          {"acc_industry", Type::Text},
          {"acc_relation", Type::Text},
          {"acc_address", Type::Text},
          {"acc_postcode", Type::Text},
          {"acc_province", Type::Text},
          {"acc_telephone", Type::Text},
          {"acc_fax", Type::Text},
          {"acc_website", Type::Text},
          {"acc_private", Type::Int16},
          {"acc_tag", Type::Text},
          {"acc_check", Type::YesNo}}},
        {"contacts",
         {{"con_id", Type::Key},
          {"con_firstname", Type::Text},
          {"con_lastname", Type::Text},
          {"con_nickname", Type::Text},
          {"con_title", Type::Text},
          {"con_description", Type::Memo},
          {"con_department_title", Type::Text},
          {"con_telephone", Type::Text},
          {"con_telephone2", Type::Text},
          {"con_telephone3", Type::Text},
          {"con_mobile", Type::Text},
          {"con_mobile2", Type::Text},
          {"con_mobile3", Type::Text},
          {"con_fax", Type::Text},
          {"con_fax2", Type::Text},
          {"con_fax3", Type::Text},
          {"con_email", Type::Text},
          {"con_email2", Type::Text},
          {"con_email3", Type::Text},
          {"con_address_family", Type::Text},
          {"con_postcode_family", Type::Text},
          {"con_im", Type::Text},
          {"con_im2", Type::Text},
          {"con_im3", Type::Text},
          {"con_website", Type::Text},
          {"con_province", Type::Text},
          {"con_important", Type::Text},
          {"con_relation", Type::Text},
          {"con_create_date", Type::Date},
          {"con_recent_contact_date", Type::Date},
          {"con_birthday", Type::Date},
          {"con_private", Type::Int16},
          {"con_tag", Type::Text},
          {"con_sendmail", Type::Int16},
          {"con_check", Type::YesNo}}},
        {"opportunities",
         {{"opp_id", Type::Key},
          {"opp_subject", Type::Text},
          {"opp_description", Type::Memo},
          {"opp_create_date", Type::Date},
          {"opp_die_date", Type::Date},
          {"opp_recent_contact_date", Type::Date},
          {"opp_estimate_sale", Type::Currency},
          {"opp_sale", Type::Currency},
          {"opp_important", Type::Text},
          {"opp_phase", Type::Text},
          {"opp_private", Type::Int16},
          {"opp_succeed_probability", Type::Int16},
          {"opp_type", Type::Text},
          {"opp_industry", Type::Text},
          {"opp_province", Type::Text},
          {"opp_tag", Type::Text},
          {"opp_check", Type::YesNo}}},
        {"tasks",
         {{"tas_id", Type::Key},
          {"tas_subject", Type::Text},
          {"tas_date", Type::Date},
          {"tas_time", Type::Date},
          {"tas_type", Type::Text},
          {"tas_important", Type::Text},
          {"tas_outlay", Type::Currency},
          {"tas_tag", Type::Text},
          {"tas_private", Type::Int16},
          {"tas_remind", Type::Int16},
          {"tas_closed", Type::Int16},
          {"tas_again", Type::Int16},
          {"tas_cycle", Type::Int16},
          {"tas_closedate", Type::Date},
          {"tas_create_date", Type::Date},
          {"tas_recent_contact_date", Type::Date},
          {"tas_description", Type::Memo},
          {"tas_last_remind_date", Type::Date},
          {"tas_check", Type::YesNo}}},
        {"documents",
         {{"doc_id", Type::Key},
          {"doc_name", Type::Text},
          {"doc_path", Type::Memo},
          {"doc_description", Type::Memo},
          {"doc_create_date", Type::Date},
          {"doc_tag", Type::Text},
          {"doc_recentedit_date", Type::Date},
          {"doc_check", Type::YesNo}}},
    };
    return tables;
}

const std::vector<Table>& otherTables() {
    static const std::vector<Table> tables = {
        {"accounts_contacts", {{"acc_id", Type::Id}, {"con_id", Type::Id}}},
        {"accounts_documents", {{"acc_id", Type::Id}, {"doc_id", Type::Id}}},
        {"accounts_tasks", {{"acc_id", Type::Id}, {"tas_id", Type::Id}}},
        {"contacts_contacts",
         {{"con_id1", Type::Id}, {"con_id2", Type::Id}, {"con_relation", Type::Text}}},
        {"contacts_documents", {{"con_id", Type::Id}, {"doc_id", Type::Id}}},
        {"contacts_tasks", {{"con_id", Type::Id}, {"tas_id", Type::Id}}},
        {"opportunities_accounts",
         {{"opp_id", Type::Id}, {"acc_id", Type::Id}, {"acc_part_in_opp", Type::Text}}},
        {"opportunities_contacts",
         {{"opp_id", Type::Id}, {"con_id", Type::Id}, {"con_part_in_opp", Type::Text}}},
        {"opportunities_documents", {{"opp_id", Type::Id}, {"doc_id", Type::Id}}},
        {"opportunities_tasks", {{"opp_id", Type::Id}, {"tas_id", Type::Id}}},
        {"tasks_documents", {{"tas_id", Type::Id}, {"doc_id", Type::Id}}},
        {"upgrade_accounts", {{"old_acc_id", Type::Int}, {"new_acc_id", Type::Int}}},
        {"upgrade_contacts", {{"old_con_id", Type::Int}, {"new_con_id", Type::Int}}},
        {"upgrade_opportunities", {{"old_opp_id", Type::Int}, {"new_opp_id", Type::Int}}},
        {"upgrade_tasks", {{"old_tas_id", Type::Int}, {"new_tas_id", Type::Int}}},
        {"upgrade_documents", {{"old_doc_id", Type::Int}, {"new_doc_id", Type::Int}}},
        {"fields",
         {{"fie_type", Type::Int},
          {"fie_name", Type::Text},
          {"fie_description", Type::Text},
          {"fie_index", Type::Int},
          {"fie_visible", Type::Int},
          {"fie_width", Type::Int}}},
        {"interface",
         {{"app_type", Type::Int},
          {"object_type", Type::Int},
          {"object_name", Type::Text},
          {"object_description", Type::Text},
          {"object_visible", Type::Int},
          {"object_index", Type::Int},
          {"object_edittype", Type::Int}}},
        {"options",
         {{"opt_id", Type::Key},
          {"opt_object", Type::Text},
          {"opt_name", Type::Text},
          {"opt_description", Type::Text},
          {"opt_count", Type::Int}}},
        {"setting",
         {{"set_type", Type::Text},
          {"set_key", Type::Text},
          {"set_name", Type::Text},
          {"set_value", Type::Memo},
          {"set_description", Type::Memo},
          {"set_visible", Type::Text}}},
        // The older per-kind option lists.
        {"phase", {{"pha_description", Type::Text}, {"pha_count", Type::Int}}},
        {"important", {{"imp_description", Type::Text}, {"imp_count", Type::Int}}},
        {"opp_type", {{"opp_type_description", Type::Text}, {"opp_type_count", Type::Int}}},
        {"relation", {{"rel_description", Type::Text}, {"rel_count", Type::Int}}},
        {"province", {{"pro_description", Type::Text}, {"pro_count", Type::Int}}},
        {"industry", {{"ind_description", Type::Text}, {"ind_count", Type::Int}}},
        {"type", {{"typ_description", Type::Text}, {"typ_count", Type::Int}}},
        {"task_type", {{"tas_typ_description", Type::Text}, {"tas_typ_count", Type::Int}}},
        {"title", {{"tit_description", Type::Text}, {"tit_count", Type::Int}}},
    };
    return tables;
}

// Tables added after the first data files were made.
const std::vector<Table>& laterTables() {
    static const std::vector<Table> tables = {
        // The last import, kept so that it can be taken back.
        {"import_journal",
         {{"ijn_id", Type::Key},
          {"ijn_date", Type::Date},
          {"ijn_source", Type::Text},
          {"ijn_file", Type::Memo},
          {"ijn_summary", Type::Memo}}},
        // What it did: a record added (no column; the value is the row's
        // fingerprint), a link added (the column names the other table), or a
        // field changed from ijc_old to ijc_new.
        {"import_changes",
         {{"ijc_import", Type::Int},
          {"ijc_table", Type::Text},
          {"ijc_key", Type::Int},
          {"ijc_column", Type::Text},
          {"ijc_old", Type::Memo},
          {"ijc_new", Type::Memo}}},
        // The id a record had in another program (a vCard or iCalendar UID).
        {"external_ids",
         {{"ext_source", Type::Text},
          {"ext_id", Type::Memo},
          {"ext_table", Type::Text},
          {"ext_key", Type::Int},
          {"ext_import", Type::Int}}},
        // Deleted records kept for a while: one entry per record, the records
        // of one bulk delete sharing bin_batch, and the rows each took with it.
        {"bin_entries",
         {{"bin_id", Type::Key},
          {"bin_deleted", Type::Date},
          {"bin_kind", Type::Int},
          {"bin_key", Type::Int},
          {"bin_name", Type::Memo},
          {"bin_batch", Type::Int}}},
        // A row as it was stored: table and a JSON object of its columns.
        {"bin_rows",
         {{"bin_entry", Type::Int}, {"bin_table", Type::Text}, {"bin_row", Type::Memo}}},
    };
    return tables;
}

QString createTable(const Table& table, bool ifMissing = false) {
    QStringList columns;
    for (const Column& c : table.columns) columns << columnDefinition(c);
    return QStringLiteral("CREATE TABLE %1\"%2\" (%3)")
        .arg(ifMissing ? QStringLiteral("IF NOT EXISTS ") : QString(), QLatin1String(table.name),
             columns.join(QStringLiteral(", ")));
}

}  // namespace

QStringList creationStatements() {
    QStringList statements;
    for (const Table& t : recordTables()) statements << createTable(t);
    for (const Table& t : otherTables()) {
        statements << createTable(t);
        const QString name = QLatin1String(t.name);
        const bool linkOrMap =
            name.contains(QLatin1Char('_')) && t.columns.front().type != Type::Text;
        if (!linkOrMap) continue;
        for (const Column& c : t.columns) {
            if (c.type != Type::Id && !(name.startsWith(QLatin1String("upgrade_")) &&
                                        QLatin1String(c.name).startsWith(QLatin1String("old_"))))
                continue;
            statements << QStringLiteral("CREATE INDEX \"idx_%1_%2\" ON \"%1\" (%2)")
                              .arg(name, QLatin1String(c.name));
        }
    }
    statements << QStringLiteral("CREATE INDEX idx_options_kind ON options (opt_object, opt_name)");
    statements << QStringLiteral("CREATE INDEX idx_setting_key ON setting (set_type, set_key)");
    statements << QStringLiteral("CREATE INDEX idx_fields_type ON fields (fie_type, fie_index)");
    // The date condition of the schedule tests tas_cycle first, then tas_date.
    statements << QStringLiteral(
        "CREATE INDEX idx_tasks_cycle_date ON tasks (tas_cycle, tas_date)");
    // One row per contact; a contact's account is the one it is linked to (the
    // program keeps at most one), so the lowest link decides if there are more.
    statements << QStringLiteral(
        "CREATE VIEW que_contacts_accounts AS SELECT contacts.*, accounts.* FROM contacts "
        "LEFT JOIN accounts ON accounts.acc_id = (SELECT MIN(accounts_contacts.acc_id) FROM "
        "accounts_contacts WHERE accounts_contacts.con_id = contacts.con_id)");
    return statements + laterTableStatements();
}

QStringList laterTableStatements() {
    QStringList statements;
    for (const Table& t : laterTables()) statements << createTable(t, true);
    statements << QStringLiteral(
        "CREATE INDEX IF NOT EXISTS idx_external_ids ON external_ids (ext_source, ext_id)");
    statements << QStringLiteral(
        "CREATE INDEX IF NOT EXISTS idx_import_changes ON import_changes (ijc_import)");
    statements << QStringLiteral("CREATE INDEX IF NOT EXISTS idx_bin_rows ON bin_rows (bin_entry)");
    return statements;
}

bool isYesNoColumn(const QString& column) {
    static const QSet<QString> columns = {QStringLiteral("acc_check"), QStringLiteral("con_check"),
                                          QStringLiteral("opp_check"), QStringLiteral("tas_check"),
                                          QStringLiteral("doc_check")};
    return columns.contains(column.toLower());
}

bool isShortTextColumn(const QString& column) {
    static const QSet<QString> columns = [] {
        QSet<QString> names;
        for (const Table& t : recordTables())
            for (const Column& c : t.columns)
                if (c.type == Type::Text) names.insert(QLatin1String(c.name));
        return names;
    }();
    return columns.contains(column.toLower());
}

}  // namespace tarvel::schema
