#include "appearance/ButtonSettings.h"

#include <charconv>
#include <vector>

namespace vantorel {
namespace {

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

}  // namespace vantorel
