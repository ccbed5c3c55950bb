#pragma once
// A file held open under its advisory lock while it is replaced or
// restored. Two runs of this program that reach the same file (two
// Replaces, or a Replace and an Undo) take turns there: each checks, with
// the lock held, that the file is still the one it read before it puts
// another in its place, so that neither writes over the other's change.
// The lock is on the file, not on its name: a run that waited for it finds
// the name leading to a new file and leaves it.

#include <optional>
#include <string>

#include "core/FileDescriptor.h"
#include "core/FileIdentity.h"

namespace vantorel {

class LockedFile {
public:
    // Opens the entry `name` of the open folder `folder`, never through a
    // link, and waits for its lock (a few seconds at most). The system's
    // error when that fails: ELOOP for a link, EWOULDBLOCK when another
    // process keeps the lock.
    static LockedFile open(int folder, const std::string& name, int& error);

    explicit operator bool() const noexcept { return static_cast<bool>(fd_); }
    int fd() const noexcept { return fd_.get(); }
    // The file as it is now that the lock is held.
    const FileIdentity& identity() const noexcept { return identity_; }
    bool regular() const noexcept { return regular_; }
    // Whether `name` in `folder` still leads to this file.
    bool stillAt(int folder, const std::string& name) const;

private:
    FileDescriptor fd_;
    FileIdentity identity_;
    bool regular_ = false;
};

}  // namespace vantorel
