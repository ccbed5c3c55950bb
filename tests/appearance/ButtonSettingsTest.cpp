#include "appearance/ButtonSettings.h"

#include <gtest/gtest.h>

#include "support/TempTree.h"

namespace vantorel {
namespace {

constexpr const char* kKey = "HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel\\Design\\FindBtn";

class ButtonSettingsTest : public ::testing::Test {
protected:
    std::filesystem::path file() const { return folder.path("settings.reg"); }

    // Writes the settings, or else the values as texts, under the button's key.
    void store(const ButtonSettings& settings, const std::vector<std::pair<std::string, std::string>>& values = {}) {
        RegistryStore store(file());
        CRegistry reg(store);
        reg.CreateKey(kKey);
        ASSERT_TRUE(reg.OpenKey(kKey));
        if (values.empty()) ASSERT_TRUE(settings.write(reg));
        for (const auto& [name, value] : values) reg.WriteString(value, name);
    }
    // Read by a store that starts from the file, as the next run would.
    ButtonSettings load(std::vector<std::string>* names = nullptr) {
        RegistryStore store(file());
        CRegistry reg(store);
        EXPECT_TRUE(reg.OpenKey(kKey));
        if (names) {
            std::vector<long> types;
            reg.EnumerateValues(*names, types);
        }
        return ButtonSettings::read(reg);
    }

    test::TempTree folder;
};

TEST_F(ButtonSettingsTest, EveryPropertySurvivesTheStoreUnderItsOwnName) {
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
    store(s);
    std::vector<std::string> names;
    EXPECT_EQ(load(&names), s);
    EXPECT_EQ(names, (std::vector<std::string>{"Caption", "CapAlign", "BackStyle", "Shape", "Gradient", "cGradient",
                                               "cFore", "Font", "Focus", "Mode", "Value", "CustomClick", "Image",
                                               "ImgSize", "ImgAlign", "cFHover", "Enabled", "cBack", "cBHover",
                                               "LockHover", "CapStyle", "mIcon", "mPointer"}));
    store(ButtonSettings{});  // empty texts and no font come back as such
    EXPECT_EQ(load(), ButtonSettings{});
}

TEST_F(ButtonSettingsTest, AbsentOrUnreadableValuesTakeTheirDefaults) {
    store({}, {{"Caption", "Stop"}, {"cBack", "255"}, {"cFore", "blue"}, {"ImgSize", "70000"}, {"Focus", "0"},
               {"Font", ";12"}});
    ButtonSettings expected;  // the defaults, but for what was read
    expected.Caption = "Stop";
    expected.BackColor = 255;
    expected.HoverBackColor = 255;  // the back colour just read
    expected.PictureSize = 32767;
    expected.ShowFocusRect = false;
    EXPECT_EQ(load(), expected);
}

}  // namespace
}  // namespace vantorel
