// Refused patterns: the message names the fault and the offset (in characters
// of the typed pattern) points at it, also when PCRE2 is the one refusing.

#include <gtest/gtest.h>

#include "search/EcmaPatternParser.h"
#include "search/Regex.h"

namespace vantorel {
namespace {

struct RefusedPattern {
    const char* pattern;
    std::size_t offset;
    const char* messagePart;
};

class EcmaPatternSyntax : public ::testing::TestWithParam<RefusedPattern> {};

TEST_P(EcmaPatternSyntax, PointsAtTheFault) {
    const RefusedPattern& c = GetParam();
    for (bool ignoreCase : {false, true}) {
        try {
            Regex regex(c.pattern, ignoreCase);
            ADD_FAILURE() << c.pattern << " was accepted";
        } catch (const PatternError& e) {
            EXPECT_EQ(e.offset(), c.offset) << c.pattern << ": " << e.what();
            EXPECT_NE(std::string(e.what()).find(c.messagePart), std::string::npos)
                << c.pattern << ": " << e.what();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Refused, EcmaPatternSyntax,
    ::testing::Values(
        RefusedPattern{"(abc", 0, "Missing ')'"},
        RefusedPattern{"ab(c(d)", 2, "Missing ')'"},
        RefusedPattern{"éé(abc", 2, "Missing ')'"},  // characters, not bytes
        RefusedPattern{"abc)d", 3, "Unmatched ')'"},
        RefusedPattern{"x[abc", 1, "Missing ']'"},
        RefusedPattern{"ab**", 3, "Nothing to repeat"},
        RefusedPattern{"a|*", 2, "Nothing to repeat"},
        RefusedPattern{"a{1}{2}", 4, "Nothing to repeat"},
        RefusedPattern{"x^*", 2, "cannot be repeated"},
        RefusedPattern{"\\b+", 2, "cannot be repeated"},
        RefusedPattern{"(?<=a)?", 6, "look-behind"},
        RefusedPattern{"ab{3,2}", 2, "out of order"},
        RefusedPattern{"日[z-a]", 2, "Range out of order"},
        RefusedPattern{"a(?i)b", 1, "Invalid group"},
        RefusedPattern{"(?P<n>a)", 0, "Invalid group"},
        RefusedPattern{"x(?<1a>b)", 1, "Invalid capture group name"},
        RefusedPattern{"(?<a>x)(?<a>y)", 7, "Duplicate capture group name"},
        RefusedPattern{"(?<a>x)\\k", 7, "Invalid named reference"},
        RefusedPattern{"(?<a>x)é\\k<b>", 8, "No capture group is named 'b'"},
        RefusedPattern{"(?<a>.)[\\k]", 8, "\\k"},
        RefusedPattern{"ab\\", 2, "\\ at end"},
        RefusedPattern{"[ab\\", 3, "\\ at end"},
        // Refused by PCRE2 after translation; the offset still points into
        // the typed pattern.
        RefusedPattern{"ab(?<=a+)c", 2, "fixed number of characters"},
        RefusedPattern{"日本(?<!x|y?)", 2, "fixed number of characters"},
        RefusedPattern{"(a)(?<=\\1)", 3, "fixed number of characters"},
        RefusedPattern{"xa{70000}", 1, "above 65535"},
        RefusedPattern{"ab\xff", 2, "not valid UTF-8"},
        RefusedPattern{"é\xc3", 1, "not valid UTF-8"}));

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
