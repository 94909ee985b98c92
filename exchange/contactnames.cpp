#include "exchange/contactnames.h"

#include <QStringList>

namespace tarvel::exchange {

namespace {

bool isEastAsian(QChar c) {
    const char16_t u = c.unicode();
    return (u >= 0x3040 && u <= 0x30FF) ||  // kana
           (u >= 0x3400 && u <= 0x4DBF) ||  // CJK extension A
           (u >= 0x4E00 && u <= 0x9FFF) ||  // CJK unified ideographs
           (u >= 0xAC00 && u <= 0xD7AF) ||  // Hangul syllables
           (u >= 0x1100 && u <= 0x11FF) ||  // Hangul jamo
           (u >= 0xF900 && u <= 0xFAFF) ||  // compatibility ideographs
           c.isHighSurrogate();             // extensions B and later
}

bool eastAsianCountry(const QString& country) {
    static const QStringList names = {
        "china", "中国",        "中华人民共和国", "prc",      "cn",    "japan", "日本",   "jp",
        "korea", "south korea", "韩国",           "대한민국", "한국",  "kr",    "taiwan", "台湾",
        "臺灣",  "hong kong",   "香港",           "macau",    "macao", "澳门",  "澳門"};
    return names.contains(country.trimmed().toLower());
}

// Parts joined by a blank, except between two East Asian characters.
QString joinedEastAsian(const QStringList& parts) {
    QString out;
    for (const QString& part : parts) {
        if (!out.isEmpty() && !(isEastAsian(out.back()) && isEastAsian(part.front())))
            out += QLatin1Char(' ');
        out += part;
    }
    return out;
}

QStringList nonEmpty(std::initializer_list<QString> parts) {
    QStringList out;
    for (const QString& part : parts) {
        QString p = part.trimmed();
        p.replace(QLatin1Char('\n'), QStringLiteral(", "));
        if (!p.isEmpty() && !out.contains(p)) out << p;
    }
    return out;
}

}  // namespace

bool hasEastAsianLetters(const QString& text) {
    for (const QChar c : text)
        if (isEastAsian(c)) return true;
    return false;
}

QString wholeName(const QString& family, const QString& given, const QString& middle,
                  const QString& suffix) {
    if (hasEastAsianLetters(family + given + middle))
        return joinedEastAsian(nonEmpty({family, middle, given}));
    return nonEmpty({given, middle, family, suffix}).join(QLatin1Char(' '));
}

QString familyOf(const QString& whole, const QString& given) {
    const QString w = whole.trimmed(), g = given.trimmed();
    if (g.isEmpty() || w == g) return w == g ? QString() : w;
    if (w.endsWith(g) && hasEastAsianLetters(g)) return w.left(w.size() - g.size()).trimmed();
    if (w.startsWith(g + QLatin1Char(' '))) return w.mid(g.size() + 1).trimmed();
    return w;
}

QString addressLine(const PostalAddress& a) {
    const bool eastAsian = eastAsianCountry(a.country) ||
                           (a.country.trimmed().isEmpty() &&
                            hasEastAsianLetters(a.street + a.locality + a.region + a.extended));
    if (eastAsian)
        return joinedEastAsian(
            nonEmpty({a.country, a.region, a.locality, a.street, a.extended, a.poBox}));
    return nonEmpty({a.poBox, a.extended, a.street, a.locality, a.region, a.country})
        .join(QStringLiteral(", "));
}

}  // namespace tarvel::exchange
