#pragma once
// Where a rewrite changed a text: each edit replaces old[oldBegin, oldEnd)
// by new[newBegin, newEnd). Edits are in order and do not overlap; the text
// between two edits is the same in the old text and the new.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorel {

struct TextEdit {
    std::size_t oldBegin = 0;
    std::size_t oldEnd = 0;
    std::size_t newBegin = 0;
    std::size_t newEnd = 0;
    bool operator==(const TextEdit&) const = default;

    // How much longer the new text is than the old.
    std::int64_t growth() const noexcept {
        return static_cast<std::int64_t>(newEnd - newBegin) - static_cast<std::int64_t>(oldEnd - oldBegin);
    }
};

using TextEdits = std::vector<TextEdit>;

// The edits of two rewrites made in turn (`first` from A to B, `second`
// from B to C) as edits from A to C. Edits that meet or overlap in B become
// one.
TextEdits composeEdits(const TextEdits& first, const TextEdits& second);

}  // namespace vantorel
