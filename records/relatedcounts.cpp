#include "records/relatedcounts.h"

#include <utility>

#include "records/recordbase.h"
#include "store/readrows.h"

namespace tarvel {

namespace {

// The link table of each pair of kinds (one row per linked pair).
struct LinkTable {
    qint16 a, b;
    const char* table;
};
constexpr LinkTable kTables[] = {
    {kind::Contact, kind::Opportunity, "opportunities_contacts"},
    {kind::Contact, kind::Account, "accounts_contacts"},
    {kind::Contact, kind::Task, "contacts_tasks"},
    {kind::Contact, kind::Document, "contacts_documents"},
    {kind::Account, kind::Opportunity, "opportunities_accounts"},
    {kind::Account, kind::Task, "accounts_tasks"},
    {kind::Account, kind::Document, "accounts_documents"},
    {kind::Opportunity, kind::Task, "opportunities_tasks"},
    {kind::Opportunity, kind::Document, "opportunities_documents"},
    {kind::Task, kind::Document, "tasks_documents"},
};

}  // namespace

QString RelatedCounts::statement(qint16 ownerKind, qint16 relatedKind, int id) {
    const QString n = QString::number(id);
    if (ownerKind == kind::Contact && relatedKind == kind::Contact)
        return QStringLiteral("SELECT * FROM contacts_contacts WHERE con_id1= ") + n +
               QStringLiteral(" OR con_id2 = ") + n;
    for (const LinkTable& t : kTables)
        if ((t.a == ownerKind && t.b == relatedKind) || (t.b == ownerKind && t.a == relatedKind))
            return QStringLiteral("SELECT * FROM ") + QLatin1String(t.table) +
                   QStringLiteral(" WHERE ") + QLatin1String(keyColumn(ownerKind)) +
                   QStringLiteral("= ") + n;
    return QString();
}

bool RelatedCounts::read(qint16 ownerKind, int id) {
    counts_.clear();
    for (qint16 k = kind::Opportunity; k <= kind::Document; ++k) {
        const QString sql = statement(ownerKind, k, id);
        if (sql.isEmpty()) continue;
        const RecordsetPtr rs = readRows(sql, errMsg_, "RelatedCounts");
        if (!rs) return false;
        counts_.insert(k, rs->RecordCount());
    }
    return true;
}

}  // namespace tarvel
