#include "store/dialecttokens.h"

#include "store/dialectlexer.h"
#include "store/jetdate.h"

namespace tarvel::dialect {

namespace {

QString quoteText(QString text) {
    text.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

// The inside of a quoted or bracketed lexeme, with a doubled quote made single.
QString unquote(QStringView lexeme) {
    const QChar quote = lexeme.front();
    QString inner = lexeme.mid(1, lexeme.size() - 2).toString();
    if (quote == QLatin1Char('"')) inner.replace(QLatin1String("\"\""), QLatin1String("\""));
    return inner;
}

}  // namespace

bool tokenize(const QString& statement, Tokens& tokens, QString& error) {
    Lexer lexer(statement);
    Lexeme l;
    while (lexer.next(l)) {
        const QStringView text = lexer.text(l);
        switch (l.kind) {
            case LexemeKind::String:
                tokens.push_back({Kind::String, text.front() == QLatin1Char('\'')
                                                    ? text.toString()
                                                    : quoteText(unquote(text))});
                break;
            case LexemeKind::Bracketed: {
                QString name = unquote(text);
                name.replace(QLatin1Char('"'), QLatin1String("\"\""));
                tokens.push_back({Kind::Identifier, QLatin1Char('"') + name + QLatin1Char('"')});
                break;
            }
            case LexemeKind::Date: {
                const auto value = jetdate::parseLiteral(text.mid(1, text.size() - 2));
                if (!value) {
                    error = QStringLiteral("无效的日期：") + text.toString();
                    return false;
                }
                tokens.push_back({Kind::String, quoteText(jetdate::canonical(*value))});
                break;
            }
            case LexemeKind::Space:
                tokens.push_back({Kind::Space, text.toString()});
                break;
            case LexemeKind::Word:
                tokens.push_back({Kind::Word, text.toString()});
                break;
            case LexemeKind::Number:
            case LexemeKind::Mark:
                tokens.push_back(
                    {l.kind == LexemeKind::Number ? Kind::Number : Kind::Mark, text.toString()});
                // A number glued to a keyword ("=11AND") stays two tokens, and a
                // mark never turns into a numbered one ("?1").
                if (isWordChar(lexer.after(l)))
                    tokens.push_back({Kind::Space, QStringLiteral(" ")});
                break;
            case LexemeKind::Punct:
                tokens.push_back({Kind::Punct, text.toString()});
                break;
        }
    }
    error = lexer.error();
    return error.isEmpty();
}

bool is(const Token& t, const char* word) {
    return t.kind == Kind::Word && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool isPunct(const Token& t, const char* text) {
    return t.kind == Kind::Punct && t.text == QLatin1String(text);
}

qsizetype nextSolid(const Tokens& t, qsizetype i) {
    for (qsizetype j = i + 1; j < qsizetype(t.size()); ++j)
        if (t[j].kind != Kind::Space) return j;
    return -1;
}

qsizetype prevSolid(const Tokens& t, qsizetype i) {
    for (qsizetype j = i - 1; j >= 0; --j)
        if (t[j].kind != Kind::Space) return j;
    return -1;
}

QString join(const Tokens& t, qsizetype from, qsizetype to) {
    QString out;
    for (qsizetype i = from; i < to; ++i) {
        const QString piece = t[i].before + t[i].text + t[i].after;
        // Two minus signs in a row start a comment in the engine's dialect.
        if (piece.startsWith(QLatin1Char('-')) && out.endsWith(QLatin1Char('-')))
            out += QLatin1Char(' ');
        out += piece;
    }
    return out;
}

}  // namespace tarvel::dialect
