#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace tarvel::lists {

// The engine's `value LIKE pattern [ESCAPE escape]` over UTF-8: '%' stands
// for any run of characters, '_' for one character, a character after the
// escape for itself (an escape that ends the pattern matches nothing), and
// letters compare case-insensitively for ASCII only, as the engine compares
// them.
class LikePattern {
public:
    explicit LikePattern(const QString& pattern, QChar escape = QChar());
    bool matches(const char* text, qsizetype size) const;

private:
    // A run of the pattern between two '%': bytes to compare (UTF-8, ASCII
    // letters in lower case), with one flag per byte for a '_'.
    struct Piece {
        QByteArray bytes;
        std::vector<bool> any;
        bool plain = true;  // no '_'
    };
    bool matchHere(const Piece& piece, const char* t, const char* tEnd, const char** end) const;
    const char* findPiece(const Piece& piece, const char* t, const char* tEnd, bool toEnd,
                          const char** end) const;

    std::vector<Piece> pieces_;
    bool anchoredStart_ = true;  // no '%' before the first piece
    bool anchoredEnd_ = true;    // no '%' after the last piece
    bool matchesNothing_ = false;
};

// The text in the form LikePattern reads it: UTF-8 with ASCII letters in
// lower case.
QByteArray likeFolded(const QString& text);

}  // namespace tarvel::lists
