#include "regex/CodePointSet.h"

#include <algorithm>

namespace vantorel {

CodePointSet CodePointSet::single(char32_t cp) {
    CodePointSet set;
    set.add(cp);
    return set;
}

CodePointSet CodePointSet::span(char32_t first, char32_t last) {
    CodePointSet set;
    set.addRange(first, last);
    return set;
}

void CodePointSet::addRange(char32_t first, char32_t last) {
    if (first > last) return;
    // First range that ends at or after first - 1 (it may touch or overlap).
    auto begin = std::lower_bound(ranges_.begin(), ranges_.end(), first,
                                  [](const Range& r, char32_t cp) { return r.last + 1 < cp; });
    auto end = begin;
    while (end != ranges_.end() && end->first <= last + 1) {
        first = std::min(first, end->first);
        last = std::max(last, end->last);
        ++end;
    }
    begin = ranges_.erase(begin, end);
    ranges_.insert(begin, Range{first, last});
}

void CodePointSet::add(const CodePointSet& other) {
    for (const Range& r : other.ranges_) addRange(r.first, r.last);
}

void CodePointSet::removeRange(char32_t first, char32_t last) {
    if (first > last) return;
    std::vector<Range> kept;
    kept.reserve(ranges_.size() + 1);
    for (const Range& r : ranges_) {
        if (r.last < first || r.first > last) {
            kept.push_back(r);
            continue;
        }
        if (r.first < first) kept.push_back({r.first, first - 1});
        if (r.last > last) kept.push_back({last + 1, r.last});
    }
    ranges_ = std::move(kept);
}

CodePointSet CodePointSet::complement() const {
    CodePointSet result;
    char32_t next = 0;
    for (const Range& r : ranges_) {
        if (r.first > next) result.ranges_.push_back({next, r.first - 1});
        next = r.last + 1;
    }
    if (next <= kMaxCodePoint) result.ranges_.push_back({next, kMaxCodePoint});
    return result;
}

bool CodePointSet::contains(char32_t cp) const noexcept {
    auto it = std::upper_bound(ranges_.begin(), ranges_.end(), cp,
                               [](char32_t value, const Range& r) { return value < r.first; });
    return it != ranges_.begin() && std::prev(it)->last >= cp;
}

std::uint64_t CodePointSet::count() const noexcept {
    std::uint64_t n = 0;
    for (const Range& r : ranges_) n += r.last - r.first + 1;
    return n;
}

}  // namespace vantorel
