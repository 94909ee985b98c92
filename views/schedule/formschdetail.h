#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <memory>

#include "browse/shownrow.h"
#include "schedule/task.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"
#include "views/common/widgetform.h"
#include "views/common/windowmessages.h"

namespace tarvel {

class TaskRelatedPanel;

// The task page form_sch_detail: every field of a task, its recurrence and
// reminder, a follow-up task (the next schedule), save and delete, and the
// task's related panel. Opened with a record id (0 for a new task); a new
// task may be placed on a day and time, or begun from a record, to which it
// is linked on save.
class FormSchDetail : public PageWidget {
    Q_OBJECT
public:
    explicit FormSchDetail(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    // Where delete sends the user afterwards (the calendar).
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }

    // Record id 0: a new task on the request's date; a page number 0..47
    // places it at that half hour.
    void fill(const PageRequest& request) override;
    // Reads the task again after records came back or went elsewhere (an
    // undo), unless an edit is in progress.
    void refresh() override;
    void rebuildLayout() override;
    // A new task begun from a record (kind::Opportunity, Account, Contact,
    // Document): named after it and linked to it on save; a contact's task is
    // linked to the contact's account too.
    void newTaskFor(qint16 recordKind, int recordId);

    int taskId() const { return taskId_; }
    TaskRelatedPanel* relatedPanel() const { return related_; }

public slots:
    bool cmdSaveClick();
    void cmdDeleteClick();
    void cmdNewClick();

signals:
    // A saved or deleted task occurs today: the home page's list must be read again.
    void todayChanged();
    // The task was stored or removed: calendars should read again.
    void tasksChanged();

private:
    void showTask(int taskId, const QDate& day, const QTime& time);
    // The checks of a save; false after telling the user what is wrong.
    bool checkInput();
    bool checkTime(QComboBox* combo);
    void setEditing(bool value);
    void updateRecurrenceControls();
    void updateNextControls();
    void fillPickLists();
    bool saveTask(Task& task, bool isNew);
    bool saveNextTask(const Task& current);
    // The links a new task gets on save (from the record it was begun from).
    void setOriginLinks(qint16 recordKind, int recordId);

    std::shared_ptr<Messages> dialogs_;
    WindowMessages messages_{dialogs_};
    WidgetForm form_{this};
    PageSwitch pageSwitch_;
    int taskId_ = 0;
    lists::ShownRow shown_;  // the task as the page showed it
    bool loading_ = false;

    QLineEdit* txtSubject_;
    QDateEdit* dtDate_;
    QComboBox* cboTime_;
    QComboBox* cboType_;
    QComboBox* cboImportance_;
    QComboBox* cboTag_;
    QLineEdit* txtOutlay_;
    QCheckBox* chkPrivate_;
    QCheckBox* chkRemind_;
    QCheckBox* chkAgain_;
    QCheckBox* chkCompleted_;
    QComboBox* cboCycle_;
    QDateEdit* dtCloseDate_;
    QCheckBox* chkNoEnd_;  // 无结束日期: the close date is the open end
    QPlainTextEdit* rtxtMemo_;
    QCheckBox* chkNextDate_;
    QDateEdit* dtNextDate_;
    QComboBox* cboNextTime_;
    QPushButton* cmdDelete_;
    TaskRelatedPanel* related_;
};

}  // namespace tarvel
