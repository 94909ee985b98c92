#include "browse/listsql.h"

#include <QRegularExpression>

#include "store/likecontains.h"
#include "store/tarveldatabase.h"

namespace tarvel::lists {

namespace {

QString safe(const QString& text) {
    return tarveldatabase::SafeSql(text);
}

QString likeTest(const QString& column, const QString& operand) {
    return column + QStringLiteral(" LIKE ") + operand;
}

}  // namespace

SplitCondition splitCondition(const QString& condition) {
    const int at = condition.indexOf(QStringLiteral("ORDER BY"), 0, Qt::CaseInsensitive);
    if (at < 0) return {condition, QString()};
    QString where = condition.left(at);
    while (!where.isEmpty() && where.back().isSpace()) where.chop(1);
    return {where, QLatin1Char(' ') + condition.mid(at)};
}

QString sortedCondition(const QString& condition, const QString& column) {
    const SplitCondition split = splitCondition(condition);
    const QString ascending = QStringLiteral(" ORDER BY ") + column + QStringLiteral(" ASC");
    const QString order = split.order == ascending
                              ? QStringLiteral(" ORDER BY ") + column + QStringLiteral(" DESC")
                              : ascending;
    return split.where + order;
}

QString listQuery(const ListKind& kind, const QString& columns, const QString& condition) {
    const SplitCondition split = splitCondition(condition);
    return QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM ") + kind.source +
           QLatin1Char(' ') + split.where +
           (split.order.isEmpty() ? kind.defaultOrder : split.order);
}

QString searchCondition(int number, const QString& text) {
    if (text.isEmpty() || number < 0 || number > listno::Documents) return QString();
    const QString operand = likeContains(text);
    const ListKind& kind = listKind(number);
    QString where = QStringLiteral("WHERE   ");
    for (int i = 0; i < kind.searchColumns.size(); ++i) {
        // The account search keeps its own pattern of blanks between the tests.
        if (i > 0)
            where += number == listno::Accounts && (i == 2 || i == 4 || i == 5)
                         ? QStringLiteral("  OR ")
                         : QStringLiteral(" OR ");
        where += likeTest(kind.searchColumns[i], operand);
    }
    return where;
}

QString clearChecksSql(int number) {
    if (number < 0 || number > listno::Documents) return QString();
    const ListKind& k = listKind(number);
    return QStringLiteral(" UPDATE %1 SET %2=0").arg(k.table, k.tick);
}

QString setChecksSql(int number, int mode, const QString& condition, bool apply) {
    if (number < 0 || number > listno::Documents) return QString();
    const ListKind& k = listKind(number);
    const QString& table = k.table;
    const QString& tick = k.tick;
    QString set;
    if (!apply)
        set = tick + QLatin1Char('=') + tick + QLatin1Char(' ');
    else if (mode == 0)
        set = tick + QStringLiteral("= -1 ");
    else if (mode == 1)
        set = tick + QStringLiteral("=0 ");
    else if (number == listno::Opportunities)
        set = tick + QStringLiteral("= NOT ") + tick + QLatin1Char(' ');
    else
        set = tick + QStringLiteral("=NOT ") + tick + QStringLiteral("  ");
    const QString where = splitCondition(condition).where;
    // The engine cannot write through the joined query; the contacts it
    // selects are picked by key instead, so account columns still filter.
    if (number == listno::Contacts && !where.trimmed().isEmpty())
        return QStringLiteral("UPDATE contacts SET ") + set +
               QStringLiteral("WHERE con_id IN (SELECT con_id FROM que_contacts_accounts ") +
               where + QLatin1Char(')');
    return QStringLiteral("UPDATE ") + table + QStringLiteral(" SET ") + set + where;
}

QString tickSql(const ListKind& kind, qint64 id, bool ticked) {
    return QStringLiteral("UPDATE ") + kind.table + QStringLiteral(" SET ") + kind.tick +
           (ticked ? QStringLiteral("= -1") : QStringLiteral("=0")) + QStringLiteral(" WHERE ") +
           kind.key + QStringLiteral("= ") + QString::number(id);
}

QString tickedQuery(const ListKind& kind, const QString& columns) {
    return QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM ") + kind.source +
           QStringLiteral(" WHERE ") + kind.tick + QStringLiteral("=true");
}

QString categoryCondition(const ListKind& kind, const CategoryGroup& group, const QString& value,
                          const QDate& today) {
    using Match = CategoryGroup::Match;
    const QString v = safe(value);
    switch (group.match) {
        case Match::All:
        case Match::Search:
            return QString();
        case Match::Birthday:
            return QStringLiteral(" WHERE (con_birthday<> # ") + QStringLiteral("1900-1-1") +
                   QStringLiteral("# AND month(con_birthday)= ") + QString::number(today.month()) +
                   QStringLiteral(" AND day(con_birthday)= ") + QString::number(today.day()) +
                   QLatin1Char(')');
        case Match::Participation: {
            const QString link = kind.number == listno::Accounts
                                     ? QStringLiteral("opportunities_accounts")
                                     : QStringLiteral("opportunities_contacts");
            return QStringLiteral(" WHERE ") + kind.key +
                   (value == QStringLiteral("无") ? QStringLiteral(" NOT IN")
                                                  : QStringLiteral(" IN")) +
                   QStringLiteral(" (SELECT DISTINCT ") + kind.key + QStringLiteral(" FROM ") +
                   link + QLatin1Char(')');
        }
        case Match::AccountName:
            if (value.isEmpty()) return QStringLiteral(" WHERE acc_name IS NULL");
            return QStringLiteral(" WHERE acc_name='") + v + QLatin1Char('\'');
        case Match::Substring:
            return QStringLiteral(" WHERE ") + group.column + QStringLiteral(" Like  ") +
                   likeContains(value) + QLatin1Char(' ');
        case Match::Number: {
            bool numeric = false;
            value.toDouble(&numeric);
            if (numeric) return QStringLiteral(" WHERE ") + group.column + QLatin1Char('=') + value;
            [[fallthrough]];
        }
        case Match::Equal:
            // The counts put a null category under the empty label; so does the list.
            if (value.isEmpty())
                return QStringLiteral(" WHERE (") + group.column + QStringLiteral("='' OR ") +
                       group.column + QStringLiteral(" IS NULL)");
            return QStringLiteral(" WHERE ") + group.column + QStringLiteral("='") + v +
                   QLatin1Char('\'');
    }
    return QString();
}

RelatedList relatedCondition(const ListKind& kind) {
    if (kind.number == listno::Opportunities)
        return {listKind(listno::Contacts).page,
                QStringLiteral("WHERE con_id IN (SELECT DISTINCT opportunities_contacts.con_id ") +
                    QStringLiteral(" FROM opportunities_contacts LEFT Join opportunities ON "
                                   "opportunities_contacts.opp_id  = opportunities.opp_id ") +
                    QStringLiteral(" WHERE  opportunities.opp_check = true)")};
    const QString link = QStringLiteral("opportunities_") + kind.table;
    return {listKind(listno::Opportunities).page,
            QStringLiteral("WHERE opp_id IN (SELECT DISTINCT ") + link +
                QStringLiteral(".opp_id ") + QStringLiteral(" FROM ") + link +
                QStringLiteral(" LEFT Join ") + kind.table + QStringLiteral(" ON ") + link +
                QLatin1Char('.') + kind.key + QStringLiteral("  = ") + kind.table +
                QLatin1Char('.') + kind.key + QLatin1Char(' ') + QStringLiteral(" WHERE  ") +
                kind.table + QLatin1Char('.') + kind.tick + QStringLiteral(" = true)")};
}

std::optional<LeadingLike> leadingLike(const QString& where) {
    static const QRegularExpression head(QStringLiteral("^\\s*WHERE\\s+(\\w+)\\s+LIKE\\s+"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = head.match(where);
    if (!m.hasMatch()) return std::nullopt;
    const std::optional<LikeOperand> operand =
        readLikeContains(QStringView(where).mid(m.capturedEnd()));
    if (!operand) return std::nullopt;
    return LeadingLike{m.captured(1), operand->text, where.mid(m.capturedEnd() + operand->length)};
}

QString searchTextOf(const ListKind& kind, const QString& condition) {
    const std::optional<LeadingLike> like = leadingLike(splitCondition(condition).where);
    if (!like || kind.searchColumns.isEmpty() || like->column != kind.searchColumns.first())
        return QString();
    return like->rest.isEmpty() || like->rest.startsWith(QLatin1String(" OR")) ? like->text
                                                                               : QString();
}

}  // namespace tarvel::lists
