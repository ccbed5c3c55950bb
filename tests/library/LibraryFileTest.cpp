#include "library/LibraryFile.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TempTree.h"

namespace vantorel {
namespace {

using Entries = std::vector<LibraryEntry>;

TEST(LibraryFileParse, FieldCountsDecideWhatALineGives) {
    const struct {
        std::string bytes;
        Entries entries;
    } cases[] = {
        {"a\tb\tc\r\n", {{"a", "b", "c"}}},
        {"a\tb\r\n", {{"a", "b", ""}}},
        // The third field counts only when there are exactly three.
        {"a\tb\tc\td\r\n", {{"a", "b", ""}}},
        {"\r\nlonely\r\n\r\nx\t\\d+\t$1\r\n", {{"x", "\\d+", "$1"}}},
        // Lines ended by LF alone, and a last line without an end.
        {"one\t1\ntwo\t2\tII", {{"one", "1", ""}, {"two", "2", "II"}}},
        // Not UTF-8: Windows-1252; a UTF-8 byte-order mark is not part of the first name.
        {"caf\xE9\t\x93q\x94\r\n", {{"caf\xC3\xA9", "\xE2\x80\x9Cq\xE2\x80\x9D", ""}}},
        {"\xEF\xBB\xBFname\tp\tr\r\n", {{"name", "p", "r"}}},
    };
    for (const auto& c : cases) EXPECT_EQ(parseLibrary(c.bytes), c.entries) << c.bytes;
}

class LibraryFileTest : public ::testing::Test {
protected:
    test::TempTree tree;
    LibraryFile file{tree.root()};
};

TEST_F(LibraryFileTest, AnAppendKeepsEveryByteThatWasThere) {
    const std::string odd = "first\tf\r\n\r\nno tab here\r\nfour\ta\tb\tc\r\nlast\tl";
    tree.write("RegEx.txt", odd);
    file.append({"new", "n", "r"});
    EXPECT_EQ(tree.read("RegEx.txt"), odd + "\r\nnew\tn\tr\r\n");
}

TEST_F(LibraryFileTest, AnAppendToAWindows1252FileLeavesItAllUtf8) {
    tree.write("RegEx.txt", "caf\xE9\tx\r\n");
    file.append({"\xC3\xBC", "u", ""});
    EXPECT_EQ(tree.read("RegEx.txt"), "caf\xC3\xA9\tx\r\n\xC3\xBC\tu\t\r\n");
}

}  // namespace
}  // namespace vantorel
