// The library's and the batch jobs' files when they are links, or cannot be read.

#include <gtest/gtest.h>

#include <filesystem>

#include "library/BatchJobFile.h"
#include "library/LibraryFile.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

TEST(RecordFileTest, SavingThroughALinkChangesWhatItLeadsToAndTheLinkStays) {
    const struct {
        std::string link;    // what data/RegEx.txt leads to ("@" for the shared folder's full path)
        std::string target;  // the file that is written, under the tree
        std::string before;  // its contents before, if it is there
    } cases[] = {
        {"../shared/RegEx.txt", "shared/RegEx.txt", "old\to\r\n"},
        {"chain", "shared/RegEx.txt", "old\to\r\n"},  // data/chain leads on to the full path
        {"../shared/new.txt", "shared/new.txt", ""},  // not there yet: made where the link leads
    };
    for (const auto& c : cases) {
        test::TempTree tree;
        tree.mkdir("data");
        if (!c.before.empty()) tree.write(c.target, c.before, 0640);
        tree.mkdir("shared");
        fs::create_symlink(tree.path("shared/RegEx.txt"), tree.path("data/chain"));
        fs::create_symlink(c.link, tree.path("data/RegEx.txt"));
        fs::create_symlink("../shared/BatchJobs.txt", tree.path("data/BatchJobs.txt"));

        LibraryFile(RecordFile::inFolder(tree.path("data"), kLibraryFileName)).append({"new", "n", ""});
        BatchJobFile(RecordFile::inFolder(tree.path("data"), kBatchJobsFileName)).rewrite({"Job\tnew"});

        EXPECT_EQ(fs::read_symlink(tree.path("data/RegEx.txt")), c.link);
        EXPECT_EQ(tree.read(c.target), c.before + "new\tn\t\r\n") << c.link;
        if (!c.before.empty()) EXPECT_EQ(tree.mode(c.target), 0640) << c.link;
        EXPECT_TRUE(fs::is_symlink(tree.path("data/BatchJobs.txt")));
        EXPECT_EQ(tree.read("shared/BatchJobs.txt"), "Job\tnew\r\n");
        // Nothing else is left beside the links or the files.
        EXPECT_EQ(std::distance(fs::directory_iterator(tree.path("data")), {}), 3) << c.link;
        EXPECT_EQ(std::distance(fs::directory_iterator(tree.path("shared")), {}), 2) << c.link;
    }
}

TEST(RecordFileTest, AFileThatIsNotThereIsEmptyButOneThatCannotBeReachedIsAnError) {
    test::TempTree tree;
    const RecordFile file = RecordFile::inFolder(tree.root(), kLibraryFileName);
    EXPECT_EQ(file.text(), std::nullopt);
    fs::create_symlink("nowhere", tree.path("RegEx.txt"));  // leads nowhere: no file either
    EXPECT_EQ(file.text(), std::nullopt);
    fs::remove(tree.path("RegEx.txt"));
    fs::create_symlink("RegEx.txt", tree.path("RegEx.txt"));  // leads to itself
    try {
        file.text();
        ADD_FAILURE() << "a link to itself read as a file";
    } catch (const RecordFileError& error) {
        EXPECT_EQ(error.path(), fs::path(tree.path("RegEx.txt")));
        EXPECT_STREQ(error.what(), "Too many levels of symbolic links");
    }
}

}  // namespace
}  // namespace vantorel
