#include "core/FolderSync.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vantorel {

FolderSync::~FolderSync() { flush(); }

void FolderSync::add(int folder, dev_t device) {
    if (covered_ && device == *covered_) return;
    struct stat st {};
    if (::fstat(folder, &st) == 0) add(folder, st.st_dev, st.st_ino);
}

void FolderSync::add(int folder, dev_t device, ino_t inode) {
    if (covered_ && device == *covered_) return;
    if (pending_ && device == pendingDevice_ && inode == pendingInode_) return;
    flush();
    pending_.reset(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    pendingDevice_ = device;
    pendingInode_ = inode;
}

void FolderSync::add(const std::string& folder, dev_t device) {
    if (covered_ && device == *covered_) return;
    const FileDescriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd) add(fd.get(), device);
}

void FolderSync::flush() noexcept {
    if (pending_) syncNow(pending_.get());
    pending_.reset();
}

bool FolderSync::coverFileSystemOf(int folder) {
    // Opened before any write it is to answer for: the system reports to it
    // the failures of writes that come later.
    FileDescriptor fd(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
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

void FolderSync::syncNow(int folder) noexcept {
    ::fsync(folder);  // a folder that cannot be flushed is no reason to fail a write
}

void FolderSync::syncNow(const std::string& folder) noexcept {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace vantorel
