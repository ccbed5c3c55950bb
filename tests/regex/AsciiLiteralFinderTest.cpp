#include "regex/AsciiLiteralFinder.h"

#include <random>

#include <gtest/gtest.h>

#include "regex/Regex.h"
#include "support/MatchSpans.h"

namespace vantorel {
namespace {

using test::matchSpans;

// The fast route must find exactly what the regular-expression engine finds
// for the same literal written so that it cannot take the fast route.
TEST(AsciiLiteralFinderTest, FindsWhatTheEngineFindsIgnoringCase) {
    std::mt19937 random(20261122);
    const std::vector<std::string> pieces = {"e", "E", "r", "R", "o", "error", "ERROR", "eRRor", "erro", " ",
                                             "\r\n", "\n", "aa", "A", "\xe2\x84\xaa", "\xc5\xbf", "k", "s", "\xe9",
                                             "C:\\temp", "c:\\TEMP", "x.y", "(z)"};
    const std::vector<std::string> literals = {"error", "aa", "k", "s", "E", "C:\\\\temp", "x\\.y", "\\(Z\\)", "r r"};
    for (int round = 0; round < 300; ++round) {
        std::string text;
        const int count = static_cast<int>(random() % 60);
        for (int i = 0; i < count; ++i) text += pieces[random() % pieces.size()];
        for (const std::string& literal : literals) {
            for (const TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Windows1252}) {
                if (encoding == TextEncoding::Utf8 && !isValidUtf8(text)) continue;
                const Regex fast(literal, true);
                const Regex engine("(?:" + literal + ")", true);
                ASSERT_EQ(matchSpans(fast.forEncoding(encoding), text), matchSpans(engine.forEncoding(encoding), text))
                    << literal << " in [" << text << "]";
            }
        }
    }
}

}  // namespace
}  // namespace vantorel
