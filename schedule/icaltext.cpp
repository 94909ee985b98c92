#include "schedule/icaltext.h"

#include <QRegularExpression>

namespace tarvel::ical {

QString escapeText(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('\\') || c == QLatin1Char(';') || c == QLatin1Char(',')) {
            out += QLatin1Char('\\');
            out += c;
        } else if (c == QLatin1Char('\r')) {
            if (i + 1 < text.size() && text[i + 1] == QLatin1Char('\n')) ++i;
            out += QStringLiteral("\\n");
        } else if (c == QLatin1Char('\n')) {
            out += QStringLiteral("\\n");
        } else {
            out += c;
        }
    }
    return out;
}

QString unescapeText(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('\\') || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const QChar next = text[++i];
        out +=
            next == QLatin1Char('n') || next == QLatin1Char('N') ? QChar(QLatin1Char('\n')) : next;
    }
    return out;
}

QByteArray foldedLine(const QString& line) {
    const QByteArray bytes = line.toUtf8();
    QByteArray out;
    int start = 0;
    int limit = 75;  // octets of the first line; continuation lines lose one to the blank
    while (bytes.size() - start > limit) {
        int end = start + limit;
        // Back off to the start of a UTF-8 sequence.
        while (end > start && (uchar(bytes[end]) & 0xC0) == 0x80) --end;
        out += bytes.mid(start, end - start);
        out += "\r\n ";
        start = end;
        limit = 74;
    }
    out += bytes.mid(start);
    out += "\r\n";
    return out;
}

QList<ContentLine> contentLines(const QByteArray& text) {
    // Unfold: a line break followed by a blank or tab continues the line.
    QByteArray unfolded = text;
    unfolded.replace("\r\n", "\n");
    unfolded.replace("\n ", "");
    unfolded.replace("\n\t", "");
    QList<ContentLine> lines;
    for (const QByteArray& raw : unfolded.split('\n')) {
        const QString s = QString::fromUtf8(raw).trimmed();
        if (s.isEmpty()) continue;
        // The value starts at the first colon outside a quoted parameter value.
        int colon = -1;
        bool quoted = false;
        for (int i = 0; i < s.size(); ++i) {
            if (s[i] == QLatin1Char('"')) quoted = !quoted;
            if (s[i] == QLatin1Char(':') && !quoted) {
                colon = i;
                break;
            }
        }
        if (colon < 0) continue;
        ContentLine line;
        line.value = s.mid(colon + 1);
        const QStringList head = s.left(colon).split(QLatin1Char(';'));
        line.name = head.first().trimmed().toUpper();
        for (int i = 1; i < head.size(); ++i) {
            const int eq = head[i].indexOf(QLatin1Char('='));
            if (eq < 0) continue;
            QString value = head[i].mid(eq + 1);
            value.remove(QLatin1Char('"'));
            line.params.insert(head[i].left(eq).trimmed().toUpper(), value);
        }
        lines << line;
    }
    return lines;
}

QString dateText(const QDate& date) {
    return date.toString(QStringLiteral("yyyyMMdd"));
}

QString dateTimeText(const QDateTime& value) {
    return value.toString(QStringLiteral("yyyyMMdd'T'HHmmss"));
}

QDateTime parseDateTime(const QString& value, bool* isDate, bool* utc) {
    static const QRegularExpression form(QStringLiteral("^(\\d{8})(?:T(\\d{6})(Z?))?$"));
    const QRegularExpressionMatch m = form.match(value.trimmed());
    if (!m.hasMatch()) return QDateTime();
    const QDate date = QDate::fromString(m.captured(1), QStringLiteral("yyyyMMdd"));
    const bool dateOnly = m.captured(2).isEmpty();
    const QTime time =
        dateOnly ? QTime(0, 0) : QTime::fromString(m.captured(2), QStringLiteral("HHmmss"));
    if (isDate) *isDate = dateOnly;
    if (utc) *utc = m.captured(3) == QLatin1String("Z");
    if (!date.isValid() || !time.isValid()) return QDateTime();
    return QDateTime(date, time);
}

}  // namespace tarvel::ical
