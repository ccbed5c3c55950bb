#include "library/ExpressionLibrary.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/ScriptedMessages.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::ScriptedMessages;
using Texts = std::vector<std::string>;

class ExpressionLibraryTest : public ::testing::Test {
protected:
    void open(const std::string& bytes) {
        tree.write("RegEx.txt", bytes);
        library.load();
        state.changed = false;
    }
    std::string file() const { return tree.read("RegEx.txt"); }

    test::TempTree tree;
    ScriptedMessages messages;
    LibraryState state;
    ExpressionLibrary library{LibraryFile(tree.root()), messages, state};
};

TEST_F(ExpressionLibraryTest, SaveRefusesWhatCannotBeSavedAndTouchesNothing) {
    open("a\t1\t\r\n");
    const struct {
        LibraryEntry typed;
        const char* message;
    } cases[] = {
        {{"named", "", "r"}, "Please enter a Regular Expression to save"},
        {{"   ", "p", ""}, "Please enter a name for the Regular Expression"},
        {{"tab\there", "p", ""}, "The name, the expression and the replacement cannot hold tabs or line breaks."},
    };
    for (const auto& c : cases) {
        messages.messages.clear();
        EXPECT_EQ(library.save(c.typed), ExpressionLibrary::SaveResult::Refused);
        ASSERT_EQ(messages.texts(), Texts{c.message});
        EXPECT_EQ(messages.messages[0].icon, MessageIcon::None);
    }
    EXPECT_EQ(file(), "a\t1\t\r\n");
    EXPECT_FALSE(state.changed);
}

TEST_F(ExpressionLibraryTest, AnEqualNameWithoutRegardToCaseAsksAboutTheFirstOnly) {
    const std::string before = "x\t1\t\r\nfoo\told\tr\r\nFOO\tother\t\r\ntail\tt\t\r\n";
    open(before);
    // No: nothing changes.
    EXPECT_EQ(library.save({"Foo", "new", "$1"}), ExpressionLibrary::SaveResult::Declined);
    EXPECT_EQ(messages.asked(), Texts{"This already exists. Update 'Foo' ?"});
    EXPECT_EQ(file(), before);
    EXPECT_FALSE(state.changed);
    // Yes: the first one keeps its place and takes the typed name.
    messages.answers = {true};
    std::size_t index = 99;
    EXPECT_EQ(library.save({"Foo", "new", "$1"}, &index), ExpressionLibrary::SaveResult::Updated);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(messages.questions.size(), 2u);
    EXPECT_EQ(file(), "x\t1\t\r\nFoo\tnew\t$1\r\nFOO\tother\t\r\ntail\tt\t\r\n");
    EXPECT_TRUE(state.changed);
    EXPECT_TRUE(messages.messages.empty());
    // Letters beyond ASCII are compared without regard to case too.
    open("\xC3\x84rger\ta\t\r\n");
    messages.questions.clear();
    library.save({"\xC3\xA4RGER", "b", ""});
    EXPECT_EQ(messages.asked(), Texts{"This already exists. Update '\xC3\xA4RGER' ?"});
}

TEST_F(ExpressionLibraryTest, FailuresSayWhatFailedWithTheSystemsReason) {
    open("a\t1\t\r\nb\t2\t\r\n");
    // The file turns into a folder behind the window's back.
    std::filesystem::remove(tree.path("RegEx.txt"));
    tree.write("RegEx.txt/inside", "");
    messages.answers = {true, true};
    EXPECT_EQ(library.save({"A", "p", ""}), ExpressionLibrary::SaveResult::Failed);
    EXPECT_TRUE(library.remove(1) == false);
    EXPECT_EQ(library.save({"new", "p", ""}), ExpressionLibrary::SaveResult::Failed);
    EXPECT_EQ(messages.texts(), (Texts{"Error updating entry in library: Is a directory",
                                       "Error deleting entry from library: Is a directory", "Error saving file"}));
    EXPECT_FALSE(state.changed);
    EXPECT_EQ(library.entries().size(), 2u);
}

}  // namespace
}  // namespace vantorel
