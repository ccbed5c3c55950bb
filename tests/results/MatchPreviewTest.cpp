#include "results/MatchPreview.h"

#include <gtest/gtest.h>

#include "regex/Regex.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

// Hits as <hit>, line numbers and elisions as {..}, headers as #..#, "\r\n" as "|".
std::string markup(const StyledText& text) {
    std::string out;
    for (const StyledRun& run : text) {
        std::string piece;
        for (std::size_t i = 0; i < run.text.size(); ++i) {
            if (run.text.compare(i, 2, "\r\n") == 0) {
                piece += '|';
                ++i;
            } else {
                piece += run.text[i];
            }
        }
        if (run.colour == kRed && run.bold) out += "<" + piece + ">";
        else if (run.colour == kBlue && run.bold) out += "{" + piece + "}";
        else if (run.colour == kGrey && run.bold) out += "#" + piece + "#";
        else if (run.colour == kBlack && !run.bold) out += piece;
        else out += "?" + piece + "?";
    }
    return out;
}

PreviewPage pageOf(const std::string& text, const std::string& pattern, PreviewSettings settings,
                   std::uint64_t first = 1, std::uint64_t last = 100,
                   TextEncoding encoding = TextEncoding::Utf8) {
    const Regex regex(pattern, false);
    return MatchPreview(settings).page(text, encoding, regex.forEncoding(encoding), first, last);
}

PreviewSettings plain(long around = 25, long between = 50, bool numbers = false) {
    return PreviewSettings{100, around, between, numbers};
}

TEST(MatchPreview, ShowsHitsInTheirLinesWithContextAndLineNumbers) {
    struct Case {
        const char* name;
        std::string text;
        std::string pattern;
        PreviewSettings settings;
        std::string expected;
    };
    const Case cases[] = {
        {"first hit on line 1 gets seven zeros", "a cat sat", "cat", plain(25, 50, true),
         "{00000001 | }a <cat> sat"},
        {"hit at the very start has no lead-in", "cat!", "cat", plain(25, 50, true), "{00000001 | }<cat>!"},
        {"lead-in and rest are cut to CharsAround and at line breaks", "xxxx\r\nabcdefgHITabcdefg\r\nyy", "HIT",
         plain(3), "efg<HIT>abc"},
        {"a gap of at most CharsBetween is shown whole", "a-1234567890-a", "a", plain(0, 12), "<a>-1234567890-<a>"},
        {"a longer gap shows its two ends around an ellipsis", "a-1234567890-a", "a", plain(0, 6),
         "<a>-12{ ... }90-<a>"},
        {"hits on new lines close the previous line", "one cat\ntwo cat\n", "cat", plain(25, 50, true),
         "{00000001 | }one <cat>|{00000002 | }two <cat>"},
        {"CRLF files count each CRLF once", "a\r\nb\r\nc hit", "hit", plain(25, 50, true), "{00000003 | }c <hit>"},
        {"CR-only files count by CR", "a\rb\rhit", "hit", plain(25, 50, true), "{00000003 | }<hit>"},
        {"a lone LF does not count in a CRLF file", "a\nb\r\nhit", "hit", plain(25, 50, true),
         "{00000002 | }<hit>"},
        {"UTF-8 context is counted in characters", "\xC3\xA9\xC3\xA9\xC3\xA9X\xC3\xA9\xC3\xA9", "X", plain(2),
         "\xC3\xA9\xC3\xA9<X>\xC3\xA9\xC3\xA9"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(markup(pageOf(c.text, c.pattern, c.settings).text), c.expected);
    }
}

TEST(MatchPreview, Windows1252TextIsShownAsUtf8) {
    const std::string text = "caf\xE9 au lait";
    const Regex regex("au", false);
    const PreviewPage page = MatchPreview(plain(5)).page(text, TextEncoding::Windows1252,
                                                         regex.forEncoding(TextEncoding::Windows1252), 1, 100);
    EXPECT_EQ(markup(page.text), "caf\xC3\xA9 <au> lait");
}

TEST(MatchPreview, PagesCoverTheirHitsAndEnableTheButtons) {
    const std::string text = "h h h h h h h";  // 7 hits on one line
    PreviewSettings settings = plain(0, 50);
    const PreviewPage firstPage = pageOf(text, "h", settings, 1, 3);
    EXPECT_EQ(firstPage.total, 7u);
    EXPECT_EQ(firstPage.lastShown, 3u);
    EXPECT_FALSE(firstPage.backEnabled);
    EXPECT_TRUE(firstPage.forwardEnabled);
    EXPECT_EQ(markup(firstPage.text), "<h> <h> <h>");

    const PreviewPage lastPage = pageOf(text, "h", settings, 7, 9);
    EXPECT_EQ(lastPage.lastShown, 7u);
    EXPECT_TRUE(lastPage.backEnabled);
    EXPECT_FALSE(lastPage.forwardEnabled);
    EXPECT_EQ(markup(lastPage.text), "<h>");

    // Exactly a page of hits: no page after it.
    EXPECT_FALSE(pageOf("h h h", "h", settings, 1, 3).forwardEnabled);
    EXPECT_EQ(MatchPreview::caption(4, 6, "/a/b.txt"), " Results 4-6: /a/b.txt");
}

TEST(MatchPreview, SectionHeaderSaysHowManyWereFoundAndShown) {
    PreviewSettings settings = plain(0, 50);
    settings.hitsPerPage = 2;
    const MatchPreview preview(settings);
    const Regex regex("x", false);
    const CompiledPattern& pattern = regex.forEncoding(TextEncoding::Utf8);
    EXPECT_EQ(markup(preview.section("/d/f.txt", "x x", TextEncoding::Utf8, pattern)),
              "#/d/f.txt  (2 Found)|#<x> <x>||");
    EXPECT_EQ(markup(preview.section("/d/f.txt", "x x x", TextEncoding::Utf8, pattern)),
              "#/d/f.txt  (3 Found - 2 Shown)|#<x> <x>||");
}

TEST(MatchPreview, ReadsTheFileForAPageAndFailsOnAMissingOne) {
    test::TempTree tree;
    const std::string path = tree.write("a.txt", "one Two three two");
    const MatchPreview preview(plain(0, 100));
    const auto ignoringCase = preview.pageOfFile(path, "two", true, 1, 100);
    ASSERT_TRUE(ignoringCase);
    EXPECT_EQ(ignoringCase->total, 2u);
    const auto matchingCase = preview.pageOfFile(path, "two", false, 1, 100);
    ASSERT_TRUE(matchingCase);
    EXPECT_EQ(matchingCase->total, 1u);
    EXPECT_FALSE(preview.pageOfFile(tree.path("missing.txt"), "two", true, 1, 100));
    EXPECT_FALSE(preview.pageOfFile(path, "(", true, 1, 100));  // a pattern that cannot be used

    const auto section = preview.sectionOfFile(path, "three", false);
    ASSERT_TRUE(section);
    EXPECT_EQ(markup(*section), "#" + path + "  (1 Found)|#<three>||");
}

}  // namespace
}  // namespace vantorel
