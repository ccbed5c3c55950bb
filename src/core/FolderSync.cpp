#include "core/FolderSync.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vantorel {

FolderSync::~FolderSync() { flush(); }

void FolderSync::add(const std::string& folder, dev_t device) {
    if (covered_ && device == *covered_) return;
    if (hasPending_ && pending_ == folder) return;
    flush();
    pending_ = folder;
    hasPending_ = true;
}

void FolderSync::flush() noexcept {
    if (hasPending_) syncNow(pending_);
    hasPending_ = false;
}

bool FolderSync::coverFileSystemOf(const std::string& folder) {
    // Opened before any write it is to answer for: the system reports to it
    // the failures of writes that come later.
    FileDescriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat st {};
    if (!fd || ::fstat(fd.get(), &st) != 0) return false;
    fileSystem_ = std::move(fd);
    covered_ = st.st_dev;
    return true;
}

int FolderSync::syncFileSystem() noexcept {
    if (!fileSystem_) return 0;
    return ::syncfs(fileSystem_.get()) == 0 ? 0 : errno;
}

void FolderSync::syncNow(const std::string& folder) noexcept {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);  // a folder that cannot be flushed is no reason to fail a write
    ::close(fd);
}

}  // namespace vantorel
