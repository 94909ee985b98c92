#include "views/schedule/formschremind.h"

#include <QApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "store/clock.h"
#include "views/common/buttons.h"
#include "views/common/keyfilter.h"
#include "views/common/widgetform.h"

namespace tarvel {

namespace {

QLabel* caption(const char* name, const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setObjectName(QLatin1String(name));
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return l;
}

QLineEdit* field(const char* name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QLatin1String(name));
    e->setReadOnly(true);
    return e;
}

}  // namespace

FormSchRemind::FormSchRemind(int taskId, TodayList& today, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint),
      taskId_(taskId),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      reminder_(taskId, today, messages_) {
    setObjectName(QStringLiteral("form_sch_remind"));
    setWindowTitle(QStringLiteral("日程提醒"));

    lblHeading_ = new QLabel(this);
    lblHeading_->setObjectName(QStringLiteral("lbl_heading"));
    setHeadingFont(lblHeading_, 1.3);
    lblHeading_->setWordWrap(true);

    auto* txtSubject = field("txt_subject", this);
    auto* txtTime = field("txt_time", this);
    auto* txtType = field("txt_type", this);
    auto* txtImportant = field("txt_important", this);
    auto* txtTag = field("txt_tag", this);
    auto* txtDescription = new QPlainTextEdit(this);
    txtDescription->setObjectName(QStringLiteral("txt_description"));
    txtDescription->setReadOnly(true);
    txtDescription->setFixedHeight(txtDescription->fontMetrics().lineSpacing() * 5);

    auto* fields = new QGridLayout;
    fields->setHorizontalSpacing(8);
    fields->setVerticalSpacing(8);
    fields->addWidget(caption("lbl_subject", QStringLiteral("主题："), this), 0, 0);
    fields->addWidget(txtSubject, 0, 1, 1, 3);
    fields->addWidget(caption("lbl_time", QStringLiteral("时间："), this), 1, 0);
    fields->addWidget(txtTime, 1, 1);
    fields->addWidget(caption("lbl_type", QStringLiteral("类型："), this), 1, 2);
    fields->addWidget(txtType, 1, 3);
    fields->addWidget(caption("lbl_important", QStringLiteral("重要性："), this), 2, 0);
    fields->addWidget(txtImportant, 2, 1);
    fields->addWidget(caption("lbl_tag", QStringLiteral("标签："), this), 2, 2);
    fields->addWidget(txtTag, 2, 3);
    auto* lblDescription = caption("lbl_description", QStringLiteral("内容："), this);
    lblDescription->setAlignment(Qt::AlignRight | Qt::AlignTop);
    fields->addWidget(lblDescription, 3, 0);
    fields->addWidget(txtDescription, 3, 1, 1, 3);
    fields->setColumnStretch(1, 1);
    fields->setColumnStretch(3, 1);

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    txtDelay_ = new QLineEdit(Reminder::defaultDelay(), this);
    txtDelay_->setObjectName(QStringLiteral("txt_delay"));
    txtDelay_->setAlignment(Qt::AlignRight);
    txtDelay_->setFixedWidth(txtDelay_->fontMetrics().horizontalAdvance(QStringLiteral("00000")) +
                             16);
    acceptOnlyCharacters(txtDelay_, &Reminder::acceptsDelayKey);
    auto* cmdDelay = dialogButton(this, "cmd_delay", QStringLiteral("延迟提醒"));
    auto* snooze = new QHBoxLayout;
    snooze->addWidget(new QLabel(QStringLiteral("在"), this));
    snooze->addWidget(txtDelay_);
    auto* lblDelay = new QLabel(QStringLiteral("分钟后再次提醒"), this);
    lblDelay->setObjectName(QStringLiteral("lbl_delay"));
    snooze->addWidget(lblDelay);
    snooze->addWidget(cmdDelay);
    snooze->addStretch(1);

    auto* cmdOpentask = dialogButton(this, "cmd_opentask", QStringLiteral("打开任务"));
    cmdCancel_ = dialogButton(this, "cmd_cancel", QStringLiteral("不再提醒"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdOpentask);
    buttons->addStretch(1);
    buttons->addWidget(cmdCancel_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 14);
    layout->setSpacing(10);
    layout->addWidget(lblHeading_);
    layout->addLayout(fields);
    layout->addWidget(line);
    layout->addLayout(snooze);
    layout->addLayout(buttons);

    connect(cmdCancel_, &QPushButton::clicked, this, &FormSchRemind::cmdCancelClick);
    connect(cmdDelay, &QPushButton::clicked, this, &FormSchRemind::cmdDelayClick);
    connect(cmdOpentask, &QPushButton::clicked, this, &FormSchRemind::cmdOpentaskClick);
    resize(sizeHint().expandedTo(QSize(440, 0)));
}

bool FormSchRemind::load() {
    const bool ok = reminder_.load();
    WidgetForm form(this);
    reminder_.fill(form);
    const Task& task = reminder_.task();
    const QString time = reminder_.fieldText(QStringLiteral("txt_time"));
    lblHeading_->setText(time.isEmpty() ? task.Subject()
                                        : time + QStringLiteral("  ") + task.Subject());
    // A repeating reminder comes back on the task's next day; a one-time one never.
    cmdCancel_->setText(task.Again() == 1 ? QStringLiteral("今天不再提醒")
                                          : QStringLiteral("不再提醒"));
    return ok;
}

void FormSchRemind::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Ready for a new number of minutes: typing replaces the old one.
    txtDelay_->setFocus();
    txtDelay_->selectAll();
}

void FormSchRemind::cmdCancelClick() {
    reminder_.dismiss(Clock::now());
    emit entryChanged(taskId_);
    close();
}

void FormSchRemind::cmdDelayClick() {
    if (!reminder_.snooze(txtDelay_->text(), Clock::now())) {
        txtDelay_->setFocus();
        txtDelay_->selectAll();
        return;
    }
    emit entryChanged(taskId_);
    close();
}

void FormSchRemind::cmdOpentaskClick() {
    if (pageSwitch_) pageSwitch_(page::Task, reminder_.openTaskFilter(), taskId_);
}

}  // namespace tarvel
