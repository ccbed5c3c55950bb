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
        EXPECT_EQ(requestFrom(RunRequest{.startFolder = c.folder}, JobSource{}).startFolder, c.startFolder);
    }
    const RunRequest request =
        requestFrom(RunRequest{}, JobSource::batchSteps({{"a", "b"}, {"c", "d"}}), std::vector<std::string>{});
    EXPECT_TRUE(request.markedOnly && request.markedFiles.empty() && request.batch);
    EXPECT_EQ(request.jobs.size(), 2u);
    EXPECT_FALSE(requestFrom(RunRequest{}, JobSource{}).markedOnly);
}

}  // namespace
}  // namespace vantorel
