#include "views/home/formhome.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "store/clock.h"
#include "views/common/buttons.h"

namespace tarvel {

namespace {

constexpr int kPageRole = Qt::UserRole;
constexpr int kIdRole = Qt::UserRole + 1;

// The first column fits, the given one takes the width left.
void fitColumns(QTreeWidget* list, int stretching) {
    QHeaderView* h = list->header();
    for (int c = 0; c < list->columnCount(); ++c)
        h->setSectionResizeMode(
            c, c == stretching ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

// A read-only list whose column `stretching` takes the width left.
QTreeWidget* listView(const char* name, const QStringList& headers, int stretching,
                      QWidget* parent) {
    auto* lv = new QTreeWidget(parent);
    lv->setObjectName(QLatin1String(name));
    lv->setHeaderLabels(headers);
    lv->setRootIsDecorated(false);
    lv->setUniformRowHeights(true);
    lv->setAlternatingRowColors(true);
    lv->setSelectionMode(QAbstractItemView::SingleSelection);
    lv->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lv->header()->setStretchLastSection(false);
    lv->header()->setSectionsMovable(false);
    // Columns sized to their contents still need air between them.
    lv->setStyleSheet(QStringLiteral("QTreeView::item { padding: 2px 8px 2px 2px; }"));
    fitColumns(lv, stretching);
    return lv;
}

// A titled frame around one list.
QGroupBox* frame(const char* name, QTreeWidget* list, QWidget* parent) {
    auto* box = new QGroupBox(parent);
    box->setObjectName(QLatin1String(name));
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(8, 6, 8, 8);
    layout->addWidget(list);
    return box;
}

// A row that opens record `id` on page `page` when double-clicked.
QTreeWidgetItem* addRow(QTreeWidget* list, const QStringList& texts, qint16 page, int id) {
    auto* item = new QTreeWidgetItem(list, texts);
    item->setData(0, kPageRole, int(page));
    item->setData(0, kIdRole, id);
    item->setToolTip(0, QStringLiteral("双击打开"));
    return item;
}

// An empty list says so in its first row, greyed and not selectable.
void addEmptyRow(QTreeWidget* list, const QString& text) {
    auto* item = new QTreeWidgetItem(list, QStringList{text});
    item->setFlags(Qt::NoItemFlags);
    item->setFirstColumnSpanned(true);
}

// After the rows: an empty list says so, the frame's title counts the rows.
void finishList(QTreeWidget* list, QGroupBox* box, const QString& title, const QString& empty,
                int count) {
    if (count == 0) addEmptyRow(list, empty);
    box->setTitle(QStringLiteral("%1（%2）").arg(title).arg(count));
}

// A list that could not be read says so in its only row, and its title
// counts nothing.
void showFailure(QTreeWidget* list, QGroupBox* box, const QString& title, const QString& why) {
    list->clear();
    auto* item = new QTreeWidgetItem(list, QStringList{QStringLiteral("无法读取：") + why});
    item->setFlags(Qt::NoItemFlags);
    item->setFirstColumnSpanned(true);
    item->setForeground(0, QColor(0xb0, 0x20, 0x20));
    item->setToolTip(0, why);
    box->setTitle(title + QStringLiteral("（读取失败）"));
}

QString dayText(const QDateTime& value) {
    return value.isValid() ? QLocale(QLocale::Chinese, QLocale::China)
                                 .toString(value.date(), QStringLiteral("M月d日 ddd"))
                           : QString();
}

QString timeText(const QTime& value) {
    return value.isValid() ? value.toString(QStringLiteral("hh:mm")) : QString();
}

QString moneyText(const Currency& value) {
    return QLocale(QLocale::Chinese, QLocale::China).toString(value.toDouble(), 'f', 2);
}

const QString kTodayTitle = QStringLiteral("今日日程");
const QString kBirthdayTitle = QStringLiteral("今日生日");
const QString kEndingTitle = QStringLiteral("一周内结束的项目机会");
const QString kOverdueTitle =
    QStringLiteral("最近%1天过期未完成的日程").arg(HomeLists::kOverdueDays);

// The reminder column of one of today's tasks.
QString reminderText(const TodayTask& t) {
    if (!t.due) return QString();
    switch (t.state) {
        case TodayTask::State::Showing:  // its window is open, or was closed unanswered
            return QStringLiteral("已提醒");
        case TodayTask::State::Handled:
            return QStringLiteral("已处理");
        case TodayTask::State::Waiting:
            break;
    }
    return t.snoozed ? QStringLiteral("延迟到 ") + t.fireAt.time().toString(QStringLiteral("hh:mm"))
                     : QStringLiteral("待提醒");
}

}  // namespace

FormHome::FormHome(TodayList& today, QWidget* parent) : PageWidget(parent), today_(today) {
    setObjectName(QStringLiteral("form_pp"));

    lblDate_ = new QLabel(this);
    lblDate_->setObjectName(QStringLiteral("lbl_date"));
    setHeadingFont(lblDate_, 1.5);
    auto* cmdRefresh = namedButton(this, QStringLiteral("cmd_refresh"), QStringLiteral("刷新"));
    connect(cmdRefresh, &QPushButton::clicked, this, &FormHome::refresh);
    auto* top = new QHBoxLayout;
    top->addWidget(lblDate_);
    top->addStretch(1);
    top->addWidget(cmdRefresh);

    lvTasks_ = listView("lv_today_tasks",
                        {QStringLiteral("时间"), QStringLiteral("主题"), QStringLiteral("状态"),
                         QStringLiteral("提醒")},
                        1, this);
    lvBirthdays_ =
        listView("lv_birthdays",
                 {QStringLiteral("姓名"), QStringLiteral("生日"), QStringLiteral("年龄")}, 0, this);
    lvOpportunities_ = listView("lv_ending_opportunities",
                                {QStringLiteral("结束日期"), QStringLiteral("主题"),
                                 QStringLiteral("阶段"), QStringLiteral("预计金额")},
                                1, this);
    lvOverdue_ =
        listView("lv_overdue_tasks",
                 {QStringLiteral("日期"), QStringLiteral("时间"), QStringLiteral("主题")}, 2, this);
    for (QTreeWidget* lv : {lvTasks_, lvBirthdays_, lvOpportunities_, lvOverdue_})
        connect(lv, &QTreeWidget::itemDoubleClicked, this,
                [this](QTreeWidgetItem* item) { openItem(item); });

    fraTasks_ = frame("fra_today_tasks", lvTasks_, this);
    fraBirthdays_ = frame("fra_birthdays", lvBirthdays_, this);
    fraOpportunities_ = frame("fra_ending_opportunities", lvOpportunities_, this);
    fraOverdue_ = frame("fra_overdue_tasks", lvOverdue_, this);

    auto* grid = new QGridLayout;
    grid->setSpacing(12);
    grid->addWidget(fraTasks_, 0, 0);
    grid->addWidget(fraBirthdays_, 0, 1);
    grid->addWidget(fraOverdue_, 1, 0);
    grid->addWidget(fraOpportunities_, 1, 1);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);
    grid->setRowStretch(0, 3);
    grid->setRowStretch(1, 2);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(12);
    layout->addLayout(top);
    layout->addLayout(grid, 1);
}

void FormHome::fill(const PageRequest&) {
    refresh();
}

void FormHome::refresh() {
    const QDate day = Clock::today();
    lblDate_->setText(QStringLiteral("今天是") + longDate(day));
    if (today_.load(day)) {
        showToday();
    } else {
        showFailure(lvTasks_, fraTasks_, kTodayTitle, today_.ErrMsg());
        showFailure(lvBirthdays_, fraBirthdays_, kBirthdayTitle, today_.ErrMsg());
    }
    if (lists_.loadEndingOpportunities(day))
        showOpportunities();
    else
        showFailure(lvOpportunities_, fraOpportunities_, kEndingTitle, lists_.ErrMsg());
    if (lists_.loadOverdueTasks(day))
        showOverdue();
    else
        showFailure(lvOverdue_, fraOverdue_, kOverdueTitle, lists_.ErrMsg());
    emit refreshed(day);
}

void FormHome::showToday() {
    lvTasks_->clear();
    for (const TodayTask& t : today_.tasks()) {
        QTreeWidgetItem* item =
            addRow(lvTasks_,
                   {t.timeText, t.subject,
                    t.done ? QStringLiteral("完成") : QStringLiteral("未完成"), reminderText(t)},
                   page::TaskDetail, t.id);
        if (t.done) item->setForeground(1, palette().brush(QPalette::Disabled, QPalette::Text));
    }
    finishList(lvTasks_, fraTasks_, kTodayTitle, QStringLiteral("今天没有日程安排"),
               int(today_.tasks().size()));

    lvBirthdays_->clear();
    const QDate day = today_.day();
    for (const TodayBirthday& b : today_.birthdays()) {
        const int age = day.year() - b.birthday.year();
        addRow(lvBirthdays_,
               {b.name, b.birthday.toString(QStringLiteral("yyyy年M月d日")),
                age > 0 ? QStringLiteral("%1岁").arg(age) : QString()},
               page::ContactDetail, b.contactId);
    }
    finishList(lvBirthdays_, fraBirthdays_, kBirthdayTitle, QStringLiteral("今天没有人过生日"),
               int(today_.birthdays().size()));
}

void FormHome::showOpportunities() {
    lvOpportunities_->clear();
    for (const EndingOpportunity& o : lists_.endingOpportunities()) {
        QTreeWidgetItem* item = addRow(
            lvOpportunities_, {dayText(o.dieDate), o.subject, o.phase, moneyText(o.estimateSale)},
            page::OpportunityDetail, o.id);
        item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    }
    finishList(lvOpportunities_, fraOpportunities_, kEndingTitle,
               QStringLiteral("一周内没有要结束的项目机会"),
               int(lists_.endingOpportunities().size()));
}

void FormHome::showOverdue() {
    lvOverdue_->clear();
    for (const OverdueTask& t : lists_.overdueTasks())
        addRow(lvOverdue_, {dayText(t.date), timeText(t.time), t.subject}, page::TaskDetail, t.id);
    finishList(lvOverdue_, fraOverdue_, kOverdueTitle, QStringLiteral("最近没有过期未完成的日程"),
               int(lists_.overdueTasks().size()));
}

void FormHome::openItem(QTreeWidgetItem* item) {
    const int id = item ? item->data(0, kIdRole).toInt() : 0;
    if (id == 0 || !pageSwitch_) return;
    const qint16 code = qint16(item->data(0, kPageRole).toInt());
    const qint16 kindCode = code == page::TaskDetail      ? kind::Task
                            : code == page::ContactDetail ? kind::Contact
                                                          : kind::Opportunity;
    pageSwitch_(code, recordCondition(kindCode, id), id);
}

}  // namespace tarvel
