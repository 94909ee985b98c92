#include "views/schedule/formschdetail.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "browse/unsaved.h"
#include "exchange/recyclebin.h"
#include "records/kinds.h"
#include "records/recordbase.h"
#include "schedule/recurrence.h"
#include "schedule/tasklinks.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/transaction.h"
#include "views/common/fieldlimit.h"
#include "views/common/overwritequestion.h"
#include "views/options/optionwidgets.h"
#include "views/schedule/taskrelatedpanel.h"

namespace tarvel {

namespace {

template <typename T>
T* named(QWidget* parent, const char* name) {
    auto* w = new T(parent);
    w->setObjectName(QLatin1String(name));
    return w;
}

QDateEdit* datePicker(QWidget* parent, const char* name) {
    auto* d = named<QDateEdit>(parent, name);
    d->setCalendarPopup(true);
    d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    return d;
}

QComboBox* editableCombo(QWidget* parent, const char* name) {
    auto* c = named<QComboBox>(parent, name);
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    return c;
}

QCheckBox* checkBox(QWidget* parent, const char* name, const QString& text) {
    auto* c = named<QCheckBox>(parent, name);
    c->setText(text);
    return c;
}

// A form row whose label is the field's buddy.
void addRow(QFormLayout* layout, const QString& caption, QWidget* field, QLayout* row = nullptr) {
    auto* label = new QLabel(caption, field->parentWidget());
    label->setBuddy(field);
    if (row)
        layout->addRow(label, row);
    else
        layout->addRow(label, field);
}

// Two fields on one form row, the second with its own buddy label.
QHBoxLayout* pairRow(QWidget* first, const QString& caption, QWidget* second) {
    auto* row = new QHBoxLayout;
    row->addWidget(first);
    auto* label = new QLabel(caption, second->parentWidget());
    label->setBuddy(second);
    row->addWidget(label);
    row->addWidget(second);
    row->addStretch(1);
    return row;
}

QString timeText(const QTime& time) {
    return time.toString(QStringLiteral("hh:mm"));
}

}  // namespace

FormSchDetail::FormSchDetail(QWidget* parent)
    : PageWidget(parent), dialogs_(std::make_shared<MessageBoxDialogs>(this)) {
    setObjectName(QStringLiteral("form_sch_detail"));

    auto* title = new QLabel(QStringLiteral("日程"), this);
    title->setObjectName(QStringLiteral("lbl_title"));
    setHeadingFont(title, 1.4);

    txtSubject_ = named<QLineEdit>(this, "txt_sch_subject");
    dtDate_ = datePicker(this, "DT_sch_date");
    cboTime_ = editableCombo(this, "cbo_sch_time");
    cboType_ = editableCombo(this, "Cbo_sch_type");
    cboImportance_ = editableCombo(this, "cbo_sch_importance");
    cboTag_ = editableCombo(this, "cbo_sch_tag");
    txtOutlay_ = named<QLineEdit>(this, "txt_sch_outlay");
    txtOutlay_->setAlignment(Qt::AlignRight);
    chkPrivate_ = checkBox(this, "chk_sch_private", QStringLiteral("私人(&P)"));
    chkRemind_ = checkBox(this, "chk_sch_remind", QStringLiteral("提醒(&R)"));
    chkAgain_ = checkBox(this, "chk_sch_again", QStringLiteral("每次重复时都提醒(&A)"));
    chkCompleted_ = checkBox(this, "chk_sch_completed", QStringLiteral("已完成(&D)"));
    cboCycle_ = named<QComboBox>(this, "cbo_sch_cycle");
    cboCycle_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    dtCloseDate_ = datePicker(this, "DT_sch_closedate");
    chkNoEnd_ = checkBox(this, "chk_sch_noend", openEndedText() + QStringLiteral("(&U)"));
    rtxtMemo_ = named<QPlainTextEdit>(this, "rtxt_sch_memo");
    chkNextDate_ = checkBox(this, "chk_sch_nextdate", QStringLiteral("安排下次日程(&N)"));
    dtNextDate_ = datePicker(this, "DT_sch_nextdate");
    cboNextTime_ = editableCombo(this, "cbo_sch_nexttime");

    auto* fields = new QFormLayout;
    addRow(fields, QStringLiteral("主题(&S)："), txtSubject_);
    addRow(fields, QStringLiteral("日期(&E)："), dtDate_,
           pairRow(dtDate_, QStringLiteral("时间(&T)："), cboTime_));
    QHBoxLayout* cycleRow = pairRow(cboCycle_, QStringLiteral("结束日期(&Z)："), dtCloseDate_);
    // Beside the end date, before the row's closing stretch.
    cycleRow->insertWidget(cycleRow->count() - 1, chkNoEnd_);
    addRow(fields, QStringLiteral("重复(&C)："), cboCycle_, cycleRow);
    addRow(fields, QStringLiteral("类型(&Y)："), cboType_);
    addRow(fields, QStringLiteral("重要性(&I)："), cboImportance_);
    addRow(fields, QStringLiteral("标签(&G)："), cboTag_);
    addRow(fields, QStringLiteral("费用(&O)："), txtOutlay_);
    auto* flags = new QHBoxLayout;
    for (QCheckBox* c : {chkRemind_, chkAgain_, chkCompleted_, chkPrivate_}) flags->addWidget(c);
    flags->addStretch(1);
    fields->addRow(QString(), flags);
    addRow(fields, QStringLiteral("备注(&M)："), rtxtMemo_);

    auto* next = new QGroupBox(QStringLiteral("下次日程"), this);
    next->setObjectName(QStringLiteral("fra_sch_next"));
    auto* nextRow = new QHBoxLayout(next);
    nextRow->addWidget(chkNextDate_);
    auto* lblNextDate = new QLabel(QStringLiteral("日期："), next);
    lblNextDate->setBuddy(dtNextDate_);
    auto* lblNextTime = new QLabel(QStringLiteral("时间："), next);
    lblNextTime->setBuddy(cboNextTime_);
    nextRow->addWidget(lblNextDate);
    nextRow->addWidget(dtNextDate_);
    nextRow->addWidget(lblNextTime);
    nextRow->addWidget(cboNextTime_);
    nextRow->addStretch(1);

    auto* cmdNew = named<QPushButton>(this, "cmd_sch_new");
    cmdNew->setText(QStringLiteral("新建(&W)"));
    auto* cmdSave = named<QPushButton>(this, "cmd_sch_save");
    cmdSave->setText(QStringLiteral("保存(&V)"));
    cmdSave->setDefault(true);
    cmdDelete_ = named<QPushButton>(this, "cmd_sch_delete");
    cmdDelete_->setText(QStringLiteral("删除(&L)"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdNew);
    buttons->addWidget(cmdSave);
    buttons->addWidget(cmdDelete_);

    auto* limitNote = new QLabel(this);
    limitNote->setObjectName(QStringLiteral("lbl_limit_note"));
    limitNote->setAccessibleName(QStringLiteral("输入提示"));
    limitNote->hide();
    limitNamedFields({txtSubject_, cboType_, cboImportance_, cboTag_}, limitNote);
    auto* titleRow = new QHBoxLayout;
    titleRow->addWidget(title, 1);
    titleRow->addWidget(limitNote);

    auto* left = new QVBoxLayout;
    left->addLayout(titleRow);
    left->addLayout(fields, 1);
    left->addWidget(next);
    left->addLayout(buttons);

    related_ = new TaskRelatedPanel(dialogs_, this);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(16);
    layout->addLayout(left, 3);
    layout->addWidget(related_, 2);

    QWidget* order[] = {txtSubject_,  dtDate_,     cboTime_,       cboCycle_,   dtCloseDate_,
                        chkNoEnd_,    cboType_,    cboImportance_, cboTag_,     txtOutlay_,
                        chkRemind_,   chkAgain_,   chkCompleted_,  chkPrivate_, rtxtMemo_,
                        chkNextDate_, dtNextDate_, cboNextTime_,   cmdNew,      cmdSave,
                        cmdDelete_};
    for (size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
    rtxtMemo_->setTabChangesFocus(true);

    cboCycle_->addItems(cycleTypeItems());
    for (QComboBox* c : {cboTime_, cboNextTime_}) c->addItems(timeFormatItems());
    fillPickLists();

    auto edited = [this] { setEditing(true); };
    for (QLineEdit* e : {txtSubject_, txtOutlay_}) connect(e, &QLineEdit::textEdited, this, edited);
    for (QDateEdit* d : {dtDate_, dtCloseDate_, dtNextDate_})
        connect(d, &QDateEdit::dateChanged, this, edited);
    for (QComboBox* c : {cboTime_, cboType_, cboImportance_, cboTag_, cboCycle_, cboNextTime_})
        connect(c, &QComboBox::currentTextChanged, this, edited);
    for (QCheckBox* c :
         {chkPrivate_, chkRemind_, chkAgain_, chkCompleted_, chkNextDate_, chkNoEnd_})
        connect(c, &QCheckBox::toggled, this, edited);
    connect(rtxtMemo_, &QPlainTextEdit::textChanged, this, edited);
    connect(cboCycle_, &QComboBox::currentTextChanged, this,
            &FormSchDetail::updateRecurrenceControls);
    connect(chkRemind_, &QCheckBox::toggled, this, &FormSchDetail::updateRecurrenceControls);
    connect(chkNoEnd_, &QCheckBox::toggled, this, &FormSchDetail::updateRecurrenceControls);
    connect(chkNextDate_, &QCheckBox::toggled, this, &FormSchDetail::updateNextControls);
    connect(cmdSave, &QPushButton::clicked, this, &FormSchDetail::cmdSaveClick);
    connect(cmdDelete_, &QPushButton::clicked, this, &FormSchDetail::cmdDeleteClick);
    connect(cmdNew, &QPushButton::clicked, this, &FormSchDetail::cmdNewClick);
    connect(related_, &TaskRelatedPanel::linksChanged, this, &FormSchDetail::tasksChanged);
}

void FormSchDetail::fillPickLists() {
    FillOptionCombo(cboType_, QStringLiteral("sch"), QStringLiteral("type"));
    FillOptionCombo(cboImportance_, QStringLiteral("sch"), QStringLiteral("importance"));
    FillOptionCombo(cboTag_, QStringLiteral("sch"), QStringLiteral("tag"));
}

void FormSchDetail::rebuildLayout() {
    fillPickLists();
    related_->rebuildLayout();
}

void FormSchDetail::setEditing(bool value) {
    if (loading_) return;
    setUnsaved(UnsavedModule::Task, value);
}

void FormSchDetail::updateRecurrenceControls() {
    const bool recurring = cycleOfItem(cboCycle_->currentText()) != cycle::Once;
    chkNoEnd_->setEnabled(recurring);
    dtCloseDate_->setEnabled(recurring && !chkNoEnd_->isChecked());
    chkAgain_->setEnabled(recurring && chkRemind_->isChecked());
}

void FormSchDetail::updateNextControls() {
    dtNextDate_->setEnabled(chkNextDate_->isChecked());
    cboNextTime_->setEnabled(chkNextDate_->isChecked());
}

void FormSchDetail::fill(const PageRequest& request) {
    QTime time;
    if (request.recordId == 0 && request.pageNo >= 0 && request.pageNo < 48)
        time = QTime(request.pageNo / 2, request.pageNo % 2 * 30);
    showTask(request.recordId, request.date, time);
}

void FormSchDetail::showTask(int taskId, const QDate& day, const QTime& time) {
    loading_ = true;
    Task task;
    task.setOForm(&form_);
    if (!task.ShowTask(taskId)) dialogs_->info(messageTitle(), task.ErrMsg());
    taskId_ = task.ID();
    shown_.remember(kind::Task, taskId_);
    if (taskId_ == 0) {
        if (day.isValid()) dtDate_->setDate(day);
        if (time.isValid()) cboTime_->setEditText(timeText(time));
    }
    // Shown padded, as the pick-list writes times.
    if (const QDateTime t = timeOfDay(cboTime_->currentText()); t.isValid())
        cboTime_->setEditText(timeText(t.time()));
    if (const QDateTime t = timeOfDay(cboNextTime_->currentText()); t.isValid())
        cboNextTime_->setEditText(timeText(t.time()));
    cboCycle_->setCurrentText(itemOfCycle(task.Cycle()).isEmpty() ? itemOfCycle(cycle::Once)
                                                                  : itemOfCycle(task.Cycle()));
    // An open end shows the start date, greyed, until the box is cleared.
    const bool open = task.Cycle() != cycle::Once && isOpenEnded(task.CloseDate());
    chkNoEnd_->setChecked(open);
    dtCloseDate_->setDate(task.CloseDate().isValid() && !open ? task.CloseDate().date()
                                                              : dtDate_->date());
    chkAgain_->setChecked(task.Again() == 1);
    if (taskId_ == 0) txtOutlay_->clear();
    setOriginLinks(0, 0);
    cmdDelete_->setEnabled(taskId_ != 0);
    updateRecurrenceControls();
    updateNextControls();
    related_->showTask(taskId_);
    loading_ = false;
    setUnsaved(UnsavedModule::Task, false);
    txtSubject_->setFocus();
}

void FormSchDetail::setOriginLinks(qint16 recordKind, int recordId) {
    static const struct {
        qint16 kind;
        const char* flag;
        const char* id;
    } kinds[] = {{kind::Opportunity, "iShowOpp", "g_OppID"},
                 {kind::Account, "iShowAcc", "g_AccID"},
                 {kind::Contact, "iShowCon", "g_ConID"},
                 {kind::Document, "iShowDoc", "g_DocID"}};
    // A contact's task also belongs to the contact's account.
    const int account = recordKind == kind::Contact ? TaskLinks().accountOfContact(recordId) : 0;
    for (const auto& k : kinds) {
        int id = k.kind == recordKind ? recordId : 0;
        if (k.kind == kind::Account && account != 0) id = account;
        form_.setProperty(QLatin1String(k.flag), id != 0 ? 1 : 0);
        form_.setProperty(QLatin1String(k.id), id);
    }
}

void FormSchDetail::newTaskFor(qint16 recordKind, int recordId) {
    showTask(0, QDate(), QTime());
    // The subject a task begun on the record's related panel gets.
    if (recordKind == kind::Task || !kindByCode(recordKind)) return;
    const char* panelName = panel::formName(recordKind);
    MapForm origin{QLatin1String(panelName)};
    origin.setProperty(QLatin1String(panel::RecordId), recordId);
    Task named;
    named.setOForm(&origin);
    if (named.InitTask(0)) {
        loading_ = true;
        txtSubject_->setText(named.Subject());
        loading_ = false;
    }
    setOriginLinks(recordKind, recordId);
}

void FormSchDetail::refresh() {
    if (isUnsaved(UnsavedModule::Task) || taskId_ == 0) return;
    QString error;
    const bool gone = shown_.check(&error) && shown_.found() == lists::ShownRow::Since::Deleted;
    shown_.clearFound();
    showTask(gone ? 0 : taskId_, dtDate_->date(), QTime());
}

void FormSchDetail::cmdNewClick() {
    if (isUnsaved(UnsavedModule::Task) && !dialogs_->ask(messageTitle(), unsavedQuestion())) return;
    showTask(0, dtDate_->date(), QTime());
}

bool FormSchDetail::checkTime(QComboBox* combo) {
    QString text = combo->currentText().trimmed();
    if (checkTypedTime(text, messages_)) return true;
    combo->setEditText(text);
    combo->setFocus();
    return false;
}

bool FormSchDetail::checkInput() {
    if (txtSubject_->text().trimmed().isEmpty()) {
        dialogs_->info(messageTitle(), QStringLiteral("请输入日程的主题！"));
        txtSubject_->setFocus();
        return false;
    }
    if (!checkTime(cboTime_)) return false;
    if (!txtOutlay_->text().trimmed().isEmpty() && !isNumber(txtOutlay_->text())) {
        dialogs_->info(messageTitle(), QStringLiteral("费用必须是数字！请检查"));
        txtOutlay_->setFocus();
        txtOutlay_->selectAll();
        return false;
    }
    if (cycleOfItem(cboCycle_->currentText()) != cycle::Once && !chkNoEnd_->isChecked() &&
        dtCloseDate_->date() < dtDate_->date()) {
        dialogs_->info(messageTitle(), QStringLiteral("重复日程的结束日期不能早于开始日期！"));
        dtCloseDate_->setFocus();
        return false;
    }
    return !chkNextDate_->isChecked() || checkTime(cboNextTime_);
}

bool FormSchDetail::saveTask(Task& task, bool isNew) {
    task.setOForm(&form_);
    if (isNew) {
        if (!task.InitTask(0) || !task.AddTask()) return false;
    } else {
        task.setID(taskId_);
        if (!task.GetById() || !task.ChangeTask()) return false;
    }
    const qint16 cycleValue = cycleOfItem(cboCycle_->currentText());
    task.setCycle(cycleValue);
    // A one-off task's close date plays no part; it keeps its own date.
    task.setCloseDate(jetdate::naive(cycleValue == cycle::Once ? dtDate_->date()
                                     : chkNoEnd_->isChecked()  ? openEndDate()
                                                               : dtCloseDate_->date()));
    task.setAgain(chkAgain_->isEnabled() && chkAgain_->isChecked() ? 1 : 0);
    return isNew ? task.AddToList() : task.Update();
}

bool FormSchDetail::saveNextTask(const Task& current) {
    Task next;
    next.setOForm(&form_);
    if (!next.AddNextTask()) return false;
    next.setCloseDate(next.TaskDate());
    if (!next.Add()) return false;
    return TaskLinks().copyLinks(current.ID(), next);
}

bool FormSchDetail::cmdSaveClick() {
    if (!checkInput()) return false;
    Task task;
    for (;;) {
        const bool isNew = taskId_ == 0;
        task = Task();
        bool ok = false;
        QString error;
        {
            // Whether the task changed or went since it was shown is read in
            // the save's transaction; the question is asked after it.
            Transaction transaction;
            ok = transaction.isActive() && (isNew || shown_.check(&error)) &&
                 shown_.found() == lists::ShownRow::Since::Unchanged && saveTask(task, isNew) &&
                 (!chkNextDate_->isChecked() || saveNextTask(task)) && transaction.commit();
            if (error.isEmpty())
                error = !task.ErrMsg().isEmpty() ? task.ErrMsg() : transaction.error();
        }
        if (ok) break;
        if (!isNew && shown_.found() != lists::ShownRow::Since::Unchanged) {
            const SaveAnswer answer = askBeforeOverwrite(*dialogs_, shown_, QStringLiteral("日程"));
            if (answer == SaveAnswer::Stop) return false;
            if (answer == SaveAnswer::SaveAsNew) taskId_ = 0;
            continue;
        }
        dialogs_->info(messageTitle(),
                       QStringLiteral("日程没有保存。") +
                           (error.isEmpty() ? QString() : QLatin1Char('\n') + error));
        return false;
    }
    const bool forToday =
        occursToday(task) || (chkNextDate_->isChecked() && dtNextDate_->date() == Clock::today());
    showTask(task.ID(), QDate(), QTime());
    emit tasksChanged();
    if (forToday) emit todayChanged();
    return true;
}

void FormSchDetail::cmdDeleteClick() {
    if (taskId_ == 0) return;
    if (!dialogs_->ask(QStringLiteral("Tarvel提示您"), QStringLiteral("您确定要删除这个日程吗？")))
        return;
    Task task;
    task.setID(taskId_);
    bool ok = false;
    QString binError;
    {
        // The task and its links go to the recycle bin in the delete's transaction.
        const qint64 batch = exchange::recyclebin::newBatch(&binError);
        Transaction transaction;
        ok = batch != 0 && transaction.isActive() && task.GetById() &&
             exchange::recyclebin::keep(kind::Task, taskId_, batch, &binError) &&
             task.DeleteRelation() && task.Delete() && transaction.commit();
    }
    if (!ok) {
        dialogs_->info(messageTitle(),
                       QStringLiteral("日程没有删除。\n") + task.ErrMsg() + binError);
        return;
    }
    const bool forToday = occursToday(task);
    setUnsaved(UnsavedModule::Task, false);
    emit tasksChanged();
    if (forToday) emit todayChanged();
    if (pageSwitch_)
        pageSwitch_(page::Schedule, QString(), 0);
    else
        showTask(0, task.TaskDate().date(), QTime());
}

}  // namespace tarvel
