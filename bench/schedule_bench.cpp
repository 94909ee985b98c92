// The schedule's date queries and its statistics selection against the raw
// SQLCipher C API running the same SQL on the same data file.
//
// Benchmarks come in pairs named "<case>/schedule" and "<case>/raw":
//   one_date    the home page's query of the tasks occurring on one date
//               (todayTasksQuery), every field of every row read.
//   month       the same query for each of the 30 days of June 2025, as a
//               month view reads it.
//   selection7  statistics selection 7 ("有联系记录的联系人") over the 30 days
//               of June 2025: clear tas_check, mark the tasks of each day with
//               the page's condition, then read the contacts its filter
//               selects (con_id, con_lastname).
// The raw side runs the statements the translator makes of the program's
// texts (translated once, before timing), kept prepared, with its own C
// functions for WEEKDAY, DAY and MONTH; the selection's marking is one
// transaction on both sides, as in the program.
// How to read them: divide the schedule time per iteration by the raw time per
// iteration of the same case; both sides use the same page cache size. After a
// console run a summary prints each ratio (wall clock) beside its aim, and the
// selection's time per run.
//
// The data file is built once per process in a temporary folder and filled
// through the raw engine with 2,000 contacts and 50,000 tasks: 45,000 one-off
// tasks over 2024-2026 and 5,000 recurring ones (daily, weekly, monthly,
// yearly) lasting 30 days to two years; 60% of the tasks are linked to a
// contact.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDate>
#include <QString>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "schedule/recurrence.h"
#include "schedule/reminders.h"
#include "schedule/statistics.h"
#include "store/connectionstring.h"
#include "store/dialect.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "tools/datafile.h"

namespace {

constexpr int kContacts = 2000;
constexpr int kTasks = 50000;
constexpr int kRecurringPercent = 10;
constexpr int kLinkedPercent = 60;
const QDate kOneDate(2025, 6, 18);
const QDate kMonthStart(2025, 6, 1);
constexpr int kMonthDays = 30;

// ---------------------------------------------------------------------------
// The raw engine

bool ok(sqlite3* db, int rc, const char* what) {
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW) return true;
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    return false;
}

sqlite3_stmt* prepareRaw(sqlite3* db, const QString& sql) {
    sqlite3_stmt* stmt = nullptr;
    const QByteArray text = sql.toUtf8();
    if (!ok(db, sqlite3_prepare_v2(db, text.constData(), text.size(), &stmt, nullptr),
            text.constData()))
        return nullptr;
    return stmt;
}

// The date parts of a stored "YYYY-MM-DD HH:MM:SS" text, read in place.
bool dateParts(sqlite3_value* value, int* y, int* m, int* d) {
    if (sqlite3_value_type(value) == SQLITE_NULL) return false;
    const auto* s = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!s || std::strlen(s) < 10) return false;
    *y = (s[0] - '0') * 1000 + (s[1] - '0') * 100 + (s[2] - '0') * 10 + (s[3] - '0');
    *m = (s[5] - '0') * 10 + (s[6] - '0');
    *d = (s[8] - '0') * 10 + (s[9] - '0');
    return true;
}

template <int Part>
void rawDatePart(sqlite3_context* ctx, int, sqlite3_value** argv) {
    int y, m, d;
    if (!dateParts(argv[0], &y, &m, &d)) {
        sqlite3_result_null(ctx);
        return;
    }
    if (Part == 0) {  // weekday, Sunday = 1 (Sakamoto)
        static const int offsets[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
        const int yy = m < 3 ? y - 1 : y;
        sqlite3_result_int(ctx, (yy + yy / 4 - yy / 100 + yy / 400 + offsets[m - 1] + d) % 7 + 1);
    } else {
        sqlite3_result_int(ctx, Part == 1 ? d : m);
    }
}

sqlite3* openRaw(const QString& path) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    const char* key = tarvel::schema::kDatabasePassword;
    sqlite3_key(db, key, int(std::strlen(key)));
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db, "weekday", 1, flags, nullptr, rawDatePart<0>, nullptr, nullptr);
    sqlite3_create_function(db, "day", 1, flags, nullptr, rawDatePart<1>, nullptr, nullptr);
    sqlite3_create_function(db, "month", 1, flags, nullptr, rawDatePart<2>, nullptr, nullptr);
    sqlite3_busy_timeout(db, 2000);
    return db;
}

std::string dateText(const QDate& d) {
    return d.toString(QStringLiteral("yyyy-MM-dd 00:00:00")).toStdString();
}

void bindText(sqlite3_stmt* stmt, int index, const std::string& text) {
    sqlite3_bind_text(stmt, index, text.data(), int(text.size()), SQLITE_TRANSIENT);
}

bool fill(sqlite3* db) {
    std::mt19937 rng(20250618);
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    bool good = ok(db, sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN");
    sqlite3_stmt* contact = prepareRaw(
        db, QStringLiteral("INSERT INTO contacts (con_lastname, con_birthday) VALUES (?, ?)"));
    for (int i = 1; good && i <= kContacts; ++i) {
        bindText(contact, 1, "联系人" + std::to_string(i));
        bindText(contact, 2, dateText(QDate(1960, 1, 1).addDays(pick(15000))));
        good = ok(db, sqlite3_step(contact), "contact");
        sqlite3_reset(contact);
    }
    sqlite3_stmt* task = prepareRaw(
        db, QStringLiteral("INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle, "
                           "tas_closedate, tas_remind, tas_again, tas_closed, tas_outlay, "
                           "tas_create_date, tas_recent_contact_date) VALUES (?,?,?,?,?,?,?,?,?,"
                           "'2024-01-01 00:00:00','2025-01-01 10:00:00')"));
    sqlite3_stmt* link =
        prepareRaw(db, QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (?,?)"));
    const QDate first(2024, 1, 1);
    static const int cycles[] = {1, 1, 7, 7, 7, 30, 30, 365, 365, 365};
    for (int i = 1; good && i <= kTasks; ++i) {
        const bool recurring = pick(100) < kRecurringPercent;
        const QDate start = first.addDays(pick(recurring ? 912 : 1096));
        bindText(task, 1, "日程" + std::to_string(i));
        bindText(task, 2, dateText(start));
        bindText(task, 3,
                 QStringLiteral("1899-12-30 %1:%2:00")
                     .arg(7 + pick(13), 2, 10, QLatin1Char('0'))
                     .arg(pick(2) * 30, 2, 10, QLatin1Char('0'))
                     .toStdString());
        sqlite3_bind_int(task, 4, recurring ? cycles[pick(10)] : 0);
        bindText(task, 5, dateText(recurring ? start.addDays(30 + pick(700)) : start));
        sqlite3_bind_int(task, 6, pick(3) == 0 ? 1 : 0);
        sqlite3_bind_int(task, 7, pick(2));
        sqlite3_bind_int(task, 8, pick(2));
        sqlite3_bind_double(task, 9, pick(500));
        good = ok(db, sqlite3_step(task), "task");
        sqlite3_reset(task);
        if (good && pick(100) < kLinkedPercent) {
            sqlite3_bind_int(link, 1, 1 + pick(kContacts));
            sqlite3_bind_int64(link, 2, sqlite3_last_insert_rowid(db));
            good = ok(db, sqlite3_step(link), "link");
            sqlite3_reset(link);
        }
    }
    for (sqlite3_stmt* s : {contact, task, link}) sqlite3_finalize(s);
    return ok(db, sqlite3_exec(db, good ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr),
              "COMMIT") &&
           good;
}

// The program's statement in the engine's dialect.
QString engineSql(const QString& statement) {
    return tarvel::dialect::translateUncached(statement).sql;
}

// Nothing to show while measuring: the selections used never warn.
class Silent : public tarvel::Messages {
public:
    void info(const QString&, const QString&) override {}
};

QString selectionListSql(const QString& filter) {
    return QStringLiteral("SELECT con_id, con_lastname FROM contacts ") + filter;
}

struct Raw {
    sqlite3* db = nullptr;
    sqlite3_stmt* oneDate = nullptr;
    std::vector<sqlite3_stmt*> monthDays;
    sqlite3_stmt* clearMarks = nullptr;
    std::vector<sqlite3_stmt*> marks;
    sqlite3_stmt* selected = nullptr;

    bool prepareAll(const QString& filter) {
        oneDate = prepareRaw(db, engineSql(tarvel::todayTasksQuery(kOneDate)));
        for (int i = 0; i < kMonthDays; ++i) {
            const QDate d = kMonthStart.addDays(i);
            monthDays.push_back(prepareRaw(db, engineSql(tarvel::todayTasksQuery(d))));
            marks.push_back(
                prepareRaw(db, engineSql(QStringLiteral("UPDATE tasks SET tas_check=true") +
                                         tarvel::statisticsTaskDateCondition(d))));
        }
        clearMarks = prepareRaw(db, engineSql(QStringLiteral("UPDATE tasks SET tas_check=0")));
        selected = prepareRaw(db, engineSql(selectionListSql(filter)));
        for (sqlite3_stmt* s : all())
            if (!s) return false;
        return true;
    }
    std::vector<sqlite3_stmt*> all() const {
        std::vector<sqlite3_stmt*> out = monthDays;
        out.insert(out.end(), marks.begin(), marks.end());
        out.insert(out.end(), {oneDate, clearMarks, selected});
        return out;
    }
    // Steps a statement to its end, touching every field; returns the rows.
    int run(sqlite3_stmt* stmt) {
        int rows = 0, rc;
        const int columns = sqlite3_column_count(stmt);
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
            for (int i = 0; i < columns; ++i) {
                if (sqlite3_column_type(stmt, i) == SQLITE_INTEGER) {
                    const sqlite3_int64 v = sqlite3_column_int64(stmt, i);
                    benchmark::DoNotOptimize(v);
                } else {
                    const unsigned char* text = sqlite3_column_text(stmt, i);
                    benchmark::DoNotOptimize(text);
                }
            }
            ++rows;
        }
        sqlite3_reset(stmt);
        return ok(db, rc, "step") ? rows : -1;
    }
};
Raw raw;

// Reads every field of every row through the access layer; returns the rows.
int readAll(const QString& sql) {
    tarvel::tarveldatabase db;
    tarvel::RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs || rs->State() != tarvel::adStateOpen) return -1;
    int rows = 0;
    for (; !rs->Eof(); rs->MoveNext(), ++rows)
        for (int i = 0; i < rs->FieldCount(); ++i) benchmark::DoNotOptimize(rs->value(i));
    return rows;
}

// ---------------------------------------------------------------------------
// 1. One date

void oneDateSchedule(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) rows = readAll(tarvel::todayTasksQuery(kOneDate));
    if (rows < 0) state.SkipWithError("the query failed");
    state.counters["rows"] = rows;
}

void oneDateRaw(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) rows = raw.run(raw.oneDate);
    if (rows < 0) state.SkipWithError("the query failed");
    state.counters["rows"] = rows;
}

// ---------------------------------------------------------------------------
// 2. Each day of a month

void monthSchedule(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) {
        rows = 0;
        for (int i = 0; i < kMonthDays; ++i)
            rows += readAll(tarvel::todayTasksQuery(kMonthStart.addDays(i)));
    }
    state.counters["rows"] = rows;
}

void monthRaw(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) {
        rows = 0;
        for (sqlite3_stmt* day : raw.monthDays) rows += raw.run(day);
    }
    state.counters["rows"] = rows;
}

// ---------------------------------------------------------------------------
// 3. Statistics selection 7 over 30 days

void selectionSchedule(benchmark::State& state) {
    Silent silent;
    tarvel::ScheduleStatistics page(silent);
    page.setDay1(kMonthStart);
    page.setDay2(kMonthStart.addDays(kMonthDays - 1));
    int rows = 0;
    for (auto _ : state) {
        tarvel::ScheduleStatistics::Choice choice;
        if (!page.select(7, &choice)) {
            state.SkipWithError(qPrintable(page.ErrMsg()));
            break;
        }
        rows = readAll(selectionListSql(choice.filter));
    }
    state.counters["rows"] = rows;
}

void selectionRaw(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) {
        bool good = ok(raw.db, sqlite3_exec(raw.db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN") &&
                    raw.run(raw.clearMarks) >= 0;
        for (sqlite3_stmt* mark : raw.marks) good = good && raw.run(mark) >= 0;
        good =
            good && ok(raw.db, sqlite3_exec(raw.db, "COMMIT", nullptr, nullptr, nullptr), "COMMIT");
        rows = raw.run(raw.selected);
        if (!good || rows < 0) {
            state.SkipWithError(sqlite3_errmsg(raw.db));
            break;
        }
    }
    state.counters["rows"] = rows;
}

// The access layer gives each file a 16 MiB page cache; the raw side gets the
// same, so both decrypt the same pages.
bool matchPageCache() {
    return ok(raw.db, sqlite3_exec(raw.db, "PRAGMA cache_size=-16384", nullptr, nullptr, nullptr),
              "page cache");
}

// ---------------------------------------------------------------------------
// Console output, then the ratio of each pair

struct Aim {
    const char* name;
    double ratio;
};
constexpr Aim kAims[] = {{"one_date", 1.5}, {"month", 1.5}, {"selection7", 1.5}};

class RatioSummary : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                seconds_[run.run_name.function_name] =
                    run.real_accumulated_time / double(run.iterations);
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\nschedule/raw per iteration, wall clock:\n");
        for (const Aim& aim : kAims) {
            const std::string name = aim.name;
            if (!seconds_.count(name + "/schedule") || !seconds_.count(name + "/raw")) continue;
            const double mine = seconds_[name + "/schedule"], theirs = seconds_[name + "/raw"];
            std::printf("  %-11s %10.3f ms / %10.3f ms = %5.2fx  aim <= %.1fx  %s\n", aim.name,
                        mine * 1e3, theirs * 1e3, mine / theirs, aim.ratio,
                        mine / theirs <= aim.ratio ? "met" : "MISSED");
        }
        if (seconds_.count("selection7/schedule"))
            std::printf("  selection 7 over 30 days: %.0f ms  aim < 1000 ms  %s\n",
                        seconds_["selection7/schedule"] * 1e3,
                        seconds_["selection7/schedule"] < 1.0 ? "met" : "MISSED");
        std::fflush(stdout);
    }

private:
    std::map<std::string, double> seconds_;
};

}  // namespace

int main(int argc, char** argv) {
    bool ownFormat = false;
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "--benchmark_format", 18) == 0) ownFormat = true;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.tvg"));
    QString error;
    if (!dir.isValid() || !tarvel::datafile::create(path, &error)) {
        std::fprintf(stderr, "cannot build the data file: %s\n", qPrintable(error));
        return 1;
    }
    raw.db = openRaw(path);
    Silent silent;
    const QString filter = tarvel::ScheduleStatistics(silent).filter(7);
    if (!raw.db || !fill(raw.db) || !raw.prepareAll(filter)) return 1;
    tarvel::setGlobalConnectionString(tarvel::connectionStringFor(path));
    // Open the access layer's cached handle (key derivation) before timing.
    if (readAll(QStringLiteral("SELECT COUNT(*) FROM tasks")) != 1) {
        std::fprintf(stderr, "the access layer cannot read the data file\n");
        return 1;
    }
    if (!matchPageCache()) return 1;

    const std::pair<const char*, void (*)(benchmark::State&)> cases[] = {
        {"one_date/schedule", oneDateSchedule},     {"one_date/raw", oneDateRaw},
        {"month/schedule", monthSchedule},          {"month/raw", monthRaw},
        {"selection7/schedule", selectionSchedule}, {"selection7/raw", selectionRaw}};
    for (const auto& [name, fn] : cases)
        benchmark::RegisterBenchmark(name, fn)->Unit(benchmark::kMillisecond)->UseRealTime();

    if (ownFormat) {
        benchmark::RunSpecifiedBenchmarks();
    } else {
        RatioSummary summary;
        benchmark::RunSpecifiedBenchmarks(&summary);
    }

    tarvel::closeAllHandles();
    for (sqlite3_stmt* s : raw.all()) sqlite3_finalize(s);
    sqlite3_close(raw.db);
    benchmark::Shutdown();
    return 0;
}
