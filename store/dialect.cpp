#include "store/dialect.h"

#include <QHash>
#include <vector>

#include "store/jetdate.h"
#include "store/schema.h"

namespace tarvel::dialect {

namespace {

enum class Kind { Space, Word, Number, String, Identifier, Punct };

struct Token {
    Kind kind;
    QString text;
};

bool isWordStart(QChar c) {
    return c.isLetter() || c == QLatin1Char('_');
}
bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}
bool isDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

QString quoteText(const QString& text) {
    QString out = text;
    out.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + out + QLatin1Char('\'');
}

// Splits the statement into tokens; date literals become quoted canonical text.
bool tokenize(const QString& s, std::vector<Token>& tokens, QString& error) {
    const qsizetype n = s.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = s[i];
        const qsizetype start = i;
        if (c.isSpace()) {
            while (i < n && s[i].isSpace()) ++i;
            tokens.push_back({Kind::Space, s.mid(start, i - start)});
        } else if (c == QLatin1Char('\'')) {
            ++i;
            while (i < n) {
                if (s[i] == QLatin1Char('\'')) {
                    if (i + 1 < n && s[i + 1] == QLatin1Char('\'')) {
                        i += 2;
                        continue;
                    }
                    break;
                }
                ++i;
            }
            if (i >= n) {
                error = QStringLiteral("unterminated string literal");
                return false;
            }
            ++i;
            tokens.push_back({Kind::String, s.mid(start, i - start)});
        } else if (c == QLatin1Char('"')) {
            // A double-quoted text is a string literal in the program's dialect.
            QString value;
            ++i;
            while (i < n) {
                if (s[i] == QLatin1Char('"')) {
                    if (i + 1 < n && s[i + 1] == QLatin1Char('"')) {
                        value += QLatin1Char('"');
                        i += 2;
                        continue;
                    }
                    break;
                }
                value += s[i++];
            }
            if (i >= n) {
                error = QStringLiteral("unterminated string literal");
                return false;
            }
            ++i;
            tokens.push_back({Kind::String, quoteText(value)});
        } else if (c == QLatin1Char('[')) {
            const qsizetype close = s.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0) {
                error = QStringLiteral("unterminated bracketed name");
                return false;
            }
            QString name = s.mid(i + 1, close - i - 1);
            name.replace(QLatin1Char('"'), QLatin1String("\"\""));
            tokens.push_back({Kind::Identifier, QLatin1Char('"') + name + QLatin1Char('"')});
            i = close + 1;
        } else if (c == QLatin1Char('#')) {
            const qsizetype close = s.indexOf(QLatin1Char('#'), i + 1);
            const auto value =
                close < 0 ? std::nullopt
                          : jetdate::parseLiteral(QStringView(s).mid(i + 1, close - i - 1));
            if (!value) {
                error = QStringLiteral("invalid date literal: ") +
                        (close < 0 ? s.mid(i) : s.mid(i, close - i + 1));
                return false;
            }
            tokens.push_back({Kind::String, quoteText(jetdate::canonical(*value))});
            i = close + 1;
        } else if (isDigit(c) || (c == QLatin1Char('.') && i + 1 < n && isDigit(s[i + 1]))) {
            while (i < n && isDigit(s[i])) ++i;
            if (i < n && s[i] == QLatin1Char('.')) {
                ++i;
                while (i < n && isDigit(s[i])) ++i;
            }
            if (i + 1 < n && (s[i] == QLatin1Char('e') || s[i] == QLatin1Char('E'))) {
                qsizetype j = i + 1;
                if (j < n && (s[j] == QLatin1Char('+') || s[j] == QLatin1Char('-'))) ++j;
                if (j < n && isDigit(s[j])) {
                    while (j < n && isDigit(s[j])) ++j;
                    i = j;
                }
            }
            tokens.push_back({Kind::Number, s.mid(start, i - start)});
            // A number glued to a keyword ("=11AND") stays two tokens.
            if (i < n && isWordStart(s[i])) tokens.push_back({Kind::Space, QStringLiteral(" ")});
        } else if (isWordStart(c)) {
            while (i < n && isWordChar(s[i])) ++i;
            tokens.push_back({Kind::Word, s.mid(start, i - start)});
        } else {
            ++i;
            // Keep two-character operators whole.
            if (i < n) {
                const QString two = s.mid(start, 2);
                if (two == QLatin1String("<>") || two == QLatin1String("<=") ||
                    two == QLatin1String(">=") || two == QLatin1String("!=") ||
                    two == QLatin1String("||"))
                    ++i;
            }
            tokens.push_back({Kind::Punct, s.mid(start, i - start)});
        }
    }
    return true;
}

bool is(const Token& t, const char* word) {
    return (t.kind == Kind::Word) && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool isPunct(const Token& t, const char* text) {
    return t.kind == Kind::Punct && t.text == QLatin1String(text);
}

// Index of the next non-space token after i, or -1.
qsizetype nextSolid(const std::vector<Token>& t, qsizetype i) {
    for (qsizetype j = i + 1; j < qsizetype(t.size()); ++j)
        if (t[j].kind != Kind::Space) return j;
    return -1;
}

qsizetype prevSolid(const std::vector<Token>& t, qsizetype i) {
    for (qsizetype j = i - 1; j >= 0; --j)
        if (t[j].kind != Kind::Space) return j;
    return -1;
}

bool isComparison(const Token& t) {
    if (t.kind == Kind::Punct)
        return t.text == QLatin1String("=") || t.text == QLatin1String("<") ||
               t.text == QLatin1String(">") || t.text == QLatin1String("<>") ||
               t.text == QLatin1String("<=") || t.text == QLatin1String(">=") ||
               t.text == QLatin1String("!=");
    return is(t, "IN") || is(t, "LIKE") || is(t, "BETWEEN") || is(t, "IS");
}

// Rewrites words that mean something else in the engine's dialect.
void rewriteWords(std::vector<Token>& t) {
    const qsizetype count = qsizetype(t.size());
    for (qsizetype i = 0; i < count; ++i) {
        Token& tok = t[i];
        if (tok.kind == Kind::Punct && tok.text == QLatin1String("&")) {
            tok.text = QStringLiteral("||");
            continue;
        }
        if (tok.kind == Kind::Punct && tok.text == QLatin1String("/")) {
            // Division is always exact in the program's dialect, never integer division.
            tok.text = QStringLiteral("* 1.0 /");
            continue;
        }
        if (tok.kind != Kind::Word) continue;
        const qsizetype prev = prevSolid(t, i);
        const qsizetype next = nextSolid(t, i);
        const bool qualified =
            (prev >= 0 && isPunct(t[prev], ".")) || (next >= 0 && isPunct(t[next], "."));
        if (qualified) continue;
        const bool call = next >= 0 && isPunct(t[next], "(");
        if (!call && is(tok, "true")) {
            tok = {Kind::Number, QStringLiteral("-1")};
        } else if (!call && is(tok, "false")) {
            tok = {Kind::Number, QStringLiteral("0")};
        } else if (is(tok, "now") || is(tok, "date") || is(tok, "time")) {
            const char* fn = is(tok, "now")    ? kNowFunction
                             : is(tok, "date") ? kDateFunction
                                               : kTimeFunction;
            tok.text = QLatin1String(fn) + (call ? QString() : QStringLiteral("()"));
        } else if (is(tok, "mod")) {
            tok = {Kind::Punct, QStringLiteral("%")};
        } else if (is(tok, "DELETE") && next >= 0 && isPunct(t[next], "*")) {
            t[next].text.clear();
        } else if (is(tok, "NOT") && next >= 0 && t[next].kind == Kind::Word) {
            // NOT on a yes/no column flips -1 and 0, as the original engine does;
            // a following comparison keeps the logical NOT.
            qsizetype col = next;
            qsizetype after = nextSolid(t, col);
            while (after >= 0 && isPunct(t[after], ".")) {
                col = nextSolid(t, after);
                if (col < 0) break;
                after = nextSolid(t, col);
            }
            if (col >= 0 && schema::isYesNoColumn(t[col].text) &&
                (after < 0 || !isComparison(t[after])))
                tok = {Kind::Punct, QStringLiteral("~")};
        }
    }
}

// Over the contacts-with-account query, "contacts.x" and "accounts.x" name its columns.
void rewriteQueryQualifiers(std::vector<Token>& t) {
    const QLatin1String query(schema::kContactsAccountsQuery);
    bool usesQuery = false;
    bool usesBaseTable = false;
    for (qsizetype i = 0; i < qsizetype(t.size()); ++i) {
        if (t[i].kind != Kind::Word) continue;
        if (t[i].text.compare(query, Qt::CaseInsensitive) == 0) usesQuery = true;
        if (is(t[i], "contacts") || is(t[i], "accounts")) {
            const qsizetype next = nextSolid(t, i);
            if (next < 0 || !isPunct(t[next], ".")) usesBaseTable = true;
        }
    }
    if (!usesQuery || usesBaseTable) return;
    for (qsizetype i = 0; i < qsizetype(t.size()); ++i) {
        if (!is(t[i], "contacts") && !is(t[i], "accounts")) continue;
        const qsizetype next = nextSolid(t, i);
        if (next >= 0 && isPunct(t[next], ".")) t[i].text = query;
    }
}

QString join(const std::vector<Token>& t, qsizetype from, qsizetype to) {
    QString out;
    for (qsizetype i = from; i < to; ++i) out += t[i].text;
    return out;
}

// The query is a view; updates and deletes through it go to the contacts it lists.
bool rewriteQueryWrite(std::vector<Token>& t, QString& out) {
    const qsizetype first = nextSolid(t, -1);
    if (first < 0) return false;
    const bool update = is(t[first], "UPDATE");
    const bool remove = is(t[first], "DELETE");
    if (!update && !remove) return false;
    qsizetype target = nextSolid(t, first);
    if (remove && target >= 0 && is(t[target], "FROM")) target = nextSolid(t, target);
    if (target < 0 || t[target].text.compare(QLatin1String(schema::kContactsAccountsQuery),
                                             Qt::CaseInsensitive) != 0)
        return false;
    qsizetype where = -1;
    int depth = 0;
    for (qsizetype i = target + 1; i < qsizetype(t.size()); ++i) {
        if (isPunct(t[i], "(")) ++depth;
        if (isPunct(t[i], ")")) --depth;
        if (depth == 0 && is(t[i], "WHERE")) {
            where = i;
            break;
        }
    }
    const qsizetype end = qsizetype(t.size());
    const QString head = join(t, 0, target) + QStringLiteral("contacts");
    const QString body = join(t, target + 1, where < 0 ? end : where);
    const QString condition = where < 0 ? QString() : join(t, where, end);
    out = head + body + QStringLiteral(" WHERE con_id IN (SELECT con_id FROM ") +
          QLatin1String(schema::kContactsAccountsQuery) + QLatin1Char(' ') + condition +
          QLatin1Char(')');
    return true;
}

}  // namespace

Translation translateUncached(const QString& statement) {
    std::vector<Token> tokens;
    Translation result;
    if (!tokenize(statement, tokens, result.error)) return result;
    rewriteWords(tokens);
    rewriteQueryQualifiers(tokens);
    if (!rewriteQueryWrite(tokens, result.sql))
        result.sql = join(tokens, 0, qsizetype(tokens.size()));
    return result;
}

namespace {

bool startsWithWord(const QString& s, QLatin1String word) {
    qsizetype i = 0;
    while (i < s.size() && s[i].isSpace()) ++i;
    return s.size() - i > word.size() &&
           QStringView(s).mid(i, word.size()).compare(word, Qt::CaseInsensitive) == 0 &&
           !isWordChar(s[i + word.size()]);
}

// Replaces each plain number that follows a comparison operator with ? (outside
// quotes, brackets and #dates#) and collects the values. Only queries and data
// changes: schema statements may not carry parameters.
QString parameterise(const QString& s, QList<QVariant>& values) {
    if (!startsWithWord(s, QLatin1String("SELECT")) &&
        !startsWithWord(s, QLatin1String("UPDATE")) && !startsWithWord(s, QLatin1String("DELETE")))
        return s;
    const qsizetype n = s.size();
    QString out;
    qsizetype copied = 0;  // s[copied, i) is still to be copied to out
    QChar lastSolid;
    for (qsizetype i = 0; i < n;) {
        const QChar c = s[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('[') ||
            c == QLatin1Char('#')) {
            const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : c;
            const qsizetype k = s.indexOf(close, i + 1);
            if (k < 0) {  // the tokenizer reports it
                values.clear();
                return s;
            }
            i = k + 1;
            lastSolid = close;
            continue;
        }
        const bool afterComparison = lastSolid == QLatin1Char('=') ||
                                     lastSolid == QLatin1Char('<') || lastSolid == QLatin1Char('>');
        if (isDigit(c) && afterComparison) {
            qsizetype k = i;
            while (k < n && isDigit(s[k])) ++k;
            bool decimal = false;
            if (k + 1 < n && s[k] == QLatin1Char('.') && isDigit(s[k + 1])) {
                decimal = true;
                for (++k; k < n && isDigit(s[k]);) ++k;
            }
            // Anything glued on (11AND, 1e5, 1.) keeps the literal as written.
            if ((k >= n || (!isWordChar(s[k]) && s[k] != QLatin1Char('.'))) && k - i <= 15) {
                const QStringView digits = QStringView(s).mid(i, k - i);
                values << (decimal ? QVariant(digits.toDouble()) : QVariant(digits.toLongLong()));
                if (out.isEmpty()) out.reserve(n);
                out += QStringView(s).mid(copied, i - copied);
                out += QLatin1Char('?');
                copied = i = k;
                lastSolid = QLatin1Char('?');
                continue;
            }
        }
        if (!c.isSpace()) lastSolid = c;
        ++i;
    }
    if (copied == 0) return s;
    out += QStringView(s).mid(copied);
    return out;
}

}  // namespace

Translation translate(const QString& statement) {
    static QHash<QString, Translation> cache;
    QList<QVariant> values;
    const QString shape = parameterise(statement, values);
    auto it = cache.constFind(shape);
    if (it == cache.constEnd()) {
        if (cache.size() > 4096) cache.clear();  // keep memory bounded
        it = cache.insert(shape, translateUncached(shape));
    }
    Translation result = *it;
    result.parameters = std::move(values);
    return result;
}

}  // namespace tarvel::dialect
