#pragma once
// The engine's 0xBBGGRR colour values as Qt colours, and back, and such a
// colour as it is shown on a page of the desktop's palette.

#include <QColor>
#include <cstdint>

#include "core/ReadableColour.h"

namespace vantorel::ui {

inline QColor toQColor(std::uint32_t bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

inline std::uint32_t toBgr(const QColor& colour) {
    return static_cast<std::uint32_t>(colour.red()) | (static_cast<std::uint32_t>(colour.green()) << 8) |
           (static_cast<std::uint32_t>(colour.blue()) << 16);
}

// The colour, moved just far enough to stay readable on `page`.
inline QColor readableOn(std::uint32_t bgr, const QColor& page) { return toQColor(readableColour(bgr, toBgr(page))); }

}  // namespace vantorel::ui
