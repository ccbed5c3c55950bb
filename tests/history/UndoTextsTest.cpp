// The words in which a recorded Replace is described when its Undo is asked for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/UndoTexts.h"

namespace vantorel::history {
namespace {

RecordedRun runOfSteps(std::size_t count) {
    RecordedRun run;
    run.header.folder = "/data";
    run.header.filter = "*.txt";
    run.filesWritten = 3;
    for (std::size_t i = 1; i <= count; ++i) run.steps.push_back({"f" + std::to_string(i), "r" + std::to_string(i)});
    return run;
}

// The lines of a text whose lines end in CR LF.
std::vector<std::string> crlfLines(const std::string& text) {
    std::vector<std::string> out;
    for (std::size_t at = 0;;) {
        const std::size_t end = text.find("\r\n", at);
        out.push_back(text.substr(at, end - at));
        if (end == std::string::npos) return out;
        at = end + 2;
    }
}

TEST(UndoTextsTest, ASummaryListsTheFirstStepsAndCountsTheRest) {
    const struct {
        std::size_t steps;
        std::size_t lines;  // the heading and the steps' lines
        std::string last;
    } cases[] = {
        {1, 2, "\"f1\" -> \"r1\""},
        {kStepsListed, 1 + kStepsListed, "\"f20\" -> \"r20\""},
        {kStepsListed + 1, 2 + kStepsListed, "... and 1 more step(s)"},
        {50000, 2 + kStepsListed, "... and 49980 more step(s)"},
    };
    for (const auto& c : cases) {
        const std::vector<std::string> summary = crlfLines(runSummary(runOfSteps(c.steps)));
        EXPECT_EQ(summary.size(), c.lines) << c.steps;
        EXPECT_EQ(summary.front(), "3 file(s) changed in /data (*.txt)") << c.steps;
        EXPECT_EQ(summary.back(), c.last) << c.steps;
        EXPECT_EQ(summary[1], "\"f1\" -> \"r1\"") << c.steps;
        EXPECT_EQ(crlfLines(undoQuestion(runOfSteps(c.steps))).size(), c.lines + 2) << c.steps;
    }
}

}  // namespace
}  // namespace vantorel::history
