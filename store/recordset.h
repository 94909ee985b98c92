#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>
#include <vector>

#include "store/resultcolumns.h"

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
    bool MoveFirst();
    bool MoveLast();
    bool MoveNext();
    bool MovePrevious();

    int FieldCount() const { return columns_ ? int(columns_->list.size()) : 0; }
    FieldRef Fields(int index) { return FieldRef(this, index); }
    FieldRef Fields(const QString& name) { return FieldRef(this, fieldIndex(name)); }
    QVariant value(int index) const;
    QVariant value(const QString& name) const { return value(fieldIndex(name)); }
    QString fieldName(int index) const;
    // Index of a field by name ("col" or "table.col"), case-insensitive; -1 when absent.
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
    // Rows are kept as copied cells (one array and one text buffer for the whole
    // result) and turned into values when read; an edited row holds its values.
    struct Cell {
        qint64 integer = 0;
        double real = 0;
        int offset = 0;
        int size = 0;
        int type = 0;
    };
    struct Row {
        qsizetype firstCell = 0;  // into cells_
        QVector<QVariant> values;
        bool deleted = false;
    };
    QVariant cellValue(const Row& row, int index) const;
    QVector<QVariant>& decodeAll(Row& row) const;

    bool fail(const QString& message);
    // `bound` holds the values of the source's own ? marks.
    bool openStatement(const QString& source, const std::shared_ptr<Handle>& handle, int lockType,
                       const QList<QVariant>& bound = {});
    bool writeInsert();
    bool writeEdit();
    bool reloadRow(const QString& table, qint64 rowid, QVector<QVariant>& values);
    QString primaryTable() const;
    QStringList locateRow(const QString& table, const TableInfo& info, const Row& row,
                          QVector<QVariant>& values) const;
    int visibleIndex(int from, int step) const;
    bool flushEdit();

    std::shared_ptr<Handle> handle_;
    QString source_;
    int state_ = adStateClosed;
    int lockType_ = adLockReadOnly;
    int editMode_ = adEditNone;
    std::shared_ptr<const ResultColumns> columns_;
    std::vector<Row> rows_;
    std::vector<Cell> cells_;
    std::vector<char> bytes_;
    int liveRows_ = 0;  // rows not deleted
    int position_ = 0;  // index into rows_; -1 = BOF, rows_.size() = EOF
    QVector<QVariant> pending_;
    QVector<bool> changed_;
    QString error_;
};

}  // namespace tarvel
