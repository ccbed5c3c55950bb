#include "results/PathCompaction.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(PathCompaction, PutsTheEllipsisInTheMiddleKeepsTheNameAndCountsCharacters) {
    EXPECT_EQ(compactPath("/home/ann/notes.txt", 40), "/home/ann/notes.txt");
    EXPECT_EQ(compactPath("/home/ann/projects/2024/notes.txt", 20), "/home/a.../notes.txt");
    EXPECT_EQ(compactPath("/home/ann/projects/2024/notes.txt", 20).size(), 20u);
    // A name too long for the room keeps its end.
    EXPECT_EQ(compactPath("/a/averyveryverylongname.txt", 10), "...ame.txt");
    EXPECT_EQ(compactPath("/a/b/c.txt", 2), "..");

    const std::string path = "/\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9/x.txt";  // 13 characters
    EXPECT_EQ(compactPath(path, 13), path);
    EXPECT_EQ(compactPath(path, 12), "/\xC3\xA9\xC3\xA9.../x.txt");
}

}  // namespace
}  // namespace vantorel
