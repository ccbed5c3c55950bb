#include "core/ContentHash.h"

#include <cstring>

namespace vantorel {
namespace {

constexpr std::uint64_t kPrime1 = 0x9E3779B185EBCA87ULL;
constexpr std::uint64_t kPrime2 = 0xC2B2AE3D27D4EB4FULL;
constexpr std::uint64_t kPrime3 = 0x165667B19E3779F9ULL;

constexpr std::uint64_t rotateLeft(std::uint64_t value, int bits) {
    return (value << bits) | (value >> (64 - bits));
}

}  // namespace

void ContentHash::mix(std::uint64_t word) noexcept {
    state_ = rotateLeft(state_ ^ (word * kPrime2), 31) * kPrime1;
}

void ContentHash::add(std::string_view bytes) noexcept {
    length_ += bytes.size();
    std::size_t i = 0;
    while (pendingBytes_ != 0 && i < bytes.size()) {
        pending_ |= std::uint64_t{static_cast<unsigned char>(bytes[i++])} << (8 * pendingBytes_);
        if (++pendingBytes_ == 8) {
            mix(pending_);
            pending_ = 0;
            pendingBytes_ = 0;
        }
    }
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + i, 8);  // the machine is little-endian
        mix(word);
    }
    for (; i < bytes.size(); ++i)
        pending_ |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * pendingBytes_++);
}

std::uint64_t ContentHash::value() const noexcept {
    std::uint64_t h = state_ ^ (pending_ * kPrime3) ^ (length_ * kPrime1);
    h ^= h >> 33;
    h *= kPrime2;
    h ^= h >> 29;
    h *= kPrime3;
    h ^= h >> 32;
    return h;
}

}  // namespace vantorel
