#include "library/BatchJobEditor.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/ScriptedMessages.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

class BatchJobEditorTest : public ::testing::Test {
protected:
    BatchJobEditorTest() { tree.write("RegEx.txt", "tags\t<[^>]+>\t\r\nspaces\t {2,}\t \r\ndigits\t\\d+\t#\r\n"); }
    void open(const std::string& jobs) {
        tree.write("BatchJobs.txt", jobs);
        editor.start();
    }
    std::string file() const { return tree.read("BatchJobs.txt"); }

    test::TempTree tree;
    test::ScriptedMessages messages;
    LibraryState state;
    BatchJobEditor editor{BatchJobFile(tree.root()), LibraryFile(tree.root()), messages, state};
};

TEST_F(BatchJobEditorTest, SavingUnderAnExistingNameAsksForEveryLineOfThatName) {
    const std::string before = "Tidy\ttags\r\nother\tdigits\r\nTIDY\tspaces\r\n";
    open(before);
    editor.selectJob(1);
    editor.addEntry("tags");
    // One No leaves the file as it was and says nothing more.
    messages.answers = {true, false};
    EXPECT_FALSE(editor.save("tidy"));
    EXPECT_EQ(messages.asked(), (Texts{"Update 'tidy' ?", "Update 'tidy' ?"}));
    EXPECT_EQ(file(), before);
    EXPECT_TRUE(editor.changed());
    EXPECT_TRUE(messages.messages.empty());
    // Yes to each: every line keeps its place and takes the name as typed.
    messages.answers = {true, true};
    EXPECT_TRUE(editor.save("tidy"));
    EXPECT_EQ(file(), "tidy\tdigits\ttags\r\nother\tdigits\r\ntidy\tdigits\ttags\r\n");
    EXPECT_EQ(editor.currentJob(), 1);
    EXPECT_EQ(messages.texts(), Texts{"tidy saved."});
}

TEST_F(BatchJobEditorTest, FailuresSayWhatFailedWithTheSystemsReason) {
    open("Tidy\ttags\r\n");
    editor.selectJob(0);
    EXPECT_FALSE(editor.save("tab\there"));
    // The file turns into a folder behind the window's back.
    std::filesystem::remove(tree.path("BatchJobs.txt"));
    tree.write("BatchJobs.txt/inside", "");
    EXPECT_FALSE(editor.save("Tidy"));
    EXPECT_EQ(messages.texts(), (Texts{"The name of a batch job cannot hold tabs or line breaks.",
                                       "Error saving file: Is a directory"}));
    // A file that cannot be read: the loopback device has no speed, even for root.
    const char* unreadable = "/sys/class/net/lo/speed";
    if (!std::filesystem::exists(unreadable)) GTEST_SKIP() << "no " << unreadable;
    std::filesystem::remove_all(tree.path("BatchJobs.txt"));
    std::filesystem::create_symlink(unreadable, tree.path("BatchJobs.txt"));
    messages.messages.clear();
    messages.answers = {true};
    EXPECT_FALSE(editor.deleteJob());
    editor.start();
    EXPECT_EQ(messages.texts(), (Texts{"Error Deleting record: Invalid argument",
                                       "Error loading batch jobs list: Invalid argument"}));
    EXPECT_EQ(editor.entries(), Texts{"tags"});
}

}  // namespace
}  // namespace vantorel
