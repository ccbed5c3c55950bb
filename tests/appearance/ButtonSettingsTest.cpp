#include "appearance/ButtonSettings.h"

#include <gtest/gtest.h>

#include "settings/CRegistry.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

// read and write are kept for the published interface only: once over, every
// property comes back from the file as the next run reads it, and absent or
// unreadable values take their defaults.
TEST(ButtonSettings, SurviveTheStoreAndFallBackToDefaults) {
    const std::string key = "HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel\\Design\\FindBtn";
    test::TempTree folder;
    const ButtonSettings s{.Caption = "&Find", .CaptionAlign = button::AlignLeft, .ButtonStyle = button::Raised,
                           .ButtonShape = button::Rounded, .GradientMode = button::TopToBottom,
                           .GradientColor = 0x00FFEEDD, .ForeColor = 0x80000008,
                           .Font = ButtonFont{"DejaVu Sans Mono", 10.5, true, false, true, false},
                           .ShowFocusRect = false, .Mode = button::Option, .Value = true,
                           .CustomClick = button::ShapeOnly, .Picture = "/usr/share/pixmaps/find.png",
                           .PictureSize = 24, .PictureAlign = button::RightOfCaption, .HoverForeColor = 0x000000FF,
                           .Enabled = false, .BackColor = 0x00102030, .HoverBackColor = 0x00405060,
                           .HoverColorLocks = button::KeepBackColour, .CaptionStyle = button::Engraved,
                           .MouseIcon = "/tmp/hand.cur", .MousePointer = button::CustomPointer};
    {
        RegistryStore store(folder.path("settings.reg"));
        CRegistry reg(store);
        reg.CreateKey(key);
        ASSERT_TRUE(reg.OpenKey(key));
        ASSERT_TRUE(s.write(reg));
    }
    RegistryStore store(folder.path("settings.reg"));
    CRegistry reg(store);
    ASSERT_TRUE(reg.OpenKey(key));
    EXPECT_EQ(ButtonSettings::read(reg), s);

    for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
             {"cBHover", "x"}, {"cFore", "blue"}, {"ImgSize", "70000"}, {"Font", ";12"}, {"Caption", ""}})
        reg.DeleteValue(name), reg.WriteString(value, name);
    ASSERT_TRUE(reg.DeleteValue("LockHover"));
    ButtonSettings expected = s;
    expected.HoverBackColor = s.BackColor;  // unreadable: the back colour just read
    expected.ForeColor = kButtonTextColour;
    expected.PictureSize = 32767;
    expected.Font.reset();
    expected.Caption = "";
    expected.HoverColorLocks = button::NoLock;
    EXPECT_EQ(ButtonSettings::read(reg), expected);
}

}  // namespace
}  // namespace vantorel
