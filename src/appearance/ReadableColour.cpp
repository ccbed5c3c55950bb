#include "appearance/ReadableColour.h"

#include <algorithm>
#include <cmath>

namespace vantorel {
namespace {

struct Rgb {
    double r, g, b;
};

Rgb channels(std::uint32_t bgr) {
    return {static_cast<double>(bgr & 0xFF), static_cast<double>((bgr >> 8) & 0xFF),
            static_cast<double>((bgr >> 16) & 0xFF)};
}

std::uint32_t pack(const Rgb& c) {
    auto byte = [](double v) { return static_cast<std::uint32_t>(std::clamp(std::lround(v), 0L, 255L)); };
    return byte(c.r) | (byte(c.g) << 8) | (byte(c.b) << 16);
}

double linear(double channel) {
    const double v = channel / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double luminance(std::uint32_t bgr) {
    const Rgb c = channels(bgr);
    return 0.2126 * linear(c.r) + 0.7152 * linear(c.g) + 0.0722 * linear(c.b);
}

}  // namespace

double contrastRatio(std::uint32_t a, std::uint32_t b) noexcept {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

std::uint32_t readableColour(std::uint32_t colour, std::uint32_t background, double least) noexcept {
    if (contrastRatio(colour, background) >= least) return colour;
    // Towards whichever end of the scale stands out more from the page.
    const bool darkPage = contrastRatio(0xFFFFFF, background) >= contrastRatio(0x000000, background);
    const Rgb from = channels(colour);
    const double target = darkPage ? 255.0 : 0.0;
    auto at = [&](double share) {
        return pack({from.r + (target - from.r) * share, from.g + (target - from.g) * share,
                     from.b + (target - from.b) * share});
    };
    double low = 0;
    double high = 1;
    for (int step = 0; step < 20; ++step) {
        const double middle = (low + high) / 2;
        if (contrastRatio(at(middle), background) >= least) high = middle;
        else low = middle;
    }
    return at(high);
}

}  // namespace vantorel
