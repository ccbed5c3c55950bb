#pragma once
// The regular expression tester's work on a sample text: the list of
// matches as styled text, the matches with their groups for marking them in
// the sample, and the sample after replacement. The expression, the escape
// translation of the replacement and the replacement itself go through the
// same engine as a real run, so the tester and a run always agree.

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/StyledText.h"

namespace vantorel {

// What the match list shows, whole, when the expression fails.
inline constexpr const char* kRegexErrorText = "Error in Regular Expression!";
// Matches written into the match list.
inline constexpr std::size_t kListedMatches = 100;
// Matches kept with their groups, for marking them in the sample.
inline constexpr std::size_t kMarkedMatches = 1000;

struct TesterExpression {
    std::string pattern;      // always a regular expression
    std::string replacement;  // with escape sequences ("\n", "\t", "\\")
    bool caseSensitive = false;
};

// A piece of the sample: byte offsets, and the position and length as
// ECMAScript's indexes count them (UTF-16 units), with a CR LF pair counted
// once as the sample's box shows it.
struct SampleSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::uint64_t position = 0;
    std::uint64_t length = 0;
};

struct TesterMatch {
    SampleSpan span;
    // Groups 1 to n; nothing for a group that did not take part.
    std::vector<std::optional<SampleSpan>> groups;
};

struct MatchList {
    std::uint64_t count = 0;
    std::string countLabel;            // "(" count ")"; empty for an empty expression
    StyledText listing;                // the match list
    std::vector<TesterMatch> matches;  // the first kMarkedMatches
    std::vector<std::string> groupNames;  // [n - 1]: the name of group n, or ""
    std::chrono::nanoseconds elapsed{};   // the time the matching took
};

// The match list: each match's number (plain black, then ") ") and its text
// (bold blue, then one space and CR LF); after the hundredth, in red,
// "... Plus " (count - 100) " more. (Not shown)". `values` are the texts of
// the first matches; `count` is the number of all of them.
StyledText matchListing(const std::vector<std::string>& values, std::uint64_t count);

// Thrown when the cancel flag is set while working.
struct TesterCancelled {};

// The matches of the expression in the sample (UTF-8). Throws PatternError
// when the engine refuses the expression, MatchError when matching fails
// (the match limit), TesterCancelled.
MatchList listMatches(std::string_view sample, const TesterExpression& expression,
                      const std::atomic<bool>* cancel = nullptr);
// The sample after replacement. Throws as listMatches does.
std::string previewReplacement(std::string_view sample, const TesterExpression& expression,
                               const std::atomic<bool>* cancel = nullptr);

// Why the expression failed, in words for the user, and the character of
// the expression it points at (when it points at one).
struct TesterProblem {
    std::string reason;
    std::optional<std::size_t> offset;
};

struct TesterSteps {
    bool list = false;     // list the matches
    bool preview = false;  // preview the replacement (after the list)
};

// One update of the tester. On a problem the match list shows
// kRegexErrorText and the replacement preview keeps what it showed.
struct TesterUpdate {
    std::optional<MatchList> list;
    std::optional<std::string> replaced;
    std::optional<TesterProblem> problem;
    bool cancelled = false;
};
TesterUpdate runTester(std::string_view sample, const TesterExpression& expression, TesterSteps steps,
                       const std::atomic<bool>* cancel = nullptr);

// A sample read from a file: its text as UTF-8 (a file that is not UTF-8 is
// read as Windows-1252) and whether its lines end in CR LF.
struct SampleFile {
    std::string text;
    bool crlf = false;
};
// Throws std::runtime_error with the reason when the file cannot be read
// or holds more than `maxBytes`.
SampleFile readSampleFile(const std::string& path, std::uint64_t maxBytes);

}  // namespace vantorel
