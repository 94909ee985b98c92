#include "exchange/filetools.h"

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>
#include <QTemporaryFile>
#include <filesystem>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif
#include <system_error>

#include "exchange/tables.h"
#include "store/connectionstring.h"
#include "store/faulttext.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

bool setError(QString* error, const QString& message) {
    if (error) *error = message;
    return false;
}

bool syncToDisk(QFile& file) {
#ifdef Q_OS_UNIX
    return ::fsync(file.handle()) == 0;
#else
    Q_UNUSED(file);
    return true;
#endif
}

std::filesystem::path fsPath(const QString& path) {
    return std::filesystem::path(path.toStdU16String());
}

// Rows of a one-column query on a raw handle.
QStringList column(sqlite3* db, const char* sql) {
    QStringList values;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW)
            values << QString::fromUtf8(
                reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    }
    sqlite3_finalize(stmt);
    return values;
}

struct ExportWatch {
    const Progress* progress;
    qint64 pages;
    qint64 calls = 0;
    bool stopped = false;
};

int exportProgress(void* context) {
    auto* watch = static_cast<ExportWatch*>(context);
    ++watch->calls;
    // The engine does not say how far it is; the share rises towards 99.
    const int percent = int(99 - 99 * watch->pages / (watch->pages + watch->calls));
    watch->stopped = *watch->progress && !(*watch->progress)(percent);
    return watch->stopped ? 1 : 0;
}

}  // namespace

QString dataFolder() {
    return QFileInfo(parseConnectionString(globalConnectionString()).dataSource).absolutePath();
}

QString liveDataFile() {
    return QFileInfo(parseConnectionString(globalConnectionString()).dataSource).absoluteFilePath();
}

bool removeFile(const QString& path, QString* error) {
    if (!QFileInfo::exists(path)) return true;
    QFile file(path);
    if (file.remove()) return true;
    return setError(error, QStringLiteral("无法删除文件 %1：%2").arg(path, file.errorString()));
}

QString scratchFolderOf(const QString& live) {
    const QFileInfo file(live);
    // Beside the real file, so a rename into its place stays on one file system.
    const QString real = file.isSymLink() && !file.canonicalFilePath().isEmpty()
                             ? file.canonicalFilePath()
                             : file.absoluteFilePath();
    return QDir(QFileInfo(real).absolutePath()).filePath(QStringLiteral(".tarvel-tmp"));
}

QString scratchFolder() {
    return scratchFolderOf(liveDataFile());
}

void cleanScratchFolder(const QString& live) {
    QDir dir(scratchFolderOf(live));
    if (!dir.exists()) return;
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        dir.remove(name);
}

QString stagingNameFor(const QString& target, const QString& scratch) {
    const QString folder = QFileInfo(target).absolutePath();
    QString where = folder;
    if (!scratch.isEmpty() && QDir().mkpath(scratch) &&
        QStorageInfo(scratch).rootPath() == QStorageInfo(folder).rootPath())
        where = scratch;
    // A unique name that exists for a moment only, so the caller may create it.
    QTemporaryFile probe(QDir(where).filePath(QStringLiteral(".tarvel-XXXXXX.part")));
    if (!probe.open()) return QDir(where).filePath(QStringLiteral(".tarvel-copy.part"));
    return probe.fileName();
}

bool copyFile(const QString& from, const QString& to, const Progress& progress, QString* error,
              const QString& scratch) {
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        return setError(error, QStringLiteral("无法读取文件 %1：%2").arg(from, in.errorString()));
    const QString staging = stagingNameFor(to, scratch);
    Leftovers partial{{staging}};
    QFile out(staging);
    auto cannotWrite = [&](const QString& why) {
        out.close();
        return setError(error, QStringLiteral("无法写入文件 %1：%2").arg(to, plainWriteFault(why)));
    };
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return cannotWrite(out.errorString());
    const qint64 total = qMax<qint64>(in.size(), 1);
    qint64 done = 0;
    QByteArray chunk;
    while (!(chunk = in.read(1 << 20)).isEmpty()) {
        if (out.write(chunk) != chunk.size()) return cannotWrite(out.errorString());
        done += chunk.size();
        if (progress && !progress(int(done * 100 / total))) {
            out.close();
            return setError(error, Outcome::cancelledText());
        }
    }
    if (in.error() != QFile::NoError) {
        out.close();
        return setError(error, QStringLiteral("无法读取文件 %1：%2").arg(from, in.errorString()));
    }
    // On disk before the rename, so a crash leaves the old file or the whole new one.
    if (!out.flush() || !syncToDisk(out)) return cannotWrite(out.errorString());
    out.close();
    return replaceFile(staging, to, error);
}

bool replaceFile(const QString& from, const QString& to, QString* error) {
    std::error_code ec;
    std::filesystem::rename(fsPath(from), fsPath(to), ec);
    if (ec)
        return setError(error,
                        QStringLiteral("无法用 %1 替换 %2：%3")
                            .arg(from, to, plainWriteFault(QString::fromLocal8Bit(ec.message()))));
    return true;
}

bool compactDataFile(const QString& from, const QString& to, const Progress& progress,
                     QString* error, const QString& scratch) {
    QString why;
    auto source = Handle::open(from, QLatin1String(schema::kDatabasePassword), false, &why);
    if (!source) return setError(error, why);
    const QString part = stagingNameFor(to, scratch);
    // The program opens files without the create flag, and an attached file
    // inherits it, so the target starts as an empty file.
    QFile empty(part);
    if (!empty.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return setError(
            error,
            QStringLiteral("无法写入文件 %1：%2").arg(to, plainWriteFault(empty.errorString())));
    empty.close();
    ExportWatch watch{
        &progress,
        qMax<qint64>(1, column(source->db(), "PRAGMA page_count").value(0).toLongLong())};
    sqlite3_progress_handler(source->db(), 1000, exportProgress, &watch);
    const QString sql =
        QStringLiteral(
            "ATTACH DATABASE '%1' AS tvexport KEY '%2'; "
            "SELECT sqlcipher_export('tvexport'); DETACH DATABASE tvexport;")
            .arg(tarveldatabase::SafeSql(part), QLatin1String(schema::kDatabasePassword));
    const bool exported = source->exec(sql, &why);
    sqlite3_progress_handler(source->db(), 0, nullptr, nullptr);
    if (!exported) source->exec(QStringLiteral("DETACH DATABASE tvexport"), nullptr);
    source->close();
    if (!exported) {
        removeFile(part);
        removeFile(part + QStringLiteral("-journal"));
        if (watch.stopped) return setError(error, Outcome::cancelledText());
        return setError(error, QStringLiteral("压缩数据文件失败：%1").arg(why));
    }
    if (!replaceFile(part, to, error)) {
        removeFile(part);
        return false;
    }
    if (progress) progress(100);
    return true;
}

bool settleDataFile(const QString& path, QString* error) {
    auto handle = Handle::open(path, QLatin1String(schema::kDatabasePassword), false, error);
    if (!handle) return false;
    handle->close();
    return true;
}

bool checkDataFile(const QString& path, QString* error) {
    QString why;
    auto handle = Handle::open(path, QLatin1String(schema::kDatabasePassword), false, &why);
    if (!handle) return setError(error, why);
    const QStringList present = column(handle->db(), "SELECT name FROM sqlite_master");
    if (present.isEmpty()) {
        handle->close();
        return setError(error, QStringLiteral("%1 不是Tarvel数据文件，或密码不符").arg(path));
    }
    const QSet<QString> have(present.cbegin(), present.cend());
    for (const QString& table : requiredTables()) {
        if (!have.contains(table)) {
            handle->close();
            return setError(error,
                            QStringLiteral("%1 不是Tarvel数据文件：缺少表 %2").arg(path, table));
        }
    }
    const QStringList check = column(handle->db(), "PRAGMA integrity_check");
    handle->close();
    if (check != QStringList{QStringLiteral("ok")})
        return setError(
            error, QStringLiteral("%1 已损坏：%2").arg(path, check.join(QStringLiteral("; "))));
    return true;
}

}  // namespace tarvel::exchange
