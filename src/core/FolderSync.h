#pragma once
// Flushes folders whose entries changed (a file renamed in, a backup linked),
// so that those changes survive a power cut. Writing many files, a folder is
// flushed once when the writes move on to another folder, not after each file.

#include <string>

namespace vantorel {

class FolderSync {
public:
    FolderSync() = default;
    ~FolderSync();
    FolderSync(const FolderSync&) = delete;
    FolderSync& operator=(const FolderSync&) = delete;

    // A folder (a path up to its last separator) whose entries changed. A
    // folder other than the last one given flushes the last one.
    void add(const std::string& folder);
    void flush() noexcept;

    static void syncNow(const std::string& folder) noexcept;

private:
    std::string pending_;
    bool hasPending_ = false;
};

}  // namespace vantorel
