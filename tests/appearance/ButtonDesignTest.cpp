#include "appearance/ButtonDesign.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

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

}  // namespace
}  // namespace vantorel
