#include "browse/relatedrecords.h"

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "schedule/task.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::relatedrecords {

namespace {

// A fresh record object of `k` with the panel's form and grid, handed to `f`.
template <typename F>
bool withRecord(qint16 k, Form* form, DataControl* grid, F&& f) {
    auto run = [&](auto record) {
        record.setOForm(form);
        record.setOAdodc(grid);
        return f(record);
    };
    switch (k) {
        case kind::Contact:
            return run(Contact());
        case kind::Account:
            return run(Account());
        case kind::Opportunity:
            return run(Opportunity());
        case kind::Document:
            return run(document());
        case kind::Task:
            return run(Task());
        default:
            return false;
    }
}

template <typename F>
bool withOwner(qint16 k, int id, F&& f) {
    return withRecord(k, nullptr, nullptr, [&](auto& record) {
        record.setID(id);
        return f(record);
    });
}

bool showRecord(Contact& r, int id) {
    return r.ShowContact(id, true);
}
bool showRecord(Account& r, int id) {
    return r.ShowAccount(id, true);
}
bool showRecord(Opportunity& r, int id) {
    return r.ShowOpportunity(id, true);
}
bool showRecord(document& r, int id) {
    return r.ShowDocument(id, true);
}
bool showRecord(Task& r, int id) {
    return r.ShowTask(id);
}

// New records: the add reader, then the row through the grid and its link.
// `writing` is raised once the section has been read, so a failure after
// it is one of the data file.
bool addNew(Contact& r, const AccountChoice& a, bool& writing) {
    if (!r.AddContact()) return false;
    if (a.chosen != 0) r.Account().setID(a.chosen);
    return (writing = true) && r.AddToList();
}
bool addNew(Account& r, const AccountChoice&, bool& writing) {
    return r.AddAccount() && (writing = true) && r.AddToList();
}
bool addNew(Opportunity& r, const AccountChoice&, bool& writing) {
    return r.AddOpportunity() && (writing = true) && r.AddToList();
}
bool addNew(document& r, const AccountChoice&, bool& writing) {
    return r.AddDocument() && (writing = true) && r.AddToList();
}
bool addNew(Task& r, const AccountChoice&, bool& writing) {
    return r.InitTask(0) && r.AddTask() && (writing = true) && r.AddToList();
}

// Existing records are loaded first, so the fields the section does not
// show are written back as they were.
bool change(Contact& r, int id, const AccountChoice& a, bool& writing) {
    if (!r.InitContact(id, true) || !r.ChangeContact(id)) return false;
    if (a.newAccount) r.Account().setID(0);
    if (a.chosen != 0) r.Account().setID(a.chosen);
    return (writing = true) && r.UpdateIndex(id, a.rename);
}
bool change(Account& r, int id, const AccountChoice&, bool& writing) {
    return r.InitAccount(id, true) && r.ChangeAccount(id) && (writing = true) && r.UpdateIndex(id);
}
bool change(Opportunity& r, int id, const AccountChoice&, bool& writing) {
    return r.InitOpportunity(id, true) && r.ChangeOpportunity(id) && (writing = true) &&
           r.UpdateIndex(id);
}
bool change(document& r, int id, const AccountChoice&, bool& writing) {
    return r.InitDocument(id, true) && r.ChangeDocument(id) && (writing = true) &&
           r.UpdateIndex(id);
}
bool change(Task& r, int id, const AccountChoice&, bool& writing) {
    return r.InitTask(id) && r.ChangeTask() && (writing = true) && r.UpdateIndex();
}

// Ends a record operation: the record's error text when it failed.
template <typename Record>
bool outcome(const Record& r, bool ok, QString& error) {
    if (!ok) error = r.ErrMsg();
    return ok;
}

bool committed(Transaction& tx, bool ok, QString& error) {
    if (!ok) return false;
    if (tx.commit()) return true;
    error = tx.error();
    return false;
}

}  // namespace

bool setQuery(qint16 k, Form& form, DataControl& grid, int ownerId, QString& error) {
    return withRecord(k, &form, &grid,
                      [&](auto& r) { return outcome(r, r.SetQuery(ownerId), error); });
}

bool show(qint16 k, Form& form, DataControl& grid, int id, QString& error) {
    return withRecord(k, &form, &grid,
                      [&](auto& r) { return outcome(r, showRecord(r, id), error); });
}

bool save(qint16 k, Form& form, DataControl& grid, qint16 ownerKind, int ownerId, int id,
          const AccountChoice& account, QString& error, bool& refused) {
    refused = true;
    Transaction tx;
    if (!tx.isActive()) {
        error = tx.error();
        return false;
    }
    tarveldatabase db;
    db.Execute(panelStampStatement(ownerKind, ownerId));
    if (!db.ErrMsg().isEmpty()) {
        error = db.ErrMsg();
        return false;
    }
    bool writing = false;
    const bool ok = withRecord(k, &form, &grid, [&](auto& r) {
        return outcome(r, id == 0 ? addNew(r, account, writing) : change(r, id, account, writing),
                       error);
    });
    refused = writing;
    return committed(tx, ok, error);
}

bool sort(DataControl& grid, const QString& field, bool ascending, QString& error) {
    QString source = grid.RecordSource;
    // An ORDER BY after the last bracket is the statement's own, not a subquery's.
    const int at = source.lastIndexOf(QLatin1String(" ORDER BY "), -1, Qt::CaseInsensitive);
    if (at > source.lastIndexOf(QLatin1Char(')'))) source.truncate(at);
    grid.RecordSource = source + QStringLiteral(" ORDER BY ") + field +
                        (ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    if (grid.Refresh()) return true;
    error = grid.ErrorDescription();
    return false;
}

bool unlink(qint16 ownerKind, int ownerId, qint16 k, int otherId, QString& error) {
    Transaction tx;
    const bool ok = withOwner(ownerKind, ownerId, [&](auto& r) {
        return outcome(r, r.DeleteRelative(k, otherId), error);
    });
    return committed(tx, ok, error);
}

bool link(qint16 ownerKind, int ownerId, qint16 k, const QList<int>& otherIds, QString& error) {
    Transaction tx;
    bool ok = true;
    for (int other : otherIds) {
        // An account takes a contact only from the contact's side (one account each).
        ok = ownerKind == kind::Account && k == kind::Contact
                 ? withOwner(k, other,
                             [&](auto& r) {
                                 return outcome(r, r.AddRelative(kind::Account, ownerId), error);
                             })
                 : withOwner(ownerKind, ownerId,
                             [&](auto& r) { return outcome(r, r.AddRelative(k, other), error); });
        if (!ok) break;
    }
    return committed(tx, ok, error);
}

}  // namespace tarvel::relatedrecords
