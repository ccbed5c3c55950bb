#pragma once
// The numeric value of a text as the settings and the options dialog use it:
// the leading decimal number, converted to a 32-bit long with rounding.

#include <string_view>

namespace vantorel {

// Leading blanks are skipped; then an optional sign, digits, an optional
// fraction and an optional exponent ("1.5e2"). The number is rounded to the
// nearest integer, halves to even ("2.5" gives 2, "3.5" gives 4), and held to
// the 32-bit range. Text that does not start with a number gives 0.
long numericValue(std::string_view text) noexcept;

}  // namespace vantorel
