#include "shell/pages.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

#include "store/clock.h"
#include "views/common/conditiontext.h"

namespace tarvel {

namespace {
const char* const kDetail = " - 详细信息";
const PageInfo kPages[] = {
    {page::Home, "form_pp", "pp", nullptr},
    {page::OpportunityList, "form_opp_all", "opportunity", nullptr},
    {page::OpportunityDetail, "form_opp_detail", "opportunity", kDetail},
    {page::AccountList, "form_acc_all", "account", nullptr},
    {page::AccountDetail, "form_acc_detail", "account", kDetail},
    {page::ContactList, "form_con_all", "contact", nullptr},
    {page::ContactDetail, "form_con_detail", "contact", kDetail},
    {page::Schedule, "form_sch_all", "schedule", nullptr},
    {page::Task, "form_sch_list", "schedule", " - 任务列表"},
    {page::ScheduleStatistics, "form_sch_stat", "schedule", " - 统计"},
    {page::TaskDetail, "form_sch_detail", "schedule", " - 日程"},
    {page::DocumentList, "form_doc_all", "document", nullptr},
    {page::DocumentDetail, "form_doc_detail", "document", kDetail},
    {page::DataExchange, "form_inout", "inout", nullptr},
    {page::Email, "form_email", "email", nullptr},
    {page::Settings, "form_app_setting", "setting", nullptr},
};
}  // namespace

const PageInfo* pageInfo(qint16 code) {
    for (const PageInfo& info : kPages)
        if (info.code == code) return &info;
    return nullptr;
}

qint16 pageForKey(const QString& key) {
    for (const PageInfo& info : kPages)
        if (!info.captionSuffix && key == QLatin1String(info.moduleKey)) return info.code;
    return 0;
}

ModulePage::ModulePage(const QString& formName, const QString& caption, QWidget* parent)
    : PageWidget(parent) {
    setObjectName(formName);
    caption_ = new QLabel(this);
    caption_->setObjectName(QStringLiteral("lbl_caption"));
    setHeadingFont(caption_, 1.6);
    condition_ = new QLabel(this);
    condition_->setObjectName(QStringLiteral("lbl_condition"));
    condition_->setWordWrap(true);
    condition_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    details_ = new QLabel(this);
    details_->setObjectName(QStringLiteral("lbl_details"));
    details_->setWordWrap(true);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(10);
    layout->addWidget(caption_);
    layout->addWidget(line);
    layout->addWidget(condition_);
    layout->addWidget(details_);
    links_ = new QVBoxLayout;
    links_->setSpacing(8);
    layout->addLayout(links_);
    layout->addStretch(1);
    setCaption(caption);
}

void ModulePage::addLink(const QString& name, const QString& text, std::function<void()> action) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, std::move(action));
    auto* row = new QHBoxLayout;
    row->addWidget(button);
    row->addStretch(1);
    links_->addLayout(row);
}

void ModulePage::setCaption(const QString& caption) {
    caption_->setText(caption);
    setWindowTitle(caption);
}

void ModulePage::fill(const PageRequest& request) {
    request_ = request;
    // Only the record modules' pages list records by a condition.
    const bool listsRecords = request.page != page::Email && request.page != page::DataExchange &&
                              request.page != page::Settings && request.page != page::Home;
    condition_->setVisible(listsRecords);
    condition_->setText(QStringLiteral("显示：") + describeCondition(request.condition));
    refresh();
}

void ModulePage::refresh() {
    QStringList lines;
    if (request_.recordId != 0) lines << QStringLiteral("记录编号：%1").arg(request_.recordId);
    if (request_.page == page::Home || request_.page == page::Schedule)
        lines << QStringLiteral("日期：") +
                     longDate(request_.page == page::Home ? Clock::today() : request_.date);
    if (request_.pageNo >= 0) lines << QStringLiteral("页码：%1").arg(request_.pageNo);
    details_->setText(lines.join(QLatin1Char('\n')));
}

}  // namespace tarvel
