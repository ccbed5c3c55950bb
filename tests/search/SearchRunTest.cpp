#include "search/SearchRun.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/FileFunctions.h"
#include "regex/Regex.h"
#include "support/RecordingHost.h"
#include "support/Replacing.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::RecordingHost;
using test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SearchRunTest : public ::testing::Test {
protected:
    RunRequest request(RunKind kind, std::string find, std::string replace = "") {
        return RunRequest{.kind = kind, .jobs = {{std::move(find), std::move(replace)}}, .startFolder = tree.root(),
                          .filter = "*.txt", .threads = 1};
    }
    RunOutcome run(const RunRequest& r) { return RunSearch(r, state, host); }
    std::string rowsText() const {
        std::string out;
        for (const FileReport& row : host.rows)
            out += row.path.substr(tree.root().size() + 1) + ":" + std::to_string(row.matches) + " ";
        return out;
    }

    TempTree tree;
    SearchState state;
    RecordingHost host;
};

TEST_F(SearchRunTest, FindListsFilesWithMatchesAndEndsWithTheStatusAlone) {
    tree.write("a.txt", "one cat, two cats");
    tree.write("b.txt", "no match here");
    tree.write("sub/c.txt", "cat");
    tree.write("d.log", "cat");
    const RunOutcome outcome = run(request(RunKind::Find, "cat"));
    EXPECT_EQ(outcome.result, RunResult::Completed);
    EXPECT_EQ(rowsText(), "a.txt:2 sub/c.txt:1 ");
    EXPECT_EQ(outcome.statusText, "3 files processed, 3 occurences found in 2 file(s)");
    EXPECT_EQ(host.statuses.back(), outcome.statusText);
    EXPECT_THAT(host.messages, IsEmpty());
    EXPECT_EQ(outcome.previewPattern, "cat");
    EXPECT_EQ(host.rows[0].characters, 17u);
}

TEST_F(SearchRunTest, TellsWhenNothingIsFoundOrNoFileMatchesTheFilterAndAsksNothing) {
    tree.write("a.txt", "text");
    run(request(RunKind::Find, "absent"));
    EXPECT_THAT(host.texts(), ElementsAre("No matches found in files."));
    EXPECT_EQ(host.messages[0].title, "Search Complete");
    EXPECT_EQ(host.statuses.back(), "1 files processed, 0 occurences found in 0 file(s)");

    for (const std::string filter : {"*.none", ";"}) {
        host = RecordingHost();
        RunRequest r = request(RunKind::Find, "text");
        r.filter = filter;
        const RunOutcome outcome = run(r);
        EXPECT_TRUE(outcome.noFiles);
        EXPECT_THAT(host.texts(), ElementsAre("No files found in search path matching filter."));
    }
    host = RecordingHost();
    run(request(RunKind::Replace, "zzz", "y"));
    EXPECT_THAT(host.questions, IsEmpty());
    EXPECT_THAT(host.texts(),
                ElementsAre("1 files processed, 0 occurences changed in 0 file(s)", "No matches found in files."));
}

TEST_F(SearchRunTest, ValidatesEveryPatternThenTheFilterThenTheFolder) {
    tree.write("a.txt", "abc");
    const std::string missing = tree.path("missing"), regex = "Regular Expression is invalid - please check syntax.",
                      filter = "Please enter a valid file type filter (eg. *.txt)",
                      folder = "Missing or invalid start location";
    const struct {
        std::vector<std::string> finds;
        std::string filter, folder, message;
    } cases[] = {
        {{"(abc"}, "", missing, regex}, {{"a", "(b", "c"}, "*.txt", tree.root(), regex}, {{"abc"}, "", missing, filter},
        {{"abc"}, "*.txt", missing, folder}, {{"abc"}, "*.txt", "", folder}, {{"abc"}, "*.txt", tree.path("a.txt"), folder},
        // The system would read both only up to the NUL.
        {{"abc"}, "*.txt", tree.root() + std::string(1, '\0') + "/x", folder},
        {{"abc"}, std::string("*.txt\0*.log", 11), tree.root(), filter}};
    for (const auto& c : cases) {
        host = RecordingHost();
        RunRequest r{.kind = RunKind::Find, .startFolder = c.folder, .filter = c.filter, .regularExpression = true};
        for (const std::string& find : c.finds) r.jobs.push_back({find, ""});
        EXPECT_EQ(run(r).result, RunResult::Refused);
        EXPECT_THAT(host.texts(), ElementsAre(c.message));
        EXPECT_EQ(host.messages[0].icon, MessageIcon::Information);
        EXPECT_THAT(host.events, ElementsAre("message:Vantorel:" + c.message, "finished"));
    }
    host = RecordingHost();
    RunRequest r = request(RunKind::Find, "a");
    r.regularExpression = true;
    r.jobs.push_back({"(b", ""});
    EXPECT_EQ(run(r).invalidJob, 1u);
}

TEST_F(SearchRunTest, ReplacingWithNothingIsConfirmedFirstAndANoToEitherQuestionLeavesTheFiles) {
    tree.write("a.txt", "a.b a.b");
    run(request(RunKind::Replace, "a.b", ""));
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(host.questions[0].text, "a\\.b\r\n\r\nYou have chosen to replace this with nothing. Sure?");
    EXPECT_EQ(host.questions[0].icon, MessageIcon::Question);
    EXPECT_THAT(host.messages, IsEmpty());
    EXPECT_EQ(tree.read("a.txt"), "a.b a.b");

    // No to the count: the rows stay, and the run reports a search.
    host = RecordingHost();
    host.answers = {true};
    const RunOutcome declined = run(request(RunKind::Replace, "a.b", ""));
    EXPECT_FALSE(declined.replaced);
    EXPECT_EQ(tree.read("a.txt"), "a.b a.b");
    EXPECT_EQ(rowsText(), "a.txt:2 ");
    EXPECT_EQ(declined.statusText, "1 files processed, 2 occurences found in 1 file(s)");
    EXPECT_THAT(host.messages, IsEmpty());
    EXPECT_EQ(declined.previewPattern, "a\\.b");

    host = RecordingHost();
    host.answers = {true, true};
    run(request(RunKind::Replace, "a.b", ""));
    EXPECT_EQ(tree.read("a.txt"), " ");
}

TEST_F(SearchRunTest, ReplaceCountsShowsEachFilesSectionAsksOnceThenRewritesTheFiles) {
    tree.write("a.txt", "colour colour", 0640);
    tree.write("b.txt", "nothing");
    tree.write("sub/c.txt", "Colour");
    host.answers = {true};
    RunRequest r = request(RunKind::Replace, "colour", "color");
    r.ignoreCase = true;
    r.threads = 3;
    r.previewSection = [](const std::string& path, std::string_view text, TextEncoding, const CompiledPattern& pattern) {
        return StyledText{{FileNameOf(path) + "=" + std::to_string(pattern.countMatches(text)) + ":" + std::string(text), kGrey, true}};
    };
    const RunOutcome outcome = run(r);
    EXPECT_TRUE(outcome.replaced);
    EXPECT_EQ(tree.read("a.txt"), "color color");
    EXPECT_EQ(tree.mode("a.txt"), 0640);
    EXPECT_EQ(tree.read("b.txt"), "nothing");
    EXPECT_EQ(tree.read("sub/c.txt"), "color");
    const std::string a = tree.path("a.txt"), c = tree.path("sub/c.txt");
    // Each section comes before its row, in the searching pass only.
    EXPECT_THAT(host.events,
                ElementsAre("started", "clear", "pass:counting", "preview:a.txt=2:colour colour", "row:" + a + ":2",
                            "preview:c.txt=1:Colour", "row:" + c + ":1", "ask:Replace 3 occurences in 2 file(s) ?:yes",
                            "clear", "pass:writing", "row:" + a + ":2", "row:" + c + ":1",
                            "message:Replace Operation Complete:3 files processed, 3 occurences changed in 2 file(s)",
                            "finished"));
    EXPECT_EQ(outcome.previewPattern, "color");
    EXPECT_NE(std::find(host.statuses.begin(), host.statuses.end(), "Replace Files?"), host.statuses.end());
    EXPECT_NE(std::find(host.statuses.begin(), host.statuses.end(), "Replacing:c.txt"), host.statuses.end());
}

TEST_F(SearchRunTest, JobsRunInOrderAndEachSeesTheTextTheLastOneLeft) {
    tree.write("a.txt", "a");
    host.answers = {true};
    RunRequest r = request(RunKind::Replace, "a", "b");
    r.jobs.push_back({"b", "c"});
    run(r);
    EXPECT_EQ(tree.read("a.txt"), "c");
    EXPECT_EQ(host.questions[0].text, "Replace 1 occurences in 1 file(s) ?");
    EXPECT_EQ(host.messages[0].text, "1 files processed, 2 occurences changed in 1 file(s)");
}

TEST_F(SearchRunTest, ExtractGathersEveryMatchInFileAndMatchOrder) {
    tree.write("1.txt", "id=7 id=42");
    tree.write("2.txt", "none");
    tree.write("3.txt", "id=5\r\n");
    tree.write("4.txt", "caf\xe9 id=\xe9t\xe9");  // Windows-1252
    RunRequest r = request(RunKind::Extract, "id=\\S+");
    r.regularExpression = true;
    run(r);
    EXPECT_EQ(host.extracted, "id=7\r\nid=42\r\nid=5\r\nid=\xc3\xa9t\xc3\xa9\r\n");
    // Each file's text comes before its row.
    EXPECT_EQ(host.events[3], "extract:id=7\r\nid=42\r\n");
    EXPECT_EQ(host.events[4], "row:" + tree.path("1.txt") + ":2");
}

TEST_F(SearchRunTest, MarkedFilesRunTakesOnlyThoseChecksTheirRowsAndReportsTheUnreadable) {
    const std::string a = tree.write("a.txt", "x");
    tree.write("b.txt", "x");
    const std::string c = tree.write("sub/c.txt", "y");
    const std::string folder = tree.mkdir("folder.txt");
    RunRequest r = request(RunKind::Find, "x");
    r.markedOnly = true;
    r.markedFiles = {c, folder, a, tree.path("vanished.txt")};
    const RunOutcome outcome = run(r);
    EXPECT_EQ(rowsText(), "sub/c.txt:0 a.txt:1 ");
    EXPECT_TRUE(host.rows[0].marked && host.rows[1].marked);
    EXPECT_EQ(outcome.filesDone, 4u);
    EXPECT_THAT(host.texts(), ElementsAre("Error reading " + folder + "\r\nIs a directory"));
}

TEST_F(SearchRunTest, AStopBeforeTheRunOrDuringTheCountingPassEndsAsAStoppedSearch) {
    tree.write("a.txt", "x");
    tree.write("b.txt", "x");
    state.stopRequested = true;  // Stop, or a closing window, before the worker started
    EXPECT_TRUE(run(request(RunKind::Find, "x")).stopped);
    EXPECT_EQ(rowsText(), "");
    state.stopRequested = false;
    host = RecordingHost();
    host.onRow = [this](const FileReport&) { state.stopRequested = true; };
    const RunOutcome outcome = run(request(RunKind::Replace, "x", "y"));
    EXPECT_FALSE(outcome.replaced);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_THAT(host.questions, IsEmpty());
    EXPECT_EQ(rowsText(), "a.txt:1 ");
    EXPECT_THAT(host.texts(), ElementsAre("Search operation stopped."));
    EXPECT_EQ(tree.read("a.txt"), "x");
}

// Written one by one (with backups), the file after a stop is not begun;
// flushed together, those finished are written (ReplaceSafetyTest).
TEST_F(SearchRunTest, StopDuringTheWritingPassOfFilesWrittenOneByOneLeavesTheRest) {
    tree.write("a.txt", "x");
    tree.write("b.txt", "x");
    host.answers = {true};
    host.onRow = [this](const FileReport& row) {
        if (row.write) state.stopRequested = true;
    };
    RunRequest r = request(RunKind::Replace, "x", "y");
    r.makeBackups = true;
    EXPECT_TRUE(run(r).replaced);
    EXPECT_EQ(tree.read("a.txt") + tree.read("b.txt"), "yx");
    EXPECT_THAT(host.texts(), ElementsAre("Replace operation stopped. Any replacements already made will not be undone.",
                                                 "1 files processed, 1 occurences changed in 1 file(s)"));
}

// Sizes are in characters, also when the search needs no decoding.
TEST_F(SearchRunTest, ShowAllListsFilesWithoutMatchesButNeverEmptyOnesWithTheirSizesInCharacters) {
    tree.write("a.txt", "caf\xc3\xa9 cat");  // UTF-8: 8 characters in 9 bytes
    tree.write("b.txt", "na\xefve");          // Windows-1252: 5 characters
    tree.write("c.txt", "na\xc3\xafve");      // UTF-8: 5 characters, no match
    tree.write("empty.txt", "");
    tree.write("nul.txt", std::string("a\0cat", 5));
    RunRequest r = request(RunKind::Find, "cat");  // an ASCII literal: found alike in both encodings
    r.showAll = true;
    run(r);
    ASSERT_EQ(rowsText(), "a.txt:1 b.txt:0 c.txt:0 nul.txt:1 ");
    std::vector<std::uint64_t> characters;
    for (const FileReport& row : host.rows) characters.push_back(row.characters);
    EXPECT_EQ(characters, (std::vector<std::uint64_t>{8, 5, 5, 5}));
    host = RecordingHost();
    r.jobs[0].findText = "zzz";
    run(r);
    EXPECT_EQ(rowsText(), "a.txt:0 b.txt:0 c.txt:0 nul.txt:0 ");
}

TEST_F(SearchRunTest, EachFileIsMatchedInItsOwnEncoding) {
    tree.write("utf8.txt", "\xef\xbb\xbf" "Caf\xc3\xa9 caf\xc3\xa9\r\n");
    tree.write("cp1252.txt", "Caf\xe9 \x80 5\r\n");
    RunRequest r = request(RunKind::Find, "Caf\xc3\xa9");
    run(r);
    EXPECT_EQ(rowsText(), "cp1252.txt:1 utf8.txt:1 ");
    EXPECT_EQ(host.rows[1].characters, 12u);

    host = RecordingHost();
    host.answers = {true};
    run(request(RunKind::Replace, "\xe2\x82\xac", "EUR"));  // €
    EXPECT_EQ(tree.read("cp1252.txt"), "Caf\xe9 EUR 5\r\n");
    EXPECT_EQ(tree.read("utf8.txt"), "\xef\xbb\xbf" "Caf\xc3\xa9 caf\xc3\xa9\r\n");

    // A replacement that single-byte text cannot hold finds nothing there.
    host = RecordingHost();
    host.answers = {true};
    run(request(RunKind::Replace, "Caf", "\xc4\x80"));
    EXPECT_EQ(tree.read("cp1252.txt"), "Caf\xe9 EUR 5\r\n");
    EXPECT_EQ(tree.read("utf8.txt"), "\xef\xbb\xbf\xc4\x80\xc3\xa9 caf\xc3\xa9\r\n");
}

TEST_F(SearchRunTest, AnEngineFailureEndsTheRunNamingTheFile) {
    tree.write("a.txt", std::string(40, 'a'));
    std::string pairs;
    for (int i = 0; i < 2000000; ++i) pairs += "ab";
    tree.write("b.txt", pairs);
    const std::pair<const char*, const char*> cases[] = {{"(a|aa)+[bc]", "a.txt: match limit exceeded"},
                                                         {"(a|b)*c", "b.txt: JIT stack limit reached"}};
    for (const auto& [pattern, reason] : cases) {
        host = RecordingHost();
        RunRequest r = request(RunKind::Find, pattern);
        r.regularExpression = true;
        const RunOutcome outcome = run(r);
        EXPECT_EQ(outcome.result, RunResult::Failed);
        ASSERT_EQ(host.messages.size(), 1u);
        EXPECT_EQ(host.messages[0].text, "Error in Find/Replace process!\r\n" + tree.root() + "/" + reason);
        EXPECT_EQ(host.messages[0].icon, MessageIcon::Warning);
        EXPECT_EQ(host.events.back(), "finished");
    }
}

TEST_F(SearchRunTest, ManyThreadsShowExactlyWhatOneThreadShows) {
    for (int i = 0; i < 150; ++i) {
        std::string text;
        for (int k = 0; k < i % 7; ++k) text += "key" + std::to_string(k) + "=v" + std::to_string(i) + "\n";
        tree.write("d" + std::to_string(i % 5) + "/f" + std::to_string(i) + ".txt", text.empty() ? "none" : text);
    }
    auto runWith = [&](unsigned threads, RunKind kind) {
        host = RecordingHost();
        RunRequest r = request(kind, "key\\d=(v\\d+)");
        r.regularExpression = true;
        r.threads = threads;
        run(r);
        return host.events;
    };
    EXPECT_EQ(runWith(1, RunKind::Extract), runWith(4, RunKind::Extract));
    EXPECT_EQ(runWith(1, RunKind::Find), runWith(3, RunKind::Find));  // a Replace: ParallelReplaceTest
}

TEST(ParallelReplaceTest, ManyThreadsLeaveExactlyTheFilesOneThreadLeaves) {
    TempTree one, many;
    for (const TempTree* tree : {&one, &many})
        for (int i = 0; i < 120; ++i) {
            std::string text = "head " + std::to_string(i) + "\r\n";
            for (int k = 0; k < i % 5; ++k) text += "item=" + std::to_string(k) + (i % 3 ? "\n" : "\xe9\n");
            tree->write("d" + std::to_string(i % 4) + "/f" + std::to_string(i) + ".txt", text, i % 9 == 0 ? 0444 : 0644);
        }
    auto replaceWith = [](const TempTree& tree, unsigned threads) {
        RunRequest r = test::replaceRequest(tree.root(), "item=(\\d)", "<$1>", "*.txt", threads);
        r.jobs.push_back({"<2>", "two"});
        r.regularExpression = true;
        r.makeBackups = true;
        return test::runReplace(r).events;
    };
    EXPECT_EQ(replaceWith(one, 1), replaceWith(many, 4));
    EXPECT_EQ(one.snapshot(), many.snapshot());
    EXPECT_EQ(one.read("d2/f2.txt"), "head 2\r\n<0>\n<1>\n");
    EXPECT_EQ(one.read("d3/f3.txt"), "head 3\r\n<0>\xe9\n<1>\xe9\ntwo\xe9\n");
    EXPECT_EQ(one.read("d3/f3.bak"), "head 3\r\nitem=0\xe9\nitem=1\xe9\nitem=2\xe9\n");
}

}  // namespace
}  // namespace vantorel
