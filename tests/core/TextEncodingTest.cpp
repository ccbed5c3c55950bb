#include "core/TextEncoding.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(TextEncodingTest, RecognisesValidUtf8Only) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8(std::string_view("plain ascii with a\0b", 20)));
    EXPECT_TRUE(isValidUtf8("caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80"));
    EXPECT_TRUE(isValidUtf8("\xef\xbb\xbf" "BOM"));
    EXPECT_FALSE(isValidUtf8("caf\xe9"));                 // Windows-1252 é
    EXPECT_FALSE(isValidUtf8("\xc0\xaf"));                // overlong
    EXPECT_FALSE(isValidUtf8("\xed\xa0\x80"));            // surrogate
    EXPECT_FALSE(isValidUtf8("\xf4\x90\x80\x80"));        // above U+10FFFF
    EXPECT_FALSE(isValidUtf8("\xe2\x82"));                // cut short
    // The invalid byte far beyond the fast ASCII path is still seen.
    EXPECT_FALSE(isValidUtf8(std::string(1000, 'a') + "\x80" + std::string(100, 'b')));
}

TEST(TextEncodingTest, EveryWindows1252ByteRoundTrips) {
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    const std::string utf8 = windows1252ToUtf8(all);
    EXPECT_TRUE(isValidUtf8(utf8));
    EXPECT_EQ(utf8ToWindows1252(utf8), all);
    EXPECT_EQ(windows1252ToUtf8("\x80\x8a\x9f"), "\xe2\x82\xac\xc5\xa0\xc5\xb8");  // € Š Ÿ
    EXPECT_EQ(utf8ToWindows1252("\xc4\x80"), std::nullopt);  // Ā has no byte
}

}  // namespace
}  // namespace vantorel
