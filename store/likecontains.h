#pragma once

#include <QString>
#include <optional>

namespace tarvel {

// Every LIKE the program builds from typed text finds the characters typed:
// when the text holds a wildcard ('%' or '_'), each wildcard and each escape
// character is preceded by kLikeEscape and the operand carries the engine's
// ESCAPE clause. Text without wildcards is written as typed, so ordinary
// searches keep the statements they always had.
inline constexpr char16_t kLikeEscape = u'\\';

// The pattern the engine compares: "%" + the text, escaped as above, + "%".
QString likeContainsPattern(const QString& text);

// The operand that follows "column LIKE " to find `text` anywhere in a
// value: the pattern quoted, its quotes doubled, and " ESCAPE '\'" when the
// pattern holds escapes. Every search builder writes its LIKE through this.
QString likeContains(const QString& text);

// An operand likeContains wrote, read back from the start of `sql`.
struct LikeOperand {
    QString text;      // as typed
    qsizetype length;  // how much of `sql` the operand takes
};
// Nothing when `sql` does not start with such an operand. An operand without
// an escape clause gives its text as it stands.
std::optional<LikeOperand> readLikeContains(QStringView sql);

}  // namespace tarvel
