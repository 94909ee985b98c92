// Deleting through the recycle bin against the raw SQLCipher C API doing the
// same work on the same data file.
//
// Benchmarks come in a pair, "delete/bin" and "delete/raw":
//   delete/bin  the lists' 删除选定记录 of 50 contacts: each one's row and link
//               rows kept in the bin, then its delete statements, one
//               transaction per contact (as the lists do).
//   delete/raw  per contact, one transaction: an entry row, the contact's row
//               and each link row as one text of its columns (the engine's
//               quote() of each) into the bin's rows, then the deletes of the links and the row.
// Each iteration takes the next 50 contacts of its own half of the file, so
// both sides always delete contacts that exist, with the same links.
//
// The data file: 2,000 accounts, 20,000 contacts (each linked to an account),
// 40,000 tasks (each linked to a contact).

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QString>
#include <QStringList>
#include <string>

#include "bench/rawengine.h"
#include "browse/listkind.h"
#include "browse/liststore.h"
#include "exchange/tables.h"
#include "records/kinds.h"

namespace {

using namespace tarvel::bench;

constexpr int kContacts = 20000;
constexpr int kPerRun = 50;

sqlite3* raw = nullptr;
std::vector<sqlite3_stmt*> statements;
qint64 nextBin = 1;                  // the bin side deletes from the first half
qint64 nextRaw = kContacts / 2 + 1;  // the raw side from the second

bool exec(sqlite3* db, const std::string& sql) {
    return check(db, sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), sql.c_str());
}

// Every column of `table` with its value as an SQL literal in one text, the
// engine's own serialisation ("'a=' || quote(a) || ',b=' || quote(b)"): this
// engine is built without the JSON functions.
std::string jsonOf(sqlite3* db, const QString& table) {
    sqlite3_stmt* info = prepare(db, QStringLiteral("PRAGMA table_info(\"%1\")").arg(table));
    QStringList parts;
    while (info && sqlite3_step(info) == SQLITE_ROW) {
        const QString c =
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(info, 1)));
        parts << QStringLiteral("'%1%2=' || quote(\"%2\")")
                     .arg(parts.isEmpty() ? QString() : QStringLiteral(","), c);
    }
    sqlite3_finalize(info);
    return "(" + parts.join(QStringLiteral(" || ")).toStdString() + ")";
}

// The raw side's statements for one contact, `?1` its key.
std::vector<std::string> rawDelete;

bool fill(const QString& path) {
    raw = openRaw(path);
    if (!raw ||
        !exec(raw,
              "BEGIN;"
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
              "INSERT INTO accounts (acc_name, acc_create_date) SELECT '华信科技有限公司' || i, "
              "'2024-01-02 00:00:00' FROM n;"
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<20000) "
              "INSERT INTO contacts (con_lastname, con_firstname, con_mobile, con_create_date) "
              "SELECT '王' || i, '明', '138' || i, '2024-01-02 00:00:00' FROM n;"
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<40000) "
              "INSERT INTO tasks (tas_subject, tas_date, tas_outlay) SELECT '拜访客户' || i, "
              "'2025-05-06 00:00:00', 12.5 FROM n;"
              "INSERT INTO accounts_contacts (acc_id, con_id) SELECT (con_id % 2000) + 1, con_id "
              "FROM contacts;"
              "INSERT INTO contacts_tasks (con_id, tas_id) SELECT (tas_id % 20000) + 1, tas_id "
              "FROM tasks;"
              "COMMIT;"))
        return false;
    rawDelete.push_back(
        "INSERT INTO bin_entries (bin_deleted, bin_kind, bin_key, bin_name, bin_batch) SELECT "
        "'2026-01-01 00:00:00', 3, con_id, con_lastname || con_firstname, 1 FROM contacts WHERE "
        "con_id=?1");
    rawDelete.push_back(
        "INSERT INTO bin_rows (bin_entry, bin_table, bin_row) SELECT "
        "last_insert_rowid(), 'contacts', " +
        jsonOf(raw, QStringLiteral("contacts")) + " FROM contacts WHERE con_id=?1");
    for (const tarvel::exchange::LinkTable& l : tarvel::exchange::linkTables()) {
        QStringList ends;
        if (l.firstTable == QLatin1String("contacts")) ends << l.first + QStringLiteral("=?1");
        if (l.secondTable == QLatin1String("contacts")) ends << l.second + QStringLiteral("=?1");
        if (ends.isEmpty()) continue;
        const std::string where = ends.join(QStringLiteral(" OR ")).toStdString();
        rawDelete.push_back(
            "INSERT INTO bin_rows (bin_entry, bin_table, bin_row) SELECT (SELECT MAX(bin_id) "
            "FROM bin_entries), '" +
            l.name.toStdString() + "', " + jsonOf(raw, l.name) + " FROM " + l.name.toStdString() +
            " WHERE " + where);
        rawDelete.push_back("DELETE FROM " + l.name.toStdString() + " WHERE " + where);
    }
    rawDelete.push_back("DELETE FROM contacts WHERE con_id=?1");
    for (const std::string& sql : rawDelete) {
        sqlite3_stmt* s = prepare(raw, QString::fromStdString(sql));
        if (!s) return false;
        statements.push_back(s);
    }
    return true;
}

// Opens the data file through the program once (key derivation stays out of the timing).
bool warmUp() {
    tarvel::lists::ListStore store(*tarvel::lists::listKindForRecord(tarvel::kind::Contact));
    store.anyTicked();
    return store.ErrMsg().isEmpty();
}

void release() {
    closeRaw(raw, statements);
}

void deleteBin(benchmark::State& state) {
    tarvel::lists::ListStore store(*tarvel::lists::listKindForRecord(tarvel::kind::Contact));
    for (auto _ : state) {
        if (nextBin + kPerRun > kContacts / 2) {
            state.SkipWithError("out of contacts");
            break;
        }
        QList<qint64> ids;
        for (int i = 0; i < kPerRun; ++i) ids << nextBin++;
        if (!store.deleteRecords(ids)) {
            state.SkipWithError(qPrintable(store.ErrMsg()));
            break;
        }
    }
}

void deleteRaw(benchmark::State& state) {
    for (auto _ : state) {
        if (nextRaw + kPerRun > kContacts) {
            state.SkipWithError("out of contacts");
            break;
        }
        bool ok = true;
        for (int i = 0; ok && i < kPerRun; ++i, ++nextRaw) {
            ok = exec(raw, "BEGIN");
            for (sqlite3_stmt* s : statements) {
                if (!ok) break;
                sqlite3_bind_int64(s, 1, nextRaw);
                ok = check(raw, sqlite3_step(s), "raw delete");
                sqlite3_reset(s);
            }
            ok = ok && exec(raw, "COMMIT");
        }
        if (!ok) {
            state.SkipWithError("raw delete failed");
            break;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(argc, argv, {fill, warmUp, release},
                              {{"delete/bin", deleteBin, benchmark::kMillisecond},
                               {"delete/raw", deleteRaw, benchmark::kMillisecond}},
                              {"bin", Layout::MillisecondsWallClock, {{"delete", 3.0}}, {}});
}
