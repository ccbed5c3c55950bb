#include "core/ProgramFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "SettingsTestHost.h"

namespace vantorel {
namespace {

class ProgramFolderTest : public ::testing::Test {
protected:
    void SetUp() override {
        const char* saved = std::getenv("XDG_DATA_HOME");
        savedXdg_ = saved ? std::optional<std::string>(saved) : std::nullopt;
        ::setenv("XDG_DATA_HOME", (data_.path()).c_str(), 1);
    }
    void TearDown() override {
        if (savedXdg_) ::setenv("XDG_DATA_HOME", savedXdg_->c_str(), 1);
        else ::unsetenv("XDG_DATA_HOME");
    }
    testing::TempFolder program_;
    testing::TempFolder data_;
    std::optional<std::string> savedXdg_;
};

TEST_F(ProgramFolderTest, AWritableProgramFolderHoldsTheDataFiles) {
    EXPECT_EQ(userDataFolder(), data_.path() / "vantorel");
    EXPECT_EQ(programDataFolder(program_.path()), program_.path());
    EXPECT_TRUE(findProgramFile(program_.path(), "intro.rtf").empty());
    std::ofstream(program_ / "intro.rtf") << "{\\rtf1 x}";
    EXPECT_EQ(findProgramFile(program_.path(), "intro.rtf"), program_ / "intro.rtf");
}

TEST_F(ProgramFolderTest, WithoutAProgramFolderTheUsersDataFolderServes) {
    EXPECT_EQ(programDataFolder({}), data_.path() / "vantorel");
    std::filesystem::create_directories(data_.path() / "vantorel");
    std::ofstream(data_.path() / "vantorel" / "readme.html") << "<p>help</p>";
    EXPECT_EQ(findProgramFile({}, "readme.html"), data_.path() / "vantorel" / "readme.html");
}

TEST_F(ProgramFolderTest, AnInstalledProgramFindsItsShippedFilesInTheShareFolder) {
    const std::filesystem::path bin = program_ / "bin";
    const std::filesystem::path share = program_ / "share" / "vantorel";
    std::filesystem::create_directories(bin);
    std::filesystem::create_directories(share);
    std::ofstream(share / "readme.html") << "<p>shipped</p>";
    ::chmod(bin.c_str(), 0555);  // as /usr/bin is to a user
    const bool readOnly = ::access(bin.c_str(), W_OK) != 0;  // not so for root
    EXPECT_EQ(installedDataFolder(bin), share);
    EXPECT_EQ(programDataFolder(bin), readOnly ? data_.path() / "vantorel" : bin);
    EXPECT_EQ(findProgramFile(bin, "readme.html"), share / "readme.html");
    // The user's own copy comes first.
    if (readOnly) {
        std::filesystem::create_directories(data_.path() / "vantorel");
        std::ofstream(data_.path() / "vantorel" / "readme.html") << "<p>own</p>";
        EXPECT_EQ(findProgramFile(bin, "readme.html"), data_.path() / "vantorel" / "readme.html");
    }
    ::chmod(bin.c_str(), 0755);
}

}  // namespace
}  // namespace vantorel
