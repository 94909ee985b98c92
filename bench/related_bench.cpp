// The queries of a contact's related panel against the raw SQLCipher C API
// running the same statements on the same data file.
//
// Benchmarks come in pairs named "<case>/panel" and "<case>/raw":
//   open_panel  Opening form_con_related on a contact with 200 links of each
//               kind: the SetQuery of each grid (related contacts in either
//               link direction, opportunities, tasks with their digest,
//               documents) and the four link counts of the tab captions.
//               The raw side prepares, once, every statement the panel's
//               side issued (recorded by the statement trace during the
//               warm-up, translated to the engine's dialect) and steps each
//               to its end reading every column.
//   open_page   (alone, against its budget) the contact page with its related
//               panel below, as the main window builds it: from the request
//               to show contact 1 (after contact 2) until the page is painted.
// How to read them: divide the panel time per iteration by the raw time per
// iteration. A console run ends with that ratio, on wall-clock time, beside
// the ratio the case aims at.
//
// The data file is built once per process in a temporary folder and filled
// through the raw engine with 5,000 contacts, 1,000 accounts, 2,000
// opportunities, 2,000 tasks and 2,000 documents; contact 1 has 200 links of
// each kind and the others a few random ones.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QLayout>
#include <QPixmap>
#include <QString>
#include <QTableView>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/rawengine.h"
#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "records/relatedcounts.h"
#include "schedule/task.h"
#include "store/dialect.h"
#include "store/trace.h"
#include "views/details/formcondetail.h"
#include "views/related/formrelated.h"

namespace {

using namespace tarvel::bench;

constexpr int kContacts = 5000;
constexpr int kAccounts = 1000;
constexpr int kOpportunities = 2000;
constexpr int kTasks = 2000;
constexpr int kDocuments = 2000;
constexpr int kLinks = 200;  // of each kind, for contact 1
constexpr int kOwner = 1;

bool exec(sqlite3* db, const char* sql) {
    return check(db, sqlite3_exec(db, sql, nullptr, nullptr, nullptr), sql);
}

bool step(sqlite3* db, sqlite3_stmt* stmt) {
    const int rc = sqlite3_step(stmt);
    sqlite3_reset(stmt);
    return check(db, rc == SQLITE_ROW ? SQLITE_DONE : rc, "step");
}

bool fill(sqlite3* db) {
    std::mt19937 rng(20261123);
    auto pick = [&](int n) { return 1 + std::uniform_int_distribution<int>(0, n - 1)(rng); };
    bool ok = exec(db, "BEGIN");
    sqlite3_stmt* account = prepare(
        db, "INSERT INTO accounts (acc_name, acc_address, acc_telephone) VALUES (?, ?, '010-1')");
    for (int i = 1; ok && i <= kAccounts; ++i) {
        bindText(account, 1, "华信科技有限公司" + std::to_string(i));
        bindText(account, 2, "北京市人民路" + std::to_string(i) + "号");
        ok = step(db, account);
    }
    sqlite3_stmt* contact = prepare(
        db,
        "INSERT INTO contacts (con_lastname, con_nickname, con_department_title, con_telephone, "
        "con_mobile, con_email, con_description, con_create_date, con_recent_contact_date, "
        "con_birthday, con_private) VALUES (?, '老王', '销售部 经理', '010-62345678', ?, ?, "
        "'多年的老客户，喜欢喝茶。', '2024-01-02 00:00:00', '2025-05-06 10:11:12', "
        "'1900-01-01 00:00:00', 0)");
    for (int i = 1; ok && i <= kContacts; ++i) {
        bindText(contact, 1, "王明" + std::to_string(i));
        bindText(contact, 2, "138" + std::to_string(10000000 + i));
        bindText(contact, 3, "wm" + std::to_string(i) + "@163.com");
        ok = step(db, contact);
    }
    sqlite3_stmt* opportunity = prepare(
        db,
        "INSERT INTO opportunities (opp_subject, opp_phase, opp_estimate_sale, opp_description) "
        "VALUES (?, '谈判', 100000, '机房改造的第二期')");
    for (int i = 1; ok && i <= kOpportunities; ++i) {
        bindText(opportunity, 1, "项目" + std::to_string(i));
        ok = step(db, opportunity);
    }
    sqlite3_stmt* task = prepare(
        db,
        "INSERT INTO tasks (tas_subject, tas_date, tas_time, tas_tag, tas_description, tas_closed) "
        "VALUES (?, ?, '1899-12-30 09:30:00', '拜访', '带上样品和报价单', 0)");
    for (int i = 1; ok && i <= kTasks; ++i) {
        bindText(task, 1, "拜访客户" + std::to_string(i));
        bindText(
            task, 2,
            "2025-0" + std::to_string(1 + i % 9) + "-1" + std::to_string(i % 10) + " 00:00:00");
        ok = step(db, task);
    }
    sqlite3_stmt* document =
        prepare(db,
                "INSERT INTO documents (doc_name, doc_path, doc_description) VALUES (?, "
                "'/home/user/文档', '盖章的扫描件')");
    for (int i = 1; ok && i <= kDocuments; ++i) {
        bindText(document, 1, "合同" + std::to_string(i) + ".pdf");
        ok = step(db, document);
    }
    // Contact 1's links: half of its related contacts on each side of the pair.
    sqlite3_stmt* pairs[] = {
        prepare(db, "INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (?, ?)"),
        prepare(db, "INSERT INTO opportunities_contacts (con_id, opp_id) VALUES (?, ?)"),
        prepare(db, "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (?, ?)"),
        prepare(db, "INSERT INTO contacts_documents (con_id, doc_id) VALUES (?, ?)"),
        prepare(db, "INSERT INTO accounts_contacts (con_id, acc_id) VALUES (?, ?)")};
    auto link = [&](sqlite3_stmt* s, int a, int b) {
        sqlite3_bind_int(s, 1, a);
        sqlite3_bind_int(s, 2, b);
        return step(db, s);
    };
    for (int i = 1; ok && i <= kLinks; ++i) {
        ok = (i % 2 ? link(pairs[0], kOwner, 1 + i) : link(pairs[0], 1 + i, kOwner)) &&
             link(pairs[1], kOwner, i) && link(pairs[2], kOwner, i) && link(pairs[3], kOwner, i);
    }
    // The others: an account each and a few random links.
    for (int c = 1; ok && c <= kContacts; ++c)
        ok = link(pairs[4], c, pick(kAccounts)) &&
             (c == kOwner || (link(pairs[1], c, pick(kOpportunities)) &&
                              link(pairs[2], c, kLinks + pick(kTasks - kLinks)) &&
                              link(pairs[3], c, kLinks + pick(kDocuments - kLinks))));
    for (sqlite3_stmt* s : {account, contact, opportunity, task, document}) sqlite3_finalize(s);
    for (sqlite3_stmt* s : pairs) sqlite3_finalize(s);
    return exec(db, ok ? "COMMIT" : "ROLLBACK") && ok;
}

// ---------------------------------------------------------------------------
// The panel's side: what opening the panel asks of the record classes.

tarvel::MapForm panelForm(QStringLiteral("form_con_related"));
tarvel::DataControl grids[4];

template <typename Record>
bool setQuery(tarvel::DataControl& grid) {
    Record r;
    r.setOForm(&panelForm);
    r.setOAdodc(&grid);
    const bool ok = r.SetQuery(kOwner);
    if (!ok) std::fprintf(stderr, "SetQuery: %s\n", qPrintable(r.ErrMsg()));
    return ok;
}

bool openPanel() {
    tarvel::RelatedCounts counts;
    return setQuery<tarvel::Contact>(grids[0]) && setQuery<tarvel::Opportunity>(grids[1]) &&
           setQuery<tarvel::Task>(grids[2]) && setQuery<tarvel::document>(grids[3]) &&
           counts.read(tarvel::kind::Contact, kOwner);
}

void openPanelProgram(benchmark::State& state) {
    for (auto _ : state)
        if (!openPanel()) {
            state.SkipWithError("the panel could not be opened");
            break;
        }
    state.SetItemsProcessed(state.iterations());
}

// From the request to show the contact to the painted page with its panel.
void openPageProgram(benchmark::State& state) {
    tarvel::FormConDetail page;
    auto* panel = new tarvel::FormRelated(tarvel::kind::Contact, page.relatedArea());
    page.relatedArea()->layout()->addWidget(panel);
    QObject::connect(&page, &tarvel::FormDetail::recordShown, panel,
                     &tarvel::FormRelated::showRecord);
    page.resize(1280, 900);
    page.show();
    auto show = [&page](int id) {
        page.fill({tarvel::page::ContactDetail, QString(), id});
        QPixmap painted = page.grab();
        benchmark::DoNotOptimize(painted);
    };
    for (auto _ : state) {
        state.PauseTiming();
        show(kOwner + 1);
        state.ResumeTiming();
        show(kOwner);
    }
    const QTableView* grid = panel->findChild<QTableView*>(QStringLiteral("dgrid_sch"));
    if (!grid || grid->model()->rowCount() != kLinks)
        state.SkipWithError("the panel does not list the contact's tasks");
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------
// The raw side: the same statements, prepared once.

sqlite3* rawDb = nullptr;
std::vector<sqlite3_stmt*> rawStatements;

void openPanelRaw(benchmark::State& state) {
    for (auto _ : state) {
        for (sqlite3_stmt* stmt : rawStatements) {
            int rc;
            while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
                for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                    const unsigned char* text = sqlite3_column_text(stmt, i);
                    benchmark::DoNotOptimize(text);
                }
            sqlite3_reset(stmt);
            if (rc != SQLITE_DONE) {
                state.SkipWithError(sqlite3_errmsg(rawDb));
                return;
            }
        }
    }
    state.SetItemsProcessed(state.iterations());
}

bool fillDataFile(const QString& path) {
    rawDb = openRaw(path);
    return rawDb && fill(rawDb);
}

// Opens the panel once through the program, checks that it sees every link,
// and prepares on the raw side each statement that opening issued.
bool warmUp() {
    tarvel::trace::clear();
    tarvel::trace::setEnabled(true);
    const bool ok = openPanel();
    tarvel::trace::setEnabled(false);
    if (!ok) return false;
    for (const tarvel::DataControl& g : grids)
        if (!g.Recordset || g.Recordset->RecordCount() != kLinks) {
            std::fprintf(stderr, "a grid lists %d rows, not %d\n",
                         g.Recordset ? g.Recordset->RecordCount() : -1, kLinks);
            return false;
        }
    for (const QString& statement : tarvel::trace::statements()) {
        sqlite3_stmt* stmt = prepare(rawDb, tarvel::dialect::translateUncached(statement).sql);
        if (!stmt) return false;
        rawStatements.push_back(stmt);
    }
    tarvel::trace::clear();
    return true;
}

void release() {
    closeRaw(rawDb, rawStatements);
}

}  // namespace

int main(int argc, char** argv) {
    // The open_page case paints off screen, wherever it runs.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return tarvel::bench::run(
        argc, argv, {fillDataFile, warmUp, release},
        {{"open_panel/panel", openPanelProgram, benchmark::kMicrosecond},
         {"open_panel/raw", openPanelRaw, benchmark::kMicrosecond},
         {"open_page/page", openPageProgram, benchmark::kMicrosecond}},
        {"panel",
         Layout::MicrosecondsWithCpu,
         {{"open_panel", 1.5}},
         {{"open_page/page", "contact page with its panel, request to paint", 0.1}}});
}
