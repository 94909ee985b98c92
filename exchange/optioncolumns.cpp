#include "exchange/optioncolumns.h"

#include "exchange/tables.h"

namespace tarvel::exchange {

const std::vector<OptionColumn>& optionColumns() {
    auto c = [](const char* object, const char* name, const char* table, const char* column,
                const char* caption, bool several = false) {
        return OptionColumn{QLatin1String(object),
                            QLatin1String(name),
                            QLatin1String(table),
                            QLatin1String(column),
                            several,
                            QString::fromUtf8(caption)};
    };
    static const std::vector<OptionColumn> columns = {
        c("con", "tag", "contacts", "con_tag", "标签", true),
        c("con", "title", "contacts", "con_title", "称呼"),
        c("con", "importance", "contacts", "con_important", "重要性"),
        c("con", "region", "contacts", "con_province", "地区"),
        c("con", "relationship", "contacts", "con_relation", "关系"),
        c("acc", "tag", "accounts", "acc_tag", "标签", true),
        c("acc", "type", "accounts", "acc_type", "类型"),
        c("acc", "industry", "accounts", "acc_industry", "行业"),
        c("acc", "region", "accounts", "acc_province", "地区"),
        c("acc", "importance", "accounts", "acc_important", "重要性"),
        c("acc", "relationship", "accounts", "acc_relation", "关系"),
        c("opp", "tag", "opportunities", "opp_tag", "标签", true),
        c("opp", "phase", "opportunities", "opp_phase", "阶段"),
        c("opp", "type", "opportunities", "opp_type", "类型"),
        c("opp", "importance", "opportunities", "opp_important", "重要性"),
        c("opp", "Probability", "opportunities", "opp_succeed_probability", "成功概率"),
        c("opp", "industry", "opportunities", "opp_industry", "行业"),
        c("opp", "region", "opportunities", "opp_province", "地区"),
        // The schedule's tag is a combo box: one text.
        c("sch", "tag", "tasks", "tas_tag", "标签"),
        c("sch", "type", "tasks", "tas_type", "类型"),
        c("sch", "importance", "tasks", "tas_important", "重要性"),
        c("doc", "tag", "documents", "doc_tag", "标签"),
    };
    return columns;
}

QString kindCaptionOfPrefix(const QString& prefix) {
    // Option lists name kinds by their control word ("sch") or column prefix.
    for (const RecordKindInfo& k : recordKinds())
        if (prefix == QLatin1String(k.word) || prefix == QLatin1String(k.prefix))
            return k.captionText();
    return prefix;
}

}  // namespace tarvel::exchange
