#pragma once

#include <QVariant>
#include <cstdlib>
#include <type_traits>

struct sqlite3_stmt;

namespace tarvel {

// The rows of a result as the engine returned them: eight bytes per cell plus
// the text, in two buffers that grow in place without being zero-filled, so
// holding a result costs little more than the engine reading it. Cells turn
// into values only when read.
class ResultRows {
public:
    ResultRows() = default;
    ResultRows(const ResultRows&) = delete;
    ResultRows& operator=(const ResultRows&) = delete;

    // Steps `stmt` to its end, keeping every row. Returns the engine's last
    // result code (SQLITE_DONE on success); on any other the rows are dropped.
    int readAll(sqlite3_stmt* stmt);
    // A row of nulls (a row added by the program keeps its values elsewhere);
    // false when memory ran out.
    bool appendNullRow();
    void clear();

    int rowCount() const { return rows_; }
    int columnCount() const { return columns_; }
    // The value of a cell as the program sees it (see sqlvalue::decode).
    QVariant value(int row, int column, int kind) const;

private:
    // An array of trivially copyable items that grows with realloc: large
    // blocks are remapped rather than copied, and nothing is zero-filled.
    template <typename T>
    class Buffer {
        static_assert(std::is_trivially_copyable_v<T>);

    public:
        Buffer() = default;
        Buffer(const Buffer&) = delete;
        Buffer& operator=(const Buffer&) = delete;
        ~Buffer() { std::free(data_); }
        // Room for `more` items at the end; false when memory ran out.
        bool reserveMore(size_t more);
        T* end() { return data_ + size_; }
        void grow(size_t count) { size_ += count; }
        size_t size() const { return size_; }
        const T* data() const { return data_; }
        void clear();

    private:
        T* data_ = nullptr;
        size_t size_ = 0;
        size_t capacity_ = 0;
    };
    // A cell: its engine type and size packed in `meta`; `data` holds a 32-bit
    // integer itself, otherwise the offset of the payload in bytes_.
    struct Cell {
        quint32 data;
        quint32 meta;
    };
    static constexpr int kTypeShift = 29;
    static constexpr quint32 kSizeMask = (1u << kTypeShift) - 1;

    bool readRow(sqlite3_stmt* stmt);

    Buffer<Cell> cells_;
    Buffer<char> bytes_;
    int rows_ = 0;
    int columns_ = 0;
};

}  // namespace tarvel
