// A search that can be stopped is cut into slices where matches may start;
// it finds exactly what an uncut search finds, and a stop ends it between
// slices, also inside a line whose every start position costs a long time.

#include <atomic>

#include <gtest/gtest.h>

#include "regex/Regex.h"
#include "support/MatchSpans.h"

namespace vantorel {
namespace {

using test::matchSpans;

TEST(MatchStopTest, SlicesFindWhatTheWholeTextGives) {
    std::string text;
    std::uint32_t state = 7;
    while (text.size() < 300000) {
        state = state * 1103515245 + 12345;
        static const char* const kPieces[] = {"ab", "b", " ", "\n", "caf\xc3\xa9", "a", "xyz", "\xe2\x82\xac"};
        text += kPieces[(state >> 16) % 8];
    }
    const std::atomic<bool> never{false};
    for (const char* pattern : {"\\b\\w", "(?<=a)b", "x*", "^", "ab|b", "\\s+$", "a[^]{0,3000}?xyz"}) {
        const Regex regex(pattern, false);
        const CompiledPattern& compiled = regex.forEncoding(TextEncoding::Utf8);
        const auto whole = matchSpans(compiled, text);
        const MatchStop stoppable(never);
        EXPECT_EQ(matchSpans(compiled, text), whole) << pattern;
    }
}

TEST(MatchStopTest, AStopEndsASearchThatWouldTakeMinutes) {
    // Each start position in the long line tries every "ab " to its end.
    std::string text = "ab y\n";
    while (text.size() < (4u << 20)) text += "ab ";
    text += "x y";
    const Regex regex("(?:ab )*y", false);
    std::atomic<bool> stop{false};
    const MatchStop stoppable(stop);
    std::size_t found = 0;
    EXPECT_THROW(regex.forEncoding(TextEncoding::Utf8).forEachMatch(text, [&](const Match&) {
        ++found;
        stop = true;  // as the Stop button would, while the search goes on
        return true;
    }), MatchStopped);
    EXPECT_EQ(found, 1u);
}

}  // namespace
}  // namespace vantorel
