#include "store/dialectoperators.h"

namespace tarvel::dialect {

namespace {

// Binding strength of an operator in the program's dialect and in the engine's
// (higher binds tighter); 0 when the token is no arithmetic operator.
struct Strength {
    int jet = 0;
    int engine = 0;
};
constexpr int kUnary = 7;  // engine strength of a sign
constexpr int kAtom = 8;   // a value, name, call or parenthesised group

Strength binaryStrength(const Token& t) {
    if (is(t, "mod")) return {3, 5};
    if (t.kind != Kind::Punct) return {};
    if (t.text == QLatin1String("*") || t.text == QLatin1String("/")) return {5, 5};
    if (t.text == QLatin1String("\\")) return {4, 5};
    if (t.text == QLatin1String("+") || t.text == QLatin1String("-")) return {2, 4};
    if (t.text == QLatin1String("&") || t.text == QLatin1String("||")) return {1, 6};
    return {};
}

// Words that never start a value.
bool isKeyword(const Token& t) {
    static const char* const kKeywords[] = {
        "SELECT", "FROM",   "WHERE", "AND",    "OR",      "NOT",    "XOR",      "EQV",
        "IMP",    "IS",     "IN",    "LIKE",   "BETWEEN", "AS",     "ON",       "JOIN",
        "INNER",  "LEFT",   "RIGHT", "OUTER",  "CROSS",   "ORDER",  "GROUP",    "BY",
        "HAVING", "ASC",    "DESC",  "CASE",   "WHEN",    "THEN",   "ELSE",     "END",
        "SET",    "VALUES", "INTO",  "INSERT", "UPDATE",  "DELETE", "DISTINCT", "DISTINCTROW",
        "TOP",    "UNION",  "ALL",   "EXISTS", "ESCAPE",  "LIMIT",  "OFFSET",   "MOD",
        "CREATE", "TABLE",  "DROP",  "ALTER",  "INDEX",   "VIEW",   "COLLATE",  "GLOB",
        "PERCENT"};
    if (t.kind != Kind::Word) return false;
    for (const char* k : kKeywords)
        if (is(t, k)) return true;
    return false;
}

// The engine's spelling of an operator that stands on its own.
void rename(Token& op) {
    if (op.text == QLatin1String("&")) {
        op.text = QStringLiteral("||");
    } else if (op.text == QLatin1String("/")) {
        // Division is always exact in the program's dialect, never integer division.
        op.text = QStringLiteral("* 1.0 /");
    } else if (op.text == QLatin1String("\\")) {
        op.text = QStringLiteral("/");
    } else if (is(op, "mod")) {
        op = {Kind::Punct, QStringLiteral("%"), op.before, op.after};
    }
}

struct Node {
    qsizetype first;
    qsizetype last;
    int engine;  // how tightly the engine binds the node as written
};

class Expressions {
public:
    explicit Expressions(Tokens& t) : t_(t) {}

    // Translates every expression in [from, end).
    void walk(qsizetype from, qsizetype end) {
        for (qsizetype i = solid(from, end); i < end;) {
            Node node;
            if (expression(i, end, 1, node)) {
                i = solid(node.last + 1, end);
            } else {
                rename(t_[i]);
                i = solid(i + 1, end);
            }
        }
    }

private:
    qsizetype solid(qsizetype i, qsizetype end) const {
        while (i < end && t_[i].kind == Kind::Space) ++i;
        return i;
    }

    qsizetype closing(qsizetype open, qsizetype end) const {
        int depth = 0;
        for (qsizetype i = open; i < end; ++i) {
            if (isPunct(t_[i], "(")) ++depth;
            if (isPunct(t_[i], ")") && --depth == 0) return i;
        }
        return -1;
    }

    void wrap(const Node& n, const char* prefix, const char* suffix) {
        t_[n.first].before.prepend(QLatin1String(prefix));
        t_[n.last].after.append(QLatin1String(suffix));
    }

    // A value, a (qualified) name or call, a parenthesised group or a signed operand.
    // Fails before touching anything when no operand starts at i.
    bool operand(qsizetype i, qsizetype end, Node& node) {
        const Token& tok = t_[i];
        if (isPunct(tok, "-") || isPunct(tok, "+")) {
            const qsizetype j = solid(i + 1, end);
            Node inner;
            if (j >= end || !operand(j, end, inner)) return false;
            node = {i, inner.last, kUnary};
            return true;
        }
        if (isPunct(tok, "(")) {
            const qsizetype close = closing(i, end);
            if (close < 0) return false;
            walk(i + 1, close);
            node = {i, close, kAtom};
            return true;
        }
        if (tok.kind == Kind::Number || tok.kind == Kind::String || tok.kind == Kind::Mark) {
            node = {i, i, kAtom};
            return true;
        }
        if (tok.kind != Kind::Identifier && (tok.kind != Kind::Word || isKeyword(tok)))
            return false;
        qsizetype last = i;
        for (;;) {
            const qsizetype dot = solid(last + 1, end);
            if (dot >= end || !isPunct(t_[dot], ".")) break;
            const qsizetype part = solid(dot + 1, end);
            if (part >= end || !(t_[part].kind == Kind::Word || t_[part].kind == Kind::Identifier ||
                                 isPunct(t_[part], "*")))
                break;
            last = part;
        }
        const qsizetype open = solid(last + 1, end);
        if (open < end && isPunct(t_[open], "(")) {
            const qsizetype close = closing(open, end);
            if (close >= 0) {
                walk(open + 1, close);
                last = close;
            }
        }
        node = {i, last, kAtom};
        return true;
    }

    // Operators of at least `least` strength in the program's dialect, left to right.
    bool expression(qsizetype i, qsizetype end, int least, Node& node) {
        if (!operand(i, end, node)) return false;
        for (;;) {
            const qsizetype op = solid(node.last + 1, end);
            if (op >= end) return true;
            const Strength s = binaryStrength(t_[op]);
            if (s.jet == 0 || s.jet < least) return true;
            const qsizetype r = solid(op + 1, end);
            Node right;
            if (r >= end || !expression(r, end, s.jet + 1, right)) return true;
            node = combine(node, op, right, s.engine);
        }
    }

    Node combine(const Node& left, qsizetype op, const Node& right, int engine) {
        if (isPunct(t_[op], "\\")) {
            // Integer division rounds both sides to whole numbers first.
            wrap(left, "CAST(ROUND(", ") AS INTEGER)");
            wrap(right, "CAST(ROUND(", ") AS INTEGER)");
        } else {
            if (left.engine < engine) wrap(left, "(", ")");
            if (right.engine <= engine) wrap(right, "(", ")");
        }
        rename(t_[op]);
        return {left.first, right.last, engine};
    }

    Tokens& t_;
};

}  // namespace

void translateOperators(Tokens& tokens) {
    Expressions(tokens).walk(0, qsizetype(tokens.size()));
}

}  // namespace tarvel::dialect
