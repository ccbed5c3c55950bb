// Undo against a tree that changed since the Replace, a Replace running at
// the same time, a full disk, a kill in the middle, a damaged journal.

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/JournalRuns.h"
#include "history/UndoTexts.h"
#include "support/SmallDisk.h"
#include "support/TempTree.h"

namespace vantorel::history {
namespace {

using test::SmallDisk;
using test::TempTree;
using ::testing::HasSubstr;

class UndoSafetyTest : public ::testing::Test {
protected:
    void replace(const std::string& find, const std::string& replacement) {
        history::replace(tree.root(), journal, find, replacement, false, 1);
    }
    UndoJournal::Undo undoNext() {
        const std::optional<RecordedRun> run = journal.nextToUndo();
        if (!run) return {UndoJournal::UndoStatus::Unreadable, {}, "nothing to undo"};
        return journal.undo(*run);
    }

    TempTree tree, state;
    UndoJournal journal{state.path("undo")};
};

// The folder of a replaced file swapped for a link to a folder whose file
// of that name holds exactly what the Replace wrote: nothing is written
// there, and the start folder itself swapped restores nothing anywhere.
TEST_F(UndoSafetyTest, ARestoreNeverFollowsALinkPutInTheWayOfTheTree) {
    TempTree outside;
    tree.write("sub/f.txt", "cat");
    tree.write("g.txt", "cat");
    outside.write("f.txt", "dog");
    replace("cat", "dog");
    ::rename(tree.path("sub").c_str(), tree.path("moved").c_str());
    ASSERT_EQ(::symlink(outside.root().c_str(), tree.path("sub").c_str()), 0);
    const UndoJournal::Undo undo = undoNext();
    EXPECT_EQ(outside.read("f.txt"), "dog");
    EXPECT_EQ(tree.read("moved/f.txt"), "dog");
    EXPECT_EQ(tree.read("g.txt"), "cat");
    EXPECT_EQ(undoReport(undo.outcome),
              "1 file(s) restored. 1 file(s) left as they were.\r\n" + tree.path("sub/f.txt") +
                  ": a folder on its way was moved or replaced by a link since the replace: left as it is");

    TempTree start;
    start.write("h.txt", "cat");
    history::replace(start.root(), journal, "cat", "dog");
    const std::string moved = start.root() + ".moved";
    ASSERT_EQ(::rename(start.root().c_str(), moved.c_str()), 0);
    ASSERT_EQ(::symlink(outside.root().c_str(), start.root().c_str()), 0);
    outside.write("h.txt", "dog");
    const UndoJournal::Undo refused = undoNext();
    EXPECT_EQ(refused.status, UndoJournal::UndoStatus::FolderGone);
    EXPECT_THAT(refused.message, HasSubstr("is no longer where it was"));
    EXPECT_EQ(outside.read("h.txt"), "dog");
    ::unlink(start.root().c_str());
    ::rename(moved.c_str(), start.root().c_str());
}

// An Undo while a Replace (not recorded) changes the same files: a file
// said restored holds its old text, one said written holds the new one.
TEST_F(UndoSafetyTest, AnUndoAndAReplaceAtOnceNeverLoseAChangeTheyReport) {
    constexpr int kFiles = 150;
    for (int trial = 0; trial < 16; ++trial) {
        TempTree files;
        for (int i = 0; i < kFiles; ++i) files.write("f" + std::to_string(i) + ".txt", "cat");
        history::replace(files.root(), journal, "cat", "dog");
        UndoOutcome undone;
        std::thread undo([&] { undone = journal.undo(*journal.nextToUndo()).outcome; });
        const std::vector<FileReport> rows = replaceIn(files.root(), nullptr, "dog", "cow", false, 2).rows;
        undo.join();
        int lost = 0;
        for (const UndoFile& file : undone.files)
            if (file.result == UndoResult::Restored && files.read(file.path.substr(files.root().size() + 1)) != "cat")
                ++lost;
        for (const FileReport& row : rows)
            if (row.write && row.write->written() && files.read(row.path.substr(files.root().size() + 1)) != "cow")
                ++lost;
        ASSERT_EQ(lost, 0) << "trial " << trial;
    }
}

// Restoring moves the kept file back: it needs no room, and a file that
// cannot be restored now is restored by the next Undo, the run staying
// the one to undo until then.
TEST_F(UndoSafetyTest, UndoRestoresOnAFullDiskAndFinishesWhatItCouldNotDoLater) {
    SmallDisk disk(2 << 20);
    if (!disk.mounted()) GTEST_SKIP() << "cannot mount a file system here (needs root)";
    const TempTree& files = disk.tree();
    for (int i = 0; i < 8; ++i) files.write("d" + std::to_string(i % 2) + "/f" + std::to_string(i) + ".txt", "cat " + std::to_string(i));
    const auto before = files.snapshot();
    history::replace(files.root(), journal, "cat", "dog");
    disk.fill();
    ASSERT_TRUE(files.refuseNewFiles("d1"));
    const UndoJournal::Undo first = undoNext();
    EXPECT_EQ(first.outcome.restored(), 4u) << undoReport(first.outcome);
    EXPECT_EQ(first.outcome.left(), 4u);
    EXPECT_FALSE(first.outcome.complete());
    ASSERT_TRUE(journal.nextToUndo());  // not forgotten
    files.allowNewFiles("d1");
    const UndoJournal::Undo second = undoNext();
    EXPECT_EQ(second.outcome.restored(), 4u) << undoReport(second.outcome);
    EXPECT_EQ(second.outcome.left(), 0u) << undoReport(second.outcome);
    disk.empty();
    std::map<std::string, std::string> after = files.snapshot();
    std::erase_if(after, [](const auto& file) { return file.first.starts_with(".vantorel-undo-"); });  // the disk's top
    EXPECT_EQ(after, before);
    EXPECT_FALSE(journal.nextToUndo());
}

// Killed in the middle, Undo run again restores the rest and knows that
// the files it restored before are done.
TEST_F(UndoSafetyTest, AnUndoKilledInTheMiddleFinishesWhenRunAgain) {
    for (int i = 0; i < 5; ++i) tree.write("f" + std::to_string(i) + ".txt", "cat " + std::to_string(i));
    const auto before = tree.snapshot();
    replace("cat", "dog");
    ASSERT_TRUE(killedBeforeRename(tree.root(), 3, [&] { undoNext(); }));
    const UndoJournal::Undo again = undoNext();
    EXPECT_EQ(again.outcome.left(), 0u) << undoReport(again.outcome);
    EXPECT_TRUE(again.outcome.complete());
    EXPECT_EQ(filesIn(tree), before);
    EXPECT_FALSE(journal.nextToUndo());
}

// One flipped byte in the record of the second of five files: the other
// four are restored, the damaged record is named, and the run stays to undo.
TEST_F(UndoSafetyTest, ADamagedRecordIsNamedAndEveryIntactOneIsRestored) {
    for (int i = 1; i <= 5; ++i) tree.write("f" + std::to_string(i) + ".txt", "cat");
    replace("cat", "dog");
    const std::string path = journal.folder() + "/" + journal.runs().front().name + "/" + UndoJournal::kJournalFile;
    std::string bytes = test::fileText(path);
    const std::size_t second = bytes.find(tree.path("f2.txt"));
    ASSERT_NE(second, std::string::npos);
    bytes[second + tree.root().size() + 2] ^= 0x01;  // "f2.txt" becomes "g2.txt"
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    const std::size_t line = static_cast<std::size_t>(std::count(bytes.begin(), bytes.begin() + second, '\n')) + 1;

    const UndoJournal::Undo undo = undoNext();
    EXPECT_EQ(undo.outcome.restored(), 4u);
    EXPECT_FALSE(undo.outcome.complete());
    EXPECT_THAT(undoReport(undo.outcome),
                HasSubstr("Record " + std::to_string(line) +
                          " of this Replace's journal is damaged: the file it recorded was not restored."));
    for (const char* name : {"f1.txt", "f3.txt", "f4.txt", "f5.txt"}) EXPECT_EQ(tree.read(name), "cat");
    EXPECT_EQ(tree.read("f2.txt"), "dog");
    EXPECT_TRUE(journal.nextToUndo());

    // Without its first record (an earlier version's, or damaged there) a
    // journal says nothing: it is listed as such and Undo passes over it.
    tree.write("g.txt", "owl");
    replace("owl", "emu");
    const std::string newest = journal.folder() + "/" + journal.runs().front().name + "/" + UndoJournal::kJournalFile;
    std::ofstream(newest, std::ios::binary | std::ios::trunc) << "0000000000000000 run\t1\n";
    ASSERT_TRUE(journal.runs().front().unreadable);
    EXPECT_EQ(journal.nextToUndo()->name, journal.runs()[1].name);
}

}  // namespace
}  // namespace vantorel::history
