// Importing tables of contacts (CSV text and Excel workbooks) against the raw
// SQLCipher C API inserting the same rows.
//
// Benchmarks come in pairs named "<case>/exchange" and "<case>/raw":
//   csv_import   planCsvImport + importCsv of a UTF-8 CSV file of 10,000 contact
//                rows (name, mobile, e-mail, company, birthday; 100 company
//                names, half of them accounts already there): reading, decoding,
//                mapping, putting each record together and storing it through
//                the import session (recognising records already there, the
//                journal), all in one transaction.
//   xlsx_import  the same rows from an .xlsx workbook (libzip + XML reader).
//   csv_plan     (no raw pair) planCsvImport alone: how much of csv_import is
//                reading the file rather than storing the rows.
//   The raw side inserts the same rows, already in memory, with prepared
//   statements in one transaction: contact, account looked up in memory or
//   added, link.
// Between iterations (untimed) the rows an iteration added are deleted, so each
// iteration adds 10,000 contacts. After a console run the summary prints each
// pair's wall-clock ratio and whether one run stays under its budget (10,000
// CSV rows 1 s, 10,000 workbook rows 2 s).

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QString>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/rawengine.h"
#include "exchange/csv.h"
#include "exchange/csvimport.h"
#include "exchange/textfile.h"
#include "exchange/xlsxwrite.h"

namespace {

using namespace tarvel::bench;

constexpr int kRows = 10000;
constexpr int kAccountsThere = 50;

struct Row {
    std::string name, mobile, email, company, birthday;
};
std::vector<Row> rows;  // what both files hold
QString folder;
sqlite3* cleaner = nullptr;  // deletes what an iteration added
sqlite3_int64 lastContact = 0, lastAccount = 0;

bool exec(sqlite3* db, const char* sql) {
    return check(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr), sql);
}

QString file(const char* name) {
    return QDir(folder).filePath(QLatin1String(name));
}

// Back to the rows that were there before the first iteration.
bool cleanUp() {
    const std::string ids = std::to_string(lastContact);
    const std::string accounts = std::to_string(lastAccount);
    return exec(cleaner, "BEGIN") &&
           exec(cleaner, ("DELETE FROM accounts_contacts WHERE con_id > " + ids).c_str()) &&
           exec(cleaner, ("DELETE FROM contacts WHERE con_id > " + ids).c_str()) &&
           exec(cleaner, ("DELETE FROM accounts WHERE acc_id > " + accounts).c_str()) &&
           exec(cleaner, "COMMIT");
}

// cleanUp outside the timing; false (the run skipped) when it failed.
bool cleanUpUntimed(benchmark::State& state) {
    state.PauseTiming();
    const bool clean = cleanUp();
    state.ResumeTiming();
    if (!clean) state.SkipWithError("clean-up failed");
    return clean;
}

void importExchange(benchmark::State& state, const char* name) {
    for (auto _ : state) {
        tarvel::exchange::CsvImportPlan plan;
        QString error;
        if (!tarvel::exchange::planCsvImport(file(name), QStringLiteral("contacts"), &plan,
                                             &error)) {
            state.SkipWithError(qPrintable(error));
            break;
        }
        tarvel::exchange::CsvImportResult result;
        const auto out = tarvel::exchange::importCsv(plan, false, &result);
        if (!out.ok || result.tally.added != kRows) {
            state.SkipWithError(qPrintable(out.ok ? result.summary() : out.ErrMsg));
            break;
        }
        if (!cleanUpUntimed(state)) break;
    }
}

// Reading, decoding, mapping and checking the CSV file alone: the share of
// csv_import that is not storing.
void csvPlan(benchmark::State& state) {
    for (auto _ : state) {
        tarvel::exchange::CsvImportPlan plan;
        QString error;
        if (!tarvel::exchange::planCsvImport(file("contacts.csv"), QStringLiteral("contacts"),
                                             &plan, &error) ||
            plan.rows.size() != kRows) {
            state.SkipWithError(qPrintable(error));
            break;
        }
    }
}

void csvExchange(benchmark::State& state) {
    importExchange(state, "contacts.csv");
}

void xlsxExchange(benchmark::State& state) {
    importExchange(state, "contacts.xlsx");
}

void importRaw(benchmark::State& state) {
    sqlite3* db = cleaner;
    sqlite3_stmt* insert =
        prepare(db,
                "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_birthday, "
                "con_create_date, con_recent_contact_date) VALUES (?,?,?,?,?,?)");
    sqlite3_stmt* names = prepare(db, "SELECT acc_id, acc_name FROM accounts");
    sqlite3_stmt* addAccount =
        prepare(db, "INSERT INTO accounts (acc_name, acc_create_date) VALUES (?,?)");
    sqlite3_stmt* link = prepare(db, "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (?,?)");
    for (auto _ : state) {
        bool ok = exec(db, "BEGIN");
        const std::string now = nowText();
        std::unordered_map<std::string, sqlite3_int64> byName;
        while (sqlite3_step(names) == SQLITE_ROW)
            byName.emplace(reinterpret_cast<const char*>(sqlite3_column_text(names, 1)),
                           sqlite3_column_int64(names, 0));
        sqlite3_reset(names);
        for (const Row& row : rows) {
            bindText(insert, 1, row.name);
            bindText(insert, 2, row.mobile);
            bindText(insert, 3, row.email);
            bindText(insert, 4, row.birthday);
            bindText(insert, 5, now);
            bindText(insert, 6, now);
            ok = ok && sqlite3_step(insert) == SQLITE_DONE;
            sqlite3_reset(insert);
            ok = linkToAccount(db, addAccount, link, byName, row.company,
                               sqlite3_last_insert_rowid(db), now) &&
                 ok;
        }
        if (!ok || !exec(db, "COMMIT")) {
            state.SkipWithError(sqlite3_errmsg(db));
            break;
        }
        if (!cleanUpUntimed(state)) break;
    }
    for (sqlite3_stmt* s : {insert, names, addAccount, link}) sqlite3_finalize(s);
}

sqlite3_int64 lastKey(const char* sql) {
    sqlite3_stmt* stmt = prepare(cleaner, sql);
    const sqlite3_int64 key = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : 0;
    sqlite3_finalize(stmt);
    return key;
}

bool fillDataFile(const QString& path) {
    folder = QFileInfo(path).path();
    cleaner = openRaw(path);
    if (!cleaner || !exec(cleaner, "BEGIN")) return false;
    sqlite3_stmt* account =
        prepare(cleaner, "INSERT INTO accounts (acc_name, acc_create_date) VALUES (?,?)");
    bool ok = account != nullptr;
    for (int i = 0; ok && i < kAccountsThere; ++i) {
        bindText(account, 1, QStringLiteral("华信科技有限公司%1").arg(i).toStdString());
        bindText(account, 2, nowText());
        ok = sqlite3_step(account) == SQLITE_DONE;
        sqlite3_reset(account);
    }
    sqlite3_finalize(account);
    if (!ok || !exec(cleaner, "COMMIT")) return false;
    lastContact = lastKey("SELECT COALESCE(MAX(con_id), 0) FROM contacts");
    lastAccount = lastKey("SELECT COALESCE(MAX(acc_id), 0) FROM accounts");

    const QStringList header = {"姓名", "手机", "电子邮件", "公司", "生日"};
    QString csv = tarvel::exchange::csvLine(header);
    tarvel::exchange::XlsxTable xlsx(file("contacts.xlsx"), header);
    for (int i = 0; i < kRows; ++i) {
        const QDate birthday = QDate(1960, 1, 1).addDays(i);
        const QStringList cells = {QStringLiteral("导入%1").arg(i),
                                   QStringLiteral("139%1").arg(i, 8, 10, QLatin1Char('0')),
                                   QStringLiteral("in%1@126.com").arg(i),
                                   QStringLiteral("华信科技有限公司%1").arg(i % 100),
                                   birthday.toString(QStringLiteral("yyyy-MM-dd"))};
        csv += tarvel::exchange::csvLine(cells);
        if (!xlsx.addRow({cells[0], cells[1], cells[2], cells[3], birthday})) return false;
        rows.push_back({cells[0].toStdString(), cells[1].toStdString(), cells[2].toStdString(),
                        cells[3].toStdString(), cells[4].toStdString() + " 00:00:00"});
    }
    QString error;
    if (!xlsx.finish(&error) ||
        !tarvel::exchange::writeTextFile(file("contacts.csv"), csv, true, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return false;
    }
    return true;
}

bool warmUp() {
    // The program's first open (key derivation) stays out of the timing.
    tarvel::exchange::CsvImportPlan plan;
    QString error;
    if (tarvel::exchange::planCsvImport(file("contacts.csv"), QStringLiteral("contacts"), &plan,
                                        &error))
        return true;
    std::fprintf(stderr, "%s\n", qPrintable(error));
    return false;
}

void release() {
    if (cleaner) closeRaw(cleaner, {});
    cleaner = nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(argc, argv, {fillDataFile, warmUp, release},
                              {{"csv_import/exchange", csvExchange, benchmark::kMillisecond},
                               {"csv_import/raw", importRaw, benchmark::kMillisecond},
                               {"xlsx_import/exchange", xlsxExchange, benchmark::kMillisecond},
                               {"xlsx_import/raw", importRaw, benchmark::kMillisecond},
                               {"csv_plan/exchange", csvPlan, benchmark::kMillisecond}},
                              {"exchange",
                               Layout::MillisecondsWallClock,
                               {{"csv_import", 15.0}, {"xlsx_import", 30.0}},
                               {{"csv_import/exchange", "10,000 CSV rows", 1.0},
                                {"xlsx_import/exchange", "10,000 workbook rows", 2.0}}});
}
