#include "files/Wildcard.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

struct WildcardCase {
    const char* pattern;
    const char* name;
    bool matches;
};

class WildcardMatchTest : public ::testing::TestWithParam<WildcardCase> {};

TEST_P(WildcardMatchTest, ComparesTheWholeNameWithoutRegardToCase) {
    const WildcardCase& c = GetParam();
    EXPECT_EQ(wildcardMatch(c.pattern, c.name), c.matches) << c.pattern << " vs " << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WildcardMatchTest,
    ::testing::Values(
        WildcardCase{"*.htm*", "index.html", true}, WildcardCase{"*.htm*", "index.htm", true},
        WildcardCase{"*.txt", "notes.txt.bak", false}, WildcardCase{"*.TXT", "a.txt", true},
        WildcardCase{"*.txt", "A.TXT", true}, WildcardCase{"*", "", true},
        WildcardCase{"*", "anything at all", true}, WildcardCase{"?.c", "a.c", true},
        WildcardCase{"?.c", "ab.c", false}, WildcardCase{"?.c", ".c", false},
        WildcardCase{"log#.txt", "log7.txt", true}, WildcardCase{"log#.txt", "logx.txt", false},
        WildcardCase{"[abc]*", "beta", true}, WildcardCase{"[abc]*", "delta", false},
        WildcardCase{"[!abc]*", "delta", true}, WildcardCase{"[!abc]*", "alpha", false},
        WildcardCase{"[a-f]x", "Dx", true}, WildcardCase{"[a-f]x", "gx", false},
        WildcardCase{"*a*b*c", "xxaxxbxxc", true}, WildcardCase{"*a*b*c", "xxaxxcxxb", false},
        WildcardCase{"a*a*a", "aaaa", true}, WildcardCase{"a[", "a[", true},
        WildcardCase{"*.*", "Makefile", false}, WildcardCase{"*.*", "a.b", true},
        WildcardCase{"CAFÉ.txt", "café.txt", true}, WildcardCase{"?.txt", "é.txt", true},
        WildcardCase{"", "a", false},
        // Unicode simple case folding, in every script.
        WildcardCase{"ȘAPTE.TXT", "șapte.txt", true}, WildcardCase{"Άλφα*", "άλφα.md", true},
        WildcardCase{"ҐАНОК.*", "ґанок.doc", true}, WildcardCase{"Ǎ*", "ǎb", true},
        WildcardCase{"Ạ?", "ạb", true}, WildcardCase{"STRAẞE", "straße", true},
        WildcardCase{"\xf0\x90\x90\x80", "\xf0\x90\x90\xa8", true},  // Deseret, beyond U+FFFF
        WildcardCase{"\xe2\x84\xaa*", "kelvin", true}, WildcardCase{"[j-l]x", "\xe2\x84\xaax", true},
        WildcardCase{"[à-å]", "Â", true}, WildcardCase{"İ", "i", false},
        WildcardCase{"caf\xc3\xa9.txt", "CAF\xc9.TXT", true}));  // a Windows-1252 name

TEST(SplitFilterTest, TrimsBlanksAndKeepsEmptyPieces) {
    EXPECT_EQ(splitFilter("*.txt ; *.log"), (std::vector<std::string>{"*.txt", "*.log"}));
    EXPECT_EQ(splitFilter(";"), (std::vector<std::string>{"", ""}));
    EXPECT_TRUE(splitFilter("").empty());
    EXPECT_FALSE(matchesAny(splitFilter(";"), "a.txt"));
    EXPECT_TRUE(matchesAny(splitFilter("*.css; *.htm*"), "page.HTML"));
}

}  // namespace
}  // namespace vantorel
