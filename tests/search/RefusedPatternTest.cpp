// The line that names a refused pattern, in a batch run with its step.

#include <gtest/gtest.h>

#include "search/RefusedPattern.h"

namespace vantorel {
namespace {

TEST(RefusedPatternTest, AStepIsNamedInEveryBatchRunAndOnlyThere) {
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

}  // namespace
}  // namespace vantorel
