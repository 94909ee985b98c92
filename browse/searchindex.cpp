#include "browse/searchindex.h"

#include <string.h>

#include <QHash>
#include <algorithm>

#include "browse/likematch.h"
#include "store/likecontains.h"

namespace tarvel::lists {

void SearchIndex::clear() {
    built_ = false;
    columns_ = 0;
    rows_ = 0;
    cells_.clear();
    cells_.shrink_to_fit();
    textRow_.clear();
    textRow_.shrink_to_fit();
    textStart_.clear();
    textStart_.shrink_to_fit();
    bytes_.clear();
    bytes_.squeeze();
}

bool SearchIndex::build(Recordset& search, const Recordset& grid, int gridKey) {
    clear();
    const int rows = grid.RecordCount();
    if (search.RecordCount() != rows || search.FieldCount() < 2) return false;
    QHash<qint64, int> gridRow;
    gridRow.reserve(rows);
    for (int r = 0; r < rows; ++r) gridRow.insert(grid.valueAt(r, gridKey).toLongLong(), r);
    if (gridRow.size() != rows) return false;

    const int columns = search.FieldCount() - 1;
    cells_.assign(size_t(rows) * size_t(columns), Cell{0, -1});
    std::vector<bool> seen(size_t(rows), false);
    textRow_.reserve(size_t(rows));
    textStart_.reserve(size_t(rows));
    for (int r = 0; r < rows; ++r) {
        const auto at = gridRow.constFind(search.valueAt(r, 0).toLongLong());
        if (at == gridRow.cend() || seen[size_t(*at)]) return clear(), false;
        seen[size_t(*at)] = true;
        textRow_.push_back(*at);
        textStart_.push_back(quint32(bytes_.size()));
        Cell* cell = &cells_[size_t(*at) * size_t(columns)];
        for (int c = 0; c < columns; ++c) {
            const QVariant value = search.valueAt(r, c + 1);
            if (value.isNull()) continue;
            const QByteArray text = likeFolded(value.toString());
            cell[c] = Cell{quint32(bytes_.size()), qint32(text.size())};
            bytes_ += text;
        }
    }
    columns_ = columns;
    rows_ = rows;
    built_ = true;
    return true;
}

bool SearchIndex::rowMatches(int row, const LikePattern& pattern) const {
    const Cell* cell = &cells_[size_t(row) * size_t(columns_)];
    const char* bytes = bytes_.constData();
    for (int c = 0; c < columns_; ++c)
        if (cell[c].size >= 0 && pattern.matches(bytes + cell[c].offset, cell[c].size)) return true;
    return false;
}

std::vector<int> SearchIndex::selectPlain(const QByteArray& needle) const {
    std::vector<char> hit(size_t(rows_), 0);
    const char* base = bytes_.constData();
    const size_t total = size_t(bytes_.size());
    const size_t length = size_t(needle.size());
    size_t from = 0;
    while (from < total) {
        const auto* at =
            static_cast<const char*>(memmem(base + from, total - from, needle.constData(), length));
        if (!at) break;
        const auto offset = quint32(at - base);
        const size_t text =
            size_t(std::upper_bound(textStart_.cbegin(), textStart_.cend(), offset) -
                   textStart_.cbegin() - 1);
        const int row = textRow_[text];
        const Cell* cell = &cells_[size_t(row) * size_t(columns_)];
        bool inside = false;
        for (int c = 0; c < columns_ && !inside; ++c)
            inside = cell[c].size >= 0 && offset >= cell[c].offset &&
                     offset + length <= cell[c].offset + quint32(cell[c].size);
        if (!inside) {  // the place runs from one column into the next
            from = offset + 1;
            continue;
        }
        hit[size_t(row)] = 1;
        from = text + 1 < textStart_.size() ? textStart_[text + 1] : total;
    }
    std::vector<int> rows;
    for (int row = 0; row < rows_; ++row)
        if (hit[size_t(row)]) rows.push_back(row);
    return rows;
}

std::vector<int> SearchIndex::select(const QString& text, const std::vector<int>* among) const {
    // Text without wildcards: one pass of the byte search over every cell.
    if (!text.contains(QLatin1Char('%')) && !text.contains(QLatin1Char('_')))
        return selectPlain(likeFolded(text));
    // Otherwise the very pattern the search condition gives the engine.
    const LikePattern pattern(likeContainsPattern(text), QChar(kLikeEscape));
    std::vector<int> rows;
    if (among) {
        for (int row : *among)
            if (rowMatches(row, pattern)) rows.push_back(row);
    } else {
        for (int row = 0; row < rows_; ++row)
            if (rowMatches(row, pattern)) rows.push_back(row);
    }
    return rows;
}

}  // namespace tarvel::lists
