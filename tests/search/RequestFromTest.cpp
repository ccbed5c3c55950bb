// A run's request from a front end's inputs.

#include <filesystem>

#include <gtest/gtest.h>

#include "search/RequestFrom.h"

namespace vantorel {
namespace {

TEST(RequestFromTest, ARelativeFolderIsTakenFromTheCurrentFolderAndMarkedFilesLimitTheRun) {
    const std::string current = std::filesystem::current_path().string();
    const struct {
        std::string folder;
        std::string startFolder;
    } cases[] = {
        {"", ""},  // refused by the run as a missing start location
        {"/srv/site/", "/srv/site/"},
        {"site/../a", current + "/site/../a"},
    };
    for (const auto& c : cases) {
        RunInputs inputs;
        inputs.folder = c.folder;
        EXPECT_EQ(requestFrom(inputs).startFolder, c.startFolder);
    }
    RunInputs marked;
    marked.jobs = JobSource::batchSteps({{"a", "b"}, {"c", "d"}});
    marked.markedFiles = std::vector<std::string>{};
    const RunRequest request = requestFrom(marked);
    EXPECT_TRUE(request.markedOnly && request.markedFiles.empty() && request.batch);
    EXPECT_EQ(request.jobs.size(), 2u);
    EXPECT_FALSE(requestFrom(RunInputs{}).markedOnly);
}

}  // namespace
}  // namespace vantorel
