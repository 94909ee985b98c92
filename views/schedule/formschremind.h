#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWidget>
#include <memory>

#include "schedule/reminders.h"
#include "views/common/page.h"
#include "views/common/windowmessages.h"

namespace tarvel {

// The reminder window form_sch_remind: announces one of today's tasks whose
// time has come. The user dismisses it (cmd_cancel), snoozes it for the
// minutes in txt_delay (cmd_delay) or opens the task (cmd_opentask). It works
// on the entry of the today list that fired it, which outlives the window.
class FormSchRemind : public QWidget {
    Q_OBJECT
public:
    FormSchRemind(int taskId, TodayList& today, QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    // Where cmd_opentask sends the task list filter.
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }

    // Loads the task and shows it; false (the fields empty) when it cannot be read.
    bool load();

    int taskId() const { return taskId_; }
    const Reminder& reminder() const { return reminder_; }

public slots:
    void cmdCancelClick();
    void cmdDelayClick();
    void cmdOpentaskClick();

signals:
    // The entry was dismissed or snoozed: the today list changed.
    void entryChanged(int taskId);

protected:
    void showEvent(QShowEvent* event) override;

private:
    int taskId_;
    std::shared_ptr<Messages> dialogs_;
    WindowMessages messages_{dialogs_};
    Reminder reminder_;
    PageSwitch pageSwitch_;
    QLabel* lblHeading_;
    QLineEdit* txtDelay_;
    QPushButton* cmdCancel_;
};

}  // namespace tarvel
