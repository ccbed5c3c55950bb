#include "core/ProgramFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

using fs::path;

class ProgramFolderTest : public ::testing::Test {
protected:
    test::TempTree program_, data_;
    test::ScopedEnvironment xdg_{"XDG_DATA_HOME", data_.root().c_str()};
    const path own_ = data_.path("vantorel");  // the user's data folder
};

TEST_F(ProgramFolderTest, AWritableProgramFolderHoldsTheDataFiles) {
    EXPECT_EQ(userDataFolder(), own_);
    EXPECT_EQ(programDataFolder(program_.root()), path(program_.root()));
    EXPECT_TRUE(findProgramFile(program_.root(), "intro.rtf").empty());
    const path intro = program_.write("intro.rtf", "{\\rtf1 x}");
    EXPECT_EQ(findProgramFile(program_.root(), "intro.rtf"), intro);
}

TEST_F(ProgramFolderTest, WithoutAProgramFolderTheUsersDataFolderServes) {
    EXPECT_EQ(programDataFolder({}), own_);
    const path help = data_.write("vantorel/readme.html", "<p>help</p>");
    EXPECT_EQ(findProgramFile({}, "readme.html"), help);
}

TEST_F(ProgramFolderTest, AnInstalledProgramFindsItsShippedFilesInTheShareFolder) {
    const path bin = program_.mkdir("bin");
    const path share = path(program_.write("share/vantorel/readme.html", "<p>shipped</p>")).parent_path();
    EXPECT_EQ(installedDataFolder(bin), share);
    // Not in the installation's bin folder, even for root, who may write there.
    EXPECT_EQ(programDataFolder(bin), own_);
    EXPECT_EQ(findProgramFile(bin, "readme.html"), share / "readme.html");
    // The user's own copy comes first.
    const path own = data_.write("vantorel/readme.html", "<p>own</p>");
    EXPECT_EQ(findProgramFile(bin, "readme.html"), own);
}

}  // namespace
}  // namespace vantorel
