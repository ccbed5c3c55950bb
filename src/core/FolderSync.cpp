#include "core/FolderSync.h"

#include <fcntl.h>
#include <unistd.h>

namespace vantorel {

FolderSync::~FolderSync() { flush(); }

void FolderSync::add(const std::string& folder) {
    if (hasPending_ && pending_ == folder) return;
    flush();
    pending_ = folder;
    hasPending_ = true;
}

void FolderSync::flush() noexcept {
    if (hasPending_) syncNow(pending_);
    hasPending_ = false;
}

void FolderSync::syncNow(const std::string& folder) noexcept {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);  // a folder that cannot be flushed is no reason to fail a write
    ::close(fd);
}

}  // namespace vantorel
