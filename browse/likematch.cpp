#include "browse/likematch.h"

#include <string.h>

#include <cstring>

namespace tarvel::lists {

namespace {

char fold(char c) {
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

// The length in bytes of the UTF-8 character that starts with `lead`.
qsizetype charLength(char lead) {
    const auto b = static_cast<unsigned char>(lead);
    if (b < 0xC0) return 1;
    if (b < 0xE0) return 2;
    if (b < 0xF0) return 3;
    return 4;
}

// Whether `p` (no '%') matches the text at `t` exactly, '_' taking one
// character; on success `*end` is where the match stops.
bool matchHere(const char* p, const char* pEnd, const char* t, const char* tEnd, const char** end) {
    while (p < pEnd) {
        if (t >= tEnd) return false;
        if (*p == '_') {
            t += charLength(*t);
            ++p;
            continue;
        }
        if (*p != fold(*t)) return false;
        ++p;
        ++t;
    }
    *end = t > tEnd ? tEnd : t;
    return t <= tEnd;
}

}  // namespace

QByteArray likeFolded(const QString& text) {
    QByteArray out = text.toUtf8();
    for (char& c : out) c = fold(c);
    return out;
}

LikePattern::LikePattern(const QString& pattern) : pattern_(likeFolded(pattern)) {}

bool LikePattern::matches(const char* text, qsizetype size) const {
    const char* p = pattern_.constData();
    const char* pEnd = p + pattern_.size();
    const char* t = text;
    const char* tEnd = text + size;
    bool anchored = true;  // no '%' seen yet: the piece must start where the text does
    while (true) {
        while (p < pEnd && *p == '%') {
            anchored = false;
            ++p;
        }
        if (p == pEnd) return !anchored ? true : t == tEnd;
        const char* pieceEnd = p;
        while (pieceEnd < pEnd && *pieceEnd != '%') ++pieceEnd;
        const bool last = pieceEnd == pEnd;
        const char* end = nullptr;
        if (anchored) {
            if (!matchHere(p, pieceEnd, t, tEnd, &end)) return false;
        } else {
            // The earliest place the piece fits leaves the most room for the
            // rest; the last piece must end with the text, so it may need a
            // later place.
            const char* at = t;
            bool found = false;
            if (!last && std::memchr(p, '_', size_t(pieceEnd - p)) == nullptr) {
                // A plain piece: the byte search finds its first place at once.
                at = static_cast<const char*>(memmem(t, size_t(tEnd - t), p, size_t(pieceEnd - p)));
                if (!at) return false;
                end = at + (pieceEnd - p);
                found = true;
            }
            for (; !found && at <= tEnd; at += at < tEnd ? charLength(*at) : 1) {
                if (matchHere(p, pieceEnd, at, tEnd, &end) && (!last || end == tEnd)) {
                    found = true;
                    break;
                }
            }
            if (!found) return false;
        }
        if (last) return end == tEnd;
        t = end;
        p = pieceEnd;
        anchored = false;
    }
}

}  // namespace tarvel::lists
