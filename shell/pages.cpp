#include "shell/pages.h"

#include <QFrame>
#include <QLocale>
#include <QVBoxLayout>

#include "store/clock.h"

namespace tarvel {

namespace {
const PageInfo kPages[] = {
    {page::Home, "form_pp", "pp", false},
    {page::OpportunityList, "form_opp_all", "opportunity", false},
    {page::OpportunityDetail, "form_opp_detail", "opportunity", true},
    {page::AccountList, "form_acc_all", "account", false},
    {page::AccountDetail, "form_acc_detail", "account", true},
    {page::ContactList, "form_con_all", "contact", false},
    {page::ContactDetail, "form_con_detail", "contact", true},
    {page::Schedule, "form_sch_all", "schedule", false},
    {page::Task, "form_sch_detail", "schedule", true},
    {page::DocumentList, "form_doc_all", "document", false},
    {page::DocumentDetail, "form_doc_detail", "document", true},
    {page::DataExchange, "form_inout", "inout", false},
    {page::Email, "form_email", "email", false},
    {page::Settings, "form_app_setting", "setting", false},
};

QString longDate(const QDate& date) {
    return QLocale(QLocale::Chinese, QLocale::China)
        .toString(date, QStringLiteral("yyyy年M月d日 dddd"));
}
}  // namespace

const PageInfo* pageInfo(qint16 code) {
    for (const PageInfo& info : kPages)
        if (info.code == code) return &info;
    return nullptr;
}

qint16 pageForKey(const QString& key) {
    for (const PageInfo& info : kPages)
        if (!info.detail && key == QLatin1String(info.moduleKey)) return info.code;
    return 0;
}

ModulePage::ModulePage(const QString& formName, const QString& caption, QWidget* parent)
    : PageWidget(parent) {
    setObjectName(formName);
    caption_ = new QLabel(this);
    caption_->setObjectName(QStringLiteral("lbl_caption"));
    QFont big = caption_->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    caption_->setFont(big);
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
    layout->addStretch(1);
    setCaption(caption);
}

void ModulePage::setCaption(const QString& caption) {
    caption_->setText(caption);
    setWindowTitle(caption);
}

void ModulePage::fill(const PageRequest& request) {
    request_ = request;
    condition_->setText(request.condition.isEmpty() ? QStringLiteral("条件：（无，显示全部记录）")
                                                    : QStringLiteral("条件：") + request.condition);
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
