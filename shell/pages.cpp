#include "shell/pages.h"

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

}  // namespace tarvel
