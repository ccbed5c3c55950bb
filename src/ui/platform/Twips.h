#pragma once
// Sizes and positions kept in twips (1/1440 inch) become pixels at the
// screen's logical resolution, and back.

#include <QWidget>
#include <cmath>

namespace vantorel::ui {

inline int twipsToPixelsX(long twips, const QWidget* widget) {
    return static_cast<int>(std::lround(static_cast<double>(twips) * widget->logicalDpiX() / 1440.0));
}
inline int twipsToPixelsY(long twips, const QWidget* widget) {
    return static_cast<int>(std::lround(static_cast<double>(twips) * widget->logicalDpiY() / 1440.0));
}
inline long pixelsToTwipsX(int pixels, const QWidget* widget) {
    return std::lround(static_cast<double>(pixels) * 1440.0 / widget->logicalDpiX());
}
inline long pixelsToTwipsY(int pixels, const QWidget* widget) {
    return std::lround(static_cast<double>(pixels) * 1440.0 / widget->logicalDpiY());
}

}  // namespace vantorel::ui
