#include "views/formhome.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "records/currency.h"
#include "records/recordbase.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel {

namespace {

constexpr int kPageRole = Qt::UserRole;
constexpr int kIdRole = Qt::UserRole + 1;

QTreeWidget* listView(const char* name, const QStringList& headers, QWidget* parent) {
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

// The first column fits, the given one takes the width left.
void fitColumns(QTreeWidget* list, int stretching) {
    QHeaderView* h = list->header();
    for (int c = 0; c < list->columnCount(); ++c)
        h->setSectionResizeMode(
            c, c == stretching ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

// After the rows: an empty list says so, the frame's title counts the rows.
void finishList(QTreeWidget* list, QGroupBox* box, const QString& title, const QString& empty,
                int count) {
    if (count == 0) addEmptyRow(list, empty);
    box->setTitle(QStringLiteral("%1（%2）").arg(title).arg(count));
}

QString hashed(const QDate& day) {
    return QLatin1Char('#') + jetdate::literalText(day) + QLatin1Char('#');
}

// A list of the rows `sql` reads, one `addRow` call each; a query that
// fails shows as an empty list.
void showRows(QTreeWidget* list, QGroupBox* box, const QString& title, const QString& empty,
              const QString& sql, const std::function<void(const Recordset&)>& addRow) {
    list->clear();
    int count = 0;
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (rs && rs->State() == adStateOpen)
        for (; !rs->Eof(); rs->MoveNext(), ++count) addRow(*rs);
    finishList(list, box, title, empty, count);
}

QString dayText(const QDateTime& value) {
    return value.isValid() ? QLocale(QLocale::Chinese, QLocale::China)
                                 .toString(value.date(), QStringLiteral("M月d日 ddd"))
                           : QString();
}

QString timeText(const QVariant& value) {
    const QDateTime t = recordvalue::dateTime(value);
    return t.isValid() ? t.time().toString(QStringLiteral("hh:mm")) : QString();
}

QString moneyText(const QVariant& value) {
    return QLocale(QLocale::Chinese, QLocale::China)
        .toString(Currency::fromVariant(value).toDouble(), 'f', 2);
}

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
    auto* cmdRefresh = new QPushButton(QStringLiteral("刷新"), this);
    cmdRefresh->setObjectName(QStringLiteral("cmd_refresh"));
    connect(cmdRefresh, &QPushButton::clicked, this, &FormHome::refresh);
    auto* top = new QHBoxLayout;
    top->addWidget(lblDate_);
    top->addStretch(1);
    top->addWidget(cmdRefresh);

    lvTasks_ = listView("lv_today_tasks",
                        {QStringLiteral("时间"), QStringLiteral("主题"), QStringLiteral("状态"),
                         QStringLiteral("提醒")},
                        this);
    fitColumns(lvTasks_, 1);
    lvBirthdays_ =
        listView("lv_birthdays",
                 {QStringLiteral("姓名"), QStringLiteral("生日"), QStringLiteral("年龄")}, this);
    fitColumns(lvBirthdays_, 0);
    lvOpportunities_ = listView("lv_ending_opportunities",
                                {QStringLiteral("结束日期"), QStringLiteral("主题"),
                                 QStringLiteral("阶段"), QStringLiteral("预计金额")},
                                this);
    fitColumns(lvOpportunities_, 1);
    lvOverdue_ =
        listView("lv_overdue_tasks",
                 {QStringLiteral("日期"), QStringLiteral("时间"), QStringLiteral("主题")}, this);
    fitColumns(lvOverdue_, 2);
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
    today_.load();
    lblDate_->setText(QStringLiteral("今天是") + longDate(Clock::today()));
    showToday();
    showOpportunities();
    showOverdue();
    emit refreshed(Clock::today());
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
    finishList(lvTasks_, fraTasks_, QStringLiteral("今日日程"), QStringLiteral("今天没有日程安排"),
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
    finishList(lvBirthdays_, fraBirthdays_, QStringLiteral("今日生日"),
               QStringLiteral("今天没有人过生日"), int(today_.birthdays().size()));
}

void FormHome::showOpportunities() {
    const QDate day = Clock::today();
    // A deadline with a time of day still counts on its last day.
    showRows(lvOpportunities_, fraOpportunities_, QStringLiteral("一周内结束的项目机会"),
             QStringLiteral("一周内没有要结束的项目机会"),
             QStringLiteral("SELECT opp_id, opp_subject, opp_die_date, opp_phase, "
                            "opp_estimate_sale FROM opportunities WHERE opp_die_date >= ") +
                 hashed(day) + QStringLiteral(" AND opp_die_date < ") +
                 hashed(day.addDays(kEndingDays + 1)) +
                 QStringLiteral(" ORDER BY opp_die_date, opp_subject"),
             [this](const Recordset& rs) {
                 QTreeWidgetItem* item = addRow(
                     lvOpportunities_,
                     {dayText(recordvalue::dateTime(rs.value(QStringLiteral("opp_die_date")))),
                      recordvalue::text(rs.value(QStringLiteral("opp_subject"))),
                      recordvalue::text(rs.value(QStringLiteral("opp_phase"))),
                      moneyText(rs.value(QStringLiteral("opp_estimate_sale")))},
                     page::OpportunityDetail,
                     recordvalue::int32(rs.value(QStringLiteral("opp_id"))));
                 item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
             });
}

void FormHome::showOverdue() {
    const QDate day = Clock::today();
    // One-off tasks only: a recurring task's completion covers all its days.
    showRows(lvOverdue_, fraOverdue_, QStringLiteral("最近%1天过期未完成的日程").arg(kOverdueDays),
             QStringLiteral("最近没有过期未完成的日程"),
             QStringLiteral("SELECT tas_id, tas_date, tas_time, tas_subject FROM tasks WHERE "
                            "tas_cycle = 0 AND (tas_closed IS NULL OR tas_closed = 0) AND "
                            "tas_date >= ") +
                 hashed(day.addDays(-kOverdueDays)) + QStringLiteral(" AND tas_date < ") +
                 hashed(day) + QStringLiteral(" ORDER BY tas_date DESC, tas_time"),
             [this](const Recordset& rs) {
                 addRow(lvOverdue_,
                        {dayText(recordvalue::dateTime(rs.value(QStringLiteral("tas_date")))),
                         timeText(rs.value(QStringLiteral("tas_time"))),
                         recordvalue::text(rs.value(QStringLiteral("tas_subject")))},
                        page::TaskDetail, recordvalue::int32(rs.value(QStringLiteral("tas_id"))));
             });
}

void FormHome::openItem(QTreeWidgetItem* item) {
    const int id = item ? item->data(0, kIdRole).toInt() : 0;
    if (id == 0 || !pageSwitch_) return;
    const qint16 code = qint16(item->data(0, kPageRole).toInt());
    const char* key = code == page::TaskDetail      ? "tas_id"
                      : code == page::ContactDetail ? "con_id"
                                                    : "opp_id";
    pageSwitch_(code, QStringLiteral("WHERE %1=%2").arg(QLatin1String(key)).arg(id), id);
}

}  // namespace tarvel
