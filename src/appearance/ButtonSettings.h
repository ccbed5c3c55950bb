#pragma once
// The stored settings of one of the program's own buttons (lvButtons_H): the
// values a window's design keeps for each button, under fixed names, with the
// default that applies when a value is absent. `read` and `write` keep them
// under a registry key like the program's other settings: numbers as decimal
// text, flags as "1" or "0", colours as the decimal text of their 32-bit
// value. Those two are kept for compatibility with the program's published
// interface; the program itself does not use them (ButtonSettingsCompat.cpp).

#include <cstdint>
#include <optional>
#include <string>


namespace vantorel {

class CRegistry;

// A colour in blue-green-red order, or a system colour: the high bit set and
// the system colour's index below it (resolved from the desktop's palette).
using ButtonColour = std::uint32_t;
inline constexpr ButtonColour kSystemColour = 0x80000000u;
inline constexpr ButtonColour kButtonFaceColour = 0x8000000Fu;
inline constexpr ButtonColour kButtonTextColour = 0x80000012u;
inline constexpr ButtonColour kHighlightColour = 0x8000000Du;
inline constexpr ButtonColour kHighlightTextColour = 0x8000000Eu;

inline constexpr bool isSystemColour(ButtonColour colour) { return (colour & kSystemColour) != 0; }

// The numeric values of the button's properties.
namespace button {
enum Mode : std::int16_t { Push = 0, Check = 1, Option = 2 };
enum Style : std::int16_t { Flat = 0, Raised = 1, Outline = 2 };
enum Shape : std::int16_t { Rectangular = 0, Rounded = 1, Oval = 2, Custom = 3 };  // Custom: the picture's outline
enum CaptionAlign : std::int16_t { AlignLeft = 0, AlignRight = 1, AlignCentre = 2 };
enum CaptionStyle : std::int16_t { Plain = 0, Embossed = 1, Engraved = 2 };
enum PictureAlign : std::int16_t {
    LeftEdge = 0, LeftOfCaption = 1, RightEdge = 2, RightOfCaption = 3, TopCentre = 4, BottomCentre = 5
};
enum Gradient : std::int16_t { NoGradient = 0, LeftToRight = 1, TopToBottom = 2, RightToLeft = 3, BottomToTop = 4 };
// Which normal colours the hover state keeps.
enum HoverLocks : std::int16_t { NoLock = 0, KeepForeColour = 1, KeepBackColour = 2, KeepBoth = 3 };
// Where a custom-shaped button takes clicks.
enum CustomClick : std::int16_t { WholeButton = 0, ShapeOnly = 1 };
// The mouse pointer shown over the button; Custom shows MouseIcon.
enum Pointer : std::int16_t {
    DefaultPointer = 0, Arrow = 1, Cross = 2, IBeam = 3, SizeAll = 5, SizeNESW = 6, SizeNS = 7, SizeNWSE = 8,
    SizeWE = 9, UpArrow = 10, Hourglass = 11, NoDrop = 12, ArrowHourglass = 13, ArrowQuestion = 14,
    SizeAllArrows = 15, CustomPointer = 99
};
}  // namespace button

struct ButtonFont {
    std::string name;
    double size = 0;  // points
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeout = false;

    // "DejaVu Sans;10;bold;italic", and back; nullopt for text without a name.
    std::string text() const;
    static std::optional<ButtonFont> parse(const std::string& text);
    bool operator==(const ButtonFont&) const = default;
};

struct ButtonSettings {
    std::string Caption;
    std::int16_t CaptionAlign = button::AlignCentre;
    std::int16_t ButtonStyle = button::Flat;
    std::int16_t ButtonShape = button::Rectangular;
    std::int16_t GradientMode = button::NoGradient;
    ButtonColour GradientColor = kButtonFaceColour;
    ButtonColour ForeColor = kButtonTextColour;
    std::optional<ButtonFont> Font;  // none: the surrounding window's font
    bool ShowFocusRect = true;
    std::int16_t Mode = button::Push;
    bool Value = false;
    std::int16_t CustomClick = button::WholeButton;
    std::string Picture;  // an image file; empty: none
    std::int16_t PictureSize = 16;
    std::int16_t PictureAlign = button::LeftEdge;
    ButtonColour HoverForeColor = kButtonTextColour;
    bool Enabled = true;
    ButtonColour BackColor = kButtonFaceColour;
    ButtonColour HoverBackColor = kButtonFaceColour;
    std::int16_t HoverColorLocks = button::NoLock;
    std::int16_t CaptionStyle = button::Plain;
    std::string MouseIcon;  // an image file; empty: none
    std::int16_t MousePointer = button::DefaultPointer;

    // Kept for compatibility with the program's published interface; the
    // program itself does not use them.
    // Reads the values of the open key, in their fixed order; an absent
    // value gives its default (HoverBackColor's is the BackColor just read).
    static ButtonSettings read(CRegistry& key);
    // Writes every value under the open key.
    bool write(CRegistry& key) const;

    bool operator==(const ButtonSettings&) const = default;
};

}  // namespace vantorel
