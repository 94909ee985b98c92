#include "store/jetdate.h"

#include <QRegularExpression>
#include <QVariant>

namespace tarvel::jetdate {

QDateTime naive(const QDate& date, const QTime& time) {
    return QDateTime(date, time, Qt::UTC);
}

QString canonical(const QDateTime& value) {
    return value.date().toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ') +
           value.time().toString(QStringLiteral("HH:mm:ss"));
}

QString canonical(const QDate& value) {
    return canonical(naive(value));
}

QString canonicalTime(const QTime& value) {
    return canonical(naive(timeBaseDate(), value));
}

namespace {
template <typename Text>
int digits(Text text, qsizetype from, qsizetype count) {
    int result = 0;
    for (qsizetype i = from; i < from + count; ++i) {
        const QChar c = text[i];
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return -1;
        result = result * 10 + (c.unicode() - '0');
    }
    return result;
}

template <typename Text>
std::optional<QDateTime> parseCanonical(Text text) {
    if (text.size() != 19 || text[4] != QLatin1Char('-') || text[7] != QLatin1Char('-') ||
        text[10] != QLatin1Char(' ') || text[13] != QLatin1Char(':') ||
        text[16] != QLatin1Char(':'))
        return std::nullopt;
    const int y = digits(text, 0, 4), mo = digits(text, 5, 2), d = digits(text, 8, 2);
    const int h = digits(text, 11, 2), mi = digits(text, 14, 2), s = digits(text, 17, 2);
    const QDate date(y, mo, d);
    const QTime time(h, mi, s);
    if (y < 0 || mo < 0 || d < 0 || h < 0 || mi < 0 || s < 0 || !date.isValid() || !time.isValid())
        return std::nullopt;
    return naive(date, time);
}
}  // namespace

std::optional<QDateTime> fromCanonical(QStringView text) {
    return parseCanonical(text);
}

std::optional<QDateTime> fromCanonical(QLatin1String bytes) {
    return parseCanonical(bytes);
}

bool isCanonical(QStringView text) {
    return fromCanonical(text).has_value();
}

namespace {
std::optional<QTime> parseTimePart(QString text) {
    static const QRegularExpression re(
        QStringLiteral("^(\\d{1,2})\\s*:\\s*(\\d{1,2})(?:\\s*:\\s*(\\d{1,2}))?\\s*([AaPp][Mm])?$"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch()) return std::nullopt;
    int h = m.captured(1).toInt();
    const int mi = m.captured(2).toInt();
    const int s = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
    const QString ampm = m.captured(4).toUpper();
    if (!ampm.isEmpty()) {
        if (h < 1 || h > 12) return std::nullopt;
        if (ampm == QLatin1String("PM") && h != 12) h += 12;
        if (ampm == QLatin1String("AM") && h == 12) h = 0;
    }
    const QTime t(h, mi, s);
    if (!t.isValid()) return std::nullopt;
    return t;
}

int expandYear(const QString& text) {
    const int y = text.toInt();
    if (text.size() > 2) return y;
    return y < 30 ? 2000 + y : 1900 + y;  // the original engine's two-digit window
}
}  // namespace

std::optional<QDateTime> parseLiteral(QStringView input) {
    const QString text = input.toString().trimmed();
    if (text.isEmpty()) return std::nullopt;
    static const QRegularExpression ymd(
        QStringLiteral("^(\\d{3,4})\\s*([-/.])\\s*(\\d{1,2})\\s*\\2\\s*(\\d{1,2})(?:\\s+(.*))?$"));
    static const QRegularExpression mdy(QStringLiteral(
        "^(\\d{1,2})\\s*([-/])\\s*(\\d{1,2})\\s*\\2\\s*(\\d{2}|\\d{4})(?:\\s+(.*))?$"));
    QDate date;
    QString rest;
    if (auto m = ymd.match(text); m.hasMatch()) {
        date = QDate(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt());
        rest = m.captured(5);
    } else if (auto m2 = mdy.match(text); m2.hasMatch()) {
        date = QDate(expandYear(m2.captured(4)), m2.captured(1).toInt(), m2.captured(3).toInt());
        rest = m2.captured(5);
    } else {
        const auto t = parseTimePart(text);
        if (!t) return std::nullopt;
        return naive(timeBaseDate(), *t);
    }
    if (!date.isValid()) return std::nullopt;
    QTime time(0, 0);
    if (!rest.trimmed().isEmpty()) {
        const auto t = parseTimePart(rest);
        if (!t) return std::nullopt;
        time = *t;
    }
    return naive(date, time);
}

std::optional<QDateTime> fromVariant(const QVariant& value) {
    if (value.isNull()) return std::nullopt;
    switch (value.typeId()) {
        case QMetaType::QDateTime: {
            const QDateTime v = value.toDateTime();
            if (!v.isValid()) return std::nullopt;
            return naive(v.date(), v.time());
        }
        case QMetaType::QDate:
            if (!value.toDate().isValid()) return std::nullopt;
            return naive(value.toDate());
        case QMetaType::QTime:
            if (!value.toTime().isValid()) return std::nullopt;
            return naive(timeBaseDate(), value.toTime());
        default:
            break;
    }
    const QString text = value.toString();
    if (auto c = fromCanonical(text)) return c;
    return parseLiteral(text);
}

QString literalText(const QDate& date) {
    return date.toString(QStringLiteral("yyyy-MM-dd"));
}

QString literal(const QDate& date) {
    return QLatin1Char('#') + literalText(date) + QLatin1Char('#');
}

QString literalText(const QDateTime& value) {
    if (value.time() == QTime(0, 0)) return literalText(value.date());
    return canonical(value);
}

int weekdaySundayFirst(const QDate& date) {
    return date.dayOfWeek() % 7 + 1;
}

}  // namespace tarvel::jetdate
