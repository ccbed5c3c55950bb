// An undo journal that another user could have written is not used: not to
// record a Replace, not to take one back.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/FileListBuilder.h"
#include "history/JournalRuns.h"
#include "history/JournalTrust.h"
#include "history/UndoTexts.h"
#include "support/TempTree.h"

namespace vantorel::history {
namespace {

using test::giveTo;
using test::kOtherUser;
using test::TempTree;
using ::testing::Contains;

// The modes of the folders under `root`, links not followed.
std::map<std::string, int> folderModes(const TempTree& root) {
    std::map<std::string, int> modes;
    std::error_code ec;
    for (auto it = std::filesystem::recursive_directory_iterator(root.root(), ec);
         !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec))
        if (struct stat st {}; ::lstat(it->path().c_str(), &st) == 0 && S_ISDIR(st.st_mode))
            modes[it->path().string()] = static_cast<int>(st.st_mode & 07777);
    return modes;
}

struct Arranged {
    std::string journal;  // relative to the state folder
    std::string refused;  // the folder or link named, relative to it
    std::string why;      // what follows its name
};

struct JournalCase {
    const char* what;
    bool needsRoot;  // gives a folder to another user
    std::function<Arranged(const TempTree& state)> arrange;
};

const JournalCase kUntrusted[] = {
    {"the journal's folder is another user's", true,
     [](const TempTree& s) {
         giveTo(s.mkdir("undo"), kOtherUser);
         return Arranged{"undo", "undo", " belongs to user 5001, not to user 0"};
     }},
    {"the group may write the journal's folder", false,
     [](const TempTree& s) {
         ::chmod(s.mkdir("undo").c_str(), 0770);
         return Arranged{"undo", "undo", " can be written by other users (mode 0770)"};
     }},
    {"anyone may write it, sticky or not", false,
     [](const TempTree& s) {
         ::chmod(s.mkdir("undo").c_str(), 01777);
         return Arranged{"undo", "undo", " can be written by other users (mode 1777)"};
     }},
    {"a folder above is another user's", true,
     [](const TempTree& s) {
         giveTo(s.mkdir("home"), kOtherUser);
         return Arranged{"home/state/undo", "home", " belongs to user 5001, not to user 0 or root"};
     }},
    {"anyone may write a folder above that is not sticky", false,
     [](const TempTree& s) {
         ::chmod(s.mkdir("open").c_str(), 0777);
         return Arranged{"open/undo", "open", " can be written by other users (mode 0777, not sticky)"};
     }},
    {"a link above leads to another user's folder", true,
     [](const TempTree& s) {
         giveTo(s.mkdir("theirs"), kOtherUser);
         ::symlink("theirs", s.path("mine").c_str());
         return Arranged{"mine/undo", "theirs", " belongs to user 5001, not to user 0 or root"};
     }},
    {"the journal's folder is a link", false,
     [](const TempTree& s) {
         ::chmod(s.mkdir("target").c_str(), 0755);
         ::symlink(s.path("target").c_str(), s.path("undo").c_str());
         return Arranged{"undo", "undo", " is a symbolic link"};
     }},
    {"the journal's folder is a file", false,
     [](const TempTree& s) {
         s.write("undo", "not a folder");
         return Arranged{"undo", "undo", " is not a folder"};
     }},
};

TEST(JournalTrustTest, AReplaceGoesOnUnrecordedWhenItsJournalIsNotTrustedAndSaysWhichFolderAndWhy) {
    for (const JournalCase& c : kUntrusted) {
        if (c.needsRoot && ::geteuid() != 0) continue;
        TempTree tree, state;
        tree.write("f.txt", "cat");
        const Arranged arranged = c.arrange(state);
        const std::string refused = state.path(arranged.refused);
        const auto stateBefore = state.snapshot();
        const auto modesBefore = folderModes(state);
        UndoJournal journal(state.path(arranged.journal));

        const std::vector<std::string> messages = replace(tree.root(), journal, "cat", "dog");
        EXPECT_EQ(tree.read("f.txt"), "dog") << c.what;
        EXPECT_THAT(messages, Contains("Undo will not be able to take back this Replace, which is not recorded.\r\n"
                                       "The undo journal " + journal.folder() + " is not used: " + refused +
                                       arranged.why + "."))
            << c.what;
        EXPECT_EQ(state.snapshot(), stateBefore) << c.what << ": nothing recorded, nothing made";
        EXPECT_EQ(folderModes(state), modesBefore) << c.what << ": nothing made private that is not ours";
        EXPECT_FALSE(state.exists("target/" + std::string(kUndoJournalMarker))) << c.what;

        ASSERT_TRUE(journal.refused()) << c.what;
        EXPECT_EQ(describe(*journal.refused()), refused + arranged.why);
        EXPECT_EQ(undoRefused(journal.folder(), *journal.refused()),
                  "The undo journal " + journal.folder() + " is not used: " + refused + arranged.why +
                      ".\r\nNothing was undone.");
    }
}

TEST(JournalTrustTest, TrustedFoldersAboveAndLinksToThemAreFollowedAndTheJournalIsMadePrivate) {
    TempTree tree, state;
    tree.write("f.txt", "cat");
    ::chmod(state.mkdir("shared").c_str(), 01777);  // as /tmp
    state.mkdir("real/state");
    ::symlink("../real", state.path("shared/link").c_str());
    ::chmod(state.mkdir("real/state/undo").c_str(), 0755);
    UndoJournal journal(state.path("shared/link/state/undo"));
    EXPECT_FALSE(journal.refused());
    EXPECT_EQ(replace(tree.root(), journal, "cat", "dog"), std::vector<std::string>{
                                                              "1 files processed, 1 occurences changed in 1 file(s)"});
    EXPECT_EQ(journal.runs().size(), 1u);
    EXPECT_EQ(state.mode("real/state/undo"), 0700);
    EXPECT_EQ(undoLast(journal).restored(), 1u);
    EXPECT_EQ(tree.read("f.txt"), "cat");
}

TEST(JournalTrustTest, UndoTakesNothingFromARecordedRunThatIsNotTrusted) {
    struct Tamper {
        const char* what;
        bool needsRoot;
        std::string refused;  // relative to the run's folder
        std::string why;
        std::function<void(const std::string& run)> apply;
    };
    const Tamper tampers[] = {
        {"its folder is another user's", true, "", " belongs to user 5001, not to user 0",
         [](const std::string& run) { ::lchown(run.c_str(), kOtherUser, kOtherUser); }},
        {"others may write its journal", false, "/journal", " can be written by other users (mode 0666)",
         [](const std::string& run) { ::chmod((run + "/journal").c_str(), 0666); }},
        {"its journal is a link", false, "/journal", " is a symbolic link",
         [](const std::string& run) {
             ::rename((run + "/journal").c_str(), (run + "/copy").c_str());
             ::symlink("copy", (run + "/journal").c_str());
         }},
        {"its kept contents' folder is another user's", true, "/kept", " belongs to user 5001, not to user 0",
         [](const std::string& run) { ::lchown((run + "/kept").c_str(), kOtherUser, kOtherUser); }},
        {"its list of folders elsewhere is another user's", true, "/elsewhere", " belongs to user 5001, not to user 0",
         [](const std::string& run) {
             std::ofstream(run + "/elsewhere") << "";
             ::lchown((run + "/elsewhere").c_str(), kOtherUser, kOtherUser);
         }},
    };
    for (const Tamper& t : tampers) {
        if (t.needsRoot && ::geteuid() != 0) continue;
        TempTree tree, state;
        tree.write("f.txt", "cat");
        UndoJournal journal(state.path("undo"));
        replace(tree.root(), journal, "cat", "dog");
        const std::string run = journal.folder() + "/" + journal.runs().front().name;
        t.apply(run);
        EXPECT_FALSE(journal.refused()) << t.what;
        const std::optional<RecordedRun> next = journal.nextToUndo();
        ASSERT_TRUE(next && next->refused) << t.what;
        EXPECT_EQ(runRefused(*next, *next->refused), "The record of the Replace " + next->name +
                                                         " is not used: " + run + t.refused + t.why +
                                                         ".\r\nNothing was undone.")
            << t.what;
        EXPECT_EQ(next->filesWritten, 0u) << t.what << ": nothing read of it";
    }
}

}  // namespace
}  // namespace vantorel::history
