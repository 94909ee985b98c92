#include "records/recordsearch.h"

#include "records/recordbase.h"
#include "store/likecontains.h"
#include "store/readrows.h"

namespace tarvel {

namespace recordsearch {

QString contactsByName(const QString& text) {
    const QString t = likeContains(text);
    return QStringLiteral(
               "SELECT con_id,con_lastname,acc_name FROM que_contacts_accounts "
               "WHERE con_lastname LIKE ") +
           t + QStringLiteral(" OR acc_name LIKE ") + t;
}

QString accountsByName(const QString& text) {
    return QStringLiteral("SELECT acc_id,acc_name FROM accounts WHERE acc_name LIKE ") +
           likeContains(text);
}

QString opportunitiesBySubject(const QString& text) {
    return QStringLiteral("SELECT opp_id,opp_subject FROM opportunities WHERE opp_subject LIKE ") +
           likeContains(text);
}

QString panelContacts(const QString& text, int exceptId) {
    const QString t = likeContains(text);
    return QStringLiteral(
               "SELECT con_id,con_lastname,acc_name  FROM que_contacts_accounts  "
               "WHERE (con_lastname LIKE ") +
           t + QStringLiteral(" OR acc_name LIKE ") + t + QStringLiteral(" )  AND con_id <> ") +
           QString::number(exceptId);
}

QString addable(qint16 relationKind, const QString& text) {
    const QString t = likeContains(text);
    switch (relationKind) {
        case kind::Contact:
            return QStringLiteral(
                       "SELECT con_id, con_lastname, acc_name  FROM que_contacts_accounts  "
                       "WHERE con_lastname LIKE ") +
                   t + QStringLiteral(" OR acc_name LIKE ") + t + QLatin1Char(' ');
        case kind::Account:
            return QStringLiteral("SELECT acc_id, acc_name FROM accounts  WHERE acc_name LIKE ") +
                   t;
        case kind::Opportunity:
            return QStringLiteral(
                       "SELECT opp_id, opp_subject FROM opportunities  WHERE opp_subject LIKE ") +
                   t;
        // Documents and tasks are found the same way, by their name.
        case kind::Document:
            return QStringLiteral("SELECT doc_id, doc_name FROM documents  WHERE doc_name LIKE ") +
                   t;
        case kind::Task:
            return QStringLiteral(
                       "SELECT tas_id, tas_subject FROM tasks  WHERE tas_subject LIKE ") +
                   t;
        default:
            return QString();
    }
}

}  // namespace recordsearch

bool RecordSearch::run(const QString& sql, int limit) {
    found_.clear();
    more_ = false;
    if (sql.isEmpty()) return true;
    RecordsetPtr rs = readRows(sql, errMsg_, "RecordSearch");
    if (!rs) return false;
    const bool withAccount = rs->FieldCount() > 2;
    for (; !rs->Eof(); rs->MoveNext()) {
        if (found_.size() >= limit) {
            more_ = true;
            break;
        }
        FoundRecord r{recordvalue::int32(rs->value(0)), recordvalue::text(rs->value(1)),
                      withAccount ? recordvalue::text(rs->value(2)) : QString()};
        found_ << r;
    }
    return true;
}

}  // namespace tarvel
