// End to end: a Replace shown before it is written (--dry-run, --diff) and
// taken back after (undo, undo --list).

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/CliProcess.h"
#include "core/CRegistry.h"
#include "core/SettingsStore.h"
#include "support/OtherUser.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::CliResult;
using test::lines;
using test::runCli;
using test::TempTree;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class UndoCliTest : public ::testing::Test {
protected:
    UndoCliTest() {
        ::setenv("VANTOREL_CONFIG_HOME", state.root().c_str(), 1);  // the journal of these runs alone
        tree.write("a.txt", "1 cat\n2\n3\n4\n5\n6\n7\n8\n9 cat\n10\n11 cat");
        tree.write("crlf.txt", "cat\r\nno\r\ncat\r\n");
        tree.write("sub/cp1252.txt", "caf\xe9 cat\n");
        tree.write("sub/utf16.txt", std::string("\xff\xfe" "c\0a\0t\0\n\0", 10));
        tree.write("none.txt", "dog\n");
    }
    CliResult cli(const std::vector<std::string>& args) { return runCli({"--dir", tree.root()}, args); }
    TempTree tree, state;
};

TEST_F(UndoCliTest, ADryRunsDiffAppliedWithPatchGivesExactlyTheReplacedTree) {
    const auto before = tree.snapshot();
    const CliResult diff = cli({"--dry-run", "--diff", "replace", "cat", "d\xc3\xb6g"});
    EXPECT_EQ(diff.exitCode, 0) << diff.err;
    EXPECT_THAT(diff.out, StartsWith("--- a.txt\n+++ a.txt\n@@ -1,4 +1,4 @@\n-1 cat\n+1 d\xc3\xb6g\n 2\n 3\n 4\n@@ -6,6 +6,6 @@\n"));
    EXPECT_THAT(diff.err, HasSubstr("5 files processed, 7 occurences found in 4 file(s)"));
    EXPECT_EQ(tree.snapshot(), before);  // nothing written
    EXPECT_EQ(cli({"undo", "--list"}).exitCode, 1);  // nor recorded

    TempTree copy;
    std::filesystem::copy(tree.root(), copy.root(), std::filesystem::copy_options::recursive |
                                                        std::filesystem::copy_options::overwrite_existing);
    const std::string patchFile = state.write("changes.diff", diff.out);
    const std::string command = "cd '" + copy.root() + "' && patch -p0 --quiet < '" + patchFile + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    ASSERT_EQ(cli({"-y", "replace", "cat", "d\xc3\xb6g"}).exitCode, 0);
    EXPECT_EQ(copy.snapshot(), tree.snapshot());

    const CliResult read = cli({"--dry-run", "-f", "*1252*", "replace", "d\xc3\xb6g", "cat"});
    EXPECT_EQ(read.out, "--- sub/cp1252.txt\n+++ sub/cp1252.txt\n@@ -1 +1 @@\n-caf\xc3\xa9 d\xc3\xb6g\n+caf\xc3\xa9 cat\n");
    EXPECT_EQ(cli({"--dry-run", "replace", "absent", "x"}).exitCode, 1);
}

TEST_F(UndoCliTest, UndoTakesBackTheNewestReplaceAfterAskingAndListsWhatItKeeps) {
    const auto original = tree.snapshot();
    ASSERT_EQ(cli({"-y", "replace", "cat", "dog"}).exitCode, 0);
    const auto afterFirst = tree.snapshot();
    ASSERT_EQ(cli({"-y", "-f", "*.txt", "replace", "dog", "cow"}).exitCode, 0);

    const CliResult list = runCli({"undo", "--list"});
    EXPECT_EQ(list.exitCode, 0);
    const auto listed = lines(list.out);
    ASSERT_EQ(listed.size(), 3u) << list.out;
    EXPECT_THAT(listed[0], HasSubstr("\t5 file(s)\t" + tree.root() + "\t*.txt\t\"dog\" -> \"cow\"\tnext to undo"));
    EXPECT_THAT(listed[1], HasSubstr("\t4 file(s)\t" + tree.root() + "\t*\t\"cat\" -> \"dog\"\tcan be undone"));
    EXPECT_THAT(listed[2], StartsWith("2 replace(s) kept in " + state.path("undo") + ", using "));

    CliResult undo = runCli({"undo"});  // no terminal, no --yes: declined
    EXPECT_EQ(undo.exitCode, 1);
    EXPECT_THAT(undo.err, HasSubstr("Undo the Replace of "));
    EXPECT_THAT(undo.err, HasSubstr("5 file(s) changed in " + tree.root() + " (*.txt)\n\"dog\" -> \"cow\" no"));
    undo = runCli({"-y", "undo"});
    EXPECT_EQ(undo.exitCode, 0) << undo.err;
    EXPECT_EQ(lines(undo.out).back(), "5 file(s) restored.");
    EXPECT_EQ(tree.snapshot(), afterFirst);

    tree.write("a.txt", "edited since\n");
    undo = runCli({"-y", "undo"});
    EXPECT_EQ(undo.exitCode, 2);
    EXPECT_THAT(lines(undo.out), ::testing::Contains(tree.path("a.txt") + "\tchanged since the replace: left as it is"));
    EXPECT_EQ(lines(undo.out).back(), "3 file(s) restored. 1 file(s) left as they were.");
    EXPECT_EQ(tree.read("crlf.txt"), original.at("crlf.txt").substr(4));
    EXPECT_EQ(tree.read("a.txt"), "edited since\n");

    undo = runCli({"-y", "undo"});
    EXPECT_EQ(undo.exitCode, 1);
    EXPECT_EQ(undo.err, "There is no Replace to undo.\n");
}

TEST_F(UndoCliTest, TheUndoRunsSettingBoundsTheReplacesKept) {
    {
        RegistryStore store(RegistryStore::defaultFile());
        CRegistry registry(store);
        ASSERT_TRUE(registry.CreateKey(SettingsStore::kKeyPath));
        ASSERT_TRUE(registry.OpenKey(SettingsStore::kKeyPath));
        registry.WriteString("1", "UndoRuns");
    }
    ASSERT_EQ(cli({"-y", "replace", "cat", "dog"}).exitCode, 0);
    ASSERT_EQ(cli({"-y", "replace", "dog", "cow"}).exitCode, 0);
    const auto listed = lines(runCli({"undo", "--list"}).out);
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_THAT(listed[0], HasSubstr("\"dog\" -> \"cow\""));
    // The older run's kept contents go in the background.
    const auto entries = [&] { return std::distance(std::filesystem::directory_iterator(state.path("undo")), {}); };
    for (int wait = 0; wait < 100 && entries() > 3; ++wait) ::usleep(50000);
    EXPECT_EQ(entries(), 3);  // the lock, the journal's marker and one run
}

TEST_F(UndoCliTest, AReplaceWhoseWritesWereRefusedExitsWithTwoAndSaysWhatBecameOfEachFile) {
    TempTree outside;
    ::symlink(outside.write("o.txt", "cat\n").c_str(), tree.path("link.txt").c_str());
    ::chmod(tree.path("crlf.txt").c_str(), 0444);
    CliResult r = cli({"-y", "--json", "-f", "link.txt;crlf.txt", "replace", "cat", "dog"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_THAT(lines(r.out), ElementsAre(HasSubstr("\"write\":\"read-only\""),
                                          HasSubstr("\"write\":\"outside-start-folder\""),
                                          HasSubstr("\"writesRefused\":1")));
    r = cli({"-y", "-f", "*.txt", "--no-undo", "replace", "cat", "dog"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_THAT(lines(r.out), ::testing::Contains(StartsWith(tree.path("a.txt") + "\t3\t")));
    EXPECT_THAT(r.out, HasSubstr("\twritten\n"));
    EXPECT_THAT(r.out, ::testing::EndsWith("\nWarning! 1 of the above file(s) were Read-Only and their "
                                           "replacements were not saved.\n"));
    EXPECT_EQ(runCli({"undo", "--list"}).exitCode, 1);  // --no-undo: nothing recorded
}

// Root replaces in other users' trees, with what the environment says: a
// journal that is not his alone is neither written nor taken back from.
TEST(UndoCliTrustTest, AJournalOrARunThatIsNotTrustedIsNotUsedAndTheMessageSaysWhichAndWhy) {
    struct Case {
        const char* what;
        bool needsRoot;
        // Before the Replace that is recorded: where its journal goes.
        std::function<void(const TempTree& state, test::ScopedEnvironment& env)> place;
        // After: the journal's folder, and what is named and why.
        std::function<std::pair<std::string, std::string>(const TempTree& state)> spoil;
        bool journalRefused;  // else its run is
    };
    const Case cases[] = {
        {"XDG_STATE_HOME in another user's home, as plain su keeps it", true,
         [](const TempTree& state, test::ScopedEnvironment& env) {
             env.set("VANTOREL_CONFIG_HOME", nullptr);
             env.set("XDG_STATE_HOME", state.path("bob/.local/state").c_str());
         },
         [](const TempTree& state) {
             test::giveTo(state.path("bob"));
             return std::pair{state.path("bob/.local/state/vantorel/undo"),
                              state.path("bob") + " belongs to user 5001, not to user 0 or root"};
         },
         true},
        {"others may write a run's journal", false, {},
         [](const TempTree& state) {
             std::string journal;
             for (const auto& entry : std::filesystem::directory_iterator(state.path("undo")))
                 if (entry.is_directory()) journal = entry.path().string() + "/journal";
             ::chmod(journal.c_str(), 0666);
             return std::pair{state.path("undo"), journal + " can be written by other users (mode 0666)"};
         },
         false},
    };
    for (const Case& c : cases) {
        if (c.needsRoot && ::geteuid() != 0) continue;
        SCOPED_TRACE(c.what);
        TempTree tree, state;
        tree.write("a.txt", "cat\n");
        const auto cli = [&](const std::vector<std::string>& args) { return runCli({"--dir", tree.root()}, args); };
        test::ScopedEnvironment env("VANTOREL_CONFIG_HOME", state.root().c_str());
        if (c.place) c.place(state, env);
        ASSERT_EQ(cli({"-y", "replace", "cat", "dog"}).exitCode, 0);
        const auto [journal, why] = c.spoil(state);
        const auto replaced = tree.snapshot();
        const auto recorded = state.snapshot();

        CliResult r = runCli({"undo", "--list"});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_THAT(r.out, ::testing::Not(HasSubstr("\"cat\" -> \"dog\"")));
        EXPECT_THAT(r.err, StartsWith(c.journalRefused ? "The undo journal " + journal + " is not used: " + why + ".\n"
                                                       : std::string("The record of the Replace ")));
        EXPECT_THAT(r.err, HasSubstr(why + ".\n"));
        r = runCli({"-y", "undo"});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_THAT(r.err, HasSubstr(why + ".\nNothing was undone.\n"));
        EXPECT_EQ(tree.snapshot(), replaced) << "nothing restored";
        if (c.journalRefused) {
            r = cli({"-y", "replace", "dog", "cow"});
            EXPECT_EQ(r.exitCode, 0);
            EXPECT_THAT(r.err, HasSubstr("Undo will not be able to take back this Replace, which is not recorded.\n"
                                         "The undo journal " + journal + " is not used: " + why + ".\n"));
            EXPECT_EQ(tree.read("a.txt"), "cow\n");
            EXPECT_EQ(state.snapshot(), recorded) << "nothing recorded";
        }
    }
}

}  // namespace
}  // namespace vantorel
