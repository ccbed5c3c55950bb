#pragma once
// A file's changes as a window lists them, one row a line: each hunk's head,
// then its lines with their numbers in the old and the new text (none where
// a line is only on one side), the line break left out, and where the
// replaced or inserted text lies.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "results/ChangeHunks.h"

namespace vantorel {

struct ChangeRow {
    enum class Kind : std::uint8_t { Hunk, Context, Removed, Added };
    Kind kind = Kind::Context;
    std::uint64_t oldLine = 0;  // 1-based; 0: not on this side
    std::uint64_t newLine = 0;
    std::string text;           // UTF-8; a hunk's head: "@@ -1,4 +1,4 @@"
    std::vector<std::pair<std::uint32_t, std::uint32_t>> marks;
};

std::vector<ChangeRow> changeRows(const std::vector<ChangeHunk>& hunks);

}  // namespace vantorel
