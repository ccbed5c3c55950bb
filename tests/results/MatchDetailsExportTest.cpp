#include "results/MatchDetailsExport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "results/RtfWriter.h"
#include "support/RecordingHost.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::RecordingHost;
using test::TempTree;
using ::testing::StartsWith;

const StyledText kPreview = {{"/w/a.txt  (1 Found)\r\n", kGrey, true}, {"00000001 | ", kBlue, true},
                             {"hit", kRed, true}};

TEST(MatchDetailsExportTest, TheNameDecidesBetweenRichAndPlainTextAndSuccessSaysNothing) {
    TempTree tree;
    RecordingHost host;
    // A font given in pixels has no point size: 1 point, as the RTF needs one.
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"d.rtf", toRtf(kPreview, "Courier New", 1)}, {"d.txt", toPlainText(kPreview)}};
    for (const auto& [name, bytes] : cases) {
        EXPECT_EQ(exportMatchDetails(kPreview, "Courier New", -1, [&] { return tree.path(name); }, host),
                  ExportResult::Written);
        EXPECT_EQ(tree.read(name), bytes) << name;
    }
    EXPECT_TRUE(host.messages.empty());
}

TEST(MatchDetailsExportTest, NothingToExportCancelAndFailureWriteNothing) {
    TempTree tree;
    RecordingHost host;
    bool asked = false;
    EXPECT_EQ(exportMatchDetails({}, "Arial", 10, [&] { asked = true; return tree.path("d.txt"); }, host),
              ExportResult::NothingToExport);
    EXPECT_FALSE(asked);
    EXPECT_EQ(exportMatchDetails(kPreview, "Arial", 10, [] { return std::string(); }, host), ExportResult::Cancelled);
    const std::string unwritable = tree.path("no-such-folder/d.txt");
    EXPECT_EQ(exportMatchDetails(kPreview, "Arial", 10, [&] { return unwritable; }, host), ExportResult::Failed);
    EXPECT_FALSE(tree.exists("d.txt"));
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(host.messages[0].text, "Nothing to Export.");
    EXPECT_THAT(host.messages[1].text, StartsWith(unwritable + " could not be saved.\r\n"));
    EXPECT_EQ(host.messages[1].icon, MessageIcon::Warning);
}

}  // namespace
}  // namespace vantorel
