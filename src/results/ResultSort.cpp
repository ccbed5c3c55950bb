#include "results/ResultSort.h"

#include <algorithm>
#include <stdexcept>

namespace vantorel {
namespace {

int compareText(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        auto fold = [](char c) {
            const auto u = static_cast<unsigned char>(c);
            return u >= 'A' && u <= 'Z' ? u + ('a' - 'A') : u;
        };
        const int fa = fold(a[i]);
        const int fb = fold(b[i]);
        if (fa != fb) return fa < fb ? -1 : 1;
    }
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    return a.compare(b) < 0 ? -1 : a.compare(b) > 0 ? 1 : 0;
}

template <class T>
int compareValues(T a, T b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

}  // namespace

SortKind sortKindForHeader(std::string_view header) {
    if (header == "File Size" || header == "Matches") return SortKind::Number;
    if (header == "Modified") return SortKind::Date;
    return SortKind::Text;
}

int compareRows(const ResultRow& a, const ResultRow& b, std::size_t column) {
    const std::vector<std::string>& headers = resultColumnHeaders();
    if (column >= headers.size()) throw std::out_of_range("no such column");
    switch (sortKindForHeader(headers[column])) {
        case SortKind::Number:
            return column == 2 ? compareValues(a.matches, b.matches) : compareValues(a.size, b.size);
        case SortKind::Date:
            return compareValues(a.modified, b.modified);
        case SortKind::Text:
            break;
    }
    return column == 0 ? compareText(a.name, b.name) : compareText(a.folder, b.folder);
}

void sortRowOrder(std::vector<std::size_t>& order, const std::vector<ResultRow>& rows, std::size_t column,
                  bool descending) {
    if (column >= resultColumnHeaders().size()) throw std::out_of_range("no such column");
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const int result = compareRows(rows[a], rows[b], column);
        return descending ? result > 0 : result < 0;
    });
}

bool SortDirections::toggle(std::size_t column) {
    if (column >= descending_.size()) descending_.resize(column + 1, false);
    descending_[column] = !descending_[column];
    return descending_[column];
}

}  // namespace vantorel
