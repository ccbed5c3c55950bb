#include "regex/PatternConstruction.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(PatternConstructionTest, WholeWordsOnlyInPlainTextMode) {
    const JobPattern plain = buildJobPattern("cat", "dog", {false, true});
    EXPECT_EQ(plain.findPattern, "\\bcat\\b");
    EXPECT_EQ(CountMatches("the cat sat", plain.findPattern, false), 1u);
    EXPECT_EQ(CountMatches("concatenate", plain.findPattern, false), 0u);
    EXPECT_EQ(buildJobPattern("cat", "", {true, true}).findPattern, "cat");
}

TEST(PatternConstructionTest, ReplaceEscapesAreTranslatedInRegexModeOnly) {
    EXPECT_EQ(TranslateReplaceEscapes("a\\nb"), "a\nb");
    EXPECT_EQ(TranslateReplaceEscapes("a\\\\nb"), "a\\nb");
    EXPECT_EQ(TranslateReplaceEscapes("x\\Ty\\R\\N"), "x\ty\r\n");
    EXPECT_EQ(TranslateReplaceEscapes("\\q\\"), "\\q\\");
    EXPECT_EQ(TranslateReplaceEscapes("\xc3\xbf"), "\xc3\xbf");  // ÿ stays ÿ
    EXPECT_EQ(buildJobPattern("x", "a\\nb", {true, false}).replaceText, "a\nb");
    EXPECT_EQ(buildJobPattern("x", "a\\nb", {false, false}).replaceText, "a\\nb");
}

TEST(PatternConstructionTest, GroupReferencesApplyInPlainTextReplacements) {
    EXPECT_EQ(RegexReplaceAll("price 5", "$1", EscapePlainText("5"), false), "price $1");
    EXPECT_EQ(RegexReplaceAll("price 5", "[$&]", EscapePlainText("5"), false), "price [5]");
}

}  // namespace
}  // namespace vantorel
