// The translation keeps PCRE2's literal optimisations: whatever first code
// unit and required code unit PCRE2 finds in the pattern as typed (compiled
// the plain way, with CASELESS and MULTILINE), it still finds in the
// translation. Losing them makes a search of a large file many times slower.

#include <gtest/gtest.h>

#include <pcre2.h>

#include "regex/EcmaCaseFolding.h"
#include "regex/Regex.h"

namespace vantorel {
namespace {

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

TEST(RegexLiteralOptimisation, KeepsFirstAndRequiredCodeUnits) {
    const std::pair<const char*, bool> cases[] = {  // the pattern, and whether it ignores case
        // Plain text as escaped into a pattern.
        {"Durandal", false}, {"Durandal", true}, {"C:\\\\temp\\\\a\\.txt", false}, {"C:\\\\temp\\\\a\\.txt", true},
        {"user@example\\.com", false}, {"\\(a\\+b\\)\\*c", true}, {"\\bword\\b", false}, {"\\bword\\b", true},
        {"naïve café", false}, {"naïve café", true}, {"über", false}, {"Straße", false}, {"€ 100", false},
        {"x-y/z", true},
        // Regular expressions with a literal part.
        {"Durandal \\d+", false}, {"durandal \\d+", true}, {"\\w+@example\\.com", false}, {"\\w+@example\\.com", true},
        {"^Durandal", false}, {"^durandal", true}, {"Durandal.*$", false}, {"error:\\s+(\\w+)", true},
        {"(?:abc|abd)e", false}, {"colou?r", true}, {"id=\\d{3,}", false}, {"[0-9]+ms", false}};
    for (const auto& [pattern, ignoreCase] : cases) {
        const Regex regex(pattern, ignoreCase);
        for (const TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Windows1252}) {
            std::uint32_t options = ignoreCase ? PCRE2_CASELESS : 0;
            std::string typed = pattern;
            if (encoding == TextEncoding::Utf8) options |= PCRE2_UTF;
            else typed = *utf8ToWindows1252(typed);
            const auto plain = plainPcre2Hints(typed, options);
            const CompiledPattern& ours = regex.forEncoding(encoding);
            const auto hints = ours.searchHints();
            const std::string where = std::string(pattern) + (ignoreCase ? " (ignore case), " : ", ") +
                                      (encoding == TextEncoding::Utf8 ? "UTF-8" : "Windows-1252") +
                                      " translation " + ours.pcre2Pattern();
            if (plain.firstCodeType == 1) {
                EXPECT_EQ(hints.firstCodeType, 1u) << where;
                EXPECT_EQ(folded(hints.firstCodeUnit, ignoreCase, encoding),
                          folded(plain.firstCodeUnit, ignoreCase, encoding))
                    << where;
            } else if (plain.firstCodeType == 2) {
                // ^ in plain PCRE2: a match starts after a newline. The translation does at least as well.
                EXPECT_NE(hints.firstCodeType, 0u) << where;
            }
            if (plain.hasRequiredCodeUnit) {
                EXPECT_TRUE(hints.hasRequiredCodeUnit) << where;
                EXPECT_EQ(folded(hints.requiredCodeUnit, ignoreCase, encoding),
                          folded(plain.requiredCodeUnit, ignoreCase, encoding))
                    << where;
            }
        }
    }
}

}  // namespace
}  // namespace vantorel
