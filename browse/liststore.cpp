#include "browse/liststore.h"

#include "browse/listsql.h"
#include "custom/fsettings.h"
#include "exchange/recyclebin.h"
#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "schedule/task.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::lists {

namespace {

template <typename Record>
bool deleteOne(qint64 id, QString* error) {
    Record record;
    record.setID(int(id));
    if (record.Delete() && record.DeleteRelation()) return true;
    *error = record.ErrMsg();
    return false;
}

bool deleteRecord(int number, qint64 id, QString* error) {
    switch (number) {
        case listno::Opportunities:
            return deleteOne<Opportunity>(id, error);
        case listno::Accounts:
            return deleteOne<Account>(id, error);
        case listno::Contacts:
            return deleteOne<Contact>(id, error);
        case listno::Tasks:
            return deleteOne<Task>(id, error);
        default:
            return deleteOne<document>(id, error);
    }
}

double number(const RecordsetPtr& rs, const char* column) {
    return rs && !rs->Eof() ? rs->value(QLatin1String(column)).toDouble() : 0;
}

}  // namespace

void ListStore::addError(const QString& text) {
    if (text.isEmpty()) return;
    errMsg_ += (errMsg_.isEmpty() ? QString() : QStringLiteral(" ; ")) + text;
}

bool ListStore::execute(const QString& sql) {
    tarveldatabase db;
    db.Execute(sql);
    addError(db.ErrMsg());
    return db.ErrMsg().isEmpty();
}

RecordsetPtr ListStore::read(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    addError(db.ErrMsg());
    if (!rs || rs->State() != adStateOpen) {
        if (db.ErrMsg().isEmpty()) addError(QStringLiteral("无法读取：") + sql);
        return nullptr;
    }
    return rs;
}

QString ListStore::columns() const {
    const FSettings* fields = programFieldSettings(kind_.fieldType);
    // Fields not loaded yet still give the tick column.
    QString select = fields && !fields->SelectFields().trimmed().isEmpty()
                         ? fields->SelectFields()
                         : checkColumn(kind_.fieldType);
    QStringList names;
    for (const QString& c : select.split(QLatin1Char(',')))
        if (!c.trimmed().isEmpty()) names << c.trimmed();
    if (names.contains(kind_.key)) return select;
    return QLatin1Char(' ') + (names << kind_.key).join(QStringLiteral(", ")) + QLatin1Char(' ');
}

RecordsetPtr ListStore::open(const QString& condition) {
    return read(listQuery(kind_, columns(), condition));
}

RecordsetPtr ListStore::searchColumns() {
    return read(QStringLiteral("SELECT ") + kind_.key + QStringLiteral(", ") +
                kind_.searchColumns.join(QStringLiteral(", ")) + QStringLiteral(" FROM ") +
                kind_.source);
}

bool ListStore::setTick(qint64 id, bool ticked) {
    return execute(tickSql(kind_, id, ticked));
}

bool ListStore::setChecks(int mode, const QString& condition) {
    return execute(setChecksSql(kind_.number, mode, condition, true));
}

bool ListStore::clearChecks() {
    return execute(clearChecksSql(kind_.number));
}

RecordsetPtr ListStore::ticked() {
    return read(tickedQuery(kind_, columns()) + kind_.defaultOrder);
}

QList<qint64> ListStore::tickedIds() {
    QList<qint64> ids;
    RecordsetPtr rs = read(tickedQuery(kind_, kind_.key));
    for (; rs && !rs->Eof(); rs->MoveNext()) ids << rs->value(0).toLongLong();
    return ids;
}

bool ListStore::anyTicked() {
    RecordsetPtr rs = read(tickedQuery(kind_, QStringLiteral("COUNT(*)")));
    return rs && !rs->Eof() && rs->value(0).toLongLong() > 0;
}

bool ListStore::deleteRecords(const QList<qint64>& ids) {
    // One delete is all or nothing, and its records go to the recycle bin as
    // one group.
    Transaction transaction;
    if (!transaction.isActive()) {
        addError(transaction.error());
        return false;
    }
    QString error;
    const qint64 batch = exchange::recyclebin::newBatch(&error);
    if (batch == 0) {
        addError(error);
        return false;
    }
    const RecordKindInfo* kind = kindByListNumber(kind_.number);
    for (qint64 id : ids) {
        if (!exchange::recyclebin::keep(kind->code, id, batch, &error) ||
            !deleteRecord(kind_.number, id, &error)) {
            addError(error);
            return false;
        }
    }
    if (!transaction.commit()) {
        addError(transaction.error());
        return false;
    }
    return true;
}

bool ListStore::contactSums(qint64 contactId, ContactSums* sums) {
    const QString id = QString::number(contactId);
    RecordsetPtr outlay =
        read(QStringLiteral("SELECT Sum(tasks.tas_outlay) AS Sum_Outlay   ") +
             QStringLiteral(
                 " FROM contacts_tasks LEFT JOIN tasks ON contacts_tasks.tas_id = tasks.tas_id ") +
             QStringLiteral(" WHERE contacts_tasks.con_id= ") + id);
    RecordsetPtr sales = read(
        QStringLiteral(
            "SELECT Sum(opportunities.opp_estimate_sale*opportunities.opp_sale) AS sales1, ") +
        QStringLiteral(" Sum(opportunities.opp_succeed_probability*opportunities.opp_estimate_sale*"
                       "opportunities.opp_sale / 100) AS sales2 ") +
        QStringLiteral(" FROM opportunities_contacts LEFT JOIN opportunities ON "
                       "opportunities_contacts.opp_id = opportunities.opp_id ") +
        QStringLiteral(" WHERE opportunities_contacts.con_id = ") + id);
    if (!outlay || !sales) return false;
    sums->outlay = number(outlay, "Sum_Outlay");
    sums->sales = number(sales, "sales1");
    sums->weighted = number(sales, "sales2");
    return true;
}

}  // namespace tarvel::lists
