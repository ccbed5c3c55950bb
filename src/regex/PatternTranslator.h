#pragma once
// The one place where a pattern in ECMAScript's RegExp syntax, as the user
// typed it (UTF-8), becomes the pattern that PCRE2 compiles for text of one
// encoding.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/PatternError.h"
#include "core/TextEncoding.h"

namespace vantorel {

struct TranslatedPattern {
    // The pattern for pcre2_compile: UTF-8 for UTF-8 text, single bytes for
    // Windows-1252 text. A character that the target encoding cannot hold
    // becomes something that never matches.
    std::string pcre2Pattern;
    // Options to add to the engine's fixed compile options. None at present:
    // case-insensitive matching is spelled out in the pattern itself.
    std::uint32_t extraCompileOptions = 0;
    // Groups renamed because PCRE2 refuses their ECMAScript name:
    // (name in pcre2Pattern, name as typed).
    std::vector<std::pair<std::string, std::string>> renamedGroups;
    // Where the translation of each part of the typed pattern begins:
    // (byte offset in pcre2Pattern, character offset in the typed pattern),
    // in ascending order.
    std::vector<std::pair<std::size_t, std::size_t>> offsetMap;

    // The character offset in the typed pattern of the part whose translation
    // holds byte `pcre2Offset` of pcre2Pattern (for PCRE2's error offsets).
    std::size_t typedOffset(std::size_t pcre2Offset) const noexcept;
};

// Translates `pattern` for text of `target` encoding, matched with or without
// regard to case. Throws PatternError (with the offset in characters of the
// typed pattern) for a pattern that ECMAScript refuses.
TranslatedPattern translateEcmaPattern(std::string_view pattern, TextEncoding target,
                                       bool ignoreCase);

}  // namespace vantorel
