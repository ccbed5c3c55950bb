// End to end: a Replace shown before it is written (--dry-run, --diff) and
// taken back after (undo, undo --list).

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/CliProcess.h"
#include "settings/CRegistry.h"
#include "settings/SettingsStore.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::CliResult;
using test::lines;
using test::runCli;
using test::TempTree;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// A diff without the times after the names in its headers.
std::string withoutTimes(const std::string& diff) {
    static const std::regex header("(^|\n)(---|\\+\\+\\+) ([^\t\n]*)\t[^\n]*");
    return std::regex_replace(diff, header, "$1$2 $3");
}

// Copies a tree, its links as links.
void copyTree(const TempTree& from, const TempTree& to) {
    std::filesystem::copy(from.root(), to.root(), std::filesystem::copy_options::recursive |
                                                      std::filesystem::copy_options::copy_symlinks |
                                                      std::filesystem::copy_options::overwrite_existing);
}

// Applies a diff with patch -p0 from the tree's root; patch's exit status.
int applyPatch(const TempTree& tree, const TempTree& state, const std::string& diff) {
    const std::string patchFile = state.write("changes.diff", diff);
    return std::system(("cd '" + tree.root() + "' && patch -p0 --quiet --batch < '" + patchFile + "'").c_str());
}

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

// Lines of every ending and of every encoding, printed in the files' own bytes.
TEST_F(UndoCliTest, ADryRunsDiffAppliedWithPatchGivesExactlyTheReplacedTree) {
    const auto before = tree.snapshot();
    const CliResult diff = cli({"--dry-run", "--diff", "replace", "cat", "d\xc3\xb6g"});
    EXPECT_EQ(diff.exitCode, 0) << diff.err;
    EXPECT_THAT(diff.err, HasSubstr("5 files processed, 7 occurences found in 4 file(s)"));
    EXPECT_EQ(tree.snapshot(), before);  // nothing written
    EXPECT_EQ(cli({"undo", "--list"}).exitCode, 1);  // nor recorded

    TempTree copy;
    copyTree(tree, copy);
    ASSERT_EQ(applyPatch(copy, state, diff.out), 0);
    ASSERT_EQ(cli({"-y", "replace", "cat", "d\xc3\xb6g"}).exitCode, 0);
    EXPECT_EQ(copy.snapshot(), tree.snapshot());

    // Without --diff, the lines as read.
    const CliResult read = cli({"--dry-run", "-f", "*1252*", "replace", "d\xc3\xb6g", "cat"});
    EXPECT_EQ(withoutTimes(read.out), "--- sub/cp1252.txt\n+++ sub/cp1252.txt\n@@ -1 +1 @@\n-caf\xc3\xa9 d\xc3\xb6g\n+caf\xc3\xa9 cat\n");
    EXPECT_EQ(cli({"--dry-run", "replace", "absent", "x"}).exitCode, 1);
}

TEST_F(UndoCliTest, TheDiffOfFilesOfAnyNameAndOfLinkedFilesAppliesWithPatch) {
    TempTree names;
    for (const std::string name : {"plain.txt", "a b.txt", "tab\there.txt", "line\nbreak.txt", "back\\slash.txt",
                                   "say \"cat\".txt", "bell\a\x01\x7f\xe9\xff.txt", "sub dir/caf\xc3\xa9.txt", "cr\r"})
        names.write(name, "1 cat\n2\n");
    // A link to a file inside is written through: patch is given the file it leads to.
    names.write("linked/target.txt", "a cat\n");
    ::symlink("linked/target.txt", names.path("link.txt").c_str());
    TempTree outside;
    ::symlink(outside.write("o.txt", "cat\n").c_str(), names.path("out.txt").c_str());

    const CliResult diff = runCli({"--dir", names.root(), "--diff", "replace", "cat", "dog"});
    EXPECT_EQ(diff.exitCode, 0) << diff.err;
    // Names that need no quoting are as they are; a tab and a time follow every name.
    EXPECT_THAT(diff.out, ::testing::ContainsRegex("--- plain\\.txt\t[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:"
                                                   "[0-9]{2}\\.[0-9]{9} [+-][0-9]{4}\n\\+\\+\\+ plain\\.txt\t"));
    EXPECT_THAT(diff.out, HasSubstr("\n--- \"tab\\there.txt\"\t"));
    EXPECT_THAT(diff.out, HasSubstr("\n--- \"bell\\a\\001\x7f\\351\\377.txt\"\t"));
    EXPECT_THAT(diff.out, HasSubstr("\n--- linked/target.txt\t"));
    EXPECT_THAT(diff.out, Not(HasSubstr("link.txt")));
    // The link leading out of the start folder is not written: it is named, not in the diff.
    EXPECT_THAT(diff.out, Not(HasSubstr("out.txt")));
    EXPECT_THAT(diff.err, HasSubstr(names.path("out.txt") + ": outside-start-folder, it would be left as it is\n"));

    TempTree copy;
    copyTree(names, copy);
    ASSERT_EQ(applyPatch(copy, state, diff.out), 0) << diff.out;
    EXPECT_EQ(runCli({"--dir", names.root(), "-y", "replace", "cat", "dog"}).exitCode, 2);  // out.txt is left
    EXPECT_EQ(copy.snapshot(), names.snapshot());
}

TEST_F(UndoCliTest, AFileThatPatchCannotWriteIsLeftOutOfTheDiffAndNamed) {
    // patch writes the new text to NAME.oXXXXXX beside the file first: a name
    // of more than NAME_MAX - 8 bytes cannot be patched.
    const std::string longest(247, 'n'), tooLong(248, 'n');
    TempTree names;
    names.write(longest, "cat\n");
    names.write(tooLong, "cat\n");
    for (const char* dryRun : {"--diff", "--dry-run"}) {
        const CliResult diff = runCli({"--dir", names.root(), dryRun, "replace", "cat", "dog"});
        EXPECT_EQ(diff.exitCode, 2) << dryRun;
        EXPECT_THAT(diff.out, HasSubstr("--- " + longest + "\t")) << dryRun;
        EXPECT_THAT(diff.out, Not(HasSubstr(tooLong))) << dryRun;
        EXPECT_THAT(diff.err, HasSubstr(names.path(tooLong) + ": ")) << dryRun;
        if (std::string(dryRun) != "--diff") continue;
        TempTree copy;
        copyTree(names, copy);
        ASSERT_EQ(applyPatch(copy, state, diff.out), 0);
        EXPECT_EQ(copy.read(longest), "dog\n");
    }
}

TEST_F(UndoCliTest, UndoTakesBackTheNewestReplaceAfterAskingAndListsWhatItKeeps) {
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

    undo = runCli({"-y", "undo"});
    EXPECT_EQ(undo.exitCode, 1);
    EXPECT_EQ(undo.err, "There is no Replace to undo.\n");
}

TEST_F(UndoCliTest, EveryStepOfABatchJobIsRecorded) {
    state.write("data/RegEx.txt", "one\tcat\tcow\r\ntwo\tcow\temu\r\n");
    state.write("data/BatchJobs.txt", "Job\tone\ttwo\r\n");
    ASSERT_EQ(cli({"-y", "-f", "a.txt", "--data-dir", state.path("data"), "--job", "job", "replace"}).exitCode, 0);
    EXPECT_THAT(lines(runCli({"undo", "--list"}).out)[0], HasSubstr("\t\"cat\" -> \"cow\"; \"cow\" -> \"emu\"\tnext to undo"));
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
    EXPECT_EQ(runCli({"undo", "--list"}).exitCode, 1);  // --no-undo: nothing recorded
}

// A journal, or a run in it, that another user could have written is neither
// written nor taken back from, and the message says which and why.
TEST_F(UndoCliTest, AJournalOrARunThatIsNotTrustedIsNotUsedAndTheMessageSaysWhichAndWhy) {
    ASSERT_EQ(cli({"-y", "-f", "a.txt", "replace", "cat", "dog"}).exitCode, 0);
    const auto replaced = tree.snapshot();
    const std::string journal = state.path("undo");
    std::string run;  // the run's own journal
    for (const auto& entry : std::filesystem::directory_iterator(journal))
        if (entry.is_directory()) run = entry.path().string() + "/journal";
    const struct {
        std::string refused;  // made writable by others
        int mode;
        std::string why, said;  // the reason given, and how the message starts
    } cases[] = {{journal, 0777, "(mode 0777)", "The undo journal " + journal + " is not used: "},
                 {run, 0666, "(mode 0666)", "The record of the Replace "}};
    for (const auto& c : cases) {
        ::chmod(journal.c_str(), 0700);
        ::chmod(c.refused.c_str(), c.mode);
        const std::string why = c.refused + " can be written by other users " + c.why + ".\n";
        CliResult r = runCli({"undo", "--list"});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_THAT(r.out, Not(HasSubstr("\"cat\" -> \"dog\"")));
        EXPECT_THAT(r.err, StartsWith(c.said));
        EXPECT_THAT(r.err, HasSubstr(why));
        r = runCli({"-y", "undo"});
        EXPECT_EQ(r.exitCode, 2);
        EXPECT_THAT(r.err, HasSubstr(why + "Nothing was undone.\n"));
        EXPECT_EQ(tree.snapshot(), replaced) << "nothing restored";
    }
    ::chmod(journal.c_str(), 0777);  // a Replace goes on, unrecorded, and says so
    const CliResult r = cli({"-y", "-f", "a.txt", "replace", "dog", "cow"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_THAT(r.err, HasSubstr("Undo will not be able to take back this Replace, which is not recorded.\n"
                                 "The undo journal " + journal + " is not used: " + journal +
                                 " can be written by other users (mode 0777).\n"));
}

}  // namespace
}  // namespace vantorel
