#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVector>
#include <initializer_list>
#include <type_traits>
#include <vector>

#include "records/kinds.h"
#include "store/datacontrol.h"
#include "store/form.h"
#include "store/recordset.h"

namespace tarvel {

// Names the record objects share with the related panels (form_*_related).
namespace panel {
// The form name of a kind's related panel ("form_con_related"); empty for an unknown kind.
const char* formName(qint16 kind);
// Form property holding the key of the record whose panel it is (the page's record).
inline constexpr const char* RecordId = "RecordID";

// The kind code of the record a panel belongs to; 0 for any other form name.
qint16 kindOf(const QString& formName);
}  // namespace panel

// The statement that stamps a record's "recent" date with the database's now,
// followed by the id; empty for an unknown kind.
QString stampStatement(qint16 kind, int id);
// The stamp a related panel gives its own record before a section is saved:
// a contact's panel has its own wording, the others stamp as above.
QString panelStampStatement(qint16 kind, int id);
// The key column of a kind's table ("con_id"); null for an unknown kind.
const char* keyColumn(qint16 kind);

// A property's getter and setter in one line; small values pass by value.
template <typename T>
using PropertyArg = std::conditional_t<std::is_trivially_copyable_v<T>, T, const T&>;
#define TARVEL_PROPERTY(Type, Name, member)             \
    Type Name() const {                                 \
        return member;                                  \
    }                                                   \
    void set##Name(::tarvel::PropertyArg<Type> value) { \
        member = value;                                 \
    }

// Conversions between field values and properties.
namespace recordvalue {
// The null rule of every loader: a null field reads as the empty text.
QString text(const QVariant& value);
// A date field as a naive date-time; null (or not a date) gives an invalid one.
QDateTime dateTime(const QVariant& value);
// A date property as a field value: an invalid date-time is written as null.
QVariant field(const QDateTime& value);
qint16 int16(const QVariant& value);
int int32(const QVariant& value);
// The first `count` characters (code points), so no character is ever split.
QString leftChars(const QString& text, int count);
// A date as the program shows it in text: "2024-5-1", with " 9:05:00" when it has a time.
QString displayDate(const QDateTime& value);
// Today at midnight and now, from the program's clock.
QDateTime today();
QDateTime now();
}  // namespace recordvalue

// The columns a loader reads, by name (resolved by Recordset::fieldIndex); a
// column the row lacks reads as null. It keeps the positions it found for the
// last layout it saw, so rows of the same query skip the look-ups; it serves
// the program's one thread only.
class ColumnSlots {
public:
    explicit ColumnSlots(const QStringList& columns) : columns_(columns) {}
    // The row's values in the order of `columns`.
    QVector<QVariant> read(const Recordset& rs) const;

private:
    QStringList columns_;
    // The statement and field count the positions were found for; statements
    // that differ only in their numbers (the key asked for) share them.
    mutable QString source_;
    mutable int fields_ = -1;
    mutable QVector<int> index_;
};

// One link a record class writes, per relation kind. The statement texts are
// kept as the program has always issued them; in each, %1 stands for this
// record's id, %2 for the other record's and %3 for the role or relation text.
struct RecordLink {
    qint16 kind;
    const char* probe;                    // does the link exist? null: AddRelative only stamps
    const char* insert;                   // a new link
    const char* update;                   // rewrites the text of an existing link; null: leave it
    const char* remove;                   // DeleteRelative; null: no case
    const char* reread = nullptr;         // read after adding (changes nothing)
    const char* rereadRemoved = nullptr;  // read after removing (changes nothing)
    bool replaces = false;  // an existing link is removed first (one account per contact)
};

// The links of a record class and what its DeleteRelative does besides.
struct RecordLinks {
    qint16 own;  // the class's kind code
    std::vector<RecordLink> links;
    std::vector<const char*> cascade;  // DeleteRelation, in order; %1 = the id
    bool stampsRemoval = false;        // DeleteRelative stamps both records
    bool tracesRemoval = false;        // and appends each statement to ErrMsg first
    const RecordLink* find(qint16 relationKind) const;
};

template <typename Record>
struct RecordDescription;

// What every record class shares: the accumulated error text, the arrays of the
// category counts, the borrowed panel form and grid data control, and the
// steps operations are made of. Operations never throw: each step returns
// false and leaves its reason, and the operation reports it (report) as
// "<operation>出错，原因可能是<reason>" in ErrMsg.
class RecordBase {
public:
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }
    // The entry the last failed operation appended to ErrMsg ("" when none failed).
    QString lastError() const { return lastError_; }
    // Counts and labels of the last CalcBy...; their upper bound is the row
    // count, so the last entry is left null (the two fixed categories of
    // CalcByOpportunity fill theirs exactly).
    QVariantList arrValue() const { return arrValue_; }
    void setArrValue(const QVariantList& value) { arrValue_ = value; }
    QVariantList arrDesc() const { return arrDesc_; }
    void setArrDesc(const QVariantList& value) { arrDesc_ = value; }
    // Borrowed: the panel form and its grid's data control, never owned.
    Form* oForm() const { return oForm_; }
    void setOForm(Form* form) { oForm_ = form; }
    DataControl* oAdodc() const { return oAdodc_; }
    void setOAdodc(DataControl* control) { oAdodc_ = control; }

protected:
    RecordBase() = default;

    // Ends an operation: on failure appends the pending reason, if a step left
    // one (a nested operation of this object has written its own entry).
    bool report(const char* operation, bool ok);
    // Leaves `reason` for report; always false.
    bool fail(const QString& reason) const;
    // A nested operation of another object failed: its entry is the reason.
    bool failFrom(const RecordBase& other) const { return fail(other.lastError()); }
    void appendText(const QString& text);

    // Each runs one statement through a fresh tarveldatabase; false (or null)
    // with the engine's description as the reason.
    bool execute(const QString& sql) const;
    RecordsetPtr open(const QString& sql, bool writable) const;
    RecordsetPtr read(const QString& sql) const { return open(sql, false); }
    RecordsetPtr openWritable(const QString& sql) const { return open(sql, true); }
    bool check(Recordset& rs, bool ok) const;
    // The text `column` of the first row of `sql` into `out`; "" when there is none.
    bool readText(const QString& sql, const QString& column, QString& out) const;
    bool setField(Recordset& rs, const char* column, const QVariant& value) const;
    // Positions the grid on the row whose `keyColumn` holds `id`.
    bool findKey(Recordset& rs, const char* keyColumn, int id) const;
    // Update, then MovePrevious and MoveNext so the stored row is read again.
    bool storeNewRow(Recordset& rs) const;
    // The grid's current row when it holds `id` in `keyColumn`.
    bool gridRowHolds(const char* keyColumn, int id) const;
    // A link statement: through the grid's connection when a data control is
    // set (the grid then sees the change in its own connection), else as above.
    bool executeLink(const QString& sql) const;

    // The link operations, the same for every class, over the class's links.
    bool addRelative(const RecordLinks& links, int id, qint16 relationKind, int otherId,
                     const QString& text);
    bool deleteRelative(const RecordLinks& links, int id, qint16 relationKind, int otherId);
    bool deleteRelation(const RecordLinks& links, int id);

    // Generic row operations over a record's description (recorddescription.h).
    template <typename Record>
    bool addRow(Record& record, const RecordDescription<Record>& d);
    template <typename Record>
    bool updateRow(const Record& record, const RecordDescription<Record>& d);
    template <typename Record>
    bool getRow(Record& record, const RecordDescription<Record>& d);
    template <typename Record>
    bool addListRow(Record& record, const RecordDescription<Record>& d);
    // Writes the grid's current row when it holds record `id`, else Update.
    template <typename Record>
    bool updateListRow(Record& record, const RecordDescription<Record>& d, int id);
    // The text properties that have a control, from the form (cut) and onto it.
    template <typename Record>
    bool readControls(Record& record, const RecordDescription<Record>& d) const;
    template <typename Record>
    void showControls(const Record& record, const RecordDescription<Record>& d) const;

    // Grouped counts: one row per category, label column and option_count.
    bool groupedCounts(const QString& sql, const char* labelColumn);
    // One count per defined tag of `object` ("con", "acc", "opp"), by substring;
    // `countPrefix` ends with "LIKE ".
    bool tagCounts(const char* object, const QString& countPrefix);
    // The two fixed categories "有" and "无" of taking part in an opportunity:
    // the records of `table` (column prefix `prefix`) with and without a link
    // in opportunities_<table>.
    bool participationCounts(const QString& prefix, const QString& table);

    // Panel helpers. needForm and needGrid fail (with a reason) when none is
    // set; the others do nothing without a form.
    bool needForm() const;
    bool needGrid() const;
    Recordset& gridRows() const { return *oAdodc_->Recordset; }
    QString panelName() const { return oForm_ ? oForm_->Name() : QString(); }
    int panelRecordId() const;
    QVariant formProperty(const char* name) const;
    QString formText(const char* control) const;
    void setFormValue(const char* control, const QVariant& value) const;
    // Writes a name box with its bCantChgFlag_* raised, so the form's change
    // handler does not take the write for typing.
    void setNameBox(const char* control, const char* flag, const QString& text) const;
    void setFormProperty(const char* name, const QVariant& value) const;
    // iShowTas, iShowCon, iShowOpp, iShowAcc, iShowDoc: 1 for each kind the
    // panel shows, which is every kind but the panel's own.
    void setPanelFlags() const;
    // Points the grid at `source`, refreshes it and captions its columns (the
    // key column is hidden, so the captions, separated by commas, start with
    // the name column).
    bool showInGrid(const QString& source, const char* gridControl, const char* captions) const;
    // The grid query of the panel the form is: `select` (ending in "... IN (SELECT x FROM "),
    // the link of the panel's kind, the other id and `close`. No case: nothing to show.
    struct PanelLink {
        qint16 panel;
        const char* link;  // "opportunities_accounts WHERE acc_id="
    };
    bool showRelated(const QString& select, std::initializer_list<PanelLink> links, int otherId,
                     const char* gridControl, const char* captions, const char* close = ")") const;
    // After a row was written through the panel: flags, the grid's query again
    // (the class's SetQuery) and the grid on the record.
    template <typename Requery>
    bool showAgain(Requery&& setQuery, const char* keyColumn, int id) {
        setPanelFlags();
        return setQuery(panelRecordId()) && needGrid() && findKey(gridRows(), keyColumn, id);
    }
    // Fills `control` with the digest of a record's tasks, newest first:
    // "SELECT tas_date,...,tas_description" + `from` (its FROM and WHERE up
    // to the record's id) + id + ") ORDER BY tas_date DESC,tas_time DESC".
    bool showTaskDigest(const char* control, const char* from, int id) const;
    // The digest of the tasks of `rs` from its first row: per task its date,
    // time, the done state (with `withDone`) and tag, then subject and
    // description, and a separator line.
    static QString taskDigest(Recordset& rs, bool withDone);

private:
    QString errMsg_;
    QString lastError_;
    mutable QString reason_;
    mutable bool failed_ = false;
    QVariantList arrValue_;
    QVariantList arrDesc_;
    Form* oForm_ = nullptr;
    DataControl* oAdodc_ = nullptr;
};

}  // namespace tarvel
