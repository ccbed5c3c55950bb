#pragma once
// Where a rewrite changed a text: each edit replaces old[oldBegin, oldEnd)
// by new[newBegin, newEnd). Edits are in order and do not overlap; the text
// between two edits is the same in the old text and the new.

#include <cstddef>
#include <vector>

namespace vantorel {

struct TextEdit {
    std::size_t oldBegin = 0;
    std::size_t oldEnd = 0;
    std::size_t newBegin = 0;
    std::size_t newEnd = 0;
    bool operator==(const TextEdit&) const = default;
};

using TextEdits = std::vector<TextEdit>;

// The edits of two rewrites made in turn (`first` from A to B, `second`
// from B to C) as edits from A to C. Edits that meet or overlap in B become
// one.
TextEdits composeEdits(const TextEdits& first, const TextEdits& second);

}  // namespace vantorel
