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
//   month_view  the month view's reading of June 2025 (42 days from Sunday
//               1 June): the program's one query for the span with the days
//               each row occurs on sorted out in memory (ScheduleCalendar),
//               against the raw engine running that query, every field read.
//   month_paint the schedule page from the click on "next" to the painted
//               month (no raw side; the summary holds it to its budget).
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

#include <QApplication>
#include <QDate>
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/rawengine.h"
#include "schedule/calendar.h"
#include "schedule/recurrence.h"
#include "schedule/reminders.h"
#include "schedule/statistics.h"
#include "store/dialect.h"
#include "store/tarveldatabase.h"
#include "views/schedule/formschall.h"

namespace {

using namespace tarvel::bench;

constexpr int kContacts = 2000;
constexpr int kTasks = 50000;
constexpr int kRecurringPercent = 10;
constexpr int kLinkedPercent = 60;
const QDate kOneDate(2025, 6, 18);
const QDate kMonthStart(2025, 6, 1);
constexpr int kMonthDays = 30;

// ---------------------------------------------------------------------------
// The raw engine

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

// The raw side's own WEEKDAY, DAY and MONTH.
void registerDateParts(sqlite3* db) {
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db, "weekday", 1, flags, nullptr, rawDatePart<0>, nullptr, nullptr);
    sqlite3_create_function(db, "day", 1, flags, nullptr, rawDatePart<1>, nullptr, nullptr);
    sqlite3_create_function(db, "month", 1, flags, nullptr, rawDatePart<2>, nullptr, nullptr);
}

std::string dateText(const QDate& d) {
    return d.toString(QStringLiteral("yyyy-MM-dd 00:00:00")).toStdString();
}

bool fill(sqlite3* db) {
    std::mt19937 rng(20250618);
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    bool good = check(db, sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN");
    sqlite3_stmt* contact = prepare(
        db, QStringLiteral("INSERT INTO contacts (con_lastname, con_birthday) VALUES (?, ?)"));
    for (int i = 1; good && i <= kContacts; ++i) {
        bindText(contact, 1, "联系人" + std::to_string(i));
        bindText(contact, 2, dateText(QDate(1960, 1, 1).addDays(pick(15000))));
        good = check(db, sqlite3_step(contact), "contact");
        sqlite3_reset(contact);
    }
    sqlite3_stmt* task = prepare(
        db, QStringLiteral("INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle, "
                           "tas_closedate, tas_remind, tas_again, tas_closed, tas_outlay, "
                           "tas_create_date, tas_recent_contact_date) VALUES (?,?,?,?,?,?,?,?,?,"
                           "'2024-01-01 00:00:00','2025-01-01 10:00:00')"));
    sqlite3_stmt* link =
        prepare(db, QStringLiteral("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (?,?)"));
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
        good = check(db, sqlite3_step(task), "task");
        sqlite3_reset(task);
        if (good && pick(100) < kLinkedPercent) {
            sqlite3_bind_int(link, 1, 1 + pick(kContacts));
            sqlite3_bind_int64(link, 2, sqlite3_last_insert_rowid(db));
            good = check(db, sqlite3_step(link), "link");
            sqlite3_reset(link);
        }
    }
    for (sqlite3_stmt* s : {contact, task, link}) sqlite3_finalize(s);
    return check(db, sqlite3_exec(db, good ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr),
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
    sqlite3_stmt* monthView = nullptr;

    bool prepareAll(const QString& filter) {
        monthView = prepare(db, engineSql(tarvel::ScheduleCalendar::spanQuery(
                                    tarvel::monthViewStart(kMonthStart),
                                    tarvel::monthViewStart(kMonthStart).addDays(41), QString())));
        oneDate = prepare(db, engineSql(tarvel::todayTasksQuery(kOneDate)));
        for (int i = 0; i < kMonthDays; ++i) {
            const QDate d = kMonthStart.addDays(i);
            monthDays.push_back(prepare(db, engineSql(tarvel::todayTasksQuery(d))));
            marks.push_back(
                prepare(db, engineSql(QStringLiteral("UPDATE tasks SET tas_check=true") +
                                      tarvel::statisticsTaskDateCondition(d))));
        }
        clearMarks = prepare(db, engineSql(QStringLiteral("UPDATE tasks SET tas_check=0")));
        selected = prepare(db, engineSql(selectionListSql(filter)));
        for (sqlite3_stmt* s : all())
            if (!s) return false;
        return true;
    }
    std::vector<sqlite3_stmt*> all() const {
        std::vector<sqlite3_stmt*> out = monthDays;
        out.insert(out.end(), marks.begin(), marks.end());
        out.insert(out.end(), {oneDate, clearMarks, selected, monthView});
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
        return check(db, rc, "step") ? rows : -1;
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
        bool good =
            check(raw.db, sqlite3_exec(raw.db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN") &&
            raw.run(raw.clearMarks) >= 0;
        for (sqlite3_stmt* mark : raw.marks) good = good && raw.run(mark) >= 0;
        good = good &&
               check(raw.db, sqlite3_exec(raw.db, "COMMIT", nullptr, nullptr, nullptr), "COMMIT");
        rows = raw.run(raw.selected);
        if (!good || rows < 0) {
            state.SkipWithError(sqlite3_errmsg(raw.db));
            break;
        }
    }
    state.counters["rows"] = rows;
}

// ---------------------------------------------------------------------------
// 4. The month view

void monthViewSchedule(benchmark::State& state) {
    const QDate first = tarvel::monthViewStart(kMonthStart);
    int entries = 0;
    for (auto _ : state) {
        tarvel::ScheduleCalendar calendar;
        if (!calendar.load(first, first.addDays(41))) {
            state.SkipWithError(qPrintable(calendar.ErrMsg()));
            break;
        }
        entries = 0;
        for (int i = 0; i < 42; ++i) entries += int(calendar.entriesOn(first.addDays(i)).size());
    }
    state.counters["entries"] = entries;
}

void monthViewRaw(benchmark::State& state) {
    int rows = 0;
    for (auto _ : state) rows = raw.run(raw.monthView);
    if (rows < 0) state.SkipWithError("the query failed");
    state.counters["rows"] = rows;
}

// From the click to the painted page, stepping between June and July 2025.
void monthPaintSchedule(benchmark::State& state) {
    tarvel::FormSchAll page;
    tarvel::PageRequest request;
    request.page = tarvel::page::Schedule;
    request.date = kMonthStart;
    request.pageNo = tarvel::FormSchAll::Month;
    page.fill(request);
    page.resize(1280, 760);
    page.show();
    auto* next = page.findChild<QPushButton*>(QStringLiteral("cmd_next"));
    auto* prev = page.findChild<QPushButton*>(QStringLiteral("cmd_prev"));
    bool forward = true;
    for (auto _ : state) {
        (forward ? next : prev)->click();
        forward = !forward;
        QPixmap painted = page.grab();
        benchmark::DoNotOptimize(painted);
    }
}

// ---------------------------------------------------------------------------
// The run

// Opens the raw side on the new data file, fills it and prepares its statements.
bool fillDataFile(const QString& path) {
    raw.db = openRaw(path);
    if (!raw.db) return false;
    registerDateParts(raw.db);
    Silent silent;
    const QString filter = tarvel::ScheduleStatistics(silent).filter(7);
    return fill(raw.db) && raw.prepareAll(filter);
}

bool warmUp() {
    if (readAll(QStringLiteral("SELECT COUNT(*) FROM tasks")) != 1) {
        std::fprintf(stderr, "the access layer cannot read the data file\n");
        return false;
    }
    return true;
}

void release() {
    closeRaw(raw.db, raw.all());
}

}  // namespace

int main(int argc, char** argv) {
    // The month_paint case paints off screen, wherever it runs.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return tarvel::bench::run(
        argc, argv, {fillDataFile, warmUp, release},
        {{"one_date/schedule", oneDateSchedule, benchmark::kMillisecond},
         {"one_date/raw", oneDateRaw, benchmark::kMillisecond},
         {"month/schedule", monthSchedule, benchmark::kMillisecond},
         {"month/raw", monthRaw, benchmark::kMillisecond},
         {"selection7/schedule", selectionSchedule, benchmark::kMillisecond},
         {"selection7/raw", selectionRaw, benchmark::kMillisecond},
         {"month_view/schedule", monthViewSchedule, benchmark::kMillisecond},
         {"month_view/raw", monthViewRaw, benchmark::kMillisecond},
         {"month_paint/schedule", monthPaintSchedule, benchmark::kMillisecond}},
        {"schedule",
         Layout::MillisecondsWallClock,
         {{"one_date", 1.5}, {"month", 1.5}, {"selection7", 1.5}, {"month_view", 1.5}},
         {{"selection7/schedule", "selection 7 over 30 days", 1.0},
          {"month_paint/schedule", "month view, click to paint", 0.1}}});
}
