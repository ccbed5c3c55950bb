#include "results/ChangeHunks.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace vantorel {
namespace {

// Lines of a text found as the changes move forward.
class LineWalker {
public:
    explicit LineWalker(std::string_view text) : text_(text) {}

    // The index of the line holding `position` (at or past the last counted position).
    std::uint64_t lineAt(std::size_t position) {
        while (scanned_ < position) {
            const void* found = std::memchr(text_.data() + scanned_, '\n', position - scanned_);
            if (!found) {
                scanned_ = position;
                break;
            }
            const std::size_t at = static_cast<std::size_t>(static_cast<const char*>(found) - text_.data());
            ++newlines_;
            lineStart_ = at + 1;
            scanned_ = at + 1;
        }
        return newlines_;
    }
    // The start of the line holding the position last asked for.
    std::size_t lineStart() const noexcept { return lineStart_; }

private:
    std::string_view text_;
    std::size_t scanned_ = 0;
    std::uint64_t newlines_ = 0;
    std::size_t lineStart_ = 0;
};

bool atLineStart(std::string_view text, std::size_t position) {
    return position == 0 || text[position - 1] == '\n';
}

// The position after the line break at or after `position`, or the end.
std::size_t nextLineStart(std::string_view text, std::size_t position) {
    const std::size_t at = text.find('\n', position);
    return at == std::string_view::npos ? text.size() : at + 1;
}

// The start of the line `count` lines before the one starting at `start`
// (fewer at the top of the text); `moved` tells how many.
std::size_t linesBack(std::string_view text, std::size_t start, unsigned count, unsigned& moved) {
    moved = 0;
    while (moved < count && start > 0) {
        const std::size_t previous = start - 1 == 0 ? std::string_view::npos : text.rfind('\n', start - 2);
        start = previous == std::string_view::npos ? 0 : previous + 1;
        ++moved;
    }
    return start;
}

// A run of changed lines: old lines [firstLine, endLine) at old[oldBegin,
// oldEnd) became new[newBegin, newEnd), through edits [firstEdit, endEdit).
struct Block {
    std::uint64_t firstLine = 0, endLine = 0;
    std::size_t oldBegin = 0, oldEnd = 0;
    std::size_t newBegin = 0, newEnd = 0;
    std::size_t firstEdit = 0, endEdit = 0;
};

std::vector<Block> changedBlocks(std::string_view oldText, std::string_view newText, const TextEdits& edits) {
    const std::uint64_t lineCount = static_cast<std::uint64_t>(std::count(oldText.begin(), oldText.end(), '\n')) +
                                    (oldText.empty() || oldText.back() == '\n' ? 0 : 1);
    std::vector<Block> blocks;
    LineWalker lines(oldText);
    std::int64_t grown = 0;  // by the edits before the current block
    std::int64_t blockGrowth = 0;
    for (std::size_t e = 0; e < edits.size(); ++e) {
        const TextEdit& edit = edits[e];
        if (oldText.substr(edit.oldBegin, edit.oldEnd - edit.oldBegin) ==
            newText.substr(edit.newBegin, edit.newEnd - edit.newBegin))
            continue;  // replaced by the same text
        const std::uint64_t firstLine = lines.lineAt(edit.oldBegin);
        const std::size_t firstStart = lines.lineStart();
        std::uint64_t endLine;
        std::size_t endStart;
        if (atLineStart(oldText, edit.oldEnd) && atLineStart(newText, edit.newEnd)) {
            endLine = lines.lineAt(edit.oldEnd);  // the next line is untouched
            endStart = edit.oldEnd;
        } else {
            endLine = std::min(lines.lineAt(edit.oldEnd) + 1, lineCount);
            endStart = nextLineStart(oldText, edit.oldEnd);
        }
        if (!blocks.empty() && firstLine <= blocks.back().endLine) {
            Block& block = blocks.back();
            block.endLine = std::max(block.endLine, endLine);
            block.oldEnd = std::max(block.oldEnd, endStart);
        } else {
            if (!blocks.empty()) {
                Block& done = blocks.back();
                done.newEnd = static_cast<std::size_t>(static_cast<std::int64_t>(done.oldEnd) + grown + blockGrowth);
                grown += blockGrowth;
                blockGrowth = 0;
            }
            Block block;
            block.firstLine = firstLine;
            block.endLine = endLine;
            block.oldBegin = firstStart;
            block.oldEnd = endStart;
            block.newBegin = static_cast<std::size_t>(static_cast<std::int64_t>(firstStart) + grown);
            block.firstEdit = e;
            blocks.push_back(block);
        }
        blocks.back().endEdit = e + 1;
        blockGrowth += edit.growth();
    }
    if (!blocks.empty()) {
        Block& done = blocks.back();
        done.newEnd = static_cast<std::size_t>(static_cast<std::int64_t>(done.oldEnd) + grown + blockGrowth);
    }
    return blocks;
}

// Appends the lines of text[begin, end), marking where the edits' ranges
// (old or new side) cross them.
void addLines(std::vector<ChangedLine>& out, ChangedLine::Kind kind, std::string_view text, std::size_t begin,
              std::size_t end, const TextEdits& edits, std::size_t firstEdit, std::size_t endEdit, bool newSide) {
    std::size_t e = firstEdit;
    while (begin < end) {
        const std::size_t lineEnd = std::min(nextLineStart(text, begin), end);
        ChangedLine line{kind, std::string(text.substr(begin, lineEnd - begin)), {}};
        for (; e < endEdit; ++e) {
            const std::size_t from = newSide ? edits[e].newBegin : edits[e].oldBegin;
            const std::size_t to = newSide ? edits[e].newEnd : edits[e].oldEnd;
            if (from >= lineEnd) break;
            const std::size_t markBegin = std::max(from, begin), markEnd = std::min(to, lineEnd);
            if (markEnd > markBegin)
                line.marks.emplace_back(static_cast<std::uint32_t>(markBegin - begin),
                                        static_cast<std::uint32_t>(markEnd - begin));
            if (to > lineEnd) break;  // goes on into the next line
        }
        out.push_back(std::move(line));
        begin = lineEnd;
    }
}

void addContext(std::vector<ChangedLine>& out, std::string_view text, std::size_t begin, std::size_t end) {
    while (begin < end) {
        const std::size_t lineEnd = std::min(nextLineStart(text, begin), end);
        out.push_back({ChangedLine::Kind::Context, std::string(text.substr(begin, lineEnd - begin)), {}});
        begin = lineEnd;
    }
}

std::uint64_t linesIn(std::string_view text, std::size_t begin, std::size_t end) {
    if (begin >= end) return 0;
    const std::string_view part = text.substr(begin, end - begin);
    return static_cast<std::uint64_t>(std::count(part.begin(), part.end(), '\n')) + (part.back() == '\n' ? 0 : 1);
}

}  // namespace

std::vector<ChangeHunk> changeHunks(std::string_view oldText, std::string_view newText, const TextEdits& edits,
                                    unsigned context) {
    const std::vector<Block> blocks = changedBlocks(oldText, newText, edits);
    std::vector<ChangeHunk> hunks;
    std::int64_t lineGrowth = 0;  // new lines minus old lines before the current block
    for (std::size_t b = 0; b < blocks.size();) {
        // The blocks whose gaps are small enough to share their context.
        std::size_t last = b;
        while (last + 1 < blocks.size() && blocks[last + 1].firstLine - blocks[last].endLine <= 2 * context) ++last;
        ChangeHunk hunk;
        unsigned before = 0;
        const std::size_t contextStart = linesBack(oldText, blocks[b].oldBegin, context, before);
        const std::uint64_t first = blocks[b].firstLine - before;
        addContext(hunk.lines, oldText, contextStart, blocks[b].oldBegin);
        hunk.oldCount = hunk.newCount = before;
        const std::int64_t growthBefore = lineGrowth;
        for (std::size_t k = b; k <= last; ++k) {
            const Block& block = blocks[k];
            if (k > b) {
                addContext(hunk.lines, oldText, blocks[k - 1].oldEnd, block.oldBegin);
                const std::uint64_t between = block.firstLine - blocks[k - 1].endLine;
                hunk.oldCount += between;
                hunk.newCount += between;
            }
            addLines(hunk.lines, ChangedLine::Kind::Removed, oldText, block.oldBegin, block.oldEnd, edits,
                     block.firstEdit, block.endEdit, false);
            addLines(hunk.lines, ChangedLine::Kind::Added, newText, block.newBegin, block.newEnd, edits,
                     block.firstEdit, block.endEdit, true);
            const std::uint64_t oldLines = block.endLine - block.firstLine;
            const std::uint64_t newLines = linesIn(newText, block.newBegin, block.newEnd);
            hunk.oldCount += oldLines;
            hunk.newCount += newLines;
            lineGrowth += static_cast<std::int64_t>(newLines) - static_cast<std::int64_t>(oldLines);
        }
        std::size_t contextEnd = blocks[last].oldEnd;
        for (unsigned after = 0; after < context && contextEnd < oldText.size(); ++after) {
            contextEnd = nextLineStart(oldText, contextEnd);
            ++hunk.oldCount;
            ++hunk.newCount;
        }
        addContext(hunk.lines, oldText, blocks[last].oldEnd, contextEnd);
        hunk.oldStart = hunk.oldCount == 0 ? first : first + 1;
        const std::uint64_t newFirst = static_cast<std::uint64_t>(static_cast<std::int64_t>(first) + growthBefore);
        hunk.newStart = hunk.newCount == 0 ? newFirst : newFirst + 1;
        hunks.push_back(std::move(hunk));
        b = last + 1;
    }
    return hunks;
}

namespace {

std::string range(std::uint64_t start, std::uint64_t count) {
    return count == 1 ? std::to_string(start) : std::to_string(start) + "," + std::to_string(count);
}

}  // namespace

std::string diffFileName(std::string_view name) {
    static constexpr std::string_view kEscaped = "\"\\\a\b\t\n\v\f\r", kLetters = "\"\\abtnvfr";
    std::string quoted = "\"";
    bool needed = false;
    for (const char c : name) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (const std::size_t at = kEscaped.find(c); at != std::string_view::npos) {
            quoted += '\\';
            quoted += kLetters[at];
            needed = true;
        } else if (byte < 0x20 || byte >= 0x80) {
            const char octal[] = {'\\', static_cast<char>('0' + (byte >> 6)), static_cast<char>('0' + ((byte >> 3) & 7)),
                                  static_cast<char>('0' + (byte & 7))};
            quoted.append(octal, sizeof octal);
            needed = true;
        } else {
            quoted += c;
            needed = needed || c == ' ';
        }
    }
    return needed ? quoted + '"' : std::string(name);
}

std::string diffTime(std::int64_t nanoseconds) {
    std::int64_t seconds = nanoseconds / 1000000000, fraction = nanoseconds % 1000000000;
    if (fraction < 0) {
        fraction += 1000000000;
        --seconds;
    }
    const std::time_t time = static_cast<std::time_t>(seconds);
    std::tm local{};
    ::localtime_r(&time, &local);
    char date[32], zone[8], text[64];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &local);
    std::strftime(zone, sizeof zone, "%z", &local);
    std::snprintf(text, sizeof text, "%s.%09lld %s", date, static_cast<long long>(fraction), zone);
    return text;
}

std::string unifiedDiff(const DiffSide& from, const DiffSide& to, const std::vector<ChangeHunk>& hunks) {
    std::string out;
    out += "--- " + diffFileName(from.name) + '\t' + diffTime(from.modifiedNs) + '\n';
    out += "+++ " + diffFileName(to.name) + '\t' + diffTime(to.modifiedNs) + '\n';
    for (const ChangeHunk& hunk : hunks) {
        out += "@@ -" + range(hunk.oldStart, hunk.oldCount) + " +" + range(hunk.newStart, hunk.newCount) + " @@\n";
        for (const ChangedLine& line : hunk.lines) {
            out += line.kind == ChangedLine::Kind::Context ? ' ' : line.kind == ChangedLine::Kind::Removed ? '-' : '+';
            out += line.text;
            if (!line.endsWithBreak()) out += "\n\\ No newline at end of file\n";
        }
    }
    return out;
}

}  // namespace vantorel
