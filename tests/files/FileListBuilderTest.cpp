#include "files/FileListBuilder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

std::vector<std::string> paths(const FileList& list, const std::string& root) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.size(); ++i) out.push_back(list.path(i).substr(root.size() + 1));
    return out;
}

class FileListBuilderTest : public ::testing::Test {
protected:
    FileListBuilderTest() {
        tree.write("b.txt", "b");
        tree.write("a.txt", "a");
        tree.write("c.log", "c");
        tree.write("sub1/deep/d.txt", "d");
        tree.write("sub1/e.txt", "e");
        tree.write("sub2/f.TXT", "f");
    }
    // The files listed below the tree's root, relative to it.
    std::vector<std::string> listed(const std::string& filter, bool subfolders = true) {
        return paths(BuildFileList(tree.root(), filter, subfolders, stop), tree.root());
    }
    TempTree tree;
    std::atomic<bool> stop{false};
};

TEST_F(FileListBuilderTest, WalksBreadthFirstWithEachFolderInNameOrderListingEachFileOnce) {
    const std::vector<std::string> all{"a.txt", "b.txt", "sub1/e.txt", "sub2/f.TXT", "sub1/deep/d.txt"};
    const struct {
        std::string start;
        const char* filter;
        bool subfolders;
        std::vector<std::string> expected;
    } cases[] = {
        {tree.root(), "*.txt", true, all},
        {tree.root() + "/", "*.txt", true, all},
        {tree.root(), "*.txt;*.log", false, {"a.txt", "b.txt", "c.log"}},
        {tree.root(), "a.*;*.txt; a.txt", false, {"a.txt", "b.txt"}},  // a name matching several patterns
    };
    for (const auto& c : cases) {
        const FileList list = BuildFileList(c.start, c.filter, c.subfolders, stop);
        EXPECT_EQ(paths(list, tree.root()), c.expected) << c.start << " " << c.filter;
        EXPECT_EQ(list.folders.front(), tree.root() + "/");
        for (const std::string& folder : list.folders) EXPECT_EQ(folder.back(), '/');
    }
}

TEST_F(FileListBuilderTest, FilterWithoutPatternsTellsTheUser) {
    std::vector<std::string> shown;
    FileListCallbacks callbacks;
    callbacks.information = [&](const std::string& text) { shown.push_back(text); };
    EXPECT_TRUE(BuildFileList(tree.root(), "", true, stop, callbacks).empty());
    EXPECT_EQ(shown, (std::vector<std::string>{"Please select a file filter."}));
    EXPECT_TRUE(BuildFileList(tree.root(), ";", true, stop, callbacks).empty());
    EXPECT_EQ(shown.size(), 1u);
}

TEST_F(FileListBuilderTest, LinkedFilesAreListedLinkedFoldersAreNotEntered) {
    ASSERT_EQ(::symlink(tree.path("sub1").c_str(), tree.path("sub2/loop").c_str()), 0);
    ASSERT_EQ(::symlink(tree.root().c_str(), tree.path("sub1/deep/up").c_str()), 0);
    ASSERT_EQ(::symlink(tree.path("a.txt").c_str(), tree.path("sub2/link.txt").c_str()), 0);
    ASSERT_EQ(::symlink(tree.path("missing").c_str(), tree.path("sub2/dangling.txt").c_str()), 0);
    EXPECT_EQ(listed("*.txt"), (std::vector<std::string>{"a.txt", "b.txt", "sub1/e.txt", "sub2/f.TXT",
                                                         "sub2/link.txt", "sub1/deep/d.txt"}));
}

TEST_F(FileListBuilderTest, VersionControlFoldersAreEnteredOnlyWhenAskedFor) {
    for (const char* folder : {".git", ".hg", ".svn", ".bzr", "_darcs", "CVS"})
        tree.write(std::string("sub1/") + folder + "/x.txt", "x");
    tree.write("sub2/.github/ci.txt", "y");  // similar names are ordinary folders
    tree.write("sub2/cvs/z.txt", "z");
    tree.write("sub2/.git", "gitdir: elsewhere");  // a file of that name is listed
    const std::vector<std::string> ordinary{"a.txt", "b.txt", "sub1/e.txt", "sub2/f.TXT", "sub1/deep/d.txt",
                                            "sub2/.github/ci.txt", "sub2/cvs/z.txt"};
    EXPECT_EQ(listed("*.txt"), ordinary);
    EXPECT_EQ(listed(".git"), (std::vector<std::string>{"sub2/.git"}));
    EXPECT_EQ(BuildFileList(tree.root(), "*.txt", true, stop, {}, false).size(), ordinary.size() + 6);
    // Named as the start folder, such a folder is searched.
    EXPECT_EQ(BuildFileList(tree.path("sub1/.git"), "*", true, stop).size(), 1u);
}

TEST_F(FileListBuilderTest, SpecialFilesTemporaryFilesAndUnreadableFoldersContributeNothing) {
    ASSERT_EQ(::mkfifo(tree.path("pipe.txt").c_str(), 0644), 0);
    tree.write(".vantorel-4242-8", "a write in progress");
    tree.write(".vantorel-4242-7-a.txt", "a user's file that only looks like one");
    EXPECT_EQ(listed("*.txt", false), (std::vector<std::string>{".vantorel-4242-7-a.txt", "a.txt", "b.txt"}));
    EXPECT_TRUE(BuildFileList(tree.path("no-such-folder"), "*", true, stop).empty());
}

TEST_F(FileListBuilderTest, NoUndoJournalsFolderIsEnteredWhoeverItIsAndWhereverTheWalkStarts) {
    const std::string marker(kUndoJournalMarker);
    tree.write("home/bob/state/undo/" + marker, "");
    tree.write("home/bob/state/undo/run/journal", "j");
    tree.write("home/bob/state/undo/run/kept/1", "k");
    tree.write("home/bob/state/notes.txt", "n");
    tree.write("sub1/.vantorel-undo-5001/run/1", "k");  // kept contents on another file system
    ASSERT_EQ(::symlink(tree.path("home/bob/state/undo/run/kept/1").c_str(), tree.path("sub2/kept.txt").c_str()), 0);
    ASSERT_EQ(::symlink(tree.path("home/bob/state/undo/run").c_str(), tree.path("run").c_str()), 0);
    EXPECT_EQ(listed("*"), (std::vector<std::string>{"a.txt", "b.txt", "c.log", "sub1/e.txt", "sub2/f.TXT",
                                                     "sub1/deep/d.txt", "home/bob/state/notes.txt"}));
    for (const char* start : {"home/bob/state/undo", "home/bob/state/undo/run/kept", "run", "run/kept",
                              "sub1/.vantorel-undo-5001/run"})
        EXPECT_TRUE(BuildFileList(tree.path(start), "*", true, stop).empty()) << start;
    UndoFolders folders;
    EXPECT_TRUE(folders.holds(tree.path("home/bob/state/undo/run/journal")));
    EXPECT_TRUE(folders.holds(tree.path("sub2/kept.txt")));
    EXPECT_FALSE(folders.holds(tree.path("home/bob/state/notes.txt")));
}

TEST_F(FileListBuilderTest, StopEndsEachFolderAfterItsFirstEntry) {
    stop = true;
    // The start folder gives its first entry (a.txt); no folder was queued.
    EXPECT_EQ(listed("*"), (std::vector<std::string>{"a.txt"}));
}

TEST_F(FileListBuilderTest, NoFolderIsEnteredTwice) {
    // Cut at the NUL by the system, every folder of this walk is the start folder.
    const std::string start = tree.root() + std::string(1, '\0') + "/x";
    std::size_t reached = 0;
    FileListCallbacks callbacks;
    callbacks.status = [&](const std::string&) {
        if (++reached > 100) throw std::runtime_error("the walk does not end");
    };
    const FileList list = BuildFileList(start, "*.txt", true, stop, callbacks);
    EXPECT_EQ(list.names, (std::vector<std::string>{"a.txt", "b.txt"}));
}

}  // namespace
}  // namespace vantorel
