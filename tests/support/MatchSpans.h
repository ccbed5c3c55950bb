#pragma once
// Where each match of a search begins and ends, in order.

#include <string_view>
#include <utility>
#include <vector>

#include "regex/Regex.h"

namespace vantorel::test {

inline std::vector<std::pair<std::size_t, std::size_t>> matchSpans(const CompiledPattern& pattern,
                                                                    std::string_view text) {
    std::vector<std::pair<std::size_t, std::size_t>> found;
    pattern.forEachMatch(text, [&](const Match& m) {
        found.emplace_back(m.begin(), m.end());
        return true;
    });
    return found;
}

}  // namespace vantorel::test
