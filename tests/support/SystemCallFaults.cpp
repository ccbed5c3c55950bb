#include "support/SystemCallFaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>

namespace vantorel::test {

std::atomic<bool> SystemCallFaults::refuseLinks{false};
std::function<void(const std::string&, const std::string&)> SystemCallFaults::beforeRename;
std::atomic<bool> SystemCallFaults::watchSyncs{false};
std::mutex SystemCallFaults::mutex_;
std::vector<std::string> SystemCallFaults::synced_;
std::string SystemCallFaults::watchFlushesUnder;
std::atomic<int> SystemCallFaults::syncfsError{0};
std::function<void()> SystemCallFaults::beforeSyncfs;
std::set<std::tuple<dev_t, ino_t, off_t, std::int64_t>> SystemCallFaults::flushed_;

namespace {

std::tuple<dev_t, ino_t, off_t, std::int64_t> identity(const struct stat& st) {
    return {st.st_dev, st.st_ino, st.st_size, std::int64_t{st.st_mtim.tv_sec} * 1000000000 + st.st_mtim.tv_nsec};
}

}  // namespace

SystemCallFaults::Scope::~Scope() {
    refuseLinks = false;
    beforeRename = nullptr;
    watchSyncs = false;
    syncfsError = 0;
    beforeSyncfs = nullptr;
    std::lock_guard lock(mutex_);
    synced_.clear();
    watchFlushesUnder.clear();
    flushed_.clear();
}

bool SystemCallFaults::flushedAsItIs(const std::string& path) {
    struct stat st {};
    std::lock_guard lock(mutex_);
    return ::stat(path.c_str(), &st) == 0 && flushed_.count(identity(st)) > 0;
}

void SystemCallFaults::noteFlushed(int fd) {
    struct stat st {};
    std::lock_guard lock(mutex_);
    if (!watchFlushesUnder.empty() && ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) flushed_.insert(identity(st));
}

void SystemCallFaults::noteFileSystemFlushed() {
    std::lock_guard lock(mutex_);
    if (watchFlushesUnder.empty()) return;
    std::error_code ignored;
    struct stat watched {};
    ::stat(watchFlushesUnder.c_str(), &watched);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(watchFlushesUnder, ignored)) {
        struct stat st {};
        if (::lstat(entry.path().c_str(), &st) == 0 && S_ISREG(st.st_mode)) flushed_.insert(identity(st));
    }
    // New files without a name yet are flushed too: they are open. Other
    // threads open and close files meanwhile; what is looked at is the
    // kernel's table, as syncfs does, by a system call of its own.
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
        struct stat st {};
        const int fd = std::atoi(entry.path().filename().c_str());
        if (::syscall(SYS_newfstatat, fd, "", &st, AT_EMPTY_PATH) == 0 && S_ISREG(st.st_mode) &&
            st.st_dev == watched.st_dev)
            flushed_.insert(identity(st));
    }
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

namespace {

// The path of `name` in the folder `folder` (AT_FDCWD: as given).
std::string pathIn(int folder, const char* name) {
    if (folder == AT_FDCWD || name[0] == '/') return name;
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t n = ::readlink(link.c_str(), path, sizeof path);
    return n > 0 ? std::string(path, static_cast<std::size_t>(n)) + "/" + name : std::string(name);
}

int renamed(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    if (SystemCallFaults::beforeRename) SystemCallFaults::beforeRename(pathIn(fromFolder, from), pathIn(toFolder, to));
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

}  // namespace

extern "C" int rename(const char* from, const char* to) { return renamed(AT_FDCWD, from, AT_FDCWD, to, 0); }

extern "C" int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
    return renamed(fromFolder, from, toFolder, to, 0);
}

extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return renamed(fromFolder, from, toFolder, to, flags);
}

extern "C" int fsync(int fd) {
    struct stat st {};
    if (SystemCallFaults::watchSyncs && ::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
        char path[PATH_MAX];
        const std::string link = "/proc/self/fd/" + std::to_string(fd);
        const ssize_t n = ::readlink(link.c_str(), path, sizeof path);
        if (n > 0) SystemCallFaults::noteSync(std::string(path, static_cast<std::size_t>(n)));
    }
    SystemCallFaults::noteFlushed(fd);
    return static_cast<int>(::syscall(SYS_fsync, fd));
}

extern "C" int syncfs(int fd) {
    if (SystemCallFaults::beforeSyncfs) SystemCallFaults::beforeSyncfs();
    if (const int error = SystemCallFaults::syncfsError) {
        errno = error;
        return -1;
    }
    SystemCallFaults::noteFileSystemFlushed();  // what is there now reaches the disk
    return static_cast<int>(::syscall(SYS_syncfs, fd));
}
