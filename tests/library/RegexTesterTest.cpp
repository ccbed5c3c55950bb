#include "library/RegexTester.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

std::string repeated(const std::string& piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += piece;
    return out;
}

TEST(RegexTesterListing, AtMostAHundredAreListedTheNoticeFollowsAndNothingListsNothing) {
    const struct {
        int matches;
        const char* notice;  // nullptr: none
    } cases[] = {{1, nullptr}, {99, nullptr}, {100, "... Plus 0 more. (Not shown)"}, {101, "... Plus 1 more. (Not shown)"},
                 {250, "... Plus 150 more. (Not shown)"}};
    for (const auto& c : cases) {
        const MatchList list = listMatches(repeated("ab ", c.matches), {"A(b)", "", false});
        EXPECT_EQ(list.count, static_cast<std::uint64_t>(c.matches));
        EXPECT_EQ(list.countLabel, "(" + std::to_string(c.matches) + ")");
        const std::size_t listed = std::min(c.matches, 100);
        ASSERT_EQ(list.listing.size(), 2 * listed + (c.notice ? 1 : 0)) << c.matches;
        EXPECT_EQ(list.listing[2 * listed - 2].text, std::to_string(listed) + ") ");
        if (c.notice) EXPECT_EQ(list.listing.back(), (StyledRun{c.notice, kRed, false}));
        else EXPECT_EQ(list.listing.back().text, "ab \r\n");
    }
    // The number plain black, the match bold blue with one space and CR LF.
    EXPECT_EQ(listMatches("x\r\nyx", {"y?x", "", true}).listing,
              (StyledText{{"1) ", kBlack, false}, {"x \r\n", kBlue, true}, {"2) ", kBlack, false}, {"yx \r\n", kBlue, true}}));

    const MatchList empty = listMatches("abc", {"", "", false});
    EXPECT_EQ(empty.countLabel, "");
    EXPECT_TRUE(empty.listing.empty());
    const MatchList none = listMatches("abc", {"B", "", true});
    EXPECT_EQ(none.countLabel, "(0)");
    EXPECT_TRUE(none.listing.empty());
}

TEST(RegexTesterMatches, PositionsCountCharactersAndCrLfOnceAndGroupsKeepTheirNames) {
    // "é" is two bytes and one place, CR LF one place, U+1F600 four bytes and two places.
    const MatchList list = listMatches("\xC3\xA9\r\n\xF0\x9F\x98\x80" "ab-cd", {"(?<=(?<before>\\w)-)(\\w)(x)?", "", false});
    EXPECT_EQ(list.groupNames, (std::vector<std::string>{"before", "", ""}));
    ASSERT_EQ(list.matches.size(), 1u);
    const TesterMatch& match = list.matches[0];
    EXPECT_EQ(match.span.begin, 11u);
    EXPECT_EQ(match.span.position, 7u);
    EXPECT_EQ(match.span.length, 1u);
    ASSERT_EQ(match.groups.size(), 3u);
    EXPECT_EQ(match.groups[0]->position, 5u);  // before the match, in the look-behind
    EXPECT_EQ(match.groups[1]->position, 7u);
    EXPECT_FALSE(match.groups[2]);  // did not take part
    // Only the first thousand are kept for marking.
    EXPECT_EQ(listMatches(std::string(1500, 'z'), {"z", "", false}).matches.size(), kMarkedMatches);
}

TEST(RegexTesterSample, AFileIsReadAsTheRunReadsIt) {
    test::TempTree tree;
    tree.write("crlf.txt", "\xEF\xBB\xBFone\r\ntwo\r\n");
    tree.write("cp1252.txt", "caf\xE9\n");
    const SampleFile crlf = readSampleFile(tree.path("crlf.txt"), 1000);
    EXPECT_TRUE(crlf.crlf);
    EXPECT_EQ(crlf.text, "one\ntwo\n");
    const SampleFile cp1252 = readSampleFile(tree.path("cp1252.txt"), 1000);
    EXPECT_FALSE(cp1252.crlf);
    EXPECT_EQ(cp1252.text, "caf\xC3\xA9\n");
    EXPECT_THROW(readSampleFile(tree.path("crlf.txt"), 4), std::runtime_error);
    EXPECT_THROW(readSampleFile(tree.path("missing.txt"), 1000), std::runtime_error);
    EXPECT_THROW(readSampleFile(tree.root(), 1000), std::runtime_error);
}

}  // namespace
}  // namespace vantorel
