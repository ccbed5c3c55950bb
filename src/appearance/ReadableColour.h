#pragma once
// Colours that stay readable on the page they are shown on: the preview's
// red, blue and grey were chosen for a white page, and a dark desktop gives
// a dark one. Colours are 0xBBGGRR values, as StyledText holds them.

#include <cstdint>

namespace vantorel {

// The contrast ratio of two colours, from 1 (the same) to 21 (black on
// white), as the Web Content Accessibility Guidelines define it.
double contrastRatio(std::uint32_t a, std::uint32_t b) noexcept;

// Every text colour keeps at least this contrast with its page, as the Web
// Content Accessibility Guidelines ask of text (level AA); large text (18
// points, or 14 points bold) at least the second. On white the preview's
// blue (8.6) keeps its colour; its red (4.0) and grey (3.9) are darkened a
// little.
inline constexpr double kLeastTextContrast = 4.5;
inline constexpr double kLeastLargeTextContrast = 3.0;

// `colour` when it already stands out from `background` by `least`;
// otherwise the same hue moved towards white (on a dark page) or black (on
// a light one), just far enough.
std::uint32_t readableColour(std::uint32_t colour, std::uint32_t background,
                             double least = kLeastTextContrast) noexcept;

}  // namespace vantorel
