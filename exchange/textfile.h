#pragma once

#include <QByteArray>
#include <QString>

namespace tarvel::exchange {

struct DecodedText;

// Reads a whole text file of another program and decodes it by its bytes
// (see decodeText); false with the reason in `error`.
bool readTextFile(const QString& path, DecodedText* text, QString* error);

// Writes `text` as UTF-8 (with a byte-order mark when asked, which spreadsheet
// programs need to see UTF-8); the file appears only when complete.
bool writeTextFile(const QString& path, const QString& text, bool byteOrderMark, QString* error);

}  // namespace tarvel::exchange
