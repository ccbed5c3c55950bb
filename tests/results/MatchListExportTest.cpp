#include "results/MatchListExport.h"

#include <gtest/gtest.h>

#include "files/FileFunctions.h"
#include "support/RecordingHost.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::RecordingHost;
using test::TempTree;

const std::vector<ResultRow> kRows = {{"b,c.txt", "/w/", 3, 15, 0, false}, {"a.txt", "/w/sub/", 0, 7, 0, true}};

TEST(MatchListExportTest, WritesTheHeaderAndOneUnquotedLinePerRowAndSaysWhere) {
    TempTree tree;
    RecordingHost host;
    const std::string path = tree.path("log.csv");
    EXPECT_EQ(exportMatchList(kRows, [&] { return path; }, host), ExportResult::Written);
    EXPECT_EQ(tree.read("log.csv"), "File Name,Path,Matches,File Size,Modified\r\n"
                                    "b,c.txt,/w/,3,15," + formatDateTime(0) + "\r\n"
                                    "a.txt,/w/sub/,0,7," + formatDateTime(0) + "\r\n");
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, path + " log file created.");
}

TEST(MatchListExportTest, NothingToExportCancelAndFailureWriteNothing) {
    TempTree tree;
    RecordingHost host;
    bool asked = false;
    EXPECT_EQ(exportMatchList({}, [&] { asked = true; return tree.path("log.csv"); }, host),
              ExportResult::NothingToExport);
    EXPECT_FALSE(asked);
    EXPECT_EQ(exportMatchList(kRows, [] { return std::string(); }, host), ExportResult::Cancelled);
    EXPECT_EQ(exportMatchList(kRows, [&] { return tree.path("no-such-folder/log.csv"); }, host),
              ExportResult::Failed);
    EXPECT_FALSE(tree.exists("log.csv"));
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(host.messages[0].text, "No Results to Export.");
    EXPECT_EQ(host.messages[1].text, "Error exporting log file!");
}

}  // namespace
}  // namespace vantorel
