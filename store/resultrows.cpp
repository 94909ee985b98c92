#include "store/resultrows.h"

#include <sqlite3.h>

#include <cstring>
#include <limits>

#include "store/sqlvalue.h"

namespace tarvel {

template <typename T>
bool ResultRows::Buffer<T>::reserveMore(size_t more) {
    if (capacity_ - size_ >= more) return true;
    const size_t capacity =
        std::max(size_ + more, std::max<size_t>(capacity_ * 2, 512 / sizeof(T)));
    T* data = static_cast<T*>(std::realloc(data_, capacity * sizeof(T)));
    if (!data) return false;
    data_ = data;
    capacity_ = capacity;
    return true;
}

template <typename T>
void ResultRows::Buffer<T>::clear() {
    std::free(data_);
    data_ = nullptr;
    size_ = capacity_ = 0;
}

int ResultRows::readAll(sqlite3_stmt* stmt) {
    clear();
    columns_ = sqlite3_column_count(stmt);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        if (!readRow(stmt)) {
            rc = SQLITE_NOMEM;
            break;
        }
    }
    if (rc != SQLITE_DONE) clear();
    return rc;
}

bool ResultRows::readRow(sqlite3_stmt* stmt) {
    if (!cells_.reserveMore(size_t(columns_)) || rows_ == std::numeric_limits<int>::max())
        return false;
    Cell* cell = cells_.end();
    for (int i = 0; i < columns_; ++i, ++cell) {
        const int type = sqlite3_column_type(stmt, i);
        const char* payload = nullptr;
        size_t size = 0;
        qint64 integer = 0;
        double real = 0;
        if (type == SQLITE_INTEGER) {
            integer = sqlite3_column_int64(stmt, i);
            if (integer >= std::numeric_limits<qint32>::min() &&
                integer <= std::numeric_limits<qint32>::max()) {
                cell->data = quint32(qint32(integer));
                cell->meta = quint32(type) << kTypeShift;
                continue;
            }
            payload = reinterpret_cast<const char*>(&integer);
            size = sizeof integer;
        } else if (type == SQLITE_FLOAT) {
            real = sqlite3_column_double(stmt, i);
            payload = reinterpret_cast<const char*>(&real);
            size = sizeof real;
        } else if (type == SQLITE_TEXT) {
            payload = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
            size = size_t(sqlite3_column_bytes(stmt, i));
        } else if (type == SQLITE_BLOB) {
            payload = static_cast<const char*>(sqlite3_column_blob(stmt, i));
            size = size_t(sqlite3_column_bytes(stmt, i));
        }
        // Offsets are 32-bit: a result of more than 4 GiB of text is refused.
        if (size > kSizeMask || bytes_.size() + size > std::numeric_limits<quint32>::max() ||
            !bytes_.reserveMore(size))
            return false;
        cell->data = quint32(bytes_.size());
        cell->meta = quint32(type) << kTypeShift | quint32(size);
        if (size) std::memcpy(bytes_.end(), payload, size);
        bytes_.grow(size);
    }
    cells_.grow(size_t(columns_));
    ++rows_;
    return true;
}

bool ResultRows::appendNullRow() {
    if (!cells_.reserveMore(size_t(columns_))) return false;
    Cell* cell = cells_.end();
    for (int i = 0; i < columns_; ++i) cell[i] = {0, quint32(SQLITE_NULL) << kTypeShift};
    cells_.grow(size_t(columns_));
    ++rows_;
    return true;
}

void ResultRows::clear() {
    cells_.clear();
    bytes_.clear();
    rows_ = 0;
}

QVariant ResultRows::value(int row, int column, int kind) const {
    const Cell& c = cells_.data()[size_t(row) * size_t(columns_) + size_t(column)];
    const int type = int(c.meta >> kTypeShift);
    const int size = int(c.meta & kSizeMask);
    const char* payload = bytes_.data() + c.data;
    switch (type) {
        case SQLITE_INTEGER: {
            qint64 integer = qint32(c.data);
            if (size) std::memcpy(&integer, payload, sizeof integer);
            return sqlvalue::decode(type, integer, 0, nullptr, 0, kind);
        }
        case SQLITE_FLOAT: {
            double real;
            std::memcpy(&real, payload, sizeof real);
            return sqlvalue::decode(type, 0, real, nullptr, 0, kind);
        }
        case SQLITE_TEXT:
        case SQLITE_BLOB:
            return sqlvalue::decode(type, 0, 0, payload, size, kind);
        default:
            return QVariant();
    }
}

}  // namespace tarvel
