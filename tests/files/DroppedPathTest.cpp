#include "files/DroppedPath.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

TEST(DroppedPath, AFolderIsTakenAFileGivesItsFolder) {
    test::TempTree tree;
    tree.write("docs/a.txt", "a");
    ASSERT_EQ(::symlink(tree.path("docs").c_str(), tree.path("link").c_str()), 0);
    EXPECT_EQ(startFolderForDrop(tree.path("docs")), tree.path("docs"));
    EXPECT_EQ(startFolderForDrop(tree.path("docs") + "/"), tree.path("docs"));
    EXPECT_EQ(startFolderForDrop(tree.path("docs/a.txt")), tree.path("docs"));
    EXPECT_EQ(startFolderForDrop(tree.path("link")), tree.path("link"));  // a linked folder, by its name
    EXPECT_EQ(startFolderForDrop(tree.path("gone.txt")), "");
    EXPECT_EQ(startFolderForDrop("/"), "/");
}

}  // namespace
}  // namespace vantorel
