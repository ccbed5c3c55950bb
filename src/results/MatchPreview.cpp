#include "results/MatchPreview.h"

#include <algorithm>
#include <cstdio>
#include <exception>

#include "files/FileText.h"
#include "regex/Regex.h"

namespace vantorel {
namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The position `n` characters after `pos`, not beyond `limit`.
std::size_t forwardChars(std::string_view text, std::size_t pos, long n, std::size_t limit,
                         TextEncoding encoding) {
    limit = std::min(limit, text.size());
    if (n <= 0 || pos >= limit) return std::min(pos, limit);
    if (encoding == TextEncoding::Windows1252)
        return static_cast<std::size_t>(n) >= limit - pos ? limit : pos + static_cast<std::size_t>(n);
    while (n > 0 && pos < limit) {
        ++pos;
        while (pos < limit && isContinuation(text[pos])) ++pos;
        --n;
    }
    return pos;
}

// The position `n` characters before `pos`, not before 0.
std::size_t backChars(std::string_view text, std::size_t pos, long n, TextEncoding encoding) {
    if (n <= 0) return pos;
    if (encoding == TextEncoding::Windows1252)
        return static_cast<std::size_t>(n) >= pos ? 0 : pos - static_cast<std::size_t>(n);
    while (n > 0 && pos > 0) {
        --pos;
        while (pos > 0 && isContinuation(text[pos])) --pos;
        --n;
    }
    return pos;
}

// Appends pieces, joining pieces of one style into one run.
class Writer {
public:
    Writer(StyledText& out, TextEncoding encoding) : out_(out), encoding_(encoding) {}

    void bytes(std::string_view piece, std::uint32_t colour, bool bold) {
        if (!piece.empty()) utf8(toUtf8(piece, encoding_), colour, bold);
    }
    void utf8(const std::string& piece, std::uint32_t colour, bool bold) {
        if (piece.empty()) return;
        if (!out_.empty() && out_.back().colour == colour && out_.back().bold == bold)
            out_.back().text += piece;
        else
            out_.push_back(StyledRun{piece, colour, bold});
    }

private:
    StyledText& out_;
    TextEncoding encoding_;
};

// Line numbers by the file's own line-break form: "\r\n" when the text holds
// one, else "\r" when it holds one, else "\n". Positions only ever grow, so
// the text is scanned once.
class LineCounter {
public:
    explicit LineCounter(std::string_view text) : text_(text) {
        if (text.find("\r\n") != std::string_view::npos) brk_ = "\r\n";
        else if (text.find('\r') != std::string_view::npos) brk_ = "\r";
        else brk_ = "\n";
    }

    // The 1-based line of the character at `pos`.
    std::uint64_t lineAt(std::size_t pos) {
        while (!exhausted_) {
            const std::size_t found = text_.find(brk_, scanned_);
            if (found == std::string_view::npos) {
                exhausted_ = true;
                break;
            }
            if (found + brk_.size() > pos) {
                scanned_ = found;
                break;
            }
            ++breaks_;
            scanned_ = found + brk_.size();
        }
        return breaks_ + 1;
    }

private:
    std::string_view text_;
    std::string_view brk_;
    std::size_t scanned_ = 0;
    std::uint64_t breaks_ = 0;
    bool exhausted_ = false;
};

std::string paddedLineNumber(std::uint64_t line) {
    std::string digits = std::to_string(line);
    if (digits.size() < 8) digits.insert(0, 8 - digits.size(), '0');
    return digits;
}

std::size_t firstLineBreak(std::string_view text, std::size_t from, std::size_t to) {
    const std::size_t found = text.substr(0, to).find_first_of("\r\n", from);
    return found == std::string_view::npos ? to : found;
}

}  // namespace

MatchPreview::MatchPreview(PreviewSettings settings) : settings_(settings) {
    settings_.hitsPerPage = std::max(1L, settings_.hitsPerPage);
    settings_.charsAround = std::max(0L, settings_.charsAround);
    settings_.charsBetween = std::max(0L, settings_.charsBetween);
}

std::uint64_t MatchPreview::renderHits(std::string_view text, TextEncoding encoding,
                                       const CompiledPattern& pattern, std::uint64_t first,
                                       std::uint64_t last, StyledText& out) const {
    Writer write(out, encoding);
    LineCounter lines(text);
    const long around = settings_.charsAround;
    const long between = settings_.charsBetween;
    std::uint64_t count = 0;
    std::uint64_t previousLine = 0;
    std::size_t end = 0;  // end of the previous hit
    bool rendered = false;

    // The rest of a hit's line: up to CharsAround characters, cut before a line break.
    auto restOfLine = [&](std::size_t from) {
        const std::size_t limit = forwardChars(text, from, around, text.size(), encoding);
        write.bytes(text.substr(from, firstLineBreak(text, from, limit) - from), kBlack, false);
    };

    pattern.forEachMatch(text, [&](const Match& match) {
        ++count;
        if (count < first || count > last) return true;  // the total is still counted
        const std::size_t start = match.begin();
        const std::uint64_t line = lines.lineAt(start);
        if (rendered && line <= previousLine) {
            // Another hit on the same line: the gap whole, or its two ends.
            const std::size_t gapEnd = std::max(start, end);
            const std::size_t from = std::min(end, gapEnd);
            if (forwardChars(text, from, between, gapEnd, encoding) == gapEnd) {  // at most CharsBetween
                write.bytes(text.substr(from, gapEnd - from), kBlack, false);
            } else {
                const long half = between / 2;
                const std::size_t headEnd = forwardChars(text, from, half, gapEnd, encoding);
                write.bytes(text.substr(from, headEnd - from), kBlack, false);
                write.utf8(" ... ", kBlue, true);
                const std::size_t tailStart = std::max(headEnd, backChars(text, gapEnd, half, encoding));
                write.bytes(text.substr(tailStart, gapEnd - tailStart), kBlack, false);
            }
        } else {
            if (rendered) {
                restOfLine(end);
                write.utf8("\r\n", kBlack, false);
            }
            if (settings_.showLineNumbers) write.utf8(paddedLineNumber(line) + " | ", kBlue, true);
            std::string_view leadIn = text.substr(backChars(text, start, around, encoding),
                                                  start - backChars(text, start, around, encoding));
            const std::size_t lastBreak = leadIn.find_last_of("\r\n");
            if (lastBreak != std::string_view::npos) leadIn.remove_prefix(lastBreak + 1);
            write.bytes(leadIn, kBlack, false);
        }
        write.bytes(match.value(), kRed, true);
        end = match.end();
        previousLine = line;
        rendered = true;
        return true;
    });
    if (rendered) restOfLine(end);
    return count;
}

StyledText MatchPreview::section(const std::string& path, std::string_view text, TextEncoding encoding,
                                 const CompiledPattern& pattern) const {
    StyledText body;
    const auto hits = static_cast<std::uint64_t>(settings_.hitsPerPage);
    const std::uint64_t total = renderHits(text, encoding, pattern, 1, hits, body);
    std::string header = displayPath(path) + "  (" + std::to_string(total) + " Found";
    if (total > hits) header += " - " + std::to_string(hits) + " Shown";
    header += ")\r\n";
    StyledText out;
    out.reserve(body.size() + 2);
    out.push_back(StyledRun{header, kGrey, true});
    for (StyledRun& run : body) out.push_back(std::move(run));
    Writer(out, TextEncoding::Utf8).utf8("\r\n\r\n", kBlack, false);
    return out;
}

PreviewPage MatchPreview::page(std::string_view text, TextEncoding encoding, const CompiledPattern& pattern,
                               std::uint64_t first, std::uint64_t last) const {
    PreviewPage page;
    page.first = std::max<std::uint64_t>(1, first);
    last = std::max(last, page.first - 1);
    page.total = renderHits(text, encoding, pattern, page.first, last, page.text);
    page.lastShown = std::min(last, page.total);
    page.forwardEnabled = page.total > last;
    page.backEnabled = page.first != 1;
    return page;
}

std::optional<PreviewPage> MatchPreview::pageOfFile(const std::string& path, const std::string& pattern,
                                                    bool ignoreCase, std::uint64_t first,
                                                    std::uint64_t last) const {
    try {
        FileText::Result read = FileText::read(path);
        if (read.status != FileText::Status::Ok) return std::nullopt;
        if (pattern.empty()) {
            PreviewPage page;
            page.first = std::max<std::uint64_t>(1, first);
            page.backEnabled = page.first != 1;
            return page;
        }
        const Regex regex(pattern, ignoreCase);
        const FileText& text = read.text;
        return page(text.bytes(), text.encoding(), regex.forEncoding(text.encoding()), first, last);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<StyledText> MatchPreview::sectionOfFile(const std::string& path, const std::string& pattern,
                                                      bool ignoreCase) const {
    try {
        FileText::Result read = FileText::read(path);
        if (read.status != FileText::Status::Ok || pattern.empty()) return std::nullopt;
        const Regex regex(pattern, ignoreCase);
        const FileText& text = read.text;
        return section(path, text.bytes(), text.encoding(), regex.forEncoding(text.encoding()));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string MatchPreview::caption(std::uint64_t first, std::uint64_t lastShown, const std::string& shownPath) {
    return " Results " + std::to_string(first) + "-" + std::to_string(lastShown) + ": " + shownPath;
}

std::string MatchPreview::displayPath(const std::string& path) {
    return isValidUtf8(path) ? path : windows1252ToUtf8(path);
}

StyledText MatchPreview::staleNotice() {
    return {StyledRun{"Preview will not be updated until the search is performed again.", kBlack, false}};
}

StyledText MatchPreview::fullNotice() {
    return {StyledRun{"The preview holds the files above. Click a later file in the list to see its matches here.\r\n\r\n",
                      kGrey, true}};
}

}  // namespace vantorel
