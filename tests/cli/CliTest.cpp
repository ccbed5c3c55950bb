// End-to-end runs of vantorel-cli on temporary folder trees.

#include <filesystem>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/CliProcess.h"
#include "support/CommandOutput.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::CliProcess;
using test::CliResult;
using test::lines;
using test::runCli;
using test::TempTree;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

class CliTest : public ::testing::Test {
protected:
    CliTest() {
        tree.write("a.txt", "one cat\ntwo cats\n");
        tree.write("b.txt", "dog\n");
        tree.write("sub/c.txt", "cat\n");
        tree.write("sub/d.htm", "<p>cat</p>\n");
    }
    CliResult cli(const std::vector<std::string>& args) { return runCli({"--dir", tree.root()}, args); }
    TempTree tree;
};

TEST_F(CliTest, FindPrintsOneLinePerFileThenTheSummaryAndNothingFoundExitsWithOne) {
    CliResult r = cli({"--filter", "*.txt", "find", "cat"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_THAT(lines(r.out), ElementsAre(MatchesRegex(tree.path("a.txt") + "\t2\t17\t[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}"),
                                          StartsWith(tree.path("sub/c.txt") + "\t1\t"),
                                          "3 files processed, 3 occurences found in 2 file(s)"));
    EXPECT_EQ(r.err, "");
    r = cli({"find", "absent"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, "4 files processed, 0 occurences found in 0 file(s)\nNo matches found in files.\n");
    r = cli({"-f", "*.none", "find", "cat"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_THAT(r.out, HasSubstr("No files found in search path matching filter."));
}

TEST_F(CliTest, OptionsMayFollowTheCommandAndDoubleDashEndsThem) {
    tree.write("dash.txt", "a -v b\n");
    const CliResult r = runCli({"find", "--dir", tree.root(), "-f", "dash.txt", "--", "-v"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_THAT(r.out, HasSubstr("1 files processed, 1 occurences found in 1 file(s)"));
    const CliResult grouped = runCli({"-ein", "-d", tree.root(), "find", "C.T"});
    EXPECT_THAT(grouped.out, HasSubstr("3 files processed, 2 occurences found in 1 file(s)"));
    const CliResult here = runCli({"-ein", "find", "C.T"}, tree.root());  // no --dir: the current folder
    EXPECT_EQ(here.out, grouped.out);
}

TEST_F(CliTest, RefusedInputGoesToStandardErrorAndExitsWithTwo) {
    const std::string invalid = "Regular Expression is invalid - please check syntax.\n";
    const std::string help = "\nTry 'vantorel-cli --help'.\n";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"-d", tree.root(), "-e", "find", "(cat"}, invalid + "At character 1: Missing ')' to close this group\n"},
        {{"-d", tree.root(), "-e", "find", "x(?<=a+)"},
         invalid + "At character 2: Each alternative of a look-behind must match a fixed number of characters here "
                   "(no *, +, ?, {n,m} or back-reference inside (?<=...) or (?<!...))\n"},
        {{"-d", tree.root(), "-e", "find", "xa{65536}"},
         invalid + "At character 2: Repetition counts above 65535 are not supported\n"},
        {{"-d", tree.root(), "find", std::string(40000, 'a')},
         invalid + "The text to find is too long: the regular expression engine holds at most 64 KiB of compiled "
                   "pattern (about 32,000 characters of plain text)\n"},
        {{"-d", tree.root(), "-f", "", "find", "cat"}, "Please enter a valid file type filter (eg. *.txt)\n"},
        {{"-d", "", "replace", "cat", "cow"}, "Missing or invalid start location\n"},  // an unset variable
        {{"--frobnicate", "find", "x"}, "vantorel-cli: unknown option '--frobnicate'" + help},
        {{"find", "x", "-d"}, "vantorel-cli: option '-d' needs a value" + help},
        {{"replace", "x"}, "vantorel-cli: replace needs FIND and REPLACEMENT" + help},
        {{"-j", "0", "find", "x"}, "vantorel-cli: --threads needs a whole number from 1 to 1024, not '0'" + help},
        {{"search", "x"},
         "vantorel-cli: unknown command 'search' (use find, replace, extract, undo, library or jobs)" + help},
        {{"--diff", "find", "x"}, "vantorel-cli: --dry-run and --diff go with replace" + help},
        {{"find", "x", "--list"}, "vantorel-cli: --list goes with undo" + help},
    };
    for (const auto& [args, message] : cases) {
        const CliResult r = runCli(args);
        EXPECT_EQ(r.exitCode, 2) << message;
        EXPECT_EQ(r.err, message);
        EXPECT_EQ(r.out, "");
    }
}

TEST_F(CliTest, AReplaceAsksThenShowsTheWritingPassRowsAndOneSummary) {
    CliResult r = cli({"-f", "*.txt", "replace", "cat", "cow"});  // no terminal and no --yes: No
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_THAT(r.err, HasSubstr("Replace 3 occurences in 2 file(s) ? no"));
    EXPECT_THAT(r.out, HasSubstr("3 files processed, 3 occurences found in 2 file(s)"));
    EXPECT_EQ(tree.read("a.txt"), "one cat\ntwo cats\n");
    for (const bool onTerminal : {false, true}) {
        tree.write("sub/c.txt", "cat\n");
        CliProcess process({"-d", tree.root(), "-f", "*.txt", "-b", onTerminal ? "-j2" : "-y", "replace", "cat", "cow"},
                           "", onTerminal);
        if (onTerminal) process.type("y\n");
        r = process.wait();
        EXPECT_EQ(r.exitCode, 0) << r.err;
        EXPECT_EQ(tree.read("sub/c.txt"), "cow\n");
        EXPECT_EQ(tree.read("a.bak"), "one cat\ntwo cats\n");
        if (!onTerminal) EXPECT_THAT(r.err, HasSubstr("Replace 3 occurences in 2 file(s) ? yes"));
        EXPECT_THAT(lines(r.out), ElementsAre(StartsWith(tree.path("a.txt") + "\t2\t"),
                                                         StartsWith(tree.path("sub/c.txt") + "\t1\t"),
                                                         "3 files processed, 3 occurences changed in 2 file(s)"))
            << (onTerminal ? "answered on a terminal" : "--yes");
        tree.write("a.txt", "one cat\ntwo cats\n");
    }
}

TEST_F(CliTest, VersionControlFoldersAreLeftAloneUnlessIncluded) {
    tree.write(".git/config", "[core] cat\n");
    tree.write("sub/.svn/entries", "cat\n");
    EXPECT_EQ(lines(cli({"find", "cat"}).out).back(), "4 files processed, 4 occurences found in 3 file(s)");
    const CliResult r = cli({"--include-vcs", "find", "cat"});
    EXPECT_EQ(lines(r.out).back(), "6 files processed, 6 occurences found in 5 file(s)");
}

TEST_F(CliTest, ReplacingWithNothingAsksFirstUnlessItIsADryRun) {
    CliResult r = cli({"-f", "*.txt", "replace", "cat", ""});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_THAT(r.err, HasSubstr("cat\n\nYou have chosen to replace this with nothing. Sure? no"));
    for (const char* dryRun : {"--dry-run", "--diff"}) {
        r = cli({dryRun, "-f", "c.txt", "replace", "cat", ""});
        EXPECT_EQ(r.exitCode, 0) << dryRun;
        EXPECT_THAT(r.err, Not(HasSubstr("Sure?"))) << dryRun;
        EXPECT_THAT(r.out, HasSubstr("\n-cat\n+\n")) << dryRun;
    }
    EXPECT_EQ(tree.read("sub/c.txt"), "cat\n");
    r = cli({"-y", "-f", "*.txt", "replace", "cat", ""});
    EXPECT_EQ(tree.read("sub/c.txt"), "\n");
}

TEST_F(CliTest, ExtractWritesOnlyTheMatchesToStandardOutput) {
    tree.write("e.txt", "id=1 id=22\r\nid=333\n");
    const CliResult r = cli({"-e", "-f", "e.txt;a.txt", "extract", "id=\\d+|tw\\w+"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "two\r\nid=1\r\nid=22\r\nid=333\r\n");
    EXPECT_THAT(r.err, HasSubstr("2 files processed, 4 occurences found in 2 file(s)"));
}

TEST_F(CliTest, JsonGivesOneObjectPerFileAndOneSummary) {
    tree.write("q\"uote.txt", "cat\n");
    tree.write("caf\xe9.txt", "cat\n");  // a name that is not UTF-8: its bytes, as base64
    const CliResult r = cli({"--json", "-f", "*.txt", "-n", "-j1", "find", "cat"});
    const auto out = lines(r.out);
    ASSERT_EQ(out.size(), 4u) << r.out;
    EXPECT_THAT(out[0], HasSubstr("{\"path\":\"" + tree.path("a.txt") + "\",\"matches\":2,\"size\":17,\"modified\":\""));
    const auto bytes = test::commandOutput("printf %s '" + tree.path("caf\xe9.txt") + "' | base64 -w0");  // coreutils'
    EXPECT_THAT(out[1], HasSubstr("{\"path\":{\"bytes\":\"" + bytes.value_or("?") + "\"},\"matches\":1,"));
    EXPECT_THAT(out[2], HasSubstr("q\\\"uote.txt"));
    EXPECT_THAT(out[3], HasSubstr("\"summary\":\"4 files processed, 4 occurences found in 3 file(s)\",\"filesProcessed\":4"));
}

TEST_F(CliTest, CsvLogHoldsTheHeaderAndOneLinePerRow) {
    const std::string csv = tree.path("log.csv");
    CliResult r = cli({"--csv", csv, "-f", "*.txt", "find", "absent"});
    EXPECT_EQ(r.err, "No Results to Export.\n");
    EXPECT_FALSE(tree.exists("log.csv"));
    r = cli({"--csv", csv, "-q", "-f", "*.txt", "find", "cat"});
    EXPECT_EQ(r.out, "3 files processed, 3 occurences found in 2 file(s)\n");  // --quiet
    EXPECT_EQ(r.err, csv + " log file created.\n");
    const std::string log = tree.read("log.csv");
    const std::regex expected("File Name,Path,Matches,File Size,Modified\r\n"
                              "a\\.txt," + tree.root() + "/,2,17,\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\r\n"
                              "c\\.txt," + tree.root() + "/sub/,1,4,[-0-9: ]+\r\n");
    EXPECT_TRUE(std::regex_match(log, expected)) << log;
}

TEST_F(CliTest, MarkedListLimitsTheRunToThoseFiles) {
    tree.write("list.lst", tree.path("sub/c.txt") + "\r\n" + tree.path("b.txt") + "\n\n");
    const CliResult r = cli({"-m", tree.path("list.lst"), "find", "cat"});
    const auto out = lines(r.out);
    ASSERT_EQ(out.size(), 3u) << r.out;
    EXPECT_THAT(out[0], HasSubstr(tree.path("sub/c.txt") + "\t1\t"));
    EXPECT_THAT(out[1], HasSubstr(tree.path("b.txt") + "\t0\t"));
    EXPECT_EQ(cli({"-m", tree.path("nope.lst"), "find", "cat"}).exitCode, 2);
}

TEST_F(CliTest, CtrlCStopsTheSearchAtTheNextFile) {
    for (int i = 0; i < 200; ++i) {
        std::string text;
        for (int k = 0; k < 1000; ++k) text += "word ";
        tree.write("many/f" + std::to_string(1000 + i) + ".txt", text);
    }
    CliProcess process({"-d", tree.path("many"), "-j", "2", "extract", "word"});
    process.readSomeOutput();  // the run is under way and blocked on its output
    process.interrupt();
    const CliResult r = process.wait();
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_THAT(r.err, HasSubstr("Search operation stopped."));
    EXPECT_LT(r.out.size(), 200u * 1000u * 6u);
    EXPECT_EQ(r.out.size() % (1000u * 6u), 0u);  // whole files only
}

// What a killed run leaves is cleared by the next write there (AtomicFileWriterTest).
TEST_F(CliTest, AReplaceStoppedOrKilledLeavesEveryFileWholeAndAStoppedOneNoTemporaryFile) {
    constexpr int kFiles = 1000;
    const std::string before(300, 'x'), after(600, 'y');
    auto temporaryFiles = [this] {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(tree.path("many")))
            count += entry.path().filename().string().rfind(".vantorel-", 0) == 0;
        return count;
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGKILL}) {
        for (int i = 0; i < kFiles; ++i) tree.write("many/f" + std::to_string(10000 + i) + ".txt", before);
        CliProcess process({"-d", tree.path("many"), "-y", "-j", "2", "replace", "x", "yy"});
        process.readSomeOutput();  // rows of the writing pass are coming
        process.interrupt(signal);
        const CliResult r = process.wait();
        int changed = 0;
        for (int i = 0; i < kFiles; ++i) {
            const std::string text = tree.read("many/f" + std::to_string(10000 + i) + ".txt");
            ASSERT_TRUE(text == before || text == after) << signal << " " << i;
            changed += text == after;
        }
        EXPECT_GT(changed, 0) << signal;
        EXPECT_LT(changed, kFiles) << signal;
        if (signal != SIGKILL) {
            EXPECT_EQ(temporaryFiles(), 0) << signal;
            EXPECT_THAT(r.out, HasSubstr("Replace operation stopped. Any replacements already made will not be undone."));
            EXPECT_THAT(r.out, HasSubstr(std::to_string(changed * 300) + " occurences changed in " +
                                         std::to_string(changed) + " file(s)"));
        }
    }
}

}  // namespace
}  // namespace vantorel
