#include "views/schedule/formschstat.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "views/common/buttons.h"
#include "views/common/keyfilter.h"

namespace tarvel {

namespace {

QLabel* label(const char* name, const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setObjectName(QLatin1String(name));
    return l;
}

QDateEdit* datePicker(const char* name, QWidget* parent) {
    auto* d = new QDateEdit(parent);
    d->setObjectName(QLatin1String(name));
    d->setCalendarPopup(true);
    d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    d->setMinimumWidth(d->fontMetrics().horizontalAdvance(QStringLiteral("0000-00-00")) + 56);
    return d;
}

}  // namespace

FormSchStat::FormSchStat(QWidget* parent)
    : PageWidget(parent), dialogs_(std::make_shared<MessageBoxDialogs>(this)) {
    setObjectName(QStringLiteral("form_sch_stat"));

    auto* lblTitle = label("lbl_Title", QStringLiteral("日程统计"), this);
    setHeadingFont(lblTitle, 1.6);
    auto* lblHint =
        label("lbl_hint", QStringLiteral("点击下面的统计项目，在相应的列表中查看结果。"), this);
    lblHint->setStyleSheet(QStringLiteral("color: palette(dark);"));

    // Each statistic is a button drawn as a link: keyboards and screen readers
    // reach it; its index tells which one it is.
    for (int i = 0; i < ScheduleStatistics::kSelections; ++i) {
        QPushButton* b = flatButton(QStringLiteral("lbl_Selection"), QString(), this);
        b->setProperty("Index", i);
        // Drawn in the link colour, so a statistic still reads as something to follow.
        QPalette linkColour = b->palette();
        linkColour.setColor(QPalette::ButtonText, linkColour.color(QPalette::Link));
        b->setPalette(linkColour);
        connect(b, &QPushButton::clicked, this, [this, i] { lblSelectionClick(i); });
        selections_ << b;
    }

    // Not contacted: the number of days, then selections 0 to 2.
    txtOverdays_ = new QLineEdit(this);
    txtOverdays_->setObjectName(QStringLiteral("txt_overdays"));
    txtOverdays_->setAlignment(Qt::AlignRight);
    txtOverdays_->setMaxLength(ScheduleStatistics::kMaxOverDaysDigits);
    txtOverdays_->setFixedWidth(
        txtOverdays_->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 16);
    acceptOnlyCharacters(txtOverdays_, &ScheduleStatistics::acceptsOverDaysKey);
    auto* overBox = new QGroupBox(QStringLiteral("按最近联系日期"), this);
    overBox->setObjectName(QStringLiteral("fra_over"));
    auto* overDays = new QHBoxLayout;
    overDays->addWidget(label("lbl_over", QStringLiteral("超过"), this));
    overDays->addWidget(txtOverdays_);
    overDays->addWidget(label("lbl_over2", QStringLiteral("天没有联系的记录："), this));
    overDays->addStretch(1);
    auto* overLinks = new QHBoxLayout;
    overLinks->setSpacing(28);
    for (int i = 0; i <= 2; ++i) overLinks->addWidget(selections_[i]);
    overLinks->addStretch(1);
    auto* overLayout = new QVBoxLayout(overBox);
    overLayout->setSpacing(12);
    overLayout->addLayout(overDays);
    overLayout->addLayout(overLinks);

    // The period: two dates, then selections 3 to 12 by what they count.
    dtDay1_ = datePicker("DT_day1", this);
    dtDay2_ = datePicker("DT_day2", this);
    auto* periodBox = new QGroupBox(QStringLiteral("按日期区间"), this);
    periodBox->setObjectName(QStringLiteral("fra_between"));
    auto* period = new QHBoxLayout;
    period->addWidget(label("lbl_between1", QStringLiteral("从"), this));
    period->addWidget(dtDay1_);
    period->addWidget(label("lbl_between2", QStringLiteral("到"), this));
    period->addWidget(dtDay2_);
    period->addWidget(label("lbl_between3", QStringLiteral("期间："), this));
    period->addStretch(1);
    auto* links = new QGridLayout;
    links->setHorizontalSpacing(28);
    links->setVerticalSpacing(12);
    // By what they count: added, with tasks, then birthdays and deadlines.
    const QList<int> rows[] = {{3, 4, 5, 6}, {7, 8, 9, 10}, {11, 12}};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < rows[r].size(); ++c)
            links->addWidget(selections_[rows[r][c]], r, c, Qt::AlignLeft);
    links->setColumnStretch(4, 1);
    auto* periodLayout = new QVBoxLayout(periodBox);
    periodLayout->setSpacing(12);
    periodLayout->addLayout(period);
    periodLayout->addLayout(links);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(lblTitle);
    layout->addWidget(lblHint);
    layout->addWidget(overBox);
    layout->addWidget(periodBox);
    layout->addStretch(1);

    // Loading: 15 days, the last 15 days up to today.
    txtOverdays_->setText(statistics_.overDays());
    dtDay1_->setDate(statistics_.day1());
    dtDay2_->setDate(statistics_.day2());
    rebuildLayout();
}

void FormSchStat::fill(const PageRequest&) {}

void FormSchStat::rebuildLayout() {
    const QStringList captions = ScheduleStatistics::captions();
    for (int i = 0; i < selections_.size() && i < captions.size(); ++i)
        selections_[i]->setText(captions[i]);
}

void FormSchStat::lblSelectionClick(int index) {
    statistics_.setOverDays(txtOverdays_->text());
    statistics_.setDay1(dtDay1_->date());
    statistics_.setDay2(dtDay2_->date());
    ScheduleStatistics::Choice choice;
    // A refusal or a failure has told the user why.
    if (!statistics_.select(index, &choice)) {
        if (index <= 2) txtOverdays_->setFocus();
        return;
    }
    if (pageSwitch_) pageSwitch_(choice.page, choice.filter, 0);
}

}  // namespace tarvel
