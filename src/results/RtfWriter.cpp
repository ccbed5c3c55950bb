#include "results/RtfWriter.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "core/TextEncoding.h"

namespace vantorel {
namespace {

void appendControl(std::string& out, const char* word, long value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "\\%s%ld", word, value);
    out += buffer;
}

// Appends text with RTF's escapes: control characters of RTF escaped,
// line breaks as paragraphs, Windows-1252 characters as \'hh and anything
// else as \uN with "?" for readers without Unicode.
void appendEscaped(std::string& out, std::string_view utf8) {
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const char32_t cp = decodeUtf8(utf8, pos);
        switch (cp) {
            case U'\\': out += "\\\\"; continue;
            case U'{': out += "\\{"; continue;
            case U'}': out += "\\}"; continue;
            case U'\t': out += "\\tab "; continue;
            case U'\r':
                if (pos < utf8.size() && utf8[pos] == '\n') ++pos;
                out += "\\par\r\n";
                continue;
            case U'\n': out += "\\par\r\n"; continue;
            default: break;
        }
        if (cp >= 0x20 && cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (const auto byte = codePointToWindows1252(cp); byte && cp >= 0x80) {
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, "\\'%02x", *byte);
            out += buffer;
        } else if (cp < 0x10000) {
            appendControl(out, "u", static_cast<std::int16_t>(cp));
            out += '?';
        } else {
            const char32_t v = cp - 0x10000;
            appendControl(out, "u", static_cast<std::int16_t>(0xD800 + (v >> 10)));
            out += '?';
            appendControl(out, "u", static_cast<std::int16_t>(0xDC00 + (v & 0x3FF)));
            out += '?';
        }
    }
}

}  // namespace

std::string toRtf(const StyledText& text, std::string_view fontName, int fontPoints) {
    std::vector<std::uint32_t> colours;
    for (const StyledRun& run : text)
        if (std::find(colours.begin(), colours.end(), run.colour) == colours.end()) colours.push_back(run.colour);
    if (colours.empty()) colours.push_back(kBlack);

    std::string out = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 ";
    appendEscaped(out, fontName);
    out += ";}}\r\n{\\colortbl ;";
    for (const std::uint32_t colour : colours) {
        appendControl(out, "red", colour & 0xFF);
        appendControl(out, "green", (colour >> 8) & 0xFF);
        appendControl(out, "blue", (colour >> 16) & 0xFF);
        out += ';';
    }
    out += "}\r\n\\viewkind4\\uc1\\pard\\f0";
    appendControl(out, "fs", std::max(1, fontPoints) * 2);
    out += ' ';
    std::size_t currentColour = 0;
    bool bold = false;
    for (const StyledRun& run : text) {
        const std::size_t colour = std::find(colours.begin(), colours.end(), run.colour) - colours.begin() + 1;
        bool changed = false;
        if (colour != currentColour) {
            appendControl(out, "cf", static_cast<long>(colour));
            currentColour = colour;
            changed = true;
        }
        if (run.bold != bold) {
            out += run.bold ? "\\b" : "\\b0";
            bold = run.bold;
            changed = true;
        }
        if (changed) out += ' ';
        appendEscaped(out, run.text);
    }
    const std::string plain = toPlainText(text);
    if (!plain.empty() && plain.back() != '\n' && plain.back() != '\r') out += "\\par";
    out += "\r\n}\r\n";
    return out;
}

std::string toPlainText(const StyledText& text) {
    std::string out;
    for (const StyledRun& run : text) out += run.text;
    return out;
}

bool savesAsRichText(std::string_view path) {
    return path.size() >= 3 && path.substr(path.size() - 3) == "rtf";
}

std::string bytesToSave(std::string_view path, const StyledText& text, std::string_view fontName, int fontPoints) {
    return savesAsRichText(path) ? toRtf(text, fontName, std::max(1, fontPoints)) : toPlainText(text);
}

}  // namespace vantorel
