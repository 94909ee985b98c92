#include "store/dialectcriterion.h"

#include <vector>

#include "store/dialectlexer.h"
#include "store/jetdate.h"

namespace tarvel::dialect {

namespace {

bool isComparison(QStringView op) {
    for (const char* c : {"=", "<>", "<", ">", "<=", ">="})
        if (op == QLatin1String(c)) return true;
    return op.compare(QLatin1String("LIKE"), Qt::CaseInsensitive) == 0;
}

}  // namespace

bool parseCriterion(const QString& text, Criterion& out, QString& error) {
    const QString invalid = QStringLiteral("查找条件无效：%1").arg(text);
    Lexer lexer(text);
    std::vector<Lexeme> solid;
    for (Lexeme l; lexer.next(l);)
        if (l.kind != LexemeKind::Space) solid.push_back(l);
    if (!lexer.error().isEmpty() || solid.empty()) {
        error = invalid;
        return false;
    }
    // The column: a [name] or dotted names.
    size_t i = 0;
    if (solid[0].kind == LexemeKind::Bracketed) {
        const QStringView name = lexer.text(solid[0]);
        out.column = name.mid(1, name.size() - 2).toString();
        i = 1;
    } else {
        while (i < solid.size() && solid[i].kind == LexemeKind::Word) {
            out.column += lexer.text(solid[i++]);
            if (i + 1 < solid.size() && lexer.text(solid[i]) == QLatin1String(".") &&
                solid[i + 1].kind == LexemeKind::Word) {
                out.column += QLatin1Char('.');
                ++i;
            } else {
                break;
            }
        }
    }
    if (out.column.isEmpty() || i >= solid.size() || !isComparison(lexer.text(solid[i]))) {
        error = invalid;
        return false;
    }
    out.op = lexer.text(solid[i++]).toString().toUpper();
    // The value: a signed number, a quoted text or a date, and nothing after it.
    QString sign;
    if (i < solid.size() &&
        (lexer.text(solid[i]) == QLatin1String("-") || lexer.text(solid[i]) == QLatin1String("+")))
        sign = lexer.text(solid[i++]).toString();
    if (i + 1 != solid.size()) {
        error = invalid;
        return false;
    }
    const Lexeme& v = solid[i];
    const QStringView value = lexer.text(v);
    if (v.kind == LexemeKind::Number) {
        bool ok = false;
        out.value = (sign + value.toString()).toDouble(&ok);
        if (ok) return true;
    } else if (sign.isEmpty() && v.kind == LexemeKind::String) {
        const QString quote = value.front();
        out.value = value.mid(1, value.size() - 2).toString().replace(quote + quote, quote);
        return true;
    } else if (sign.isEmpty() && v.kind == LexemeKind::Date) {
        const auto d = jetdate::parseLiteral(value.mid(1, value.size() - 2));
        if (d) {
            out.value = *d;
            return true;
        }
        error = QStringLiteral("查找条件中的日期无效：%1").arg(value.toString());
        return false;
    }
    error = invalid;
    return false;
}

}  // namespace tarvel::dialect
