#include "custom/optionlists.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {

QString optionQuery(const QString& object, const QString& name) {
    // Callers pass fixed names; they are quoted all the same so that no text
    // can break the statement.
    return QStringLiteral("SELECT  opt_description FROM options WHERE opt_object = '") +
           tarveldatabase::SafeSql(object) + QStringLiteral("'  AND opt_name = '") +
           tarveldatabase::SafeSql(name) + QStringLiteral("'");
}

// The trimmed descriptions, `nullText` for a null one, each followed by `suffix`.
std::optional<QStringList> readEntries(const QString& sql, const QString& nullText,
                                       const QString& suffix) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs || rs->State() != adStateOpen) return std::nullopt;
    QStringList items;
    for (; !rs->Eof(); rs->MoveNext()) {
        const QVariant v = rs->value(0);
        items << (v.isNull() ? nullText : v.toString().trimmed()) + suffix;
    }
    return items;
}

}  // namespace

QStringList timeFormatItems() {
    QStringList items;
    for (int hour = 0; hour < 24; ++hour) {
        const QString hh = QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0'));
        items << hh + QStringLiteral(":00") << hh + QStringLiteral(":30");
    }
    return items;
}

QStringList cycleTypeItems() {
    return {QStringLiteral("每天"), QStringLiteral("每周"), QStringLiteral("每月"),
            QStringLiteral("每年"), QStringLiteral("不重复")};
}

std::optional<QStringList> optionComboItems(const QString& object, const QString& name) {
    const QString o = object.trimmed(), n = name.trimmed();
    if (n == QLatin1String("time_format")) return timeFormatItems();
    if (n == QLatin1String("cycle_type")) return cycleTypeItems();
    // Probabilities keep the order they were entered in: no ORDER BY.
    if (n == QLatin1String("Probability"))
        return readEntries(optionQuery(o, n), QStringLiteral("0"), QStringLiteral("%"));
    return optionListItems(o, n);
}

std::optional<QStringList> optionListItems(const QString& object, const QString& name) {
    return readEntries(
        optionQuery(object.trimmed(), name.trimmed()) + QStringLiteral(" ORDER BY opt_description"),
        QString(), QString());
}

}  // namespace tarvel
