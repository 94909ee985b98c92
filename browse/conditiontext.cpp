#include "browse/conditiontext.h"

#include <QRegularExpression>

#include "records/kinds.h"
#include "schedule/labels.h"
#include "store/clock.h"
#include "store/jetdate.h"

namespace tarvel {

namespace {

QRegularExpression pattern(const char* text) {
    return QRegularExpression(QLatin1String(text), QRegularExpression::CaseInsensitiveOption);
}

// The record kind a column prefix ("con", "acc", ...) belongs to, in words.
QString kindOf(const QString& prefix) {
    const RecordKindInfo* k = kindByPrefix(prefix);
    return k ? recordKindLabel(k->code) : QStringLiteral("记录");
}

// The words for a column compared with a typed value ("con_province" -> 地区).
QString fieldWord(const QString& column) {
    static const struct {
        const char* suffix;
        const char* word;
    } words[] = {{"_province", "地区"}, {"_city", "城市"},     {"_important", "重要程度"},
                 {"_relation", "关系"}, {"_industry", "行业"}, {"_type", "类型"},
                 {"_phase", "阶段"},    {"_source", "来源"},   {"acc_name", "单位"},
                 {"_title", "职务"},    {"_subject", "主题"}};
    for (const auto& w : words)
        if (column.endsWith(QLatin1String(w.suffix), Qt::CaseInsensitive))
            return QString::fromUtf8(w.word);
    return QStringLiteral("条件");
}

QString dayText(const QString& literal) {
    const std::optional<QDateTime> t = jetdate::parseLiteral(literal);
    return t ? t->date().toString(QStringLiteral("yyyy年M月d日")) : literal;
}

// A quoted value as typed: doubled quotes are one.
QString typed(const QString& quoted) {
    return QString(quoted).replace(QStringLiteral("''"), QStringLiteral("'"));
}

}  // namespace

QString describeCondition(const QString& condition) {
    const QString c = condition.simplified();
    if (c.isEmpty()) return QStringLiteral("全部记录");
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
    // A search tests one typed text against one or more columns; tags are
    // matched as a part of the tag text.
    if ((m = pattern(R"(^WHERE (\w+) LIKE '%(.*?)%'( OR |$))").match(c)).hasMatch())
        return (m.captured(1).endsWith(QLatin1String("_tag"), Qt::CaseInsensitive)
                    ? QStringLiteral("标签：")
                    : QStringLiteral("搜索：")) +
               typed(m.captured(2));
    if ((m = pattern(R"(^WHERE (\w+) ?= ?'(.*)'$)").match(c)).hasMatch())
        return fieldWord(m.captured(1)) + QStringLiteral("：") + typed(m.captured(2));

    m = pattern(R"(\b(con|acc|opp|tas|doc)_\w+)").match(c);
    return QStringLiteral("按条件筛选的") +
           (m.hasMatch() ? kindOf(m.captured(1)) : QStringLiteral("记录"));
}

}  // namespace tarvel
