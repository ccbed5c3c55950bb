#pragma once
// The match preview: a file's hits in their surrounding text, as styled runs
// (context black, hits red bold, line numbers and elisions blue bold, file
// headers grey bold). Two forms: one page of hits of a selected file, and a
// file's section of the combined preview built during a run.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/StyledText.h"
#include "core/TextEncoding.h"

namespace vantorel {

class CompiledPattern;

struct PreviewSettings {
    long hitsPerPage = 100;   // hits per page and per file section
    long charsAround = 25;    // context before the first and after the last hit of a line
    long charsBetween = 50;   // longest gap between two hits of a line shown whole
    bool showLineNumbers = true;
};

// One page of hits of one file.
struct PreviewPage {
    StyledText text;
    std::uint64_t total = 0;      // hits in the whole file
    std::uint64_t first = 1;      // first hit of the page, 1-based
    std::uint64_t lastShown = 0;  // last hit shown (first - 1 when none)
    bool backEnabled = false;     // a page before this one exists
    bool forwardEnabled = false;  // a page after this one exists
};

class MatchPreview {
public:
    explicit MatchPreview(PreviewSettings settings);

    const PreviewSettings& settings() const noexcept { return settings_; }

    // The section of the combined preview: a grey bold header naming the path
    // and the count, then hits 1 to HitsPerPage, then a blank line.
    StyledText section(const std::string& path, std::string_view text, TextEncoding encoding,
                       const CompiledPattern& pattern) const;

    // Hits `first` to `last` (1-based, inclusive) of a file's text.
    PreviewPage page(std::string_view text, TextEncoding encoding, const CompiledPattern& pattern,
                     std::uint64_t first, std::uint64_t last) const;

    // Reads the file and builds the page with the pattern (an ECMAScript
    // pattern as the run left it; empty means no highlighting). Nothing when
    // the file cannot be read or the pattern cannot be used.
    std::optional<PreviewPage> pageOfFile(const std::string& path, const std::string& pattern,
                                          bool ignoreCase, std::uint64_t first, std::uint64_t last) const;
    // The section of one file read now, for a combined preview that left it out.
    std::optional<StyledText> sectionOfFile(const std::string& path, const std::string& pattern,
                                            bool ignoreCase) const;

    // The heading line of a page: " Results " first "-" last ": " path.
    static std::string caption(std::uint64_t first, std::uint64_t lastShown, const std::string& shownPath);
    // A path as text to show: UTF-8 as it is, other bytes as Windows-1252.
    static std::string displayPath(const std::string& path);
    // What the pane shows once combined mode is switched on again.
    static StyledText staleNotice();
    // What ends a combined preview that holds as much as it may.
    static StyledText fullNotice();

private:
    std::uint64_t renderHits(std::string_view text, TextEncoding encoding, const CompiledPattern& pattern,
                             std::uint64_t first, std::uint64_t last, StyledText& out) const;

    PreviewSettings settings_;
};

}  // namespace vantorel
