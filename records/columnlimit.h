#pragma once

#include <QString>

namespace tarvel::columnlimit {

// What a record column holds and how a longer text is made to fit. A column
// holds characters counted as Unicode code points (an emoji is one, however
// it is encoded); a cut keeps whole user-visible characters only, so it never
// splits a surrogate pair, a base letter from its combining marks, or an
// emoji sequence.

// The most characters `column` holds ("con_lastname" -> 50); 0 when it holds
// any length (memos, numbers, dates, columns of no record table).
int width(const QString& column);

// The characters of `text` as a column counts them.
qsizetype length(const QString& text);

// `text` itself when it has at most `limit` characters (or `limit` is 0),
// else its longest beginning of whole characters within the limit.
QString cut(const QString& text, int limit);

// True when `text` is longer than `limit` (0: never).
bool exceeds(const QString& text, int limit);

// Where a text of `limit` characters ends in `text`, in UTF-16 units: the
// size of cut(text, limit).
qsizetype cutPosition(const QString& text, int limit);

// The calm note a field shows at its limit: "最多50个字".
QString limitNote(int limit);

}  // namespace tarvel::columnlimit
