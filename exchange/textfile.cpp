#include "exchange/textfile.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

namespace tarvel::exchange {

QString decodeText(const QByteArray& bytes) {
    static const QByteArray bom("\xEF\xBB\xBF");
    if (bytes.startsWith(bom)) return QString::fromUtf8(bytes.mid(bom.size()));
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    if (!utf8.hasError()) return text;
    QStringDecoder gb18030("GB18030");
    return gb18030.isValid() ? QString(gb18030.decode(bytes)) : text;
}

bool readTextFile(const QString& path, QString* text, QString* error) {
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
