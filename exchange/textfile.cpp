#include "exchange/textfile.h"

#include <QFile>
#include <QSaveFile>

#include "exchange/textdecode.h"

namespace tarvel::exchange {

bool readTextFile(const QString& path, DecodedText* text, QString* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) *error = QStringLiteral("无法读取文件 %1：%2").arg(path, file.errorString());
        return false;
    }
    *text = decodeText(file.readAll());
    return true;
}

bool writeTextFile(const QString& path, const QString& text, bool byteOrderMark, QString* error) {
    QSaveFile file(path);
    const QByteArray bytes =
        (byteOrderMark ? QByteArray("\xEF\xBB\xBF") : QByteArray()) + text.toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    if (error) *error = QStringLiteral("无法写入文件 %1：%2").arg(path, file.errorString());
    return false;
}

}  // namespace tarvel::exchange
