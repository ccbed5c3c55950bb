#pragma once
// A 64-bit fingerprint of a byte stream, fed in pieces of any size: the same
// bytes give the same value however they are split. It tells whether a file
// still holds what was written to it; it is no protection against anyone
// crafting a collision.

#include <cstdint>
#include <string_view>

namespace vantorel {

class ContentHash {
public:
    void add(std::string_view bytes) noexcept;
    std::uint64_t value() const noexcept;

private:
    void mix(std::uint64_t word) noexcept;

    std::uint64_t state_ = 0x9E3779B97F4A7C15ULL;
    std::uint64_t length_ = 0;
    std::uint64_t pending_ = 0;  // bytes of an unfinished word, lowest first
    unsigned pendingBytes_ = 0;
};

}  // namespace vantorel
