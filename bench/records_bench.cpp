// The record classes against the raw SQLCipher C API doing the same inserts and
// reads on the same data file.
//
// Benchmarks come in pairs named "<case>/records" and "<case>/raw":
//   add_and_link  Contact.Add of a new contact, then AddRelative to its account
//                 (kind 2), to an opportunity with a role (kind 1) and to a
//                 document (kind 5). The raw side issues what those operations
//                 issue: the empty probe, the insert and its read-back, and per
//                 link the two stamps, the existence probe and the insert, plus
//                 the full read of accounts_contacts that the account link ends
//                 with. Every write is its own transaction, as in the program.
//   load          Contact.GetById of a contact with its account: one row of
//                 que_contacts_accounts, every column read.
//   name_search   the contact page's search while typing: RecordSearch over
//                 the name-or-account statement for a full name (about 100
//                 matches, 50 kept); the raw side runs the same query with
//                 the pattern bound and reads every matching row.
// How to read them: divide the records time per iteration by the raw time per
// iteration of the same case. After the run (console output) a summary prints
// that ratio for each pair, on wall-clock time, beside the ratio each case aims at.
//
// The data file is built once per process in a temporary folder and filled
// through the raw engine with 2,000 accounts, 10,000 contacts (80% linked to an
// account), 1,000 opportunities and 2,000 documents.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDateTime>
#include <QString>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/rawengine.h"
#include "records/contact.h"
#include "records/recordsearch.h"

namespace {

using namespace tarvel::bench;

constexpr int kAccounts = 2000;
constexpr int kContacts = 10000;
constexpr int kOpportunities = 1000;
constexpr int kDocuments = 2000;
constexpr int kLinkedPercent = 80;

const char* const kSurnames[] = {"王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周"};
const char* const kGiven[] = {"伟", "芳", "娜", "敏", "静", "强", "磊", "军", "洋", "勇"};
const char* const kCities[] = {"北京", "上海", "广州", "深圳", "杭州", "成都"};

// Runs a prepared write or probe to its end; counts the rows a probe returned.
bool step(sqlite3* db, sqlite3_stmt* stmt, int* rows = nullptr) {
    int rc;
    int n = 0;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
            const unsigned char* text = sqlite3_column_text(stmt, i);
            benchmark::DoNotOptimize(text);
        }
        ++n;
    }
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    if (rows) *rows = n;
    return check(db, rc, "step");
}

bool fill(sqlite3* db) {
    std::mt19937 rng(20260302);
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    bool ok = check(db, sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN");
    sqlite3_stmt* account = prepare(
        db,
        "INSERT INTO accounts (acc_name, acc_address, acc_postcode, acc_website, acc_type, "
        "acc_industry, acc_create_date, acc_recent_contact_date) VALUES (?,?,?,?,'客户','IT',"
        "'2024-01-02 00:00:00','2025-05-06 10:11:12')");
    for (int i = 1; ok && i <= kAccounts; ++i) {
        const std::string city = kCities[pick(6)];
        bindText(account, 1, city + "华信科技有限公司" + std::to_string(i));
        bindText(account, 2, city + "市人民路" + std::to_string(i) + "号");
        bindText(account, 3, std::to_string(100000 + i));
        bindText(account, 4, "www.hx" + std::to_string(i) + ".com.cn");
        ok = step(db, account);
    }
    sqlite3_stmt* contact = prepare(
        db,
        "INSERT INTO contacts (con_firstname, con_lastname, con_nickname, con_title, "
        "con_department_title, con_telephone, con_mobile, con_email, con_province, "
        "con_important, con_relation, con_create_date, con_recent_contact_date, con_birthday, "
        "con_private, con_tag) VALUES (?,?,?,'先生','销售部 经理',?,?,?,'北京','重要','客户',"
        "'2024-01-02 00:00:00','2025-05-06 10:11:12','1900-01-01 00:00:00',0,'VIP')");
    sqlite3_stmt* link = prepare(db, "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (?,?)");
    for (int i = 1; ok && i <= kContacts; ++i) {
        const std::string given = kGiven[pick(10)];
        const std::string surname = kSurnames[pick(10)];
        bindText(contact, 1, given);
        bindText(contact, 2, surname + given);
        bindText(contact, 3, "老" + surname);
        bindText(contact, 4, "010-" + std::to_string(60000000 + i));
        bindText(contact, 5, "138" + std::to_string(10000000 + i));
        bindText(contact, 6, "user" + std::to_string(i) + "@163.com");
        ok = step(db, contact);
        if (ok && pick(100) < kLinkedPercent) {
            sqlite3_bind_int(link, 1, 1 + pick(kAccounts));
            sqlite3_bind_int64(link, 2, sqlite3_last_insert_rowid(db));
            ok = step(db, link);
        }
    }
    sqlite3_stmt* opportunity =
        prepare(db,
                "INSERT INTO opportunities (opp_subject, opp_phase, opp_estimate_sale) VALUES (?, "
                "'谈判', 100000)");
    for (int i = 1; ok && i <= kOpportunities; ++i) {
        bindText(opportunity, 1, "项目" + std::to_string(i));
        ok = step(db, opportunity);
    }
    sqlite3_stmt* document =
        prepare(db, "INSERT INTO documents (doc_name, doc_path) VALUES (?, ?)");
    for (int i = 1; ok && i <= kDocuments; ++i) {
        bindText(document, 1, "合同" + std::to_string(i) + ".doc");
        bindText(document, 2, "/home/user/合同" + std::to_string(i) + ".doc");
        ok = step(db, document);
    }
    for (sqlite3_stmt* s : {account, contact, link, opportunity, document}) sqlite3_finalize(s);
    return check(db, sqlite3_exec(db, ok ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr),
                 "COMMIT") &&
           ok;
}

// ---------------------------------------------------------------------------
// The raw side's prepared statements

struct Raw {
    sqlite3* db = nullptr;
    sqlite3_stmt* emptyProbe = nullptr;
    sqlite3_stmt* insertContact = nullptr;
    sqlite3_stmt* readBack = nullptr;
    sqlite3_stmt* stampContact = nullptr;
    sqlite3_stmt* stampAccount = nullptr;
    sqlite3_stmt* stampOpportunity = nullptr;
    sqlite3_stmt* stampDocument = nullptr;
    sqlite3_stmt* probeAccount = nullptr;
    sqlite3_stmt* insertAccount = nullptr;
    sqlite3_stmt* readAllAccounts = nullptr;
    sqlite3_stmt* probeOpportunity = nullptr;
    sqlite3_stmt* insertOpportunity = nullptr;
    sqlite3_stmt* probeDocument = nullptr;
    sqlite3_stmt* insertDocument = nullptr;
    sqlite3_stmt* load = nullptr;
    sqlite3_stmt* nameSearch = nullptr;

    bool prepareAll() {
        emptyProbe = prepare(db, "SELECT * FROM contacts WHERE con_id=0");
        insertContact = prepare(
            db,
            "INSERT INTO contacts (con_firstname,con_lastname,con_nickname,con_title,"
            "con_description,con_department_title,con_telephone,con_telephone2,"
            "con_telephone3,con_mobile,con_mobile2,con_mobile3,con_fax,con_fax2,con_fax3,"
            "con_email,con_email2,con_email3,con_address_family,con_postcode_family,con_im,"
            "con_im2,con_im3,con_website,con_province,con_important,con_relation,"
            "con_create_date,con_recent_contact_date,con_birthday,con_private,con_tag) VALUES "
            "(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
        readBack = prepare(db, "SELECT * FROM contacts WHERE rowid = ?");
        stampContact = prepare(db, "UPDATE contacts SET con_recent_contact_date=? WHERE con_id=?");
        stampAccount = prepare(db, "UPDATE accounts SET acc_recent_contact_date=? WHERE acc_id=?");
        stampOpportunity =
            prepare(db, "UPDATE opportunities SET opp_recent_contact_date=? WHERE opp_id=?");
        stampDocument = prepare(db, "UPDATE documents SET doc_recentedit_date=? WHERE doc_id=?");
        probeAccount = prepare(db, "SELECT * FROM accounts_contacts WHERE con_id=?");
        insertAccount = prepare(db, "INSERT INTO accounts_contacts(con_id,acc_id) VALUES(?,?)");
        readAllAccounts = prepare(db, "SELECT * FROM accounts_contacts");
        probeOpportunity =
            prepare(db, "SELECT * FROM opportunities_contacts WHERE con_id=? AND opp_id=?");
        insertOpportunity = prepare(
            db, "INSERT INTO opportunities_contacts(con_id,opp_id,con_part_in_opp) VALUES(?,?,?)");
        probeDocument = prepare(db, "SELECT * FROM contacts_documents WHERE con_id=? AND doc_id=?");
        insertDocument = prepare(db, "INSERT INTO contacts_documents (con_id,doc_id) VALUES(?,?)");
        load = prepare(db, "SELECT * FROM que_contacts_accounts WHERE con_id=?");
        nameSearch = prepare(db,
                             "SELECT con_id,con_lastname,acc_name FROM que_contacts_accounts "
                             "WHERE con_lastname LIKE ? OR acc_name LIKE ?");
        for (sqlite3_stmt* s : all())
            if (!s) return false;
        return true;
    }
    std::vector<sqlite3_stmt*> all() const {
        return {emptyProbe,       insertContact,     readBack,      stampContact,   stampAccount,
                stampOpportunity, stampDocument,     probeAccount,  insertAccount,  readAllAccounts,
                probeOpportunity, insertOpportunity, probeDocument, insertDocument, load,
                nameSearch};
    }
    // The stamp of one record: now, then the key.
    bool stamp(sqlite3_stmt* stmt, sqlite3_int64 id) {
        bindText(stmt, 1, nowText());
        sqlite3_bind_int64(stmt, 2, id);
        return step(db, stmt);
    }
    bool pair(sqlite3_stmt* stmt, sqlite3_int64 a, sqlite3_int64 b, int* rows = nullptr) {
        sqlite3_bind_int64(stmt, 1, a);
        sqlite3_bind_int64(stmt, 2, b);
        return step(db, stmt, rows);
    }
};
Raw raw;

// What each side links the new contact to, cycling through the seeded records.
struct Targets {
    int account, opportunity, document;
};
Targets targetsFor(int n) {
    return {1 + n % kAccounts, 1 + n % kOpportunities, 1 + n % kDocuments};
}

tarvel::Contact newContact(int n) {
    tarvel::Contact c;
    const QString suffix = QString::number(n);
    c.setFirstName(QStringLiteral("明"));
    c.setLastName(QStringLiteral("王明") + suffix);
    c.setNickName(QStringLiteral("老王"));
    c.setTitle(QStringLiteral("先生"));
    c.setDepartmentTitle(QStringLiteral("销售部 经理"));
    c.setTelephone(QStringLiteral("010-6") + suffix);
    c.setMobile(QStringLiteral("138") + suffix);
    c.setEMail(QStringLiteral("wm") + suffix + QStringLiteral("@163.com"));
    c.setProvince(QStringLiteral("北京"));
    c.setImportant(QStringLiteral("重要"));
    c.setRelation(QStringLiteral("客户"));
    const QDateTime now = QDateTime::currentDateTime();
    c.setCreateDate(QDateTime(now.date(), QTime(0, 0), Qt::UTC));
    c.setRCDate(QDateTime(now.date(), now.time(), Qt::UTC));
    c.setBirthday(QDateTime(QDate(1900, 1, 1), QTime(0, 0), Qt::UTC));
    c.setTag(QStringLiteral("VIP"));
    return c;
}

// ---------------------------------------------------------------------------
// 1. Add a contact and link it three times

void addAndLinkRecords(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) {
        const Targets t = targetsFor(++n);
        tarvel::Contact c = newContact(n);
        const bool ok =
            c.Add() && c.AddRelative(tarvel::kind::Account, t.account) &&
            c.AddRelative(tarvel::kind::Opportunity, t.opportunity, QStringLiteral("决策人")) &&
            c.AddRelative(tarvel::kind::Document, t.document);
        if (!ok) {
            state.SkipWithError(qPrintable(c.ErrMsg()));
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void addAndLinkRaw(benchmark::State& state) {
    int n = 1000000;
    for (auto _ : state) {
        const Targets t = targetsFor(++n);
        const std::string suffix = std::to_string(n);
        const std::string now = nowText();
        bool ok = step(raw.db, raw.emptyProbe);
        // The same values the record writes; empty properties are stored as empty text.
        const std::string values[32] = {"明",
                                        "王明" + suffix,
                                        "老王",
                                        "先生",
                                        "",
                                        "销售部 经理",
                                        "010-6" + suffix,
                                        "",
                                        "",
                                        "138" + suffix,
                                        "",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "wm" + suffix + "@163.com",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "",
                                        "北京",
                                        "重要",
                                        "客户",
                                        now.substr(0, 10) + " 00:00:00",
                                        now,
                                        "1900-01-01 00:00:00",
                                        "",
                                        "VIP"};
        for (int i = 0; i < 32; ++i) {
            if (i == 30)
                sqlite3_bind_int(raw.insertContact, i + 1, 0);
            else
                bindText(raw.insertContact, i + 1, values[i]);
        }
        ok = ok && step(raw.db, raw.insertContact);
        const sqlite3_int64 id = sqlite3_last_insert_rowid(raw.db);
        sqlite3_bind_int64(raw.readBack, 1, id);
        ok = ok && step(raw.db, raw.readBack);

        // Kind 2: stamp, probe for an old account, stamp the account, insert, read all.
        int rows = 0;
        ok = ok && raw.stamp(raw.stampContact, id);
        sqlite3_bind_int64(raw.probeAccount, 1, id);
        ok = ok && step(raw.db, raw.probeAccount, &rows);
        ok = ok && raw.stamp(raw.stampAccount, t.account);
        ok = ok && raw.pair(raw.insertAccount, id, t.account);
        ok = ok && step(raw.db, raw.readAllAccounts);

        // Kind 1 with a role.
        ok = ok && raw.stamp(raw.stampContact, id);
        ok = ok && raw.pair(raw.probeOpportunity, id, t.opportunity, &rows);
        ok = ok && raw.stamp(raw.stampOpportunity, t.opportunity);
        sqlite3_bind_int64(raw.insertOpportunity, 1, id);
        sqlite3_bind_int64(raw.insertOpportunity, 2, t.opportunity);
        bindText(raw.insertOpportunity, 3, "决策人");
        ok = ok && step(raw.db, raw.insertOpportunity);

        // Kind 5.
        ok = ok && raw.stamp(raw.stampContact, id);
        ok = ok && raw.pair(raw.probeDocument, id, t.document, &rows);
        ok = ok && raw.stamp(raw.stampDocument, t.document);
        ok = ok && raw.pair(raw.insertDocument, id, t.document);
        if (!ok) {
            state.SkipWithError(sqlite3_errmsg(raw.db));
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------
// 2. Load one contact with its account

void loadRecords(benchmark::State& state) {
    int id = 0;
    for (auto _ : state) {
        id = id % kContacts + 1;
        tarvel::Contact c;
        c.setID(id);
        if (!c.GetById() || c.LastName().isEmpty()) {
            state.SkipWithError("contact not loaded");
            break;
        }
        benchmark::DoNotOptimize(c);
    }
    state.SetItemsProcessed(state.iterations());
}

void loadRaw(benchmark::State& state) {
    sqlite3_stmt* stmt = raw.load;
    const int columns = sqlite3_column_count(stmt);
    int id = 0;
    for (auto _ : state) {
        id = id % kContacts + 1;
        sqlite3_bind_int(stmt, 1, id);
        if (sqlite3_step(stmt) != SQLITE_ROW) {
            sqlite3_reset(stmt);
            state.SkipWithError("contact not found");
            break;
        }
        for (int i = 0; i < columns; ++i) {
            if (sqlite3_column_type(stmt, i) == SQLITE_INTEGER) {
                const sqlite3_int64 v = sqlite3_column_int64(stmt, i);
                benchmark::DoNotOptimize(v);
            } else {
                const unsigned char* text = sqlite3_column_text(stmt, i);
                const int bytes = sqlite3_column_bytes(stmt, i);
                benchmark::DoNotOptimize(text);
                benchmark::DoNotOptimize(bytes);
            }
        }
        sqlite3_reset(stmt);
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------
// The run

// Opens the raw side on the new data file, fills it and prepares its statements.
// A full name that about one contact in a hundred has.
const char* const kSearchedName = "王伟";

void nameSearchRecords(benchmark::State& state) {
    const QString name = QString::fromUtf8(kSearchedName);
    for (auto _ : state) {
        tarvel::RecordSearch search;
        if (!search.run(tarvel::recordsearch::contactsByName(name), 50) ||
            search.found().isEmpty()) {
            state.SkipWithError("nothing found");
            break;
        }
        benchmark::DoNotOptimize(search.found().size());
    }
}

void nameSearchRaw(benchmark::State& state) {
    sqlite3_stmt* stmt = raw.nameSearch;
    const std::string pattern = std::string("%") + kSearchedName + "%";
    for (auto _ : state) {
        bindText(stmt, 1, pattern);
        bindText(stmt, 2, pattern);
        int rows = 0;
        if (!step(raw.db, stmt, &rows) || rows == 0) {
            state.SkipWithError("nothing found");
            break;
        }
        benchmark::DoNotOptimize(rows);
    }
}

bool fillDataFile(const QString& path) {
    raw.db = openRaw(path);
    return raw.db && fill(raw.db) && raw.prepareAll();
}

// The records read what the raw side wrote.
bool warmUp() {
    tarvel::Contact probe;
    probe.setID(1);
    if (!probe.GetById() || probe.LastName().isEmpty()) {
        std::fprintf(stderr, "the records cannot read the data file: %s\n",
                     qPrintable(probe.ErrMsg()));
        return false;
    }
    return true;
}

void release() {
    closeRaw(raw.db, raw.all());
}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(argc, argv, {fillDataFile, warmUp, release},
                              {{"add_and_link/records", addAndLinkRecords, benchmark::kMicrosecond},
                               {"add_and_link/raw", addAndLinkRaw, benchmark::kMicrosecond},
                               {"load/records", loadRecords, benchmark::kMicrosecond},
                               {"load/raw", loadRaw, benchmark::kMicrosecond},
                               {"name_search/records", nameSearchRecords, benchmark::kMicrosecond},
                               {"name_search/raw", nameSearchRaw, benchmark::kMicrosecond}},
                              {"records",
                               Layout::MicrosecondsWithCpu,
                               {{"add_and_link", 3.0}, {"load", 1.5}, {"name_search", 1.5}},
                               {}});
}
