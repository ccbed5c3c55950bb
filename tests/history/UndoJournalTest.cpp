// Replaces recorded in the undo journal and taken back.

#include <sys/stat.h>
#include <unistd.h>


#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/FileListBuilder.h"
#include "history/JournalRuns.h"
#include "history/UndoJournal.h"
#include "support/ScopedEnvironment.h"
#include "support/SystemCallFaults.h"
#include "support/TempTree.h"

namespace vantorel::history {
namespace {

using test::SystemCallFaults;
using test::TempTree;

const std::string kUtf16Cat = std::string("\xff\xfe" "c\0a\0t\0\n\0", 10);

class UndoJournalTest : public ::testing::Test {
protected:
    std::vector<std::string> replace(const std::string& find, const std::string& replacement, bool backups = false) {
        return history::replace(tree.root(), journal, find, replacement, backups);
    }
    UndoOutcome undoLast() { return history::undoLast(journal); }
    std::string journalText() const {
        return test::fileText(journal.folder() + "/" + journal.runs().front().name + "/journal");
    }

    TempTree tree, state;
    UndoJournal journal{state.path("undo")};
};

TEST_F(UndoJournalTest, ReplaceThenUndoGivesBackTheWholeTreeByteForByte) {
    for (const bool backups : {false, true}) {
        for (const bool links : {true, false}) {
            TempTree tree;
            tree.write("utf8.txt", "one cat\ntwo cats\n");
            tree.write("cp1252.txt", "caf\xe9 cat\r\n");
            tree.write("crlf.txt", "cat\r\ncat\r\n");
            tree.write("utf16.txt", kUtf16Cat);
            tree.write("bom8.txt", "\xef\xbb\xbf" "cat\n");
            tree.write("readonly.txt", "cat\n", 0444);
            tree.write("sub/deep.txt", "a cat\n", 0640);
            tree.write("notes.txt", "cat");
            tree.write("notes.bak", "an older backup");
            tree.write("none.txt", "dog\n");
            const auto before = tree.snapshot();
            SystemCallFaults::Scope faults;
            SystemCallFaults::refuseLinks = !links;
            history::replace(tree.root(), journal, "cat", "d\xc3\xb6g", backups);
            EXPECT_NE(tree.snapshot(), before);
            const UndoOutcome outcome = undoLast();
            EXPECT_EQ(outcome.left(), 0u) << undoReport(outcome);
            EXPECT_EQ(tree.snapshot(), before) << "backups " << backups << ", links " << links;
            EXPECT_FALSE(journal.nextToUndo());
        }
    }
}

TEST_F(UndoJournalTest, FilesChangedOrDeletedSinceTheReplaceAreLeftAndListed) {
    for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"}) tree.write(name, "cat");
    replace("cat", "dog");
    tree.write("b.txt", "dog and more");
    ::unlink(tree.path("c.txt").c_str());
    ::chmod(tree.path("d.txt").c_str(), 0444);
    const UndoOutcome outcome = undoLast();
    EXPECT_EQ(tree.read("a.txt"), "cat");
    EXPECT_EQ(tree.read("b.txt"), "dog and more");
    EXPECT_EQ(tree.read("d.txt"), "dog");
    EXPECT_EQ(undoReport(outcome), "1 file(s) restored. 3 file(s) left as they were.\r\n" + tree.path("d.txt") +
                                       ": read-only: left as it is\r\n" + tree.path("c.txt") +
                                       ": deleted since the replace\r\n" + tree.path("b.txt") +
                                       ": changed since the replace: left as it is");
}

TEST_F(UndoJournalTest, UndoTakesBackTheNewestRunNotYetTakenBackAndARunThatWroteNothingIsNotRecorded) {
    tree.write("f.txt", "cat");
    tree.write("ro.txt", "owl", 0444);
    replace("cat", "dog");
    replace("dog", "cow");
    replace("owl", "emu");  // read-only: nothing written
    std::vector<RecordedRun> runs = journal.runs();
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].steps[0].replace, "cow");
    EXPECT_EQ(runs[0].filesWritten, 1u);
    EXPECT_TRUE(runs[0].finished);
    undoLast();
    EXPECT_EQ(tree.read("f.txt"), "dog");
    EXPECT_EQ(journal.nextToUndo()->steps[0].replace, "dog");
    undoLast();
    EXPECT_EQ(tree.read("f.txt"), "cat");
    EXPECT_FALSE(journal.nextToUndo());
    runs = journal.runs();
    EXPECT_TRUE(runs[0].undone && runs[1].undone);
}

TEST_F(UndoJournalTest, EveryCutOfAJournalReadsBackAsTheWholeRecordsBeforeTheCut) {
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) tree.write(name, "cat\tand\nnew\\line");
    replace("cat", "dog", true);
    const std::string text = journalText();
    const Journal whole = parseJournal(text);
    ASSERT_EQ(whole.files.size(), 3u);
    ASSERT_EQ(whole.validBytes, text.size());
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        const Journal part = parseJournal(std::string_view(text).substr(0, cut));
        ASSERT_LE(part.validBytes, cut);
        ASSERT_EQ(part.validBytes == 0 || text[part.validBytes - 1] == '\n', true);
        ASSERT_LE(part.files.size(), whole.files.size());
        ASSERT_TRUE(part.damagedLines.empty()) << "a record cut short is not a damaged one";
        for (std::size_t i = 0; i < part.files.size(); ++i) {
            EXPECT_EQ(part.files[i].path, whole.files[i].path);
            EXPECT_EQ(part.files[i].writtenHash, whole.files[i].writtenHash);
        }
    }
}

TEST_F(UndoJournalTest, OnlyTheNewestRunsAreKeptSoTheSpaceUsedStaysBounded) {
    UndoJournal two(state.path("two"), 2);
    tree.write("f.txt", std::string(100000, 'a'));
    for (const char* step : {"ab", "bc"}) history::replace(tree.root(), two, {step[0]}, {step[1]});
    const std::uint64_t afterTwo = two.spaceUsed();
    EXPECT_GT(afterTwo, 200000u);  // both old texts are kept
    for (const char* step : {"cd", "de"}) history::replace(tree.root(), two, {step[0]}, {step[1]});
    ASSERT_EQ(two.runs().size(), 2u);
    EXPECT_EQ(two.runs().back().steps[0].find, "c");
    two.removeSetAside();
    EXPECT_LE(two.spaceUsed(), afterTwo);
    history::undoLast(two);
    history::undoLast(two);
    EXPECT_EQ(tree.read("f.txt"), std::string(100000, 'c'));
    EXPECT_FALSE(two.nextToUndo());
}

TEST_F(UndoJournalTest, AReplaceOverATreeHoldingAnotherJournalLeavesThatJournalWhole) {
    UndoJournal theirs(tree.path("home/bob/.local/state/vantorel/undo"));
    tree.write("f.txt", "cat");
    history::replace(tree.root(), theirs, "cat", "dog");
    const std::string run = theirs.folder() + "/" + theirs.runs().front().name;
    const std::string marker = theirs.folder() + "/" + std::string(kUndoJournalMarker);
    ::unlink(marker.c_str());  // as an earlier version left it
    history::replace(tree.root(), theirs, "dog", "emu");
    EXPECT_EQ(::access(marker.c_str(), F_OK), 0) << "marked when next used";
    const auto before = tree.snapshot();

    // Their journal holds "cat" and "dog": in its steps, and as the old contents it keeps.
    EXPECT_EQ(history::replace(tree.root(), journal, "cat", "cow").back(), "No matches found in files.");
    EXPECT_EQ(history::replace(tree.root(), journal, "dog", "cow", false, 0,
                               {run + "/journal", run + "/kept/1", tree.path("f.txt")})
                  .back(),
              "No matches found in files.");
    EXPECT_EQ(history::replace(run + "/kept", journal, "cat", "cow").back(),
              "No files found in search path matching filter.");
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_FALSE(journal.nextToUndo());
    EXPECT_EQ(history::undoLast(theirs).left(), 0u);
    EXPECT_EQ(history::undoLast(theirs).left(), 0u);
    EXPECT_EQ(tree.read("f.txt"), "cat");
}

TEST_F(UndoJournalTest, AJournalThatCannotBeWrittenLetsTheReplaceGoOnAndSaysSo) {
    tree.write("blocker", "not a folder");
    UndoJournal blocked(tree.path("blocker/undo"));
    tree.write("f.txt", "cat");
    const std::vector<std::string> messages = history::replace(tree.root(), blocked, "cat", "dog");
    EXPECT_EQ(tree.read("f.txt"), "dog");
    EXPECT_THAT(messages, ::testing::Contains("Undo will not be able to take back this Replace from " +
                                              tree.path("f.txt") + " on:\r\nNot a directory"));
}

}  // namespace
}  // namespace vantorel::history
