#pragma once

// What the benchmarks share: the raw SQLCipher side they measure the program
// against, and the plumbing around a run (the data file in a temporary folder,
// the access layer's warm-up, the console output with its ratio summary).

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QString>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarvel::bench {

// ---------------------------------------------------------------------------
// The raw engine

// True for a result code that is not an error; otherwise prints `what` with the
// engine's message.
bool check(sqlite3* db, int rc, const char* what);

// A prepared statement, or null after printing why not.
sqlite3_stmt* prepare(sqlite3* db, const char* sql);
sqlite3_stmt* prepare(sqlite3* db, const QString& sql);

void bindText(sqlite3_stmt* stmt, int index, const std::string& text);

// Opens an existing data file as the access layer opens it: read-write without
// the engine's per-call locking, keyed with the program's password, the same
// busy timeout and the same page cache size. Null after printing why not.
sqlite3* openRaw(const QString& path);

// Finalises `statements` and closes `db`.
void closeRaw(sqlite3* db, const std::vector<sqlite3_stmt*>& statements);

// The current local time as the canonical text the engine stores.
std::string nowText();

// The raw side of linking an imported contact to its account by name, as the
// imports do: a missing account is added (with `addAccount`: name, creation
// date) and remembered, then one link row (with `link`: account, contact).
bool linkToAccount(sqlite3* db, sqlite3_stmt* addAccount, sqlite3_stmt* link,
                   std::unordered_map<std::string, sqlite3_int64>& byName, const std::string& name,
                   sqlite3_int64 contact, const std::string& now);

// ---------------------------------------------------------------------------
// A run

// A benchmark, named "<case>/<side>" or "<case>/raw", timed on the wall clock.
struct Case {
    const char* name;
    void (*run)(benchmark::State&);
    benchmark::TimeUnit unit;
};

// The ratio the program's side of a case aims at against the raw side.
struct Aim {
    const char* name;  // the case
    double ratio;
};

// A wall-clock time one run of the program's side aims to stay under.
struct Budget {
    const char* run;    // the benchmark's full name
    const char* label;  // what the summary calls it
    double seconds;
};

// How a summary line reads.
enum class Layout {
    MicrosecondsWithCpu,    // "name  12.345 us / 6.789 us = 1.82x  (cpu 1.80x)  aim <= ..."
    MillisecondsWallClock,  // "name  12.345 ms / 6.789 ms = 1.82x  aim <= ..."
};

// The summary printed after a console run: per case the program's side against
// the raw side, each the mean time per iteration over its runs.
struct Summary {
    const char* side;  // "access", "records", ...
    Layout layout;
    std::vector<Aim> aims;
    std::vector<Budget> budgets;
};

// The steps of one benchmark program around the shared plumbing.
struct Steps {
    // Opens the raw side on the new, empty data file at `path`, fills it and
    // prepares the raw statements.
    std::function<bool(const QString& path)> fill;
    // Runs once through the program's side, after the global connection string
    // points at the data file: the first open (key derivation) stays out of the
    // timing, and the check that the program reads what the raw side wrote.
    std::function<bool()> warmUp;
    // Finalises the raw statements and closes the raw side.
    std::function<void()> release;
};

// The whole of a benchmark program's main(): reads the flags, builds a data
// file in a temporary folder, runs `steps`, registers `cases` and runs them; a
// console run ends with `summary`. Returns the process's exit code.
int run(int argc, char** argv, const Steps& steps, const std::vector<Case>& cases,
        const Summary& summary);

}  // namespace tarvel::bench
