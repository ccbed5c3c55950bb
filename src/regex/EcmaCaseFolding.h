#pragma once
// Case-insensitive character equality of ECMAScript's RegExp without the u
// flag: two characters are equal when their Canonicalize values are (the
// character's toUpperCase when that is one UTF-16 unit and does not turn a
// non-ASCII character into an ASCII one). This differs from Unicode case
// folding: the Kelvin sign does not match k, nor long s match s, nor ß match ẞ.
// Characters beyond U+FFFF are two units there and never fold.

#include <cstdint>
#include <span>
#include <vector>

#include "regex/CodePointSet.h"

namespace vantorel {

class EcmaCaseFolding {
public:
    // The process-wide table, built on first use.
    static const EcmaCaseFolding& instance();

    char32_t canonicalize(char32_t cp) const noexcept;
    // Every character equal to `cp` without regard to case, `cp` included,
    // in ascending order.
    std::vector<char32_t> equivalents(char32_t cp) const;
    // The set plus every character equal to one of its members.
    CodePointSet closure(const CodePointSet& set) const;

private:
    EcmaCaseFolding();

    static constexpr std::uint16_t kNoClass = 0xFFFF;
    std::vector<char16_t> canonical_;           // per BMP code point
    std::vector<std::uint16_t> classOf_;        // per BMP code point: index into classes_
    std::vector<std::vector<char32_t>> classes_;  // classes of two or more characters
};

}  // namespace vantorel
