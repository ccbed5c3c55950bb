#pragma once
// The lines a rewrite changes, grouped into hunks with lines of context
// around them, as a unified diff shows them; and that diff's text.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "regex/TextEdits.h"

namespace vantorel {

struct ChangedLine {
    enum class Kind : std::uint8_t { Context, Removed, Added };
    Kind kind = Kind::Context;
    // The line with its line break; without one only as its file's last line.
    std::string text;
    // Where the replaced (Removed) or inserted (Added) text lies in the line.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> marks;

    bool endsWithBreak() const noexcept { return !text.empty() && text.back() == '\n'; }
};

struct ChangeHunk {
    // First line (1-based; for a count of 0 the line before) and line count.
    std::uint64_t oldStart = 0, oldCount = 0;
    std::uint64_t newStart = 0, newCount = 0;
    std::vector<ChangedLine> lines;
};

// The hunks that take `oldText` to `newText`, given where the rewrite made
// them differ; edits that leave their text as it was show no change.
std::vector<ChangeHunk> changeHunks(std::string_view oldText, std::string_view newText, const TextEdits& edits,
                                    unsigned context = 3);

// A file's name as GNU diff writes it in a header, for patch to read back:
// as it is, unless it holds a space, a double quote, a backslash, a control
// character other than DEL or a byte beyond ASCII; then between double
// quotes, with \" \\ \a \b \t \n \v \f \r and three octal digits for the
// other such bytes.
std::string diffFileName(std::string_view name);

// A time as a diff header gives it: "2026-11-25 14:03:59.123456789 +0100",
// in local time.
std::string diffTime(std::int64_t nanoseconds);

// One side of a diff's header: the file's name and the time of its text.
struct DiffSide {
    std::string_view name;
    std::int64_t modifiedNs = 0;
};

// "--- NAME\tTIME\n+++ NAME\tTIME\n" and each hunk as a unified diff gives
// it ("@@ -1,4 +1,4 @@", lines starting with " ", "-" or "+", and
// "\ No newline at end of file" after a last line without a break).
std::string unifiedDiff(const DiffSide& from, const DiffSide& to, const std::vector<ChangeHunk>& hunks);

}  // namespace vantorel
