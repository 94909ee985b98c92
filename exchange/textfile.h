#pragma once

#include <QByteArray>
#include <QString>

namespace tarvel::exchange {

// Text of a file written by another program: UTF-8 with or without a
// byte-order mark, else GB18030 (what a Chinese spreadsheet writes).
QString decodeText(const QByteArray& bytes);

// Reads and decodes a whole text file; false with the reason in `error`.
bool readTextFile(const QString& path, QString* text, QString* error);

// Writes `text` as UTF-8 (with a byte-order mark when asked, which spreadsheet
// programs need to see UTF-8); the file appears only when complete.
bool writeTextFile(const QString& path, const QString& text, bool byteOrderMark, QString* error);

}  // namespace tarvel::exchange
