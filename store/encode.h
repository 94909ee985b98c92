#pragma once

#include <QString>

namespace tarvel {

class encode {
public:
    // RFC 1321 digest of the text's UTF-8 bytes, as 32 lower-case hex characters.
    QString MD5(const QString& text) const;
};

}  // namespace tarvel
