#include "browse/listkind.h"

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/kinds.h"
#include "records/opportunity.h"

namespace tarvel::lists {

namespace {

using Match = CategoryGroup::Match;

// Runs one CalcBy operation of a fresh record object and reads its arrays.
// The arrays are one longer than the rows read; the unfilled tail is skipped.
template <typename Record>
CountCategories calc(bool (Record::*operation)()) {
    return [operation](CategoryCounts* out, QString* error) {
        Record record;
        const bool ok = (record.*operation)();
        if (!ok) {
            *error = record.ErrMsg();
            return false;
        }
        const QVariantList labels = record.arrDesc();
        const QVariantList counts = record.arrValue();
        for (int i = 0; i < labels.size() && i < counts.size(); ++i) {
            if (counts[i].isNull()) continue;
            out->labels << labels[i].toString();
            out->counts << counts[i].toInt();
        }
        return true;
    };
}

CategoryGroup group(const char* key, const char* caption, Match match, const char* column = "",
                    CountCategories count = nullptr) {
    return {QLatin1String(key), QString::fromUtf8(caption), match, QLatin1String(column),
            std::move(count)};
}

QList<CategoryGroup> leading();

CategoryGroup kindGroup(const char* key, qint16 code, Match match, const char* column,
                        CountCategories count) {
    return {QLatin1String(key), kindByCode(code)->captionText(), match, QLatin1String(column),
            std::move(count)};
}

// The facts every list takes from the kind table; search columns and groups
// are the list's own.
ListKind base(qint16 code, UnsavedModule module) {
    const RecordKindInfo& k = *kindByCode(code);
    return {k.listNumber,
            k.code,
            k.listPage,
            // A task opens on the task list's own page, which edits it.
            k.code == kind::Task ? k.listPage : k.detailPage,
            QLatin1String(k.listForm),
            QLatin1String(k.prefix),
            QLatin1String(k.table),
            QLatin1String(k.listSource),
            QLatin1String(k.key),
            QLatin1String(k.tick),
            QStringLiteral(" ORDER BY %1 DESC").arg(QLatin1String(k.recentColumn)),
            QString::fromUtf8(k.noun),
            {},
            leading(),
            module};
}

QList<CategoryGroup> leading() {
    return {group("all", "全部记录", Match::All), group("search", "搜索", Match::Search)};
}

ListKind contacts() {
    ListKind k = base(kind::Contact, UnsavedModule::Contact);
    for (const char* c :
         {"con_lastname",         "acc_name",      "con_description", "con_nickname",
          "con_department_title", "con_telephone", "con_telephone3",  "con_telephone2",
          "con_mobile",           "con_mobile3",   "con_mobile2",     "con_fax",
          "con_website",          "acc_website",   "con_email",       "con_email3",
          "con_email2",           "acc_postcode",  "acc_address",     "con_postcode_family",
          "con_address_family",   "con_im",        "con_im2",         "con_im3"})
        k.searchColumns << QLatin1String(c);
    k.groups
        << group("birthday", "今天过生日", Match::Birthday)
        << kindGroup("opportunity", kind::Opportunity, Match::Participation, "",
                     calc(&Contact::CalcByOpportunity))
        << group("province", "地区", Match::Equal, "con_province", calc(&Contact::CalcByProvince))
        << group("important", "重要性", Match::Equal, "con_important",
                 calc(&Contact::CalcByImportant))
        << group("relation", "关系", Match::Equal, "con_relation", calc(&Contact::CalcByRelation))
        << group("industry", "行业", Match::Equal, "acc_industry", calc(&Contact::CalcByIndustry))
        << kindGroup("account", kind::Account, Match::AccountName, "acc_name",
                     calc(&Contact::CalcByAccount))
        << group("acctype", "客户类型", Match::Equal, "acc_type", calc(&Contact::CalcByAccType))
        << group("tag", "标签", Match::Substring, "con_tag", calc(&Contact::CalcByTag));
    return k;
}

ListKind accounts() {
    ListKind k = base(kind::Account, UnsavedModule::Account);
    k.searchColumns = {QStringLiteral("acc_name"),      QStringLiteral("acc_description"),
                       QStringLiteral("acc_address"),   QStringLiteral("acc_postcode"),
                       QStringLiteral("acc_telephone"), QStringLiteral("acc_fax"),
                       QStringLiteral("acc_website")};
    k.groups
        << kindGroup("opportunity", kind::Opportunity, Match::Participation, "",
                     calc(&Account::CalcByOpportunity))
        << group("province", "地区", Match::Equal, "acc_province", calc(&Account::CalcByProvince))
        << group("important", "重要性", Match::Equal, "acc_important",
                 calc(&Account::CalcByImportant))
        << group("relation", "关系", Match::Equal, "acc_relation", calc(&Account::CalcByRelation))
        << group("industry", "行业", Match::Equal, "acc_industry", calc(&Account::CalcByIndustry))
        << group("acctype", "客户类型", Match::Equal, "acc_type", calc(&Account::CalcByAccType))
        << group("tag", "标签", Match::Substring, "acc_tag", calc(&Account::CalcByTag));
    return k;
}

ListKind opportunities() {
    ListKind k = base(kind::Opportunity, UnsavedModule::Opportunity);
    k.searchColumns = {QStringLiteral("opp_subject"), QStringLiteral("opp_description")};
    k.groups << group("phase", "销售阶段", Match::Equal, "opp_phase",
                      calc(&Opportunity::CalcByPhase))
             << group("probability", "成功概率", Match::Number, "opp_succeed_probability",
                      calc(&Opportunity::CalcByProbability))
             << group("province", "地区", Match::Equal, "opp_province",
                      calc(&Opportunity::CalcByProvince))
             << group("important", "重要性", Match::Equal, "opp_important",
                      calc(&Opportunity::CalcByImportant))
             << group("industry", "行业", Match::Equal, "opp_industry",
                      calc(&Opportunity::CalcByIndustry))
             << group("opptype", "项目类型", Match::Equal, "opp_type",
                      calc(&Opportunity::CalcByOppType))
             << group("tag", "标签", Match::Substring, "opp_tag", calc(&Opportunity::CalcByOppTag));
    return k;
}

ListKind tasks() {
    ListKind k = base(kind::Task, UnsavedModule::Task);
    k.searchColumns = {QStringLiteral("tas_subject"), QStringLiteral("tas_description")};
    return k;
}

ListKind documents() {
    ListKind k = base(kind::Document, UnsavedModule::Document);
    k.searchColumns = {QStringLiteral("doc_name"), QStringLiteral("doc_description")};
    // Documents are counted by their whole tag text, so they are matched whole.
    k.groups << group("tag", "标签", Match::Equal, "doc_tag", calc(&document::CalcByTag));
    return k;
}

const QList<ListKind>& allKinds() {
    static const QList<ListKind> kinds = {opportunities(), accounts(), contacts(), tasks(),
                                          documents()};
    return kinds;
}

}  // namespace

const ListKind& listKind(int number) {
    const QList<ListKind>& kinds = allKinds();
    return number >= 0 && number < kinds.size() ? kinds[number] : kinds[listno::Contacts];
}

const ListKind* listKindForPage(qint16 page) {
    for (const ListKind& kind : allKinds())
        if (kind.page == page) return &kind;
    return nullptr;
}

const ListKind* listKindForRecord(qint16 recordKind) {
    for (const ListKind& kind : allKinds())
        if (kind.fieldType == recordKind) return &kind;
    return nullptr;
}

}  // namespace tarvel::lists
