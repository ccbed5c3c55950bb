// What a front end says after a run: the refused pattern's line and the
// summary's parts.

#include <gtest/gtest.h>

#include "search/RunSummary.h"

namespace vantorel {
namespace {

TEST(RunSummaryTest, AStepIsNamedInEveryBatchRunAndOnlyThere) {
    const PatternError error("Missing ')' to close this group", 0);
    const struct {
        std::size_t job;
        bool batch;
        std::string line;
    } cases[] = {
        {0, true, "Step 1: At character 1: Missing ')' to close this group"},  // a queue of one step too
        {2, true, "Step 3: At character 1: Missing ')' to close this group"},
        {0, false, "At character 1: Missing ')' to close this group"},
    };
    for (const auto& c : cases) EXPECT_EQ(invalidPatternLine(error, c.job, c.batch, true), c.line);
}

TEST(RunSummaryTest, ABoxThatRepeatsTheStatusLineGivesOnlyWhatItAdds) {
    RunOutcome outcome;
    outcome.statusText = "2 files processed";
    auto box = [](std::string text) { return Message{std::move(text), kProgramTitle, MessageIcon::None, MessageKind::Summary}; };
    const SummaryParts parts = summaryParts(
        outcome, {box("Replace operation stopped."), box("2 files processed"),
                  box("2 files processed\r\nWarning! 1 of the above"), box("2 files processed later")});
    EXPECT_EQ(parts.status, "2 files processed");
    EXPECT_EQ(parts.notes, (std::vector<std::string>{"Replace operation stopped.", "Warning! 1 of the above",
                                                     "2 files processed later"}));
}

}  // namespace
}  // namespace vantorel
