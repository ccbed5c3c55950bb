#pragma once
// How a file's bytes become characters.
//
// A file whose bytes are valid UTF-8 is UTF-8 text: characters are code
// points. Any other file is single-byte Windows-1252 text: one byte, one
// character. Matching always runs on the file's own bytes; only the typed
// pattern and replacement are converted to the file's encoding.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantorel {

enum class TextEncoding { Utf8, Windows1252 };

// True when the bytes form valid UTF-8 (no overlongs, no surrogates, nothing
// above U+10FFFF).
bool isValidUtf8(std::string_view bytes) noexcept;

struct EncodingScan {
    TextEncoding encoding;
    std::uint64_t characters;
};
// The encoding and the number of characters, in one pass over the bytes.
EncodingScan scanEncoding(std::string_view bytes) noexcept;

// Number of characters: code points for UTF-8, bytes for Windows-1252.
std::uint64_t countCharacters(std::string_view bytes, TextEncoding encoding) noexcept;

// The Unicode code point of a Windows-1252 byte. The five bytes that the code
// page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) map to the C1 control
// of the same value, so that every byte is a character and round trips.
char32_t windows1252ToCodePoint(unsigned char byte) noexcept;

// The Windows-1252 byte of a code point, or nothing when the code page has none.
std::optional<unsigned char> codePointToWindows1252(char32_t cp) noexcept;

// Converts UTF-8 text to Windows-1252; nothing when a character has no byte.
std::optional<std::string> utf8ToWindows1252(std::string_view utf8);

// Converts Windows-1252 text to UTF-8 (always possible).
std::string windows1252ToUtf8(std::string_view bytes);

// Text in the file's encoding shown as UTF-8 (a copy for Windows-1252).
std::string toUtf8(std::string_view bytes, TextEncoding encoding);

// Decodes one code point of valid UTF-8 at `pos`, advancing `pos`.
char32_t decodeUtf8(std::string_view utf8, std::size_t& pos) noexcept;

// Appends the UTF-8 form of a code point.
void appendUtf8(std::string& out, char32_t cp);

}  // namespace vantorel
