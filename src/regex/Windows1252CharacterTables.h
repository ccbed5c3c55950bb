#pragma once
// PCRE2 character tables for Windows-1252 text (PCRE2 without UTF).
//
// PCRE2's built-in tables pair ASCII letters only. These also pair the
// letters of the code page that ECMAScript's case-insensitive matching treats
// as equal (é/É and the other Latin-1 letters, Š/š, Œ/œ, Ž/ž, Ÿ/ÿ), which
// PCRE2 uses for caseless back-references and to turn a class such as [éÉ]
// into one caseless character. Character types (\d, \w, \b) stay ASCII-only,
// as in ECMAScript.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorel {

class Windows1252CharacterTables {
public:
    // The tables for pcre2_set_character_tables, alive until exit; nullptr
    // when this PCRE2 lays its tables out differently (then PCRE2's own
    // tables apply and only ASCII letters pair in back-references).
    static const std::uint8_t* pcre2Tables();

    // Offsets of the parts of the tables, as pcre2_maketables lays them out.
    static constexpr std::size_t kLowerCase = 0;
    static constexpr std::size_t kFlipCase = 256;
    static constexpr std::size_t kClassBits = 512;
    static constexpr std::size_t kClassBitsLength = 320;
    static constexpr std::size_t kCharacterTypes = 832;
    static constexpr std::size_t kLength = 1088;

private:
    static std::vector<std::uint8_t> build();
};

}  // namespace vantorel
