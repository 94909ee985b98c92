#pragma once

#include <QString>
#include <QStringView>

namespace tarvel::dialect {

enum class LexemeKind {
    Space,
    Word,       // a name or keyword
    Number,     // digits, with an optional fraction and exponent
    String,     // '...' or "...", quotes included
    Bracketed,  // [name], brackets included
    Date,       // #...#, signs included
    Mark,       // a ? standing for a value the caller binds
    Punct,      // an operator or separator; <> <= >= != || are one lexeme
};

struct Lexeme {
    LexemeKind kind;
    qsizetype start;
    qsizetype size;
};

// Cuts a statement of the program's dialect into lexemes. Everything that reads
// dialect text goes through this one lexer, so all agree on where quoted text,
// [names] and #dates# begin and end.
class Lexer {
public:
    explicit Lexer(QStringView text) : s_(text) {}

    // The next lexeme; false at the end of the text or when the text cannot be
    // read on (an unterminated quote, bracket or date), error() then says why.
    bool next(Lexeme& out);
    const QString& error() const { return error_; }
    QStringView text(const Lexeme& l) const { return s_.mid(l.start, l.size); }
    // The character right after a lexeme, or a null character at the end.
    QChar after(const Lexeme& l) const {
        const qsizetype end = l.start + l.size;
        return end < s_.size() ? s_[end] : QChar();
    }

private:
    bool quoted(QChar quote, qsizetype& i);
    QStringView s_;
    qsizetype pos_ = 0;
    QString error_;
};

inline bool isDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}
inline bool isWordStart(QChar c) {
    const char16_t u = c.unicode();
    if (u < 128) return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || u == '_';
    return c.isLetter();
}
inline bool isWordChar(QChar c) {
    return isWordStart(c) || isDigit(c) || (c.unicode() >= 128 && c.isNumber());
}

}  // namespace tarvel::dialect
