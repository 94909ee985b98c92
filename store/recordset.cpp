#include "store/recordset.h"

#include <sqlite3.h>

#include <QRegularExpression>

#include "store/connection.h"
#include "store/dialect.h"
#include "store/jetdate.h"
#include "store/sqlitehandle.h"
#include "store/sqlvalue.h"

namespace tarvel {

bool FieldRef::isValid() const {
    return owner_ && index_ >= 0 && index_ < owner_->FieldCount();
}
QString FieldRef::Name() const {
    return owner_ ? owner_->fieldName(index_) : QString();
}
QVariant FieldRef::Value() const {
    return owner_ ? owner_->value(index_) : QVariant();
}
void FieldRef::setValue(const QVariant& value) {
    if (owner_) owner_->setValue(index_, value);
}

bool Recordset::fail(const QString& message) {
    error_ = message;
    return false;
}

bool Recordset::Open(const QString& source, const ConnectionPtr& connection, int, int lockType,
                     int) {
    Close();
    error_.clear();
    source_ = source;
    if (!connection || connection->State() != adStateOpen)
        return fail(connection ? connection->ErrorDescription() : QStringLiteral("连接未打开"));
    return openStatement(source, connection->handle(), lockType);
}

bool Recordset::openStatement(const QString& source, const std::shared_ptr<Handle>& handle,
                              int lockType) {
    source_ = source;
    const dialect::Translation t = dialect::translate(source);
    if (!t.error.isEmpty()) return fail(t.error);
    QString error;
    sqlite3_stmt* stmt = handle->prepare(t.sql, &error);
    if (!stmt) return fail(error);
    StatementLease lease(stmt);
    const int count = sqlite3_column_count(stmt);
    if (count == 0) return fail(QStringLiteral("语句不返回记录"));
    for (int i = 0; i < t.parameters.size(); ++i) sqlvalue::bind(stmt, i + 1, t.parameters[i]);
    auto columns = handle->resultColumns(stmt);
    rows_.clear();
    int rc;
    cells_.clear();
    bytes_.clear();
    bytes_.reserve(512);
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        Row row;
        row.firstCell = qsizetype(cells_.size());
        cells_.resize(cells_.size() + count);
        Cell* cell = cells_.data() + row.firstCell;
        for (int i = 0; i < count; ++i, ++cell) {
            cell->type = sqlite3_column_type(stmt, i);
            if (cell->type == SQLITE_INTEGER) {
                cell->integer = sqlite3_column_int64(stmt, i);
            } else if (cell->type == SQLITE_FLOAT) {
                cell->real = sqlite3_column_double(stmt, i);
            } else if (cell->type == SQLITE_TEXT || cell->type == SQLITE_BLOB) {
                const char* data = cell->type == SQLITE_TEXT
                                       ? reinterpret_cast<const char*>(sqlite3_column_text(stmt, i))
                                       : static_cast<const char*>(sqlite3_column_blob(stmt, i));
                cell->size = sqlite3_column_bytes(stmt, i);
                cell->offset = int(bytes_.size());
                bytes_.insert(bytes_.end(), data, data + cell->size);
            }
        }
        rows_.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        rows_.clear();
        return fail(handle->lastError());
    }
    columns_ = std::move(columns);
    liveRows_ = int(rows_.size());
    handle_ = handle;
    lockType_ = lockType;
    state_ = adStateOpen;
    position_ = 0;
    return true;
}

void Recordset::Close() {
    state_ = adStateClosed;
    editMode_ = adEditNone;
    columns_.reset();
    rows_.clear();
    cells_.clear();
    bytes_.clear();
    liveRows_ = 0;
    pending_.clear();
    changed_.clear();
    handle_.reset();
    position_ = 0;
}

QVariant Recordset::cellValue(const Row& row, int index) const {
    if (!row.values.isEmpty()) return row.values[index];
    const Cell& c = cells_[row.firstCell + index];
    return sqlvalue::decode(c.type, c.integer, c.real, bytes_.data() + c.offset, c.size,
                            columns_->list[index].kind);
}

QVector<QVariant>& Recordset::decodeAll(Row& row) const {
    if (row.values.isEmpty()) {
        QVector<QVariant> values(FieldCount());
        for (int i = 0; i < FieldCount(); ++i) values[i] = cellValue(row, i);
        row.values = std::move(values);
    }
    return row.values;
}

int Recordset::visibleIndex(int from, int step) const {
    int i = from;
    while (i >= 0 && i < int(rows_.size()) && rows_[i].deleted) i += step;
    return i;
}

bool Recordset::Eof() const {
    if (state_ != adStateOpen) return true;
    return position_ >= int(rows_.size()) || liveRows_ == 0;
}

bool Recordset::Bof() const {
    if (state_ != adStateOpen) return true;
    return position_ < 0 || liveRows_ == 0;
}

int Recordset::RecordCount() const {
    return state_ == adStateOpen ? liveRows_ : -1;
}

int Recordset::AbsolutePosition() const {
    if (Eof() || Bof()) return 0;
    int n = 0;
    for (int i = 0; i <= position_; ++i)
        if (!rows_[i].deleted) ++n;
    return n;
}

bool Recordset::flushEdit() {
    return editMode_ == adEditNone || Update();
}

bool Recordset::MoveFirst() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (!flushEdit()) return false;
    position_ = visibleIndex(0, 1);
    return true;
}

bool Recordset::MoveLast() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (!flushEdit()) return false;
    const int last = visibleIndex(int(rows_.size()) - 1, -1);
    position_ = last < 0 ? int(rows_.size()) : last;
    return true;
}

bool Recordset::MoveNext() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (!flushEdit()) return false;
    if (Eof()) return fail(QStringLiteral("已到记录集末尾"));
    position_ = visibleIndex(position_ + 1, 1);
    return true;
}

bool Recordset::MovePrevious() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (!flushEdit()) return false;
    if (Bof()) return fail(QStringLiteral("已到记录集开头"));
    position_ = visibleIndex(position_ - 1, -1);
    return true;
}

QString Recordset::fieldName(int index) const {
    return index >= 0 && index < FieldCount() ? columns_->list[index].name : QString();
}

int Recordset::fieldIndex(const QString& name) const {
    if (!columns_) return -1;
    if (auto it = columns_->byName.constFind(name); it != columns_->byName.constEnd()) return *it;
    if (auto it = columns_->byName.constFind(name.toLower()); it != columns_->byName.constEnd())
        return *it;
    // "table.column" also names a column by where it came from.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0) {
        // A bare name also names a qualified result column "x.name"; the first wins.
        for (int i = 0; i < FieldCount(); ++i)
            if (columns_->list[i].name.endsWith(QLatin1Char('.') + name, Qt::CaseInsensitive))
                return i;
    }
    if (dot > 0) {
        const QString table = name.left(dot), column = name.mid(dot + 1);
        for (int i = 0; i < FieldCount(); ++i) {
            const Column& c = columns_->list[i];
            if (c.table.compare(table, Qt::CaseInsensitive) == 0 &&
                c.origin.compare(column, Qt::CaseInsensitive) == 0)
                return i;
        }
    }
    return -1;
}

QVariant Recordset::value(int index) const {
    if (index < 0 || index >= FieldCount()) return QVariant();
    if (editMode_ != adEditNone) return pending_[index];
    if (Eof() || Bof()) return QVariant();
    return cellValue(rows_[position_], index);
}

bool Recordset::setValue(int index, const QVariant& value) {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (index < 0 || index >= FieldCount()) return fail(QStringLiteral("找不到该字段"));
    if (lockType_ == adLockReadOnly) return fail(QStringLiteral("记录集是只读的"));
    if (columns_->list[index].table.isEmpty())
        return fail(QStringLiteral("字段 %1 是计算值，不能修改").arg(columns_->list[index].name));
    if (editMode_ == adEditNone) {
        if (Eof() || Bof()) return fail(QStringLiteral("没有当前记录"));
        editMode_ = adEditInProgress;
        pending_ = decodeAll(rows_[position_]);
        changed_ = QVector<bool>(FieldCount(), false);
    }
    pending_[index] = value;
    changed_[index] = true;
    return true;
}

bool Recordset::AddNew() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (lockType_ == adLockReadOnly) return fail(QStringLiteral("记录集是只读的"));
    if (!flushEdit()) return false;
    editMode_ = adEditAdd;
    pending_ = QVector<QVariant>(FieldCount());
    changed_ = QVector<bool>(FieldCount(), false);
    return true;
}

void Recordset::CancelUpdate() {
    editMode_ = adEditNone;
    pending_.clear();
    changed_.clear();
}

bool Recordset::Update() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (editMode_ == adEditNone) return true;
    if (!handle_ || !handle_->isOpen()) return fail(QStringLiteral("数据文件已关闭"));
    const bool ok = editMode_ == adEditAdd ? writeInsert() : writeEdit();
    if (ok) {
        CancelUpdate();
        error_.clear();
    }
    return ok;
}

QString Recordset::primaryTable() const {
    for (const Column& c : columns_->list) {
        if (c.table.isEmpty()) continue;
        const TableInfo* info = handle_ ? handle_->tableInfo(c.table) : nullptr;
        if (info && !info->primaryKey.isEmpty() &&
            c.origin.compare(info->primaryKey, Qt::CaseInsensitive) == 0)
            return c.table;
    }
    for (const Column& c : columns_->list)
        if (!c.table.isEmpty()) return c.table;
    return QString();
}

namespace {
struct Statement {
    QString sql;
    QVector<QVariant> values;
};

bool run(Handle& handle, const Statement& s, QString& error, int* changes = nullptr) {
    sqlite3_stmt* stmt = handle.prepare(s.sql, &error);
    if (!stmt) return false;
    StatementLease lease(stmt);
    for (int i = 0; i < s.values.size(); ++i) sqlvalue::bind(stmt, i + 1, s.values[i]);
    if (sqlite3_step(stmt) != SQLITE_DONE) {
        error = handle.lastError();
        return false;
    }
    if (changes) *changes = sqlite3_changes(handle.db());
    return true;
}

QString quoted(const QString& name) {
    return QLatin1Char('"') + name + QLatin1Char('"');
}
}  // namespace

bool Recordset::reloadRow(const QString& table, qint64 rowid, QVector<QVariant>& values) {
    QStringList names;
    QVector<int> indexes;
    for (int i = 0; i < FieldCount(); ++i) {
        if (columns_->list[i].table.compare(table, Qt::CaseInsensitive) != 0) continue;
        names << quoted(columns_->list[i].origin);
        indexes << i;
    }
    if (names.isEmpty()) return true;
    QString error;
    sqlite3_stmt* stmt = handle_->prepare(QStringLiteral("SELECT %1 FROM %2 WHERE rowid = ?")
                                              .arg(names.join(QLatin1Char(',')), quoted(table)),
                                          &error);
    if (!stmt) return fail(error);
    StatementLease lease(stmt);
    sqlite3_bind_int64(stmt, 1, rowid);
    if (sqlite3_step(stmt) != SQLITE_ROW) return fail(QStringLiteral("新记录读不回来"));
    for (int k = 0; k < indexes.size(); ++k)
        values[indexes[k]] = sqlvalue::read(stmt, k, columns_->list[indexes[k]].declaredType);
    return true;
}

bool Recordset::writeInsert() {
    const QString mainTable = primaryTable();
    if (mainTable.isEmpty()) return fail(QStringLiteral("记录集没有可写的表"));
    const TableInfo* info = handle_->tableInfo(mainTable);
    Statement insert;
    QStringList names;
    for (int i = 0; i < FieldCount(); ++i) {
        const Column& c = columns_->list[i];
        if (!changed_[i] || c.table.compare(mainTable, Qt::CaseInsensitive) != 0) continue;
        const bool isKey = info && c.origin.compare(info->primaryKey, Qt::CaseInsensitive) == 0;
        // A key of 0 or less (or none) is numbered by the engine.
        if (isKey && (pending_[i].isNull() || pending_[i].toLongLong() <= 0)) continue;
        QVariant stored;
        QString error;
        if (!sqlvalue::toStorage(pending_[i], c.declaredType, stored, &error)) return fail(error);
        names << quoted(c.origin);
        insert.values << stored;
    }
    if (names.isEmpty()) {
        insert.sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quoted(mainTable));
    } else {
        QStringList marks;
        for (qsizetype i = 0; i < names.size(); ++i) marks << QStringLiteral("?");
        insert.sql =
            QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                .arg(quoted(mainTable), names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    }
    QString error;
    if (!run(*handle_, insert, error)) return fail(error);
    Row row;
    row.values = pending_;
    if (!reloadRow(mainTable, sqlite3_last_insert_rowid(handle_->db()), row.values)) return false;
    rows_.push_back(std::move(row));
    ++liveRows_;
    position_ = int(rows_.size()) - 1;
    return true;
}

QStringList Recordset::locateRow(const QString& table, const TableInfo& info, const Row& row,
                                 QVector<QVariant>& values) const {
    // The row is found by its key when the recordset holds it, else by all the
    // values it was read with.
    QStringList where;
    QVector<QVariant> found;
    for (int i = 0; i < FieldCount(); ++i) {
        const Column& c = columns_->list[i];
        if (c.table.compare(table, Qt::CaseInsensitive) != 0) continue;
        QVariant stored;
        sqlvalue::toStorage(cellValue(row, i), c.declaredType, stored, nullptr);
        if (!info.primaryKey.isEmpty() &&
            c.origin.compare(info.primaryKey, Qt::CaseInsensitive) == 0) {
            values << stored;
            return {quoted(c.origin) + QStringLiteral(" IS ?")};
        }
        where << quoted(c.origin) + QStringLiteral(" IS ?");
        found << stored;
    }
    values << found;
    return where;
}

bool Recordset::writeEdit() {
    Row& row = rows_[position_];
    QStringList tables;
    for (int i = 0; i < FieldCount(); ++i)
        if (changed_[i] && !tables.contains(columns_->list[i].table, Qt::CaseInsensitive))
            tables << columns_->list[i].table;
    for (const QString& table : std::as_const(tables)) {
        const TableInfo* info = handle_->tableInfo(table);
        if (!info) return fail(QStringLiteral("找不到表 %1").arg(table));
        Statement update;
        QStringList sets;
        for (int i = 0; i < FieldCount(); ++i) {
            const Column& c = columns_->list[i];
            if (!changed_[i] || c.table.compare(table, Qt::CaseInsensitive) != 0) continue;
            QVariant stored;
            QString error;
            if (!sqlvalue::toStorage(pending_[i], c.declaredType, stored, &error))
                return fail(error);
            sets << quoted(c.origin) + QStringLiteral("=?");
            update.values << stored;
        }
        const QStringList where = locateRow(table, *info, row, update.values);
        if (where.isEmpty()) return fail(QStringLiteral("无法确定要修改的记录"));
        update.sql = QStringLiteral(
                         "UPDATE %1 SET %2 WHERE rowid IN (SELECT rowid FROM %1 WHERE %3 LIMIT 1)")
                         .arg(quoted(table), sets.join(QLatin1Char(',')),
                              where.join(QStringLiteral(" AND ")));
        QString error;
        int changes = 0;
        if (!run(*handle_, update, error, &changes)) return fail(error);
        if (changes != 1) return fail(QStringLiteral("要修改的记录已被删除或修改"));
    }
    // Read back what the engine stored, so the row shows the column types' view of it.
    decodeAll(row);
    for (int i = 0; i < FieldCount(); ++i) {
        if (!changed_[i]) continue;
        QVariant stored;
        sqlvalue::toStorage(pending_[i], columns_->list[i].declaredType, stored, nullptr);
        if (columns_->list[i].declaredType.compare(QLatin1String("DATETIME"),
                                                   Qt::CaseInsensitive) == 0 &&
            !stored.isNull())
            row.values[i] = jetdate::fromCanonical(stored.toString()).value_or(QDateTime());
        else
            row.values[i] = stored.typeId() == QMetaType::LongLong &&
                                    stored.toLongLong() >= INT_MIN && stored.toLongLong() <= INT_MAX
                                ? QVariant(stored.toInt())
                                : stored;
    }
    return true;
}

bool Recordset::Delete() {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    if (lockType_ == adLockReadOnly) return fail(QStringLiteral("记录集是只读的"));
    if (editMode_ == adEditAdd) {
        CancelUpdate();
        return true;
    }
    CancelUpdate();
    if (Eof() || Bof()) return fail(QStringLiteral("没有当前记录"));
    if (!handle_ || !handle_->isOpen()) return fail(QStringLiteral("数据文件已关闭"));
    const QString table = primaryTable();
    const TableInfo* info = handle_->tableInfo(table);
    if (!info) return fail(QStringLiteral("记录集没有可写的表"));
    Statement remove;
    Row& row = rows_[position_];
    const QStringList where = locateRow(table, *info, row, remove.values);
    if (where.isEmpty()) return fail(QStringLiteral("无法确定要删除的记录"));
    remove.sql =
        QStringLiteral("DELETE FROM %1 WHERE rowid IN (SELECT rowid FROM %1 WHERE %2 LIMIT 1)")
            .arg(quoted(table), where.join(QStringLiteral(" AND ")));
    QString error;
    if (!run(*handle_, remove, error)) return fail(error);
    row.deleted = true;
    --liveRows_;
    return true;
}

namespace {
int compareValues(const QVariant& a, const QVariant& b) {
    if (a.typeId() == QMetaType::QDateTime || b.typeId() == QMetaType::QDateTime) {
        const auto x = jetdate::fromVariant(a), y = jetdate::fromVariant(b);
        if (!x || !y) return x ? 1 : (y ? -1 : 0);
        return *x < *y ? -1 : (*x > *y ? 1 : 0);
    }
    bool okA = false, okB = false;
    const double x = a.toDouble(&okA), y = b.toDouble(&okB);
    if (okA && okB && a.typeId() != QMetaType::QString) return x < y ? -1 : (x > y ? 1 : 0);
    return a.toString().compare(b.toString(), Qt::CaseInsensitive);
}

bool likeMatch(const QString& text, const QString& pattern) {
    QString re;
    for (const QChar c : pattern) {
        if (c == QLatin1Char('%') || c == QLatin1Char('*'))
            re += QStringLiteral(".*");
        else if (c == QLatin1Char('_') || c == QLatin1Char('?'))
            re += QLatin1Char('.');
        else
            re += QRegularExpression::escape(QString(c));
    }
    return QRegularExpression(QLatin1Char('^') + re + QLatin1Char('$'),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}
}  // namespace

bool Recordset::Find(const QString& criteria) {
    if (state_ != adStateOpen) return fail(QStringLiteral("记录集已关闭"));
    static const QRegularExpression re(
        QStringLiteral("^\\s*\\[?([\\w.]+)\\]?\\s*(<>|<=|>=|=|<|>|\\bLIKE\\b)\\s*(.+?)\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto m = re.match(criteria);
    if (!m.hasMatch()) return fail(QStringLiteral("查找条件无效：%1").arg(criteria));
    const int column = fieldIndex(m.captured(1));
    if (column < 0) return fail(QStringLiteral("找不到字段 %1").arg(m.captured(1)));
    const QString op = m.captured(2).toUpper();
    QString raw = m.captured(3);
    QVariant target;
    if (raw.size() >= 2 && raw.startsWith(QLatin1Char('\'')) && raw.endsWith(QLatin1Char('\''))) {
        target = raw.mid(1, raw.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
    } else if (raw.size() >= 2 && raw.startsWith(QLatin1Char('#')) &&
               raw.endsWith(QLatin1Char('#'))) {
        const auto d = jetdate::parseLiteral(QStringView(raw).mid(1, raw.size() - 2));
        if (!d) return fail(QStringLiteral("查找条件中的日期无效：%1").arg(raw));
        target = *d;
    } else {
        bool ok = false;
        const double number = raw.toDouble(&ok);
        if (!ok) return fail(QStringLiteral("查找条件无效：%1").arg(criteria));
        target = number;
    }
    if (!flushEdit()) return false;
    int i = visibleIndex(position_ < 0 ? 0 : position_, 1);
    for (; i < int(rows_.size()); i = visibleIndex(i + 1, 1)) {
        const QVariant v = cellValue(rows_[i], column);
        if (v.isNull()) continue;
        bool hit;
        if (op == QLatin1String("LIKE")) {
            hit = likeMatch(v.toString(), target.toString());
        } else {
            const int c = compareValues(v, target);
            hit = op == QLatin1String("=")    ? c == 0
                  : op == QLatin1String("<>") ? c != 0
                  : op == QLatin1String("<")  ? c < 0
                  : op == QLatin1String(">")  ? c > 0
                  : op == QLatin1String("<=") ? c <= 0
                                              : c >= 0;
        }
        if (hit) break;
    }
    position_ = i;
    error_.clear();
    return true;
}

}  // namespace tarvel
