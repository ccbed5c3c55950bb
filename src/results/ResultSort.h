#pragma once
// Sorting the results list by a column: numbers as numbers, dates as dates,
// text as text. The rows are never rewritten: a sort computes the order in
// which they are shown.

#include <cstddef>
#include <string_view>
#include <vector>

#include "results/ResultRow.h"

namespace vantorel {

enum class SortKind { Text, Number, Date };

// "File Size" and "Matches" sort as numbers, "Modified" as dates, any other
// header as text.
SortKind sortKindForHeader(std::string_view header);

// Compares two rows by a column (0-based, in the order of
// resultColumnHeaders()): negative, zero or positive. Text compares without
// regard to ASCII case first, then byte by byte.
int compareRows(const ResultRow& a, const ResultRow& b, std::size_t column);

// Reorders `order` (indices into `rows`) by the column. Rows that compare
// equal keep their relative order.
void sortRowOrder(std::vector<std::size_t>& order, const std::vector<ResultRow>& rows, std::size_t column,
                  bool descending);

// One direction flag per column: the first click on a column sorts it
// descending, each later click reverses it; each column keeps its own flag.
class SortDirections {
public:
    explicit SortDirections(std::size_t columns = resultColumnHeaders().size()) : descending_(columns, false) {}
    // Flips the column's flag and returns true when the sort is now descending.
    bool toggle(std::size_t column);
    bool isDescending(std::size_t column) const { return column < descending_.size() && descending_[column]; }

private:
    std::vector<bool> descending_;
};

}  // namespace vantorel
