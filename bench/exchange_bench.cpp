// The data exchange library against the raw SQLCipher C API doing the same
// file work on the same data file.
//
// Benchmarks come in pairs named "<case>/exchange" and "<case>/raw":
//   backup      backupTo: copy of the live file, sqlcipher_export of the copy
//               into a new file keyed with the same password, copy of that to
//               the chosen name. The raw side copies, opens the copy (key
//               derivation), exports, and copies likewise.
//   report      exportReport for the ticked contacts (one in ten): copy, the
//               private-record pass, the cut in one transaction, the export.
//               The raw side runs the same cut statements (engine SQL) on a
//               copy in one transaction and exports.
//   merge       importReport of a backup of the same file: every record is
//               looked for among those already there (all are found), so no
//               record and no link is doubled. The raw side attaches the
//               backup and copies every record and link under new keys in one
//               transaction, then deletes what it added, so that each run
//               starts from the same file.
// After a console run the summary prints each pair's wall-clock ratio and
// whether one run stays under its budget (backup 2 s, report 3 s, merge
// 10 s). CSV and Excel imports are measured by table_bench.
//
// The data file: 5,000 accounts, 20,000 contacts (each linked to an account),
// 50,000 tasks (each linked to a contact).

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/rawengine.h"
#include "custom/userprofile.h"
#include "exchange/autobackup.h"
#include "exchange/backup.h"
#include "exchange/reportexport.h"
#include "exchange/reportimport.h"
#include "store/schema.h"

namespace {

using namespace tarvel::bench;

QString folder;    // the data file's folder
QString dataFile;  // the live data file

bool exec(sqlite3* db, const char* sql) {
    return check(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr), sql);
}

bool fill(sqlite3* db) {
    return exec(db, "BEGIN") &&
           exec(db,
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5000) "
                "INSERT INTO accounts (acc_name, acc_address, acc_telephone, acc_create_date) "
                "SELECT '华信科技有限公司' || i, '北京市人民路' || i || '号', '010-6' || i, "
                "'2024-01-02 00:00:00' FROM n") &&
           exec(db,
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<20000) "
                "INSERT INTO contacts (con_lastname, con_firstname, con_mobile, con_email, "
                "con_create_date, con_birthday, con_check) SELECT '王' || i, '明', '138' || i, "
                "'wm' || i || '@163.com', '2024-01-02 00:00:00', '1900-01-01 00:00:00', "
                "CASE WHEN i % 10 = 0 THEN -1 ELSE 0 END FROM n") &&
           exec(db,
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<50000) "
                "INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_outlay) SELECT "
                "'拜访客户' || i, '2025-05-06 00:00:00', '1899-12-30 10:00:00', 12.5 FROM n") &&
           exec(db,
                "INSERT INTO accounts_contacts (acc_id, con_id) SELECT (con_id % 5000) + 1, "
                "con_id FROM contacts") &&
           exec(db,
                "INSERT INTO contacts_tasks (con_id, tas_id) SELECT (tas_id % 20000) + 1, tas_id "
                "FROM tasks") &&
           exec(db, "COMMIT");
}

QString target(const char* name) {
    return QDir(folder).filePath(QLatin1String(name));
}

bool copy(const QString& from, const QString& to) {
    std::error_code ec;
    std::filesystem::copy_file(from.toStdString(), to.toStdString(),
                               std::filesystem::copy_options::overwrite_existing, ec);
    return !ec;
}

// Opens `source`, exports it into a new file `to` with the same key.
bool rawExport(const QString& source, const QString& to, const char* cut = nullptr) {
    QFile::remove(to);
    QFile(to).open(QIODevice::WriteOnly);
    sqlite3* db = openRaw(source);
    if (!db) return false;
    const std::string attach = "ATTACH DATABASE '" + to.toStdString() + "' AS out KEY '" +
                               tarvel::schema::kDatabasePassword + "'";
    const bool ok = (!cut || exec(db, cut)) && exec(db, attach.c_str()) &&
                    exec(db, "SELECT sqlcipher_export('out')") && exec(db, "DETACH DATABASE out");
    sqlite3_close(db);
    return ok;
}

// ---------------------------------------------------------------------------
// 1. Backup

void backupExchange(benchmark::State& state) {
    for (auto _ : state) {
        const auto out = tarvel::exchange::backupTo(target("b.tbk"));
        if (!out.ok) {
            state.SkipWithError(qPrintable(out.ErrMsg));
            break;
        }
    }
}

void backupRaw(benchmark::State& state) {
    const QString copyPath = target("raw.mdb"), compacted = target("raw.tmp");
    for (auto _ : state) {
        if (!copy(dataFile, copyPath) || !rawExport(copyPath, compacted) ||
            !copy(compacted, target("raw.tbk"))) {
            state.SkipWithError("raw backup failed");
            break;
        }
        QFile::remove(copyPath);
        QFile::remove(compacted);
    }
}

// ---------------------------------------------------------------------------
// 2. Automatic backup: made, opened again and checked, rotated

void autoBackupExchange(benchmark::State& state) {
    const tarvel::exchange::AutoBackupPlace place{target("auto"), qint64(1) << 40};
    for (auto _ : state) {
        const auto r =
            tarvel::exchange::runAutoBackup({dataFile, place, QDateTime::currentDateTime(), {}});
        if (!r.ok) {
            state.SkipWithError(qPrintable(r.message));
            break;
        }
    }
}

// The raw engine's backup followed by its own integrity check of the result.
void autoBackupRaw(benchmark::State& state) {
    const QString copyPath = target("rawauto.mdb"), compacted = target("rawauto.tmp"),
                  written = target("rawauto.tbk");
    for (auto _ : state) {
        bool ok =
            copy(dataFile, copyPath) && rawExport(copyPath, compacted) && copy(compacted, written);
        sqlite3* db = ok ? openRaw(written) : nullptr;
        ok = db && exec(db, "PRAGMA integrity_check");
        if (db) sqlite3_close(db);
        if (!ok) {
            state.SkipWithError("raw automatic backup failed");
            break;
        }
        QFile::remove(copyPath);
        QFile::remove(compacted);
    }
}

// What the window's thread does before an automatic backup goes to its own
// thread: read the settings and whether one is due, over a folder holding a
// year's rotation (23 backups).
void autoBackupStart(benchmark::State& state) {
    const QString backups = target("start");
    QDir().mkpath(backups);
    const QString one = target("start.tbk");
    if (!tarvel::exchange::backupTo(one).ok) {
        state.SkipWithError("no backup to place");
        return;
    }
    for (int i = 0; i < 23; ++i)
        QFile::copy(one, QDir(backups).filePath(tarvel::exchange::autoBackupName(
                             QDateTime(QDate(2025, 1, 1).addDays(i * 15), QTime(9, 0)))));
    for (auto _ : state) {
        const auto place = tarvel::exchange::autoBackupPlace(dataFile);
        const bool due = tarvel::exchange::backupDueAtStart(backups, QDate(2026, 1, 1));
        benchmark::DoNotOptimize(place);
        benchmark::DoNotOptimize(due);
    }
}

// ---------------------------------------------------------------------------
// 3. Report export of the ticked contacts

const char* kContactCut =
    "BEGIN;"
    "DELETE FROM accounts_contacts WHERE con_id NOT IN (SELECT con_id FROM contacts WHERE "
    "con_check=-1);"
    "DELETE FROM contacts_tasks WHERE con_id NOT IN (SELECT con_id FROM contacts WHERE "
    "con_check=-1);"
    "DELETE FROM opportunities_contacts WHERE con_id NOT IN (SELECT con_id FROM contacts WHERE "
    "con_check=-1);"
    "DELETE FROM contacts_documents WHERE con_id NOT IN (SELECT con_id FROM contacts WHERE "
    "con_check=-1);"
    "DELETE FROM documents WHERE doc_id NOT IN (SELECT doc_id FROM contacts_documents);"
    "DELETE FROM opportunities WHERE opp_id NOT IN (SELECT opp_id FROM opportunities_contacts);"
    "DELETE FROM tasks WHERE tas_id NOT IN (SELECT tas_id FROM contacts_tasks);"
    "DELETE FROM accounts WHERE acc_id NOT IN (SELECT acc_id FROM accounts_contacts);"
    "DELETE FROM contacts WHERE con_check=0;"
    "COMMIT;";

void reportExchange(benchmark::State& state) {
    for (auto _ : state) {
        const auto out = tarvel::exchange::exportReport(3, target("r.tvr3"));
        if (!out.ok) {
            state.SkipWithError(qPrintable(out.ErrMsg));
            break;
        }
    }
}

void reportRaw(benchmark::State& state) {
    const QString copyPath = target("rawtdb.tmp");
    for (auto _ : state) {
        if (!copy(dataFile, copyPath) || !rawExport(copyPath, target("raw.tvr3"), kContactCut)) {
            state.SkipWithError("raw report failed");
            break;
        }
        QFile::remove(copyPath);
    }
}

// ---------------------------------------------------------------------------
// 3. Merging a whole data file (a backup of this one)

void mergeExchange(benchmark::State& state) {
    if (!QFile::exists(target("m.tbk")) && !tarvel::exchange::backupTo(target("m.tbk")).ok) {
        state.SkipWithError("no backup to merge");
        return;
    }
    for (auto _ : state) {
        tarvel::exchange::ImportTally tally;
        const auto out = tarvel::exchange::importReport(target("m.tbk"), nullptr, {}, &tally);
        if (!out.ok || tally.added != 0) {
            state.SkipWithError(out.ok ? "records doubled" : qPrintable(out.ErrMsg));
            break;
        }
    }
}

// Records first, keys shifted past the live ones; links through the shift.
const char* kRawMerge =
    "BEGIN;"
    "CREATE TEMP TABLE a AS SELECT * FROM m.accounts;"
    "UPDATE temp.a SET acc_id = acc_id + 1000000, acc_check = 0;"
    "INSERT INTO main.accounts SELECT * FROM temp.a; DROP TABLE temp.a;"
    "CREATE TEMP TABLE c AS SELECT * FROM m.contacts;"
    "UPDATE temp.c SET con_id = con_id + 1000000, con_check = 0;"
    "INSERT INTO main.contacts SELECT * FROM temp.c; DROP TABLE temp.c;"
    "CREATE TEMP TABLE t AS SELECT * FROM m.tasks;"
    "UPDATE temp.t SET tas_id = tas_id + 1000000, tas_check = 0;"
    "INSERT INTO main.tasks SELECT * FROM temp.t; DROP TABLE temp.t;"
    "INSERT INTO main.accounts_contacts SELECT acc_id + 1000000, con_id + 1000000 FROM "
    "m.accounts_contacts;"
    "INSERT INTO main.contacts_tasks SELECT con_id + 1000000, tas_id + 1000000 FROM "
    "m.contacts_tasks;"
    "DELETE FROM main.contacts_tasks WHERE con_id > 1000000;"
    "DELETE FROM main.accounts_contacts WHERE con_id > 1000000;"
    "DELETE FROM main.tasks WHERE tas_id > 1000000;"
    "DELETE FROM main.contacts WHERE con_id > 1000000;"
    "DELETE FROM main.accounts WHERE acc_id > 1000000;"
    "COMMIT;";

void mergeRaw(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* db = openRaw(dataFile);
        const std::string attach = "ATTACH DATABASE '" + target("m.tbk").toStdString() +
                                   "' AS m KEY '" + tarvel::schema::kDatabasePassword + "'";
        const bool ok =
            db && exec(db, attach.c_str()) && exec(db, kRawMerge) && exec(db, "DETACH DATABASE m");
        if (db) sqlite3_close(db);
        if (!ok) {
            state.SkipWithError("raw merge failed");
            break;
        }
    }
}

// ---------------------------------------------------------------------------
// The run

bool fillDataFile(const QString& path) {
    dataFile = QDir(QFileInfo(path).path()).filePath(QLatin1String(tarvel::schema::kDataFileName));
    folder = QFileInfo(path).path();
    sqlite3* db = openRaw(path);
    const bool ok = db && fill(db);
    // Through closeRaw, so that the run does not size the page cache of a
    // handle that is gone.
    if (db) closeRaw(db, {});
    // The exchange works on the program's data file name in its folder.
    return ok && QFile::rename(path, dataFile) && QFile::link(dataFile, path);
}

bool warmUp() {
    const tarvel::UserProfile profile{QStringLiteral("王经理"), QStringLiteral("甲公司"),
                                      QStringLiteral("经理"), QStringLiteral("w@example.cn")};
    if (!profile.save()) {
        std::fprintf(stderr, "the exchange cannot write the data file\n");
        return false;
    }
    return true;
}

void release() {}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(
        argc, argv, {fillDataFile, warmUp, release},
        {{"backup/exchange", backupExchange, benchmark::kMillisecond},
         {"backup/raw", backupRaw, benchmark::kMillisecond},
         {"autobackup/exchange", autoBackupExchange, benchmark::kMillisecond},
         {"autobackup/raw", autoBackupRaw, benchmark::kMillisecond},
         {"autobackup-start/exchange", autoBackupStart, benchmark::kMillisecond},
         {"report/exchange", reportExchange, benchmark::kMillisecond},
         {"report/raw", reportRaw, benchmark::kMillisecond},
         {"merge/exchange", mergeExchange, benchmark::kMillisecond},
         {"merge/raw", mergeRaw, benchmark::kMillisecond}},
        {"exchange",
         Layout::MillisecondsWallClock,
         {{"backup", 1.5}, {"autobackup", 1.5}, {"report", 2.0}, {"merge", 6.0}},
         {{"backup/exchange", "backup", 2.0},
          {"autobackup-start/exchange", "the window's share of an automatic backup", 0.1},
          {"report/exchange", "report export", 3.0},
          {"merge/exchange", "merging a data file", 10.0}}});
}
