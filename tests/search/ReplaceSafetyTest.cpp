// A Replace over a tree that changes while it runs: folders swapped for
// links, files rewritten in place, another Replace at the same time, a disk
// that fills, another user's file, a stop.

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <latch>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/FileFunctions.h"
#include "history/UndoJournal.h"
#include "search/SearchRun.h"
#include "support/RecordingHost.h"
#include "support/Replacing.h"
#include "support/SmallDisk.h"
#include "support/SystemCallFaults.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::RecordingHost;
using test::Replaced;
using test::replaceRequest;
using test::runReplace;
using test::SmallDisk;
using test::SystemCallFaults;
using test::TempTree;
using test::writeStatusOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// A folder of the tree swapped for a link to a folder outside it, whose file
// of the same name holds the same text: nothing outside is ever written,
// backups included, whenever the swap comes.
TEST(ReplaceSafetyTest, AFolderSwappedForALinkIsNeverEnteredByAWrite) {
    enum class When { WhileTheQuestionWaits, BeforeTheNewFilesAreRenamedIn };
    for (const When when : {When::WhileTheQuestionWaits, When::BeforeTheNewFilesAreRenamedIn}) {
        for (const bool backups : {false, true}) {
            TempTree tree, outside;
            tree.write("a.txt", "cat");
            tree.write("sub/f.txt", "cat");
            outside.write("f.txt", "cat");
            auto swap = [&] {
                ::rename(tree.path("sub").c_str(), tree.path("moved").c_str());
                ::symlink(outside.root().c_str(), tree.path("sub").c_str());
            };
            SystemCallFaults::Scope faults;
            RecordingHost host;
            if (when == When::WhileTheQuestionWaits) {
                host.onQuestion = [&](const Message&) { swap(); };
            } else if (!backups) {
                SystemCallFaults::beforeSyncfs = [&, swapped = false]() mutable {
                    if (!std::exchange(swapped, true)) swap();
                };
            } else {  // files are renamed in one by one: before the first
                SystemCallFaults::beforeRename = [&](const std::string&, const std::string& to) {
                    if (to == tree.path("a.txt")) swap();
                };
            }
            RunRequest r = replaceRequest(tree.root(), "cat", "dog");
            r.makeBackups = backups;
            r.threads = 2;
            const Replaced run = runReplace(r, host);
            EXPECT_EQ(outside.snapshot(), (std::map<std::string, std::string>{{"f.txt", "420 cat"}}))
                << static_cast<int>(when) << backups;
            EXPECT_EQ(tree.read("moved/f.txt"), "cat");
            EXPECT_EQ(tree.read("a.txt"), "dog");
            EXPECT_EQ(writeStatusOf(run, tree.path("sub/f.txt")), "changed-meanwhile");
            EXPECT_THAT(run.messages, Contains(tree.path("sub/f.txt") +
                                               " can no longer be reached without following a link (a folder on its "
                                               "way was moved or replaced); it was not changed."));
        }
    }
}

// Rewritten in place by another program while the question waits, with its
// size and modification time put back: only the change time tells.
TEST(ReplaceSafetyTest, AFileRewrittenInPlaceWithItsTimePutBackIsReadAgain) {
    TempTree tree;
    const std::string file = tree.write("f.txt", "cat one");
    RecordingHost host;
    host.onQuestion = [&](const Message&) {
        struct stat before {};
        ::stat(file.c_str(), &before);
        const int fd = ::open(file.c_str(), O_WRONLY);
        ASSERT_EQ(::pwrite(fd, "cat two", 7, 0), 7);
        const timespec times[2] = {before.st_atim, before.st_mtim};
        ::futimens(fd, times);
        ::close(fd);
    };
    runReplace(replaceRequest(tree.root(), "cat", "dog"), host);
    EXPECT_EQ(tree.read("f.txt"), "dog two");
}

// Two Replaces at once over the same files, each changing another word: a
// file that a run says it wrote holds that run's change, whatever the order.
TEST(ReplaceSafetyTest, TwoReplacesAtOnceNeverLoseAChangeTheyReport) {
    constexpr int kFiles = 150;
    for (int trial = 0; trial < 20; ++trial) {
        TempTree tree;
        for (int i = 0; i < kFiles; ++i) tree.write("f" + std::to_string(i) + ".txt", "cat cow");
        Replaced first, second;
        RunRequest dogs = replaceRequest(tree.root(), "cat", "dog"), emus = replaceRequest(tree.root(), "cow", "emu");
        dogs.threads = emus.threads = 2;
        std::latch bothAsked(2);  // their writing passes start together
        RecordingHost dogHost, emuHost;
        dogHost.onQuestion = emuHost.onQuestion = [&](const Message&) { bothAsked.arrive_and_wait(); };
        std::thread other([&] { second = runReplace(emus, emuHost); });
        first = runReplace(dogs, dogHost);
        other.join();
        int lost = 0;
        for (int i = 0; i < kFiles; ++i) {
            const std::string name = "f" + std::to_string(i) + ".txt", text = tree.read(name);
            if (writeStatusOf(first, tree.path(name)) == "written" && text.find("dog") == std::string::npos) ++lost;
            if (writeStatusOf(second, tree.path(name)) == "written" && text.find("emu") == std::string::npos) ++lost;
            if (text == "cat cow") ++lost;  // neither
        }
        ASSERT_EQ(lost, 0) << "trial " << trial;
    }
}

// Stopped at any moment of the writing pass, every file is old or new,
// the summary counts exactly those written, and never says "no matches".
TEST(ReplaceSafetyTest, AStopAtAnyMomentCountsExactlyWhatWasWritten) {
    for (int stopAfter = 1; stopAfter <= 40; stopAfter += 13) {
        TempTree tree;
        for (int i = 0; i < 60; ++i) tree.write("d" + std::to_string(i % 4) + "/f" + std::to_string(i) + ".txt", "x x");
        SearchState state;
        RecordingHost host;
        host.answers = {true};
        int rows = 0;
        host.onRow = [&](const FileReport& row) {
            if (row.write && ++rows == stopAfter) state.stopRequested = true;
        };
        RunRequest r = replaceRequest(tree.root(), "x", "y");
        r.makeBackups = stopAfter % 2 == 1;
        r.threads = 2;
        RunSearch(r, state, host);
        int written = 0;
        for (const auto& [name, contents] : tree.snapshot()) {
            if (name.ends_with(".bak")) continue;
            ASSERT_TRUE(contents == "420 x x" || contents == "420 y y") << name << ": " << contents;
            written += contents == "420 y y";
        }
        EXPECT_THAT(host.texts(), ElementsAre(HasSubstr("Replace operation stopped."),
                                                     std::to_string(written) + " files processed, " +
                                                         std::to_string(2 * written) + " occurences changed in " +
                                                         std::to_string(written) + " file(s)"));
    }
}

// As another user, in a folder both may write: a new file would be ours.
TEST(ReplaceSafetyTest, AnotherUsersFileIsLeftWithItsOwnerNotTakenOver) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to act as two other users";
    TempTree tree;
    ::chmod(tree.root().c_str(), 0777);
    const std::string theirs = tree.write("theirs.txt", "cat", 0666);
    const std::string mine = tree.write("mine.txt", "cat", 0644);
    ASSERT_EQ(::chown(theirs.c_str(), 5002, 5002), 0);
    ASSERT_EQ(::chown(mine.c_str(), 5001, 5001), 0);
    int pipes[2];
    ASSERT_EQ(::pipe(pipes), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(pipes[0]);
        if (::setgroups(0, nullptr) != 0 || ::setresgid(5001, 5001, 5001) != 0 || ::setresuid(5001, 5001, 5001) != 0)
            ::_exit(3);
        const Replaced run = runReplace(replaceRequest(tree.root(), "cat", "dog"));
        const std::string statuses = writeStatusOf(run, theirs) + " " + writeStatusOf(run, mine);
        ::write(pipes[1], statuses.data(), statuses.size());
        ::_exit(0);
    }
    ::close(pipes[1]);
    char buffer[256] = {};
    const ssize_t n = ::read(pipes[0], buffer, sizeof buffer - 1);
    ::close(pipes[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(std::string(buffer, n > 0 ? static_cast<std::size_t>(n) : 0), "foreign-owner written");
    struct stat st {};
    ASSERT_EQ(::stat(theirs.c_str(), &st), 0);
    EXPECT_EQ(st.st_uid, 5002u);
    EXPECT_EQ(tree.read("theirs.txt"), "cat");
    EXPECT_EQ(tree.read("mine.txt"), "dog");
}

// Keeping the old contents for Undo never costs the Replace a file: on a
// disk too small to keep them, the Replace goes on without, and says so
// once, whether that is known before or the disk fills during the run.
TEST(ReplaceSafetyTest, UndoGivesWayWhenTheDiskIsTooSmallToKeepTheOldContents) {
    constexpr int kFiles = 150;
    constexpr std::size_t kSize = 20000;
    for (const bool fillsDuringTheRun : {false, true}) {
        SmallDisk disk(8 << 20);
        if (!disk.mounted()) GTEST_SKIP() << "cannot mount a file system here (needs root)";
        TempTree state;
        history::UndoJournal journal(state.path("undo"));
        for (int i = 0; i < kFiles; ++i) disk.tree().write("f" + std::to_string(i) + ".txt", std::string(kSize, 'a'));
        if (!fillsDuringTheRun) disk.fill(kSize * 3 / 2);  // room for one and a half files
        SystemCallFaults::Scope faults;
        if (fillsDuringTheRun)  // once the first new files are made, before they are renamed in
            SystemCallFaults::beforeSyncfs = [&, filled = false]() mutable {
                if (!std::exchange(filled, true)) disk.fill(kSize * 3 / 2);
            };
        RunRequest r = replaceRequest(disk.tree().root(), "a", "b");
        r.journal = &journal;
        r.threads = 2;
        const Replaced run = runReplace(r);
        int written = 0;
        for (int i = 0; i < kFiles; ++i) written += disk.tree().read("f" + std::to_string(i) + ".txt")[0] == 'b';
        EXPECT_EQ(written, kFiles) << "fills during the run: " << fillsDuringTheRun;
        const std::string expected = fillsDuringTheRun
                                         ? "Not enough free space to keep the replaced files for Undo: this Replace "
                                           "cannot be undone."
                                         : "Not enough free space to keep the replaced files (2.9 MB) for Undo: "
                                           "this Replace cannot be undone.";
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), expected), 1) << ::testing::PrintToString(run.messages);
        EXPECT_THAT(run.messages, Not(Contains(HasSubstr("Error writing"))));
        EXPECT_TRUE(journal.runs().empty());
    }
}

}  // namespace
}  // namespace vantorel
