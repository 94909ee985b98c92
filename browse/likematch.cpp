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

}  // namespace

QByteArray likeFolded(const QString& text) {
    QByteArray out = text.toUtf8();
    for (char& c : out) c = fold(c);
    return out;
}

LikePattern::LikePattern(const QString& pattern, QChar escape) {
    Piece piece;
    bool open = true;  // a piece is being read (none yet after a '%')
    const auto closePiece = [&] {
        if (!piece.bytes.isEmpty()) pieces_.push_back(std::move(piece));
        piece = Piece();
    };
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        QChar c = pattern[i];
        bool literal = false;
        if (!escape.isNull() && c == escape) {
            if (++i == pattern.size()) {
                matchesNothing_ = true;
                return;
            }
            c = pattern[i];
            literal = true;
        }
        if (!literal && c == QLatin1Char('%')) {
            if (pieces_.empty() && piece.bytes.isEmpty()) anchoredStart_ = false;
            closePiece();
            open = false;
            continue;
        }
        open = true;
        if (!literal && c == QLatin1Char('_')) {
            piece.bytes += '_';
            piece.any.push_back(true);
            piece.plain = false;
            continue;
        }
        // A character outside the basic plane comes as two halves, taken together.
        qsizetype n = 1;
        if (c.isHighSurrogate() && i + 1 < pattern.size() && pattern[i + 1].isLowSurrogate()) n = 2;
        const QByteArray bytes = likeFolded(pattern.mid(i, n));
        i += n - 1;
        piece.bytes += bytes;
        piece.any.insert(piece.any.end(), size_t(bytes.size()), false);
    }
    anchoredEnd_ = open;
    closePiece();
}

// Whether `piece` matches the text at `t`, '_' taking one character; on
// success `*end` is where the match stops.
bool LikePattern::matchHere(const Piece& piece, const char* t, const char* tEnd,
                            const char** end) const {
    const char* p = piece.bytes.constData();
    for (qsizetype i = 0; i < piece.bytes.size(); ++i) {
        if (t >= tEnd) return false;
        if (piece.any[size_t(i)]) {
            t += charLength(*t);
            continue;
        }
        if (p[i] != fold(*t)) return false;
        ++t;
    }
    if (t > tEnd) return false;  // a character cut short at the end
    *end = t;
    return true;
}

// The earliest place at or after `t` where `piece` matches (when `toEnd`:
// matches up to the end of the text); null when there is none.
const char* LikePattern::findPiece(const Piece& piece, const char* t, const char* tEnd, bool toEnd,
                                   const char** end) const {
    const auto length = size_t(piece.bytes.size());
    if (piece.plain && !toEnd) {
        // A plain piece: the byte search finds its first place at once.
        const auto* at =
            static_cast<const char*>(memmem(t, size_t(tEnd - t), piece.bytes.constData(), length));
        if (at) *end = at + length;
        return at;
    }
    if (piece.plain) {
        if (size_t(tEnd - t) < length) return nullptr;
        const char* at = tEnd - length;
        if (std::memcmp(at, piece.bytes.constData(), length) != 0) return nullptr;
        *end = tEnd;
        return at;
    }
    for (const char* at = t; at < tEnd; at += charLength(*at))
        if (matchHere(piece, at, tEnd, end) && (!toEnd || *end == tEnd)) return at;
    return nullptr;
}

bool LikePattern::matches(const char* text, qsizetype size) const {
    if (matchesNothing_) return false;
    const char* t = text;
    const char* tEnd = text + size;
    if (pieces_.empty()) return !anchoredStart_ ? true : t == tEnd;
    for (size_t i = 0; i < pieces_.size(); ++i) {
        const Piece& piece = pieces_[i];
        const bool last = i + 1 == pieces_.size();
        const char* end = nullptr;
        if (i == 0 && anchoredStart_) {
            if (!matchHere(piece, t, tEnd, &end)) return false;
            if (last && anchoredEnd_ && end != tEnd) return false;
        } else if (!findPiece(piece, t, tEnd, last && anchoredEnd_, &end)) {
            // The earliest place leaves the most room for the pieces after it.
            return false;
        }
        t = end;
    }
    return true;
}

}  // namespace tarvel::lists
