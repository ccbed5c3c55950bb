#include "files/Wildcard.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(WildcardMatchTest, ComparesTheWholeNameWithoutRegardToCase) {
    const struct {
        const char *pattern, *name;
        bool matches;
    } cases[] = {
        {"*.htm*", "index.html", true}, {"*.htm*", "index.htm", true}, {"*.txt", "notes.txt.bak", false},
        {"*.TXT", "a.txt", true}, {"*.txt", "A.TXT", true}, {"*", "", true}, {"*", "anything at all", true},
        {"?.c", "a.c", true}, {"?.c", "ab.c", false}, {"?.c", ".c", false}, {"log#.txt", "log7.txt", true},
        {"log#.txt", "logx.txt", false}, {"[abc]*", "beta", true}, {"[abc]*", "delta", false},
        {"[!abc]*", "delta", true}, {"[!abc]*", "alpha", false}, {"[a-f]x", "Dx", true}, {"[a-f]x", "gx", false},
        {"*a*b*c", "xxaxxbxxc", true}, {"*a*b*c", "xxaxxcxxb", false}, {"a*a*a", "aaaa", true}, {"a[", "a[", true},
        {"*.*", "Makefile", false}, {"*.*", "a.b", true}, {"CAFÉ.txt", "café.txt", true}, {"?.txt", "é.txt", true},
        {"", "a", false},
        // Unicode simple case folding, in every script.
        {"ȘAPTE.TXT", "șapte.txt", true}, {"Άλφα*", "άλφα.md", true}, {"ҐАНОК.*", "ґанок.doc", true},
        {"Ǎ*", "ǎb", true}, {"Ạ?", "ạb", true}, {"STRAẞE", "straße", true},
        {"\xf0\x90\x90\x80", "\xf0\x90\x90\xa8", true},  // Deseret, beyond U+FFFF
        {"\xe2\x84\xaa*", "kelvin", true}, {"[j-l]x", "\xe2\x84\xaax", true}, {"[à-å]", "Â", true},
        {"İ", "i", false}, {"caf\xc3\xa9.txt", "CAF\xc9.TXT", true}};  // a Windows-1252 name
    for (const auto& c : cases) EXPECT_EQ(wildcardMatch(c.pattern, c.name), c.matches) << c.pattern << " vs " << c.name;
}

TEST(SplitFilterTest, TrimsBlanksAndKeepsEmptyPieces) {
    EXPECT_EQ(splitFilter("*.txt ; *.log"), (std::vector<std::string>{"*.txt", "*.log"}));
    EXPECT_EQ(splitFilter(";"), (std::vector<std::string>{"", ""}));
    EXPECT_TRUE(splitFilter("").empty());
    EXPECT_FALSE(matchesAny(splitFilter(";"), "a.txt"));
    EXPECT_TRUE(matchesAny(splitFilter("*.css; *.htm*"), "page.HTML"));
}

}  // namespace
}  // namespace vantorel
