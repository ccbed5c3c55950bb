#include "regex/AsciiLiteralFinder.h"

#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vantorel {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

// How common a byte is in ordinary text (higher: more common), both cases
// of a letter together. Only the order matters.
int commonness(char c) {
    static const char* const byFrequency = " etaoinsrhldcumfpgwybvkxjqz";
    c = lower(c);
    if (const char* found = std::strchr(byFrequency, c); found && c != '\0')
        return 100 - static_cast<int>(found - byFrequency);
    if (c >= '0' && c <= '9') return 60;
    if (c == '\n' || c == '\r' || c == '\t') return 65;
    return 40;  // punctuation and the rest
}

bool isSyntaxCharacter(char c) { return std::strchr("^$\\.*+?()[]{}|/", c) != nullptr; }

}  // namespace

std::optional<std::string> AsciiLiteralFinder::literalOf(std::string_view pattern) {
    std::string literal;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (static_cast<unsigned char>(c) >= 0x80) return std::nullopt;
        if (c == '\\') {
            if (i + 1 >= pattern.size() || !isSyntaxCharacter(pattern[i + 1])) return std::nullopt;
            literal += pattern[++i];
        } else if (isSyntaxCharacter(c) || c == '\0') {
            return std::nullopt;
        } else {
            literal += c;
        }
    }
    if (literal.empty()) return std::nullopt;
    return literal;
}

AsciiLiteralFinder::AsciiLiteralFinder(std::string literal) : literal_(std::move(literal)) {
    for (char& c : literal_) c = lower(c);
    // The rarest byte, then the rarest other position (the same one for a
    // literal of one byte).
    for (std::size_t i = 1; i < literal_.size(); ++i)
        if (commonness(literal_[i]) < commonness(literal_[first_])) first_ = i;
    second_ = first_;
    for (std::size_t i = 0; i < literal_.size(); ++i)
        if (i != first_ && (second_ == first_ || commonness(literal_[i]) < commonness(literal_[second_]))) second_ = i;
}

bool AsciiLiteralFinder::matchesAt(const char* at) const noexcept {
    for (std::size_t i = 0; i < literal_.size(); ++i)
        if (lower(at[i]) != literal_[i]) return false;
    return true;
}

std::size_t AsciiLiteralFinder::find(std::string_view subject, std::size_t from) const noexcept {
    const std::size_t n = subject.size();
    const std::size_t length = literal_.size();
    if (from > n || n - from < length) return std::string_view::npos;
    const char* data = subject.data();
    const std::size_t last = n - length;  // the last possible start
    std::size_t start = from;
#ifdef __SSE2__
    const __m128i a1 = _mm_set1_epi8(literal_[first_]), a2 = _mm_set1_epi8(upper(literal_[first_]));
    const __m128i b1 = _mm_set1_epi8(literal_[second_]), b2 = _mm_set1_epi8(upper(literal_[second_]));
    while (start + 15 <= last) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + start + first_));
        const __m128i y = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + start + second_));
        const __m128i hit = _mm_and_si128(_mm_or_si128(_mm_cmpeq_epi8(x, a1), _mm_cmpeq_epi8(x, a2)),
                                          _mm_or_si128(_mm_cmpeq_epi8(y, b1), _mm_cmpeq_epi8(y, b2)));
        unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(hit));
        while (mask != 0) {
            const std::size_t candidate = start + static_cast<std::size_t>(__builtin_ctz(mask));
            if (matchesAt(data + candidate)) return candidate;
            mask &= mask - 1;
        }
        start += 16;
    }
#endif
    for (; start <= last; ++start)
        if (matchesAt(data + start)) return start;
    return std::string_view::npos;
}

}  // namespace vantorel
