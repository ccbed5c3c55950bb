#include "files/FileFunctions.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/AtomicFileWriter.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

TEST(BackupNameTest, LooksOnlyAtTheFourthCharacterFromTheEnd) {
    EXPECT_EQ(backupNameFor("/d/notes.txt"), "/d/notes.bak");
    EXPECT_EQ(backupNameFor("/d/data.csv"), "/d/data.bak");
    EXPECT_EQ(backupNameFor("/d/page.html"), "/d/page.html.bak");
    EXPECT_EQ(backupNameFor("/d/Makefile"), "/d/Makefile.bak");
    EXPECT_EQ(backupNameFor("/d/a.b.c"), "/d/a.bak");
    EXPECT_EQ(backupNameFor("/d/x.tar.gz"), "/d/x.tar.gz.bak");
    EXPECT_EQ(backupNameFor("/d/old.bak"), "/d/old.bak.bak");
    EXPECT_EQ(backupNameFor("/d/OLD.BAK"), "/d/OLD.bak");
}

TEST(PathPartsTest, SplitAtTheLastSeparator) {
    EXPECT_EQ(FileNameOf("/a/b/c.txt"), "c.txt");
    EXPECT_EQ(FolderOf("/a/b/c.txt"), "/a/b/");
    EXPECT_EQ(FileNameOf("c.txt"), "c.txt");
    EXPECT_EQ(FolderOf("c.txt"), "");
    EXPECT_EQ(withTrailingSeparator("/a"), "/a/");
    EXPECT_EQ(withTrailingSeparator("/a/"), "/a/");
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

TEST(AtomicFileWriterTest, ReplacesTheFileWholeAndKeepsItsPermissionBits) {
    TempTree tree;
    const std::string file = tree.write("script.sh", "old contents that are long", 0751);
    {
        AtomicFileWriter writer(file);
        writer.write("new");
        writer.write(std::string(3 << 20, 'x'));  // more than the buffer holds
        writer.commit();
    }
    EXPECT_EQ(tree.read("script.sh"), "new" + std::string(3 << 20, 'x'));
    EXPECT_EQ(tree.mode("script.sh"), 0751);
}

TEST(AtomicFileWriterTest, AWriterThatIsNotCommittedLeavesNoTrace) {
    TempTree tree;
    const std::string file = tree.write("keep.txt", "original");
    {
        AtomicFileWriter writer(file);
        writer.write("partial new text");
        writer.finish();
    }
    EXPECT_EQ(tree.read("keep.txt"), "original");
    int entries = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(tree.root())) ++entries;
    EXPECT_EQ(entries, 1);
}

TEST(AtomicFileWriterTest, FailsCleanlyWhereNoFileCanBeCreated) {
    EXPECT_THROW(AtomicFileWriter("/no/such/folder/file.txt"), std::system_error);
}

}  // namespace
}  // namespace vantorel
