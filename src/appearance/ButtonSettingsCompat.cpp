// Reading and writing a button's settings through a registry key, kept for
// compatibility with the program's published interface. The program itself
// does not use them: its windows set their buttons up in code and store
// nothing about them.

#include "appearance/ButtonSettings.h"

#include <charconv>
#include <limits>

#include "settings/CRegistry.h"
#include "settings/NumericText.h"

namespace vantorel {
namespace {

// What the registry class gives back for a value that was written empty.
const std::string kLoneNul(1, '\0');

// Reads one value: nullopt when absent, "" when it was stored empty.
std::optional<std::string> readValue(CRegistry& key, const char* name) {
    std::string text = key.ReadString(name);
    if (text.empty()) return std::nullopt;
    if (text == kLoneNul) return std::string();
    return text;
}

std::int16_t readShort(CRegistry& key, const char* name, std::int16_t fallback) {
    const auto text = readValue(key, name);
    if (!text || text->empty()) return fallback;
    const long value = numericValue(*text);
    if (value < std::numeric_limits<std::int16_t>::min()) return std::numeric_limits<std::int16_t>::min();
    if (value > std::numeric_limits<std::int16_t>::max()) return std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(value);
}

bool readFlag(CRegistry& key, const char* name, bool fallback) {
    const auto text = readValue(key, name);
    if (!text || text->empty()) return fallback;
    return *text != "0";
}

ButtonColour readColour(CRegistry& key, const char* name, ButtonColour fallback) {
    const auto text = readValue(key, name);
    if (!text) return fallback;
    ButtonColour colour = 0;
    const auto [end, ec] = std::from_chars(text->data(), text->data() + text->size(), colour);
    return ec == std::errc() && end == text->data() + text->size() ? colour : fallback;
}

std::string readText(CRegistry& key, const char* name) { return readValue(key, name).value_or(std::string()); }

}  // namespace

ButtonSettings ButtonSettings::read(CRegistry& key) {
    ButtonSettings s;
    s.Caption = readText(key, "Caption");
    s.CaptionAlign = readShort(key, "CapAlign", button::AlignCentre);
    s.ButtonStyle = readShort(key, "BackStyle", button::Flat);
    s.ButtonShape = readShort(key, "Shape", button::Rectangular);
    s.GradientMode = readShort(key, "Gradient", button::NoGradient);
    s.GradientColor = readColour(key, "cGradient", kButtonFaceColour);
    s.ForeColor = readColour(key, "cFore", kButtonTextColour);
    s.Font = ButtonFont::parse(readText(key, "Font"));
    s.ShowFocusRect = readFlag(key, "Focus", true);
    s.Mode = readShort(key, "Mode", button::Push);
    s.Value = readFlag(key, "Value", false);
    s.CustomClick = readShort(key, "CustomClick", button::WholeButton);
    s.Picture = readText(key, "Image");
    s.PictureSize = readShort(key, "ImgSize", 16);
    s.PictureAlign = readShort(key, "ImgAlign", button::LeftEdge);
    s.HoverForeColor = readColour(key, "cFHover", kButtonTextColour);
    s.Enabled = readFlag(key, "Enabled", true);
    s.BackColor = readColour(key, "cBack", kButtonFaceColour);
    s.HoverBackColor = readColour(key, "cBHover", s.BackColor);
    s.HoverColorLocks = readShort(key, "LockHover", button::NoLock);
    s.CaptionStyle = readShort(key, "CapStyle", button::Plain);
    s.MouseIcon = readText(key, "mIcon");
    s.MousePointer = readShort(key, "mPointer", button::DefaultPointer);
    return s;
}

bool ButtonSettings::write(CRegistry& key) const {
    auto flag = [](bool on) { return std::string(on ? "1" : "0"); };
    auto number = [](long value) { return std::to_string(value); };
    const std::pair<const char*, std::string> values[] = {
        {"Caption", Caption},
        {"CapAlign", number(CaptionAlign)},
        {"BackStyle", number(ButtonStyle)},
        {"Shape", number(ButtonShape)},
        {"Gradient", number(GradientMode)},
        {"cGradient", std::to_string(GradientColor)},
        {"cFore", std::to_string(ForeColor)},
        {"Font", Font ? Font->text() : std::string()},
        {"Focus", flag(ShowFocusRect)},
        {"Mode", number(Mode)},
        {"Value", flag(Value)},
        {"CustomClick", number(CustomClick)},
        {"Image", Picture},
        {"ImgSize", number(PictureSize)},
        {"ImgAlign", number(PictureAlign)},
        {"cFHover", std::to_string(HoverForeColor)},
        {"Enabled", flag(Enabled)},
        {"cBack", std::to_string(BackColor)},
        {"cBHover", std::to_string(HoverBackColor)},
        {"LockHover", number(HoverColorLocks)},
        {"CapStyle", number(CaptionStyle)},
        {"mIcon", MouseIcon},
        {"mPointer", number(MousePointer)},
    };
    bool written = true;
    for (const auto& [name, text] : values) written = key.WriteString(text, name) && written;
    return written;
}

}  // namespace vantorel
