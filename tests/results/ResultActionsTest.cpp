#include "results/ResultActions.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

// The other captions are checked on the window's menu.
TEST(ResultActionsTest, OpenWithNamesTheProgramAndOnlyAProgramWithAName) {
    EXPECT_EQ(openWithCaption("a.exe"), "Open with a.exe");
    EXPECT_EQ(openWithCaption("/bin"), std::nullopt);
    EXPECT_EQ(openWithCaption(""), std::nullopt);
}

TEST(ResultActionsTest, MarkingTicksTheBoxUnmarkingTheLastClearsAndDisablesIt) {
    std::vector<bool> marks{false, false, false};
    const std::vector<bool> none{false, false, false};
    MarkAction action{marks, none};
    MarkedBoxState box = action.toggle(1);
    EXPECT_TRUE(box.enabled && box.checked && box.touchChecked);
    box = action.toggle(2);
    box = action.toggle(1);  // one mark is left: the box stays as it is
    EXPECT_TRUE(box.enabled);
    EXPECT_FALSE(box.touchChecked);
    box = action.toggle(2);  // the last mark goes: the box is cleared and disabled
    EXPECT_TRUE(!box.enabled && box.touchChecked && !box.checked);
    EXPECT_EQ(marks, (std::vector<bool>{false, false, false}));
}

TEST(ResultActionsTest, SelectedRowsAreMarkedUnmarkedAndAllMarksInverted) {
    std::vector<bool> marks{true, false, false, false};
    const std::vector<bool> selected{false, true, true, false};
    MarkAction action{marks, selected};
    EXPECT_TRUE(action.markSelected().checked);
    EXPECT_EQ(marks, (std::vector<bool>{true, true, true, false}));
    EXPECT_TRUE(action.unmarkSelected().enabled);
    EXPECT_EQ(marks, (std::vector<bool>{true, false, false, false}));
    const MarkedBoxState inverted = action.invert();
    EXPECT_EQ(marks, (std::vector<bool>{false, true, true, true}));
    EXPECT_TRUE(inverted.enabled);
    EXPECT_FALSE(inverted.touchChecked);
    std::vector<bool> all{true, true};
    const std::vector<bool> both{true, true};
    for (const MarkedBoxState box : {MarkAction{all, both}.invert(), MarkAction{all, both}.unmarkSelected()})
        EXPECT_TRUE(!box.enabled && box.touchChecked && !box.checked);
}

}  // namespace
}  // namespace vantorel
