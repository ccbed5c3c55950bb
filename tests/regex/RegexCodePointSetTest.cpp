// The range set under the character classes: merging, removal and
// complement keep ranges sorted, disjoint and non-adjacent up to U+10FFFF.

#include <gtest/gtest.h>

#include "regex/CodePointSet.h"

namespace vantorel {
namespace {

using Ranges = std::vector<CodePointSet::Range>;

CodePointSet setOf(const Ranges& ranges) {
    CodePointSet set;
    for (const auto& r : ranges) set.addRange(r.first, r.last);
    return set;
}

TEST(RegexCodePointSet, AddingMergesOverlappingAndAdjacentRanges) {
    const std::pair<Ranges, Ranges> cases[] = {
        {{{10, 20}, {30, 40}}, {{10, 20}, {30, 40}}},
        {{{30, 40}, {10, 20}}, {{10, 20}, {30, 40}}},
        {{{10, 20}, {21, 25}}, {{10, 25}}},                 // adjacent after
        {{{21, 25}, {10, 20}}, {{10, 25}}},                 // adjacent before
        {{{10, 20}, {30, 40}, {15, 35}}, {{10, 40}}},       // bridges two
        {{{10, 20}, {30, 40}, {50, 60}, {0, 100}}, {{0, 100}}},
        {{{10, 20}, {12, 14}}, {{10, 20}}},                 // inside
        {{{5, 5}, {7, 7}, {6, 6}}, {{5, 7}}},
        {{{0x10FFFF, 0x10FFFF}, {0, 0}}, {{0, 0}, {0x10FFFF, 0x10FFFF}}},
    };
    for (const auto& [added, expected] : cases) EXPECT_EQ(setOf(added).ranges(), expected);
}

TEST(RegexCodePointSet, RemovingAndComplementing) {
    CodePointSet set = setOf({{0, 0x10FFFF}});
    set.removeRange(0xD800, 0xDFFF);
    EXPECT_EQ(set.ranges(), (Ranges{{0, 0xD7FF}, {0xE000, 0x10FFFF}}));
    EXPECT_EQ(set.complement().ranges(), (Ranges{{0xD800, 0xDFFF}}));
    EXPECT_EQ(set.count(), 0x110000u - 0x800u);

    const CodePointSet lines = setOf({{'\n', '\n'}, {'\r', '\r'}, {0x2028, 0x2029}});
    EXPECT_EQ(lines.complement().ranges(),
              (Ranges{{0, 9}, {11, 12}, {14, 0x2027}, {0x202A, 0x10FFFF}}));
    EXPECT_EQ(lines.complement().complement(), lines);
    EXPECT_EQ(CodePointSet().complement(), CodePointSet::all());
    EXPECT_TRUE(CodePointSet::all().complement().empty());

    CodePointSet cut = setOf({{10, 20}, {30, 40}});
    cut.removeRange(15, 35);
    EXPECT_EQ(cut.ranges(), (Ranges{{10, 14}, {36, 40}}));
    for (char32_t cp : {10u, 14u, 36u, 40u}) EXPECT_TRUE(cut.contains(cp)) << static_cast<unsigned>(cp);
    for (char32_t cp : {9u, 15u, 35u, 41u, 0x10FFFFu}) EXPECT_FALSE(cut.contains(cp)) << static_cast<unsigned>(cp);
}

}  // namespace
}  // namespace vantorel
