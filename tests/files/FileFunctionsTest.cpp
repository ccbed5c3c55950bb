#include "files/FileFunctions.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

TEST(BackupNameTest, LooksOnlyAtTheFourthCharacterFromTheEndOfTheName) {
    EXPECT_EQ(backupNameFor("/d/notes.txt"), "/d/notes.bak");
    EXPECT_EQ(backupNameFor("/d/data.csv"), "/d/data.bak");
    EXPECT_EQ(backupNameFor("/d/page.html"), "/d/page.html.bak");
    EXPECT_EQ(backupNameFor("/d/Makefile"), "/d/Makefile.bak");
    EXPECT_EQ(backupNameFor("/d/a.b.c"), "/d/a.bak");
    EXPECT_EQ(backupNameFor("/d/x.tar.gz"), "/d/x.tar.gz.bak");
    EXPECT_EQ(backupNameFor("/d/old.bak"), "/d/old.bak.bak");
    EXPECT_EQ(backupNameFor("/d/OLD.BAK"), "/d/OLD.bak");
    EXPECT_EQ(backupNameFor("/proj/x.d/c"), "/proj/x.d/c.bak");  // always beside the file
    EXPECT_EQ(backupNameFor("/a.b/cd"), "/a.b/cd.bak");
}

TEST(FileHelpersTest, ExistenceAndReadOnlyFollowTheOwnerWriteBit) {
    TempTree tree;
    const std::string file = tree.write("f.txt", "x", 0444);
    EXPECT_TRUE(FileExists(file));
    EXPECT_FALSE(FileExists(tree.root()));
    EXPECT_TRUE(FolderExists(tree.root()));
    EXPECT_FALSE(FolderExists(file));
    EXPECT_FALSE(FolderExists(""));
    EXPECT_TRUE(IsReadOnly(file));  // also when running as root
    EXPECT_FALSE(IsReadOnly(tree.write("g.txt", "x", 0644)));
}

}  // namespace
}  // namespace vantorel
