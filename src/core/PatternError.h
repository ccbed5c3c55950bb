#pragma once
#include <cstddef>
#include <stdexcept>
#include <string>

namespace vantorel {

// A typed pattern that cannot be used: what is wrong and where, as a
// character offset into the pattern as the user typed it, so that a window
// can point at the place.
class PatternError : public std::runtime_error {
public:
    // For a fault of the pattern as a whole (its size) rather than of one place.
    static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

    PatternError(const std::string& what, std::size_t offset)
        : std::runtime_error(what), offset_(offset) {}
    std::size_t offset() const noexcept { return offset_; }

private:
    std::size_t offset_;
};

// An error while matching (a match limit, a stack limit): the run cannot go on.
class MatchError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace vantorel
