#pragma once
// A fast route for the commonest case-insensitive search: a pattern that is
// nothing but ASCII characters taken literally ("error", "C:\\temp" escaped
// as plain text). By ECMAScript's rule an ASCII letter then matches only its
// two ASCII cases, in UTF-8 and in Windows-1252 text alike, so the search can
// compare bytes. It looks for the literal's two rarest bytes at their
// distance, sixteen positions at a time, and checks each candidate whole.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vantorel {

class AsciiLiteralFinder {
public:
    // The literal that a typed ECMAScript pattern stands for, when it is one:
    // ASCII characters other than the syntax characters, or syntax characters
    // escaped with a backslash. Nothing for any other pattern.
    static std::optional<std::string> literalOf(std::string_view ecmaPattern);

    // Matches `literal` (not empty, ASCII) without regard to case.
    explicit AsciiLiteralFinder(std::string literal);

    // The start of the first match at or after `from`, or npos.
    std::size_t find(std::string_view subject, std::size_t from) const noexcept;
    std::size_t length() const noexcept { return literal_.size(); }

private:
    bool matchesAt(const char* at) const noexcept;

    std::string literal_;  // lower case
    std::size_t first_ = 0;   // offsets of the two rarest bytes
    std::size_t second_ = 0;
};

}  // namespace vantorel
