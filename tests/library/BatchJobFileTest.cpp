#include "library/BatchJobFile.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

TEST(BatchJobFileTest, LinesEmptyOnceTrimmedAreSkippedAndTheNameEndsAtTheFirstTab) {
    const struct {
        std::string bytes;
        std::vector<BatchJob> jobs;
    } cases[] = {
        {"", {}},
        {"clean\tstrip tags\tspaces\r\n", {{"clean", {"strip tags", "spaces"}}}},
        // Blank lines and lines of spaces hold no job; a tab is not a space.
        {"\r\n   \r\nbare\r\n\t\r\n", {{"bare", {}}, {"", {""}}}},
        {" padded \t\tlast", {{" padded ", {"", "last"}}}},
        // Not UTF-8: Windows-1252.
        {"caf\xE9\t\x93q\x94\n", {{"caf\xC3\xA9", {"\xE2\x80\x9Cq\xE2\x80\x9D"}}}},
    };
    for (const auto& c : cases) {
        test::TempTree tree;
        tree.write("BatchJobs.txt", c.bytes);
        std::vector<BatchJob> jobs;
        for (const std::string& line : BatchJobFile(tree.root()).jobLines()) jobs.push_back(parseJob(line));
        EXPECT_EQ(jobs, c.jobs) << c.bytes;
    }
}

}  // namespace
}  // namespace vantorel
