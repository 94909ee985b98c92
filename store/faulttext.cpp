#include "store/faulttext.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace tarvel {

namespace {

const QString kDamaged = QStringLiteral(
    "数据文件已损坏，部分内容无法读取。请不要继续修改，用最近一次经过检验的备份恢复"
    "（数据交换 → 自动备份 → 恢复，恢复前的文件会另存一份）。");
const QString kReadOnly = QStringLiteral(
    "数据文件或它所在的文件夹是只读的，修改无法保存。请把整个数据文件夹复制到可以写入的位置"
    "（例如个人文件夹）后再打开，或取消文件的只读属性。");
const QString kFull = QStringLiteral(
    "磁盘已满，修改没有保存。请删除不需要的文件、腾出磁盘空间后再试；已保存的数据没有受影响。");
const QString kTooLong =
    QStringLiteral(
        "数据文件所在文件夹的路径太长（超过%1字节），无法打开；文件本身没有损坏。"
        "请把文件夹移到路径较短的位置（例如 D:\\Tarvel 或 ~/Tarvel）后再打开。")
        .arg(kLongestDataPath);

// Engine and file-system texts, lower case, and what each means to the user.
struct Known {
    const char* text;
    const QString* plain;
};
const Known kKnown[] = {
    {"database disk image is malformed", &kDamaged},
    {"file is encrypted or is not a database", &kDamaged},
    {"attempt to write a readonly database", &kReadOnly},
    {"read-only file system", &kReadOnly},
    {"permission denied", &kReadOnly},
    {"database or disk is full", &kFull},
    {"no space left on device", &kFull},
    {"disk quota exceeded", &kFull},
    {"file too large", &kFull},
};

}  // namespace

QString plainFault(const QString& engineText) {
    const QString lower = engineText.toLower();
    for (const Known& k : kKnown)
        if (lower.contains(QLatin1String(k.text))) return *k.plain;
    return engineText;
}

QString plainWriteFault(const QString& text) {
    // A write to a full disk that Qt's file classes could not name.
    if (text.trimmed().compare(QLatin1String("unknown error"), Qt::CaseInsensitive) == 0)
        return kFull;
    return plainFault(text);
}

bool pathTooLong(const QString& path) {
    return QFileInfo(path).absoluteFilePath().toUtf8().size() > kLongestDataPath;
}

QString plainOpenFault(const QString& engineText, const QString& path) {
    if (pathTooLong(path)) return kTooLong;
    return plainFault(engineText);
}

QString writeProblem(const QString& dataFile) {
    const QFileInfo file(dataFile);
    const QString folder = file.absolutePath();
#ifdef Q_OS_UNIX
    // access() also sees a read-only mount, which the permission bits do not show.
    const bool fileWritable = ::access(QFile::encodeName(file.absoluteFilePath()), W_OK) == 0;
    const bool folderWritable = ::access(QFile::encodeName(folder), W_OK) == 0;
#else
    const bool fileWritable = file.isWritable();
    const bool folderWritable = QFileInfo(folder).isWritable();
#endif
    if (file.exists() && !fileWritable)
        return QStringLiteral("数据文件 %1 是只读的。").arg(QDir::toNativeSeparators(dataFile)) +
               kReadOnly;
    if (!folderWritable)
        return QStringLiteral("数据文件所在的文件夹 %1 是只读的。")
                   .arg(QDir::toNativeSeparators(folder)) +
               kReadOnly;
    return {};
}

}  // namespace tarvel
