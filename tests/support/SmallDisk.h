#pragma once
// A small file system of its own (a RAM file system of a given size,
// mounted on a temporary folder), to try what a full disk does. Only a
// privileged process may mount one: check mounted() and skip otherwise.

#include <cstdint>
#include <memory>
#include <string>

#include "support/TempTree.h"

namespace vantorel::test {

class SmallDisk {
public:
    explicit SmallDisk(std::uint64_t bytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool mounted() const noexcept { return mounted_; }
    // The folder the file system is mounted on, to write in.
    const TempTree& tree() const { return *tree_; }
    std::uint64_t freeBytes() const;
    // Takes up the free space but for `leave` bytes, with a file of its own.
    void fill(std::uint64_t leave = 0) const;
    // Gives back what fill() took.
    void empty() const;

private:
    std::unique_ptr<TempTree> tree_;
    bool mounted_ = false;
};

}  // namespace vantorel::test
