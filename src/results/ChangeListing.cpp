#include "results/ChangeListing.h"

#include <algorithm>

namespace vantorel {

std::vector<ChangeRow> changeRows(const std::vector<ChangeHunk>& hunks) {
    std::vector<ChangeRow> rows;
    for (const ChangeHunk& hunk : hunks) {
        ChangeRow head;
        head.kind = ChangeRow::Kind::Hunk;
        head.text = "@@ -" + std::to_string(hunk.oldStart) + "," + std::to_string(hunk.oldCount) + " +" +
                    std::to_string(hunk.newStart) + "," + std::to_string(hunk.newCount) + " @@";
        rows.push_back(std::move(head));
        std::uint64_t oldLine = hunk.oldCount == 0 ? hunk.oldStart + 1 : hunk.oldStart;
        std::uint64_t newLine = hunk.newCount == 0 ? hunk.newStart + 1 : hunk.newStart;
        for (const ChangedLine& line : hunk.lines) {
            ChangeRow row;
            row.kind = line.kind == ChangedLine::Kind::Context   ? ChangeRow::Kind::Context
                       : line.kind == ChangedLine::Kind::Removed ? ChangeRow::Kind::Removed
                                                                 : ChangeRow::Kind::Added;
            if (line.kind != ChangedLine::Kind::Added) row.oldLine = oldLine++;
            if (line.kind != ChangedLine::Kind::Removed) row.newLine = newLine++;
            std::string_view text = line.text;
            if (text.ends_with('\n')) text.remove_suffix(1);
            if (text.ends_with('\r')) text.remove_suffix(1);
            row.text = text;
            const auto length = static_cast<std::uint32_t>(text.size());
            for (const auto& [begin, end] : line.marks)
                if (begin < length) row.marks.emplace_back(begin, std::min(end, length));
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

}  // namespace vantorel
