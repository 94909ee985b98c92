#include "exchange/vcardsyntax.h"

#include <QStringDecoder>

#include "exchange/textdecode.h"

namespace tarvel::exchange {

namespace {

struct RawLine {
    QByteArray bytes;
    int number;
};

// Physical lines: CR LF, LF, a lone CR and CR CR LF each end one line. The
// lines share `bytes` (which must outlive them) until one is changed.
QList<RawLine> physicalLines(const QByteArray& bytes) {
    QList<RawLine> lines;
    const qsizetype n = bytes.size();
    qsizetype start = 0, i = 0;
    int number = 1;
    while (i < n) {
        const char c = bytes[i];
        if (c != '\n' && c != '\r') {
            ++i;
            continue;
        }
        lines.append({QByteArray::fromRawData(bytes.constData() + start, i - start), number++});
        if (c == '\r') {
            while (i < n && bytes[i] == '\r') ++i;
            if (i < n && bytes[i] == '\n') ++i;
        } else {
            ++i;
        }
        start = i;
    }
    if (start < n)
        lines.append({QByteArray::fromRawData(bytes.constData() + start, n - start), number});
    return lines;
}

bool isKeyword(const QByteArray& line, const char* word) {
    return line.trimmed().compare(word, Qt::CaseInsensitive) == 0;
}

// Index of the first `c` outside double quotes, or -1.
qsizetype unquotedIndex(const QByteArray& line, char c, qsizetype from = 0) {
    bool quoted = false;
    for (qsizetype i = from; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == c && !quoted)
            return i;
    }
    return -1;
}

bool headSays(const QByteArray& line, const char* word) {
    const qsizetype colon = unquotedIndex(line, ':');
    return line.left(colon < 0 ? line.size() : colon).toUpper().contains(word);
}

bool isQuotedPrintable(const QByteArray& line) {
    return headSays(line, "QUOTED-PRINTABLE");
}

bool isBase64(const QByteArray& line) {
    return headSays(line, "BASE64") || headSays(line, "ENCODING=B");
}

// Joins a card's physical lines into content lines: a line beginning with a
// blank or tab continues the one before (vCard 2.1 keeps that blank, later
// versions drop it); a quoted-printable line ending in '=' continues on the
// next; unindented base64 lines continue their photo.
QList<RawLine> contentLines(const QList<RawLine>& lines, bool oldStyle) {
    QList<RawLine> out;
    bool open = false;
    for (const RawLine& line : lines) {
        const QByteArray& b = line.bytes;
        if (b.isEmpty()) {
            open = false;
            continue;
        }
        const bool indented = b[0] == ' ' || b[0] == '\t';
        if (open && indented) {
            out.last().bytes += oldStyle ? b : b.mid(1);
        } else if (open && out.last().bytes.endsWith('=') && isQuotedPrintable(out.last().bytes)) {
            out.last().bytes.chop(1);
            out.last().bytes += b;
        } else if (open && !b.contains(':') && isBase64(out.last().bytes)) {
            out.last().bytes += b;
        } else {
            out.append(line);
            open = true;
        }
    }
    return out;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

QByteArray quotedPrintableDecoded(const QByteArray& in) {
    QByteArray out;
    out.reserve(in.size());
    for (qsizetype i = 0; i < in.size(); ++i) {
        if (in[i] == '=' && i + 2 < in.size() && hexDigit(in[i + 1]) >= 0 &&
            hexDigit(in[i + 2]) >= 0) {
            out += char(hexDigit(in[i + 1]) * 16 + hexDigit(in[i + 2]));
            i += 2;
        } else if (in[i] == '=' && i + 1 == in.size()) {
            // A soft break with nothing after it.
        } else {
            out += in[i];
        }
    }
    return out;
}

bool isAscii(const QByteArray& bytes) {
    for (const char c : bytes)
        if (uchar(c) >= 0x80) return false;
    return true;
}

bool isBase64Text(const QByteArray& bytes) {
    qsizetype end = bytes.size();
    while (end > 0 && bytes[end - 1] == '=') --end;
    if (bytes.size() - end > 2) return false;
    for (qsizetype i = 0; i < end; ++i) {
        const char c = bytes[i];
        if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
              c == '+' || c == '/'))
            return false;
    }
    return true;
}

QString unquoted(const QByteArray& value) {
    QByteArray v = value.trimmed();
    if (v.size() >= 2 && v.startsWith('"') && v.endsWith('"')) v = v.mid(1, v.size() - 2);
    return QString::fromUtf8(v);
}

bool isBinaryProperty(const QString& name) {
    return name == QLatin1String("PHOTO") || name == QLatin1String("LOGO") ||
           name == QLatin1String("SOUND") || name == QLatin1String("KEY");
}

// A value's bytes before decoding, and its CHARSET.
struct RawValue {
    QByteArray bytes;
    QString charset;
};

struct Reader {
    QByteArray fileEncoding;
    bool unicodeFile = false;            // the file was UTF-16: every value is UTF-8 now
    mutable QHash<QString, bool> known;  // CHARSET names asked about already

    bool knownCharset(const QString& charset) const {
        const auto it = known.constFind(charset);
        if (it != known.constEnd()) return *it;
        return *known.insert(charset, knownEncoding(charset.toLatin1()));
    }

    // The text of `bytes`; `bad` when some bytes are not valid in the charset.
    QString decoded(const QByteArray& bytes, const QString& charset, bool* bad) const {
        if (isAscii(bytes)) return QString::fromLatin1(bytes);
        QByteArray encoding = fileEncoding;
        if (!unicodeFile && !charset.isEmpty()) {
            if (knownCharset(charset))
                encoding = charset.toLatin1();
            else
                *bad = true;  // an unknown CHARSET: read as the file, but say so
        }
        if (unicodeFile || encoding.compare("UTF-8", Qt::CaseInsensitive) == 0) {
            QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
            QString text = utf8(bytes);
            if (utf8.hasError()) *bad = true;
            return text;
        }
        const DecodedText text = decodeAs(bytes, encoding);
        if (!text.badLines.isEmpty() || text.encoding.isEmpty()) *bad = true;
        return text.text;
    }

    // The property of a content line; false when the line is not one.
    // `brokenBinary` is set when its base64 is damaged.
    bool parse(const RawLine& line, VCardProperty* p, RawValue* value, bool* brokenBinary) const {
        const qsizetype colon = unquotedIndex(line.bytes, ':');
        if (colon <= 0) return false;
        const QByteArray head = line.bytes.left(colon);
        QByteArray raw = line.bytes.mid(colon + 1);
        QList<QByteArray> pieces;
        for (qsizetype from = 0;;) {
            const qsizetype semi = unquotedIndex(head, ';', from);
            pieces << head.mid(from, semi < 0 ? -1 : semi - from);
            if (semi < 0) break;
            from = semi + 1;
        }
        const QByteArray fullName = pieces.takeFirst().trimmed();
        const qsizetype dot = fullName.lastIndexOf('.');
        p->group = QString::fromLatin1(fullName.left(qMax<qsizetype>(dot, 0))).toUpper();
        p->name = QString::fromLatin1(fullName.mid(dot + 1)).toUpper();
        p->line = line.number;
        QString encoding, charset;
        for (const QByteArray& piece : std::as_const(pieces)) {
            const qsizetype eq = piece.indexOf('=');
            const QString key =
                QString::fromLatin1(piece.left(eq < 0 ? piece.size() : eq)).trimmed().toUpper();
            if (key.isEmpty()) continue;
            const QString value = eq < 0 ? QString() : unquoted(piece.mid(eq + 1));
            if (key == QLatin1String("ENCODING"))
                encoding = value.toUpper();
            else if (key == QLatin1String("CHARSET"))
                charset = value;
            else if (eq < 0 && (key == QLatin1String("QUOTED-PRINTABLE") ||
                                key == QLatin1String("BASE64") || key == QLatin1String("8BIT")))
                encoding = key;
            else if (eq < 0)
                p->types << key.toLower();
            else if (key == QLatin1String("TYPE"))
                for (const QString& t : value.split(QLatin1Char(','), Qt::SkipEmptyParts))
                    p->types << t.trimmed().toLower();
            else
                p->parameters.insert(key, value);
        }
        const bool base64 = encoding == QLatin1String("B") || encoding == QLatin1String("BASE64");
        if (base64) {
            QByteArray compact = raw;
            compact.replace(' ', QByteArray()).replace('\t', QByteArray());
            // Bytes that are no base64 at all mean the card itself is garbled; a
            // photo that is merely cut short harms nothing, as photos are not kept.
            if (!isBase64Text(compact)) {
                *brokenBinary = true;
                return false;
            }
            if (isBinaryProperty(p->name)) return false;
            raw = QByteArray::fromBase64(compact);
        }
        if (isBinaryProperty(p->name)) return false;  // photos and the like are not kept
        if (encoding == QLatin1String("QUOTED-PRINTABLE")) raw = quotedPrintableDecoded(raw);
        *value = {raw, charset};
        return true;
    }

    // Decides the encoding of values without a CHARSET from their bytes (not
    // the file's: folds and quoted-printable hide them), then decodes each.
    void decode(QList<VCardCard>* cards, const QList<QList<RawValue>>& raws) {
        if (!unicodeFile) {
            QByteArray sample;
            for (const QList<RawValue>& card : raws)
                for (const RawValue& v : card)
                    if (v.charset.isEmpty() && !isAscii(v.bytes)) sample += v.bytes + '\n';
            const QByteArray detected = sample.isEmpty() ? QByteArray() : detectEncoding(sample);
            fileEncoding = detected.isEmpty() || detected.startsWith("UTF-16") ? QByteArray("UTF-8")
                                                                               : detected;
        }
        for (qsizetype c = 0; c < cards->size(); ++c) {
            for (qsizetype i = 0; i < raws[c].size(); ++i) {
                VCardProperty& p = (*cards)[c].properties[i];
                p.value = decoded(raws[c][i].bytes, raws[c][i].charset, &p.badBytes);
                if (p.value.contains(QLatin1Char('\r'))) {
                    p.value.replace(QLatin1String("\r\n"), QLatin1String("\n"));
                    p.value.replace(QLatin1Char('\r'), QLatin1Char('\n'));
                }
            }
        }
    }

    // The card of a card's physical lines, or a sentence saying why not.
    bool card(const QList<RawLine>& lines, int number, VCardCard* card, QList<RawValue>* values,
              QString* why) const {
        for (const RawLine& line : lines) {
            const QByteArray start = line.bytes.left(8).toUpper();
            if (start == "VERSION:") {
                card->version = QString::fromLatin1(line.bytes.mid(8).trimmed());
                break;
            }
        }
        const QList<RawLine> content = contentLines(lines, card->oldStyle());
        card->properties.reserve(content.size());
        values->reserve(content.size());
        for (const RawLine& line : content) {
            VCardProperty p;
            RawValue value;
            bool brokenBinary = false;
            if (parse(line, &p, &value, &brokenBinary)) {
                card->properties.append(std::move(p));
                values->append(std::move(value));
            } else if (brokenBinary) {
                *why = QStringLiteral("第%1张名片（第%2行起）第%3行的base64数据已损坏")
                           .arg(number)
                           .arg(card->firstLine)
                           .arg(line.number);
                return false;
            }
        }
        return true;
    }
};

}  // namespace

const VCardProperty* VCardCard::find(const QString& name) const {
    for (const VCardProperty& p : properties)
        if (p.name == name) return &p;
    return nullptr;
}

VCardText readVCardText(const QByteArray& input) {
    VCardText out;
    Reader reader;
    QByteArray bytes = input;
    // "BEGIN:VCARD" in UTF-16 holds zero bytes; only then is the whole file text first.
    const bool wide =
        input.startsWith("\xFF\xFE") || input.startsWith("\xFE\xFF") || input.contains('\0');
    const QByteArray detected = wide ? detectEncoding(input) : QByteArray();
    if (detected.startsWith("UTF-16") || detected.startsWith("UTF-32")) {
        bytes = decodeText(input).text.toUtf8();
        reader.unicodeFile = true;
        reader.fileEncoding = "UTF-8";
    } else if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes.remove(0, 3);
    }
    QList<QList<RawValue>> raws;

    QList<RawLine> lines;
    bool inCard = false;
    int firstLine = 0, number = 0;
    auto finish = [&] {
        VCardCard card;
        card.firstLine = firstLine;
        card.number = number;
        QString why;
        QList<RawValue> values;
        if (reader.card(lines, number, &card, &values, &why)) {
            out.cards.append(std::move(card));
            raws.append(std::move(values));
        } else {
            out.broken << why;
        }
    };
    auto unfinished = [&] {
        out.broken << QStringLiteral("第%1张名片（第%2行起）没有结束行END:VCARD")
                          .arg(number)
                          .arg(firstLine);
    };
    for (const RawLine& line : physicalLines(bytes)) {
        if (isKeyword(line.bytes, "BEGIN:VCARD")) {
            if (inCard) unfinished();
            inCard = true;
            firstLine = line.number;
            ++number;
            lines.clear();
        } else if (inCard && isKeyword(line.bytes, "END:VCARD")) {
            inCard = false;
            finish();
        } else if (inCard) {
            lines << line;
        }
    }
    if (inCard) unfinished();
    reader.decode(&out.cards, raws);
    out.encoding = reader.unicodeFile ? detected : reader.fileEncoding;
    return out;
}

QString vcardUnescaped(const QString& value, bool oldStyle) {
    if (!value.contains(QLatin1Char('\\'))) return value;
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out += c;
            continue;
        }
        const QChar next = value[i + 1];
        if (oldStyle && next != QLatin1Char(';')) {
            out += c;
            continue;
        }
        ++i;
        out += (next == QLatin1Char('n') || next == QLatin1Char('N')) ? QChar(QLatin1Char('\n'))
                                                                      : next;
    }
    return out;
}

QStringList vcardParts(const QString& value, QChar separator, bool oldStyle) {
    QStringList parts;
    qsizetype start = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == QLatin1Char('\\') && i + 1 < value.size()) {
            // In 2.1 only "\;" is an escape; "\\;" there is a backslash and a separator.
            if (!oldStyle || value[i + 1] == QLatin1Char(';')) ++i;
        } else if (value[i] == separator) {
            parts << vcardUnescaped(value.mid(start, i - start), oldStyle);
            start = i + 1;
        }
    }
    parts << vcardUnescaped(value.mid(start), oldStyle);
    return parts;
}

}  // namespace tarvel::exchange
