#include "settings/NumericText.h"

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

namespace vantorel {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

long numericValue(std::string_view text) noexcept {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\r' || text[i] == '\n')) ++i;
    std::string number;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) number += text[i++];
    std::size_t digits = 0;
    while (i < text.size() && isDigit(text[i])) {
        number += text[i++];
        ++digits;
    }
    if (i < text.size() && text[i] == '.') {
        number += text[i++];
        while (i < text.size() && isDigit(text[i])) {
            number += text[i++];
            ++digits;
        }
    }
    if (digits == 0) return 0;
    if (i + 1 < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        std::size_t j = i + 1;
        std::string exponent = "e";
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) exponent += text[j++];
        bool any = false;
        while (j < text.size() && isDigit(text[j])) {
            exponent += text[j++];
            any = true;
        }
        if (any) number += exponent;
    }
    const double value = std::strtod(number.c_str(), nullptr);
    constexpr double kMin = std::numeric_limits<std::int32_t>::min();
    constexpr double kMax = std::numeric_limits<std::int32_t>::max();
    if (!(value > kMin)) return static_cast<long>(std::numeric_limits<std::int32_t>::min());
    if (!(value < kMax)) return static_cast<long>(std::numeric_limits<std::int32_t>::max());
    return static_cast<long>(std::nearbyint(value));  // the default rounding mode: halves to even
}

}  // namespace vantorel
