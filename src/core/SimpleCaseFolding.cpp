#include "core/SimpleCaseFolding.h"

#include <algorithm>

namespace vantorel {

const SimpleCaseFolding& SimpleCaseFolding::instance() {
    static const SimpleCaseFolding folding;
    return folding;
}

SimpleCaseFolding::SimpleCaseFolding() {
    for (std::size_t start = 0; start < kClasses.size();) {
        std::size_t end = start;
        for (; kClasses[end] != 0; ++end) index_.emplace_back(kClasses[end], static_cast<std::uint32_t>(start));
        start = end + 1;
    }
    std::sort(index_.begin(), index_.end());
}

std::span<const char32_t> SimpleCaseFolding::equivalents(char32_t c) const noexcept {
    const auto found = std::lower_bound(index_.begin(), index_.end(), std::pair<char32_t, std::uint32_t>(c, 0));
    if (found == index_.end() || found->first != c) return {};
    const std::size_t start = found->second;
    std::size_t end = start;
    while (kClasses[end] != 0) ++end;
    return kClasses.subspan(start, end - start);
}

char32_t SimpleCaseFolding::key(char32_t c) const noexcept {
    if (c < 0x80) return c >= U'a' && c <= U'z' ? c - 32 : c;  // the common case, without a search
    const auto members = equivalents(c);
    return members.empty() ? c : members.front();
}

}  // namespace vantorel
