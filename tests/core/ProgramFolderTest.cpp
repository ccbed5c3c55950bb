#include "core/ProgramFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

class ProgramFolderTest : public ::testing::Test {
protected:
    test::TempTree program_;
    test::TempTree data_;
    test::ScopedEnvironment xdg_{"XDG_DATA_HOME", data_.root().c_str()};
};

TEST_F(ProgramFolderTest, AWritableProgramFolderHoldsTheDataFiles) {
    EXPECT_EQ(userDataFolder(), std::filesystem::path(data_.path("vantorel")));
    EXPECT_EQ(programDataFolder(std::filesystem::path(program_.root())), std::filesystem::path(program_.root()));
    EXPECT_TRUE(findProgramFile(std::filesystem::path(program_.root()), "intro.rtf").empty());
    std::ofstream(std::filesystem::path(program_.path("intro.rtf"))) << "{\\rtf1 x}";
    EXPECT_EQ(findProgramFile(std::filesystem::path(program_.root()), "intro.rtf"), std::filesystem::path(program_.path("intro.rtf")));
}

TEST_F(ProgramFolderTest, WithoutAProgramFolderTheUsersDataFolderServes) {
    EXPECT_EQ(programDataFolder({}), std::filesystem::path(data_.path("vantorel")));
    std::filesystem::create_directories(std::filesystem::path(data_.path("vantorel")));
    std::ofstream(std::filesystem::path(data_.path("vantorel")) / "readme.html") << "<p>help</p>";
    EXPECT_EQ(findProgramFile({}, "readme.html"), std::filesystem::path(data_.path("vantorel")) / "readme.html");
}

TEST_F(ProgramFolderTest, AnInstalledProgramFindsItsShippedFilesInTheShareFolder) {
    const std::filesystem::path bin = program_.path("bin");
    const std::filesystem::path share = program_.path("share/vantorel");
    std::filesystem::create_directories(bin);
    std::filesystem::create_directories(share);
    std::ofstream(share / "readme.html") << "<p>shipped</p>";
    EXPECT_EQ(installedDataFolder(bin), share);
    // Not in the installation's bin folder, even for root, who may write there.
    EXPECT_EQ(programDataFolder(bin), std::filesystem::path(data_.path("vantorel")));
    EXPECT_EQ(findProgramFile(bin, "readme.html"), share / "readme.html");
    // The user's own copy comes first.
    std::filesystem::create_directories(std::filesystem::path(data_.path("vantorel")));
    std::ofstream(std::filesystem::path(data_.path("vantorel")) / "readme.html") << "<p>own</p>";
    EXPECT_EQ(findProgramFile(bin, "readme.html"), std::filesystem::path(data_.path("vantorel")) / "readme.html");
}

}  // namespace
}  // namespace vantorel
