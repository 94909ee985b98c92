#include "schedule/reminders.h"

#include <algorithm>

#include "schedule/recurrence.h"
#include "schedule/statistics.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/readrows.h"
#include "store/tarveldatabase.h"

namespace tarvel {

bool reminderDue(const QVariant& remind, const QVariant& again, const QVariant& lastRemindDate,
                 const QDate& today) {
    if (recordvalue::int16(remind) != 1) return false;
    if (recordvalue::int16(again) != 1) return true;
    const QDateTime last = recordvalue::dateTime(lastRemindDate);
    return last.isValid() && last != jetdate::naive(today);
}

QString todayTasksQuery(const QDate& day) {
    return QStringLiteral(
               "SELECT  tas_id, tas_date, tas_time, tas_subject, tas_closed, "
               "tas_remind,tas_again,tas_last_remind_date FROM tasks ") +
           taskDateCondition(day);
}

bool TodayList::load() {
    return load(Clock::today());
}

bool TodayList::load(const QDate& day) {
    errMsg_.clear();  // what is shown is this load's failure, not an old one
    RecordsetPtr rs = readRows(todayTasksQuery(day), errMsg_, "load");
    if (!rs) return false;
    RecordsetPtr people =
        readRows(QStringLiteral("SELECT con_id, con_lastname, con_birthday FROM contacts") +
                     birthdayCondition(day) + QStringLiteral(" ORDER BY con_lastname"),
                 errMsg_, "load");
    if (!people) return false;

    // The same day read again keeps what the reminder windows did.
    QHash<int, TodayTask> before;
    if (day == day_)
        for (const TodayTask& t : std::as_const(tasks_)) before.insert(t.id, t);
    day_ = day;
    tasks_.clear();
    for (; !rs->Eof(); rs->MoveNext()) {
        TodayTask t;
        t.id = recordvalue::int32(rs->value(QStringLiteral("tas_id")));
        t.subject = recordvalue::text(rs->value(QStringLiteral("tas_subject")));
        const QDateTime time = recordvalue::dateTime(rs->value(QStringLiteral("tas_time")));
        t.time = time.isValid() ? time.time() : QTime();
        t.timeText = t.time.isValid() ? t.time.toString(QStringLiteral("hh:mm")) : QString();
        t.done = recordvalue::int16(rs->value(QStringLiteral("tas_closed"))) != 0;
        t.due = reminderDue(rs->value(QStringLiteral("tas_remind")),
                            rs->value(QStringLiteral("tas_again")),
                            rs->value(QStringLiteral("tas_last_remind_date")), day);
        t.fireAt = jetdate::naive(day, t.time.isValid() ? t.time : QTime(0, 0));
        if (const auto it = before.constFind(t.id); it != before.constEnd()) {
            t.state = it->state;
            t.handledAt = it->handledAt;
            t.snoozed = it->snoozed;
            if (it->snoozed) t.fireAt = it->fireAt;
        }
        tasks_ << t;
    }
    std::stable_sort(tasks_.begin(), tasks_.end(), [](const TodayTask& a, const TodayTask& b) {
        return a.fireAt.time() < b.fireAt.time();
    });
    birthdays_.clear();
    for (; !people->Eof(); people->MoveNext())
        birthdays_ << TodayBirthday{
            recordvalue::int32(people->value(QStringLiteral("con_id"))),
            recordvalue::text(people->value(QStringLiteral("con_lastname"))),
            recordvalue::dateTime(people->value(QStringLiteral("con_birthday"))).date()};
    return true;
}

const TodayTask* TodayList::task(int taskId) const {
    for (const TodayTask& t : tasks_)
        if (t.id == taskId) return &t;
    return nullptr;
}

TodayTask* TodayList::find(int taskId) {
    for (TodayTask& t : tasks_)
        if (t.id == taskId) return &t;
    return nullptr;
}

QList<TodayTask> TodayList::fire(const QDateTime& now) {
    // Yesterday's entries never fire; when today's cannot be read, nothing does.
    if (now.date() != day_ && !load(now.date())) return {};
    QList<TodayTask> firing;
    for (TodayTask& t : tasks_) {
        if (!t.due || t.state != TodayTask::State::Waiting || t.fireAt > now) continue;
        t.state = TodayTask::State::Showing;
        firing << t;
    }
    return firing;
}

void TodayList::handled(int taskId, const QDateTime& at) {
    if (TodayTask* t = find(taskId)) {
        t->state = TodayTask::State::Handled;
        t->handledAt = at;
    }
}

void TodayList::snoozed(int taskId, const QDateTime& at) {
    if (TodayTask* t = find(taskId)) {
        t->state = TodayTask::State::Waiting;
        t->snoozed = true;
        t->fireAt = at;
    }
}

Reminder::Reminder(int taskId, TodayList& list, Messages& messages)
    : taskId_(taskId), list_(list), messages_(messages) {}

bool Reminder::load() {
    task_.setID(taskId_);
    const bool ok = task_.GetById();
    if (!ok) appendError(errMsg_, task_.ErrMsg());
    return ok;
}

QString Reminder::fieldText(const QString& control) const {
    if (control == QLatin1String("txt_subject")) return task_.Subject();
    if (control == QLatin1String("txt_time"))
        return task_.TaskTime().isValid()
                   ? task_.TaskTime().time().toString(QStringLiteral("hh:mm"))
                   : QString();
    if (control == QLatin1String("txt_type")) return task_.TaskType();
    if (control == QLatin1String("txt_important")) return task_.Important();
    if (control == QLatin1String("txt_tag")) return task_.Tag();
    if (control == QLatin1String("txt_description")) return task_.Description();
    return QString();
}

void Reminder::fill(Form& form) const {
    for (const char* control :
         {"txt_subject", "txt_time", "txt_type", "txt_important", "txt_tag", "txt_description"})
        form.setControlValue(QLatin1String(control), fieldText(QLatin1String(control)));
}

bool Reminder::acceptsDelayKey(QChar key) {
    return key >= QLatin1Char('0') && key <= QLatin1Char('9');
}

bool Reminder::dismiss(const QDateTime& now) {
    const QString sql =
        task_.Again() == 1
            ? QStringLiteral("UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = ")
            : QStringLiteral("UPDATE tasks SET tas_remind= 0 WHERE tas_id = ");
    tarveldatabase db;
    db.Execute(sql + QString::number(taskId_));
    // Handled either way: a failed stamp must not make the window come back.
    list_.handled(taskId_, now);
    if (db.ErrMsg().isEmpty()) return true;
    appendError(errMsg_, QStringLiteral("dismiss出错，原因可能是") + db.ErrMsg());
    return false;
}

bool Reminder::snooze(const QString& delayText, const QDateTime& now) {
    // Minutes as the clock shows them: 23:50:40 is nine minutes before 23:59.
    const QTime t = now.time();
    const qint64 left = 23 * 60 + 59 - (t.hour() * 60 + t.minute());
    const QString digits = delayText.trimmed();
    bool ok = digits.isEmpty();
    const qint64 minutes = digits.isEmpty() ? 0 : digits.toLongLong(&ok);
    if (!ok || minutes < 0 || minutes > left) {
        messages_.info(
            Messages::title(),
            QStringLiteral("您延迟的时间不能超过今天晚上23:59 ! 请重新输入延迟分钟数。"));
        return false;
    }
    list_.snoozed(taskId_, now.addSecs(minutes * 60));
    return true;
}

QString Reminder::openTaskFilter() const {
    return QStringLiteral("WHERE tas_id= ") + QString::number(taskId_);
}

}  // namespace tarvel
