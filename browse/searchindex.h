#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "store/recordset.h"

namespace tarvel::lists {

// The search columns of the rows a list has read, held so that a search can
// select rows without asking the engine again: a row is selected when any of
// its columns contains the text, exactly as the search condition selects it.
class SearchIndex {
public:
    // `search` holds the key then the search columns of the same records as
    // `grid`, whose key is in column `gridKey`. False (and nothing held) when
    // the two disagree on the records.
    bool build(Recordset& search, const Recordset& grid, int gridKey);
    void clear();
    bool isBuilt() const { return built_; }

    // The grid rows (ascending) whose columns match `text`. `among`, when
    // given, holds (ascending) every row that can match, which may save work.
    std::vector<int> select(const QString& text, const std::vector<int>* among) const;

private:
    struct Cell {
        quint32 offset;
        qint32 size;  // -1 for NULL, which no LIKE test selects
    };
    bool rowMatches(int row, const class LikePattern& pattern) const;
    std::vector<int> selectPlain(const QByteArray& needle) const;

    bool built_ = false;
    int columns_ = 0;
    int rows_ = 0;
    std::vector<Cell> cells_;  // by grid row, then column
    QByteArray bytes_;
    // The texts in bytes_ row by row: where each row's begin, and its grid row.
    std::vector<quint32> textStart_;
    std::vector<int> textRow_;
};

}  // namespace tarvel::lists
