#include "appearance/ButtonSettings.h"

#include <charconv>
#include <limits>
#include <vector>

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

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
        if (end == std::string::npos) return parts;
        start = end + 1;
    }
}

}  // namespace

std::string ButtonFont::text() const {
    char number[32];
    const auto result = std::to_chars(number, number + sizeof number, size);
    std::string out = name + ";" + std::string(number, result.ptr);
    if (bold) out += ";bold";
    if (italic) out += ";italic";
    if (underline) out += ";underline";
    if (strikeout) out += ";strikeout";
    return out;
}

std::optional<ButtonFont> ButtonFont::parse(const std::string& text) {
    const std::vector<std::string> parts = split(text, ';');
    if (parts[0].empty()) return std::nullopt;
    ButtonFont font;
    font.name = parts[0];
    if (parts.size() > 1) {
        const std::string& size = parts[1];
        double points = 0;
        const auto [end, ec] = std::from_chars(size.data(), size.data() + size.size(), points);
        if (ec == std::errc() && end == size.data() + size.size() && points > 0) font.size = points;
    }
    for (std::size_t i = 2; i < parts.size(); ++i) {
        if (parts[i] == "bold") font.bold = true;
        else if (parts[i] == "italic") font.italic = true;
        else if (parts[i] == "underline") font.underline = true;
        else if (parts[i] == "strikeout") font.strikeout = true;
    }
    return font;
}

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
