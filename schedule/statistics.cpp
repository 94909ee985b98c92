#include "schedule/statistics.h"

#include "records/recordbase.h"
#include "schedule/labels.h"
#include "schedule/recurrence.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel {

namespace {

enum class Filter { NotContacted, Added, WithTasks, Birthday, Ending };

struct Selection {
    Filter filter;
    qint16 kind;
    const char* column;  // the date column compared, or the key listed
    const char* link;    // the task link table (WithTasks)
};

const Selection kTable[ScheduleStatistics::kSelections] = {
    {Filter::NotContacted, kind::Contact, "con_recent_contact_date", nullptr},
    {Filter::NotContacted, kind::Account, "acc_recent_contact_date", nullptr},
    {Filter::NotContacted, kind::Opportunity, "opp_recent_contact_date", nullptr},
    {Filter::Added, kind::Contact, "con_create_date", nullptr},
    {Filter::Added, kind::Account, "acc_create_date", nullptr},
    {Filter::Added, kind::Opportunity, "opp_create_date", nullptr},
    {Filter::Added, kind::Document, "doc_create_date", nullptr},
    {Filter::WithTasks, kind::Contact, "con_id", "contacts_tasks"},
    {Filter::WithTasks, kind::Account, "acc_id", "accounts_tasks"},
    {Filter::WithTasks, kind::Opportunity, "opp_id", "opportunities_tasks"},
    {Filter::WithTasks, kind::Document, "doc_id", "tasks_documents"},
    {Filter::Birthday, kind::Contact, nullptr, nullptr},
    {Filter::Ending, kind::Opportunity, "opp_die_date", nullptr},
};

const Selection* selectionAt(int index) {
    return index >= 0 && index < ScheduleStatistics::kSelections ? &kTable[index] : nullptr;
}

// "12abc" counts 12 days, as the number in front of any other text; at most
// the digits the field takes, so the date stays a sensible one.
int leadingNumber(const QString& text) {
    const QString t = text.trimmed();
    qsizetype end = 0;
    while (end < t.size() && end < ScheduleStatistics::kMaxOverDaysDigits &&
           t[end] >= QLatin1Char('0') && t[end] <= QLatin1Char('9'))
        ++end;
    return t.left(end).toInt();
}

}  // namespace

QString birthdayCondition(const QDate& day) {
    return QStringLiteral(" WHERE (con_birthday<> # ") + QStringLiteral("1900-1-1") +
           QStringLiteral("# AND month(con_birthday)= ") + QString::number(day.month()) +
           QStringLiteral(" AND day(con_birthday)= ") + QString::number(day.day()) +
           QLatin1Char(')');
}

ScheduleStatistics::ScheduleStatistics(Messages& messages) : messages_(messages) {
    load();
}

void ScheduleStatistics::load() {
    overDays_ = QStringLiteral("15");
    day1_ = Clock::today().addDays(-15);
    day2_ = Clock::today();
}

bool ScheduleStatistics::acceptsOverDaysKey(QChar key) {
    return key >= QLatin1Char('0') && key <= QLatin1Char('9');
}

QStringList ScheduleStatistics::captions() {
    static const char* const words[] = {"没有联系的", "增加的", "有联系记录的", "生日的", "结束的"};
    const QStringList labels = recordKindLabels();
    QStringList out;
    for (const Selection& s : kTable)
        out << QString::fromUtf8(words[int(s.filter)]) + labels[s.kind];
    return out;
}

qint16 ScheduleStatistics::recordKind(int index) {
    const Selection* s = selectionAt(index);
    return s ? s->kind : 0;
}

qint16 ScheduleStatistics::pageOf(int index) {
    switch (recordKind(index)) {
        case kind::Contact:
            return kContactList;
        case kind::Account:
            return kAccountList;
        case kind::Opportunity:
            return kOpportunityList;
        case kind::Document:
            return kDocumentList;
        default:
            return 0;
    }
}

QString ScheduleStatistics::filter(int index) const {
    const Selection* s = selectionAt(index);
    if (!s) return QString();
    const QString column = QLatin1String(s->column);
    switch (s->filter) {
        case Filter::NotContacted:
            return QStringLiteral("WHERE ") + column + QStringLiteral(" <= ") +
                   jetdate::literal(Clock::today().addDays(-leadingNumber(overDays_)));
        case Filter::Added:
        case Filter::Ending:
            return QStringLiteral("WHERE ") + column + QStringLiteral(" <= ") +
                   jetdate::literal(day2_) + QStringLiteral("  AND ") + column +
                   QStringLiteral(">=") + jetdate::literal(day1_);
        case Filter::WithTasks: {
            const QString link = QLatin1String(s->link);
            return QStringLiteral("WHERE ") + column + QStringLiteral(" IN (SELECT DISTINCT ") +
                   link + QLatin1Char('.') + column + QLatin1Char(' ') + QStringLiteral(" FROM ") +
                   link + QStringLiteral(" LEFT Join tasks ON ") + link +
                   QStringLiteral(".tas_id = tasks.tas_id ") +
                   QStringLiteral(" WHERE  tasks.tas_check = true)");
        }
        case Filter::Birthday:
            return QStringLiteral("WHERE con_check= true");
    }
    return QString();
}

bool ScheduleStatistics::periodAccepted() {
    const qint64 days = day1_.daysTo(day2_);
    if (days < 0) {
        messages_.info(Messages::title(),
                       QStringLiteral("第二个日期小于第一个日期,请重新设置日期间隔"));
        return false;
    }
    if (days > 30)
        messages_.warning(Messages::title(),
                          QStringLiteral("您设置的日期间隔比较长,查询统计的时间会比较长"));
    return true;
}

// Clears the marks, then marks what each day of the period selects. One
// statement per day marks that day's rows in place, rather than reading them
// and writing them back one by one: the same rows end up marked. All of it is
// one transaction, so the file is written once, not once per day, and a
// failure leaves the earlier marks as they were.
bool ScheduleStatistics::mark(const char* clear, const char* set,
                              QString (*condition)(const QDate&)) {
    auto fail = [&](const QString& reason) {
        errMsg_ = (errMsg_.isEmpty() ? QString() : errMsg_ + QStringLiteral(" ; ")) +
                  QStringLiteral("lbl_Selection出错，原因可能是") + reason;
        messages_.info(Messages::title(), QStringLiteral("统计没有完成，原因可能是：") + reason);
        return false;
    };
    auto run = [&](const QString& sql) {
        tarveldatabase db;
        db.Execute(sql);
        return db.ErrMsg().isEmpty() || fail(db.ErrMsg());
    };
    Transaction transaction;
    if (!transaction.isActive()) return fail(transaction.error());
    bool ok = run(QLatin1String(clear));
    for (QDate d = day1_; ok && d <= day2_; d = d.addDays(1))
        ok = run(QLatin1String(set) + condition(d));
    return ok && (transaction.commit() || fail(transaction.error()));
}

bool ScheduleStatistics::overDaysAccepted() {
    const QString days = overDays_.trimmed();
    if (!days.isEmpty() && days.size() <= kMaxOverDaysDigits) return true;
    messages_.info(
        Messages::title(),
        QStringLiteral("请输入没有联系的天数（最多%1位数字）！").arg(kMaxOverDaysDigits));
    return false;
}

bool ScheduleStatistics::select(int index, Choice* choice) {
    const Selection* s = selectionAt(index);
    if (!s) return false;
    if (s->filter == Filter::NotContacted ? !overDaysAccepted() : !periodAccepted()) return false;
    if (s->filter == Filter::WithTasks &&
        !mark("UPDATE tasks SET tas_check=0", "UPDATE tasks SET tas_check=true",
              &statisticsTaskDateCondition))
        return false;
    if (s->filter == Filter::Birthday &&
        !mark("UPDATE contacts SET con_check=0", "UPDATE contacts SET con_check=true",
              &birthdayCondition))
        return false;
    if (choice) *choice = Choice{pageOf(index), filter(index)};
    return true;
}

}  // namespace tarvel
