#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVector>
#include <exception>

#include "store/datacontrol.h"
#include "store/form.h"
#include "store/recordset.h"

namespace tarvel {

// Relation kind codes: the first argument of AddRelative, DeleteRelative and GetByIdEx.
namespace kind {
inline constexpr qint16 Opportunity = 1;
inline constexpr qint16 Account = 2;
inline constexpr qint16 Contact = 3;
inline constexpr qint16 Task = 4;
inline constexpr qint16 Document = 5;
}  // namespace kind

// Names the record objects share with the related panels (form_*_related).
namespace panel {
inline constexpr const char* Opportunity = "form_opp_related";
inline constexpr const char* Account = "form_acc_related";
inline constexpr const char* Contact = "form_con_related";
inline constexpr const char* Task = "form_sch_related";
inline constexpr const char* Document = "form_doc_related";
// Form property holding the key of the record whose panel it is (the page's record).
inline constexpr const char* RecordId = "RecordID";

// The kind code of the record a panel belongs to; 0 for any other form name.
qint16 kindOf(const QString& formName);
}  // namespace panel

// The statement that stamps a record's "recent" date with the database's now,
// followed by the id; empty for an unknown kind.
QString stampStatement(qint16 kind, int id);

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

// The columns a loader reads, by name. Reading walks the row's columns once
// (a name looked up per property would cost more than the read itself); a
// column the row lacks reads as null, and where the engine names a column
// "table.column" its own name counts. It caches the last layout it saw, so
// it serves the program's one thread only.
class ColumnSlots {
public:
    explicit ColumnSlots(const QStringList& columns);
    // The row's values in the order of `columns`.
    QVector<QVariant> read(const Recordset& rs) const;

private:
    QHash<QString, int> index_;
    int count_;
    // The last column layout seen and where each of its columns goes (-1:
    // unused), so rows of the same query skip the look-ups; the statement it
    // came from, since statements that differ only in their numbers (the key
    // asked for) return the same columns and need no comparison at all.
    mutable QStringList layout_;
    mutable QVector<int> target_;
    mutable QString source_;
};

// What every record class shares: the accumulated error text, the arrays of the
// category counts, the borrowed panel form and grid data control, and the
// helpers that run statements inside an operation. Operations never throw: a
// failing statement unwinds to the operation's boundary (guarded), which turns
// it into false and an ErrMsg entry.
class RecordBase {
public:
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }
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

    struct Failure {
        QString description;
        bool logged = false;  // the nested operation that failed has written ErrMsg already
    };
    [[noreturn]] static void fail(const QString& description);
    // Ends the operation after a nested operation of the same object failed.
    [[noreturn]] static void failLogged();
    // Ends the operation when a nested operation of another object failed.
    [[noreturn]] static void failFrom(const RecordBase& other, const QString& errorsBefore);

    template <typename Body>
    bool guarded(const char* operation, Body&& body) noexcept {
        try {
            body();
            return true;
        } catch (const Failure& f) {
            if (!f.logged) appendError(operation, f.description);
        } catch (const std::exception& e) {
            appendError(operation, QString::fromLocal8Bit(e.what()));
        } catch (...) {
            appendError(operation, QStringLiteral("未知错误"));
        }
        return false;
    }
    void appendError(const char* operation, const QString& description);
    void appendText(const QString& text);

    // Each runs one statement through a fresh tarveldatabase and fails with the
    // engine's description.
    static void execute(const QString& sql);
    static RecordsetPtr read(const QString& sql);
    static RecordsetPtr openWritable(const QString& sql);
    static bool hasRows(const QString& sql);
    static void check(Recordset& rs, bool ok);
    // A column by its own name, also where the engine names it "table.column"
    // (qualified columns of a join over que_contacts_accounts); -1 when absent.
    static int columnIndex(const Recordset& rs, const char* column);
    static QVariant columnValue(const Recordset& rs, const char* column);
    static void setField(Recordset& rs, const char* column, const QVariant& value);
    // Positions the grid on the row whose `keyColumn` holds `id`.
    static void findKey(Recordset& rs, const char* keyColumn, int id);
    // Update, then MovePrevious and MoveNext so the stored row is read again.
    static void storeNewRow(Recordset& rs);
    // The grid's current row when it holds `id` in `keyColumn`.
    bool gridRowHolds(const char* keyColumn, int id) const;
    // A link statement: through the grid's connection when a data control is
    // set (the grid then sees the change in its own connection), else as above.
    void executeLink(const QString& sql);

    // Grouped counts: one row per category, label column and option_count.
    void groupedCounts(const QString& sql, const char* labelColumn);
    // One count per defined tag of `object` ("con", "acc", "opp"), by substring.
    void tagCounts(const char* object, const QString& countPrefix);
    // The two fixed categories "有" and "无" of taking part in an opportunity.
    void participationCounts(const QString& inSql, const QString& notInSql,
                             const char* countColumn);

    // Panel helpers; they fail when no form or grid is set.
    Form& form() const;
    DataControl& grid() const;
    Recordset& gridRows() const;
    QString panelName() const { return oForm_ ? oForm_->Name() : QString(); }
    int panelRecordId() const;
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
    // key column is hidden, so the captions start with the name column).
    void showInGrid(const QString& source, const char* gridControl,
                    const QStringList& captions) const;
    // The tasks of a record as the panels show them, newest first.
    static QString taskDigest(const QString& sql);

private:
    QString errMsg_;
    QVariantList arrValue_;
    QVariantList arrDesc_;
    Form* oForm_ = nullptr;
    DataControl* oAdodc_ = nullptr;
};

}  // namespace tarvel
