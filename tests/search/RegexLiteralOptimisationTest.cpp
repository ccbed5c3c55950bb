// The translation keeps PCRE2's literal optimisations: whatever first code
// unit and required code unit PCRE2 finds in the pattern as typed (compiled
// the plain way, with CASELESS and MULTILINE), it still finds in the
// translation. Losing them makes a search of a large file many times slower.

#include <gtest/gtest.h>

#include <pcre2.h>

#include "search/EcmaCaseFolding.h"
#include "search/Regex.h"

namespace vantorel {
namespace {

struct LiteralCase {
    const char* pattern;
    bool ignoreCase;
};

std::ostream& operator<<(std::ostream& out, const LiteralCase& c) {
    return out << c.pattern << (c.ignoreCase ? " (ignore case)" : "");
}

CompiledPattern::SearchHints plainPcre2Hints(const std::string& pattern, std::uint32_t options) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(),
                                     options | PCRE2_MULTILINE, &error, &offset, nullptr);
    EXPECT_NE(code, nullptr) << pattern;
    CompiledPattern::SearchHints hints;
    if (!code) return hints;
    pcre2_pattern_info(code, PCRE2_INFO_FIRSTCODETYPE, &hints.firstCodeType);
    if (hints.firstCodeType == 1) pcre2_pattern_info(code, PCRE2_INFO_FIRSTCODEUNIT, &hints.firstCodeUnit);
    std::uint32_t lastType = 0;
    pcre2_pattern_info(code, PCRE2_INFO_LASTCODETYPE, &lastType);
    hints.hasRequiredCodeUnit = lastType == 1;
    if (lastType == 1) pcre2_pattern_info(code, PCRE2_INFO_LASTCODEUNIT, &hints.requiredCodeUnit);
    pcre2_code_free(code);
    return hints;
}

// A code unit without regard to case: the units of a caseless character may
// be reported in either case.
std::uint32_t folded(std::uint32_t unit, bool ignoreCase, TextEncoding encoding) {
    if (!ignoreCase) return unit;
    if (encoding == TextEncoding::Windows1252)
        return EcmaCaseFolding::instance().canonicalize(windows1252ToCodePoint(static_cast<unsigned char>(unit)));
    return unit < 0x80 ? EcmaCaseFolding::instance().canonicalize(unit) : unit;
}

class RegexLiteralOptimisation : public ::testing::TestWithParam<LiteralCase> {};

TEST_P(RegexLiteralOptimisation, KeepsFirstAndRequiredCodeUnits) {
    const LiteralCase& c = GetParam();
    const Regex regex(c.pattern, c.ignoreCase);
    for (const TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Windows1252}) {
        std::uint32_t options = c.ignoreCase ? PCRE2_CASELESS : 0;
        std::string typed = c.pattern;
        if (encoding == TextEncoding::Utf8) options |= PCRE2_UTF;
        else typed = *utf8ToWindows1252(typed);
        const auto plain = plainPcre2Hints(typed, options);
        const CompiledPattern& ours = regex.forEncoding(encoding);
        const auto hints = ours.searchHints();
        const std::string where = std::string(encoding == TextEncoding::Utf8 ? "UTF-8" : "Windows-1252") +
                                  " translation " + ours.pcre2Pattern();
        if (plain.firstCodeType == 1) {
            EXPECT_EQ(hints.firstCodeType, 1u) << where;
            EXPECT_EQ(folded(hints.firstCodeUnit, c.ignoreCase, encoding), folded(plain.firstCodeUnit, c.ignoreCase, encoding)) << where;
        } else if (plain.firstCodeType == 2) {
            // ^ in plain PCRE2: a match starts after a newline. The translation
            // does at least as well.
            EXPECT_NE(hints.firstCodeType, 0u) << where;
        }
        if (plain.hasRequiredCodeUnit) {
            EXPECT_TRUE(hints.hasRequiredCodeUnit) << where;
            EXPECT_EQ(folded(hints.requiredCodeUnit, c.ignoreCase, encoding),
                      folded(plain.requiredCodeUnit, c.ignoreCase, encoding))
                << where;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, RegexLiteralOptimisation,
    ::testing::Values(
        // Plain text as escaped into a pattern.
        LiteralCase{"Durandal", false}, LiteralCase{"Durandal", true}, LiteralCase{"C:\\\\temp\\\\a\\.txt", false},
        LiteralCase{"C:\\\\temp\\\\a\\.txt", true}, LiteralCase{"user@example\\.com", false},
        LiteralCase{"\\(a\\+b\\)\\*c", true}, LiteralCase{"\\bword\\b", false}, LiteralCase{"\\bword\\b", true},
        LiteralCase{"naïve café", false}, LiteralCase{"naïve café", true}, LiteralCase{"über", false},
        LiteralCase{"Straße", false}, LiteralCase{"€ 100", false}, LiteralCase{"x-y/z", true},
        // Regular expressions with a literal part.
        LiteralCase{"Durandal \\d+", false}, LiteralCase{"durandal \\d+", true}, LiteralCase{"\\w+@example\\.com", false},
        LiteralCase{"\\w+@example\\.com", true}, LiteralCase{"^Durandal", false}, LiteralCase{"^durandal", true},
        LiteralCase{"Durandal.*$", false}, LiteralCase{"error:\\s+(\\w+)", true}, LiteralCase{"(?:abc|abd)e", false},
        LiteralCase{"colou?r", true}, LiteralCase{"id=\\d{3,}", false}, LiteralCase{"[0-9]+ms", false}));

}  // namespace
}  // namespace vantorel
