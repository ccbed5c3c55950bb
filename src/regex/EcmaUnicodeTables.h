#pragma once
// Character data of ECMAScript's RegExp, generated from a JavaScript engine
// by generate-ecma-unicode-tables.mjs (see EcmaUnicodeTables.cpp).

#include <cstdint>
#include <span>

namespace vantorel::ecma_tables {

// Every `stride`-th code point from `first` to `last` canonicalizes (for
// case-insensitive matching without the u flag) to itself plus `delta`.
// Code points in no run canonicalize to themselves. BMP only.
struct CaseRun {
    char32_t first;
    char32_t last;
    std::uint8_t stride;
    std::int32_t delta;
};

struct CodePointRange {
    char32_t first;
    char32_t last;
};

extern const std::span<const CaseRun> kCanonicalizeRuns;
// Sorted, disjoint ranges of the Unicode properties ID_Start and ID_Continue.
extern const std::span<const CodePointRange> kIdStart;
extern const std::span<const CodePointRange> kIdContinue;

}  // namespace vantorel::ecma_tables
