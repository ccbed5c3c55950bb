#pragma once
// Reading a memory-mapped file that another program cuts short would end the
// process with SIGBUS. While a guard is alive, such a fault inside its region
// on its thread maps a page of zeros in place instead, and the guard
// remembers that the file changed; the reader then discards what it read.
// Faults anywhere else keep their usual, fatal meaning.

#include <cstddef>

namespace vantorel {

class MappedFileGuard {
public:
    MappedFileGuard(const void* begin, std::size_t length);
    ~MappedFileGuard();
    MappedFileGuard(const MappedFileGuard&) = delete;
    MappedFileGuard& operator=(const MappedFileGuard&) = delete;

    // False when the thread already guards as many regions as it can.
    bool active() const noexcept { return slot_ >= 0; }
    // True when a page of the region could not be read from the file.
    bool faulted() const noexcept;

private:
    int slot_ = -1;
};

}  // namespace vantorel
