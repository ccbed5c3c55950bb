#pragma once
// Faults and observations at the level of system calls, for the whole test
// program: it defines linkat, rename and fsync, which the engine then calls
// in place of the C library's. They pass straight through unless a test asks
// for more. Use through a Scope, which puts everything back at its end.

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace vantorel::test {

class SystemCallFaults {
public:
    // linkat fails with EPERM, as on a file system without hard links.
    static std::atomic<bool> refuseLinks;
    // Called before every rename with its two paths.
    static std::function<void(const std::string& from, const std::string& to)> beforeRename;
    // Folders flushed (fsync of a folder), in order, while `watchSyncs` is set.
    static std::atomic<bool> watchSyncs;
    static std::vector<std::string> syncedFolders();

    class Scope {
    public:
        Scope() = default;
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };

    static void noteSync(const std::string& folder);

private:
    static std::mutex mutex_;
    static std::vector<std::string> synced_;
};

}  // namespace vantorel::test
