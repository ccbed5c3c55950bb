// Case-insensitive matching follows ECMAScript's Canonicalize for every
// character, not PCRE2's Unicode case folding, in UTF-8 and single-byte text.

#include <gtest/gtest.h>

#include <cstdio>
#include <set>

#include "regex/EcmaCaseFolding.h"
#include "regex/Regex.h"

namespace vantorel {
namespace {

std::string escapeOf(char32_t cp) {
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned>(cp));
    return text;
}

std::set<char32_t> matchedCodePoints(const CompiledPattern& pattern, std::string_view subject) {
    std::set<char32_t> found;
    pattern.forEachMatch(subject, [&](const Match& m) {
        std::size_t pos = m.begin();
        found.insert(decodeUtf8(subject, pos));
        return true;
    });
    return found;
}

std::set<unsigned> matchedBytes(const CompiledPattern& pattern, std::string_view subject) {
    std::set<unsigned> found;
    pattern.forEachMatch(subject, [&](const Match& m) {
        if (m.end() > m.begin()) found.insert(static_cast<unsigned char>(subject[m.begin()]));
        return true;
    });
    return found;
}

std::string allBytes() {
    std::string bytes;
    for (unsigned b = 0; b < 256; ++b) bytes += static_cast<char>(b);
    return bytes;
}

// Each class of characters equal without regard to case, against the blocks
// that hold every cased character of the BMP: a pattern of one member
// matches exactly the members (so neither the Kelvin sign for k, nor long s
// for s, nor ẞ for ß).
TEST(RegexCaseFolding, Utf8CharactersMatchExactlyTheirEcmaScriptEquivalents) {
    const EcmaCaseFolding& folding = EcmaCaseFolding::instance();
    std::string subject;
    for (char32_t cp = 0; cp < 0x10000; ++cp) {
        const bool casedBlock = cp < 0x3000 || (cp >= 0xA640 && cp < 0xAC00) || cp >= 0xFB00;
        if (casedBlock && (cp < 0xD800 || cp > 0xDFFF)) appendUtf8(subject, cp);
    }
    int classes = 0;
    std::set<char32_t> seen;
    for (char32_t cp = 0; cp < 0x10000; ++cp) {
        const std::vector<char32_t> members = folding.equivalents(cp);
        if (members.size() < 2 || seen.count(members.front())) continue;
        seen.insert(members.front());
        ++classes;
        for (const bool asClass : {false, true}) {
            const std::string pattern = asClass ? "[" + escapeOf(cp) + "]" : escapeOf(cp);
            const Regex regex(pattern, true);
            EXPECT_EQ(matchedCodePoints(regex.forEncoding(TextEncoding::Utf8), subject),
                      std::set<char32_t>(members.begin(), members.end()))
                << pattern << " -> " << regex.forEncoding(TextEncoding::Utf8).pcre2Pattern();
        }
    }
    EXPECT_GT(classes, 1000);
    // Characters that Unicode folding pairs and ECMAScript does not.
    for (const char* pattern : {"\\u212A", "\\u017F", "\\u1E9E", "\\u00DF", "\\u0130", "\\u0131", "\\u2126"}) {
        const Regex regex(pattern, true);
        EXPECT_EQ(matchedCodePoints(regex.forEncoding(TextEncoding::Utf8), subject).size(), 1u) << pattern;
    }
}

// Each byte's character, typed as \u escape, against all 256 bytes.
TEST(RegexCaseFolding, SingleByteLettersPairByEcmaScriptRule) {
    const EcmaCaseFolding& folding = EcmaCaseFolding::instance();
    const std::string subject = allBytes();
    int pairs = 0;
    for (unsigned b = 0; b < 256; ++b) {
        const char32_t cp = windows1252ToCodePoint(static_cast<unsigned char>(b));
        std::set<unsigned> expected;
        for (unsigned other = 0; other < 256; ++other)
            if (folding.canonicalize(windows1252ToCodePoint(static_cast<unsigned char>(other))) ==
                folding.canonicalize(cp))
                expected.insert(other);
        pairs += expected.size() == 2;
        const Regex regex(escapeOf(cp), true);
        EXPECT_EQ(matchedBytes(regex.forEncoding(TextEncoding::Windows1252), subject), expected)
            << "byte " << b << " as " << escapeOf(cp);
    }
    // 26 ASCII letters, 30 Latin-1 letters (not ß, µ), Š Œ Ž Ÿ: both sides.
    EXPECT_EQ(pairs, 2 * (26 + 30 + 4));
}

TEST(RegexCaseFolding, SingleByteBackReferencesIgnoreCaseLikeEcmaScript) {
    const EcmaCaseFolding& folding = EcmaCaseFolding::instance();
    const Regex regex("^([^])\\1$", true);
    const CompiledPattern& pattern = regex.forEncoding(TextEncoding::Windows1252);
    for (unsigned a = 0; a < 256; ++a) {
        if (a == '\n' || a == '\r') continue;
        for (unsigned b = 0; b < 256; ++b) {
            if (b == '\n' || b == '\r') continue;
            const std::string text{static_cast<char>(a), static_cast<char>(b)};
            const bool equal = folding.canonicalize(windows1252ToCodePoint(static_cast<unsigned char>(a))) ==
                               folding.canonicalize(windows1252ToCodePoint(static_cast<unsigned char>(b)));
            EXPECT_EQ(pattern.countMatches(text), equal ? 1u : 0u) << "bytes " << a << ", " << b;
        }
    }
}

}  // namespace
}  // namespace vantorel
