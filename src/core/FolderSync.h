#pragma once
// Flushes folders whose entries changed (a file renamed in, a backup linked),
// so that those changes survive a power cut. Writing many files, a folder is
// flushed once when the writes move on to another folder, not after each file.
//
// Writing many files on one file system, it can instead flush that whole
// file system at once (syncfs), every so many files: the new files' contents
// before they are renamed into place, and the folders changed before. A
// flush of a few hundred files then costs about as much as that of one.

#include <sys/types.h>

#include <optional>
#include <string>

#include "core/FileDescriptor.h"

namespace vantorel {

class FolderSync {
public:
    FolderSync() = default;
    ~FolderSync();
    FolderSync(const FolderSync&) = delete;
    FolderSync& operator=(const FolderSync&) = delete;

    // An open folder whose entries changed. A folder other than the last
    // one given flushes the last one. A folder on the file system that
    // syncFileSystem() flushes waits for it.
    void add(int folder, dev_t device = 0);
    // The same, for a folder known to be `inode` on `device`.
    void add(int folder, dev_t device, ino_t inode);
    // The same by path (a path up to its last separator).
    void add(const std::string& folder, dev_t device = 0);
    void flush() noexcept;

    // From now on, the file system that holds `folder` is flushed whole by
    // syncFileSystem(); false when it cannot be (nothing changes then).
    bool coverFileSystemOf(int folder);
    // The device of that file system, once covered.
    std::optional<dev_t> coveredDevice() const noexcept { return covered_; }
    // Flushes the covered file system; 0, or the error of a write to it
    // that failed since the last call (or since it was covered).
    int syncFileSystem() noexcept;

    static void syncNow(int folder) noexcept;
    static void syncNow(const std::string& folder) noexcept;

private:
    FileDescriptor pending_;
    dev_t pendingDevice_ = 0;
    ino_t pendingInode_ = 0;
    FileDescriptor fileSystem_;
    std::optional<dev_t> covered_;
};

}  // namespace vantorel
