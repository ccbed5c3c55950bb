#pragma once
// Faults and observations at the level of system calls, for the whole test
// program: it defines linkat, rename (renameat, renameat2), fsync and syncfs, which the engine then calls
// in place of the C library's. They pass straight through unless a test asks
// for more. Use through a Scope, which puts everything back at its end.

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace vantorel::test {

class SystemCallFaults {
public:
    // linkat fails with EPERM, as on a file system without hard links.
    static std::atomic<bool> refuseLinks;
    // Called before every rename (or exchange) with its two paths.
    static std::function<void(const std::string& from, const std::string& to)> beforeRename;
    // Folders flushed (fsync of a folder), in order, while `watchSyncs` is set.
    static std::atomic<bool> watchSyncs;
    static std::vector<std::string> syncedFolders();
    // Whether the file at `path`, as it is now (same file, size and time),
    // had reached the disk: flushed by fsync, or whole when a syncfs flushed
    // the file system, while `watchFlushesUnder` names the folder it is in.
    static std::string watchFlushesUnder;
    static bool flushedAsItIs(const std::string& path);
    // syncfs fails with this error when not 0.
    static std::atomic<int> syncfsError;
    // Called before every syncfs (a batch of new files about to be renamed into place).
    static std::function<void()> beforeSyncfs;

    class Scope {
    public:
        Scope() = default;
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    static void noteSync(const std::string& folder);
    static void noteFlushed(int fd);
    static void noteFileSystemFlushed();

private:
    static std::mutex mutex_;
    static std::vector<std::string> synced_;
    static std::set<std::tuple<dev_t, ino_t, off_t, std::int64_t>> flushed_;
};

}  // namespace vantorel::test
