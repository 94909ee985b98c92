#pragma once

#include <QString>
#include <vector>

namespace tarvel::dialect {

enum class Kind { Space, Word, Number, String, Identifier, Mark, Punct };

// A piece of a statement on its way to the engine's dialect. `text` may be
// rewritten; `before` and `after` collect what is added around it (parentheses
// and conversions that keep the original operator precedence).
struct Token {
    Kind kind;
    QString text;
    QString before = {};
    QString after = {};
};
using Tokens = std::vector<Token>;

// Splits a statement into tokens: "double-quoted" text becomes 'single-quoted',
// [names] become "names", #dates# become quoted canonical text. False with a
// message when the text cannot be read.
bool tokenize(const QString& statement, Tokens& tokens, QString& error);

bool is(const Token& t, const char* word);
bool isPunct(const Token& t, const char* text);
// Index of the next (previous) non-space token, or -1.
qsizetype nextSolid(const Tokens& t, qsizetype i);
qsizetype prevSolid(const Tokens& t, qsizetype i);
// The text of tokens [from, to).
QString join(const Tokens& t, qsizetype from, qsizetype to);

}  // namespace tarvel::dialect
