#include "browse/conditiontext.h"

#include <QRegularExpression>

#include "browse/listsql.h"
#include "records/kinds.h"
#include "schedule/labels.h"
#include "store/clock.h"
#include "store/jetdate.h"

namespace tarvel {

namespace {

using lists::CategoryGroup;
using lists::ListKind;

QRegularExpression pattern(const char* text) {
    return QRegularExpression(QLatin1String(text), QRegularExpression::CaseInsensitiveOption);
}

// The record kind a column prefix or table ("con", "contacts") belongs to, in words.
QString kindOf(const QString& prefix) {
    const RecordKindInfo* k = kindByPrefix(prefix);
    return k ? recordKindLabel(k->code) : QStringLiteral("记录");
}

// The words for a column compared with a value: the caption of the list
// group that filters by it ("con_province" -> 地区), the accounts' module for
// an account name, a plain word for the columns no group has; empty for
// other columns.
QString fieldWord(const QString& column) {
    if (column.compare(QLatin1String("acc_name"), Qt::CaseInsensitive) == 0)
        return kindOf(QStringLiteral("acc"));
    if (const RecordKindInfo* k = kindByPrefix(column.section(QLatin1Char('_'), 0, 0)))
        if (const ListKind* list = lists::listKindForRecord(k->code))
            for (const CategoryGroup& g : list->groups)
                if (!g.column.isEmpty() && g.column.compare(column, Qt::CaseInsensitive) == 0)
                    return g.caption;
    static const struct {
        const char* suffix;
        const char* word;
    } words[] = {{"_city", "城市"},     {"_source", "来源"},   {"_title", "职务"},
                 {"_subject", "主题"},  {"_province", "地区"}, {"_important", "重要性"},
                 {"_relation", "关系"}, {"_industry", "行业"}, {"_phase", "销售阶段"},
                 {"_type", "类型"}};
    for (const auto& w : words)
        if (column.endsWith(QLatin1String(w.suffix), Qt::CaseInsensitive))
            return QString::fromUtf8(w.word);
    return QString();
}

QString dayText(const QString& literal) {
    const std::optional<QDateTime> t = jetdate::parseLiteral(literal);
    return t ? t->date().toString(QStringLiteral("yyyy年M月d日")) : literal;
}

// A quoted value as typed: doubled quotes are one.
QString typed(const QString& quoted) {
    return QString(quoted).replace(QStringLiteral("''"), QStringLiteral("'"));
}

// "地区：北京"; a column without a word is a condition.
QString labelled(const QString& word, const QString& value) {
    return (word.isEmpty() ? QStringLiteral("条件") : word) + QStringLiteral("：") + value;
}

// A search tests one typed text against one or more columns; a group's
// column (tags) is matched as a part of its text. Empty for other conditions.
QString likeSearchWords(const QString& where) {
    const std::optional<lists::LeadingLike> like = lists::leadingLike(where);
    if (!like) return QString();
    const QString rest = like->rest.simplified();
    if (!rest.isEmpty() && !rest.startsWith(QLatin1String("OR "), Qt::CaseInsensitive))
        return QString();
    const QString word = fieldWord(like->column);
    return (rest.isEmpty() && !word.isEmpty() ? word : QStringLiteral("搜索")) +
           QStringLiteral("：") + like->text;
}

// The WHERE part in words.
QString describeWhere(const QString& where, const ListKind* list) {
    const QString c = where.simplified();
    if (c.isEmpty()) return list ? QStringLiteral("全部") + list->noun : QStringLiteral("全部记录");
    // The typed text is read from the condition as written: blanks in it count.
    if (list)
        if (const QString text = lists::searchTextOf(*list, where); !text.isEmpty())
            return QStringLiteral("搜索：") + text;
    if (const QString text = likeSearchWords(where); !text.isEmpty()) return text;
    QRegularExpressionMatch m;

    if ((m = pattern(
                 R"(^WHERE \(?con_birthday ?<> ?# ?1900-1-1 ?# AND month\(con_birthday\) ?= ?(\d+) AND day\(con_birthday\) ?= ?(\d+)\)?$)")
                 .match(c))
            .hasMatch())
        return QStringLiteral("%1月%2日生日的%3")
            .arg(m.captured(1), m.captured(2), kindOf(QStringLiteral("con")));
    if ((m = pattern(R"(^WHERE (\w+?)_recent_contact_date ?<= ?#([^#]+)#$)").match(c)).hasMatch()) {
        if (const std::optional<QDateTime> limit = jetdate::parseLiteral(m.captured(2)))
            return QStringLiteral("没有联系超过%1天的%2")
                .arg(limit->date().daysTo(Clock::today()))
                .arg(kindOf(m.captured(1)));
    }
    if ((m = pattern(
                 R"(^WHERE (\w+?)_(create|die)_date ?<= ?#([^#]+)# AND \1_\2_date ?>= ?#([^#]+)#$)")
                 .match(c))
            .hasMatch())
        return QStringLiteral("%1至%2%3的%4")
            .arg(dayText(m.captured(4)), dayText(m.captured(3)),
                 m.captured(2).compare(QLatin1String("die"), Qt::CaseInsensitive) == 0
                     ? QStringLiteral("结束")
                     : QStringLiteral("增加"),
                 kindOf(m.captured(1)));
    if ((m = pattern(
                 R"(^WHERE (\w+?)_id IN \(SELECT DISTINCT .* WHERE (\w+)\.\w+?_check ?= ?(true|-1)\)$)")
                 .match(c))
            .hasMatch())
        return m.captured(2).compare(QLatin1String("tasks"), Qt::CaseInsensitive) == 0
                   ? QStringLiteral("统计期间有联系记录的%1").arg(kindOf(m.captured(1)))
                   : QStringLiteral("与勾选的%1相关的%2")
                         .arg(kindOf(m.captured(2)), kindOf(m.captured(1)));
    if ((m = pattern(R"(^WHERE (\w+?)_id (NOT )?IN \(SELECT DISTINCT \w+ FROM (\w+?)_(\w+)\)$)")
                 .match(c))
            .hasMatch()) {
        const QString other =
            kindOf(m.captured(3)) == kindOf(m.captured(1)) ? m.captured(4) : m.captured(3);
        return QStringLiteral("%1%2的%3")
            .arg(m.captured(2).isEmpty() ? QStringLiteral("有") : QStringLiteral("没有"),
                 kindOf(other), kindOf(m.captured(1)));
    }
    if ((m = pattern(R"(^WHERE (\w+?)_check ?= ?(true|-1)$)").match(c)).hasMatch())
        return QStringLiteral("勾选的%1").arg(kindOf(m.captured(1)));
    if ((m = pattern(R"(^WHERE (\w+?)_id ?= ?(-?\d+)$)").match(c)).hasMatch())
        return m.captured(2).toLongLong() < 0
                   ? QStringLiteral("新%1").arg(kindOf(m.captured(1)))
                   : QStringLiteral("编号为%1的%2").arg(m.captured(2), kindOf(m.captured(1)));
    if ((m = pattern(R"(^WHERE acc_name IS NULL$)").match(c)).hasMatch())
        return QStringLiteral("没有所属单位的%1").arg(kindOf(QStringLiteral("con")));
    if ((m = pattern(R"(^WHERE \((\w+) ?= ?'' OR \1 IS NULL\)$)").match(c)).hasMatch())
        return labelled(fieldWord(m.captured(1)), QStringLiteral("（未填）"));
    if ((m = pattern(R"(^WHERE (\w+) ?= ?'(.*)'$)").match(c)).hasMatch())
        return labelled(fieldWord(m.captured(1)), typed(m.captured(2)));
    if ((m = pattern(R"(^WHERE (\w+) ?= ?(-?[0-9.]+)$)").match(c)).hasMatch() &&
        !fieldWord(m.captured(1)).isEmpty())
        return labelled(fieldWord(m.captured(1)), m.captured(2));

    if (list) return QStringLiteral("按条件筛选的") + list->noun;
    m = pattern(R"(\b(\w+?)_\w+)").match(c);
    return QStringLiteral("按条件筛选的") +
           (m.hasMatch() ? kindOf(m.captured(1)) : QStringLiteral("记录"));
}

}  // namespace

QString describeCondition(const QString& condition, const ListKind* list,
                          const std::function<QString(const QString&)>& caption) {
    const lists::SplitCondition split = lists::splitCondition(condition);
    QString words = describeWhere(split.where, list);
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

}  // namespace tarvel
