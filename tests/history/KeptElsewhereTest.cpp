// Old contents kept on another file system, in ".vantorel-undo-<user id>" at
// its top: each run's folder there names its journal's run, and the folders
// whose run is gone are cleared by the next run that keeps contents there.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>

#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"
#include "history/JournalRuns.h"
#include "history/KeptContents.h"
#include "support/TempTree.h"

namespace vantorel::history {
namespace {

using test::giveTo;
using test::kOtherUser;
using test::TempTree;

constexpr const char* kShm = "/dev/shm";

void writeAll(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

class KeptElsewhereTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!secondFileSystemAt(kShm, state)) GTEST_SKIP() << "no second writable file system at " << kShm;
        ::mkdir(hidden.c_str(), 0700);
    }
    void TearDown() override {
        std::error_code ignored;
        for (const std::string& name : planted) std::filesystem::remove_all(hidden + "/" + name, ignored);
    }
    // A folder there as a run of an earlier version or of another journal left it.
    std::string plant(const std::string& name, const std::string* journalRun) {
        planted.push_back(name);
        const std::string folder = hidden + "/" + name;
        ::mkdir(folder.c_str(), 0700);
        writeAll(folder + "/1", "old contents");
        if (journalRun) writeAll(folder + "/" + KeptContents::kJournalRunFile, *journalRun + "\n");
        return folder;
    }
    bool there(const std::string& name) const { return ::access((hidden + "/" + name).c_str(), F_OK) == 0; }

    TempTree state;
    const std::string hidden = std::string(kShm) + "/" + std::string(kUndoFolderPrefix) + std::to_string(::geteuid());
    const std::string tag = std::to_string(::getpid()) + "-";
    std::vector<std::string> planted;
};

TEST_F(KeptElsewhereTest, TheNextRunThereClearsTheFoldersWhoseJournalRunIsGoneAndNothingElse) {
    UndoJournal journal(state.path("undo"));
    state.mkdir("undo");
    state.mkdir("live/undo/kept-run");
    state.mkdir("live/undo/old-set-aside-run");
    const std::string outside = state.write("outside.txt", "not ours to remove");
    struct Case {
        const char* what;
        std::string journalRun;  // recorded; none when empty
        bool stays;
        std::function<void(const std::string& folder)> more;
    };
    const Case cases[] = {
        {"its journal's folder was deleted", state.path("gone/undo/run"), false, {}},
        {"its run was removed from the journal", state.path("undo/removed-run"), false,
         [&](const std::string& folder) {  // never followed when removed
             ::symlink(outside.c_str(), (folder + "/link").c_str());
             ::mkdir((folder + "/sub").c_str(), 0700);
             ::symlink(state.root().c_str(), (folder + "/sub/up").c_str());
         }},
        {"its run is there", state.path("live/undo/kept-run"), true, {}},
        {"its run is set aside, not yet removed", state.path("live/undo/set-aside-run"), true, {}},
        {"an earlier version's, of a run of this journal", "", true,
         [&](const std::string& folder) { state.mkdir("undo/" + FileNameOf(folder)); }},
        {"an earlier version's, of another journal perhaps", "", true, {}},
        {"an earlier version's, empty", "", false,
         [](const std::string& folder) { ::unlink((folder + "/1").c_str()); }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        if (const std::string folder = plant(tag + std::to_string(i), cases[i].journalRun.empty() ? nullptr
                                                                                             : &cases[i].journalRun);
            cases[i].more)
            cases[i].more(folder);
    const std::string gone = state.path("gone/undo/linked-run");
    const std::string linkedTarget = state.mkdir("linked");
    writeAll(linkedTarget + "/" + KeptContents::kJournalRunFile, gone + "\n");
    planted.push_back(tag + "link");
    ::symlink(linkedTarget.c_str(), (hidden + "/" + tag + "link").c_str());
    const bool root = ::geteuid() == 0;
    if (root) {
        plant(tag + "theirs", &gone);
        giveTo(hidden + "/" + tag + "theirs", kOtherUser);
    }

    TempTree other(kShm);
    other.write("f.txt", "cat");
    replace(other.root(), journal, "cat", "dog");

    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(there(tag + std::to_string(i)), cases[i].stays) << cases[i].what;
    EXPECT_EQ(test::fileText(hidden + "/" + tag + "4/" + KeptContents::kJournalRunFile),
              state.path("undo/" + tag + "4") + "\n")
        << "recorded now as this journal's";
    EXPECT_FALSE(std::filesystem::exists(hidden + "/" + tag + "5/" + KeptContents::kJournalRunFile));
    EXPECT_EQ(test::fileText(outside), "not ours to remove");
    EXPECT_TRUE(there(tag + "link"));
    EXPECT_TRUE(std::filesystem::exists(linkedTarget + "/" + KeptContents::kJournalRunFile));
    if (root) EXPECT_TRUE(there(tag + "theirs") && there(tag + "theirs/1")) << "another user's";

    const std::string run = journal.runs().front().name;
    planted.push_back(run);
    EXPECT_EQ(test::fileText(hidden + "/" + run + "/" + KeptContents::kJournalRunFile), journal.folder() + "/" + run + "\n");
    EXPECT_TRUE(std::filesystem::exists(hidden + "/" + std::string(kUndoJournalMarker)));
    EXPECT_EQ(undoLast(journal).restored(), 1u);
    EXPECT_EQ(other.read("f.txt"), "cat");
}

}  // namespace
}  // namespace vantorel::history
