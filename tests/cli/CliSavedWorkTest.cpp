// End-to-end runs of vantorel-cli with saved work: the library and the batch
// jobs listed, a job's steps run, a library entry used.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/CliProcess.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::CliResult;
using test::runCli;
using ::testing::HasSubstr;

class CliSavedWorkTest : public ::testing::Test {
protected:
    CliSavedWorkTest() {
        tree.write("data/RegEx.txt",
                   "tags\t<[^>]+>\t\r\nspaces\t {2,}\t \r\nbritish\tcolour\tcolor\r\nbad\t(open\t\r\n");
        tree.write("data/BatchJobs.txt", "Tidy\ttags\tspaces\tbritish\r\nInvalid\tspaces\tbad\r\n");
        tree.write("site/a.html", "<p>The  colour   is <b>red</b></p>\n");
        tree.write("site/b.html", "<i>colour</i>\n");
    }
    CliResult cli(const std::vector<std::string>& args) { return runCli({"--data-dir", tree.path("data"), "-d", tree.path("site")}, args); }
    test::TempTree tree;
};

TEST_F(CliSavedWorkTest, LibraryAndJobsListWhatTheWindowShowsInFileOrder) {
    tree.write("data/RegEx.txt", "one\t1\r\ncaf\xE9\tx\ty\r\n");
    tree.write("data/BatchJobs.txt", "First\tone\tfour\r\nBare\r\n");
    CliResult r = cli({"library"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "one\t1\t\ncaf\xC3\xA9\tx\ty\n");
    r = cli({"jobs"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "First\tone\tfour\nBare\n");
    // No files: nothing listed, and no error.
    for (const char* command : {"library", "jobs"}) {
        r = runCli({"--data-dir", tree.path("site"), command});
        EXPECT_EQ(r.exitCode, 0) << command;
        EXPECT_EQ(r.out + r.err, "") << command;
    }
}

TEST_F(CliSavedWorkTest, AJobRunsItsStepsInOrderOnEachFileWithOneConfirmation) {
    // The name is matched without regard to case; -e makes every step a regular expression.
    const CliResult r = cli({"-e", "-y", "--job", "TIDY", "replace"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(tree.read("site/a.html"), "The color is red\n");
    EXPECT_EQ(tree.read("site/b.html"), "color\n");
    EXPECT_EQ(r.err,
              "<[^>]+>\n\nYou have chosen to replace this with nothing. Sure? yes\n"
              "Replace 10 occurences in 2 file(s) ? yes\n");
    EXPECT_THAT(r.out, HasSubstr("2 files processed, 10 occurences changed in 2 file(s)"));
    // Without -e the steps are plain text.
    tree.write("site/a.html", "x <[^>]+> colour\n");
    EXPECT_EQ(cli({"-y", "--job", "tidy", "replace"}).exitCode, 0);
    EXPECT_EQ(tree.read("site/a.html"), "x  color\n");
}

TEST_F(CliSavedWorkTest, ARefusedJobTouchesNothing) {
    const struct {
        std::vector<std::string> args;
        std::string err;
    } cases[] = {
        {{"-e", "-y", "--job", "Tid", "replace"},
         "vantorel-cli: there is no batch job named 'Tid' in " + tree.path("data/BatchJobs.txt") +
             " ('vantorel-cli jobs' lists them)\n"},
        {{"-e", "-y", "--job", "invalid", "replace"},
         "Regular Expression is invalid - please check syntax.\nStep 2: At character 1: Missing ')' to close this "
         "group\n"},
        // No terminal and no --yes: the question about replacing with nothing is answered No.
        {{"-e", "--job", "tidy", "replace"},
         "<[^>]+>\n\nYou have chosen to replace this with nothing. Sure? no (no terminal to ask; --yes answers "
         "Yes)\n"},
        {{"--entry", "British", "find"}, "Saved expression 'British' does not exist in library\n"},
        {{"--job", "tidy", "jobs"},
         "vantorel-cli: --job and --entry go with find, replace or extract, not jobs\nTry 'vantorel-cli --help'.\n"},
        {{"--job", "tidy", "find", "cat"},
         "vantorel-cli: unexpected argument 'cat' (--job and --entry take the place of FIND and REPLACEMENT)\n"
         "Try 'vantorel-cli --help'.\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = cli(c.args);
        EXPECT_EQ(r.exitCode, 2) << c.err;
        EXPECT_EQ(r.err, c.err);
        EXPECT_EQ(r.out, "");
    }
    EXPECT_EQ(tree.read("site/a.html"), "<p>The  colour   is <b>red</b></p>\n");
}

TEST_F(CliSavedWorkTest, SavedWorkThatCannotBeReadIsSaidWithTheFileOrFolderNamed) {
    // Root reads whatever the modes say: the program then runs as another user.
    std::vector<std::string> runner;
    if (::geteuid() == 0) {
        if (::access("/usr/bin/setpriv", X_OK) != 0) GTEST_SKIP() << "running as root without setpriv";
        runner = {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--"};
        ::chmod(tree.root().c_str(), 0755);
    }
    const std::string data = tree.path("data");
    const std::string library = "vantorel-cli: Error loading regular expression library.\n";
    const std::string jobs = "vantorel-cli: Error loading batch jobs list: ";
    const struct {
        std::string unreadable;
        std::vector<std::string> args;
        std::string err;
    } cases[] = {
        {"data", {"library"}, library + data + ": Permission denied\n"},
        {"data", {"jobs"}, jobs + data + ": Permission denied\n"},
        {"data", {"--job", "tidy", "find"}, library + data + ": Permission denied\n"},
        {"data/RegEx.txt", {"--entry", "british", "find"}, library + data + "/RegEx.txt: Permission denied\n"},
        {"data/BatchJobs.txt", {"--job", "tidy", "find"}, jobs + data + "/BatchJobs.txt: Permission denied\n"},
    };
    for (const auto& c : cases) {
        const std::string unreadable = tree.path(c.unreadable);
        const auto mode = std::filesystem::status(unreadable).permissions();
        std::filesystem::permissions(unreadable, std::filesystem::perms::none);
        std::vector<std::string> args{"--data-dir", data, "-d", tree.path("site")};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const CliResult r = test::CliProcess(args, "", false, runner).wait();
        std::filesystem::permissions(unreadable, mode);
        EXPECT_EQ(r.exitCode, 2) << c.err;
        EXPECT_EQ(r.err, c.err);
        EXPECT_EQ(r.out, "");
    }
}

TEST_F(CliSavedWorkTest, AnEntryGivesFindAndReplacement) {
    CliResult r = cli({"--entry", "british", "find"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_THAT(r.out, HasSubstr("2 files processed, 2 occurences found in 2 file(s)"));
    r = cli({"-y", "-f", "b.html", "--entry", "british", "replace"});
    EXPECT_EQ(tree.read("site/b.html"), "<i>color</i>\n");
}

}  // namespace
}  // namespace vantorel
