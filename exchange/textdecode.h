#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tarvel::exchange {

// Text of another program's file and how it was read.
struct DecodedText {
    QString text;
    QByteArray encoding;  // the name the text was decoded with
    // 1-based lines holding bytes that are not valid in `encoding`; each such
    // byte reads as U+FFFD, so the rest of the line and the file stay intact.
    QList<int> badLines;
    // A sentence naming the bad lines for the user; empty when there are none.
    QString problem() const;
};

// The encoding of a file's bytes, decided from the bytes alone: a byte-order
// mark, UTF-16 without one, UTF-8 (also when a few bytes are damaged: they are
// named, the file is not read as something else), else the legacy encoding
// that reads the bytes without error and is likeliest ("GB18030", "Big5",
// "Shift_JIS", "EUC-KR", "windows-1252", ...).
QByteArray detectEncoding(const QByteArray& bytes);

// Detects and decodes; a byte-order mark is left out of the text.
DecodedText decodeText(const QByteArray& bytes);

// Decodes with a named encoding (a vCard's CHARSET, say). Common labels map
// to the superset that programs really write (GB2312 and GBK to GB18030,
// Shift_JIS to its Windows form, ISO-8859-1 to windows-1252). An unknown name
// gives empty text with `encoding` empty and every line bad.
DecodedText decodeAs(const QByteArray& bytes, const QByteArray& encoding);

// True when decodeAs knows the name.
bool knownEncoding(const QByteArray& name);

}  // namespace tarvel::exchange
