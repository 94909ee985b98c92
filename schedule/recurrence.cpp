#include "schedule/recurrence.h"

#include <cmath>

#include "records/recordbase.h"
#include "schedule/task.h"
#include "store/clock.h"
#include "store/jetdate.h"

namespace tarvel {

namespace {

// The two copies of the condition differ only in these three places; both
// texts are relied on as they stand.
struct ConditionStyle {
    const char* open;       // the first term up to its date
    const char* close;      // after the last term
    const char* beforeDay;  // between the month number and the last day test
};

QString conditionText(const QDate& day, const ConditionStyle& style) {
    const QString d = jetdate::literalText(day);
    const QString upTo = QStringLiteral("tas_date <=#") + d +
                         QStringLiteral("# AND tas_closedate>= #") + d + QLatin1Char('#');
    const QString dd = QString::number(day.day());
    return QLatin1String(style.open) + d + QStringLiteral("#)") +
           QStringLiteral(" OR ( tas_cycle = 1  AND ") + upTo + QLatin1Char(')') +
           QStringLiteral(" OR ( tas_cycle = 7  AND ") + upTo +
           QStringLiteral(" AND WEEKDAY (tas_date)=") +
           QString::number(jetdate::weekdaySundayFirst(day)) + QLatin1Char(')') +
           QStringLiteral(" OR ( tas_cycle = 30 AND ") + upTo +
           QStringLiteral(" AND DAY(tas_date)=") + dd + QLatin1Char(')') +
           QStringLiteral(" OR ( tas_cycle = 365 AND ") + upTo +
           QStringLiteral(" AND MONTH(tas_date) =") + QString::number(day.month()) +
           QLatin1String(style.beforeDay) + QStringLiteral("DAY(tas_date)=") + dd +
           QLatin1String(style.close);
}

bool wholeNumberIn(const QString& text, int low, int high) {
    const QString t = text.trimmed();
    if (t.isEmpty() || !isNumber(t)) return false;
    bool ok = false;
    const int value = t.toInt(&ok);
    return ok && value >= low && value <= high;
}

}  // namespace

QDate openEndDate() {
    return QDate(9999, 12, 31);
}

bool isOpenEnded(const QDateTime& closeDate) {
    return closeDate.isValid() && closeDate.date() >= openEndDate();
}

QString openEndedText() {
    return QStringLiteral("无结束日期");
}

QString closeDateText(const QDateTime& closeDate) {
    if (isOpenEnded(closeDate)) return openEndedText();
    return closeDate.isValid() ? closeDate.date().toString(QStringLiteral("yyyy-M-d")) : QString();
}

QString taskDateCondition(const QDate& day) {
    static const ConditionStyle shared{" WHERE (( tas_cycle = 0  AND tas_date=#", "))", " AND "};
    return conditionText(day, shared);
}

QString statisticsTaskDateCondition(const QDate& day) {
    static const ConditionStyle page{" WHERE ( tas_cycle = 0  AND tas_date  =#", ")", "AND "};
    return conditionText(day, page);
}

bool occursOn(const QDateTime& taskDate, qint16 cycleValue, const QDateTime& closeDate,
              const QDate& day) {
    if (!taskDate.isValid()) return false;
    // Compared as the wall-clock values they hold, whatever their time zone setting.
    const QDateTime begin = jetdate::naive(taskDate.date(), taskDate.time());
    const QDateTime t = jetdate::naive(day);
    if (cycleValue == cycle::Once) return begin == t;
    const bool inRange = begin <= t && closeDate.isValid() &&
                         jetdate::naive(closeDate.date(), closeDate.time()) >= t;
    if (!inRange) return false;
    const QDate start = taskDate.date();
    switch (cycleValue) {
        case cycle::Daily:
            return true;
        case cycle::Weekly:
            return jetdate::weekdaySundayFirst(start) == jetdate::weekdaySundayFirst(day);
        case cycle::Monthly:
            return start.day() == day.day();
        case cycle::Yearly:
            return start.month() == day.month() && start.day() == day.day();
        default:
            return false;
    }
}

bool occursToday(const Task& task) {
    return occursOn(task.TaskDate(), task.Cycle(), task.CloseDate(), Clock::today());
}

std::optional<QStringList> pickListItems(const QString& object, const QString& kind) {
    const QString name = kind.trimmed();
    if (name == QLatin1String("time_format")) return timeFormatItems();
    if (name == QLatin1String("cycle_type")) return cycleTypeItems();
    // Probability too is listed as stored text, sorted, without the "%" its
    // combo on the opportunity pages adds.
    return optionListItems(object, name);
}

bool fillPickList(Form& form, const QString& control, const QString& object, const QString& kind) {
    const auto items = pickListItems(object, kind);
    if (!items) return false;
    form.setControlItems(control, *items);
    return true;
}

namespace {
// The tas_cycle value of each cycle item, in the items' order.
constexpr qint16 kItemCycles[] = {cycle::Daily, cycle::Weekly, cycle::Monthly, cycle::Yearly,
                                  cycle::Once};
}  // namespace

qint16 cycleOfItem(const QString& item) {
    const qsizetype index = cycleTypeItems().indexOf(item.trimmed());
    return index < 0 ? cycle::Once : kItemCycles[index];
}

QString itemOfCycle(qint16 cycleValue) {
    const QStringList items = cycleTypeItems();
    for (qsizetype i = 0; i < items.size(); ++i)
        if (kItemCycles[i] == cycleValue) return items[i];
    return QString();
}

bool checkTypedTime(QString& text, Messages& messages) {
    if (!text.contains(QLatin1Char(':'))) {
        messages.info(Messages::title(), QStringLiteral("小时和分钟之间请用冒号(:)分隔开！"));
        return false;
    }
    const QStringList parts = text.split(QLatin1Char(':'));
    // Whole numbers only: "9.5:30" would pass a plain number test and then fail
    // when the form turns the text into a time.
    if (!wholeNumberIn(parts[0], 0, 23) || !wholeNumberIn(parts[1], 0, 59)) {
        messages.info(Messages::title(), QStringLiteral("您输入的时间不符合格式！请检查"));
        text = unpaddedTime(Clock::time());
        return false;
    }
    return true;
}

bool isNumber(const QString& text) {
    QString t = text.trimmed();
    t.remove(QLatin1Char(','));
    if (t.isEmpty()) return false;
    bool ok = false;
    const double value = t.toDouble(&ok);
    return ok && std::isfinite(value);
}

QDateTime timeOfDay(const QString& text) {
    const auto value = jetdate::parseLiteral(text);
    if (!value) return QDateTime();
    return jetdate::naive(jetdate::timeBaseDate(), value->time());
}

QString unpaddedTime(const QTime& time) {
    return QString::number(time.hour()) + QLatin1Char(':') + QString::number(time.minute());
}

}  // namespace tarvel
