#include "files/FileText.h"

#include <unistd.h>

#include <gtest/gtest.h>

#include "core/FolderSync.h"
#include "search/FileProcessor.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

TEST(FileTextTest, ReadsSmallAndLargeFilesWithTheirEncoding) {
    TempTree tree;
    const std::string big(6 << 20, 'x');  // large enough to be mapped
    for (const std::string& content : {std::string("caf\xc3\xa9"), std::string("caf\xe9"), big + "\xe9"}) {
        const std::string path = tree.write("f.txt", content);
        FileText::Result read = FileText::read(path);
        ASSERT_EQ(read.status, FileText::Status::Ok);
        EXPECT_EQ(read.text.bytes(), content);
        EXPECT_FALSE(read.text.changedWhileRead());
    }
    EXPECT_EQ(FileText::read(tree.path("none.txt")).status, FileText::Status::Vanished);
    FileText::Result folder = FileText::read(tree.root());
    EXPECT_EQ(folder.status, FileText::Status::Error);
    EXPECT_EQ(folder.error, "Is a directory");
}

TEST(FileTextTest, AFileCutShortDuringItsSearchIsReportedNotCounted) {
    TempTree tree;
    const std::string path = tree.write("log.txt", std::string(8 << 20, 'a'));
    const std::vector<CompiledJob> jobs = {CompiledJob("a", "b", false)};
    RunRequest request;
    // The preview hook runs in the middle of the file's search: cut it there.
    request.previewSection = [&](const std::string&, std::string_view, TextEncoding, const CompiledPattern&) {
        ::truncate(path.c_str(), 4096);
        return StyledText{};
    };
    const FileOutcome outcome = processFile(path, jobs, PassSettings{false, false, false, false, &request});
    EXPECT_EQ(outcome.matches, 0u);
    EXPECT_FALSE(outcome.read);
    ASSERT_TRUE(outcome.readError.has_value());
    EXPECT_EQ(outcome.readError->text, "Error reading " + path + "\r\nThe file changed while it was being read.");
}

TEST(FileTextTest, ANewTextIsNotWrittenOverAChangeMadeMeanwhile) {
    TempTree tree;
    const std::string path = tree.write("a.txt", "old text");
    const std::vector<CompiledJob> jobs = {CompiledJob("old", "new", false)};
    FileOutcome outcome = processFile(path, jobs, PassSettings{true, true, false, false, nullptr});
    ASSERT_TRUE(outcome.pendingWrite);
    tree.write("a.txt", "someone else's text");
    std::vector<Message> messages;
    FolderSync folders;
    EXPECT_EQ(outcome.pendingWrite->commit(messages, folders).status, WriteStatus::ChangedMeanwhile);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text,
              path + " was changed by another program while it was being processed; it was left as it is.");
    EXPECT_EQ(tree.read("a.txt"), "someone else's text");

    FileOutcome again = processFile(path, {CompiledJob("else", "ELSE", false)},
                                    PassSettings{true, true, false, false, nullptr});
    EXPECT_TRUE(again.pendingWrite->commit(messages, folders).written());
    EXPECT_EQ(tree.read("a.txt"), "someone ELSE's text");
}

}  // namespace
}  // namespace vantorel
