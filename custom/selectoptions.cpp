#include "custom/selectoptions.h"

#include "custom/optionlists.h"
#include "custom/statementlog.h"
#include "store/tarveldatabase.h"

namespace tarvel {

OptionKindTable optionKindTable(int kind) {
    static const OptionKindTable tables[] = {
        {QStringLiteral("phase"), QStringLiteral("pha_description"), QStringLiteral("pha_count")},
        {QStringLiteral("important"), QStringLiteral("imp_description"),
         QStringLiteral("imp_count")},
        {QStringLiteral("opp_type"), QStringLiteral("opp_type_description"),
         QStringLiteral("opp_type_count")},
        {QStringLiteral("relation"), QStringLiteral("rel_description"),
         QStringLiteral("rel_count")},
        {QStringLiteral("province"), QStringLiteral("pro_description"),
         QStringLiteral("pro_count")},
        {QStringLiteral("industry"), QStringLiteral("ind_description"),
         QStringLiteral("ind_count")},
        {QStringLiteral("type"), QStringLiteral("typ_description"), QStringLiteral("typ_count")},
        {QStringLiteral("task_type"), QStringLiteral("tas_typ_description"),
         QStringLiteral("tas_typ_count")},
        {QStringLiteral("title"), QStringLiteral("tit_description"), QStringLiteral("tit_count")},
    };
    if (kind < 1 || kind > 9) return {};
    return tables[kind - 1];
}

bool SelectOption::run(const QString& sql) {
    return executeLogged(errMsg_, sql);
}

bool SelectOption::Update(const QString& newText) {
    const OptionKindTable t = optionKindTable(kind_);
    if (t.table.isEmpty()) return false;
    if (!run(QStringLiteral("UPDATE ") + t.table + QStringLiteral(" SET ") + t.descriptionColumn +
             QStringLiteral("='") + tarveldatabase::SafeSql(newText) + QStringLiteral("' WHERE ") +
             t.descriptionColumn + QStringLiteral("='") + tarveldatabase::SafeSql(description_) +
             QStringLiteral("'")))
        return false;
    description_ = newText;
    return true;
}

bool SelectOption::Delete() {
    const OptionKindTable t = optionKindTable(kind_);
    if (t.table.isEmpty()) return false;
    if (!run(QStringLiteral("DELETE * FROM ") + t.table + QStringLiteral(" WHERE ") +
             t.descriptionColumn + QStringLiteral("='") + tarveldatabase::SafeSql(description_) +
             QStringLiteral("'")))
        return false;
    description_.clear();
    return true;
}

bool SelectOptions::GetAllOptions() {
    const OptionKindTable t = optionKindTable(kind_);
    if (t.table.isEmpty()) return false;
    const QString sql = QStringLiteral("SELECT * FROM ") + t.table;
    RecordsetPtr rs = readLogged(errMsg_, sql);
    if (!rs) return false;
    for (; !rs->Eof(); rs->MoveNext()) {
        SelectOption entry;
        entry.setDescription(rs->value(t.descriptionColumn).toString());
        entry.setCount(rs->value(t.countColumn).toInt());
        entry.setKind(kind_);
        Add(entry);
    }
    return true;
}

void SelectOptions::fill(const QVariantList& values) {
    // Sized one past the last value, as the arrays were always dimensioned.
    arrDesc_ = QVector<QVariant>(values.size() + 1);
    for (int i = 0; i < values.size(); ++i) arrDesc_[i] = values[i];
}

bool SelectOptions::copyKind(qint16 kind) {
    SelectOptions fresh;
    fresh.setKind(kind);
    fresh.GetAllOptions();
    // The statements the fresh collection issued belong to this object's log.
    if (!fresh.ErrMsg().isEmpty()) appendErrMsg(errMsg_, fresh.ErrMsg());
    QVariantList values;
    for (const SelectOption& o : fresh) values << o.Description();
    fill(values);
    return true;
}

bool SelectOptions::GetAllProbability() {
    QVariantList values;
    for (int p = 0; p <= 100; p += 10) values << p;
    fill(values);
    return true;
}

bool SelectOptions::GetAllTaskCycle() {
    QVariantList values;
    for (const QString& c : cycleTypeItems()) values << c;
    fill(values);
    return true;
}

bool SelectOptions::GetAllTaskHour() {
    QVariantList values;
    for (const QString& t : timeFormatItems()) values << t;
    fill(values);
    return true;
}

}  // namespace tarvel
