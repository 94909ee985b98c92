#include "store/sqlitehandle.h"

#include <sqlite3.h>

#include <QFileInfo>
#include <algorithm>

#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/dialect.h"
#include "store/faulttext.h"
#include "store/jetdate.h"
#include "store/sqlvalue.h"

namespace tarvel {

namespace {

constexpr int kStatementCacheSize = 96;

void resultText(sqlite3_context* ctx, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), utf8.size(), SQLITE_TRANSIENT);
}

void nowFunction(sqlite3_context* ctx, int, sqlite3_value**) {
    resultText(ctx, jetdate::canonical(Clock::now()));
}

void dateFunction(sqlite3_context* ctx, int, sqlite3_value**) {
    resultText(ctx, jetdate::canonical(Clock::today()));
}

void timeFunction(sqlite3_context* ctx, int, sqlite3_value**) {
    resultText(ctx, jetdate::canonicalTime(Clock::time()));
}

// The calendar date of a stored value, read straight from the canonical text
// (the common case) before falling back to the general parser.
std::optional<QDate> argumentDay(sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_NULL) return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text) return std::nullopt;
    const int size = sqlite3_value_bytes(value);
    auto digit = [text](int i) {
        return text[i] >= '0' && text[i] <= '9' ? text[i] - '0' : -100000;
    };
    if (size == 19 && text[4] == '-' && text[7] == '-') {
        const QDate d(digit(0) * 1000 + digit(1) * 100 + digit(2) * 10 + digit(3),
                      digit(5) * 10 + digit(6), digit(8) * 10 + digit(9));
        if (d.isValid()) return d;
    }
    const QString s = QString::fromUtf8(text, size);
    if (auto parsed = jetdate::parseLiteral(s)) return parsed->date();
    return std::nullopt;
}

std::optional<QDateTime> argumentDate(sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_NULL) return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text) return std::nullopt;
    const QString s = QString::fromUtf8(text);
    if (auto c = jetdate::fromCanonical(s)) return c;
    return jetdate::parseLiteral(s);
}

// WEEKDAY, DAY, MONTH, YEAR: they run once per row of the schedule's queries.
template <int (*Part)(const QDate&)>
void dayPartFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
    const auto d = argumentDay(argv[0]);
    if (!d) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_int(ctx, Part(*d));
}

// HOUR and MINUTE of a date/time; null for null or a value that is no date.
template <int (*Part)(const QTime&)>
void timePartFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
    const auto d = argumentDate(argv[0]);
    if (!d) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_int(ctx, Part(d->time()));
}

int weekdayOf(const QDate& d) {
    return jetdate::weekdaySundayFirst(d);
}
int dayOf(const QDate& d) {
    return d.day();
}
int monthOf(const QDate& d) {
    return d.month();
}
int yearOf(const QDate& d) {
    return d.year();
}
int hourOf(const QTime& t) {
    return t.hour();
}
int minuteOf(const QTime& t) {
    return t.minute();
}

// first(): the value of the first row of each group, nulls included.
void firstStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto** slot =
        static_cast<sqlite3_value**>(sqlite3_aggregate_context(ctx, sizeof(sqlite3_value*)));
    if (slot && !*slot) *slot = sqlite3_value_dup(argv[0]);
}

void firstFinal(sqlite3_context* ctx) {
    auto** slot = static_cast<sqlite3_value**>(sqlite3_aggregate_context(ctx, 0));
    if (!slot || !*slot) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_value(ctx, *slot);
    sqlite3_value_free(*slot);
    *slot = nullptr;
}

// The number of tables, views and indexes; -1 when the file cannot be read.
int schemaObjects(sqlite3* db) {
    sqlite3_stmt* stmt = nullptr;
    int count = -1;
    if (sqlite3_prepare_v2(db, "SELECT count(*) FROM sqlite_master", -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        count = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    return count;
}

QHash<QString, std::shared_ptr<Handle>>& handleCache() {
    static QHash<QString, std::shared_ptr<Handle>> cache;
    return cache;
}

}  // namespace

int pageCacheKiB(qint64 fileBytes) {
    constexpr qint64 kFloorKiB = 16 * 1024, kCeilingKiB = 256 * 1024;
    // A quarter more than the file, for the engine's own overhead per page and for growth.
    return int(std::clamp(fileBytes / 1024 + fileBytes / 4096, kFloorKiB, kCeilingKiB));
}

Handle::Handle(sqlite3* db, QString path) : db_(db), path_(std::move(path)) {
    registerFunctions();
}

Handle::~Handle() {
    close();
}

std::shared_ptr<Handle> Handle::open(const QString& path, const QString& password, bool create,
                                     QString* error) {
    auto fail = [&](const QString& message) {
        if (error) *error = message;
        return std::shared_ptr<Handle>();
    };
    if (!create && !QFileInfo(path).isFile())
        return fail(QStringLiteral("数据文件不存在：%1").arg(path));
    if (create && QFileInfo::exists(path))
        return fail(QStringLiteral("文件已存在，不会覆盖：%1").arg(path));
    // The engine would only say it cannot open the file, which reads like damage.
    if (pathTooLong(path)) return fail(plainOpenFault(QString(), path));
    static const bool configured = [] {
        // Memory statistics cost a global lock on every allocation; nothing reads them.
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
        return true;
    }();
    Q_UNUSED(configured);
    sqlite3* db = nullptr;
    // One thread uses the program's handles, so the engine need not lock per call.
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, flags, nullptr) != SQLITE_OK) {
        const QString message =
            db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        sqlite3_close(db);
        return fail(QStringLiteral("无法打开数据文件 %1：%2").arg(path, plainOpenFault(message, path)));
    }
    const QByteArray key = password.toUtf8();
    sqlite3_key(db, key.constData(), key.size());
    // The key is only checked on first read; a wrong key or a foreign file fails
    // here. An empty file reads as a database without tables: no data file either.
    if (schemaObjects(db) <= 0 && !create) {
        sqlite3_close(db);
        return fail(QStringLiteral("%1 不是 Tarvel 数据文件，或数据库密码不对").arg(path));
    }
    sqlite3_busy_timeout(db, 2000);
    // Pages are decrypted on every cache miss; a cache that holds the whole file
    // lets a list or a search decrypt each page once.
    const QByteArray cache =
        "PRAGMA cache_size=-" + QByteArray::number(pageCacheKiB(QFileInfo(path).size()));
    sqlite3_exec(db, cache.constData(), nullptr, nullptr, nullptr);
    return std::shared_ptr<Handle>(new Handle(db, path));
}

void Handle::registerFunctions() {
    const int flags = SQLITE_UTF8;
    sqlite3_create_function(db_, dialect::kNowFunction, 0, flags, nullptr, nowFunction, nullptr,
                            nullptr);
    sqlite3_create_function(db_, dialect::kDateFunction, 0, flags, nullptr, dateFunction, nullptr,
                            nullptr);
    sqlite3_create_function(db_, dialect::kTimeFunction, 0, flags, nullptr, timeFunction, nullptr,
                            nullptr);
    const int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db_, "weekday", 1, pure, nullptr, dayPartFunction<weekdayOf>, nullptr,
                            nullptr);
    sqlite3_create_function(db_, "day", 1, pure, nullptr, dayPartFunction<dayOf>, nullptr, nullptr);
    sqlite3_create_function(db_, "month", 1, pure, nullptr, dayPartFunction<monthOf>, nullptr,
                            nullptr);
    sqlite3_create_function(db_, "year", 1, pure, nullptr, dayPartFunction<yearOf>, nullptr,
                            nullptr);
    sqlite3_create_function(db_, "hour", 1, pure, nullptr, timePartFunction<hourOf>, nullptr,
                            nullptr);
    sqlite3_create_function(db_, "minute", 1, pure, nullptr, timePartFunction<minuteOf>, nullptr,
                            nullptr);
    sqlite3_create_function(db_, "first", 1, SQLITE_UTF8, nullptr, nullptr, firstStep, firstFinal);
}

QString Handle::lastError() const {
    return db_ ? plainFault(QString::fromUtf8(sqlite3_errmsg(db_))) : QStringLiteral("数据文件已关闭");
}

sqlite3_stmt* Handle::prepare(const QString& sql, QString* error) {
    if (!db_) {
        if (error) *error = lastError();
        return nullptr;
    }
    if (auto it = statements_.find(sql); it != statements_.end()) {
        ages_.splice(ages_.begin(), ages_, it->age);
        return it->stmt;
    }
    sqlite3_stmt* stmt = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_, utf8.constData(), utf8.size(), &stmt, &tail) != SQLITE_OK) {
        if (error) *error = lastError();
        sqlite3_finalize(stmt);
        return nullptr;
    }
    if (!stmt) {
        if (error) *error = QStringLiteral("empty statement");
        return nullptr;
    }
    if (tail && QByteArray(tail).trimmed().size() > 0 && QByteArray(tail).trimmed() != ";") {
        sqlite3_finalize(stmt);
        if (error) *error = QStringLiteral("only one statement may be run at a time");
        return nullptr;
    }
    if (statements_.size() >= kStatementCacheSize) {
        const QString oldest = ages_.back();
        ages_.pop_back();
        sqlite3_stmt* old = statements_.take(oldest).stmt;
        sqlOf_.remove(old);
        sqlite3_finalize(old);
    }
    ages_.push_front(sql);
    statements_.insert(sql, {stmt, ages_.begin(), nullptr});
    sqlOf_.insert(stmt, sql);
    return stmt;
}

bool Handle::exec(const QString& sql, QString* error) {
    char* message = nullptr;
    if (!db_ ||
        sqlite3_exec(db_, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK) {
        if (error) *error = message ? plainFault(QString::fromUtf8(message)) : lastError();
        sqlite3_free(message);
        return false;
    }
    return true;
}

const TableInfo* Handle::tableInfo(const QString& table) {
    const QString key = table.toLower();
    if (auto it = tables_.constFind(key); it != tables_.constEnd()) return &*it;
    if (!db_) return nullptr;
    TableInfo info;
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = QStringLiteral("PRAGMA table_info(\"%1\")").arg(table).toUtf8();
    if (sqlite3_prepare_v2(db_, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return nullptr;
    }
    int keyColumns = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        const QString name =
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
        info.columns << name;
        info.declaredTypes.insert(
            name.toLower(),
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 2))));
        if (sqlite3_column_int(stmt, 5) > 0) {
            ++keyColumns;
            info.primaryKey = name;
        }
    }
    sqlite3_finalize(stmt);
    if (keyColumns != 1) info.primaryKey.clear();
    if (info.columns.isEmpty()) return nullptr;
    return &*tables_.insert(key, info);
}

std::shared_ptr<const ResultColumns> Handle::resultColumns(sqlite3_stmt* stmt) {
    auto key = sqlOf_.constFind(stmt);
    Cached* cached = key == sqlOf_.constEnd() ? nullptr : &statements_[*key];
    if (cached && cached->columns) return cached->columns;
    auto columns = ResultColumns::describe(stmt);
    if (cached) cached->columns = columns;
    return columns;
}

void Handle::close() {
    for (const Cached& c : std::as_const(statements_)) sqlite3_finalize(c.stmt);
    statements_.clear();
    sqlOf_.clear();
    ages_.clear();
    tables_.clear();
    if (db_) sqlite3_close_v2(db_);
    db_ = nullptr;
}

StatementLease::~StatementLease() {
    if (stmt_) {
        sqlite3_reset(stmt_);
    }
}

std::shared_ptr<Handle> acquireHandle(const QString& connectionString, QString* error) {
    // Nearly every call names the same file as the one before.
    static QString lastString;
    static std::weak_ptr<Handle> lastHandle;
    if (auto last = lastHandle.lock(); last && last->isOpen() && connectionString == lastString)
        return last;
    auto& cache = handleCache();
    if (auto it = cache.constFind(connectionString); it != cache.constEnd() && (*it)->isOpen()) {
        lastString = connectionString;
        lastHandle = *it;
        return *it;
    }
    const ConnectionInfo info = parseConnectionString(connectionString);
    if (!info.valid) {
        if (error) *error = QStringLiteral("连接字符串无效");
        return nullptr;
    }
    auto handle = Handle::open(info.dataSource, info.password, false, error);
    if (handle) {
        cache.insert(connectionString, handle);
        lastString = connectionString;
        lastHandle = handle;
    }
    return handle;
}

void closeAllHandles() {
    auto& cache = handleCache();
    for (const auto& handle : std::as_const(cache)) handle->close();
    cache.clear();
}

}  // namespace tarvel
