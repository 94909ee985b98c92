// The access layer (tarveldatabase + Recordset) against the raw SQLCipher C API
// doing the same work on the same data file.
//
// Benchmarks come in pairs named "<case>/access" and "<case>/raw":
//   lookup        one contact by key, a few fields read
//   stamp_update  one contact's recent-contact date set to the current time
//   contact_list  the contact list (the program-wide list fields of contacts over
//                 que_contacts_accounts), every field of every row read into a
//                 value; the raw side reads each column into a value too
//   contact_grid  the same list shown through the grid model (the rows a grid
//                 shows at once read from it); its counters give the peak RSS of
//                 a process that holds the list and its model (bench/list_rss)
// How to read them: divide the access time per iteration by the raw time per
// iteration of the same case. After the run (console output) a summary prints
// that ratio for each pair, on wall-clock time, beside the ratio each case aims
// at. items_per_second counts look-ups, updates, or list rows.
//
// The data file is built once per process in a temporary folder: a new file from
// the data-file builder, filled through the raw engine with 5,000 accounts,
// 20,000 contacts (about 80% linked to an account; --contacts=N for another
// number) and 50,000 tasks.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QDate>
#include <QProcess>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/rawengine.h"
#include "browse/recordsetmodel.h"
#include "custom/fsettings.h"
#include "store/tarveldatabase.h"

namespace {

using namespace tarvel::bench;

constexpr int kAccounts = 5000;
int contacts = 20000;
constexpr int kTasks = 50000;
constexpr int kLinkedPercent = 80;

// The rows a grid shows at once.
constexpr int kVisibleRows = 30;

// The contacts list as the program runs it, built from the list fields once the
// data file is in place.
QString listSql;
QString dataFile;

// ---------------------------------------------------------------------------
// Realistic values

const std::vector<std::string> kSurnames = {
    "王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周", "徐", "孙", "马", "朱", "胡",
    "郭", "何", "高", "林", "罗", "郑", "梁", "谢", "宋", "唐", "许", "韩", "冯", "邓", "曹",
    "彭", "曾", "肖", "田", "董", "袁", "潘", "于", "蒋", "蔡", "余", "杜", "叶", "程", "苏",
    "魏", "吕", "丁", "任", "沈", "姚", "卢", "姜", "崔", "钟", "谭", "陆", "汪", "范", "欧阳"};
const std::vector<std::string> kGivenChars = {
    "伟", "芳", "娜", "秀", "英", "敏", "静", "丽", "强", "磊", "军", "洋", "勇", "艳", "杰",
    "娟", "涛", "明", "超", "兰", "霞", "平", "刚", "桂", "华", "建", "国", "志", "红", "玲",
    "飞", "鹏", "辉", "斌", "宇", "浩", "凯", "健", "俊", "帆", "旭", "宁", "婷", "雪", "琳"};
const std::vector<std::string> kTitles = {"先生", "女士", "经理", "总监", "工程师", "主任", "教授"};
const std::vector<std::string> kDepartments = {"销售部", "市场部", "技术部",      "财务部",
                                               "采购部", "人事部", "总经理办公室"};
const std::vector<std::string> kPositions = {"经理", "副经理", "主管", "专员", "总监", "助理"};
const std::vector<std::string> kProvinces = {"北京", "上海", "天津", "重庆", "广东",
                                             "江苏", "浙江", "山东", "四川", "湖北",
                                             "湖南", "河南", "福建", "辽宁"};
const std::vector<std::string> kCities = {"北京", "上海", "广州", "深圳", "杭州", "南京",
                                          "成都", "武汉", "西安", "苏州", "天津", "重庆"};
const std::vector<std::string> kDistricts = {"朝阳区", "海淀区", "浦东新区", "天河区",
                                             "南山区", "西湖区", "鼓楼区",   "武侯区"};
const std::vector<std::string> kStreets = {"建国路", "中山路",   "人民路",   "解放路",
                                           "长安街", "科技园路", "世纪大道", "东风路"};
const std::vector<std::string> kImportance = {"很重要", "重要", "一般"};
const std::vector<std::string> kRelations = {"客户",   "潜在客户", "合作伙伴",
                                             "供应商", "朋友",     "同事"};
const std::vector<std::string> kAccountTypes = {"客户", "潜在客户", "合作伙伴", "供应商",
                                                "竞争对手"};
const std::vector<std::string> kIndustries = {"IT",   "制造业", "金融", "教育", "零售",
                                              "医疗", "房地产", "物流", "咨询"};
const std::vector<std::string> kCompanyWords = {"华信",   "宏达", "金桥", "天成", "恒远", "瑞丰",
                                                "新世纪", "东方", "长城", "博远", "中科", "永泰"};
const std::vector<std::string> kCompanyKinds = {"科技", "贸易", "实业", "电子",
                                                "软件", "咨询", "物流", "建材"};
const std::vector<std::string> kTags = {"", "", "VIP", "老客户", "VIP,老客户", "展会", "推荐"};
const std::vector<std::string> kMailDomains = {"qq.com", "163.com", "126.com", "sina.com",
                                               "gmail.com"};
const std::vector<std::string> kTaskSubjects = {"电话回访", "拜访客户", "发送报价单", "合同签订",
                                                "产品演示", "催收货款", "参加展会",   "周例会"};
const std::vector<std::string> kTaskTypes = {"电话", "拜访", "会议", "邮件", "其他"};
const std::vector<std::string> kNotes = {
    "", "", "", "需要跟进，下周再联系。", "对新产品很感兴趣，已寄送样品。", "价格敏感，注意折扣。"};

class Generator {
public:
    explicit Generator(unsigned seed) : rng_(seed) {}

    int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }
    bool chance(int percent) { return number(1, 100) <= percent; }
    const std::string& pick(const std::vector<std::string>& list) {
        return list[size_t(number(0, int(list.size()) - 1))];
    }
    std::string digits(int count) {
        std::string out;
        for (int i = 0; i < count; ++i) out += char('0' + number(0, 9));
        return out;
    }
    std::string letters(int count) {
        std::string out;
        for (int i = 0; i < count; ++i) out += char('a' + number(0, 25));
        return out;
    }
    std::string givenName() {
        std::string out = pick(kGivenChars);
        if (chance(70)) out += pick(kGivenChars);
        return out;
    }
    // A canonical date text between 2015-01-01 and 2025-12-31; `withTime` adds a
    // time of day, otherwise midnight.
    std::string dateText(bool withTime) {
        const qint64 day = QDate(2015, 1, 1).toJulianDay() + number(0, 4017);
        const int secs = withTime ? number(8 * 3600, 20 * 3600) : 0;
        return canonical(QDate::fromJulianDay(day), secs);
    }
    std::string timeText() {
        return canonical(QDate(1899, 12, 30), number(8, 19) * 3600 + number(0, 3) * 900);
    }

    static std::string canonical(const QDate& date, int secs) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", date.year(),
                      date.month(), date.day(), secs / 3600, secs / 60 % 60, secs % 60);
        return buffer;
    }

private:
    std::mt19937 rng_;
};

// ---------------------------------------------------------------------------
// Inserts through the raw engine

// Binds text, an integer or null in column order and runs a prepared insert.
class Insert {
public:
    Insert(sqlite3* db, sqlite3_stmt* stmt) : db_(db), stmt_(stmt) {}
    Insert& text(const std::string& value) {
        bindText(stmt_, ++index_, value);
        return *this;
    }
    Insert& textOrNull(const std::string& value) {
        if (value.empty()) {
            sqlite3_bind_null(stmt_, ++index_);
            return *this;
        }
        return text(value);
    }
    Insert& integer(qint64 value) {
        sqlite3_bind_int64(stmt_, ++index_, value);
        return *this;
    }
    Insert& real(double value) {
        sqlite3_bind_double(stmt_, ++index_, value);
        return *this;
    }
    bool run() {
        const int rc = sqlite3_step(stmt_);
        sqlite3_reset(stmt_);
        sqlite3_clear_bindings(stmt_);
        index_ = 0;
        return check(db_, rc, "insert");
    }

private:
    sqlite3* db_;
    sqlite3_stmt* stmt_;
    int index_ = 0;
};

bool fillAccounts(sqlite3* db, Generator& g) {
    sqlite3_stmt* stmt = prepare(
        db,
        "INSERT INTO accounts (acc_name,acc_description,acc_create_date,acc_recent_contact_date,"
        "acc_important,acc_type,acc_industry,acc_relation,acc_address,acc_postcode,acc_province,"
        "acc_telephone,acc_fax,acc_website,acc_private,acc_tag,acc_check) "
        "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    if (!stmt) return false;
    Insert insert(db, stmt);
    bool ok = true;
    for (int i = 0; i < kAccounts && ok; ++i) {
        const std::string city = g.pick(kCities);
        const std::string name = city + g.pick(kCompanyWords) + g.pick(kCompanyKinds) + "有限公司";
        const std::string created = g.dateText(true);
        const std::string recent = std::max(created, g.dateText(true));
        ok = insert.text(name)
                 .textOrNull(g.pick(kNotes))
                 .text(created)
                 .text(recent)
                 .text(g.pick(kImportance))
                 .text(g.pick(kAccountTypes))
                 .text(g.pick(kIndustries))
                 .text(g.pick(kRelations))
                 .text(city + "市" + g.pick(kDistricts) + g.pick(kStreets) +
                       std::to_string(g.number(1, 999)) + "号")
                 .text(std::to_string(g.number(100000, 850000)))
                 .text(g.pick(kProvinces))
                 .text("0" + std::to_string(g.number(10, 99)) + "-" + g.digits(8))
                 .text("0" + std::to_string(g.number(10, 99)) + "-" + g.digits(8))
                 .text("www." + g.letters(6) + ".com.cn")
                 .integer(g.chance(5) ? 1 : 0)
                 .textOrNull(g.pick(kTags))
                 .integer(g.chance(10) ? -1 : 0)
                 .run();
    }
    sqlite3_finalize(stmt);
    return ok;
}

bool fillContacts(sqlite3* db, Generator& g) {
    sqlite3_stmt* stmt = prepare(
        db,
        "INSERT INTO contacts (con_firstname,con_lastname,con_nickname,con_title,con_description,"
        "con_department_title,con_telephone,con_telephone2,con_mobile,con_fax,con_email,con_email2,"
        "con_address_family,con_postcode_family,con_im,con_website,con_province,con_important,"
        "con_relation,con_create_date,con_recent_contact_date,con_birthday,con_private,con_tag,"
        "con_sendmail,con_check) "
        "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    sqlite3_stmt* link = prepare(db, "INSERT INTO accounts_contacts (acc_id,con_id) VALUES (?,?)");
    if (!stmt || !link) return false;
    Insert insert(db, stmt);
    Insert linkInsert(db, link);
    bool ok = true;
    for (int i = 0; i < contacts && ok; ++i) {
        const std::string surname = g.pick(kSurnames);
        const std::string given = g.givenName();
        const std::string created = g.dateText(true);
        const std::string recent = std::max(created, g.dateText(true));
        const std::string birthday =
            g.chance(30) ? std::string("1900-01-01 00:00:00")
                         : Generator::canonical(
                               QDate(g.number(1950, 2000), g.number(1, 12), g.number(1, 28)), 0);
        const std::string mail =
            g.letters(g.number(3, 8)) + g.digits(g.number(0, 4)) + "@" + g.pick(kMailDomains);
        ok = insert.text(given)
                 .text(surname)
                 .text(g.chance(40) ? "老" + surname : surname + given)
                 .text(g.pick(kTitles))
                 .textOrNull(g.pick(kNotes))
                 .text(g.pick(kDepartments) + " " + g.pick(kPositions))
                 .text("0" + std::to_string(g.number(10, 99)) + "-" + g.digits(8))
                 .textOrNull(
                     g.chance(20) ? "0" + std::to_string(g.number(10, 99)) + "-" + g.digits(8) : "")
                 .text("1" + std::to_string(g.number(30, 89)) + g.digits(8))
                 .textOrNull(
                     g.chance(30) ? "0" + std::to_string(g.number(10, 99)) + "-" + g.digits(8) : "")
                 .text(mail)
                 .textOrNull(g.chance(15) ? g.letters(6) + "@" + g.pick(kMailDomains) : "")
                 .text(g.pick(kCities) + "市" + g.pick(kDistricts) + g.pick(kStreets) +
                       std::to_string(g.number(1, 999)) + "号")
                 .text(std::to_string(g.number(100000, 850000)))
                 .textOrNull(g.chance(60) ? g.digits(g.number(6, 10)) : "")
                 .textOrNull(g.chance(10) ? "www." + g.letters(8) + ".cn" : "")
                 .text(g.pick(kProvinces))
                 .text(g.pick(kImportance))
                 .text(g.pick(kRelations))
                 .text(created)
                 .text(recent)
                 .text(birthday)
                 .integer(g.chance(5) ? 1 : 0)
                 .textOrNull(g.pick(kTags))
                 .integer(0)
                 .integer(g.chance(10) ? -1 : 0)
                 .run();
        if (ok && g.chance(kLinkedPercent))
            ok = linkInsert.integer(g.number(1, kAccounts))
                     .integer(sqlite3_last_insert_rowid(db))
                     .run();
    }
    sqlite3_finalize(stmt);
    sqlite3_finalize(link);
    return ok;
}

bool fillTasks(sqlite3* db, Generator& g) {
    sqlite3_stmt* stmt = prepare(
        db,
        "INSERT INTO tasks "
        "(tas_subject,tas_date,tas_time,tas_type,tas_important,tas_outlay,tas_tag,"
        "tas_private,tas_remind,tas_closed,tas_again,tas_cycle,tas_closedate,tas_create_date,"
        "tas_recent_contact_date,tas_description,tas_last_remind_date,tas_check) "
        "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    if (!stmt) return false;
    Insert insert(db, stmt);
    static const int kCycles[] = {1, 7, 30, 365};
    bool ok = true;
    for (int i = 0; i < kTasks && ok; ++i) {
        const bool recurring = g.chance(10);
        const std::string day = g.dateText(false);
        const std::string created = g.dateText(true);
        insert.text(g.pick(kTaskSubjects) + " " + g.pick(kSurnames) + g.pick(kTitles))
            .text(day)
            .text(g.timeText())
            .text(g.pick(kTaskTypes))
            .text(g.pick(kImportance))
            .real(g.chance(30) ? g.number(1, 200000) / 100.0 : 0.0)
            .textOrNull(g.pick(kTags))
            .integer(g.chance(5) ? 1 : 0)
            .integer(g.chance(40) ? 1 : 0)
            .integer(g.chance(60) ? 1 : 0)
            .integer(recurring ? 1 : 0)
            .integer(recurring ? kCycles[g.number(0, 3)] : 0)
            .textOrNull(recurring ? Generator::canonical(
                                        QDate::fromString(QString::fromStdString(day.substr(0, 10)),
                                                          QStringLiteral("yyyy-MM-dd"))
                                            .addYears(1),
                                        0)
                                  : "")
            .text(created)
            .text(std::max(created, g.dateText(true)))
            .textOrNull(g.pick(kNotes))
            .textOrNull(g.chance(20) ? day : "")
            .integer(g.chance(10) ? -1 : 0);
        ok = insert.run();
    }
    sqlite3_finalize(stmt);
    return ok;
}

// ---------------------------------------------------------------------------
// The shared state of one run

struct RawSide {
    sqlite3* db = nullptr;
    sqlite3_stmt* lookup = nullptr;
    sqlite3_stmt* update = nullptr;
    sqlite3_stmt* list = nullptr;
    int lastname = -1, nickname = -1, mobile = -1, recent = -1, check = -1;
};
RawSide raw;

int columnIndex(sqlite3_stmt* stmt, const char* name) {
    for (int i = 0; i < sqlite3_column_count(stmt); ++i)
        if (std::strcmp(sqlite3_column_name(stmt, i), name) == 0) return i;
    return -1;
}

bool prepareRaw() {
    raw.lookup = prepare(raw.db, "SELECT * FROM contacts WHERE con_id=?");
    raw.update = prepare(raw.db, "UPDATE contacts SET con_recent_contact_date=? WHERE con_id=?");
    if (!raw.lookup || !raw.update) return false;
    raw.lastname = columnIndex(raw.lookup, "con_lastname");
    raw.nickname = columnIndex(raw.lookup, "con_nickname");
    raw.mobile = columnIndex(raw.lookup, "con_mobile");
    raw.recent = columnIndex(raw.lookup, "con_recent_contact_date");
    raw.check = columnIndex(raw.lookup, "con_check");
    return raw.lastname >= 0 && raw.nickname >= 0 && raw.mobile >= 0 && raw.recent >= 0 &&
           raw.check >= 0;
}

// Opens the raw side on the new data file, fills it and prepares its statements.
bool fillDataFile(const QString& path) {
    dataFile = path;
    raw.db = openRaw(path);
    if (!raw.db) return false;
    Generator g(20240501);
    bool ok = check(raw.db, sqlite3_exec(raw.db, "BEGIN", nullptr, nullptr, nullptr), "BEGIN") &&
              fillAccounts(raw.db, g) && fillContacts(raw.db, g) && fillTasks(raw.db, g);
    ok = check(raw.db, sqlite3_exec(raw.db, ok ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr),
               "COMMIT") &&
         ok;
    return ok && prepareRaw();
}

// The peak RSS, in KiB, that bench/list_rss reports for `mode` on the data file;
// -1 when it fails.
double peakRssKiB(const char* mode) {
    QProcess tool;
    tool.start(QStringLiteral(TARVEL_LIST_RSS), {QString::fromLatin1(mode), dataFile});
    if (!tool.waitForFinished(600000) || tool.exitCode() != 0) {
        std::fprintf(stderr, "list_rss: %s\n", tool.readAllStandardError().constData());
        return -1;
    }
    bool ok = false;
    const double kib = tool.readAllStandardOutput().trimmed().toDouble(&ok);
    return ok ? kib : -1;
}

// ---------------------------------------------------------------------------
// 1. Key look-up

void lookupAccess(benchmark::State& state) {
    int id = 0;
    for (auto _ : state) {
        id = id % contacts + 1;
        tarvel::tarveldatabase db;
        auto rs = db.GetReadRs("SELECT * FROM contacts WHERE con_id=" + QString::number(id));
        if (!rs || rs->Eof()) {
            state.SkipWithError("contact not found");
            break;
        }
        QVariant lastname = rs->value(QStringLiteral("con_lastname"));
        QVariant nickname = rs->value(QStringLiteral("con_nickname"));
        QVariant mobile = rs->value(QStringLiteral("con_mobile"));
        QVariant recent = rs->value(QStringLiteral("con_recent_contact_date"));
        QVariant check = rs->value(QStringLiteral("con_check"));
        benchmark::DoNotOptimize(lastname);
        benchmark::DoNotOptimize(nickname);
        benchmark::DoNotOptimize(mobile);
        benchmark::DoNotOptimize(recent);
        benchmark::DoNotOptimize(check);
    }
    state.SetItemsProcessed(state.iterations());
}

void lookupRaw(benchmark::State& state) {
    sqlite3_stmt* stmt = raw.lookup;
    int id = 0;
    for (auto _ : state) {
        id = id % contacts + 1;
        sqlite3_bind_int(stmt, 1, id);
        if (sqlite3_step(stmt) != SQLITE_ROW) {
            sqlite3_reset(stmt);
            state.SkipWithError("contact not found");
            break;
        }
        // The caller ends up with the values in the program's own types, as it
        // does through the access layer.
        auto text = [stmt](int column) {
            return QString::fromUtf8(
                reinterpret_cast<const char*>(sqlite3_column_text(stmt, column)),
                sqlite3_column_bytes(stmt, column));
        };
        QString lastname = text(raw.lastname);
        QString nickname = text(raw.nickname);
        QString mobile = text(raw.mobile);
        QString recent = text(raw.recent);
        const int check = sqlite3_column_int(stmt, raw.check);
        benchmark::DoNotOptimize(lastname);
        benchmark::DoNotOptimize(nickname);
        benchmark::DoNotOptimize(mobile);
        benchmark::DoNotOptimize(recent);
        benchmark::DoNotOptimize(check);
        sqlite3_reset(stmt);
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------
// 2. Stamp update (each one its own transaction, as the program runs them)

void stampAccess(benchmark::State& state) {
    int id = 0;
    for (auto _ : state) {
        id = id % contacts + 1;
        tarvel::tarveldatabase db;
        qint64 affected = 0;
        db.Execute(
            "UPDATE contacts SET con_recent_contact_date=now WHERE con_id= " + QString::number(id),
            &affected);
        if (affected != 1) {
            state.SkipWithError(qPrintable(QStringLiteral("update failed: ") + db.ErrMsg()));
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void stampRaw(benchmark::State& state) {
    sqlite3_stmt* stmt = raw.update;
    int id = 0;
    for (auto _ : state) {
        id = id % contacts + 1;
        bindText(stmt, 1, nowText());
        sqlite3_bind_int(stmt, 2, id);
        const int rc = sqlite3_step(stmt);
        sqlite3_reset(stmt);
        if (rc != SQLITE_DONE || sqlite3_changes(raw.db) != 1) {
            state.SkipWithError(sqlite3_errmsg(raw.db));
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------
// 3. Contact list: every field of every row

void listAccess(benchmark::State& state) {
    int64_t rows = 0;
    for (auto _ : state) {
        tarvel::tarveldatabase db;
        auto rs = db.GetReadRs(listSql);
        if (!rs || rs->State() != tarvel::adStateOpen) {
            state.SkipWithError("list failed to open");
            break;
        }
        const int fields = rs->FieldCount();
        while (!rs->Eof()) {
            for (int i = 0; i < fields; ++i) {
                QVariant v = rs->value(i);
                benchmark::DoNotOptimize(v);
            }
            rs->MoveNext();
            ++rows;
        }
    }
    state.SetItemsProcessed(rows);
    state.counters["rows"] = benchmark::Counter(double(rows) / double(state.iterations()));
}

void listRaw(benchmark::State& state) {
    sqlite3_stmt* stmt = raw.list;
    const int fields = sqlite3_column_count(stmt);
    int64_t rows = 0;
    for (auto _ : state) {
        int rc;
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
            // Each column into a value of the program's own types.
            for (int i = 0; i < fields; ++i) {
                switch (sqlite3_column_type(stmt, i)) {
                    case SQLITE_INTEGER: {
                        const sqlite3_int64 v = sqlite3_column_int64(stmt, i);
                        benchmark::DoNotOptimize(v);
                        break;
                    }
                    case SQLITE_FLOAT: {
                        const double v = sqlite3_column_double(stmt, i);
                        benchmark::DoNotOptimize(v);
                        break;
                    }
                    case SQLITE_NULL:
                        break;
                    default: {
                        QString v = QString::fromUtf8(
                            reinterpret_cast<const char*>(sqlite3_column_text(stmt, i)),
                            sqlite3_column_bytes(stmt, i));
                        benchmark::DoNotOptimize(v);
                        break;
                    }
                }
            }
            ++rows;
        }
        sqlite3_reset(stmt);
        if (rc != SQLITE_DONE) {
            state.SkipWithError(sqlite3_errmsg(raw.db));
            break;
        }
    }
    state.SetItemsProcessed(rows);
    state.counters["rows"] = benchmark::Counter(double(rows) / double(state.iterations()));
}

// ---------------------------------------------------------------------------
// 4. Contact list in a grid

void gridAccess(benchmark::State& state) {
    for (auto _ : state) {
        tarvel::tarveldatabase db;
        tarvel::RecordsetModel model;
        model.setRecordset(db.GetReadRs(listSql));
        if (model.rowCount() != contacts) {
            state.SkipWithError("list failed to open");
            break;
        }
        for (int row = 0; row < kVisibleRows; ++row) {
            for (int column = 0; column < model.columnCount(); ++column) {
                QVariant v = model.data(model.index(row, column));
                benchmark::DoNotOptimize(v);
            }
        }
    }
    // The peak memory of a process that holds the list and its grid model, and
    // of one that only opened the data file.
    for (const char* mode : {"list", "file"}) {
        const double kib = peakRssKiB(mode);
        if (kib < 0) {
            state.SkipWithError("bench/list_rss failed");
            return;
        }
        state.counters[std::string("peak_rss_MiB_") + mode] = benchmark::Counter(kib / 1024);
    }
}

// ---------------------------------------------------------------------------
// The run

// The access layer sees the rows the raw side wrote; the list query is built as
// the program builds it, and the raw side prepares the same text.
bool warmUp() {
    tarvel::FSettings fields;
    fields.GetMySetting(3);
    listSql = QStringLiteral("SELECT ") + fields.SelectFields() +
              QStringLiteral(" FROM que_contacts_accounts  ORDER BY con_recent_contact_date DESC");
    raw.list = prepare(raw.db, listSql);
    if (!raw.list) return false;
    // The list once, so that the access layer's page cache is as warm as the raw
    // side's after filling the file.
    tarvel::tarveldatabase db;
    auto rs = db.GetReadRs(listSql);
    if (!rs || rs->RecordCount() != contacts) {
        std::fprintf(stderr, "the access layer cannot read the data file: %s\n",
                     qPrintable(db.ErrMsg()));
        return false;
    }
    return true;
}

void release() {
    closeRaw(raw.db, {raw.lookup, raw.update, raw.list});
}

// Takes --contacts=N out of the arguments.
void readContactCount(int& argc, char** argv) {
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--contacts=", 11) == 0)
            contacts = std::max(1, std::atoi(argv[i] + 11));
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
}

}  // namespace

int main(int argc, char** argv) {
    readContactCount(argc, argv);
    return tarvel::bench::run(argc, argv, {fillDataFile, warmUp, release},
                              {{"lookup/access", lookupAccess, benchmark::kMicrosecond},
                               {"lookup/raw", lookupRaw, benchmark::kMicrosecond},
                               {"stamp_update/access", stampAccess, benchmark::kMicrosecond},
                               {"stamp_update/raw", stampRaw, benchmark::kMicrosecond},
                               {"contact_list/access", listAccess, benchmark::kMillisecond},
                               {"contact_list/raw", listRaw, benchmark::kMillisecond},
                               {"contact_grid/access", gridAccess, benchmark::kMillisecond}},
                              {"access",
                               Layout::MicrosecondsWithCpu,
                               {{"lookup", 1.5}, {"stamp_update", 1.5}, {"contact_list", 1.5}},
                               {}});
}
