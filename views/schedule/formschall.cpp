#include "views/schedule/formschall.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QVBoxLayout>

#include "exchange/icalexport.h"
#include "exchange/icalimport.h"
#include "schedule/taskcategories.h"
#include "store/clock.h"
#include "views/common/buttons.h"

namespace tarvel {

namespace {

constexpr int kFilterRole = Qt::UserRole;

// The terms of a page condition ("WHERE ..." as the history keeps it).
QString termsOf(const QString& condition) {
    QString terms = condition.trimmed();
    if (terms.startsWith(QLatin1String("WHERE"), Qt::CaseInsensitive))
        terms = terms.mid(5).trimmed();
    return terms;
}

}  // namespace

FormSchAll::FormSchAll(QWidget* parent)
    : PageWidget(parent),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      files_(std::make_shared<QtFileDialogs>(this)) {
    setObjectName(QStringLiteral("form_sch_all"));

    // Left panel: categories and the statistics page.
    auto* lblCategories = new QLabel(QStringLiteral("日程分类(&K)"), this);
    setHeadingFont(lblCategories, 1.1);
    categories_ = new QTreeWidget(this);
    categories_->setObjectName(QStringLiteral("tv_sch_category"));
    categories_->setHeaderHidden(true);
    categories_->setColumnCount(1);
    lblCategories->setBuddy(categories_);
    auto* cmdNew = namedButton(this, "cmd_sch_new", QStringLiteral("新建日程(&N)"));
    auto* cmdStat = namedButton(this, "cmd_sch_stat", QStringLiteral("日程统计(&S)"));
    cmdStat->setFlat(true);
    cmdStat->setStyleSheet(QStringLiteral("color: palette(link); text-align: left;"));
    auto* cmdExport = namedButton(this, "cmd_sch_export", QStringLiteral("导出日历(&E)"));
    auto* exportMenu = new QMenu(cmdExport);
    QAction* exportAll = exportMenu->addAction(QStringLiteral("全部日程…"));
    exportAll->setObjectName(QStringLiteral("m_export_all"));
    QAction* exportTicked = exportMenu->addAction(QStringLiteral("任务列表中勾选的日程…"));
    exportTicked->setObjectName(QStringLiteral("m_export_ticked"));
    cmdExport->setMenu(exportMenu);
    auto* cmdImport = namedButton(this, "cmd_sch_import", QStringLiteral("导入日历(&I)…"));
    auto* exchange = new QHBoxLayout;
    exchange->addWidget(cmdExport);
    exchange->addWidget(cmdImport);
    auto* left = new QVBoxLayout;
    left->addWidget(cmdNew);
    left->addWidget(lblCategories);
    left->addWidget(categories_, 1);
    left->addLayout(exchange);
    left->addWidget(cmdStat);

    // Top bar: where the calendar is and how it shows.
    auto* cmdPrev = namedButton(this, "cmd_prev", QStringLiteral("◀ 上一个"));
    auto* cmdToday = namedButton(this, "cmd_today", QStringLiteral("今天(&T)"));
    auto* cmdNext = namedButton(this, "cmd_next", QStringLiteral("下一个 ▶"));
    dtDay_ = new QDateEdit(this);
    dtDay_->setObjectName(QStringLiteral("DT_sch_day"));
    dtDay_->setCalendarPopup(true);
    dtDay_->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    auto* lblDay = new QLabel(QStringLiteral("日期(&D)："), this);
    lblDay->setBuddy(dtDay_);
    lblRange_ = new QLabel(this);
    lblRange_->setObjectName(QStringLiteral("lbl_range"));
    setHeadingFont(lblRange_, 1.3);
    views_ = new QButtonGroup(this);
    auto* top = new QHBoxLayout;
    top->addWidget(cmdPrev);
    top->addWidget(cmdToday);
    top->addWidget(cmdNext);
    top->addWidget(lblDay);
    top->addWidget(dtDay_);
    top->addSpacing(12);
    top->addWidget(lblRange_, 1);
    const struct {
        const char* name;
        const char* text;
        View view;
    } viewButtons[] = {
        {"Opt_month", "月(&M)", Month}, {"Opt_week", "周(&W)", Week}, {"Opt_day", "日(&Y)", Day}};
    for (const auto& v : viewButtons) {
        auto* b = namedButton(this, v.name, QString::fromUtf8(v.text));
        b->setCheckable(true);
        views_->addButton(b, v.view);
        top->addWidget(b);
    }

    month_ = new MonthView(this);
    week_ = new WeekView(this);
    day_ = new DayView(this);
    stack_ = new QStackedWidget(this);
    stack_->setObjectName(QStringLiteral("stk_sch_views"));
    for (CalendarViewBase* v :
         {static_cast<CalendarViewBase*>(month_), static_cast<CalendarViewBase*>(week_),
          static_cast<CalendarViewBase*>(day_)}) {
        stack_->addWidget(v);
        connect(v, &CalendarViewBase::openTask, this, [this](int id) {
            if (openTask_) openTask_(id, QDate(), QTime());
        });
        connect(v, &CalendarViewBase::newTask, this, [this](const QDate& d, const QTime& t) {
            if (openTask_) openTask_(0, d, t);
        });
        connect(v, &CalendarViewBase::showDay, this, [this](const QDate& d) {
            date_ = d;
            setView(Day);
        });
    }
    auto* right = new QVBoxLayout;
    right->addLayout(top);
    right->addWidget(stack_, 1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addLayout(left, 0);
    layout->addLayout(right, 1);
    categories_->setMinimumWidth(190);
    categories_->setMaximumWidth(260);

    setTabOrder(cmdNew, categories_);
    setTabOrder(categories_, cmdExport);
    setTabOrder(cmdExport, cmdImport);
    setTabOrder(cmdImport, cmdStat);
    setTabOrder(cmdStat, cmdPrev);
    setTabOrder(cmdPrev, cmdToday);
    setTabOrder(cmdToday, cmdNext);
    setTabOrder(cmdNext, dtDay_);

    connect(cmdPrev, &QPushButton::clicked, this, &FormSchAll::cmdPrevClick);
    connect(cmdNext, &QPushButton::clicked, this, &FormSchAll::cmdNextClick);
    connect(cmdToday, &QPushButton::clicked, this, &FormSchAll::cmdTodayClick);
    connect(cmdNew, &QPushButton::clicked, this, [this] {
        if (openTask_) openTask_(0, date_, QTime());
    });
    connect(exportAll, &QAction::triggered, this, [this] { exportICalendar(false); });
    connect(exportTicked, &QAction::triggered, this, [this] { exportICalendar(true); });
    connect(cmdImport, &QPushButton::clicked, this, &FormSchAll::importICalendar);
    connect(cmdStat, &QPushButton::clicked, this, [this] {
        if (pageSwitch_) pageSwitch_(page::ScheduleStatistics, QString(), 0);
    });
    connect(dtDay_, &QDateEdit::dateChanged, this, [this](const QDate& d) {
        if (!showing_) setDate(d);
    });
    connect(views_, &QButtonGroup::idClicked, this, [this](int id) { setView(View(id)); });
    connect(categories_, &QTreeWidget::itemActivated, this, &FormSchAll::chooseCategory);
    connect(categories_, &QTreeWidget::itemClicked, this, &FormSchAll::chooseCategory);
}

void FormSchAll::fill(const PageRequest& request) {
    date_ = request.date.isValid() ? request.date : Clock::today();
    view_ = request.pageNo >= Month && request.pageNo <= Day ? View(request.pageNo) : Month;
    condition_ = request.condition;
    refresh();
}

void FormSchAll::refresh() {
    showCategories();
    showCalendar();
}

void FormSchAll::setView(View view) {
    view_ = view;
    showCalendar();
    recordInHistory();
}

void FormSchAll::setDate(const QDate& day) {
    if (!day.isValid()) return;
    date_ = day;
    showCalendar();
    recordInHistory();
}

QDate FormSchAll::step(int direction) const {
    switch (view_) {
        case Month:
            return date_.addMonths(direction);
        case Week:
            return date_.addDays(7 * direction);
        case Day:
            break;
    }
    return date_.addDays(direction);
}

void FormSchAll::cmdPrevClick() {
    setDate(step(-1));
}

void FormSchAll::cmdNextClick() {
    setDate(step(1));
}

void FormSchAll::cmdTodayClick() {
    setDate(Clock::today());
}

void FormSchAll::recordInHistory() {
    if (historyUpdate_) historyUpdate_(date_, qint16(view_), condition_);
}

void FormSchAll::showCalendar() {
    showing_ = true;
    dtDay_->setDate(date_);
    views_->button(view_)->setChecked(true);
    QDate first, last;
    CalendarViewBase* shown = nullptr;
    switch (view_) {
        case Month:
            first = MonthView::firstDay(date_), last = MonthView::lastDay(date_), shown = month_;
            lblRange_->setText(QStringLiteral("%1年%2月").arg(date_.year()).arg(date_.month()));
            break;
        case Week:
            first = WeekView::firstDay(date_), last = WeekView::lastDay(date_), shown = week_;
            lblRange_->setText(first.toString(QStringLiteral("yyyy年M月d日")) +
                               QStringLiteral(" – ") + last.toString(QStringLiteral("M月d日")));
            break;
        case Day:
            first = last = date_, shown = day_;
            lblRange_->setText(longDate(date_));
            break;
    }
    if (!calendar_.load(first, last, termsOf(condition_)) && dialogs_)
        dialogs_->info(messageTitle(), calendar_.ErrMsg());
    shown->show(calendar_, date_);
    stack_->setCurrentWidget(shown);
    showing_ = false;
}

void FormSchAll::showCategories() {
    categories_->clear();
    TaskCategories counts;
    if (!counts.load()) {
        if (dialogs_) dialogs_->info(messageTitle(), counts.ErrMsg());
        return;
    }
    auto* all =
        new QTreeWidgetItem(categories_, {QStringLiteral("全部日程 (%1)").arg(counts.total())});
    all->setData(0, kFilterRole, QString());
    QHash<QString, QTreeWidgetItem*> groups;
    QTreeWidgetItem* current = all;
    for (const TaskCategory& c : counts.categories()) {
        QTreeWidgetItem*& group = groups[c.group];
        if (!group) {
            group = new QTreeWidgetItem(categories_, {c.group});
            group->setFlags(Qt::ItemIsEnabled);
            group->setExpanded(true);
        }
        auto* item =
            new QTreeWidgetItem(group, {QStringLiteral("%1 (%2)").arg(c.caption).arg(c.count)});
        const QString condition = QStringLiteral("WHERE ") + c.filter;
        item->setData(0, kFilterRole, condition);
        if (condition == condition_) current = item;
    }
    categories_->expandAll();
    categories_->setCurrentItem(current);
}

void FormSchAll::chooseCategory(QTreeWidgetItem* item) {
    const QVariant filter = item ? item->data(0, kFilterRole) : QVariant();
    if (!filter.isValid() || filter.toString() == condition_) return;
    condition_ = filter.toString();
    showCalendar();
    recordInHistory();
}

namespace {
QString calendarFilter() {
    return QStringLiteral("iCalendar 日历文件 (*.ics);;所有文件 (*)");
}
}  // namespace

void FormSchAll::exportICalendar(bool tickedOnly) {
    const QString path = files_->getSaveFileName(QStringLiteral("导出日历"),
                                                 QStringLiteral("日程.ics"), calendarFilter());
    if (path.isEmpty()) return;
    const exchange::ICalendarExport result = exchange::exportTasksToICalendar(path, tickedOnly);
    if (!result.ok) {
        dialogs_->info(messageTitle(), QStringLiteral("日历没有导出。\n") + result.ErrMsg);
        return;
    }
    QString text = QStringLiteral("已导出%1项日程。").arg(result.exported);
    if (!result.skipped.isEmpty())
        text += QStringLiteral(
                    "\n以下%1项不会在任何一天发生（结束日期早于开始日期或重复方式未知），"
                    "没有导出：\n")
                    .arg(result.skipped.size()) +
                result.skipped.join(QLatin1Char('\n'));
    dialogs_->info(messageTitle(), text);
}

void FormSchAll::importICalendar() {
    const QString path =
        files_->getOpenFileName(QStringLiteral("导入日历"), QString(), calendarFilter());
    if (path.isEmpty()) return;
    const exchange::ICalendarImport result = exchange::importICalendarFile(path);
    if (!result.ok) {
        dialogs_->info(messageTitle(),
                       QStringLiteral("日历没有导入，日程没有任何改变。\n") + result.ErrMsg);
        return;
    }
    refresh();
    emit tasksImported();
    dialogs_->info(messageTitle(), result.summary());
}

}  // namespace tarvel
