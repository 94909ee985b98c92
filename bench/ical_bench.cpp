// iCalendar import and export and the agenda against the raw SQLCipher C API
// doing the same reading and writing of rows on the same data file.
//
// Benchmarks come in pairs named "<case>/exchange" and "<case>/raw":
//   ics_import  importICalendarFile of 2,000 events, 200 of them recurring
//               series (weekly with exceptions, Monday to Friday, every
//               second week, the first Friday, open-ended dailies): parsing,
//               expansion, the session's journal, one transaction. The raw
//               side inserts as many task rows as the import stored, with a
//               prepared statement in one transaction. Each run is taken back
//               (untimed) so the next one adds again.
//   ics_export  exportTasksToICalendar of 50,000 tasks; the raw side reads
//               every column of the same rows.
//   agenda      agendaLines over a year of 50,000 tasks; the raw side runs the
//               span's query in engine SQL and reads its rows.
// After a console run the summary prints each pair's wall-clock ratio and
// whether one run stays under its budget (import 1 s, export 2 s, agenda 1 s).

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

#include "bench/rawengine.h"
#include "exchange/icalexport.h"
#include "exchange/icalimport.h"
#include "exchange/importsession.h"
#include "schedule/agenda.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/schema.h"

namespace {

using namespace tarvel::bench;

constexpr int kTasks = 50000;
constexpr int kEvents = 2000;

QString folder;
QString dataFile;
int importedRows = 0;  // task rows one import stores

QString target(const char* name) {
    return QDir(folder).filePath(QLatin1String(name));
}

bool exec(sqlite3* db, const char* sql) {
    return check(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr), sql);
}

// 50,000 tasks over 2026, one in ten recurring weekly for a quarter.
bool fill(sqlite3* db) {
    return exec(db, "BEGIN") &&
           exec(db,
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<50000) "
                "INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
                "tas_remind, tas_closed, tas_tag, tas_description) SELECT '拜访客户' || i, "
                "date('2026-01-01', '+' || (i % 365) || ' days') || ' 00:00:00', "
                "'1899-12-30 ' || printf('%02d', 8 + i % 10) || ':30:00', "
                "CASE WHEN i % 10 = 0 THEN 7 ELSE 0 END, "
                "date('2026-01-01', '+' || (i % 365 + CASE WHEN i % 10 = 0 THEN 90 ELSE 0 END) "
                "|| ' days') || ' 00:00:00', i % 2, 0, '客户', '带上合同' FROM n") &&
           exec(db, "COMMIT");
}

QByteArray eventsFile() {
    QByteArray out = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//bench//bench//EN\r\n";
    static const char* const rules[] = {
        "RRULE:FREQ=WEEKLY;COUNT=30\r\nEXDATE:20260316T090000\r\n",
        "RRULE:FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR\r\n",
        "RRULE:FREQ=WEEKLY;INTERVAL=2;UNTIL=20271231T000000\r\n",
        "RRULE:FREQ=MONTHLY;BYDAY=1FR;COUNT=24\r\n",
        "RRULE:FREQ=DAILY\r\n",
    };
    for (int i = 0; i < kEvents; ++i) {
        const QDate day = QDate(2026, 1, 5).addDays(i % 365);
        out += "BEGIN:VEVENT\r\nUID:bench-" + QByteArray::number(i) + "@bench\r\nSUMMARY:会议" +
               QByteArray::number(i) + "\r\nDTSTART;TZID=Asia/Shanghai:" +
               day.toString(QStringLiteral("yyyyMMdd")).toLatin1() + "T090000\r\n" +
               "DESCRIPTION:议题\\n第二行\r\nCATEGORIES:工作\r\n";
        if (i % 10 == 0) out += rules[(i / 10) % 5];
        out += "END:VEVENT\r\n";
    }
    return out + "END:VCALENDAR\r\n";
}

void importExchange(benchmark::State& state) {
    for (auto _ : state) {
        const auto r = tarvel::exchange::importICalendarFile(target("events.ics"));
        state.PauseTiming();
        const bool undone = r.ok && tarvel::exchange::undoLastImport().ok;
        importedRows = r.tally.added;
        state.ResumeTiming();
        if (!r.ok || !undone) {
            state.SkipWithError(qPrintable(r.ErrMsg));
            break;
        }
    }
}

void importRaw(benchmark::State& state) {
    sqlite3* db = openRaw(dataFile);
    sqlite3_stmt* insert = prepare(
        db,
        "INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
        "tas_remind, tas_closed, tas_tag, tas_description, tas_create_date, "
        "tas_recent_contact_date) VALUES (?,?,'1899-12-30 09:00:00',7,?,0,0,'工作','议题',?,?)");
    const std::string now = nowText();
    for (auto _ : state) {
        bool ok = exec(db, "BEGIN");
        for (int i = 0; i < importedRows; ++i) {
            bindText(insert, 1, "会议" + std::to_string(i));
            bindText(insert, 2, "2026-03-02 00:00:00");
            bindText(insert, 3, "2026-06-01 00:00:00");
            bindText(insert, 4, now);
            bindText(insert, 5, now);
            ok = ok && sqlite3_step(insert) == SQLITE_DONE;
            sqlite3_reset(insert);
        }
        ok = ok && exec(db, "COMMIT");
        state.PauseTiming();
        ok = ok && exec(db, "DELETE FROM tasks WHERE tas_tag='工作'");
        state.ResumeTiming();
        if (!ok) {
            state.SkipWithError(sqlite3_errmsg(db));
            break;
        }
    }
    closeRaw(db, {insert});
}

void exportExchange(benchmark::State& state) {
    for (auto _ : state) {
        const auto e = tarvel::exchange::exportTasksToICalendar(target("all.ics"), false);
        if (!e.ok || e.exported != kTasks) {
            state.SkipWithError(qPrintable(e.ErrMsg));
            break;
        }
    }
}

// Reads every column of every row, as the export's reading does.
void readAll(benchmark::State& state, const char* sql, int expected) {
    sqlite3* db = openRaw(dataFile);
    sqlite3_stmt* select = prepare(db, sql);
    for (auto _ : state) {
        int rows = 0;
        while (sqlite3_step(select) == SQLITE_ROW) {
            for (int c = 0; c < sqlite3_column_count(select); ++c)
                benchmark::DoNotOptimize(sqlite3_column_text(select, c));
            ++rows;
        }
        sqlite3_reset(select);
        if (expected && rows != expected) {
            state.SkipWithError("raw read gave another number of rows");
            break;
        }
    }
    closeRaw(db, {select});
}

void exportRaw(benchmark::State& state) {
    readAll(state, "SELECT * FROM tasks ORDER BY tas_date, tas_time", kTasks);
}

void agendaExchange(benchmark::State& state) {
    for (auto _ : state) {
        QStringList lines;
        QString error;
        if (!tarvel::agendaLines(QDate(2026, 1, 1), QDate(2026, 12, 31), &lines, &error) ||
            lines.size() < kTasks) {
            state.SkipWithError(qPrintable(error));
            break;
        }
        benchmark::DoNotOptimize(lines);
    }
}

void agendaRaw(benchmark::State& state) {
    readAll(state,
            "SELECT tas_id, tas_date, tas_time, tas_subject, tas_closed, tas_remind, tas_cycle, "
            "tas_closedate, tas_outlay FROM tasks WHERE ((tas_date >= '2026-01-01 00:00:00' AND "
            "tas_date <= '2026-12-31 00:00:00') OR (tas_cycle IN (1, 7, 30, 365) AND tas_date <= "
            "'2026-12-31 00:00:00' AND tas_closedate >= '2026-01-01 00:00:00')) ORDER BY "
            "tas_time, tas_id",
            0);
}

bool fillDataFile(const QString& path) {
    folder = QFileInfo(path).path();
    dataFile = path;
    sqlite3* db = openRaw(path);
    const bool ok = db && fill(db);
    closeRaw(db, {});
    QFile f(target("events.ics"));
    const QByteArray ics = eventsFile();
    return ok && f.open(QIODevice::WriteOnly) && f.write(ics) == ics.size();
}

bool warmUp() {
    tarvel::Clock::setFixed(tarvel::jetdate::naive(QDate(2026, 1, 2), QTime(9, 0)));
    const auto r = tarvel::exchange::importICalendarFile(target("events.ics"));
    if (!r.ok || !tarvel::exchange::undoLastImport().ok) {
        std::fprintf(stderr, "the import failed: %s\n", qPrintable(r.ErrMsg));
        return false;
    }
    importedRows = r.tally.added;
    return true;
}

void release() {}

}  // namespace

int main(int argc, char** argv) {
    return tarvel::bench::run(argc, argv, {fillDataFile, warmUp, release},
                              {{"ics_import/exchange", importExchange, benchmark::kMillisecond},
                               {"ics_import/raw", importRaw, benchmark::kMillisecond},
                               {"ics_export/exchange", exportExchange, benchmark::kMillisecond},
                               {"ics_export/raw", exportRaw, benchmark::kMillisecond},
                               {"agenda/exchange", agendaExchange, benchmark::kMillisecond},
                               {"agenda/raw", agendaRaw, benchmark::kMillisecond}},
                              {"exchange",
                               Layout::MillisecondsWallClock,
                               {{"ics_import", 20.0}, {"ics_export", 20.0}, {"agenda", 10.0}},
                               {{"ics_import/exchange", "2,000 events, 200 series", 1.0},
                                {"ics_export/exchange", "50,000 tasks exported", 2.0},
                                {"agenda/exchange", "a year of 50,000 tasks", 1.0}}});
}
