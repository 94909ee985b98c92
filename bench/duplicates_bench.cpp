// The search for duplicate contacts against the raw SQLCipher C API doing the
// same grouping.
//
// Benchmarks come in a pair, "find/duplicates" and "find/raw", over a data file of
// 20,000 contacts (2,000 accounts; one in ten shares a mobile written another
// way, one in twenty an e-mail in another case, one in fifty the name and
// account of another):
//   duplicates findDuplicates(kind::Contact): reading the columns, normalising
//            mobiles and e-mails, the keys, the joined groups and their reasons.
//   raw      the same statement, digits kept and a leading 86 dropped,
//            e-mails lower-cased, grouped in hash maps and joined the same way,
//            without the words of the reasons.
// After a console run the summary prints the wall-clock ratio and whether one
// search stays under its budget of 1 s.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/rawengine.h"
#include "exchange/duplicates.h"
#include "records/kinds.h"

namespace {

using namespace tarvel::bench;

constexpr int kContacts = 20000;

sqlite3* raw = nullptr;
sqlite3_stmt* select = nullptr;
size_t expectedGroups = 0;  // what the program finds, which the raw side must match

const char* const kSelect =
    "SELECT c.con_id, c.con_lastname, c.con_mobile, c.con_mobile2, c.con_mobile3, c.con_email, "
    "c.con_email2, c.con_email3, a.acc_id, a.acc_name FROM contacts c LEFT JOIN accounts a ON "
    "a.acc_id = (SELECT MIN(acc_id) FROM accounts_contacts l WHERE l.con_id = c.con_id) ORDER BY "
    "c.con_id";

bool exec(sqlite3* db, const char* sql) {
    return check(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr), sql);
}

bool fill(const QString& path) {
    raw = openRaw(path);
    if (!raw) return false;
    const std::string n = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                          std::to_string(kContacts) + ") ";
    const bool ok =
        exec(raw, "BEGIN") &&
        exec(raw, (n + "INSERT INTO accounts (acc_name) SELECT '华信科技有限公司' || i FROM n "
                       "WHERE i <= 2000")
                      .c_str()) &&
        // Contact i + 1 of every ten repeats i's mobile as +86 with blanks, in
        // its second slot; every twentieth repeats the e-mail in upper case.
        exec(raw, (n + "INSERT INTO contacts (con_lastname, con_mobile, con_mobile2, con_email, "
                       "con_email2) SELECT '王' || (i - (i % 50 = 1)), "
                       "CASE WHEN i % 10 = 1 THEN '' ELSE '139' || (10000000 + i) END, "
                       "CASE WHEN i % 10 = 1 THEN '+86 139 ' || (10000000 + i - 1) ELSE '' END, "
                       "'w' || (i - (i % 20 = 1)) || '@163.com', "
                       "CASE WHEN i % 20 = 2 THEN 'W' || i || '@163.COM' ELSE '' END FROM n")
                      .c_str()) &&
        exec(raw,
             "INSERT INTO accounts_contacts (acc_id, con_id) SELECT (con_id % 2000) + 1, con_id "
             "FROM contacts") &&
        exec(raw, "COMMIT");
    select = prepare(raw, kSelect);
    return ok && select;
}

std::string text(sqlite3_stmt* s, int i) {
    const unsigned char* t = sqlite3_column_text(s, i);
    return t ? reinterpret_cast<const char*>(t) : std::string();
}

size_t rawGroups() {
    std::unordered_map<std::string, std::vector<int>> byKey;
    std::vector<sqlite3_int64> keys;
    while (sqlite3_step(select) == SQLITE_ROW) {
        const int record = int(keys.size());
        keys.push_back(sqlite3_column_int64(select, 0));
        for (int i = 2; i <= 4; ++i) {
            std::string digits;
            for (char c : text(select, i))
                if (std::isdigit(static_cast<unsigned char>(c))) digits += c;
            if (digits.size() == 13 && digits.compare(0, 2, "86") == 0) digits.erase(0, 2);
            if (digits.size() >= 5) byKey["m" + digits].push_back(record);
        }
        for (int i = 5; i <= 7; ++i) {
            std::string e = text(select, i);
            std::transform(e.begin(), e.end(), e.begin(),
                           [](unsigned char c) { return char(std::tolower(c)); });
            if (!e.empty()) byKey["e" + e].push_back(record);
        }
        if (sqlite3_column_type(select, 8) != SQLITE_NULL)
            byKey["n" + std::to_string(sqlite3_column_int64(select, 8)) + text(select, 1)]
                .push_back(record);
    }
    sqlite3_reset(select);
    std::vector<int> parent(keys.size());
    std::iota(parent.begin(), parent.end(), 0);
    auto root = [&](int i) {
        while (parent[size_t(i)] != i) i = parent[size_t(i)] = parent[size_t(parent[size_t(i)])];
        return i;
    };
    for (const auto& [key, members] : byKey)
        for (int m : members) parent[size_t(root(m))] = root(members.front());
    std::unordered_map<int, int> sizes;
    for (size_t i = 0; i < keys.size(); ++i) ++sizes[root(int(i))];
    return size_t(std::count_if(sizes.begin(), sizes.end(), [](auto& s) { return s.second > 1; }));
}

void findProgram(benchmark::State& state) {
    for (auto _ : state) {
        QList<tarvel::exchange::DuplicateGroup> groups;
        const auto out = tarvel::exchange::findDuplicates(tarvel::kind::Contact, &groups);
        if (!out.ok || size_t(groups.size()) != expectedGroups) {
            state.SkipWithError(out.ok ? "a different number of groups" : qPrintable(out.ErrMsg));
            break;
        }
    }
}

void findRaw(benchmark::State& state) {
    for (auto _ : state) {
        if (rawGroups() != expectedGroups) {
            state.SkipWithError("the raw grouping found a different number of groups");
            break;
        }
    }
}

bool warmUp() {
    QList<tarvel::exchange::DuplicateGroup> groups;
    const auto out = tarvel::exchange::findDuplicates(tarvel::kind::Contact, &groups);
    expectedGroups = size_t(groups.size());
    if (!out.ok || groups.isEmpty() || rawGroups() != expectedGroups) {
        std::fprintf(stderr, "the two sides disagree: %lld groups, raw %zu (%s)\n",
                     static_cast<long long>(groups.size()), rawGroups(), qPrintable(out.ErrMsg));
        return false;
    }
    return true;
}

void release() {
    closeRaw(raw, {select});
}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(argc, argv, {fill, warmUp, release},
                              {{"find/duplicates", findProgram, benchmark::kMillisecond},
                               {"find/raw", findRaw, benchmark::kMillisecond}},
                              {"duplicates",
                               Layout::MillisecondsWallClock,
                               {{"find", 3.0}},
                               {{"find/duplicates", "duplicates among 20,000 contacts", 1.0}}});
}
