#include "appearance/ButtonDesign.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(ButtonDesign, CaptionsBesideAPictureAboveOrBelowStayCentred) {
    ButtonDesign d;
    EXPECT_EQ(d.setCaptionAlign(button::AlignLeft), std::nullopt);
    d.settings().PictureAlign = button::TopCentre;
    EXPECT_EQ(d.effectiveCaptionAlign(), button::AlignCentre);
    d.settings().CaptionAlign = button::AlignCentre;
    EXPECT_EQ(d.setCaptionAlign(button::AlignRight),
              "When button images are aligned top/bottom center, \r\nbutton captions can only be center aligned");
    EXPECT_EQ(d.settings().CaptionAlign, button::AlignCentre);
}

TEST(ButtonDesign, ACustomShapeNeedsABitmapFirst) {
    ButtonDesign d;
    EXPECT_EQ(d.setButtonShape(button::Custom),
              "The Picture Property must be assigned first and must be a bitmap or JPEG.");
    EXPECT_EQ(d.settings().ButtonShape, button::Rectangular);
    EXPECT_EQ(d.setCustomClick(button::ShapeOnly),
              "This property has no effect unless the Button Shape is a custom shape.");

    const std::string iconNotice =
        "Icons cannot be used for custom buttons. Only use bitmaps or JPEGs.\r\nButton was changed to Rectangular shaped.";
    d.setPicture("/pics/logo.ICO");
    EXPECT_EQ(d.setButtonShape(button::Custom), iconNotice);
    EXPECT_EQ(d.settings().ButtonShape, button::Rectangular);

    EXPECT_EQ(d.setPicture("/pics/logo.jpg"), std::nullopt);
    EXPECT_EQ(d.setButtonShape(button::Custom), std::nullopt);
    EXPECT_EQ(d.setCustomClick(button::ShapeOnly), std::nullopt);
    EXPECT_EQ(d.setPictureSize(32), "The picture size cannot be changed for Shaped buttons");
    EXPECT_EQ(d.settings().PictureSize, 16);
    EXPECT_EQ(d.setPicture("/pics/x.ico"), iconNotice);
    EXPECT_EQ(d.settings().ButtonShape, button::Rectangular);
    EXPECT_EQ(d.settings().Picture, "/pics/x.ico");
}

TEST(ButtonDesign, APushButtonHasNoValue) {
    ButtonDesign d;
    EXPECT_EQ(d.setValue(true), "This property is not applicable for command button modes.");
    EXPECT_FALSE(d.settings().Value);
    d.setMode(button::Check);
    EXPECT_EQ(d.setValue(true), std::nullopt);
    d.setMode(button::Push);
    EXPECT_FALSE(d.settings().Value);
}

TEST(ButtonDesign, DefaultButtonsNeverShowTheFocusRectangle) {
    ButtonDesign d;
    EXPECT_TRUE(d.showsFocusRect(true));
    EXPECT_FALSE(d.showsFocusRect(false));
    d.setDefault(true);
    EXPECT_FALSE(d.showsFocusRect(true));
    EXPECT_EQ(d.setShowFocusRect(true),
              "The focus rectangle may appear on default buttons ONLY while in design mode, \r\nbut will not appear "
              "when the form is running.");
    d.setDefault(false);
    EXPECT_EQ(d.setShowFocusRect(false), std::nullopt);
    EXPECT_FALSE(d.showsFocusRect(true));
}

TEST(ButtonDesign, HoverColoursUnlessLocked) {
    ButtonDesign d;
    d.settings().ForeColor = 1;
    d.settings().BackColor = 2;
    d.settings().HoverForeColor = 3;
    d.settings().HoverBackColor = 4;
    EXPECT_EQ(d.colours(false), (ButtonColours{1, 2}));
    EXPECT_EQ(d.colours(true), (ButtonColours{3, 4}));
    d.settings().HoverColorLocks = button::KeepForeColour;
    EXPECT_EQ(d.colours(true), (ButtonColours{1, 4}));
    d.settings().HoverColorLocks = button::KeepBoth;
    EXPECT_EQ(d.colours(true), (ButtonColours{1, 2}));
    d.resetDefaultColors();
    EXPECT_EQ(d.colours(false), (ButtonColours{kButtonTextColour, kButtonFaceColour}));
}

}  // namespace
}  // namespace vantorel
