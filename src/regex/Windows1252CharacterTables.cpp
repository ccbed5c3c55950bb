#include "regex/Windows1252CharacterTables.h"

#include <pcre2.h>

#include "regex/EcmaCaseFolding.h"
#include "core/TextEncoding.h"

namespace vantorel {

const std::uint8_t* Windows1252CharacterTables::pcre2Tables() {
    static const std::vector<std::uint8_t> tables = build();
    return tables.empty() ? nullptr : tables.data();
}

std::vector<std::uint8_t> Windows1252CharacterTables::build() {
    std::uint32_t length = 0;
    if (pcre2_config(PCRE2_CONFIG_TABLES_LENGTH, &length) < 0 || length != kLength) return {};
    const std::uint8_t* made = pcre2_maketables(nullptr);
    if (!made) return {};
    std::vector<std::uint8_t> tables(made, made + kLength);
    pcre2_maketables_free(nullptr, made);
    if (tables[kLowerCase + 'A'] != 'a' || tables[kFlipCase + 'a'] != 'A' || tables[kFlipCase + 'A'] != 'a')
        return {};

    // Whatever the process locale says about bytes 0x80..0xFF: no letters, no
    // digits, no spaces, no case.
    for (unsigned b = 0x80; b < 0x100; ++b) {
        tables[kLowerCase + b] = static_cast<std::uint8_t>(b);
        tables[kFlipCase + b] = static_cast<std::uint8_t>(b);
        tables[kCharacterTypes + b] = 0;
    }
    for (std::size_t bitmap = kClassBits; bitmap < kClassBits + kClassBitsLength; bitmap += 32)
        for (std::size_t i = 16; i < 32; ++i) tables[bitmap + i] = 0;

    // Case pairs: a byte and the one other byte equal to it without regard to
    // case. The lower-case table maps both to the one that is not the
    // canonical (upper-case) form.
    const EcmaCaseFolding& folding = EcmaCaseFolding::instance();
    for (unsigned b = 0x80; b < 0x100; ++b) {
        const char32_t cp = windows1252ToCodePoint(static_cast<unsigned char>(b));
        for (char32_t other : folding.equivalents(cp)) {
            const auto otherByte = codePointToWindows1252(other);
            if (other == cp || !otherByte) continue;
            tables[kFlipCase + b] = *otherByte;
            tables[kLowerCase + b] = folding.canonicalize(cp) == cp ? *otherByte : static_cast<std::uint8_t>(b);
        }
    }
    return tables;
}

}  // namespace vantorel
