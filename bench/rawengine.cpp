#include "bench/rawengine.h"

#include <unistd.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <map>

#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "tools/datafile.h"

namespace tarvel::bench {

// ---------------------------------------------------------------------------
// The raw engine

bool check(sqlite3* db, int rc, const char* what) {
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW) return true;
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    return false;
}

sqlite3_stmt* prepare(sqlite3* db, const char* sql) {
    sqlite3_stmt* stmt = nullptr;
    if (!check(db, sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr), sql)) return nullptr;
    return stmt;
}

sqlite3_stmt* prepare(sqlite3* db, const QString& sql) {
    return prepare(db, sql.toUtf8().constData());
}

void bindText(sqlite3_stmt* stmt, int index, const std::string& text) {
    sqlite3_bind_text(stmt, index, text.data(), int(text.size()), SQLITE_TRANSIENT);
}

namespace {

// The raw handles open now, with their files: their page caches are sized again
// once the files are filled, to what the access layer gives the filled file.
std::vector<std::pair<sqlite3*, QString>>& openHandles() {
    static std::vector<std::pair<sqlite3*, QString>> handles;
    return handles;
}

bool sizePageCache(sqlite3* db, const QString& path) {
    const std::string cache =
        "PRAGMA cache_size=-" + std::to_string(tarvel::pageCacheKiB(QFileInfo(path).size()));
    return check(db, sqlite3_exec(db, cache.c_str(), nullptr, nullptr, nullptr), "page cache");
}

}  // namespace

sqlite3* openRaw(const QString& path) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(path));
        sqlite3_close(db);
        return nullptr;
    }
    const char* key = tarvel::schema::kDatabasePassword;
    sqlite3_key(db, key, int(std::strlen(key)));
    // The rest as the access layer does it: the key checked on a first read, the
    // same busy timeout, and the same page cache for the file's size, so both
    // sides decrypt the same pages.
    if (!check(db,
               sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr),
               "key")) {
        sqlite3_close(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, 2000);
    if (!sizePageCache(db, path)) {
        sqlite3_close(db);
        return nullptr;
    }
    openHandles().emplace_back(db, path);
    return db;
}

void closeRaw(sqlite3* db, const std::vector<sqlite3_stmt*>& statements) {
    for (sqlite3_stmt* stmt : statements) sqlite3_finalize(stmt);
    auto& handles = openHandles();
    handles.erase(std::remove_if(handles.begin(), handles.end(),
                                 [db](const auto& h) { return h.first == db; }),
                  handles.end());
    sqlite3_close(db);
}

bool linkToAccount(sqlite3* db, sqlite3_stmt* addAccount, sqlite3_stmt* link,
                   std::unordered_map<std::string, sqlite3_int64>& byName, const std::string& name,
                   sqlite3_int64 contact, const std::string& now) {
    bool ok = true;
    sqlite3_int64& account = byName[name];
    if (!account) {
        bindText(addAccount, 1, name);
        bindText(addAccount, 2, now);
        ok = sqlite3_step(addAccount) == SQLITE_DONE;
        sqlite3_reset(addAccount);
        account = sqlite3_last_insert_rowid(db);
    }
    sqlite3_bind_int64(link, 1, account);
    sqlite3_bind_int64(link, 2, contact);
    ok = ok && sqlite3_step(link) == SQLITE_DONE;
    sqlite3_reset(link);
    return ok;
}

std::string nowText() {
    const std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
    return buffer;
}

// ---------------------------------------------------------------------------
// A run

namespace {

// Console output, then the summary.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    SummaryReporter(OutputOptions options, const Summary& summary)
        : ConsoleReporter(options), summary_(summary) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            // Each repetition counts; with aggregates only, the mean stands for them.
            const bool mean = run.run_type == Run::RT_Aggregate && run.aggregate_name == "mean";
            if ((run.run_type != Run::RT_Iteration && !mean) || run.error_occurred) continue;
            Sample& s = (mean ? means_ : samples_)[run.run_name.function_name];
            s.real += run.real_accumulated_time / double(run.iterations);
            s.cpu += run.cpu_accumulated_time / double(run.iterations);
            ++s.count;
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        const bool withCpu = summary_.layout == Layout::MicrosecondsWithCpu;
        std::printf(withCpu ? "\n%s/raw per iteration (wall clock; cpu in brackets):\n"
                            : "\n%s/raw per iteration, wall clock:\n",
                    summary_.side);
        if (samples_.empty()) samples_ = means_;
        for (const Aim& aim : summary_.aims) {
            const auto a = samples_.find(std::string(aim.name) + "/" + summary_.side);
            const auto r = samples_.find(std::string(aim.name) + "/raw");
            if (a == samples_.end() || r == samples_.end()) continue;
            const double ratio = a->second.meanReal() / r->second.meanReal();
            const char* verdict = ratio <= aim.ratio ? "met" : "MISSED";
            if (withCpu) {
                std::printf(
                    "  %-13s %10.3f us / %10.3f us = %6.2fx  (cpu %6.2fx)  aim <= %.1fx  %s\n",
                    aim.name, a->second.meanReal() * 1e6, r->second.meanReal() * 1e6, ratio,
                    a->second.meanCpu() / r->second.meanCpu(), aim.ratio, verdict);
            } else {
                std::printf("  %-11s %10.3f ms / %10.3f ms = %5.2fx  aim <= %.1fx  %s\n", aim.name,
                            a->second.meanReal() * 1e3, r->second.meanReal() * 1e3, ratio,
                            aim.ratio, verdict);
            }
        }
        for (const Budget& budget : summary_.budgets) {
            const auto it = samples_.find(budget.run);
            if (it == samples_.end()) continue;
            const double seconds = it->second.meanReal();
            std::printf("  %s: %.0f ms  aim < %.0f ms  %s\n", budget.label, seconds * 1e3,
                        budget.seconds * 1e3, seconds < budget.seconds ? "met" : "MISSED");
        }
        std::fflush(stdout);
    }

private:
    struct Sample {
        double real = 0, cpu = 0;
        int count = 0;
        double meanReal() const { return real / count; }
        double meanCpu() const { return cpu / count; }
    };
    const Summary& summary_;
    std::map<std::string, Sample> samples_;
    std::map<std::string, Sample> means_;
};

// The console reporter's options from the command line, read before
// benchmark::Initialize consumes the flags: colour as --benchmark_color says
// (default: when stdout is a terminal), counters as columns with
// --benchmark_counters_tabular=true. Sets `otherFormat` for a non-console format.
benchmark::ConsoleReporter::OutputOptions consoleOptions(int argc, char** argv, bool& otherFormat) {
    auto value = [](const char* arg, const char* flag) -> const char* {
        const size_t n = std::strlen(flag);
        return std::strncmp(arg, flag, n) == 0 && arg[n] == '=' ? arg + n + 1 : nullptr;
    };
    auto yes = [](const char* v) {
        return std::strcmp(v, "true") == 0 || std::strcmp(v, "yes") == 0 ||
               std::strcmp(v, "1") == 0 || std::strcmp(v, "always") == 0;
    };
    bool color = isatty(STDOUT_FILENO) != 0;
    bool tabular = false;
    otherFormat = false;
    for (int i = 1; i < argc; ++i) {
        if (const char* v = value(argv[i], "--benchmark_format"))
            otherFormat = std::strcmp(v, "console") != 0;
        if (const char* v = value(argv[i], "--benchmark_color"))
            color = std::strcmp(v, "auto") == 0 ? color : yes(v);
        if (const char* v = value(argv[i], "--benchmark_counters_tabular")) tabular = yes(v);
    }
    int options = benchmark::ConsoleReporter::OO_None;
    if (color) options |= benchmark::ConsoleReporter::OO_Color;
    if (tabular) options |= benchmark::ConsoleReporter::OO_Tabular;
    return benchmark::ConsoleReporter::OutputOptions(options);
}

// Builds the data file, fills it and warms the program's side up.
bool setUp(const QTemporaryDir& dir, const Steps& steps) {
    if (!dir.isValid()) {
        std::fprintf(stderr, "cannot create a temporary folder\n");
        return false;
    }
    const QString path = dir.filePath(QStringLiteral("bench.tvg"));
    QString error;
    if (!tarvel::datafile::create(path, &error)) {
        std::fprintf(stderr, "cannot build the data file: %s\n", qPrintable(error));
        return false;
    }
    if (!steps.fill(path)) return false;
    for (const auto& [db, file] : openHandles())
        if (!sizePageCache(db, file)) return false;
    tarvel::setGlobalConnectionString(tarvel::connectionStringFor(path));
    return steps.warmUp();
}

}  // namespace

int run(int argc, char** argv, const Steps& steps, const std::vector<Case>& cases,
        const Summary& summary) {
    bool otherFormat = false;
    const auto options = consoleOptions(argc, argv, otherFormat);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    QTemporaryDir dir;
    const bool ready = setUp(dir, steps);
    if (ready) {
        for (const Case& c : cases)
            benchmark::RegisterBenchmark(c.name, c.run)->Unit(c.unit)->UseRealTime();
        if (otherFormat) {
            benchmark::RunSpecifiedBenchmarks();
        } else {
            SummaryReporter reporter(options, summary);
            benchmark::RunSpecifiedBenchmarks(&reporter);
        }
    }

    tarvel::closeAllHandles();
    steps.release();
    benchmark::Shutdown();
    return ready ? 0 : 1;
}

}  // namespace tarvel::bench
