#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>
#include <vector>

#include "store/resultcolumns.h"
#include "store/resultrows.h"

struct sqlite3_stmt;

namespace tarvel {

class Handle;
class Connection;
struct TableInfo;
class Recordset;
using RecordsetPtr = std::shared_ptr<Recordset>;
using ConnectionPtr = std::shared_ptr<Connection>;

// Cursor, lock and state values, numbered as the original data-access library numbers them.
enum CursorTypeEnum { adOpenStatic = 3 };
enum LockTypeEnum { adLockReadOnly = 1, adLockPessimistic = 2 };
enum ObjectStateEnum { adStateClosed = 0, adStateOpen = 1 };
enum EditModeEnum { adEditNone = 0, adEditInProgress = 1, adEditAdd = 2 };

// One field of the current row: reads give the value, assignment edits it.
class FieldRef {
public:
    FieldRef(Recordset* owner, int index) : owner_(owner), index_(index) {}
    bool isValid() const;
    QString Name() const;
    QVariant Value() const;
    void setValue(const QVariant& value);
    operator QVariant() const { return Value(); }
    FieldRef& operator=(const QVariant& value) {
        setValue(value);
        return *this;
    }

private:
    Recordset* owner_;
    int index_;
};

// A static cursor over rows read in full when it is opened. Edits, additions and
// deletions are written to the base table each column came from.
class Recordset {
public:
    Recordset() = default;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    // Opens over `source` (a statement in the program's dialect) on an open connection.
    bool Open(const QString& source, const ConnectionPtr& connection, int cursorType = adOpenStatic,
              int lockType = adLockReadOnly, int options = -1);
    void Close();
    int State() const { return state_; }
    int EditMode() const { return editMode_; }
    int LockType() const { return lockType_; }
    QString Source() const { return source_; }

    bool Eof() const;
    bool Bof() const;
    int RecordCount() const;
    int AbsolutePosition() const;  // 1-based; 0 at BOF/EOF
    // Makes record `position` (1-based) current; false when there is none.
    bool setAbsolutePosition(int position);
    bool MoveFirst();
    bool MoveLast();
    bool MoveNext();
    bool MovePrevious();

    int FieldCount() const { return columns_ ? int(columns_->list.size()) : 0; }
    FieldRef Fields(int index) { return FieldRef(this, index); }
    FieldRef Fields(const QString& name) { return FieldRef(this, fieldIndex(name)); }
    QVariant value(int index) const;
    QVariant value(const QString& name) const { return value(fieldIndex(name)); }
    // A field of any record (0-based, in cursor order) without moving to it;
    // an edit in progress is not shown. Null when out of range.
    QVariant valueAt(int record, int index) const;
    QString fieldName(int index) const;
    // Index of a field by name, -1 when absent (rules: ResultColumns::indexOf).
    int fieldIndex(const QString& name) const;

    bool AddNew();
    bool setValue(int index, const QVariant& value);
    bool Update();
    void CancelUpdate();
    bool Delete();
    // Moves to the first row from the current one on that meets "column op value"
    // (=, <>, <, >, <=, >=, LIKE; numbers, 'text' or #date#); EOF when none does.
    bool Find(const QString& criteria);

    // The last error of an operation on this recordset (empty after a success).
    QString ErrorDescription() const { return error_; }

private:
    friend class Connection;
    using Column = ResultColumn;
    QVariant cellValue(int row, int index) const;
    QVector<QVariant>& decodeAll(int row);

    bool fail(const QString& message);
    // `bound` holds the values of the source's own ? marks.
    bool openStatement(const QString& source, const std::shared_ptr<Handle>& handle, int lockType,
                       const QList<QVariant>& bound = {});
    // Reads the rows of a statement prepared (and translated from `source`) on `handle`.
    bool readStatement(const QString& source, sqlite3_stmt* stmt,
                       const QVector<QVariant>& parameters, const std::shared_ptr<Handle>& handle,
                       int lockType);
    bool writeInsert();
    bool writeEdit();
    bool reloadRow(const QString& table, qint64 rowid, QVector<QVariant>& values);
    QString primaryTable() const;
    QStringList locateRow(const QString& table, const TableInfo& info, int row,
                          QVector<QVariant>& values) const;
    int rowOfRecord(int record) const;
    int visibleIndex(int from, int step) const;
    bool flushEdit();

    std::shared_ptr<Handle> handle_;
    QString source_;
    int state_ = adStateClosed;
    int lockType_ = adLockReadOnly;
    int editMode_ = adEditNone;
    std::shared_ptr<const ResultColumns> columns_;
    ResultRows rows_;
    QHash<int, QVector<QVariant>> written_;  // rows the program edited or added, by row
    std::vector<bool> deleted_;
    mutable std::vector<int> live_;  // the row of each record once rows were deleted
    int liveRows_ = 0;               // rows not deleted
    int position_ = 0;               // index into rows_; -1 = BOF, rows_.rowCount() = EOF
    QVector<QVariant> pending_;
    QVector<bool> changed_;
    QString error_;
};

}  // namespace tarvel
