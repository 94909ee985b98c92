#include "store/dialectlexer.h"

namespace tarvel::dialect {

namespace {

// Operators of two characters: <> <= >= != ||.
bool isPair(QChar first, QChar second) {
    const char16_t a = first.unicode();
    const char16_t b = second.unicode();
    return (a == '<' && (b == '>' || b == '=')) || ((a == '>' || a == '!') && b == '=') ||
           (a == '|' && b == '|');
}

}  // namespace

// Moves i past a quoted text that starts at i; a doubled quote stays inside.
bool Lexer::quoted(QChar quote, qsizetype& i) {
    const qsizetype n = s_.size();
    for (++i; i < n; ++i) {
        if (s_[i] != quote) continue;
        if (i + 1 < n && s_[i + 1] == quote) {
            ++i;
            continue;
        }
        ++i;
        return true;
    }
    error_ = QStringLiteral("文本缺少结尾的引号：") + s_.mid(pos_).toString();
    return false;
}

bool Lexer::next(Lexeme& out) {
    const qsizetype n = s_.size();
    qsizetype i = pos_;
    if (i >= n || !error_.isEmpty()) return false;
    const QChar c = s_[i];
    LexemeKind kind = LexemeKind::Punct;
    if (c.isSpace()) {
        kind = LexemeKind::Space;
        while (i < n && s_[i].isSpace()) ++i;
    } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
        kind = LexemeKind::String;
        if (!quoted(c, i)) return false;
    } else if (c == QLatin1Char('[') || c == QLatin1Char('#')) {
        const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : c;
        const qsizetype end = s_.indexOf(close, i + 1);
        if (end < 0) {
            error_ = (c == QLatin1Char('[') ? QStringLiteral("名称缺少结尾的“]”：")
                                            : QStringLiteral("日期缺少结尾的“#”：")) +
                     s_.mid(i).toString();
            return false;
        }
        kind = c == QLatin1Char('[') ? LexemeKind::Bracketed : LexemeKind::Date;
        i = end + 1;
    } else if (isDigit(c) || (c == QLatin1Char('.') && i + 1 < n && isDigit(s_[i + 1]))) {
        kind = LexemeKind::Number;
        while (i < n && isDigit(s_[i])) ++i;
        if (i < n && s_[i] == QLatin1Char('.')) {
            ++i;
            while (i < n && isDigit(s_[i])) ++i;
        }
        if (i + 1 < n && (s_[i] == QLatin1Char('e') || s_[i] == QLatin1Char('E'))) {
            qsizetype j = i + 1;
            if (j < n && (s_[j] == QLatin1Char('+') || s_[j] == QLatin1Char('-'))) ++j;
            if (j < n && isDigit(s_[j])) {
                while (j < n && isDigit(s_[j])) ++j;
                i = j;
            }
        }
    } else if (isWordStart(c)) {
        kind = LexemeKind::Word;
        while (i < n && isWordChar(s_[i])) ++i;
    } else if (c == QLatin1Char('?')) {
        kind = LexemeKind::Mark;
        ++i;
    } else {
        i += i + 1 < n && isPair(c, s_[i + 1]) ? 2 : 1;
    }
    out = {kind, pos_, i - pos_};
    pos_ = i;
    return true;
}

}  // namespace tarvel::dialect
