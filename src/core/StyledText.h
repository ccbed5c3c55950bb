#pragma once
// Text with colour and weight, as the preview pane shows it: built by the
// engine, rendered by a window, saved as rich or plain text.

#include <cstdint>
#include <string>
#include <vector>

namespace vantorel {

// Colours as the platform's blue-green-red values.
inline constexpr std::uint32_t kBlack = 0x000000;
inline constexpr std::uint32_t kRed = 0x0000FF;
inline constexpr std::uint32_t kBlue = 0xFF0000;
inline constexpr std::uint32_t kGrey = 0x808080;

struct StyledRun {
    std::string text;  // UTF-8
    std::uint32_t colour = kBlack;
    bool bold = false;
    bool operator==(const StyledRun&) const = default;
};

using StyledText = std::vector<StyledRun>;

}  // namespace vantorel
