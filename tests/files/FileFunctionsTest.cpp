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

}  // namespace
}  // namespace vantorel
