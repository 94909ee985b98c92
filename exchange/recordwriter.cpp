#include "exchange/recordwriter.h"

#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

QString prefixOf(const QString& table) {
    return table.left(3) + QLatin1Char('_');
}

}  // namespace

RecordWriter::RecordWriter(const QString& table)
    : table_(table), key_(prefixOf(table) + QStringLiteral("id")) {
    tarveldatabase db;
    rs_ = db.GetWriteRs(QStringLiteral("SELECT * FROM %1 WHERE %2=0").arg(table_, key_));
    if (!isOpen()) errMsg_ = db.ErrMsg();
}

bool RecordWriter::isOpen() const {
    return rs_ && rs_->State() == adStateOpen;
}

QStringList RecordWriter::columns() const {
    QStringList names;
    if (!isOpen()) return names;
    const QString check = prefixOf(table_) + QStringLiteral("check");
    for (int i = 0; i < rs_->FieldCount(); ++i) {
        const QString name = rs_->fieldName(i);
        if (name.compare(key_, Qt::CaseInsensitive) && name.compare(check, Qt::CaseInsensitive))
            names << name;
    }
    return names;
}

qint64 RecordWriter::add(const QHash<QString, QVariant>& values, QString* error) {
    if (!isOpen()) return (*error = errMsg_, 0);
    const QString prefix = prefixOf(table_);
    const QVariant now = Clock::now();
    QHash<QString, QVariant> row = values;
    row.insert(prefix + QStringLiteral("create_date"), now);
    row.insert(prefix == QStringLiteral("doc_") ? QStringLiteral("doc_recentedit_date")
                                                : prefix + QStringLiteral("recent_contact_date"),
               now);
    if (table_ == QStringLiteral("contacts") &&
        row.value(QStringLiteral("con_birthday")).toString().trimmed().isEmpty())
        row.insert(QStringLiteral("con_birthday"), jetdate::naive(QDate(1900, 1, 1)));
    rs_->AddNew();
    for (auto it = row.cbegin(); it != row.cend(); ++it) {
        const int index = rs_->fieldIndex(it.key());
        if (index >= 0 && !rs_->setValue(index, it.value())) {
            *error = rs_->ErrorDescription();
            rs_->CancelUpdate();
            return 0;
        }
    }
    if (!rs_->Update()) {
        *error = rs_->ErrorDescription();
        rs_->CancelUpdate();
        return 0;
    }
    return rs_->value(key_).toLongLong();
}

AccountLinker::AccountLinker() : accounts_(QStringLiteral("accounts")) {
    tarveldatabase db;
    // Link rows go through one write recordset: bound values, one prepared insert.
    links_ = db.GetWriteRs(
        QStringLiteral("SELECT acc_id, con_id FROM accounts_contacts WHERE con_id=0"));
    const auto rs = db.GetReadRs(QStringLiteral("SELECT acc_id, acc_name FROM accounts"));
    for (bool more = rs && !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof())
        byName_.insert(rs->value(1).toString().toLower(), rs->value(0).toLongLong());
}

bool AccountLinker::link(qint64 contactId, const QString& accountName, QString* error,
                         qint64* idOut, bool* addedOut,
                         const QHash<QString, QVariant>& newAccount) {
    const QString name = accountName.trimmed();
    if (addedOut) *addedOut = false;
    if (name.isEmpty()) return true;
    qint64 accountId = byName_.value(name.toLower());
    if (!accountId) {
        QHash<QString, QVariant> columns = newAccount;
        columns.insert(QStringLiteral("acc_name"), name);
        accountId = accounts_.add(columns, error);
        if (!accountId) return false;
        byName_.insert(name.toLower(), accountId);
        ++added_;
        if (addedOut) *addedOut = true;
    }
    if (idOut) *idOut = accountId;
    if (links_ && links_->State() == adStateOpen && links_->AddNew() &&
        links_->setValue(0, accountId) && links_->setValue(1, contactId) && links_->Update())
        return true;
    *error = links_ ? links_->ErrorDescription() : QStringLiteral("无法打开单位与联系人的关联表");
    if (links_) links_->CancelUpdate();
    return false;
}

}  // namespace tarvel::exchange
