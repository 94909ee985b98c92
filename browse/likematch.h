#pragma once

#include <QByteArray>
#include <QString>

namespace tarvel::lists {

// The engine's `value LIKE pattern` without an ESCAPE clause, over UTF-8:
// '%' stands for any run of characters, '_' for one character, and letters
// compare case-insensitively for ASCII only, as the engine compares them.
class LikePattern {
public:
    explicit LikePattern(const QString& pattern);
    bool matches(const char* text, qsizetype size) const;

private:
    QByteArray pattern_;  // UTF-8, ASCII letters in lower case
};

// The text in the form LikePattern reads it: UTF-8 with ASCII letters in
// lower case.
QByteArray likeFolded(const QString& text);

}  // namespace tarvel::lists
