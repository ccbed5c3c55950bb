#pragma once
// How a file's bytes become characters.
//
// A file whose bytes are valid UTF-8 is UTF-8 text: characters are code
// points. Any other file is single-byte Windows-1252 text: one byte, one
// character. Matching always runs on the file's own bytes; only the typed
// pattern and replacement are converted to the file's encoding. A file that
// starts with a UTF-16 byte-order mark is the exception: its text is decoded
// to UTF-8 for matching and encoded back to UTF-16 when it is written.

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

enum class Utf16Order { LittleEndian, BigEndian };

// The byte order of text that starts with a UTF-16 byte-order mark.
std::optional<Utf16Order> utf16MarkOf(std::string_view bytes) noexcept;

struct Utf16Text {
    std::string utf8;               // the mark included, as U+FEFF
    std::uint64_t characters = 0;
    // False when some code units are not characters (an unpaired surrogate,
    // an odd last byte): they became U+FFFD, so the text does not round trip.
    bool exact = true;
};
Utf16Text decodeUtf16(std::string_view bytes, Utf16Order order);

// Appends the UTF-16 form of complete UTF-8 characters.
void appendUtf16(std::string& out, std::string_view utf8, Utf16Order order);

}  // namespace vantorel
