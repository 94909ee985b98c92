#include "store/likecontains.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {

const QString kEscapeClause = QStringLiteral(" ESCAPE '") + QChar(kLikeEscape) + QLatin1Char('\'');

bool holdsWildcard(const QString& text) {
    return text.contains(QLatin1Char('%')) || text.contains(QLatin1Char('_'));
}

}  // namespace

QString likeContainsPattern(const QString& text) {
    if (!holdsWildcard(text)) return QLatin1Char('%') + text + QLatin1Char('%');
    QString pattern;
    pattern.reserve(text.size() * 2 + 2);
    pattern += QLatin1Char('%');
    for (const QChar c : text) {
        if (c == QLatin1Char('%') || c == QLatin1Char('_') || c == QChar(kLikeEscape))
            pattern += QChar(kLikeEscape);
        pattern += c;
    }
    pattern += QLatin1Char('%');
    return pattern;
}

QString likeContains(const QString& text) {
    return QLatin1Char('\'') + tarveldatabase::SafeSql(likeContainsPattern(text)) +
           QLatin1Char('\'') + (holdsWildcard(text) ? kEscapeClause : QString());
}

std::optional<LikeOperand> readLikeContains(QStringView sql) {
    if (!sql.startsWith(QLatin1String("'%"))) return std::nullopt;
    // The quoted pattern ends at the first quote that is not doubled.
    QString pattern;
    qsizetype i = 1;
    for (;; ++i) {
        if (i >= sql.size()) return std::nullopt;
        if (sql[i] != QLatin1Char('\'')) {
            pattern += sql[i];
        } else if (i + 1 < sql.size() && sql[i + 1] == QLatin1Char('\'')) {
            pattern += QLatin1Char('\'');
            ++i;
        } else {
            break;
        }
    }
    qsizetype length = i + 1;
    if (pattern.size() < 2 || !pattern.endsWith(QLatin1Char('%'))) return std::nullopt;
    const QString body = pattern.mid(1, pattern.size() - 2);
    if (!sql.mid(length).startsWith(kEscapeClause)) return LikeOperand{body, length};
    length += kEscapeClause.size();
    QString text;
    text.reserve(body.size());
    for (qsizetype k = 0; k < body.size(); ++k) {
        if (body[k] == QChar(kLikeEscape)) {
            if (++k == body.size()) return std::nullopt;  // an escape with nothing after it
        } else if (body[k] == QLatin1Char('%') || body[k] == QLatin1Char('_')) {
            return std::nullopt;  // a wildcard: no text typed with the escapes written
        }
        text += body[k];
    }
    return LikeOperand{text, length};
}

}  // namespace tarvel
