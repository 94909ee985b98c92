#include "shell/pages.h"

namespace tarvel {

namespace {
const char* const kDetail = " - 详细信息";

// The pages of the record kinds come from the kind table; the schedule's and
// the other modules' pages are the shell's own.
QList<PageInfo> allPages() {
    QList<PageInfo> pages{{page::Home, "form_pp", "pp", nullptr}};
    for (const RecordKindInfo& k : recordKinds()) {
        if (k.code == kind::Task) continue;
        pages << PageInfo{k.listPage, k.listForm, k.moduleKey, nullptr}
              << PageInfo{k.detailPage, k.detailForm, k.moduleKey, kDetail};
    }
    const char* schedule = kindByCode(kind::Task)->moduleKey;
    pages << PageInfo{page::Schedule, "form_sch_all", schedule, nullptr}
          << PageInfo{page::Task, "form_sch_list", schedule, " - 任务列表"}
          << PageInfo{page::ScheduleStatistics, "form_sch_stat", schedule, " - 统计"}
          << PageInfo{page::TaskDetail, kindByCode(kind::Task)->detailForm, schedule, " - 日程"}
          << PageInfo{page::DataExchange, "form_inout", "inout", nullptr}
          << PageInfo{page::Email, "form_email", "email", nullptr}
          << PageInfo{page::Settings, "form_app_setting", "setting", nullptr};
    return pages;
}

const QList<PageInfo>& kPages() {
    static const QList<PageInfo> pages = allPages();
    return pages;
}
}  // namespace

const PageInfo* pageInfo(qint16 code) {
    for (const PageInfo& info : kPages())
        if (info.code == code) return &info;
    return nullptr;
}

qint16 pageForKey(const QString& key) {
    for (const PageInfo& info : kPages())
        if (!info.captionSuffix && key == QLatin1String(info.moduleKey)) return info.code;
    return 0;
}

}  // namespace tarvel
