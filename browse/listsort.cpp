#include "browse/listsort.h"

#include <QRegularExpression>

#include "browse/listsql.h"
#include "browse/memocolumn.h"
#include "custom/settingrow.h"

namespace tarvel::lists {

namespace {

const QString kSection = QStringLiteral("list_sort");

// The one form an order takes: it is put into statements, so nothing else
// read from the data file is accepted.
const QRegularExpression& orderForm() {
    static const QRegularExpression form(
        QStringLiteral("^\\s*ORDER BY\\s+(\\w+)\\s+(ASC|DESC)\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    return form;
}

}  // namespace

QString keptOrder(const QString& list, const QStringList& columns) {
    const std::optional<QString> kept = settingrow::read(kSection, list);
    if (!kept) return QString();
    const auto m = orderForm().match(*kept);
    if (!m.hasMatch()) return QString();
    const QString column = m.captured(1);
    if (isMemoColumn(column) || !columns.contains(column, Qt::CaseInsensitive)) return QString();
    return QStringLiteral(" ORDER BY %1 %2").arg(column, m.captured(2).toUpper());
}

bool keepOrder(const QString& list, const QString& order, QString* error) {
    if (!orderForm().match(order).hasMatch()) {
        *error = QStringLiteral("排序方式不对：") + order.trimmed();
        return false;
    }
    return settingrow::write(kSection, list, QStringLiteral("列表的排序"), order.trimmed(), error);
}

QString withOrder(const QString& condition, const QString& order) {
    if (order.isEmpty() || !splitCondition(condition).order.isEmpty()) return condition;
    return condition + order;
}

}  // namespace tarvel::lists
