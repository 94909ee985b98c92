#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

#include "exchange/progress.h"

namespace tarvel::exchange {

// One record as an importer read it from another program's file.
struct IncomingRecord {
    // Columns of the record's table by name (contacts: con_lastname holds the
    // whole name the lists show, con_firstname the given name).
    QHash<QString, QVariant> columns;
    // Contacts: the account's name; the contact is linked to the account of
    // that name, which is added when missing.
    QString organisation;
    // Contacts: columns an account added for `organisation` starts with (a
    // work address, say); an existing account is left as it is.
    QHash<QString, QVariant> accountColumns;
    // The id the record had in the other program (a vCard UID, an iCalendar
    // UID with its RECURRENCE-ID): the same id seen again is the same record.
    QString externalId;
    // Where the record stands in the file, for the summary ("第12行",
    // "第3张名片"); may be empty.
    QString origin;
};

// What an import did, for the summary the user reads.
struct ImportTally {
    int added = 0;
    int updated = 0;
    int skipped = 0;
    int accountsAdded = 0;
    // Fields that kept the user's own value where the file had another.
    int kept = 0;
    // Values longer than their column holds, cut between whole characters:
    // "第12行「张三…」：姓名超过50个字，已截断".
    QStringList cuts;
    // "新增 N，更新 M，跳过 K" and, when there were any, the accounts added,
    // the fields kept and the count of values cut.
    QString summary() const;
    // The values cut, one a line after a heading; empty when none was.
    QString cutLines() const;
};

// How a record that is already there takes the file's values.
enum class OnMatch {
    FillEmpty,  // only empty fields are filled; what the user typed stays
    Overwrite,  // the file's values replace the stored ones (a changed event)
};

// Stores the records of one import in one transaction and keeps a journal of
// what it added and changed, so that the import can be taken back. A record
// already there (same external id, or for contacts the same whole name with
// the same mobile or e-mail after normalising) is not added again.
class ImportSession {
public:
    // `table`: "contacts", "accounts" or "tasks"; `source`: a short word for
    // the kind of file ("vcard", "csv", "ics") that scopes external ids;
    // `file`: the path, for the journal.
    ImportSession(const QString& table, const QString& source, const QString& file,
                  OnMatch onMatch = OnMatch::FillEmpty);
    ~ImportSession();
    ImportSession(const ImportSession&) = delete;
    ImportSession& operator=(const ImportSession&) = delete;

    // False when the file could not be opened or the journal not begun.
    bool isOpen() const;
    QString ErrMsg() const;

    // Adds the record or brings the one it matches up to date; the key of the
    // record, or 0 with the reason in `error` (the import should then stop:
    // nothing is committed).
    qint64 put(const IncomingRecord& record, QString* error);
    // Records a record that the importer added or changed by other means (a
    // task's links), so that taking the import back removes it too.
    void noteAdded(const QString& table, qint64 key);

    // Writes the journal and commits; false (nothing stored) with the reason.
    bool commit(QString* error);
    const ImportTally& tally() const;

    // Tests, benchmarks: how contacts are compared (blanks, +86 and
    // full-width digits set aside; e-mail case folded).
    static QString normalisedPhone(const QString& number);
    static QString normalisedEmail(const QString& address);
    // The keys under which a contact is found again: its whole name with each
    // mobile and each e-mail, normalised as above (none without a name).
    static QStringList contactKeys(const QString& name, const QStringList& mobiles,
                                   const QStringList& emails);
    // A whole name as contacts and accounts are compared: blanks and case set aside.
    static QString normalisedName(const QString& name);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

// What taking the last import back did.
struct UndoImportResult {
    int removed = 0;   // records the import added, now gone with their links
    int restored = 0;  // fields set back to what they were before the import
    // Records and fields left as they are because the user changed them since.
    QStringList keptChanged;
    QString summary() const;
};

// Takes the last import back: removes the records it added (with their links)
// and sets the fields it filled or changed back, leaving alone whatever the
// user changed since. One transaction. Fails with a message when there is no
// import to take back.
Outcome undoLastImport(UndoImportResult* result = nullptr);
// A line describing the import that undoLastImport would take back, or empty.
QString lastImportDescription();

}  // namespace tarvel::exchange
