#include "schedule/task.h"

#include "schedule/labels.h"
#include "schedule/recurrence.h"
#include "store/clock.h"
#include "store/jetdate.h"

namespace tarvel {

namespace {

QString num(int id) {
    return QString::number(id);
}

// What the data file stores: dates at midnight, times on the time base day.
QVariant dateField(const QDateTime& value) {
    return value.isValid() ? QVariant(jetdate::naive(value.date())) : QVariant();
}
QVariant timeField(const QDateTime& value) {
    return value.isValid() ? QVariant(jetdate::naive(jetdate::timeBaseDate(), value.time()))
                           : QVariant();
}

// The link table of each kind a task links to, and the full read of it that
// ends AddRelative (its spacing as the program has always issued it).
struct Link {
    const char* table;
    const char* column;
    const char* reread;
};
const Link* linkOf(qint16 relationKind) {
    static const Link opportunity{"opportunities_tasks", "opp_id",
                                  "SELECT * FROM  opportunities_tasks "};
    static const Link account{"accounts_tasks", "acc_id", "SELECT * FROM accounts_tasks"};
    static const Link contact{"contacts_tasks", "con_id", "SELECT * FROM  contacts_tasks"};
    static const Link document{"tasks_documents", "doc_id", "SELECT * FROM  tasks_documents"};
    switch (relationKind) {
        case kind::Opportunity:
            return &opportunity;
        case kind::Account:
            return &account;
        case kind::Contact:
            return &contact;
        case kind::Document:
            return &document;
        default:
            return nullptr;
    }
}

qint16 flag(bool set) {
    return set ? 1 : 0;
}
QVariant checkBox(qint16 value) {
    return value == 1 ? -1 : 0;
}

}  // namespace

using recordvalue::leftChars;

bool Task::Add() {
    return guarded("Add", [&] {
        const QDateTime created = recordvalue::today();
        const QDateTime stamped = recordvalue::now();
        RecordsetPtr rs = openWritable(QStringLiteral("SELECT * FROM tasks WHERE tas_id=0"));
        check(*rs, rs->AddNew());
        setField(*rs, "tas_subject", subject_);
        setField(*rs, "tas_date", dateField(taskDate_));
        setField(*rs, "tas_time", timeField(taskTime_));
        setField(*rs, "tas_type", taskType_);
        setField(*rs, "tas_important", important_);
        setField(*rs, "tas_outlay", outlay_.toVariant());
        setField(*rs, "tas_tag", tag_);
        setField(*rs, "tas_private", private_);
        setField(*rs, "tas_remind", remind_);
        setField(*rs, "tas_closed", closed_);
        setField(*rs, "tas_again", again_);
        setField(*rs, "tas_cycle", cycle_);
        setField(*rs, "tas_closedate", dateField(closeDate_));
        setField(*rs, "tas_create_date", created);
        setField(*rs, "tas_recent_contact_date", stamped);
        setField(*rs, "tas_description", description_);
        storeNewRow(*rs);
        id_ = recordvalue::int32(columnValue(*rs, "tas_id"));
        createDate_ = created;
        rcDate_ = stamped;
    });
}

bool Task::writeColumns(Recordset& rs, bool onlyPresent) const {
    const std::pair<const char*, QVariant> columns[] = {
        {"tas_subject", subject_},
        {"tas_date", dateField(taskDate_)},
        {"tas_time", timeField(taskTime_)},
        {"tas_type", taskType_},
        {"tas_tag", tag_},
        {"tas_important", important_},
        {"tas_outlay", outlay_.toVariant()},
        {"tas_private", private_},
        {"tas_remind", remind_},
        {"tas_closed", closed_},
        {"tas_again", again_},
        {"tas_cycle", cycle_},
        {"tas_closedate", dateField(closeDate_)},
        {"tas_recent_contact_date", recordvalue::field(rcDate_)},
        {"tas_description", description_}};
    bool complete = true;
    for (const auto& [column, value] : columns) {
        if (onlyPresent && columnIndex(rs, column) < 0) {
            complete = false;
            continue;
        }
        setField(rs, column, value);
    }
    return complete;
}

bool Task::Update() {
    return guarded("Update", [&] {
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM tasks WHERE tas_id=") + num(id_));
        writeColumns(*rs, false);
        check(*rs, rs->Update());
    });
}

bool Task::Delete() {
    return guarded(
        "Delete", [&] { execute(QStringLiteral("DELETE * FROM tasks WHERE tas_id=") + num(id_)); });
}

bool Task::DeleteRelation() {
    return guarded("DeleteRelation", [&] {
        const QString me = num(id_);
        execute(QStringLiteral("DELETE * FROM tasks_documents WHERE tas_id=") + me);
        execute(QStringLiteral("DELETE * FROM accounts_tasks WHERE tas_id=") + me);
        execute(QStringLiteral("DELETE * FROM opportunities_tasks WHERE tas_id=") + me);
        execute(QStringLiteral("DELETE * FROM contacts_tasks WHERE tas_id=") + me);
    });
}

bool Task::GetById() {
    return guarded("GetById", [&] {
        RecordsetPtr rs = read(QStringLiteral("SELECT * FROM tasks WHERE tas_id=") + num(id_));
        if (!rs->Eof()) LoadRow(*rs);
    });
}

void Task::LoadRow(const Recordset& rs) {
    static const ColumnSlots columns(
        {QStringLiteral("tas_id"), QStringLiteral("tas_subject"), QStringLiteral("tas_date"),
         QStringLiteral("tas_time"), QStringLiteral("tas_type"), QStringLiteral("tas_important"),
         QStringLiteral("tas_outlay"), QStringLiteral("tas_tag"), QStringLiteral("tas_private"),
         QStringLiteral("tas_remind"), QStringLiteral("tas_closed"), QStringLiteral("tas_again"),
         QStringLiteral("tas_cycle"), QStringLiteral("tas_closedate"),
         QStringLiteral("tas_create_date"), QStringLiteral("tas_recent_contact_date"),
         QStringLiteral("tas_description"), QStringLiteral("tas_last_remind_date")});
    using recordvalue::dateTime;
    using recordvalue::int16;
    using recordvalue::text;
    const QVector<QVariant> v = columns.read(rs);
    id_ = recordvalue::int32(v[0]);
    subject_ = text(v[1]);
    taskDate_ = dateTime(v[2]);
    taskTime_ = dateTime(v[3]);
    taskType_ = text(v[4]);
    important_ = text(v[5]);
    outlay_ = Currency::fromVariant(v[6]);
    tag_ = text(v[7]);
    private_ = int16(v[8]);
    remind_ = int16(v[9]);
    closed_ = int16(v[10]);
    again_ = int16(v[11]);
    cycle_ = int16(v[12]);
    closeDate_ = dateTime(v[13]);
    createDate_ = dateTime(v[14]);
    rcDate_ = dateTime(v[15]);
    description_ = text(v[16]);
    lastRemindDate_ = dateTime(v[17]);
}

bool Task::AddRelative(qint16 relationKind, int otherId) {
    return guarded("AddRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        execute(stampStatement(kind::Task, id_));
        const Link* link = linkOf(relationKind);
        if (!link) return;
        const QString table = QLatin1String(link->table), column = QLatin1String(link->column);
        const QString me = num(id_), other = num(otherId);
        QString sql;
        if (!hasRows(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" WHERE tas_id=") +
                     me + QStringLiteral(" AND ") + column + QLatin1Char('=') + other))
            sql = QStringLiteral("INSERT INTO ") + table + QStringLiteral("(tas_id,") + column +
                  QStringLiteral(") VALUES(") + me + QLatin1Char(',') + other + QLatin1Char(')');
        execute(stampStatement(relationKind, otherId));
        executeLink(sql);
        read(QLatin1String(link->reread));
    });
}

bool Task::DeleteRelative(qint16 relationKind, int otherId) {
    return guarded("DeleteRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const Link* link = linkOf(relationKind);
        if (!link) return;
        // Removing a link stamps neither record.
        executeLink(QStringLiteral("DELETE * FROM ") + QLatin1String(link->table) +
                    QStringLiteral(" WHERE tas_id=") + num(id_) + QStringLiteral(" AND ") +
                    QLatin1String(link->column) + QLatin1Char('=') + num(otherId));
    });
}

Currency Task::GetOutlayAtDay(const QDate& day) {
    Currency sum;
    guarded("GetOutlayAtDay", [&] {
        RecordsetPtr rs =
            read(QStringLiteral("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#") +
                 jetdate::literalText(day) + QLatin1Char('#'));
        if (!rs->Eof()) sum = Currency::fromVariant(rs->value(0));
    });
    return sum;
}

QString Task::panelRecordName(qint16 recordKind, int recordId) const {
    const char* column = nullptr;
    switch (recordKind) {
        case kind::Opportunity:
            column = "opp_subject FROM opportunities WHERE opp_id=";
            break;
        case kind::Account:
            column = "acc_name FROM accounts WHERE acc_id=";
            break;
        case kind::Contact:
            column = "con_lastname FROM contacts WHERE con_id=";
            break;
        case kind::Document:
            column = "doc_name FROM documents WHERE doc_id=";
            break;
        default:
            return QString();
    }
    RecordsetPtr rs = read(QStringLiteral("SELECT ") + QLatin1String(column) + num(recordId));
    return rs->Eof() ? QString() : recordvalue::text(rs->value(0)).trimmed();
}

bool Task::InitTask(int taskId) {
    return guarded("InitTask", [&] {
        if (taskId != 0) {
            id_ = taskId;
            if (!GetById()) failLogged();
            return;
        }
        // A task begun from a record's panel is named after that record.
        const qint16 panelKind = panel::kindOf(panelName());
        subject_.clear();
        if (panelKind != 0 && panelKind != kind::Task)
            subject_ = recordKindLabel(panelKind) + QLatin1Char(':') +
                       panelRecordName(panelKind, panelRecordId());
        id_ = 0;
        taskDate_ = recordvalue::today();
        taskTime_ = jetdate::naive(jetdate::timeBaseDate(), Clock::time());
        description_.clear();
        taskType_.clear();
        important_.clear();
        tag_.clear();
        outlay_ = Currency();
        closeDate_ = recordvalue::today();
        createDate_ = recordvalue::today();
        rcDate_ = recordvalue::now();
        lastRemindDate_ = QDateTime();
        private_ = remind_ = closed_ = again_ = cycle_ = 0;
    });
}

bool Task::ShowTask(int taskId) {
    return guarded("ShowTask", [&] {
        if (!InitTask(taskId)) failLogged();
        setFormValue("txt_sch_subject", subject_);
        setFormValue("DT_sch_date", taskDate_.isValid() ? QVariant(taskDate_.date()) : QVariant());
        setFormValue("cbo_sch_time",
                     taskTime_.isValid() ? unpaddedTime(taskTime_.time()) : QString());
        setFormValue("txt_sch_outlay", outlay_.toString());
        setFormValue("rtxt_sch_memo", description_);
        setFormValue("chk_sch_remind", checkBox(remind_));
        setFormValue("chk_sch_completed", checkBox(closed_));
        setFormValue("chk_sch_private", checkBox(private_));
        setFormValue("cbo_sch_importance", important_);
        setFormValue("cbo_sch_tag", tag_);
        setFormValue("Cbo_sch_type", taskType_);
        setFormValue("chk_sch_nextdate", 0);
        setFormValue("DT_sch_nextdate", Clock::today());
        setFormValue("cbo_sch_nexttime", unpaddedTime(Clock::time()));
        setFormProperty("DT_sch_nextdate.Enabled", false);
        setFormProperty("cbo_sch_nexttime.Enabled", false);
        setFormProperty("g_TasID", taskId);
    });
}

namespace {
QDateTime dayFrom(const QVariant& value) {
    const QDateTime d = recordvalue::dateTime(value);
    return d.isValid() ? jetdate::naive(d.date()) : QDateTime();
}
}  // namespace

qint16 Task::ticked(const char* control) const {
    const QVariant v = form().controlValue(QLatin1String(control));
    return flag(!v.isNull() && v.toInt() != 0);
}

void Task::readWhen(const char* dateControl, const char* timeControl) {
    const QDateTime day = dayFrom(form().controlValue(QLatin1String(dateControl)));
    if (!day.isValid()) fail(QStringLiteral("%1 没有有效的日期").arg(QLatin1String(dateControl)));
    const QString time = formText(timeControl);
    const QDateTime at = timeOfDay(time);
    if (!at.isValid()) fail(QStringLiteral("“%1”不是有效的时间").arg(time));
    taskDate_ = day;
    taskTime_ = at;
}

void Task::readForm(bool newTask) {
    readWhen("DT_sch_date", "cbo_sch_time");
    subject_ = leftChars(formText("txt_sch_subject"), 255);
    const QString outlay = formText("txt_sch_outlay");
    outlay_ = isNumber(outlay) ? Currency::parse(outlay).value_or(Currency()) : Currency();
    remind_ = ticked("chk_sch_remind");
    closed_ = ticked("chk_sch_completed");
    private_ = ticked("chk_sch_private");
    important_ = leftChars(formText("cbo_sch_importance"), 50);
    tag_ = leftChars(formText("cbo_sch_tag"), 255);
    taskType_ = leftChars(formText("Cbo_sch_type"), 50);
    description_ = formText("rtxt_sch_memo");
    if (newTask) createDate_ = recordvalue::today();
    rcDate_ = recordvalue::now();
}

bool Task::AddTask() {
    return guarded("AddTask", [&] { readForm(true); });
}

bool Task::ChangeTask() {
    return guarded("ChangeTask", [&] { readForm(false); });
}

bool Task::AddNextTask() {
    return guarded("AddNextTask", [&] {
        readWhen("DT_sch_nextdate", "cbo_sch_nexttime");
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
    });
}

void Task::linkToShownRecords() {
    const qint16 panelKind = panel::kindOf(form().Name());
    if (panelKind == kind::Task) return;
    if (panelKind != 0) {
        if (!AddRelative(panelKind, panelRecordId())) failLogged();
        return;
    }
    struct Shown {
        const char* flag;
        const char* id;
        qint16 kind;
    };
    static const Shown shown[] = {{"iShowOpp", "g_OppID", kind::Opportunity},
                                  {"iShowAcc", "g_AccID", kind::Account},
                                  {"iShowCon", "g_ConID", kind::Contact},
                                  {"iShowDoc", "g_DocID", kind::Document}};
    for (const Shown& s : shown) {
        if (recordvalue::int32(form().property(QLatin1String(s.flag))) == 0) continue;
        if (!AddRelative(s.kind, recordvalue::int32(form().property(QLatin1String(s.id)))))
            failLogged();
    }
}

bool Task::AddToList() {
    return guarded("AddToList", [&] {
        form();  // fails before anything is stored when there is no form
        if (id_ == 0 && !Add()) failLogged();
        setFormProperty("g_TasID", id_);
        linkToShownRecords();
        if (!oAdodc()) return;  // the form shows no task list
        const qint16 panelKind = panel::kindOf(panelName());
        if (panelKind != 0 && panelKind != kind::Task) {
            if (!SetQuery(panelRecordId())) failLogged();
        } else if (!grid().Refresh()) {
            fail(grid().ErrorDescription());
        }
        findKey(gridRows(), "tas_id", id_);
    });
}

bool Task::UpdateIndex() {
    return guarded("UpdateIndex", [&] {
        bool complete = false;
        if (gridRowHolds("tas_id", id_)) {
            Recordset& rs = gridRows();
            complete = writeColumns(rs, true);
            check(rs, rs.Update());
        }
        if (!complete && !Update()) failLogged();
    });
}

bool Task::SetQuery() {
    return guarded("SetQuery", [&] {
        if (!SetQuery(panelRecordId())) failLogged();
    });
}

bool Task::SetQuery(int otherId) {
    return guarded("SetQuery", [&] {
        const QString name = panelName();
        const char* link = nullptr;
        if (name == QLatin1String(panel::Account))
            link = " WHERE tas_id IN (SELECT tas_id FROM accounts_tasks WHERE acc_id=";
        else if (name == QLatin1String(panel::Opportunity))
            link = " WHERE tas_id IN (SELECT tas_id FROM opportunities_tasks WHERE opp_id=";
        else if (name == QLatin1String(panel::Contact))
            link = " WHERE tas_id IN (SELECT tas_id FROM contacts_tasks WHERE con_id=";
        else if (name == QLatin1String(panel::Document))
            link = " WHERE tas_id IN (SELECT tas_id FROM tasks_documents WHERE doc_id=";
        else
            return;
        showInGrid(
            QStringLiteral("SELECT tas_id,tas_date,tas_time,tas_subject,tas_remind,tas_closed,"
                           "tas_private,tas_outlay,tas_important,tas_tag,tas_create_date,"
                           "tas_recent_contact_date,tas_description, tas_type,tas_again, "
                           "tas_cycle,tas_closedate FROM tasks ") +
                QLatin1String(link) + num(otherId) + QStringLiteral(") ORDER BY tas_date DESC"),
            "dgrid_sch",
            {QStringLiteral("联系日期"), QStringLiteral("时间"), QStringLiteral("主题"),
             QStringLiteral("提醒"), QStringLiteral("完成"), QStringLiteral("私有"),
             QStringLiteral("费用"), QStringLiteral("重要性"), QStringLiteral("标签"),
             QStringLiteral("创建日期"), QStringLiteral("最近联系日期"), QStringLiteral("描述"),
             QStringLiteral("类型"), QStringLiteral("重复提醒"), QStringLiteral("周期"),
             QStringLiteral("结束日期")});
        // The digest is read off the grid's own rows: the same tasks, in its order.
        Recordset& rs = gridRows();
        const QString lineBreak = QStringLiteral("\r\n");
        QString digest;
        for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
            using recordvalue::text;
            const bool done = recordvalue::int16(columnValue(rs, "tas_closed")) != 0;
            digest += text(columnValue(rs, "tas_date")) + QLatin1Char(',') +
                      text(columnValue(rs, "tas_time")) + QLatin1Char(',') +
                      (done ? QStringLiteral("完成") : QStringLiteral("未完成")) +
                      QLatin1Char(',') + text(columnValue(rs, "tas_tag")) + lineBreak +
                      text(columnValue(rs, "tas_subject")) + lineBreak +
                      text(columnValue(rs, "tas_description")) + lineBreak +
                      QStringLiteral("===================") + lineBreak;
        }
        rs.MoveFirst();
        digest_ = digest;
        setFormValue("rtxt_sch_digest", digest_);
    });
}

}  // namespace tarvel
