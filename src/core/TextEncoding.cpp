#include "core/TextEncoding.h"

#include <array>
#include <cstring>

namespace vantorel {
namespace {

// Code points of bytes 0x80..0x9F; the rest of the code page equals Latin-1.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool allAscii8(const unsigned char* p) noexcept {
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    return (word & 0x8080808080808080ULL) == 0;
}

// Walks valid UTF-8, counting code points; -1 at the first invalid sequence.
std::int64_t utf8Characters(std::string_view bytes) noexcept {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t n = bytes.size();
    std::size_t i = 0;
    std::int64_t characters = 0;
    while (i < n) {
        // Fast path over runs of ASCII, 32 bytes at a time.
        while (i + 32 <= n && allAscii8(p + i) && allAscii8(p + i + 8) &&
               allAscii8(p + i + 16) && allAscii8(p + i + 24)) {
            i += 32;
            characters += 32;
        }
        if (i >= n) break;
        const unsigned char c = p[i];
        ++characters;
        if (c < 0x80) {
            ++i;
            continue;
        }
        std::size_t len;
        char32_t minimum;
        char32_t cp;
        if ((c & 0xE0) == 0xC0) {
            len = 2; minimum = 0x80; cp = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            len = 3; minimum = 0x800; cp = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            len = 4; minimum = 0x10000; cp = c & 0x07;
        } else {
            return -1;
        }
        if (i + len > n) return -1;
        for (std::size_t k = 1; k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80) return -1;
            cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return -1;
        i += len;
    }
    return characters;
}

}  // namespace

bool isValidUtf8(std::string_view bytes) noexcept {
    return utf8Characters(bytes) >= 0;
}

EncodingScan scanEncoding(std::string_view bytes) noexcept {
    const std::int64_t characters = utf8Characters(bytes);
    if (characters < 0) return {TextEncoding::Windows1252, bytes.size()};
    return {TextEncoding::Utf8, static_cast<std::uint64_t>(characters)};
}

std::uint64_t countCharacters(std::string_view bytes, TextEncoding encoding) noexcept {
    if (encoding == TextEncoding::Windows1252) return bytes.size();
    std::uint64_t continuation = 0;
    for (unsigned char c : bytes) continuation += (c & 0xC0) == 0x80;
    return bytes.size() - continuation;
}

char32_t windows1252ToCodePoint(unsigned char byte) noexcept {
    if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
    return byte;
}

std::optional<unsigned char> codePointToWindows1252(char32_t cp) noexcept {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
    for (std::size_t i = 0; i < kHighControls.size(); ++i)
        if (kHighControls[i] == cp) return static_cast<unsigned char>(0x80 + i);
    return std::nullopt;
}

char32_t decodeUtf8(std::string_view utf8, std::size_t& pos) noexcept {
    const auto c = static_cast<unsigned char>(utf8[pos]);
    std::size_t len = c < 0x80 ? 1 : (c & 0xE0) == 0xC0 ? 2 : (c & 0xF0) == 0xE0 ? 3 : 4;
    if (pos + len > utf8.size()) len = utf8.size() - pos;
    char32_t cp = len == 1 ? c : len == 2 ? (c & 0x1F) : len == 3 ? (c & 0x0F) : (c & 0x07);
    for (std::size_t k = 1; k < len; ++k)
        cp = (cp << 6) | (static_cast<unsigned char>(utf8[pos + k]) & 0x3F);
    pos += len;
    return cp;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

std::optional<std::string> utf8ToWindows1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const auto byte = codePointToWindows1252(decodeUtf8(utf8, pos));
        if (!byte) return std::nullopt;
        out += static_cast<char>(*byte);
    }
    return out;
}

std::string windows1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (unsigned char c : bytes) appendUtf8(out, windows1252ToCodePoint(c));
    return out;
}

std::optional<Utf16Order> utf16MarkOf(std::string_view bytes) noexcept {
    if (bytes.size() < 2) return std::nullopt;
    const auto first = static_cast<unsigned char>(bytes[0]), second = static_cast<unsigned char>(bytes[1]);
    if (first == 0xFF && second == 0xFE) return Utf16Order::LittleEndian;
    if (first == 0xFE && second == 0xFF) return Utf16Order::BigEndian;
    return std::nullopt;
}

Utf16Text decodeUtf16(std::string_view bytes, Utf16Order order) {
    Utf16Text text;
    text.utf8.reserve(bytes.size() / 2 * 3 / 2 + 4);
    const bool little = order == Utf16Order::LittleEndian;
    auto unitAt = [&](std::size_t i) -> char32_t {
        const auto a = static_cast<unsigned char>(bytes[i]), b = static_cast<unsigned char>(bytes[i + 1]);
        return little ? (b << 8 | a) : (a << 8 | b);
    };
    const std::size_t units = bytes.size() / 2;
    for (std::size_t u = 0; u < units; ++u) {
        char32_t cp = unitAt(2 * u);
        if (cp >= 0xD800 && cp <= 0xDFFF) {
            const char32_t low = u + 1 < units ? unitAt(2 * u + 2) : 0;
            if (cp <= 0xDBFF && low >= 0xDC00 && low <= 0xDFFF) {
                cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                ++u;
            } else {
                cp = 0xFFFD;
                text.exact = false;
            }
        }
        appendUtf8(text.utf8, cp);
        ++text.characters;
    }
    if (bytes.size() % 2 != 0) {
        appendUtf8(text.utf8, 0xFFFD);
        ++text.characters;
        text.exact = false;
    }
    return text;
}

void appendUtf16(std::string& out, std::string_view utf8, Utf16Order order) {
    const bool little = order == Utf16Order::LittleEndian;
    auto unit = [&](char32_t value) {
        const char high = static_cast<char>(value >> 8), low = static_cast<char>(value & 0xFF);
        out += little ? low : high;
        out += little ? high : low;
    };
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const char32_t cp = decodeUtf8(utf8, pos);
        if (cp < 0x10000) {
            unit(cp);
        } else {
            unit(0xD800 + ((cp - 0x10000) >> 10));
            unit(0xDC00 + ((cp - 0x10000) & 0x3FF));
        }
    }
}

std::string toUtf8(std::string_view bytes, TextEncoding encoding) {
    return encoding == TextEncoding::Utf8 ? std::string(bytes) : windows1252ToUtf8(bytes);
}

}  // namespace vantorel
