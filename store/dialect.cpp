#include "store/dialect.h"

#include <QHash>

#include "store/dialectlexer.h"
#include "store/dialectoperators.h"
#include "store/dialecttokens.h"
#include "store/schema.h"

namespace tarvel::dialect {

namespace {

bool isComparison(const Token& t) {
    if (t.kind == Kind::Punct)
        return t.text == QLatin1String("=") || t.text == QLatin1String("<") ||
               t.text == QLatin1String(">") || t.text == QLatin1String("<>") ||
               t.text == QLatin1String("<=") || t.text == QLatin1String(">=") ||
               t.text == QLatin1String("!=");
    return is(t, "IN") || is(t, "LIKE") || is(t, "BETWEEN") || is(t, "IS");
}

// NOT on a yes/no column flips -1 and 0, as the original engine does, also when
// the column stands in parentheses; a following comparison keeps the logical NOT.
bool negatesYesNoColumn(const Tokens& t, qsizetype i) {
    int open = 0;
    for (; i >= 0 && isPunct(t[i], "("); i = nextSolid(t, i)) ++open;
    if (i < 0 || t[i].kind != Kind::Word) return false;
    qsizetype column = i;
    qsizetype after = nextSolid(t, column);
    while (after >= 0 && isPunct(t[after], ".")) {
        column = nextSolid(t, after);
        if (column < 0) return false;
        after = nextSolid(t, column);
    }
    if (!schema::isYesNoColumn(t[column].text)) return false;
    for (; open > 0; --open, after = nextSolid(t, after))
        if (after < 0 || !isPunct(t[after], ")")) return false;
    return after < 0 || !isComparison(t[after]);
}

// Rewrites words that mean something else in the engine's dialect.
void rewriteWords(Tokens& t) {
    const qsizetype count = qsizetype(t.size());
    for (qsizetype i = 0; i < count; ++i) {
        Token& tok = t[i];
        if (tok.kind != Kind::Word) continue;
        const qsizetype prev = prevSolid(t, i);
        const qsizetype next = nextSolid(t, i);
        const bool qualified =
            (prev >= 0 && isPunct(t[prev], ".")) || (next >= 0 && isPunct(t[next], "."));
        if (qualified) continue;
        const bool call = next >= 0 && isPunct(t[next], "(");
        if (!call && is(tok, "true")) {
            tok.kind = Kind::Number;
            tok.text = QStringLiteral("-1");
        } else if (!call && is(tok, "false")) {
            tok.kind = Kind::Number;
            tok.text = QStringLiteral("0");
        } else if (is(tok, "now") || is(tok, "date") || is(tok, "time")) {
            const char* fn = is(tok, "now")    ? kNowFunction
                             : is(tok, "date") ? kDateFunction
                                               : kTimeFunction;
            tok.text = QLatin1String(fn) + (call ? QString() : QStringLiteral("()"));
        } else if (is(tok, "DELETE") && next >= 0 && isPunct(t[next], "*")) {
            t[next].text.clear();
        } else if (is(tok, "NOT") && negatesYesNoColumn(t, next)) {
            tok.kind = Kind::Punct;
            tok.text = QStringLiteral("~");
        }
    }
}

// Over the contacts-with-account query, "contacts.x" and "accounts.x" name its columns.
void rewriteQueryQualifiers(Tokens& t) {
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

// The query is a view; updates and deletes through it go to the contacts it lists.
bool rewriteQueryWrite(Tokens& t, QString& out) {
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
    Tokens tokens;
    Translation result;
    if (!tokenize(statement, tokens, result.error)) return result;
    translateOperators(tokens);
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

// Digits with an optional fraction, short enough to be read exactly.
bool isPlainNumber(QStringView text) {
    const qsizetype dot = text.indexOf(QLatin1Char('.'));
    return text.size() <= 15 && isDigit(text.front()) && isDigit(text.back()) &&
           (dot < 0 || text.indexOf(QLatin1Char('.'), dot + 1) < 0);
}

bool endsComparison(QStringView punct) {
    const QChar last = punct.back();
    return last == QLatin1Char('=') || last == QLatin1Char('<') || last == QLatin1Char('>');
}

// The text with each plain number that follows a comparison replaced by ?, and
// the value of every ? in the order they stand: the number, or for the caller's
// own marks the next bound value. Numbers stay in schema statements and inserts,
// and wherever something is glued to them (11AND, 1e5, 1.).
struct Shape {
    QString text;
    QList<QVariant> values;
    qsizetype marks = 0;  // the caller's own ? marks
};

Shape parameterise(const QString& s, const QList<QVariant>& bound) {
    const bool numbers = startsWithWord(s, QLatin1String("SELECT")) ||
                         startsWithWord(s, QLatin1String("UPDATE")) ||
                         startsWithWord(s, QLatin1String("DELETE"));
    Shape shape;
    qsizetype copied = 0;  // s[copied, ...) is still to be copied to shape.text
    bool afterComparison = false;
    Lexer lexer(s);
    Lexeme l;
    while (lexer.next(l)) {
        if (l.kind == LexemeKind::Space) continue;
        const QStringView text = lexer.text(l);
        if (l.kind == LexemeKind::Mark) {
            shape.values << bound.value(shape.marks++);
        } else if (numbers && afterComparison && l.kind == LexemeKind::Number &&
                   isPlainNumber(text) && !isWordChar(lexer.after(l)) &&
                   lexer.after(l) != QLatin1Char('.')) {
            shape.values << (text.contains(QLatin1Char('.')) ? QVariant(text.toDouble())
                                                             : QVariant(text.toLongLong()));
            if (shape.text.isEmpty()) shape.text.reserve(s.size());
            shape.text += QStringView(s).mid(copied, l.start - copied);
            shape.text += QLatin1Char('?');
            copied = l.start + l.size;
        }
        afterComparison = l.kind == LexemeKind::Punct && endsComparison(text);
    }
    if (copied == 0) {
        shape.text = s;
    } else {
        shape.text += QStringView(s).mid(copied);
    }
    return shape;
}

}  // namespace

Translation translate(const QString& statement, const QList<QVariant>& bound) {
    static QHash<QString, Translation> cache;
    Shape shape = parameterise(statement, bound);
    auto it = cache.constFind(shape.text);
    if (it == cache.constEnd()) {
        if (cache.size() > 4096) cache.clear();  // keep memory bounded
        it = cache.insert(shape.text, translateUncached(shape.text));
    }
    Translation result = *it;
    result.parameters = std::move(shape.values);
    if (!result.error.isEmpty()) return result;
    if (shape.marks > bound.size())
        result.error = QStringLiteral("参数不足，期待是 %1。").arg(shape.marks - bound.size());
    else if (shape.marks < bound.size())
        result.error = QStringLiteral("参数过多：语句只有 %1 个“?”，却给了 %2 个值。")
                           .arg(shape.marks)
                           .arg(bound.size());
    return result;
}

}  // namespace tarvel::dialect
