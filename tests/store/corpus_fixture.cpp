#include "tests/store/corpus_fixture.h"

#include <algorithm>

#include "store/clock.h"
#include "store/tarveldatabase.h"

namespace tarvel::testing::corpus {

namespace {

struct TableRows {
    const char* table;
    const char* columns;
    std::vector<const char*> rows;
};

// Inserted in this order, so keys count from 1 down each list.
const TableRows kDataSet[] = {
    {"accounts",
     "acc_name, acc_create_date, acc_recent_contact_date, acc_important, acc_type, acc_industry, "
     "acc_relation, acc_province, acc_private, acc_tag, acc_check, acc_address",
     {"'Acme Ltd', #2024-1-10#, #2024-2-1#, 'High', 'Customer', 'IT', 'Client', 'Beijing', 0, "
      "'VIP,Partner', false, '1 Main St'",
      "'Borealis', #2024-1-12#, #2024-3-1 16:45#, 'High', 'Supplier', 'Finance', NULL, "
      "'Shanghai', 0, 'VIP2', true, NULL",
      "'Cobalt Works', #2024-2-20#, NULL, NULL, 'Customer', NULL, 'Client', 'Beijing', 1, NULL, "
      "false, NULL"}},
    {"contacts",
     "con_lastname, con_important, con_province, con_relation, con_tag, con_email, con_birthday, "
     "con_create_date, con_recent_contact_date, con_private, con_check",
     {"'Zhang', 'High', 'Beijing', 'Friend', 'VIP', NULL, #1900-1-1#, #2024-1-15#, "
      "#2024-2-19 14:00#, 0, true",
      "'Li', 'Low', 'Shanghai', 'Family', 'VIP2,Golf', NULL, #1985-3-5#, #2024-3-5 10:00#, "
      "#2024-3-1 9:00#, 0, false",
      "'Wang', 'High', 'Beijing', 'Friend', NULL, 'wang@acme.example', #1988-2-29#, #2024-2-19#, "
      "#2024-1-10 8:00#, 0, true",
      "'Zhao', NULL, 'Guangdong', 'Business', 'Golf', NULL, #1970-3-5#, #2024-3-5#, "
      "#2024-2-18 23:59#, 0, false",
      "'O''Brien', 'Medium', NULL, NULL, NULL, NULL, NULL, #2023-12-1#, NULL, 1, false",
      "'Sun', 'low', 'Beijing', NULL, 'vip', NULL, #1980-1-1#, #2024-2-25#, #2024-3-4#, 0, true"}},
    {"opportunities",
     "opp_subject, opp_create_date, opp_die_date, opp_recent_contact_date, opp_estimate_sale, "
     "opp_sale, opp_important, opp_phase, opp_private, opp_succeed_probability, opp_type, "
     "opp_industry, opp_province, opp_tag, opp_check",
     {"'Server deal', #2024-1-20#, #2024-3-31#, #2024-2-10#, 1000.5, 2, 'High', 'Negotiation', 0, "
      "10, 'New', 'IT', 'Beijing', 'Q1', true",
      "'Audit', #2024-2-1#, #2024-4-15#, #2024-3-2#, 2001, 1, 'Low', 'Closed', 1, 50, 'Renewal', "
      "'Finance', NULL, 'Q1,Q2', false",
      "'Licences', #2024-2-19#, #2024-3-1#, NULL, 300.25, 4, 'High', 'Negotiation', 0, 100, "
      "'New', 'IT', 'Beijing', NULL, false"}},
    {"tasks",
     "tas_subject, tas_date, tas_time, tas_outlay, tas_remind, tas_again, tas_cycle, "
     "tas_closedate, tas_closed",
     {"'Call Zhang', #2024-3-5#, #9:30#, 12.5, 1, 0, 0, #2024-1-1#, 0",
      "'Stand-up', #2024-3-1#, #8:00#, 3, 1, 1, 1, #2024-3-10#, 0",
      "'Weekly review', #2024-2-7#, #16:00#, 0, 0, 0, 7, #2024-12-31#, 0",
      "'Month end', #2024-1-31#, #17:00#, 0, 0, 0, 30, #2024-12-31#, 0",
      "'Leap day', #2020-2-29#, #12:00#, 0, 0, 0, 365, #2030-12-31#, 0",
      "'Broken range', #2024-3-5#, #11:00#, 0.25, 0, 0, 1, #2024-3-1#, 0",
      "'Lunch', #2024-3-5#, #12:30#, 7.25, 0, 0, 0, NULL, 1",
      "'Odd cycle', #2024-2-4#, #10:00#, 0, 0, 0, 14, #2024-12-31#, 0",
      "'Tuesday class', #2024-2-27#, #19:00#, 0, 0, 0, 7, #2024-3-5#, 0"}},
    {"documents",
     "doc_name, doc_path, doc_create_date, doc_tag, doc_recentedit_date, doc_check",
     {"'Contract.pdf', 'C:\\docs\\contract.pdf', #2024-2-20#, 'Legal', #2024-2-21 9:15#, true",
      "'Quote.xls', '/home/u/quote.xls', #2024-3-5#, 'Sales', NULL, false",
      "'Notes.txt', 'notes.txt', #2024-1-1#, 'Legal', NULL, false"}},
    // 28 link rows; the pair (5, 2) is stored with the other contact first.
    {"accounts_contacts", "acc_id, con_id", {"1, 1", "1, 2", "2, 3", "3, 5"}},
    {"accounts_documents", "acc_id, doc_id", {"1, 1", "2, 2"}},
    {"accounts_tasks", "acc_id, tas_id", {"1, 2", "3, 6"}},
    {"contacts_contacts",
     "con_id1, con_id2, con_relation",
     {"1, 3, 'Colleague'", "4, 1, 'Friend'", "5, 2, 'Sibling'"}},
    {"contacts_documents", "con_id, doc_id", {"1, 1", "3, 3"}},
    {"contacts_tasks", "con_id, tas_id", {"1, 1", "2, 4", "3, 3", "4, 8"}},
    {"opportunities_accounts",
     "opp_id, acc_id, acc_part_in_opp",
     {"1, 1, 'Client'", "3, 2, 'Reseller'"}},
    {"opportunities_contacts",
     "opp_id, con_id, con_part_in_opp",
     {"1, 1, 'Buyer'", "1, 3, 'Advisor'", "2, 1, NULL"}},
    {"opportunities_documents", "opp_id, doc_id", {"1, 2", "2, 1"}},
    {"opportunities_tasks", "opp_id, tas_id", {"1, 4", "2, 5"}},
    {"tasks_documents", "tas_id, doc_id", {"9, 1", "6, 2"}},
    {"upgrade_accounts", "old_acc_id, new_acc_id", {"5, 1", "7, 2"}},
    {"upgrade_contacts", "old_con_id, new_con_id", {"11, 3"}},
    // Customisation rows, stored in an order that no ORDER BY below gives back.
    {"options",
     "opt_object, opt_name, opt_description",
     {"'con', 'tag', 'VIP'", "'con', 'tag', 'Golf'", "'con', 'tag', 'VIP2'",
      "'con', 'importance', 'Medium'", "'con', 'importance', 'High'", "'con', 'importance', 'Low'",
      "'acc', 'tag', 'VIP'", "'acc', 'tag', 'Partner'", "'opp', 'tag', 'Q2'", "'opp', 'tag', 'Q1'",
      "'opp', 'Probability', '10'", "'opp', 'Probability', '50'", "'opp', 'Probability', '100'",
      "'opp', 'Probability', '0'"}},
    {"fields",
     "fie_type, fie_name, fie_description, fie_index, fie_visible, fie_width",
     {"3, 'con_description', 'Notes', 3, 0, 2000", "3, 'con_lastname', 'Name', 1, 1, 1200",
      "3, 'acc_name', 'Company', 2, 1, 1500", "2, 'acc_name', 'Name', 1, 1, 1000"}},
    {"setting",
     "set_type, set_key, set_name, set_value, set_description, set_visible",
     {"'login', 'agreement', '', '', 'Terms', '0'",
      "'login', 'password', '', 'e80b5017098950fc58aad83c8c14978e', '', '1'",
      "'software', 'date_upgrade', '', '2024-1-1', '', '1'",
      "'software', 'backupdate', '', '', '', '1'", "'model_pp', 'homepage', '', 'a', '', '1'",
      "'model_pp', 'account', '', 'b', '', '1'", "'personal', 'user_name', '', 'Mary', '', '1'"}},
};

const char* const kLinkTables[] = {
    "accounts_contacts",      "accounts_documents",     "accounts_tasks",
    "contacts_contacts",      "contacts_documents",     "contacts_tasks",
    "opportunities_accounts", "opportunities_contacts", "opportunities_documents",
    "opportunities_tasks",    "tasks_documents"};

QString insert(const QString& table, const QString& columns, const QString& values) {
    return "INSERT INTO " + table + " (" + columns + ") VALUES (" + values + ")";
}

}  // namespace

QDateTime at(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::UTC);
}
std::string str(const QString& s) {
    return s.toStdString();
}
QString lit(const QDate& d) {
    return QStringLiteral("%1-%2-%3").arg(d.year()).arg(d.month()).arg(d.day());
}
QString num(int n) {
    return QString::number(n);
}
QString stamp(const QVariant& v) {
    return v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

qint64 run(const QString& sql) {
    tarveldatabase db;
    qint64 affected = -1;
    db.Execute(sql, &affected);
    EXPECT_EQ(str(db.ErrMsg()), "") << str(sql);
    return affected;
}

RecordsetPtr read(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    const bool open = rs && rs->State() == adStateOpen;
    EXPECT_TRUE(open) << str(sql) << ": " << str(db.ErrMsg());
    return open ? rs : nullptr;
}

QVariantList values(const QString& sql, const QString& column) {
    QVariantList out;
    RecordsetPtr rs = read(sql);
    if (!rs) return out;
    const int index = column.isEmpty() ? 0 : rs->fieldIndex(column);
    EXPECT_GE(index, 0) << str(sql) << " has no field " << str(column);
    for (; index >= 0 && !rs->Eof(); rs->MoveNext()) out << rs->value(index);
    return out;
}

Ids ids(const QString& sql, const QString& column) {
    Ids out;
    for (const QVariant& v : values(sql, column)) out.push_back(v.toInt());
    return out;
}

QStringList texts(const QString& sql, const QString& column) {
    QStringList out;
    for (const QVariant& v : values(sql, column)) out << v.toString();
    return out;
}

Ids sorted(Ids v) {
    std::sort(v.begin(), v.end());
    return v;
}

int rows(const QString& sql) {
    RecordsetPtr rs = read(sql);
    return rs ? rs->RecordCount() : -1;
}

QVariant scalar(const QString& sql) {
    RecordsetPtr rs = read(sql);
    return rs && !rs->Eof() ? rs->value(0) : QVariant();
}

// Jet groups text without regard to case, so labels compare in lower case.
Groups groups(const QString& sql, const QString& label) {
    Groups out;
    RecordsetPtr rs = read(sql);
    for (; rs && !rs->Eof(); rs->MoveNext()) {
        const QVariant l = rs->value(label);
        out.emplace_back(l.isNull() ? "(null)" : str(l.toString().toLower()),
                         rs->value(QStringLiteral("option_count")).toInt());
    }
    return out;
}

void tickAll(const QString& sql, const QString& column) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetWriteRs(sql);
    ASSERT_TRUE(rs && rs->State() == adStateOpen) << str(sql) << ": " << str(db.ErrMsg());
    for (; !rs->Eof(); rs->MoveNext()) {
        rs->Fields(column) = QVariant(true);
        ASSERT_TRUE(rs->Update()) << str(sql) << ": " << str(rs->ErrorDescription());
    }
}

int linkRows() {
    int n = 0;
    for (const char* table : kLinkTables) n += rows(QStringLiteral("SELECT * FROM ") + table);
    return n;
}

QString taskDateCondition(const QDate& d) {
    const QString D = lit(d), on = "# AND tas_closedate>= #" + D + "#";
    return " WHERE (( tas_cycle = 0  AND tas_date=#" + D + "#)" +
           " OR ( tas_cycle = 1  AND tas_date <=#" + D + on + ")" +
           " OR ( tas_cycle = 7  AND tas_date <=#" + D + on +
           " AND WEEKDAY (tas_date)=" + num(d.dayOfWeek() % 7 + 1) + ")" +
           " OR ( tas_cycle = 30 AND tas_date <=#" + D + on + " AND DAY(tas_date)=" + num(d.day()) +
           ")" + " OR ( tas_cycle = 365 AND tas_date <=#" + D + on +
           " AND MONTH(tas_date) =" + num(d.month()) + " AND DAY(tas_date)=" + num(d.day()) + "))";
}

// The statistics page's own copy: no outer parentheses, and "=3AND DAY" glued together.
QString statisticsTaskCondition(const QDate& d) {
    const QString D = lit(d), on = "# AND tas_closedate>= #" + D + "#";
    return " WHERE ( tas_cycle = 0  AND tas_date  =#" + D + "#)" +
           " OR ( tas_cycle = 1  AND tas_date <=#" + D + on + ")" +
           " OR ( tas_cycle = 7  AND tas_date <=#" + D + on +
           " AND WEEKDAY (tas_date)=" + num(d.dayOfWeek() % 7 + 1) + ")" +
           " OR ( tas_cycle = 30 AND tas_date <=#" + D + on + " AND DAY(tas_date)=" + num(d.day()) +
           ")" + " OR ( tas_cycle = 365 AND tas_date <=#" + D + on +
           " AND MONTH(tas_date) =" + num(d.month()) + "AND DAY(tas_date)=" + num(d.day()) + ")";
}

QString birthdayCondition(int month, int day) {
    return QStringLiteral(" WHERE (con_birthday<> # ") + "1900-1-1" +
           "# AND month(con_birthday)= " + num(month) + " AND day(con_birthday)= " + num(day) + ")";
}

CorpusData::CorpusData() {
    Clock::setFixed(at(2024, 3, 5, 10, 30));
    for (const char* table : {"options", "fields", "interface", "setting"})
        run(QStringLiteral("DELETE * FROM ") + table);
    for (const TableRows& t : kDataSet)
        for (const char* row : t.rows) run(insert(t.table, t.columns, QString::fromUtf8(row)));
    // The twenty related-panel entries, the toolbar in scrambled order, a template entry.
    const QString layout = QStringLiteral(
        "app_type, object_type, object_name, object_description, object_visible, object_index, "
        "object_edittype");
    const char* const panels[][5] = {{"acc", "sch", "con", "opp", "doc"},
                                     {"opp", "sch", "con", "acc", "doc"},
                                     {"con", "sch", "con", "opp", "doc"},
                                     {"sch", "opp", "con", "acc", "doc"},
                                     {"doc", "opp", "acc", "con", "sch"}};
    for (const auto& p : panels)
        for (int i = 1; i <= 4; ++i)
            run(insert("interface", layout,
                       QStringLiteral("0, 2, '%1_%2', '%1_%2', -1, %3, -1")
                           .arg(QLatin1String(p[0]), QLatin1String(p[i]))
                           .arg(i)));
    const char* const toolbar[] = {"account",  "opportunity", "contact",
                                   "sepline1", "schedule",    "document"};
    for (int i : {5, 0, 3, 2, 4, 1})
        run(insert("interface", layout,
                   QStringLiteral("0, 1, '%1', 'Caption %1', -1, %2, 0")
                       .arg(QLatin1String(toolbar[i]))
                       .arg(i + 1)));
    run(insert("interface", layout, "1, 2, 'con_sch', 'Template', -1, 1, 0"));
}

}  // namespace tarvel::testing::corpus
