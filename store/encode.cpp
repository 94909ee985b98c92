#include "store/encode.h"

#include <QCryptographicHash>

namespace tarvel {

QString encode::MD5(const QString& text) const {
    return QString::fromLatin1(
        QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex());
}

}  // namespace tarvel
