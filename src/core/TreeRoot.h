#pragma once
// The folder that a run may write in, held open from the start of the run
// to its end. Every write below it is resolved from this descriptor
// downwards without ever following a symbolic link: with openat2
// (RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS) where the kernel has it, else one
// folder at a time with openat and O_NOFOLLOW. A folder of the tree that
// someone swaps for a link after the tree was listed, or while a question
// waits, is never entered, wherever the link leads: the resolution fails
// with ELOOP, and the file is named and left.

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "core/FileDescriptor.h"

namespace vantorel {

class TreeRoot {
public:
    // Opens the folder as typed (a link in the typed path is the user's
    // choice, taken now) and notes where it really is. Throws
    // std::system_error.
    static TreeRoot open(const std::string& folder);
    // Opens a folder noted earlier by its real path, following no link on
    // the way down from "/", and checks that it is still the same folder.
    // Throws std::system_error: ELOOP when a link stands on the way, ESTALE
    // when another folder stands there now.
    static TreeRoot reopen(const std::string& realPath, dev_t device, ino_t inode);

    TreeRoot(TreeRoot&&) noexcept = default;
    TreeRoot& operator=(TreeRoot&&) noexcept = default;

    int fd() const noexcept { return fd_.get(); }
    // Where the folder really is, ending in the separator.
    const std::string& realPath() const noexcept { return realPath_; }
    dev_t device() const noexcept { return device_; }
    ino_t inode() const noexcept { return inode_; }

    // Where a listed file is, relative to the root, as a write would reach
    // it: a file that the walk found (`walked`, its path starting with the
    // typed folder) and that is not a link (`link`) is where its path says;
    // any other is where its links lead. Nothing when that is not inside the
    // root (or the file cannot be resolved).
    std::optional<std::string> relativeOf(const std::string& path, bool walked, bool link) const;

    // Opens the folder `relative` (a path relative to the root, "" for the
    // root itself) without following any link. Throws std::system_error
    // with ELOOP for a link on the way, EXDEV for a way that leads out.
    FileDescriptor openFolder(std::string_view relative) const;

    // The folder part ("" or ending in the separator) and the name of a
    // relative path.
    static std::string_view folderOf(std::string_view relative) noexcept;
    static std::string_view nameOf(std::string_view relative) noexcept;

private:
    TreeRoot() = default;

    FileDescriptor fd_;
    std::string typed_;     // as typed, ending in the separator
    std::string realPath_;  // ending in the separator
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

// Opens `relative` below the folder `from` without following any link, as
// TreeRoot::openFolder does. Throws std::system_error.
FileDescriptor openFolderBeneath(int from, std::string_view relative);

}  // namespace vantorel
