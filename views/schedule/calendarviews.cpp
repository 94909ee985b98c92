#include "views/schedule/calendarviews.h"

#include <QEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QLocale>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "store/clock.h"
#include "views/common/page.h"

namespace tarvel {

namespace {

constexpr int kTaskIdRole = Qt::UserRole;
// More than a day of the week or month can show: the rest is one line that
// leads to the day view.
constexpr int kShownPerDay = 12;
constexpr int kSlotRole = Qt::UserRole + 1;

const QColor kTodayBackground(0xff, 0xf4, 0xc2);
const QColor kOtherMonthBackground(0xf3, 0xf3, 0xf3);
const QColor kDoneText(0x90, 0x90, 0x90);

QString weekdayName(int sundayFirstIndex) {
    static const char* const names[] = {"日", "一", "二", "三", "四", "五", "六"};
    return QStringLiteral("星期") + QString::fromUtf8(names[sundayFirstIndex]);
}

// Done tasks stay visible but read as finished: grey and struck through.
void styleEntry(QListWidgetItem* item, const CalendarEntry& e) {
    item->setData(kTaskIdRole, e.id);
    QStringList tip{e.subject};
    if (e.done) tip << QStringLiteral("已完成");
    if (e.remind) tip << QStringLiteral("提醒");
    if (e.recurring) tip << QStringLiteral("重复");
    item->setToolTip(tip.join(QStringLiteral(" · ")));
    if (!e.done) return;
    QFont f = item->font();
    f.setStrikeOut(true);
    item->setFont(f);
    item->setForeground(kDoneText);
}

QLabel* headerLabel(const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setAlignment(Qt::AlignCenter);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    return l;
}

}  // namespace

QString entryText(const CalendarEntry& e, bool withTime) {
    QString text;
    if (e.done) text += QStringLiteral("✔");
    if (e.remind) text += QStringLiteral("◷");  // a clock face: fonts everywhere have it
    if (e.recurring) text += QStringLiteral("↻");
    if (!text.isEmpty()) text += QLatin1Char(' ');
    if (withTime && e.time.isValid())
        text += e.time.toString(QStringLiteral("hh:mm")) + QLatin1Char(' ');
    return text + e.subject;
}

DayCell::DayCell(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("fra_day"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    number_ = new QPushButton(this);
    number_->setObjectName(QStringLiteral("cmd_day"));
    number_->setFlat(true);
    number_->setCursor(Qt::PointingHandCursor);
    number_->setToolTip(QStringLiteral("查看这一天"));
    outlay_ = new QLabel(this);
    outlay_->setObjectName(QStringLiteral("lbl_day_outlay"));
    outlay_->setStyleSheet(QStringLiteral("color: #a05a00;"));
    tasks_ = new QListWidget(this);
    tasks_->setObjectName(QStringLiteral("lst_day_tasks"));
    tasks_->setFrameShape(QFrame::NoFrame);
    tasks_->setAutoFillBackground(false);
    tasks_->viewport()->setAutoFillBackground(false);
    tasks_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tasks_->setTextElideMode(Qt::ElideRight);
    tasks_->setUniformItemSizes(true);  // one line each: no per-item measuring
    // Six weeks of days must fit a small window: a day keeps room for one line
    // and scrolls the rest, instead of pushing the last week off the page.
    tasks_->setMinimumHeight(tasks_->fontMetrics().height() + 4);
    tasks_->viewport()->installEventFilter(this);

    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(number_);
    top->addStretch(1);
    top->addWidget(outlay_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 1, 3, 2);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(tasks_, 1);

    connect(number_, &QPushButton::clicked, this, [this] { emit showDay(day_); });
    connect(tasks_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QVariant id = item->data(kTaskIdRole);
        if (id.isValid())
            emit openTask(id.toInt());
        else
            emit showDay(day_);  // the line of the tasks not shown
    });
}

bool DayCell::eventFilter(QObject* watched, QEvent* event) {
    // A double click on a task activates it; on the empty part of the day it
    // starts a new task there.
    if (watched == tasks_->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (!tasks_->itemAt(mouse->position().toPoint())) {
            emit newTask(day_, QTime());
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

void DayCell::show(const ScheduleCalendar& calendar, const QDate& day, bool inMonth) {
    day_ = day;
    const bool today = day == Clock::today();
    number_->setText(day.day() == 1 ? QStringLiteral("%1月%2日").arg(day.month()).arg(day.day())
                                    : QString::number(day.day()));
    number_->setAccessibleName(longDate(day));
    tasks_->setAccessibleName(longDate(day) + QStringLiteral(" 的日程"));
    QFont f = number_->font();
    f.setBold(today);
    number_->setFont(f);
    QPalette p = palette();
    p.setColor(QPalette::Window, today     ? kTodayBackground
                                 : inMonth ? QPalette().color(QPalette::Base)
                                           : kOtherMonthBackground);
    setPalette(p);
    const Currency outlay = calendar.outlayOn(day);
    outlay_->setText(outlay.units() == 0 ? QString() : QStringLiteral("¥") + outlay.toString());
    outlay_->setToolTip(outlay.units() == 0 ? QString() : QStringLiteral("当天费用合计"));
    tasks_->clear();
    const QList<CalendarEntry> entries = calendar.entriesOn(day);
    for (qsizetype i = 0; i < entries.size() && i < kShownPerDay; ++i) {
        auto* item = new QListWidgetItem(entryText(entries[i]), tasks_);
        styleEntry(item, entries[i]);
    }
    if (entries.size() > kShownPerDay) {
        auto* more = new QListWidgetItem(
            QStringLiteral("还有%1项…").arg(entries.size() - kShownPerDay), tasks_);
        more->setForeground(QColor(0x1a, 0x5f, 0xb4));
        more->setToolTip(QStringLiteral("在日视图中查看这一天的全部日程"));
    }
}

DayGridView::DayGridView(int weeks, QWidget* parent) : CalendarViewBase(parent), weeks_(weeks) {
    setObjectName(weeks == 1 ? QStringLiteral("view_week") : QStringLiteral("view_month"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    for (int c = 0; c < 7; ++c) {
        grid->addWidget(headerLabel(weekdayName(c), this), 0, c);
        grid->setColumnStretch(c, 1);
    }
    for (int i = 0; i < 7 * weeks; ++i) {
        auto* cell = new DayCell(this);
        cell->setProperty("Index", i);
        grid->addWidget(cell, 1 + i / 7, i % 7);
        connect(cell, &DayCell::openTask, this, &CalendarViewBase::openTask);
        connect(cell, &DayCell::newTask, this, &CalendarViewBase::newTask);
        connect(cell, &DayCell::showDay, this, &CalendarViewBase::showDay);
        cells_ << cell;
    }
    for (int r = 1; r <= weeks; ++r) grid->setRowStretch(r, 1);
}

void DayGridView::show(const ScheduleCalendar& calendar, const QDate& current) {
    const QDate first = firstDayFor(current);
    for (int i = 0; i < cells_.size(); ++i) {
        const QDate day = first.addDays(i);
        cells_[i]->show(calendar, day, weeks_ == 1 || day.month() == current.month());
    }
}

DayView::DayView(QWidget* parent) : CalendarViewBase(parent) {
    setObjectName(QStringLiteral("view_day"));
    heading_ = new QLabel(this);
    heading_->setObjectName(QStringLiteral("lbl_day_heading"));
    halfHours_ = new QTreeWidget(this);
    halfHours_->setObjectName(QStringLiteral("lv_day_tasks"));
    halfHours_->setHeaderLabels({QStringLiteral("时间"), QStringLiteral("日程")});
    halfHours_->setRootIsDecorated(false);
    halfHours_->setAlternatingRowColors(true);
    halfHours_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(heading_);
    layout->addWidget(halfHours_, 1);
    connect(halfHours_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        const QVariant id = item->data(0, kTaskIdRole);
        if (id.isValid())
            emit openTask(id.toInt());
        else
            emit newTask(heading_->property("day").toDate(), item->data(0, kSlotRole).toTime());
    });
}

void DayView::show(const ScheduleCalendar& calendar, const QDate& current) {
    heading_->setProperty("day", current);
    const Currency outlay = calendar.outlayOn(current);
    heading_->setText(
        longDate(current) +
        (outlay.units() == 0 ? QString() : QStringLiteral("    费用合计：¥") + outlay.toString()));
    halfHours_->clear();
    const QList<CalendarEntry> entries = calendar.entriesOn(current);
    auto addTask = [this](const CalendarEntry& e) {
        auto* item = new QTreeWidgetItem(halfHours_);
        item->setText(0, e.time.isValid() ? e.time.toString(QStringLiteral("hh:mm"))
                                          : QStringLiteral("全天"));
        item->setText(1, entryText(e, false));
        item->setData(0, kTaskIdRole, e.id);
        QListWidgetItem look;
        styleEntry(&look, e);
        item->setToolTip(1, look.toolTip());
        if (e.done)
            for (int c = 0; c < 2; ++c) {
                item->setFont(c, look.font());
                item->setForeground(c, look.foreground());
            }
        return item;
    };
    int next = 0;
    while (next < entries.size() && !entries[next].time.isValid()) addTask(entries[next++]);
    QTreeWidgetItem* now = nullptr;
    for (int slot = 0; slot < 48; ++slot) {
        const QTime from(slot / 2, slot % 2 * 30);
        const QTime to = slot == 47 ? QTime(23, 59, 59, 999) : from.addSecs(30 * 60);
        bool any = false;
        while (next < entries.size() && entries[next].time < to) {
            addTask(entries[next++]);
            any = true;
        }
        if (!any) {
            auto* item = new QTreeWidgetItem(halfHours_, {from.toString(QStringLiteral("hh:mm"))});
            item->setData(0, kSlotRole, from);
            item->setForeground(0, kDoneText);
        }
        if (!now && current == Clock::today() && Clock::time() < to)
            now = halfHours_->topLevelItem(halfHours_->topLevelItemCount() - 1);
        if (!now && current != Clock::today() && slot == 16)
            now = halfHours_->topLevelItem(halfHours_->topLevelItemCount() - 1);
    }
    if (now) halfHours_->scrollToItem(now, QAbstractItemView::PositionAtTop);
}

}  // namespace tarvel
