#include "schedule/tasklinks.h"

#include "records/recordbase.h"
#include "schedule/task.h"
#include "store/likecontains.h"
#include "store/tarveldatabase.h"

namespace tarvel {

namespace {

struct KindQuery {
    qint16 kind;
    const char* select;      // key, then the caption's columns
    const char* nameColumn;  // what a search looks in
    const char* linkTable;
    const char* key;
};

const KindQuery kQueries[] = {
    {kind::Opportunity, "SELECT opp_id, opp_subject FROM opportunities", "opp_subject",
     "opportunities_tasks", "opp_id"},
    {kind::Account, "SELECT acc_id, acc_name FROM accounts", "acc_name", "accounts_tasks",
     "acc_id"},
    {kind::Contact, "SELECT con_id, con_lastname, acc_name FROM que_contacts_accounts",
     "con_lastname", "contacts_tasks", "con_id"},
    {kind::Document, "SELECT doc_id, doc_name FROM documents", "doc_name", "tasks_documents",
     "doc_id"},
};

const KindQuery* queryOf(qint16 recordKind) {
    for (const KindQuery& q : kQueries)
        if (q.kind == recordKind) return &q;
    return nullptr;
}

}  // namespace

std::optional<QList<LinkedRecord>> TaskLinks::read(qint16 recordKind, const QString& where) {
    const KindQuery* q = queryOf(recordKind);
    if (!q) {
        errMsg_ = QStringLiteral("未知的记录类型");
        return std::nullopt;
    }
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QLatin1String(q->select) + where + QStringLiteral(" ORDER BY ") +
                                   QLatin1String(q->nameColumn));
    if (!rs || !db.ErrMsg().isEmpty()) {
        errMsg_ = QStringLiteral("读取相关记录出错，原因可能是") + db.ErrMsg();
        return std::nullopt;
    }
    QList<LinkedRecord> records;
    for (; !rs->Eof(); rs->MoveNext()) {
        LinkedRecord r{recordvalue::int32(rs->value(0)), recordvalue::text(rs->value(1)).trimmed()};
        // A contact is told apart by its account, as the other panels show it.
        if (recordKind == kind::Contact) {
            const QString account = recordvalue::text(rs->value(2)).trimmed();
            if (!account.isEmpty()) r.caption += QStringLiteral(" - ") + account;
        }
        records << r;
    }
    return records;
}

std::optional<QList<LinkedRecord>> TaskLinks::linked(qint16 recordKind, int taskId) {
    const KindQuery* q = queryOf(recordKind);
    if (!q) return read(recordKind, QString());
    return read(recordKind,
                QStringLiteral(" WHERE ") + QLatin1String(q->key) + QStringLiteral(" IN (SELECT ") +
                    QLatin1String(q->key) + QStringLiteral(" FROM ") + QLatin1String(q->linkTable) +
                    QStringLiteral(" WHERE tas_id=") + QString::number(taskId) + QLatin1Char(')'));
}

std::optional<QList<LinkedRecord>> TaskLinks::search(qint16 recordKind, const QString& text) {
    const KindQuery* q = queryOf(recordKind);
    if (!q || text.trimmed().isEmpty()) return read(recordKind, QString());
    return read(recordKind, QStringLiteral(" WHERE ") + QLatin1String(q->nameColumn) +
                                QStringLiteral(" LIKE ") + likeContains(text.trimmed()));
}

int TaskLinks::accountOfContact(int contactId) {
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT MIN(acc_id) FROM accounts_contacts WHERE con_id=") +
                     QString::number(contactId));
    if (!rs || rs->Eof()) return 0;
    return recordvalue::int32(rs->value(0));
}

bool TaskLinks::copyLinks(int fromId, Task& next) {
    for (qint16 k : {kind::Opportunity, kind::Account, kind::Contact, kind::Document}) {
        const auto records = linked(k, fromId);
        if (!records) return false;
        for (const LinkedRecord& r : *records)
            if (!next.AddRelative(k, r.id)) {
                errMsg_ = next.ErrMsg();
                return false;
            }
    }
    return true;
}

}  // namespace tarvel
