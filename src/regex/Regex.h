#pragma once
// A regular expression with ECMAScript's meaning, compiled by PCRE2 (with JIT)
// once for UTF-8 text and once for Windows-1252 text. One Regex serves every
// file and every thread of a run; matching state lives on the caller's stack.

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "regex/AsciiLiteralFinder.h"
#include "core/PatternError.h"
#include "core/TextEncoding.h"

namespace vantorel {

// While a MatchStop lives on a thread, that thread's searches look at the
// flag every few hundredths of a second, also inside one long search, and
// throw MatchStopped once it is set. The text is searched in slices (PCRE2's
// offset limit): a slice is where matches may start, not where they end, so
// the matches found are the same.
class MatchStop {
public:
    explicit MatchStop(const std::atomic<bool>& stop) noexcept;
    ~MatchStop();
    MatchStop(const MatchStop&) = delete;
    MatchStop& operator=(const MatchStop&) = delete;

private:
    const std::atomic<bool>* previous_;
};

class MatchStopped : public std::exception {
public:
    const char* what() const noexcept override { return "stopped"; }
};

// One match of a global search, valid during the callback that receives it.
class Match {
public:
    Match(std::string_view subject, const std::size_t* ovector, std::uint32_t pairs)
        : subject_(subject), ovector_(ovector), pairs_(pairs) {}
    std::size_t begin() const noexcept { return ovector_[0]; }
    std::size_t end() const noexcept { return ovector_[1]; }
    std::string_view value() const noexcept { return subject_.substr(begin(), end() - begin()); }
    std::string_view subject() const noexcept { return subject_; }
    // Group n (1-based) or nothing when it did not take part in the match.
    std::optional<std::string_view> group(std::uint32_t n) const noexcept;

private:
    std::string_view subject_;
    const std::size_t* ovector_;
    std::uint32_t pairs_;
};

// The pattern compiled for text of one encoding.
class CompiledPattern {
public:
    CompiledPattern(std::string_view ecmaPattern, TextEncoding encoding, bool ignoreCase);
    ~CompiledPattern();
    CompiledPattern(const CompiledPattern&) = delete;
    CompiledPattern& operator=(const CompiledPattern&) = delete;

    TextEncoding encoding() const noexcept { return encoding_; }
    std::uint32_t captureCount() const noexcept { return captureCount_; }
    bool hasNamedGroups() const noexcept { return !groupNames_.empty(); }
    // The number of the group with this ECMAScript name, or 0.
    std::uint32_t groupNumber(std::string_view name) const noexcept;
    // Each named group: its ECMAScript name and its number.
    const std::vector<std::pair<std::string, std::uint32_t>>& groupNames() const noexcept { return groupNames_; }

    // Every match in order, by ECMAScript's global rule: after a match ending
    // at e the search goes on from e; after an empty match at p, from p plus
    // one character. `onMatch` returns false to stop early.
    void forEachMatch(std::string_view subject,
                      const std::function<bool(const Match&)>& onMatch) const;
    std::uint64_t countMatches(std::string_view subject) const;

    // What PCRE2 found to speed up the search for a match start.
    struct SearchHints {
        std::uint32_t firstCodeType = 0;  // PCRE2_INFO_FIRSTCODETYPE: 1 a known first code unit
        std::uint32_t firstCodeUnit = 0;
        bool hasRequiredCodeUnit = false;  // PCRE2_INFO_LASTCODETYPE is 1
        std::uint32_t requiredCodeUnit = 0;
        bool hasStartBitmap = false;
        std::uint32_t minLength = 0;
    };
    SearchHints searchHints() const;
    // The pattern as given to PCRE2.
    const std::string& pcre2Pattern() const noexcept { return pcre2Pattern_; }

private:
    struct Code;
    std::unique_ptr<Code> code_;
    TextEncoding encoding_;
    std::uint32_t captureCount_ = 0;
    std::string pcre2Pattern_;
    std::vector<std::pair<std::string, std::uint32_t>> groupNames_;  // ECMAScript name, number
    // A case-insensitive ASCII literal is searched without PCRE2.
    std::optional<AsciiLiteralFinder> literal_;

    template <class OnMatch>
    void run(std::string_view subject, OnMatch&& onMatch) const;
};

class Regex {
public:
    // Throws PatternError when the pattern cannot be used.
    Regex(std::string_view ecmaPattern, bool ignoreCase);

    const std::string& pattern() const noexcept { return pattern_; }
    bool ignoreCase() const noexcept { return ignoreCase_; }
    const CompiledPattern& forEncoding(TextEncoding encoding) const {
        return encoding == TextEncoding::Utf8 ? *utf8_ : *singleByte_;
    }

private:
    std::string pattern_;
    bool ignoreCase_;
    std::shared_ptr<const CompiledPattern> utf8_;
    std::shared_ptr<const CompiledPattern> singleByte_;
};

}  // namespace vantorel
