#include "support/SystemCallFaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

namespace vantorel::test {

std::atomic<bool> SystemCallFaults::refuseLinks{false};
std::function<void(const std::string&, const std::string&)> SystemCallFaults::beforeRename;
std::atomic<bool> SystemCallFaults::watchSyncs{false};
std::mutex SystemCallFaults::mutex_;
std::vector<std::string> SystemCallFaults::synced_;

SystemCallFaults::Scope::~Scope() {
    refuseLinks = false;
    beforeRename = nullptr;
    watchSyncs = false;
    std::lock_guard lock(mutex_);
    synced_.clear();
}

std::vector<std::string> SystemCallFaults::syncedFolders() {
    std::lock_guard lock(mutex_);
    return synced_;
}

void SystemCallFaults::noteSync(const std::string& folder) {
    std::lock_guard lock(mutex_);
    synced_.push_back(folder);
}

}  // namespace vantorel::test

using vantorel::test::SystemCallFaults;

extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    if (SystemCallFaults::refuseLinks) {
        errno = EPERM;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

extern "C" int rename(const char* from, const char* to) {
    if (SystemCallFaults::beforeRename) SystemCallFaults::beforeRename(from, to);
    return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" int fsync(int fd) {
    struct stat st {};
    if (SystemCallFaults::watchSyncs && ::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
        char path[PATH_MAX];
        const std::string link = "/proc/self/fd/" + std::to_string(fd);
        const ssize_t n = ::readlink(link.c_str(), path, sizeof path);
        if (n > 0) SystemCallFaults::noteSync(std::string(path, static_cast<std::size_t>(n)));
    }
    return static_cast<int>(::syscall(SYS_fsync, fd));
}
