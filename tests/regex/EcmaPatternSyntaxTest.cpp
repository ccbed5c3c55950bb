// Refused patterns: the message names the fault and the offset (in characters
// of the typed pattern) points at it, also when PCRE2 is the one refusing.

#include <gtest/gtest.h>

#include "regex/EcmaPatternParser.h"
#include "regex/Regex.h"

namespace vantorel {
namespace {

TEST(EcmaPatternSyntax, PointsAtTheFault) {
    const struct {
        const char* pattern;
        std::size_t offset;
        const char* messagePart;
    } cases[] = {
        {"(abc", 0, "Missing ')'"}, {"ab(c(d)", 2, "Missing ')'"},
        {"éé(abc", 2, "Missing ')'"},  // characters, not bytes
        {"abc)d", 3, "Unmatched ')'"}, {"x[abc", 1, "Missing ']'"}, {"ab**", 3, "Nothing to repeat"},
        {"a|*", 2, "Nothing to repeat"}, {"a{1}{2}", 4, "Nothing to repeat"}, {"x^*", 2, "cannot be repeated"},
        {"\\b+", 2, "cannot be repeated"}, {"(?<=a)?", 6, "look-behind"}, {"ab{3,2}", 2, "out of order"},
        {"日[z-a]", 2, "Range out of order"}, {"a(?i)b", 1, "Invalid group"}, {"(?P<n>a)", 0, "Invalid group"},
        {"x(?<1a>b)", 1, "Invalid capture group name"}, {"(?<a>x)(?<a>y)", 7, "Duplicate capture group name"},
        {"(?<a>x)\\k", 7, "Invalid named reference"}, {"(?<a>x)é\\k<b>", 8, "No capture group is named 'b'"},
        {"(?<a>.)[\\k]", 8, "\\k"}, {"ab\\", 2, "\\ at end"}, {"[ab\\", 3, "\\ at end"},
        // Refused by PCRE2 after translation; the offset still points into the typed pattern.
        {"ab(?<=a+)c", 2, "fixed number of characters"}, {"日本(?<!x|y?)", 2, "fixed number of characters"},
        {"(a)(?<=\\1)", 3, "fixed number of characters"}, {"xa{70000}", 1, "above 65535"},
        {"ab\xff", 2, "not valid UTF-8"}, {"é\xc3", 1, "not valid UTF-8"}};
    for (const auto& c : cases) {
        for (bool ignoreCase : {false, true}) {
            try {
                Regex regex(c.pattern, ignoreCase);
                ADD_FAILURE() << c.pattern << " was accepted";
            } catch (const PatternError& e) {
                EXPECT_EQ(e.offset(), c.offset) << c.pattern << ": " << e.what();
                EXPECT_NE(std::string(e.what()).find(c.messagePart), std::string::npos) << c.pattern << ": " << e.what();
            }
        }
    }
}

TEST(EcmaPatternSyntaxLimits, RefusesDeepNestingWithoutExhaustingTheStack) {
    std::string deep(100000, '(');
    deep += std::string(100000, ')');
    EXPECT_THROW(Regex(deep, false), PatternError);
    // As deep as allowed still compiles, with the parentheses that ^ and a
    // quantified look-ahead add in translation.
    std::string allowed;
    for (int i = 1; i < EcmaPatternParser::kMaxNesting; ++i) allowed += "(?:^|(?=a)*";
    allowed += std::string(EcmaPatternParser::kMaxNesting - 1, ')');
    EXPECT_NO_THROW(Regex(allowed, true));
}

}  // namespace
}  // namespace vantorel
