// The contacts list over 20,000 contacts against the raw SQLCipher C API
// doing the same work on the same data file.
//
// Pairs named "<case>/list" and "<case>/raw":
//   open         pressing 联系人: the list screen built and filled until its
//                grid can paint (the panel counts come after the first
//                paint); raw: the list's own statement stepped through,
//                every column of every row read.
//   tick_export  ticking all 20,000 (chk_select) and exporting them to CSV;
//                raw: the tick update, the ticked rows read and written as
//                quoted CSV lines to a file.
// Divide the list time by the raw time of the same case; the summary after a
// console run prints that ratio beside its aim.

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

#include "bench/listbench.h"
#include "browse/tickmodel.h"
#include "custom/fsettings.h"
#include "views/lists/formlist.h"

namespace {

using namespace tarvel::bench;
using tarvel::lists::FormList;
using tarvel::lists::listKind;
namespace listno = tarvel::lists::listno;

constexpr int kContacts = 20000;
sqlite3* rawDb = nullptr;
QTemporaryDir* outDir = nullptr;

void openList(benchmark::State& state) {
    for (auto _ : state) {
        FormList form(listKind(listno::Contacts));
        tarvel::PageRequest request;
        request.page = listKind(listno::Contacts).page;
        form.fill(request);
        if (form.gridModel()->rowCount() != kContacts) {
            state.SkipWithError("the list does not show every contact");
            break;
        }
    }
}

void openByRaw(benchmark::State& state) {
    const QString sql = contactListStatement(QString());
    for (auto _ : state)
        if (readAll(rawDb, sql) != kContacts) {
            state.SkipWithError("raw read short");
            break;
        }
}

void tickExportList(benchmark::State& state) {
    FormList form(listKind(listno::Contacts));
    const QString path = outDir->filePath(QStringLiteral("list.csv"));
    form.setFileDialogs(std::make_shared<FixedSaveFile>(path));
    tarvel::PageRequest request;
    form.fill(request);
    auto* all = form.findChild<QCheckBox*>(QStringLiteral("chk_select"));
    for (auto _ : state) {
        all->setChecked(false);
        all->click();
        form.runOperation(QStringLiteral("导出到Excel/CSV表"));
        state.PauseTiming();
        sqlite3_exec(rawDb, "UPDATE contacts SET con_check=0", nullptr, nullptr, nullptr);
        state.ResumeTiming();
    }
    if (QFile(path).size() < kContacts * 40) state.SkipWithError("the CSV is short");
}

void tickExportRaw(benchmark::State& state) {
    const auto& kind = listKind(listno::Contacts);
    const QString select =
        tarvel::lists::tickedQuery(kind, tarvel::lists::ListStore(kind).columns())
            .replace(QStringLiteral("=true"), QStringLiteral("=-1"));
    const std::string path = outDir->filePath(QStringLiteral("raw.csv")).toStdString();
    for (auto _ : state) {
        sqlite3_exec(rawDb, "UPDATE contacts SET con_check= -1", nullptr, nullptr, nullptr);
        sqlite3_stmt* stmt = prepare(rawDb, select);
        FILE* out = std::fopen(path.c_str(), "wb");
        const int columns = sqlite3_column_count(stmt);
        std::string line;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            line.clear();
            for (int c = 1; c < columns; ++c) {
                const char* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c));
                line += '"';
                for (const char* p = text ? text : ""; *p; ++p) {
                    if (*p == '"') line += '"';
                    line += *p;
                }
                line += c + 1 < columns ? "\"," : "\"\r\n";
            }
            std::fputs(line.c_str(), out);
        }
        std::fclose(out);
        sqlite3_finalize(stmt);
        state.PauseTiming();
        sqlite3_exec(rawDb, "UPDATE contacts SET con_check=0", nullptr, nullptr, nullptr);
        state.ResumeTiming();
    }
}

bool fillDataFile(const QString& path) {
    return openAndFill(path, kContacts, &rawDb);
}

bool warmUp() {
    tarvel::loadProgramFieldSettings();
    const int rows = readAll(rawDb, contactListStatement(QString()));
    if (rows == kContacts) return true;
    std::fprintf(stderr, "the list statement reads %d rows\n", rows);
    return false;
}

void release() {
    closeRaw(rawDb, {});
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    outDir = &dir;
    return tarvel::bench::run(
        argc, argv, {fillDataFile, warmUp, release},
        {{"open/list", openList, benchmark::kMillisecond},
         {"open/raw", openByRaw, benchmark::kMillisecond},
         {"tick_export/list", tickExportList, benchmark::kMillisecond},
         {"tick_export/raw", tickExportRaw, benchmark::kMillisecond}},
        {"list",
         Layout::MillisecondsWallClock,
         {{"open", 1.5}, {"tick_export", 3.0}},
         {{"open/list", "open 20,000", 0.150}, {"tick_export/list", "tick all + CSV", 1.0}}});
}
