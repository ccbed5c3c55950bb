#pragma once
// What identifies a file's contents as they were seen: the file (device and
// inode), its size and its modification time, and the time its inode last
// changed. A program that rewrites a file in place can put its size and
// modification time back, but not the change time: only the whole identity
// tells that nothing at all happened to the file since.

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vantorel {

struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNs = 0;
    std::int64_t changedNs = 0;  // the inode's change time

    // Nothing happened to the file: same file, size and both times.
    bool operator==(const FileIdentity&) const = default;
    // The same file with the same size and modification time. Linking or
    // renaming a file changes its change time but not its contents: this is
    // how a file that the program itself linked since is recognised.
    bool sameVersion(const FileIdentity& other) const noexcept {
        return device == other.device && inode == other.inode && size == other.size &&
               modifiedNs == other.modifiedNs;
    }
    bool sameFile(const FileIdentity& other) const noexcept {
        return device == other.device && inode == other.inode;
    }

    // Through links; nothing when the path cannot be examined.
    static std::optional<FileIdentity> of(const std::string& path);
    static FileIdentity of(const struct stat& st) noexcept {
        return FileIdentity{st.st_dev, st.st_ino, static_cast<std::int64_t>(st.st_size),
                            static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec,
                            static_cast<std::int64_t>(st.st_ctim.tv_sec) * 1000000000 + st.st_ctim.tv_nsec};
    }
    // Of an open file; nothing when fstat fails.
    static std::optional<FileIdentity> ofOpen(int fd);
};

}  // namespace vantorel
