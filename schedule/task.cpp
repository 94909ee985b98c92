#include "schedule/task.h"

#include "schedule/labels.h"
#include "schedule/recurrence.h"
#include "store/clock.h"

namespace tarvel {

namespace {

QString num(int id) {
    return QString::number(id);
}

QVariant checkBox(qint16 value) {
    return value == 1 ? -1 : 0;
}

}  // namespace

using recordvalue::leftChars;

const RecordDescription<Task>& Task::description() {
    // Dates are stored at midnight and times on the time base day. The task
    // adds no row to a grid (ListAdd); UpdateIndex writes in Update's order.
    using T = Task;
    using enum DateForm;
    static const RecordDescription<Task> d{
        "tasks",
        "tas_id",
        "tasks",
        "0",
        "g_TasID",
        nullptr,
        nullptr,
        {{"tas_id", "ID", &T::id_},
         {"tas_subject", "Subject", &T::subject_, "txt_sch_subject", 255, {1, 1, 0, 1}},
         {"tas_date", "TaskDate", &T::taskDate_, "DT_sch_date", 0, {2, 2, 0, 2}, Day},
         {"tas_time", "TaskTime", &T::taskTime_, "cbo_sch_time", 0, {3, 3, 0, 3}, TimeOfDay},
         {"tas_type", "TaskType", &T::taskType_, "Cbo_sch_type", 50, {4, 4, 0, 4}},
         {"tas_important", "Important", &T::important_, "cbo_sch_importance", 50, {5, 6, 0, 6}},
         {"tas_outlay", "Outlay", &T::outlay_, "txt_sch_outlay", 0, {6, 7, 0, 7}},
         {"tas_tag", "Tag", &T::tag_, "cbo_sch_tag", 255, {7, 5, 0, 5}},
         {"tas_private", "iPrivate", &T::private_, "chk_sch_private", 0, {8, 8, 0, 8}},
         {"tas_remind", "Remind", &T::remind_, "chk_sch_remind", 0, {9, 9, 0, 9}},
         {"tas_closed", "Closed", &T::closed_, "chk_sch_completed", 0, {10, 10, 0, 10}},
         {"tas_again", "Again", &T::again_, nullptr, 0, {11, 11, 0, 11}},
         {"tas_cycle", "Cycle", &T::cycle_, nullptr, 0, {12, 12, 0, 12}},
         {"tas_closedate", "CloseDate", &T::closeDate_, nullptr, 0, {13, 13, 0, 13}, Day},
         {"tas_create_date", "CreateDate", &T::createDate_, nullptr, 0, {14, 0, 0, 0}},
         {"tas_recent_contact_date", "RCDate", &T::rcDate_, nullptr, 0, {15, 14, 0, 14}},
         {"tas_description", "Description", &T::description_, "rtxt_sch_memo", 0, {16, 15, 0, 15}},
         {"tas_last_remind_date", "Task_last_remind_date", &T::lastRemindDate_}}};
    return d;
}

const RecordLinks& Task::links() {
    // After adding, the task reads the kind's whole link table (changing nothing);
    // removing a link stamps neither record.
    static const RecordLinks l{
        kind::Task,
        {{kind::Opportunity, "SELECT * FROM opportunities_tasks WHERE tas_id=%1 AND opp_id=%2",
          "INSERT INTO opportunities_tasks(tas_id,opp_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM opportunities_tasks WHERE tas_id=%1 AND opp_id=%2",
          "SELECT * FROM  opportunities_tasks "},
         {kind::Account, "SELECT * FROM accounts_tasks WHERE tas_id=%1 AND acc_id=%2",
          "INSERT INTO accounts_tasks(tas_id,acc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM accounts_tasks WHERE tas_id=%1 AND acc_id=%2",
          "SELECT * FROM accounts_tasks"},
         {kind::Contact, "SELECT * FROM contacts_tasks WHERE tas_id=%1 AND con_id=%2",
          "INSERT INTO contacts_tasks(tas_id,con_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM contacts_tasks WHERE tas_id=%1 AND con_id=%2",
          "SELECT * FROM  contacts_tasks"},
         {kind::Document, "SELECT * FROM tasks_documents WHERE tas_id=%1 AND doc_id=%2",
          "INSERT INTO tasks_documents(tas_id,doc_id) VALUES(%1,%2)", nullptr,
          "DELETE * FROM tasks_documents WHERE tas_id=%1 AND doc_id=%2",
          "SELECT * FROM  tasks_documents"}},
        {"DELETE * FROM tasks_documents WHERE tas_id=%1",
         "DELETE * FROM accounts_tasks WHERE tas_id=%1",
         "DELETE * FROM opportunities_tasks WHERE tas_id=%1",
         "DELETE * FROM contacts_tasks WHERE tas_id=%1"}};
    return l;
}

bool Task::Add() {
    createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
    return report("Add", addRow(*this, description()));
}

Currency Task::GetOutlayAtDay(const QDate& day) {
    const RecordsetPtr rs =
        read(QStringLiteral("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#") +
             jetdate::literalText(day) + QLatin1Char('#'));
    report("GetOutlayAtDay", rs != nullptr);
    return rs && !rs->Eof() ? Currency::fromVariant(rs->value(0)) : Currency();
}

bool Task::panelRecordName(qint16 recordKind, int recordId, QString& name) const {
    // By kind code: the name column, the table and its key (no task is begun from a task).
    static const char* const sources[] = {
        "opp_subject FROM opportunities WHERE opp_id=", "acc_name FROM accounts WHERE acc_id=",
        "con_lastname FROM contacts WHERE con_id=", nullptr,
        "doc_name FROM documents WHERE doc_id="};
    const QString source = QLatin1String(sources[recordKind - 1]);
    const bool ok = readText(QStringLiteral("SELECT ") + source + num(recordId),
                             source.section(QLatin1Char(' '), 0, 0), name);
    name = name.trimmed();
    return ok;
}

bool Task::InitTask(int taskId) {
    if (taskId != 0) {
        id_ = taskId;
        return report("InitTask", GetById());
    }
    // A task begun from a record's panel is named after that record.
    const qint16 panelKind = panel::kindOf(panelName());
    QString name;
    const bool named = panelKind != 0 && panelKind != kind::Task;
    if (named && !panelRecordName(panelKind, panelRecordId(), name))
        return report("InitTask", false);
    // Every column empty (texts "", no dates, zeros), then the new task's own.
    for (const auto& c : description().columns) c.set(*this, QVariant());
    if (named) subject_ = recordKindLabel(panelKind) + QLatin1Char(':') + name;
    taskDate_ = closeDate_ = createDate_ = recordvalue::today();
    taskTime_ = jetdate::naive(jetdate::timeBaseDate(), Clock::time());
    rcDate_ = recordvalue::now();
    return true;
}

bool Task::ShowTask(int taskId) {
    if (!InitTask(taskId) || !needForm()) return report("ShowTask", false);
    showControls(*this, description());
    setFormValue("DT_sch_date", taskDate_.isValid() ? QVariant(taskDate_.date()) : QVariant());
    setFormValue("cbo_sch_time", taskTime_.isValid() ? unpaddedTime(taskTime_.time()) : QString());
    setFormValue("txt_sch_outlay", outlay_.toString());
    setFormValue("chk_sch_remind", checkBox(remind_));
    setFormValue("chk_sch_completed", checkBox(closed_));
    setFormValue("chk_sch_private", checkBox(private_));
    setFormValue("chk_sch_nextdate", 0);
    setFormValue("DT_sch_nextdate", Clock::today());
    setFormValue("cbo_sch_nexttime", unpaddedTime(Clock::time()));
    setFormProperty("DT_sch_nextdate.Enabled", false);
    setFormProperty("cbo_sch_nexttime.Enabled", false);
    setFormProperty("g_TasID", taskId);
    return true;
}

qint16 Task::ticked(const char* control) const {
    const QVariant v = oForm()->controlValue(QLatin1String(control));
    return !v.isNull() && v.toInt() != 0 ? 1 : 0;
}

bool Task::readWhen(const char* dateControl, const char* timeControl) {
    if (!needForm()) return false;
    const QDateTime day = recordvalue::dateTime(oForm()->controlValue(QLatin1String(dateControl)));
    if (!day.isValid())
        return fail(QStringLiteral("%1 没有有效的日期").arg(QLatin1String(dateControl)));
    const QString time = formText(timeControl);
    const QDateTime at = timeOfDay(time);
    if (!at.isValid()) return fail(QStringLiteral("“%1”不是有效的时间").arg(time));
    taskDate_ = jetdate::naive(day.date());
    taskTime_ = at;
    return true;
}

bool Task::readForm(bool newTask) {
    if (!readWhen("DT_sch_date", "cbo_sch_time")) return false;
    readControls(*this, description());
    const QString outlay = formText("txt_sch_outlay");
    outlay_ = isNumber(outlay) ? Currency::parse(outlay).value_or(Currency()) : Currency();
    remind_ = ticked("chk_sch_remind");
    closed_ = ticked("chk_sch_completed");
    private_ = ticked("chk_sch_private");
    if (newTask) createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
    return true;
}

bool Task::AddTask() {
    return report("AddTask", readForm(true));
}

bool Task::ChangeTask() {
    return report("ChangeTask", readForm(false));
}

bool Task::AddNextTask() {
    if (!readWhen("DT_sch_nextdate", "cbo_sch_nexttime")) return report("AddNextTask", false);
    // A new row: the key, the done flag and the reminder date are not the
    // current task's (a follow-up is usually made when that one is done).
    id_ = 0;
    closed_ = 0;
    lastRemindDate_ = QDateTime();
    subject_ = leftChars(formText("txt_sch_subject"), 255);
    outlay_ = Currency();
    description_ =
        QStringLiteral("本记录的建立日期为:") + recordvalue::displayDate(recordvalue::today());
    remind_ = ticked("chk_sch_remind");
    private_ = ticked("chk_sch_private");
    taskType_.clear();
    important_.clear();
    tag_.clear();
    createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
    return true;
}

bool Task::linkToShownRecords() {
    if (panel::kindOf(panelName()) != 0) return linkToPanelRecord();
    static const std::tuple<const char*, const char*, qint16> shown[] = {
        {"iShowOpp", "g_OppID", kind::Opportunity},
        {"iShowAcc", "g_AccID", kind::Account},
        {"iShowCon", "g_ConID", kind::Contact},
        {"iShowDoc", "g_DocID", kind::Document}};
    for (const auto& [flagName, idName, k] : shown)
        if (recordvalue::int32(formProperty(flagName)) != 0 &&
            !AddRelative(k, recordvalue::int32(formProperty(idName))))
            return false;
    return true;
}

bool Task::AddToList() {
    // Nothing is stored when there is no form.
    if (!needForm() || (id_ == 0 && !Add())) return report("AddToList", false);
    setFormProperty("g_TasID", id_);
    if (!linkToShownRecords()) return report("AddToList", false);
    if (!oAdodc()) return true;  // the form shows no task list
    const qint16 panelKind = panel::kindOf(panelName());
    bool ok;
    if (panelKind != 0 && panelKind != kind::Task)
        ok = SetQuery(panelRecordId());
    else
        ok = oAdodc()->Refresh() || fail(oAdodc()->ErrorDescription());
    return report("AddToList", ok && needGrid() && findKey(gridRows(), "tas_id", id_));
}

bool Task::UpdateIndex() {
    // A grid without every stored column leaves the rest to Update.
    bool complete = false;
    if (gridRowHolds("tas_id", id_)) {
        Recordset& rs = gridRows();
        complete = true;
        for (const auto* c : description().written(Write::ListUpdate)) {
            if (rs.fieldIndex(QLatin1String(c->column)) < 0)
                complete = false;
            else if (!setField(rs, c->column, c->field(*this)))
                return report("UpdateIndex", false);
        }
        if (!check(rs, rs.Update())) return report("UpdateIndex", false);
    }
    return report("UpdateIndex", complete || Update());
}

bool Task::SetQuery() {
    return report("SetQuery", needForm() && SetQuery(panelRecordId()));
}

bool Task::SetQuery(int otherId) {
    const bool shown = showRelated(
        QStringLiteral("SELECT tas_id,tas_date,tas_time,tas_subject,tas_remind,tas_closed,"
                       "tas_private,tas_outlay,tas_important,tas_tag,tas_create_date,"
                       "tas_recent_contact_date,tas_description, tas_type,tas_again, "
                       "tas_cycle,tas_closedate FROM tasks  WHERE tas_id IN (SELECT tas_id FROM "),
        {{kind::Account, "accounts_tasks WHERE acc_id="},
         {kind::Opportunity, "opportunities_tasks WHERE opp_id="},
         {kind::Contact, "contacts_tasks WHERE con_id="},
         {kind::Document, "tasks_documents WHERE doc_id="}},
        otherId, "dgrid_sch",
        "联系日期,时间,主题,提醒,完成,私有,费用,重要性,标签,创建日期,最近联系日期,描述,类型,"
        "重复提醒,周期,结束日期",
        ") ORDER BY tas_date DESC");
    const qint16 panelKind = panel::kindOf(panelName());
    if (!shown || panelKind == 0 || panelKind == kind::Task) return report("SetQuery", shown);
    // The digest is read off the grid's own rows: the same tasks, in its order.
    Recordset& rs = gridRows();
    digest_ = taskDigest(rs, true);
    rs.MoveFirst();
    setFormValue("rtxt_sch_digest", digest_);
    return true;
}

}  // namespace tarvel
