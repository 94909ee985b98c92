// Search as you type in the contacts list over 100,000 contacts against the
// raw SQLCipher C API running the same search statement on the same file.
//
// Pairs named "<case>/list" and "<case>/raw":
//   keystroke   one more character typed: the search box's condition (the
//               LIKE tests over the 24 search columns) until the grid holds
//               the new rows; the texts cycle through "王", "王伟", "李", ...
//   every_row   a first character that matches every contact ("@", in every
//               e-mail address), so the grid takes all 100,000 rows.
// After the run the summary prints list/raw per case, the budgets, and the
// process's peak resident memory with the list open.

#include <QApplication>
#include <QFile>
#include <QLineEdit>
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

constexpr int kContacts = 100000;
sqlite3* rawDb = nullptr;
FormList* form = nullptr;
const QStringList kTexts = {QStringLiteral("王"),   QStringLiteral("王伟"),
                            QStringLiteral("李"),   QStringLiteral("李芳"),
                            QStringLiteral("北京"), QStringLiteral("user12")};

void searchList(benchmark::State& state, const QStringList& texts) {
    auto* box = form->findChild<QLineEdit*>(QStringLiteral("txt_search"));
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        box->clear();  // a different text each time, so the list cannot skip the query
        box->setText(texts[i++ % texts.size()]);
        state.ResumeTiming();
        form->searchNow();
        if (form->gridModel()->rowCount() == 0) {
            state.SkipWithError("no rows found");
            break;
        }
        state.PauseTiming();
        form->findChild<QLineEdit*>(QStringLiteral("txt_search"))->setText(QStringLiteral("-"));
        form->searchNow();
        state.ResumeTiming();
    }
}

void searchRaw(benchmark::State& state, const QStringList& texts) {
    int i = 0;
    for (auto _ : state)
        if (readAll(rawDb, contactListStatement(tarvel::lists::searchCondition(
                               listno::Contacts, texts[i++ % texts.size()]))) <= 0) {
            state.SkipWithError("no rows found");
            break;
        }
}

void keystrokeList(benchmark::State& state) {
    searchList(state, kTexts);
}
void keystrokeRaw(benchmark::State& state) {
    searchRaw(state, kTexts);
}
void everyRowList(benchmark::State& state) {
    searchList(state, {QStringLiteral("@")});
}
void everyRowRaw(benchmark::State& state) {
    searchRaw(state, {QStringLiteral("@")});
}

bool fillDataFile(const QString& path) {
    return openAndFill(path, kContacts, &rawDb);
}

bool warmUp() {
    tarvel::loadProgramFieldSettings();
    form = new FormList(listKind(listno::Contacts));
    tarvel::PageRequest request;
    form->fill(request);
    // What the list does once the grid has painted, before the user can type.
    QCoreApplication::processEvents();
    return form->gridModel()->rowCount() == kContacts;
}

void release() {
    delete form;
    closeRaw(rawDb, {});
}

// The process's peak resident memory in MB, from the kernel's VmHWM.
double peakMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024;
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int code = tarvel::bench::run(argc, argv, {fillDataFile, warmUp, release},
                                        {{"keystroke/list", keystrokeList, benchmark::kMillisecond},
                                         {"keystroke/raw", keystrokeRaw, benchmark::kMillisecond},
                                         {"every_row/list", everyRowList, benchmark::kMillisecond},
                                         {"every_row/raw", everyRowRaw, benchmark::kMillisecond}},
                                        {"list",
                                         Layout::MillisecondsWallClock,
                                         {{"keystroke", 1.5}, {"every_row", 1.5}},
                                         {{"keystroke/list", "keystroke 100,000", 0.050},
                                          {"every_row/list", "first character, all rows", 0.150}}});
    std::printf("peak resident memory with the list open: %.0f MB (aim <= 250 MB)\n",
                peakMegabytes());
    return code;
}
