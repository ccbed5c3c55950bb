#pragma once
// The engine's 0xBBGGRR colour values as Qt colours, and back, such a colour
// as it is shown on a page of the desktop's palette, and colours mixed.

#include <QColor>
#include <cstdint>

#include "appearance/ReadableColour.h"

namespace vantorel::ui {

inline QColor toQColor(std::uint32_t bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

inline std::uint32_t toBgr(const QColor& colour) {
    return static_cast<std::uint32_t>(colour.red()) | (static_cast<std::uint32_t>(colour.green()) << 8) |
           (static_cast<std::uint32_t>(colour.blue()) << 16);
}

// `a` with `share` (0 to 1) of `b` mixed in.
inline QColor mix(const QColor& a, const QColor& b, double share) {
    return QColor::fromRgbF(static_cast<float>(a.redF() * (1 - share) + b.redF() * share),
                            static_cast<float>(a.greenF() * (1 - share) + b.greenF() * share),
                            static_cast<float>(a.blueF() * (1 - share) + b.blueF() * share));
}

// The colour, moved just far enough to stay readable on `page`.
inline QColor readableOn(std::uint32_t bgr, const QColor& page) { return toQColor(readableColour(bgr, toBgr(page))); }

}  // namespace vantorel::ui
