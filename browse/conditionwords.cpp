#include "browse/conditionwords.h"

#include <QRegularExpression>

#include "browse/conditiontext.h"
#include "browse/listsql.h"

namespace tarvel::lists {

namespace {

QString unquote(const QString& text) {
    return QString(text).replace(QStringLiteral("''"), QStringLiteral("'"));
}

const CategoryGroup* groupOf(const ListKind& kind, const QString& column) {
    for (const CategoryGroup& g : kind.groups)
        if (!g.column.isEmpty() && g.column.compare(column, Qt::CaseInsensitive) == 0) return &g;
    return nullptr;
}

QString describeWhere(const ListKind& kind, const QString& where) {
    const QString w = where.trimmed();
    if (w.isEmpty()) return QStringLiteral("全部") + kind.noun;
    QRegularExpressionMatch m;
    if (const QString text = searchTextOf(kind, w); !text.isEmpty())
        return QStringLiteral("搜索：") + text;
    static const QRegularExpression emptyValue(
        QStringLiteral("^WHERE \\((\\w+)='' OR \\w+ IS NULL\\)$"));
    if ((m = emptyValue.match(w)).hasMatch())
        if (const CategoryGroup* g = groupOf(kind, m.captured(1)))
            return g->caption + QStringLiteral("：（未填）");
    static const QRegularExpression equal(QStringLiteral("^WHERE (\\w+)\\s*=\\s*'(.*)'$"));
    static const QRegularExpression like(QStringLiteral("^WHERE (\\w+) Like\\s+'%(.*)%'$"));
    static const QRegularExpression number(QStringLiteral("^WHERE (\\w+)\\s*=\\s*(-?[0-9.]+)$"));
    for (const QRegularExpression* re : {&equal, &like, &number}) {
        if (!(m = re->match(w)).hasMatch()) continue;
        const QString column = m.captured(1);
        const QString value = unquote(m.captured(2));
        if (column == QStringLiteral("acc_name")) return QStringLiteral("客户单位：") + value;
        if (const CategoryGroup* g = groupOf(kind, column))
            return g->caption + QStringLiteral("：") + value;
    }
    // Shapes that are not a category of this list (statistics, related records,
    // one record) read as every page reads them.
    return tarvel::describeCondition(w);
}

}  // namespace

QString searchTextOf(const ListKind& kind, const QString& condition) {
    static const QRegularExpression search(
        QStringLiteral("^\\s*WHERE\\s+(\\w+) LIKE '%(.*?)%'( OR|$)"));
    const QRegularExpressionMatch m = search.match(splitCondition(condition).where);
    if (!m.hasMatch() || kind.searchColumns.isEmpty() ||
        m.captured(1) != kind.searchColumns.first())
        return QString();
    return unquote(m.captured(2));
}

QString describeCondition(const ListKind& kind, const QString& condition,
                          const std::function<QString(const QString&)>& caption) {
    const SplitCondition split = splitCondition(condition);
    QString words = describeWhere(kind, split.where);
    static const QRegularExpression order(QStringLiteral("ORDER BY\\s+(\\w+)(\\s+(ASC|DESC))?"),
                                          QRegularExpression::CaseInsensitiveOption);
    if (const QRegularExpressionMatch m = order.match(split.order); m.hasMatch()) {
        const QString column = m.captured(1);
        const QString name = caption ? caption(column) : column;
        words += QStringLiteral("，按“") + name +
                 (m.captured(3).compare(QStringLiteral("DESC"), Qt::CaseInsensitive) == 0
                      ? QStringLiteral("”降序")
                      : QStringLiteral("”升序"));
    }
    return words;
}

}  // namespace tarvel::lists
